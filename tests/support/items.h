#pragma once

#include "model/items.h"

#include <QHash>

namespace tessellar::test {

/// An identifier that follows from a name, so that tests can speak of tiles by name.
inline QUuid idOf(const QString& name) { return QUuid::createUuidV5(QUuid(), name); }

/// An application called `name`, in /Applications, with the identifier "org.example.name".
inline AppEntry app(const QString& name) {
    AppEntry entry;
    entry.id = idOf(name);
    entry.name = entry.originalName = name;
    entry.bundleIdentifier = QStringLiteral("org.example.") + name.toLower();
    entry.path = QStringLiteral("/Applications/%1.app").arg(name);
    return entry;
}

inline FolderEntry folder(const QString& name, const Pages& pages) {
    return {idOf(name), name, {}, pages};
}

/// Pages as text, "a b|c [f: d e|g]": tiles by name, pages apart by bars, folders in brackets, aliases
/// with a tilde, smart folders as stars.
inline QString sketch(const Pages& pages) {
    QStringList shownPages;
    for (const Page& page : pages) {
        QStringList tiles;
        for (const LaunchpadItem& item : page) {
            if (const AppEntry* entry = item.app())
                tiles += (entry->alias ? QStringLiteral("~") : QString()) + entry->name;
            else if (const FolderEntry* inner = item.folder())
                tiles += QStringLiteral("[%1: %2]").arg(inner->name, sketch(inner->pages));
            else
                tiles += QStringLiteral("*");
        }
        shownPages += tiles.join(u' ');
    }
    return shownPages.join(u'|');
}

} // namespace tessellar::test
