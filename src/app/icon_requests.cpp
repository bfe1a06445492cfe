#include "app/icon_requests.h"

#include "app/image_item.h"
#include "launcher/smart_folder_library.h"

#include <QSet>

namespace tessellar {

IconRequest iconRequest(const AppEntry& app) { return {appKey(app), app.path}; }

QList<IconRequest> previewIcons(const FolderEntry& folder) {
    QList<IconRequest> icons;
    for (const LaunchpadItem& item : previewItems(folder, previewCount)) {
        if (const AppEntry* app = item.app())
            icons.append(iconRequest(*app));
        else if (const FolderEntry* nested = item.folder())
            for (const AppEntry& first : allApplications(*nested).mid(0, 1))
                icons.append(iconRequest(first));
    }
    return icons;
}

QList<IconRequest> pageIcons(const Page& page) {
    QList<IconRequest> icons;
    for (const LaunchpadItem& item : page) {
        if (const AppEntry* app = item.app())
            icons.append(iconRequest(*app));
        else if (const FolderEntry* folder = item.folder())
            icons += previewIcons(*folder);
    }
    return icons;
}

QVariantList pictureTiles(const Page& page, const SmartFolderLibrary& smartFolders) {
    QVariantList tiles;
    for (const LaunchpadItem& item : page) {
        QStringList keys;
        QString symbol;
        IconItem::Kind kind = IconItem::App;
        if (const AppEntry* app = item.app()) {
            keys.append(appKey(*app));
        } else if (const FolderEntry* folder = item.folder()) {
            kind = IconItem::Folder;
            symbol = folder->customSymbolName.value_or(QString());
            for (const IconRequest& request : previewIcons(*folder))
                keys.append(request.appKey);
        } else {
            kind = IconItem::SmartFolder;
            const SmartFolderDefinition* definition =
                smartFolders.definition(item.smartFolder()->definitionID);
            symbol = definition ? definition->customSymbolName.value_or(QString()) : QString();
        }
        tiles.append(QVariantMap{{QStringLiteral("kind"), int(kind)},
                                 {QStringLiteral("appKeys"), keys},
                                 {QStringLiteral("symbolName"), symbol}});
    }
    return tiles;
}

namespace {

/// Iterates over all applications in the grid, page by page, including those in folders.
class AllOfGrid {
public:
    explicit AllOfGrid(TilePages pages) : _pages(std::move(pages)) {}

    std::optional<IconRequest> operator()() {
        while (_next == _ofPage.size()) {
            if (_page == _pages.count)
                return std::nullopt;
            _ofPage.clear();
            _next = 0;
            for (const LaunchpadItem& item : _pages.tiles(_page++))
                add(item);
        }
        return _ofPage.at(_next++);
    }

private:
    void add(const LaunchpadItem& item) {
        if (const AppEntry* app = item.app())
            _ofPage.append(iconRequest(*app));
        else if (const FolderEntry* folder = item.folder())
            for (const AppEntry& inside : allApplications(*folder))
                _ofPage.append(iconRequest(inside));
    }

    TilePages _pages;
    qsizetype _page = 0;
    QList<IconRequest> _ofPage;
    qsizetype _next = 0;
};

} // namespace

IconLoader::Requests iconRequests(const GridModel& grid, const GridModel* over) {
    IconLoader::Requests requests;
    QSet<QString> seen;
    const auto add = [&](QList<IconRequest>& list, const IconRequest& request) {
        if (seen.contains(request.appKey))
            return;
        seen.insert(request.appKey);
        list.append(request);
    };
    const auto addPage = [&](QList<IconRequest>& list, const GridModel* model, int by) {
        if (const PageModel* page = model ? model->tilesOf(model->page() + by) : nullptr)
            for (const TileView& tile : page->tiles())
                for (const IconRequest& request : tile.isVacant ? QList<IconRequest>() : tile.icons)
                    add(list, request);
    };
    for (const GridModel* model : {over, &grid})
        addPage(requests.visible, model, 0);
    for (const GridModel* model : {over, &grid})
        for (const int beside : {1, -1})
            addPage(requests.neighbours, model, beside);
    if (grid.page() < grid.pages().count)
        for (const LaunchpadItem& item : grid.pages().tiles(grid.page()))
            if (const FolderEntry* folder = item.folder())
                for (const AppEntry& inside : allApplications(*folder))
                    add(requests.neighbours, iconRequest(inside));
    requests.rest = AllOfGrid(grid.pages());
    return requests;
}

} // namespace tessellar
