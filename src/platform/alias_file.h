#pragma once

#include "platform/file_system.h"

#include <QString>

#include <expected>
#include <optional>

namespace tessellar {

/// True for a regular file that begins as the Finder's alias files do. Reads at most 16 bytes.
std::expected<bool, FileError> isAliasFile(const FileSystem& files, const QString& path);

/// Where an alias file points, as far as its bytes say: the path components of its first table that
/// has them. Nothing for a file that is none, is damaged or larger than 1 MiB. The target need not
/// exist.
std::optional<QString> aliasTarget(const FileSystem& files, const QString& path);

/// The same for bytes at hand. Every offset is bounded; a loop among its tables ends the reading.
std::optional<QString> aliasTarget(const QByteArray& bytes);

} // namespace tessellar
