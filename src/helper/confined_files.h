#pragma once

#include "helper/allowed_places.h"
#include "platform/descriptor.h"
#include "privileged/file_identity.h"

#include <sys/stat.h>

#include <expected>

namespace tessellar {

/// Identifies an item that was taken; any replacement differs.
struct ItemStatus {
    FileIdentity identity;
    std::uint32_t owner = 0;
    std::uint32_t mode = 0;

    bool operator==(const ItemStatus&) const = default;
};

ItemStatus itemStatus(const struct stat& status);
/// The item with this name; does not follow links. The error is an errno.
std::expected<ItemStatus, int> itemStatusAt(int folder, const QByteArray& name);

/// Describes an errno to the user.
QString fileSentence(int error);

/// An item in an open folder. The item is also held open, so that its inode cannot be reused meanwhile.
struct HeldItem {
    Descriptor folder;
    Descriptor item;
    QByteArray name;
    ItemStatus taken;
};

/// Access to files by descriptor, starting at the root: never follows links, never crosses mounts below
/// the root's folders, and cannot be redirected by concurrent replacements.
class ConfinedFiles {
public:
    explicit ConfinedFiles(const QByteArray& hostRoot);

    /// Opens a folder; EPERM if `owner` is given and does not own it. The error is an errno.
    std::expected<Descriptor, int> folder(const QByteArray& relativePath,
                                          std::optional<std::uint32_t> owner = {}) const;
    /// A folder or regular file, if it is the approved one. Refuses mount points and folders that
    /// contain one.
    std::expected<HeldItem, QString> hold(const NamedPlace& place, const FileIdentity& approved) const;

private:
    QByteArray _rootPath;
    Descriptor _root;
};

} // namespace tessellar
