#pragma once

#include "platform/file_system.h"

#include <QList>
#include <QString>

#include <optional>

namespace tessellar {

/// A look that failed in this way showed that nothing is there; any other way shows nothing.
bool isNothingThere(FileError::Code code);

/// What a look at one path showed. As long as a new look shows the same, what was read there before
/// need not be read again.
struct ScanObservation {
    enum class Kind {
        status,     ///< what lies at the path, links followed
        resolution, ///< where the path leads, and whether to a folder
    };
    Kind kind = Kind::status;
    QString path;
    std::optional<FileError::Code> error;
    FileStatus status; ///< of `status`
    QString target;    ///< of `resolution`
    bool leadsToDirectory = false;

    static ScanObservation ofStatus(const FileSystem& files, const QString& path);
    static ScanObservation ofResolution(const FileSystem& files, const QString& path);

    /// True when looking again shows the same.
    bool holds(const FileSystem& files) const;

    /// False for a status that was changed so shortly before `now` that a further change might leave
    /// the same one: disks count time in steps of up to two seconds.
    bool isSettled(Instant now) const;

    bool found() const { return !error; }
    bool hasFailed() const { return error && !isNothingThere(*error); }
    bool isDirectory() const {
        return found() &&
               (kind == Kind::status ? status.type == FileType::directory : leadsToDirectory);
    }
};

/// What one piece of reading rests upon.
struct ScanEvidence {
    QList<ScanObservation> observations;
    /// False while a change could hide: something was changed so shortly before the reading that a
    /// further change might leave the same time, or the disk is not known to keep such times.
    bool settled = true;

    bool holds(const FileSystem& files) const;
    /// Lowers `settled` where an observation is not.
    void settle(Instant now);
};

} // namespace tessellar
