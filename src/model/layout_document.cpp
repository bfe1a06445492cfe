#include "model/layout_document.h"

#include <algorithm>

namespace tessellar {

int folderDepth(const Pages& pages) {
    int depth = 0;
    for (const Page& page : pages)
        for (const LaunchpadItem& item : page)
            if (const FolderEntry* folder = item.folder())
                depth = std::max(depth, 1 + folderDepth(folder->pages));
    return depth;
}

ItemCounts countItems(const Pages& pages) {
    ItemCounts counts{.pages = pages.size()};
    forEachItem(pages, [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app())
            counts.applications += app->alias ? 0 : 1;
        else
            ++counts.folders;
        return true;
    });
    return counts;
}

namespace json {

Decoded<QSet<QString>> Codec<QSet<QString>>::decode(const QJsonValue& value) {
    auto list = json::decode<QList<QString>>(value);
    if (!list)
        return std::unexpected(std::move(list.error()));
    return QSet<QString>(list->begin(), list->end());
}

QJsonValue Codec<QSet<QString>>::encode(const QSet<QString>& set) {
    QList<QString> list(set.begin(), set.end());
    std::ranges::sort(list);
    return json::encode(list);
}

} // namespace json
} // namespace tessellar
