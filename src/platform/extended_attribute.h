#pragma once

#include "platform/file_system.h"

#include <QByteArray>

#include <optional>

namespace tessellar {

/// The value of an extended attribute of a file or folder, if it has one of no more than so many bytes.
/// On a Mac its name is as given; elsewhere it is among the user's own ("user." and the name). Does not
/// read the file.
std::optional<QByteArray> extendedAttribute(const FileSystem& files, const QString& path,
                                            const char* name, std::size_t maximumBytes);

} // namespace tessellar
