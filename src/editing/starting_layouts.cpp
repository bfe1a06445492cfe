#include "editing/starting_layouts.h"

#include "model/reconciliation.h"

#include <QMap>

#include <map>

namespace tessellar {

Pages filledPages(const Page& tiles, qsizetype capacity) {
    Pages pages;
    for (qsizetype i = 0; i < tiles.size(); i += capacity)
        pages.append(tiles.sliced(i, std::min(capacity, tiles.size() - i)));
    return pages;
}

Pages layoutByCategory(const QList<AppEntry>& apps, const Page& first, const GridCapacities& capacities,
                       const Locale& locale, UuidSource& uuids) {
    QMap<QString, QList<AppEntry>> ofCategory;
    QList<AppEntry> others;
    for (const AppEntry& app : apps) {
        const auto name = app.category ? categoryDisplayName(*app.category) : std::nullopt;
        (name ? ofCategory[*name] : others).append(app);
    }
    std::map<QByteArray, FolderEntry> folders;
    for (const auto& [name, members] : ofCategory.asKeyValueRange()) {
        if (members.size() < 2) {
            others += members;
            continue;
        }
        folders[locale.nameSortKey(name)] = {.id = uuids.next(),
                                             .name = name,
                                             .customSymbolName = {},
                                             .pages =
                                                 defaultLayout(members, capacities.folder, locale)};
    }
    Page tiles = first;
    for (const auto& [key, folder] : folders)
        tiles.append(folder);
    for (const Page& page : defaultLayout(others, capacities.page, locale))
        tiles += page;
    return filledPages(tiles, capacities.page);
}

} // namespace tessellar
