#pragma once

#include "platform/stored_file.h"
#include "platform/worker_pool.h"

#include <functional>
#include <memory>

namespace tessellar {

/// Writes a stored file behind the main thread: a write is handed over in microseconds, encoded and
/// written on the lane for saving, in the order of the calls. Of writes that wait only the last is
/// done: it is what the others would have led to.
///
/// One thread at a time, and the main thread once something is written. Destroying it leaves what was
/// handed over to be written, and nobody told.
class BackgroundFile {
public:
    using Result = std::expected<void, FileError>;
    using Done = MoveOnlyFunction<void(Result)>;
    /// Makes the bytes, on the worker.
    using Encode = MoveOnlyFunction<std::expected<QByteArray, FileError>()>;
    /// Stands for one write; later ones are greater.
    using Ticket = std::uint64_t;

    BackgroundFile(WorkerPool& workers, StoredFile file);
    ~BackgroundFile();
    BackgroundFile(BackgroundFile&&) = default;
    BackgroundFile& operator=(BackgroundFile&&) = delete;

    const QString& path() const { return _path; }

    Ticket write(Encode encode);
    /// What became of a write: absent while it waits or runs. One that a later write took the place of
    /// shares its result.
    std::optional<Result> result(Ticket ticket) const;
    /// Why the last finished write failed; empty once one has succeeded.
    std::optional<FileError> lastError() const;
    /// Blocks until all that was handed over is on the disk, or has failed; gives the last result.
    Result wait() const;
    /// For a file that may only be written after this one. To be called in its turn on the lane for
    /// saving: writes what still waits here, and gives what became of all that is handed over by now.
    std::function<Result()> written() const;
    /// Calls `done` on the main thread once that is so, with that result.
    void whenWritten(Done done);
    /// Waits for what runs, then reads. From any thread as long as nothing is handed over.
    std::expected<std::optional<QByteArray>, FileError> read();
    /// As of a stored file.
    std::expected<QString, FileError> setAside(const Clock& clock, const QUuid& tag);
    /// Waits, then forgets what failed: the file has left its place, and may be written again.
    void forget();

private:
    struct State;

    WorkerPool* _workers;
    QString _path;
    std::shared_ptr<State> _state; ///< shared with the work under way
};

} // namespace tessellar
