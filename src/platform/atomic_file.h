#pragma once

#include <QByteArray>

#include <expected>

namespace tessellar {

/// Replaces the file at `hostPath` by one with `bytes`: a temporary file in the same folder, a full
/// write, fsync (F_FULLFSYNC on a Mac), rename, fsync of the folder. Success means that the bytes are
/// on the disk; after a failure, or a kill at any moment, the file is whole: the old one, or the new
/// one where only the last step failed. The mode of a file that is replaced is kept, and its owner
/// where the process may give files away; a new one is readable by its owner alone. A symbolic link is
/// replaced by the file, not followed.
///
/// The temporary files are called ".tessellar-save-N". One that a killed process left is taken over by
/// a later save, so that a folder never holds more of them than there were saves at once.
///
/// Our own rather than QSaveFile: Qt 6.4's was measured to report success on a full disk after it
/// had truncated the good file.
///
/// Any thread may call it, several for one file too: the last one to end wins. The error is the errno
/// of the step that failed.
std::expected<void, int> replaceFile(const QByteArray& hostPath, const QByteArray& bytes);

/// The same for a name in an open folder. `directory` must be open for reading.
std::expected<void, int> replaceFileAt(int directory, const QByteArray& name, const QByteArray& bytes);

/// What was written to a file, or changed in a folder, is on the disk afterwards, past the drive's
/// cache. 0 or an errno.
int flushToDisk(int descriptor);

} // namespace tessellar
