#pragma once

#include "cleanup/related_file.h"

#include <stop_token>

namespace tessellar {

/// The outcome for one item: its path in the Trash, or why it was not moved.
struct TrashResult {
    std::optional<QString> trashedPath;
    std::optional<QString> failure;

    bool operator==(const TrashResult&) const = default;
};

/// Moves items to the user's Trash.
class Trash {
public:
    virtual ~Trash() = default;
    /// One result per path, in order. Blocks; call on a worker.
    virtual QList<TrashResult> moveToTrash(const QStringList& paths, std::stop_token stop) = 0;
};

/// Moves an item back from the Trash, never replacing anything; recreates its folder if needed. With an
/// identity, only that very item is restored; its volume's device number may have changed.
std::expected<void, FileError> restoreFromTrash(const FileSystem& files, const QString& trashedPath,
                                                const QString& originalPath,
                                                const std::optional<FileIdentity>& identity = {});

} // namespace tessellar
