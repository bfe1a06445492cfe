#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tessellar {

/// An absolute path, split into its components.
struct NamedPlace {
    QList<QByteArray> folders;
    QByteArray name;

    QByteArray folderPath() const { return folders.join('/'); } ///< relative to the root
};

/// Splits a path; nullopt if it is not absolute, too long, or has an empty, "." or ".." component.
std::optional<NamedPlace> namedPlace(const QString& path);

/// Whether the helper may take an item from this path, or restore one to it. The allowed folders are
/// compiled in and compared by component, ignoring case: strictly below the folders of "/Library" where
/// applications leave files, except for items of Apple or the helper.
bool isAllowed(const NamedPlace& place);

} // namespace tessellar
