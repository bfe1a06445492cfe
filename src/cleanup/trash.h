#pragma once

#include "cleanup/related_file.h"

#include <stop_token>

namespace tessellar {

/// What became of one item that was to go to the Trash: where it lies there, or why it does not.
struct TrashResult {
    std::optional<QString> trashedPath;
    std::optional<QString> failure;

    bool operator==(const TrashResult&) const = default;
};

/// Moves items to the user's Trash.
class Trash {
public:
    virtual ~Trash() = default;
    /// One result for each path, in order. Blocks; for a worker.
    virtual QList<TrashResult> moveToTrash(const QStringList& paths, std::stop_token stop) = 0;
};

/// Puts an item back from the Trash to where it was and replaces nothing. The folder around it is made
/// anew where it has gone. With an identity, only the very item goes back; its volume may have another
/// number by now.
std::expected<void, FileError> restoreFromTrash(const FileSystem& files, const QString& trashedPath,
                                                const QString& originalPath,
                                                const std::optional<FileIdentity>& identity = {});

} // namespace tessellar
