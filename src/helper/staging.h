#pragma once

#include "helper/confined_files.h"

#include <stop_token>

namespace tessellar {

/// The helper's own folder on the volume of a Library, which nobody else may enter. Every item passes
/// through it, for a rename takes whatever stands under a name, and a name in someone else's folder may
/// stand for another file at any moment: only here, where nobody can exchange it any more, is it looked
/// at what was taken. What is not the item stays.
class Staging {
public:
    /// In the first folder on the way to a place; made where it is missing.
    static std::expected<Staging, QString> open(const ConfinedFiles& files, const NamedPlace& place);
    /// As a path under the root.
    static QString path(const NamedPlace& place, const QByteArray& name);

    struct Refusal {
        bool isKept = false; ///< something else was taken, and lies here now
        QString sentence;
    };
    std::expected<void, Refusal> take(const HeldItem& item, const QByteArray& name) const;
    /// What lies here under a name; the error is errno's.
    std::expected<TakenItem, int> look(const QByteArray& name) const {
        return takenAt(_folder.get(), name);
    }
    /// Renames into a folder under a name that must be free; 0 or an errno.
    int give(const QByteArray& name, int toFolder, const QByteArray& toName) const;
    /// Removes an item with all in it. Stopped or killed midway, the rest is still the same item.
    std::expected<void, QString> destroy(const QByteArray& name, const TakenItem& taken,
                                         std::stop_token stop) const;
    /// Removes the folder when nothing lies in it.
    void tidy() const;

private:
    Staging(Descriptor around, Descriptor folder)
        : _around(std::move(around)), _folder(std::move(folder)) {}

    Descriptor _around;
    Descriptor _folder;
};

} // namespace tessellar
