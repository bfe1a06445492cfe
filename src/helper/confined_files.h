#pragma once

#include "cleanup/related_file.h"
#include "helper/allowed_places.h"
#include "platform/descriptor.h"

#include <expected>
#include <stop_token>

namespace tessellar {

/// What an item was when it was taken: another file in its place has other values.
struct TakenItem {
    FileIdentity identity;
    std::uint32_t owner = 0;
    std::uint32_t mode = 0;

    bool operator==(const TakenItem&) const = default;
};

/// An item in an open folder, held open itself: its inode belongs to no other file as long as this
/// lives.
struct HeldItem {
    Descriptor folder;
    Descriptor item;
    QByteArray name;
    TakenItem taken;
};

/// Files by descriptors from the root alone: no link is followed, no mount crossed below the folders of
/// the root, and nothing that anyone swaps meanwhile leads anywhere else. Errors are sentences.
class ConfinedFiles {
public:
    explicit ConfinedFiles(const QByteArray& hostRoot);

    /// A folder, and its owner when one is demanded.
    std::expected<Descriptor, QString> folder(const QByteArray& relativePath,
                                              std::optional<std::uint32_t> owner = {}) const;
    /// A folder or regular file that is what was approved. A mount point is neither, nor is a folder in
    /// which one lies.
    std::expected<HeldItem, QString> hold(const NamedPlace& place, const FileIdentity& approved) const;

    /// Renames into a folder under a name that is free; then looks whether that was the item, and puts
    /// back what was not. EEXIST as `nameTaken`.
    struct MoveError {
        bool nameTaken = false;
        QString sentence;
    };
    static std::expected<void, MoveError> move(const HeldItem& item, int toFolder,
                                               const QByteArray& toName);

    /// Removes an item with all in it; stopped or killed midway, the rest is still the same item.
    static std::expected<void, QString> remove(const HeldItem& item, std::stop_token stop = {});

private:
    QByteArray _rootPath;
    Descriptor _root;
};

} // namespace tessellar
