#pragma once

#include "platform/stored_file.h"
#include "platform/worker_pool.h"

#include <functional>
#include <memory>

namespace tessellar {

/// Writes a stored file off the main thread. A call takes microseconds; encoding and writing happen on
/// the saving lane, in the order of the calls. Only the latest of the pending writes is carried out.
///
/// Not thread-safe; main thread only once something has been written. Destroying it still writes what
/// is pending, but calls no callbacks.
class BackgroundFile {
public:
    using Result = std::expected<void, FileError>;
    using Done = MoveOnlyFunction<void(Result)>;
    /// Produces the bytes; called on the worker.
    using Encode = MoveOnlyFunction<std::expected<QByteArray, FileError>()>;
    /// Identifies one write; increases with each.
    using Ticket = std::uint64_t;

    BackgroundFile(WorkerPool& workers, StoredFile file);
    ~BackgroundFile();
    BackgroundFile(BackgroundFile&&) = default;
    BackgroundFile& operator=(BackgroundFile&&) = delete;

    const QString& path() const { return _path; }

    Ticket write(Encode encode);
    /// The outcome of a write; nullopt while it is pending or running. A superseded write has the
    /// result of the one that replaced it.
    std::optional<Result> result(Ticket ticket) const;
    /// Why the last finished write failed; nullopt if it succeeded.
    std::optional<FileError> lastError() const;
    /// Blocks until every write so far has finished; returns the last result.
    Result wait() const;
    /// For a file that must only be written after this one. Call the returned function on the saving
    /// lane: it carries out what is still pending here and returns the result.
    std::function<Result()> written() const;
    /// For a job on the saving lane that writes several files. Call the returned function there, while
    /// nothing is pending here: it writes the bytes as part of that job.
    std::function<Result(const QByteArray&)> writer() const;
    /// Calls `done` on the main thread with the last result, once every write so far has finished.
    void whenWritten(Done done);
    /// Waits for the running write, then reads. Callable from any thread while nothing is being
    /// written.
    std::expected<std::optional<QByteArray>, FileError> read();
    /// As StoredFile::setAside.
    std::expected<QString, FileError> setAside(const Clock& clock, const QUuid& tag);
    /// Waits, then clears the error: the file was moved away and may be written again.
    void forget();

private:
    struct State;

    WorkerPool* _workers;
    QString _path;
    std::shared_ptr<State> _state; ///< shared with the work under way
};

} // namespace tessellar
