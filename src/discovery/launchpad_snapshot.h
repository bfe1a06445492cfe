#pragma once

#include "discovery/launchpad_import_error.h"
#include "platform/file_system.h"

#include <QTemporaryDir>

#include <expected>
#include <memory>
#include <stop_token>

namespace tessellar {

/// A consistent private copy of a SQLite database that another program may be writing: the file and its
/// write-ahead log. The original is only ever read as a file: opening it with SQLite, even read-only,
/// would create files beside it.
///
/// Consistent, because a log only grows until it restarts under a new header: if the header is the same
/// before and after copying, the log still contains everything checkpointed into the file meanwhile.
/// Without a log, the file itself must not have changed. Otherwise it is copied again.
class LaunchpadSnapshot {
public:
    /// For the file and the log each. Real ones have a few megabytes, mostly pictures.
    static constexpr std::uint64_t maximumBytes = 256u << 20;
    static constexpr int maximumAttempts = 40;

    /// Copies regular files only, not links. `temporaryFolder` is a host path; the copy is in a private
    /// folder inside it, deleted with this object. Blocks; any thread.
    static std::expected<LaunchpadSnapshot, LaunchpadImportError> take(const FileSystem& files,
                                                                       const QString& path,
                                                                       const QString& temporaryFolder,
                                                                       std::stop_token stop = {});

    /// The host path of the copy.
    QString hostPath() const;

private:
    LaunchpadSnapshot() = default;

    std::unique_ptr<QTemporaryDir> _folder;
};

} // namespace tessellar
