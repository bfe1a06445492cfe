#include "app/icon_wishes.h"

#include <QSet>

namespace tessellar {

QList<AppEntry> previewApplications(const FolderEntry& folder) {
    constexpr qsizetype previewCount = 9;
    QList<AppEntry> apps;
    for (const LaunchpadItem& item : previewItems(folder, previewCount)) {
        if (const AppEntry* app = item.app())
            apps.append(*app);
        else if (const FolderEntry* nested = item.folder())
            apps.append(allApplications(*nested).mid(0, 1));
    }
    return apps;
}

namespace {

class Collector {
public:
    void addPage(const ShownPages& pages, qsizetype page, IconLoader::Phase phase) {
        if (page < 0 || page >= pages.count())
            return;
        for (const LaunchpadItem& item : pages.tiles(page))
            add(item, phase);
    }
    void addAll(const LaunchpadItem& item, IconLoader::Phase phase) {
        if (const FolderEntry* folder = item.folder())
            for (const AppEntry& app : allApplications(*folder))
                add(app, phase);
    }

    IconLoader::Wishes wishes;

private:
    void add(const LaunchpadItem& item, IconLoader::Phase phase) {
        if (const AppEntry* app = item.app())
            return add(*app, phase);
        if (const FolderEntry* folder = item.folder())
            for (const AppEntry& app : previewApplications(*folder))
                add(app, phase);
    }
    void add(const AppEntry& app, IconLoader::Phase phase) {
        const QString key = appKey(app);
        if (_seen.contains(key))
            return;
        _seen.insert(key);
        wishes[phase].append({key, app.path});
    }

    QSet<QString> _seen;
};

} // namespace

IconLoader::Wishes iconWishes(const ShownPages& grid, int page, const ShownPages* openFolder,
                              int folderPage) {
    Collector collector;
    if (openFolder)
        collector.addPage(*openFolder, folderPage, IconLoader::visible);
    collector.addPage(grid, page, IconLoader::visible);

    if (openFolder)
        for (const int beside : {folderPage + 1, folderPage - 1})
            collector.addPage(*openFolder, beside, IconLoader::neighbours);
    for (const int beside : {page + 1, page - 1})
        collector.addPage(grid, beside, IconLoader::neighbours);
    if (page >= 0 && page < grid.count())
        for (const LaunchpadItem& item : grid.tiles(page))
            collector.addAll(item, IconLoader::neighbours);

    for (qsizetype other = 0; other < grid.count(); ++other) {
        collector.addPage(grid, other, IconLoader::rest);
        for (const LaunchpadItem& item : grid.tiles(other))
            collector.addAll(item, IconLoader::rest);
    }
    return collector.wishes;
}

} // namespace tessellar
