#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tessellar {

/// An absolute path as the names on its way.
struct NamedPlace {
    QList<QByteArray> folders;
    QByteArray name;

    QByteArray folderPath() const { return folders.join('/'); } ///< relative to the root
};

/// Takes a path apart; nothing for one that is not absolute, too long, or has an empty, "." or ".."
/// component.
std::optional<NamedPlace> namedPlace(const QString& path);

/// Whether the helper may take an item from a place, or put one back there. The folders are compiled in
/// and compared by component, case ignored: strictly below one of those of "/Library" in which
/// applications leave files, but for what is Apple's or the helper's own.
bool isAllowed(const NamedPlace& place);

} // namespace tessellar
