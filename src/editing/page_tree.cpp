#include "editing/page_tree.h"

#include <algorithm>

namespace tessellar {

std::optional<LayoutPlace> LayoutPlace::fromText(QStringView text) {
    LayoutPlace place;
    if (const auto slash = text.indexOf(u'/'); slash >= 0) {
        const auto id = json::decode<QUuid>(text.first(slash).toString());
        if (!id)
            return std::nullopt;
        place.folder = *id;
        text = text.sliced(slash + 1);
    }
    const auto number = [](QStringView digits) -> std::optional<qsizetype> {
        const bool plain = std::ranges::all_of(digits, [](QChar c) { return c >= u'0' && c <= u'9'; });
        bool fits = false;
        const int value = digits.toInt(&fits);
        return plain && fits ? std::optional<qsizetype>(value) : std::nullopt;
    };
    const auto colon = text.indexOf(u':');
    const auto page = number(colon < 0 ? text : text.first(colon));
    if (!page)
        return std::nullopt;
    place.page = *page;
    if (colon >= 0 && colon + 1 < text.size()) {
        const auto index = number(text.sliced(colon + 1));
        if (!index)
            return std::nullopt;
        place.index = *index;
    }
    return place;
}

std::optional<TileLocation> locate(const Pages& pages, const QUuid& id) {
    for (qsizetype page = 0; page < pages.size(); ++page) {
        for (qsizetype index = 0; index < pages.at(page).size(); ++index) {
            const LaunchpadItem& item = pages.at(page).at(index);
            if (item.id() == id)
                return TileLocation{{}, {page, index}, &item};
            const FolderEntry* folder = item.folder();
            if (!folder)
                continue;
            if (auto found = locate(folder->pages, id)) {
                found->folders.prepend(folder->id);
                return found;
            }
        }
    }
    return std::nullopt;
}

std::optional<QUuid> findTile(const Pages& pages, const QString& idOrAppKey, AppTiles which) {
    if (const auto id = json::decode<QUuid>(idOrAppKey); id && locate(pages, *id))
        return *id;
    std::optional<QUuid> own, alias;
    forEachItem(pages, [&](const LaunchpadItem& item) {
        const AppEntry* entry = item.app();
        if (!entry || appKey(*entry) != idOrAppKey)
            return true;
        auto& found = entry->alias ? alias : own;
        if (!found)
            found = entry->id;
        return !own || which == AppTiles::aliasesOnly;
    });
    return own && which == AppTiles::ownFirst ? own : alias;
}

const Pages* pagesOf(const Pages& pages, const std::optional<QUuid>& folder) {
    if (!folder)
        return &pages;
    const auto found = locate(pages, *folder);
    const FolderEntry* entry = found ? found->item->folder() : nullptr;
    return entry ? &entry->pages : nullptr;
}

Pages TreeRewriter::rewritten(const Pages& pages) const { return changed(pages).value_or(pages); }

std::optional<Pages> TreeRewriter::changed(const Pages& pages) const {
    std::optional<Pages> result;
    for (qsizetype number = 0; number < pages.size(); ++number) {
        const Page& page = pages.at(number);
        std::optional<Page> newPage;
        for (qsizetype index = 0; index < page.size(); ++index) {
            auto tiles = changed(page.at(index));
            if (tiles && !newPage)
                newPage = page.first(index);
            if (tiles)
                newPage->append(*std::move(tiles));
            else if (newPage)
                newPage->append(page.at(index));
        }
        if (!newPage)
            continue;
        if (!result)
            result = pages;
        (*result)[number] = *std::move(newPage);
    }
    return result;
}

std::optional<Page> TreeRewriter::changed(const LaunchpadItem& item) const {
    if (enter)
        if (auto tiles = enter(item))
            return tiles;
    const FolderEntry* folder = item.folder();
    if (!folder)
        return std::nullopt;
    auto contents = changed(folder->pages);
    if (!contents)
        return leave ? leave(item) : std::nullopt;
    FolderEntry copy = *folder;
    copy.pages = *std::move(contents);
    LaunchpadItem newItem(std::move(copy));
    if (leave)
        if (auto tiles = leave(newItem))
            return tiles;
    return Page{std::move(newItem)};
}

Pages withPagesChanged(const Pages& pages, const std::optional<QUuid>& folder,
                       const std::function<void(Pages&)>& change) {
    if (!folder) {
        Pages result = pages;
        change(result);
        return result;
    }
    return withTileChanged(pages, *folder, [&](LaunchpadItem& item) {
        if (FolderEntry* entry = item.folder())
            change(entry->pages);
    });
}

Pages withTileChanged(const Pages& pages, const QUuid& id,
                      const std::function<void(LaunchpadItem&)>& change) {
    bool isDone = false;
    const TreeRewriter rewriter{.enter = [&](const LaunchpadItem& item) -> std::optional<Page> {
        if (isDone || item.id() != id)
            return std::nullopt;
        isDone = true;
        LaunchpadItem copy = item;
        change(copy);
        return Page{std::move(copy)};
    }};
    return rewriter.rewritten(pages);
}

Page takeTiles(Pages& pages, QSet<QUuid> ids) {
    Page taken;
    const TreeRewriter rewriter{.enter = [&](const LaunchpadItem& item) -> std::optional<Page> {
        if (!ids.remove(item.id()))
            return std::nullopt;
        taken.append(item);
        return Page();
    }};
    pages = rewriter.rewritten(pages);
    return taken;
}

Pages tidied(const Pages& pages) {
    const auto dropEmptyPages = [](Pages& list) {
        if (std::ranges::any_of(std::as_const(list), &Page::isEmpty))
            list.removeIf([](const Page& page) { return page.isEmpty(); });
    };
    const TreeRewriter rewriter{.leave = [&](const LaunchpadItem& item) -> std::optional<Page> {
        const FolderEntry& folder = *item.folder();
        if (Page firstTwo = previewItems(folder, 2); firstTwo.size() < 2)
            return firstTwo;
        if (!std::ranges::any_of(folder.pages, &Page::isEmpty))
            return std::nullopt;
        FolderEntry copy = folder;
        dropEmptyPages(copy.pages);
        return Page{std::move(copy)};
    }};
    Pages result = rewriter.rewritten(pages);
    dropEmptyPages(result);
    return result;
}

QList<qsizetype> shownCounts(const Pages& pages, const QSet<QString>& hiddenKeys) {
    QList<qsizetype> counts;
    for (const Page& page : pages)
        counts.append(std::ranges::count_if(
            page, [&](const LaunchpadItem& item) { return isShown(item, hiddenKeys); }));
    return counts;
}

bool cascadeOverflow(Pages& pages, const QSet<QString>& hiddenKeys, qsizetype capacity,
                     const QList<qsizetype>& before) {
    capacity = std::max<qsizetype>(capacity, 1);
    Page passedOn;
    bool isChanged = false;
    for (qsizetype number = 0; number < pages.size() || !passedOn.isEmpty(); ++number) {
        const qsizetype gridPages =
            std::max<qsizetype>((before.value(number) + capacity - 1) / capacity, 1);
        qsizetype room = gridPages * capacity;
        const Page page = passedOn + std::as_const(pages).value(number);
        const auto firstExcess = std::ranges::find_if(
            page, [&](const LaunchpadItem& item) { return isShown(item, hiddenKeys) && --room < 0; });
        if (passedOn.isEmpty() && firstExcess == page.end())
            continue;
        isChanged = true;
        if (number == pages.size())
            pages.append(Page());
        pages[number] = page.first(firstExcess - page.begin());
        passedOn = page.sliced(firstExcess - page.begin());
    }
    return isChanged;
}

} // namespace tessellar
