#pragma once

#include "discovery/launchpad_import_error.h"
#include "platform/file_system.h"

#include <QTemporaryDir>

#include <expected>
#include <memory>
#include <stop_token>

namespace tessellar {

/// A private copy of a SQLite database that another program may be writing: the file and its
/// write-ahead log, as they were at one moment. The original is read and nothing else; opening it where
/// it lies, even for reading, would make SQLite write beside it.
///
/// One moment, because a log only grows until it begins anew under another header: whatever was carried
/// over into the file while it was copied still stands in a log whose header is the same before and
/// after. Without a log, the file itself must not have changed. Else it is copied again.
class LaunchpadSnapshot {
public:
    /// Of the file and of its log, each. A real one has a few megabytes, most of them pictures.
    static constexpr std::uint64_t maximumBytes = 256u << 20;
    static constexpr int maximumAttempts = 40;

    /// Only what is itself a regular file is copied. `temporaryFolder` is a host path; the copy lies in
    /// a folder in it that is its owner's alone and goes with this value. Blocks; any thread.
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
