#include "editing/layout_edits.h"

#include <algorithm>

namespace tessellar {
namespace {

QString nameOf(const LaunchpadItem& item, const SmartFolderNames& names) {
    if (const AppEntry* entry = item.app())
        return entry->name;
    if (const FolderEntry* folder = item.folder())
        return folder->name;
    return names ? names(item.id()) : QString();
}

/// Stable: tiles with the same name keep their order.
Page sorted(const Page& tiles, const Locale& locale, const SmartFolderNames& names) {
    QList<std::pair<QByteArray, qsizetype>> order;
    order.reserve(tiles.size());
    for (qsizetype i = 0; i < tiles.size(); ++i)
        order.append({locale.nameSortKey(nameOf(tiles.at(i), names)), i});
    std::ranges::sort(order);
    Page result;
    result.reserve(tiles.size());
    for (const auto& [key, index] : std::as_const(order))
        result.append(tiles.at(index));
    return result;
}

/// Sorts the tiles of all pages together and fills the pages up to the grid's capacity.
Pages sortedAndFilled(const Pages& pages, const QSet<QString>& hiddenKeys, qsizetype capacity,
                      const Locale& locale, const SmartFolderNames& names) {
    Page tiles;
    for (const Page& page : pages)
        tiles += page;
    Pages result{sorted(tiles, locale, names)};
    cascadeOverflow(result, hiddenKeys, capacity, {});
    return result;
}

} // namespace

EditResult sortPage(const LayoutDocument& layout, const std::optional<QUuid>& folder, qsizetype page,
                    const Locale& locale, const SmartFolderNames& names) {
    const Pages* list = pagesOf(layout.pages, folder);
    if (!list)
        return std::unexpected(EditRefusal::noSuchFolder);
    if (page < 0 || page >= list->size())
        return std::unexpected(EditRefusal::noSuchPlace);
    LayoutDocument result = layout;
    result.pages = withPagesChanged(layout.pages, folder, [&](Pages& pages) {
        pages[page] = sorted(pages.at(page), locale, names);
    });
    return result;
}

LayoutDocument sortEverything(const LayoutDocument& layout, const Locale& locale,
                              const SmartFolderNames& names, const GridCapacities& capacities) {
    const TreeRewriter rewriter{.leave = [&](const LaunchpadItem& item) -> std::optional<Page> {
        FolderEntry folder = *item.folder();
        folder.pages =
            sortedAndFilled(folder.pages, layout.hiddenKeys, capacities.folder, locale, names);
        return Page{std::move(folder)};
    }};
    LayoutDocument result = layout;
    result.pages = tidied(sortedAndFilled(rewriter.rewritten(layout.pages), layout.hiddenKeys,
                                          capacities.page, locale, names));
    return result;
}

} // namespace tessellar
