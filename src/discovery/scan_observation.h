#pragma once

#include "platform/file_system.h"

#include <QList>
#include <QString>

#include <optional>

namespace tessellar {

/// Whether an error proves that nothing is there; all others prove nothing.
bool isMissing(FileError::Code code);

/// The state observed at one path. While it holds, anything read from there before is still valid.
struct ScanObservation {
    enum class Kind {
        status,     ///< the entry at the path, following links
        resolution, ///< the path's target, and whether it is a folder
    };
    Kind kind = Kind::status;
    QString path;
    std::optional<FileError::Code> error;
    FileStatus status; ///< of `status`
    QString target;    ///< of `resolution`
    bool leadsToDirectory = false;

    static ScanObservation ofStatus(const FileSystem& files, const QString& path);
    static ScanObservation ofResolution(const FileSystem& files, const QString& path);

    /// True if the state is unchanged.
    bool holds(const FileSystem& files) const;

    /// False for a status changed so recently that a further change might not show: file times have a
    /// resolution of up to two seconds.
    bool isSettled(Instant now) const;

    bool found() const { return !error; }
    bool hasFailed() const { return error && !isMissing(*error); }
    bool isDirectory() const {
        return found() &&
               (kind == Kind::status ? status.type == FileType::directory : leadsToDirectory);
    }
};

/// The observations that a result depends on.
struct ScanEvidence {
    QList<ScanObservation> observations;
    /// False if a change could go unnoticed: something changed just before the read, or the disk's file
    /// times are unreliable.
    bool settled = true;

    bool holds(const FileSystem& files) const;
    /// Clears `settled` if any observation is not settled.
    void settle(Instant now);
};

} // namespace tessellar
