#pragma once

#include <QByteArray>

#include <expected>

namespace tessellar {

/// Atomically replaces the file at `hostPath` with `bytes`: temporary file in the same folder, full
/// write, fsync (F_FULLFSYNC on macOS), rename, fsync of the folder. Success means that the bytes are
/// on the disk. After a failure, or a kill at any moment, the file is whole: the old one, or the new
/// one if only the last fsync failed. An existing file keeps its mode and, for root, its owner; a new
/// one is readable by its owner only. A symbolic link is replaced, not followed.
///
/// Temporary files are named ".tessellar-save-N". Later saves reuse those that killed processes left,
/// so a folder never holds more of them than there were concurrent saves.
///
/// Used instead of QSaveFile: Qt 6.4's was measured to report success on a full disk after truncating
/// the good file.
///
/// Thread-safe, even for the same file: the last call to finish wins. The error is the errno of the
/// failed step.
std::expected<void, int> replaceFile(const QByteArray& hostPath, const QByteArray& bytes);

/// The same for a name in an open folder. `directory` must be open for reading.
std::expected<void, int> replaceFileAt(int directory, const QByteArray& name, const QByteArray& bytes);

/// Flushes a file's contents or a folder's entries to the disk, through the drive's cache. Returns 0 or
/// an errno.
int flushToDisk(int descriptor);

} // namespace tessellar
