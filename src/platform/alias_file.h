#pragma once

#include "platform/file_system.h"

#include <QString>

#include <expected>
#include <optional>

namespace tessellar {

/// True for a regular file with the header of a Finder alias. Reads at most 16 bytes.
std::expected<bool, FileError> isAliasFile(const FileSystem& files, const QString& path);

/// The path stored in a Finder alias file; the target need not exist. nullopt for any other file, and
/// for one that is damaged or larger than 1 MiB.
std::optional<QString> aliasTarget(const FileSystem& files, const QString& path);

/// The same for bytes in memory. Offsets are bounds-checked and cycles among the tables detected.
std::optional<QString> aliasTarget(const QByteArray& bytes);

} // namespace tessellar
