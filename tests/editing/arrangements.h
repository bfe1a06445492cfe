#pragma once

#include "model/drawn.h"

namespace tessellar::test {

// Arrangements of tiles that go by numbers, which are their names unless they are given another.
inline QUuid tileID(unsigned number) { return idOf(QString::number(number)); }

inline AppEntry app(unsigned number, const QString& name = {}) {
    AppEntry entry = app(QString::number(number));
    if (!name.isNull())
        entry.name = entry.originalName = name;
    return entry;
}

inline FolderEntry folder(unsigned number, const Pages& pages, const QString& name = {}) {
    FolderEntry entry = folder(QString::number(number), pages);
    if (!name.isNull())
        entry.name = name;
    return entry;
}

} // namespace tessellar::test
