#pragma once

#include "helper/allowed_places.h"
#include "platform/descriptor.h"
#include "privileged/file_identity.h"

#include <sys/stat.h>

#include <expected>

namespace tessellar {

/// What an item was when it was taken: another file in its place has other values.
struct TakenItem {
    FileIdentity identity;
    std::uint32_t owner = 0;
    std::uint32_t mode = 0;

    bool operator==(const TakenItem&) const = default;
};

TakenItem takenOf(const struct stat& status);
/// What stands under a name; no link is followed. The error is errno's.
std::expected<TakenItem, int> takenAt(int folder, const QByteArray& name);

/// What an errno means to the user.
QString fileSentence(int error);

/// An item in an open folder, held open itself: its inode belongs to no other file as long as this
/// lives.
struct HeldItem {
    Descriptor folder;
    Descriptor item;
    QByteArray name;
    TakenItem taken;
};

/// Files by descriptors from the root alone: no link is followed, no mount crossed below the folders of
/// the root, and nothing that anyone swaps meanwhile leads anywhere else.
class ConfinedFiles {
public:
    explicit ConfinedFiles(const QByteArray& hostRoot);

    /// A folder, and its owner when one is demanded: EPERM for someone else's. The error is errno's.
    std::expected<Descriptor, int> folder(const QByteArray& relativePath,
                                          std::optional<std::uint32_t> owner = {}) const;
    /// A folder or regular file that is what was approved. A mount point is neither, nor is a folder in
    /// which one lies.
    std::expected<HeldItem, QString> hold(const NamedPlace& place, const FileIdentity& approved) const;

private:
    QByteArray _rootPath;
    Descriptor _root;
};

} // namespace tessellar
