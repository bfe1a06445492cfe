#pragma once

#include "platform/file_system.h"

#include <QByteArray>

#include <optional>

namespace tessellar {

/// The value of an extended attribute; nullopt if missing or longer than `maximumBytes`. `name` is used
/// as is on macOS and prefixed with "user." elsewhere. Does not read the file's contents.
std::optional<QByteArray> extendedAttribute(const FileSystem& files, const QString& path,
                                            const char* name, std::size_t maximumBytes);

} // namespace tessellar
