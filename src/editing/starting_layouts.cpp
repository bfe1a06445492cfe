#include "editing/starting_layouts.h"

#include "model/reconciliation.h"

#include <QMap>

#include <map>

namespace tessellar {

Pages layoutByName(const QList<AppEntry>& apps, const Page& first, const GridCapacities& capacities,
                   const Locale& locale) {
    Pages pages{first};
    for (const Page& page : defaultLayout(apps, capacities.page, locale))
        pages.first() += page;
    if (pages.first().isEmpty())
        return {};
    cascadeOverflow(pages, {}, capacities.page, {});
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
    return layoutByName(others, tiles, capacities, locale);
}

bool isUnarranged(const LayoutDocument& document, const Locale& locale) {
    if (!document.hiddenKeys.isEmpty())
        return false;
    const AppEntry* last = nullptr;
    for (const Page& page : document.pages)
        for (const LaunchpadItem& item : page) {
            const AppEntry* app = item.app();
            if (!app || app->alias || app->name != app->originalName ||
                (last && locale.compareNames(last->name, app->name) > 0))
                return false;
            last = app;
        }
    return true;
}

} // namespace tessellar
