#pragma once

#include "helper/confined_files.h"

#include <stop_token>

namespace tessellar {

/// The helper's private folder on the volume of a Library; nobody else may enter it. A rename takes
/// whatever currently has the name, and in a folder that others can write that may change at any
/// moment. So every item is moved here first and verified here, where nobody can replace it. Anything
/// but the approved item stays here.
class Staging {
public:
    /// In the topmost folder on the path to `place`; created if missing.
    static std::expected<Staging, QString> open(const ConfinedFiles& files, const NamedPlace& place);
    /// As a path under the root.
    static QString path(const NamedPlace& place, const QByteArray& name);

    struct Refusal {
        bool isKept = false; ///< another item was taken, and is now kept here
        QString sentence;
    };
    std::expected<void, Refusal> take(const HeldItem& item, const QByteArray& name) const;
    /// The item with this name; the error is an errno.
    std::expected<ItemStatus, int> statusOf(const QByteArray& name) const {
        return itemStatusAt(_folder.get(), name);
    }
    /// Renames into a folder; `toName` must be unused. Returns 0 or an errno.
    int give(const QByteArray& name, int toFolder, const QByteArray& toName) const;
    /// Deletes an item recursively. If interrupted, what remains still has the item's identity.
    std::expected<void, QString> destroy(const QByteArray& name, const ItemStatus& taken,
                                         std::stop_token stop) const;
    /// Removes the folder if it is empty.
    void tidy() const;

private:
    Staging(Descriptor around, Descriptor folder)
        : _around(std::move(around)), _folder(std::move(folder)) {}

    Descriptor _around;
    Descriptor _folder;
};

} // namespace tessellar
