#include "app/grid_model.h"

#include "app/icon_requests.h"
#include "launcher/live_layout.h"
#include "platform/uuid_source.h"

#include <QMetaMethod>
#include <QQmlEngine>

#include <algorithm>

namespace tessellar {

TileView tileView(const LaunchpadItem& item, const TileFacts& facts) {
    TileView view{.tile = item.id(), .id = toText(item.id())};
    view.isSelected = facts.isSelected && facts.isSelected(view.tile);
    view.isCut = facts.isCut && facts.isCut(view.tile);
    if (const AppEntry* app = item.app()) {
        const IconRequest icon = iconRequest(*app);
        view.label = app->name;
        view.isUnavailable = facts.isUnavailable && facts.isUnavailable(icon.appKey);
        view.badge = facts.badge ? facts.badge(icon.appKey) : QString();
        view.activity = facts.activity ? facts.activity(icon.appKey) : QString();
        view.icons = {icon};
    } else if (const FolderEntry* folder = item.folder()) {
        view.kind = IconItem::Folder;
        view.label = folder->name;
        view.icons = previewIcons(*folder);
        view.symbolName = folder->customSymbolName.value_or(QString());
    } else {
        const auto smart = facts.smartFolder ? facts.smartFolder(item.smartFolder()->definitionID)
                                             : TileFacts::SmartFolder();
        view.kind = IconItem::SmartFolder;
        view.label = smart.name;
        view.icons = smart.icons;
        view.symbolName = smart.symbolName;
        view.badge = smart.count > 0 ? QString::number(smart.count) : QString();
    }
    return view;
}

std::optional<qsizetype> TilePages::slotOf(const QUuid& id, qsizetype page) const {
    const Page all = page >= 0 && page < count ? tiles(page) : Page();
    const auto found = std::ranges::find(all, id, &LaunchpadItem::id);
    return found == all.end() ? std::nullopt : std::optional(found - all.begin());
}

// ---- one page

QHash<int, QByteArray> PageModel::names() {
    return {{IdRole, "tileId"},
            {KindRole, "kind"},
            {LabelRole, "label"},
            {AppKeysRole, "appKeys"},
            {SymbolRole, "symbolName"},
            {BadgeRole, "badge"},
            {ActivityRole, "activity"},
            {UnavailableRole, "isUnavailable"},
            {SelectedRole, "isSelected"},
            {VacantRole, "isVacant"},
            {MarkedLabelRole, "markedLabel"},
            {PlaceRole, "place"},
            {WeakMatchRole, "isWeakMatch"},
            {CutRole, "isCut"},
            {DescriptionRole, "description"}};
}

static QString description(const TileView& tile) {
    QStringList parts{tile.activity.isEmpty() ? tile.badge : tile.activity,
                      tile.isUnavailable ? LiveLayout::unavailableNotice() : QString(), tile.place};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QVariant PageModel::value(const TileView& tile, int role) {
    switch (role) {
    case IdRole:
        return tile.id;
    case KindRole:
        return tile.kind;
    case LabelRole:
        return tile.label;
    case AppKeysRole: {
        QStringList keys;
        for (const IconRequest& icon : tile.icons)
            keys.append(icon.appKey);
        return keys;
    }
    case SymbolRole:
        return tile.symbolName;
    case BadgeRole:
        return tile.badge;
    case ActivityRole:
        return tile.activity;
    case UnavailableRole:
        return tile.isUnavailable;
    case SelectedRole:
        return tile.isSelected;
    case VacantRole:
        return tile.isVacant;
    case MarkedLabelRole:
        return tile.markedLabel;
    case PlaceRole:
        return tile.place;
    case WeakMatchRole:
        return tile.isWeakMatch;
    case CutRole:
        return tile.isCut;
    case DescriptionRole:
        return description(tile);
    default:
        return {};
    }
}

const QList<TileView>& PageModel::tiles() const {
    if (!_tiles)
        _tiles = filled();
    return *_tiles;
}

int PageModel::firstWeakMatch() const {
    const auto found = std::ranges::find_if(
        tiles(), [](const TileView& tile) { return tile.isWeakMatch && !tile.isVacant; });
    return found == tiles().end() ? -1 : static_cast<int>(found - tiles().begin());
}

QList<TileView> PageModel::filled() const {
    QList<TileView> tiles = _fill();
    for (qsizetype row = tiles.size(); row < _keptRows; ++row) {
        tiles.append(_tiles && row < _tiles->size() ? _tiles->at(row)
                                                    : TileView{.id = toText(QUuid())});
        tiles.last().isVacant = true;
    }
    return tiles;
}

void PageModel::keepRows(qsizetype count) {
    if (count <= _keptRows)
        return;
    _keptRows = count;
    refresh();
}

void PageModel::refreshSelection(const std::function<bool(const QUuid&)>& isSelected) {
    for (int i = 0; _tiles && i < _tiles->size(); ++i) {
        const TileView& tile = _tiles->at(i);
        const bool isNow = !tile.isVacant && isSelected(tile.tile);
        if (tile.isVacant || isNow == tile.isSelected)
            continue;
        (*_tiles)[i].isSelected = isNow;
        Q_EMIT dataChanged(index(i), index(i), {SelectedRole});
    }
}

int PageModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(tiles().size());
}

QVariant PageModel::data(const QModelIndex& index, int role) const {
    const bool exists = index.row() >= 0 && index.row() < tiles().size();
    return exists ? value(tiles().at(index.row()), role) : QVariant();
}

static QList<int> changedRoles(const TileView& a, const TileView& b) {
    QList<int> roles;
    const auto compare = [&](int role, const auto TileView::*field) {
        if (a.*field != b.*field)
            roles.append(role);
    };
    compare(PageModel::IdRole, &TileView::id);
    compare(PageModel::KindRole, &TileView::kind);
    compare(PageModel::LabelRole, &TileView::label);
    compare(PageModel::AppKeysRole, &TileView::icons);
    compare(PageModel::SymbolRole, &TileView::symbolName);
    compare(PageModel::BadgeRole, &TileView::badge);
    compare(PageModel::ActivityRole, &TileView::activity);
    compare(PageModel::UnavailableRole, &TileView::isUnavailable);
    compare(PageModel::SelectedRole, &TileView::isSelected);
    compare(PageModel::VacantRole, &TileView::isVacant);
    compare(PageModel::MarkedLabelRole, &TileView::markedLabel);
    compare(PageModel::PlaceRole, &TileView::place);
    compare(PageModel::WeakMatchRole, &TileView::isWeakMatch);
    compare(PageModel::CutRole, &TileView::isCut);
    if (a.activity != b.activity || a.badge != b.badge || a.isUnavailable != b.isUnavailable ||
        a.place != b.place)
        roles.append(PageModel::DescriptionRole);
    return roles;
}

static QSet<QString> idsOf(const QList<TileView>& tiles) {
    QSet<QString> ids;
    for (const TileView& tile : tiles)
        ids.insert(tile.id);
    return ids;
}

void PageModel::setRow(qsizetype row, const TileView& tile) {
    const QList<int> roles = changedRoles(_tiles->at(row), tile);
    if (roles.isEmpty())
        return;
    (*_tiles)[row] = tile;
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed, roles);
}

void PageModel::moveRow(qsizetype from, qsizetype to) {
    beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {},
                  static_cast<int>(to > from ? to + 1 : to));
    _tiles->move(from, to);
    endMoveRows();
}

/// Rows move with their tiles, because rebuilding a delegate is expensive and moving it is not. Rows of
/// removed tiles are reused for new ones.
void PageModel::updateRows(const QList<TileView>& tiles) {
    const QSet<QString> before = idsOf(*_tiles);
    const QSet<QString> now = idsOf(tiles);
    if (before.size() != _tiles->size() || now.size() != tiles.size())
        return; // identifiers are not unique
    QList<TileView> come;
    std::ranges::copy_if(tiles, std::back_inserter(come),
                         [&](const TileView& tile) { return !before.contains(tile.id); });
    for (qsizetype row = 0; row < _tiles->size(); ++row) {
        qsizetype end = row;
        while (end < _tiles->size() && !now.contains(_tiles->at(end).id))
            ++end;
        for (; row < end && !come.isEmpty(); ++row)
            setRow(row, come.takeFirst());
        if (row == end)
            continue;
        beginRemoveRows({}, static_cast<int>(row), static_cast<int>(end - 1));
        _tiles->remove(row, end - row);
        endRemoveRows();
    }
    if (!come.isEmpty()) {
        beginInsertRows({}, static_cast<int>(_tiles->size()), static_cast<int>(tiles.size() - 1));
        *_tiles += come;
        endInsertRows();
    }
    const auto slotOf = [](const QList<TileView>& all, const QString& id) {
        return std::ranges::find(all, id, &TileView::id) - all.begin();
    };
    for (qsizetype slot = 0; slot < tiles.size(); ++slot) {
        const QString id = _tiles->at(slot).id;
        if (id == tiles.at(slot).id)
            continue;
        // Moving one tile past others is one move, not one for each that it passes.
        if (_tiles->at(slot + 1).id == tiles.at(slot).id)
            moveRow(slot, slotOf(tiles, id));
        else
            moveRow(slotOf(*_tiles, tiles.at(slot).id), slot);
    }
}

void PageModel::refresh() {
    static const QMetaMethod watched = QMetaMethod::fromSignal(&QAbstractItemModel::dataChanged);
    if (!_tiles)
        return;
    if (!isSignalConnected(watched))
        return _tiles.reset();
    const QList<TileView> tiles = filled();
    if (_keptRows == 0)
        updateRows(tiles);
    const int before = static_cast<int>(_tiles->size());
    const int now = static_cast<int>(tiles.size());
    if (now < before) {
        beginRemoveRows({}, now, before - 1);
        _tiles->resize(now);
        endRemoveRows();
    }
    for (int i = 0; i < std::min(before, now); ++i)
        setRow(i, tiles.at(i));
    if (now > before) {
        beginInsertRows({}, before, now - 1);
        _tiles = tiles;
        endInsertRows();
    }
    Q_EMIT refreshed();
}

// ---- all pages

GridModel::GridModel(TileFacts facts) : _facts(std::move(facts)) {
    using namespace std::chrono_literals;
    _later.setSingleShot(true);
    _later.setInterval(100ms);
    connect(&_later, &QTimer::timeout, this, &GridModel::refreshAll);
}

PageModel* GridModel::tilesOf(int page) const {
    return page >= 0 && static_cast<std::size_t>(page) < _models.size()
               ? _models[static_cast<std::size_t>(page)].get()
               : nullptr;
}

QList<TileView> GridModel::views(qsizetype page) const {
    QList<TileView> views;
    if (page < _pages.count)
        for (const LaunchpadItem& item : _pages.tiles(page))
            views.append(tileView(item, _facts));
    if (_annotate)
        _annotate(page, views);
    return views;
}

void GridModel::setPage(int page) {
    if (page != _page && _later.isActive())
        refreshAll();
    if (std::exchange(_page, page) != page)
        Q_EMIT pageChanged();
}

void GridModel::setMetrics(const GridMetrics& metrics) {
    if (std::exchange(_metrics, metrics) != metrics)
        Q_EMIT metricsChanged();
}

void GridModel::setPages(TilePages pages) {
    Q_EMIT aboutToRearrange();
    _pages = std::move(pages);
    refresh();
    resize();
    Q_EMIT rearranged();
}

void GridModel::refresh() {
    if (_keptPages == 0)
        return refreshAll();
    if (PageModel* shown = tilesOf(_page))
        shown->refresh();
    _later.start();
}

void GridModel::refreshAll() {
    _later.stop();
    for (const auto& model : _models)
        model->refresh();
}

void GridModel::refreshSelection() {
    for (const auto& model : _models)
        model->refreshSelection(_facts.isSelected);
}

void GridModel::keepPages(std::size_t count, qsizetype rows) {
    _keptPages = count;
    _keptRows = std::max(_keptRows, rows);
    resize();
    for (std::size_t page = 0; page < count; ++page)
        _models[page]->keepRows(_keptRows);
}

void GridModel::setHasNewPage(bool hasNewPage) {
    _hasNewPage = hasNewPage;
    resize();
}

std::optional<LaunchpadItem> GridModel::tile(const QUuid& id) const {
    const auto onPage = [&](qsizetype page) -> std::optional<LaunchpadItem> {
        const auto slot = _pages.slotOf(id, page);
        return slot ? std::optional(_pages.tiles(page).at(*slot)) : std::nullopt;
    };
    auto found = onPage(_page);
    for (qsizetype page = 0; !found && page < _pages.count; ++page)
        found = onPage(page);
    return found;
}

void GridModel::resize() {
    const qsizetype shown = _pages.count + (_hasNewPage ? 1 : 0);
    const std::size_t count = std::max(static_cast<std::size_t>(shown), _keptPages);
    // Removed pages are kept until no view shows them.
    std::vector<std::unique_ptr<PageModel>> gone;
    while (_models.size() > count) {
        gone.push_back(std::move(_models.back()));
        _models.pop_back();
    }
    while (_models.size() < count) {
        const auto page = static_cast<qsizetype>(_models.size());
        _models.push_back(std::make_unique<PageModel>([this, page] { return views(page); }));
        QQmlEngine::setObjectOwnership(_models.back().get(), QQmlEngine::CppOwnership);
    }
    if (std::exchange(_pageCount, static_cast<int>(shown)) != _pageCount)
        Q_EMIT pageCountChanged();
}

} // namespace tessellar
