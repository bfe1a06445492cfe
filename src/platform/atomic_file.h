#pragma once

#include <QByteArray>

#include <expected>

namespace tessellar {

/// Replaces the file at `hostPath` by one with `bytes`: a temporary file in the same folder, a full
/// write, fsync (F_FULLFSYNC on a Mac), rename, fsync of the folder. Success means that the bytes are
/// on the disk; after a failure, or a kill at any moment, the file is the old one, whole. The mode of
/// a file that is replaced is kept; a new one is readable by its owner alone. A symbolic link is
/// replaced by the file, not followed.
///
/// Our own rather than QSaveFile: Qt 6.4's was measured to report success on a full disk after it
/// had truncated the good file.
///
/// The error is the errno of the step that failed.
std::expected<void, int> replaceFile(const QByteArray& hostPath, const QByteArray& bytes);

} // namespace tessellar
