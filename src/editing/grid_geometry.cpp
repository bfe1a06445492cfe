#include "editing/grid_geometry.h"

#include <algorithm>

namespace tessellar {

bool isShown(const LaunchpadItem& item, const QSet<QString>& hiddenKeys) {
    if (hiddenKeys.isEmpty())
        return true;
    if (const AppEntry* entry = item.app())
        return !hiddenKeys.contains(appKey(*entry));
    const FolderEntry* folder = item.folder();
    if (!folder)
        return true;
    bool isEmpty = true;
    for (const Page& page : folder->pages) {
        for (const LaunchpadItem& inner : page) {
            if (isShown(inner, hiddenKeys))
                return true;
            isEmpty = false;
        }
    }
    return isEmpty;
}

ShownPages::ShownPages(const Pages& pages, const QSet<QString>& hiddenKeys, int capacity)
    : _pages(pages) {
    capacity = std::max(capacity, 1);
    for (qsizetype stored = 0; stored < pages.size(); ++stored) {
        const Page& page = pages.at(stored);
        ShownPage shown{stored, {}};
        for (qsizetype index = 0; index < page.size(); ++index) {
            if (!isShown(page.at(index), hiddenKeys))
                continue;
            if (shown.indices.size() == capacity) {
                _shown.append(shown);
                shown.indices.clear();
            }
            shown.indices.append(index);
        }
        if (!shown.indices.isEmpty())
            _shown.append(shown);
    }
}

Page ShownPages::tiles(qsizetype page) const {
    Page result;
    if (page < 0 || page >= _shown.size())
        return result;
    const ShownPage& shown = _shown.at(page);
    const Page& stored = _pages.at(shown.stored);
    if (shown.indices.size() == stored.size())
        return stored;
    result.reserve(shown.indices.size());
    for (const qsizetype index : shown.indices)
        result.append(stored.at(index));
    return result;
}

std::optional<StoredPlace> ShownPages::tileAt(ShownPlace place) const {
    if (place.page < 0 || place.page >= _shown.size())
        return std::nullopt;
    const ShownPage& shown = _shown.at(place.page);
    if (place.slot < 0 || place.slot >= shown.indices.size())
        return std::nullopt;
    return StoredPlace{shown.stored, shown.indices.at(place.slot)};
}

StoredPlace ShownPages::insertionAt(ShownPlace place) const {
    if (place.page < 0 || place.page >= _shown.size())
        return {_pages.size(), 0};
    const ShownPage& shown = _shown.at(place.page);
    if (const auto tile = tileAt({place.page, std::max<qsizetype>(place.slot, 0)}))
        return *tile;
    return {shown.stored, shown.indices.last() + 1};
}

std::optional<ShownPlace> ShownPages::placeOf(StoredPlace place) const {
    for (qsizetype page = 0; page < _shown.size(); ++page) {
        const ShownPage& shown = _shown.at(page);
        if (shown.stored != place.page)
            continue;
        const auto found = std::ranges::lower_bound(shown.indices, place.index);
        if (found != shown.indices.end() && *found == place.index)
            return ShownPlace{page, found - shown.indices.begin()};
    }
    return std::nullopt;
}

std::optional<ShownPlace> ShownPages::placeOf(const QUuid& id) const {
    for (qsizetype page = 0; page < _shown.size(); ++page) {
        const ShownPage& shown = _shown.at(page);
        for (qsizetype slot = 0; slot < shown.indices.size(); ++slot)
            if (_pages.at(shown.stored).at(shown.indices.at(slot)).id() == id)
                return ShownPlace{page, slot};
    }
    return std::nullopt;
}

} // namespace tessellar
