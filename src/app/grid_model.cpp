#include "app/grid_model.h"

#include "app/icon_wishes.h"
#include "platform/uuid_source.h"

#include <QQmlEngine>

#include <algorithm>

namespace tessellar {

namespace {
TileView tileView(const LaunchpadItem& item, const QSet<QString>& unavailableAppKeys,
                  const SmartFolderContents& smartFolderContents, const AppBadge& appBadge) {
    TileView view{.id = toText(item.id())};
    if (const AppEntry* app = item.app()) {
        const QString key = appKey(*app);
        view.label = app->name;
        view.appKeys = {key};
        view.isUnavailable = unavailableAppKeys.contains(key);
        view.badge = appBadge ? appBadge(key) : QString();
    } else if (const FolderEntry* folder = item.folder()) {
        view.kind = IconItem::Folder;
        view.label = folder->name;
        for (const AppEntry& previewed : previewApplications(*folder))
            view.appKeys.append(appKey(previewed));
        view.symbolName = folder->customSymbolName.value_or(QString());
    } else {
        view.kind = IconItem::SmartFolder;
        const FolderEntry contents = smartFolderContents(item);
        view.label = contents.name;
        view.symbolName = contents.customSymbolName.value_or(QString());
        for (const AppEntry& previewed : previewApplications(contents))
            view.appKeys.append(appKey(previewed));
        qsizetype count = 0;
        for (const Page& page : contents.pages)
            count += page.size();
        view.badge = count > 0 ? QString::number(count) : QString();
    }
    return view;
}
} // namespace

// ---- one page

int PageModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_tiles.size());
}

QHash<int, QByteArray> PageModel::roleNames() const {
    return {{IdRole, "tileId"},
            {KindRole, "kind"},
            {LabelRole, "label"},
            {AppKeysRole, "appKeys"},
            {SymbolRole, "symbolName"},
            {BadgeRole, "badge"},
            {UnavailableRole, "isUnavailable"}};
}

QVariant PageModel::data(const QModelIndex& index, int role) const {
    if (index.row() < 0 || index.row() >= _tiles.size())
        return {};
    const TileView& tile = _tiles[index.row()];
    switch (role) {
    case IdRole:
        return tile.id;
    case KindRole:
        return tile.kind;
    case LabelRole:
        return tile.label;
    case AppKeysRole:
        return tile.appKeys;
    case SymbolRole:
        return tile.symbolName;
    case BadgeRole:
        return tile.badge;
    case UnavailableRole:
        return tile.isUnavailable;
    default:
        return {};
    }
}

void PageModel::setTiles(const QList<TileView>& tiles) {
    const int before = static_cast<int>(_tiles.size());
    const int now = static_cast<int>(tiles.size());
    if (now < before) {
        beginRemoveRows({}, now, before - 1);
        _tiles.resize(now);
        endRemoveRows();
    }
    for (int i = 0; i < std::min(before, now); ++i) {
        if (_tiles[i] == tiles[i])
            continue;
        _tiles[i] = tiles[i];
        Q_EMIT dataChanged(index(i), index(i));
    }
    if (now > before) {
        beginInsertRows({}, before, now - 1);
        _tiles = tiles;
        endInsertRows();
    }
}

// ---- all pages

PageModel* GridModel::page(int index) const {
    return index >= 0 && index < pageCount() ? _pages[static_cast<std::size_t>(index)].get() : nullptr;
}

void GridModel::setPages(const ShownPages& pages, const QSet<QString>& unavailableAppKeys,
                         const SmartFolderContents& smartFolderContents, const AppBadge& appBadge) {
    _shown = pages;
    resize(static_cast<std::size_t>(pages.count()));
    for (qsizetype page = 0; page < pages.count(); ++page) {
        QList<TileView> tiles;
        for (const LaunchpadItem& item : pages.tiles(page))
            tiles.append(tileView(item, unavailableAppKeys, smartFolderContents, appBadge));
        _pages[static_cast<std::size_t>(page)]->setTiles(tiles);
    }
}

void GridModel::setHasNewPage(bool hasNewPage) {
    resize(static_cast<std::size_t>(_shown.count()) + (hasNewPage ? 1 : 0));
}

void GridModel::resize(std::size_t count) {
    if (count == _pages.size())
        return;
    // Pages that go are kept until nobody is shown them any more.
    std::vector<std::unique_ptr<PageModel>> gone;
    while (_pages.size() > count) {
        gone.push_back(std::move(_pages.back()));
        _pages.pop_back();
    }
    while (_pages.size() < count) {
        _pages.push_back(std::make_unique<PageModel>());
        QQmlEngine::setObjectOwnership(_pages.back().get(), QQmlEngine::CppOwnership);
    }
    Q_EMIT pageCountChanged();
}

} // namespace tessellar
