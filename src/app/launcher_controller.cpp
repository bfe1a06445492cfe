#include "app/launcher_controller.h"

#include "app/icon_wishes.h"
#include "platform/uuid_source.h"

#include <algorithm>
#include <cmath>

namespace tessellar {

LauncherController::LauncherController(LauncherViewModel& viewModel, TileIcons& icons,
                                       Scheduler& scheduler)
    : _viewModel(viewModel)
    , _icons(icons)
    , _search(viewModel)
    , _updates(viewModel)
    , _removal(viewModel)
    , _smartFolder(viewModel)
    , _drag(viewModel, scheduler, [this] { return dragArea(); })
    , _subscription(viewModel.subscribe([this](LauncherChange change) { onChange(change); })) {
    connect(&_menu, &MenuModel::chosen, this, &LauncherController::performMenuEntry);
    connect(&_drag, &TileDrag::refused, this,
            [this](const LauncherError& error) { _viewModel.report(error); });
    connect(&_drag, &TileDrag::newPageChanged, this, [this] {
        _grid.setHasNewPage(_drag.isOnNewPage());
        Q_EMIT navigationChanged();
    });
    connect(&_search, &TileSearch::changed, this, [this] {
        _menu.close();
        // What is found lies over everything.
        while (_search.isActive() && isFolderOpen())
            _viewModel.closeFolder();
        wantIcons();
        Q_EMIT selectionChanged();
    });
    connect(&_search, &TileSearch::pageChanged, this, &LauncherController::wantIcons);
    connect(&_search, &TileSearch::selectionChanged, this, &LauncherController::selectionChanged);
    showLayout();
}

void LauncherController::setWindow(QSizeF size, double pixelRatio) {
    if (size == _windowSize && pixelRatio == _pixelRatio)
        return;
    _windowSize = size;
    _pixelRatio = pixelRatio;
    updateMetrics();
    wantIcons();
}

// ---- what has changed

void LauncherController::onChange(LauncherChange change) {
    switch (change) {
    case LauncherChange::layout:
    case LauncherChange::smartFolders:
        return showLayout();
    case LauncherChange::navigation:
        return showNavigation();
    case LauncherChange::selection:
        Q_EMIT selectionChanged();
        return;
    case LauncherChange::mode:
    case LauncherChange::settings:
        _drag.cancel();
        _menu.close();
        _updates.refresh();
        updateMetrics();
        Q_EMIT modeChanged();
        return;
    case LauncherChange::history:
    case LauncherChange::notice:
        Q_EMIT noticeChanged();
        return;
    case LauncherChange::alert:
        _alerts += _viewModel.takeAlerts();
        [[fallthrough]];
    case LauncherChange::question:
        _isAcceptDefault = !isAlertDestructive();
        if (hasAlert()) {
            _drag.cancel();
            _menu.close();
            _smartFolder.choices()->close();
        }
        Q_EMIT alertChanged();
        return;
    case LauncherChange::launched:
        Q_EMIT closeRequested();
        return;
    case LauncherChange::bootstrapped:
        Q_EMIT readyChanged();
        return;
    case LauncherChange::updates:
        showBadges();
        return _updates.refresh();
    case LauncherChange::cleanup:
        return _removal.refresh();
    case LauncherChange::smartFolderDraft:
        _smartFolder.refresh();
        if (!_smartFolder.isOpen() && _sheet == smartFolderSheet)
            closeSheet();
        return;
    default: // nothing of it is shown
        return;
    }
}

void LauncherController::fill(GridModel& model, const ShownPages& pages) {
    model.setPages(
        pages, _viewModel.unavailableAppKeys(),
        [this](const LaunchpadItem& item) { return _viewModel.openable(item).value_or(FolderEntry()); },
        [this](const QString& appKey) { return _viewModel.updates().badge(appKey); });
}

/// A check is heard of often, and seldom changes what tiles say.
void LauncherController::showBadges() {
    const AppUpdateStatuses statuses = _viewModel.updates().statuses();
    if (statuses == std::exchange(_badgeStatuses, statuses))
        return;
    _search.refresh();
    fill(_grid, ShownPages(_grid.shown()));
    _grid.setHasNewPage(_drag.isOnNewPage());
    if (isFolderOpen())
        fill(_folder, ShownPages(_folder.shown()));
}

void LauncherController::showLayout() {
    // Under tiles that are carried nothing moves but room for them.
    _drag.cancel();
    if (_renaming && !_viewModel.item(*_renaming))
        cancelRename();
    _search.refresh();
    fill(_grid, _viewModel.shownPages());
    showNavigation();
}

void LauncherController::showNavigation() {
    if (const auto open = openFolder()) {
        _folderId = toText(open->id);
        _folderTitle = open->name;
        _folderNotice =
            _viewModel.folder(open->id) ? QString() : _viewModel.smartFolders().notice(open->id);
        _folderPage = _viewModel.folderStack().last().page;
        fill(_folder, _viewModel.shownPages(*open));
        updateMetrics();
    }
    wantIcons();
    Q_EMIT navigationChanged();
    Q_EMIT selectionChanged();
}

void LauncherController::updateMetrics() {
    if (_windowSize.isEmpty())
        return;
    const ArrangementLayout layout = _viewModel.layoutSettings();
    _metrics = isWindowed()
                   ? windowedMetrics(_windowSize, layout)
                   : fullScreenMetrics(_windowSize, pageGeometry(layout), layout.tileLabelFontSize);
    qsizetype tiles = 0;
    for (qsizetype page = 0; page < _folder.shown().count(); ++page)
        tiles = std::max(tiles, _folder.shown().tiles(page).size());
    _folderMetrics = folderMetrics(_windowSize, _metrics, layout, tiles, _folder.shown().count());
    Q_EMIT metricsChanged();
}

void LauncherController::wantIcons() {
    if (_windowSize.isEmpty() || !isReady())
        return;
    const int side = std::max(_metrics.iconSide, isFolderOpen() ? _folderMetrics.grid.iconSide : 0);
    const ShownPages* open = isFolderOpen() ? &_folder.shown() : nullptr;
    int openPage = _folderPage;
    // What was found lies over all else, as an open folder does.
    if (_search.isActive()) {
        open = &_search.shown();
        openPage = _search.page();
    }
    _icons.loader().want(iconWishes(_grid.shown(), currentPage(), open, openPage),
                         std::clamp(static_cast<int>(std::lround(side * _pixelRatio)), 16, 1024));
}

QStringList LauncherController::selectedIds() const {
    QStringList ids;
    if (_search.isActive()) {
        if (const auto& selected = _search.selected())
            ids.append(toText(*selected));
        return ids;
    }
    for (const QUuid& id : _viewModel.selectedItemIDs())
        ids.append(toText(id));
    return ids;
}

QString LauncherController::notice() const {
    if (const auto& feedback = _viewModel.editor().history().feedback())
        return feedback->text();
    const auto& notice = _viewModel.notice();
    return notice ? notice->text : QString();
}

QString LauncherController::alertTitle() const {
    if (!_alerts.isEmpty())
        return _alerts.first().title;
    return _viewModel.question() ? _viewModel.question()->title : QString();
}

QString LauncherController::alertText() const {
    if (!_alerts.isEmpty())
        return _alerts.first().message;
    return _viewModel.question() ? _viewModel.question()->text : QString();
}

QString LauncherController::alertAccept() const {
    return _alerts.isEmpty() && _viewModel.question() ? _viewModel.question()->accept : QString();
}

bool LauncherController::isAlertDestructive() const {
    return _alerts.isEmpty() && _viewModel.question() && _viewModel.question()->isDestructive;
}

TileDrag::Area LauncherController::dragArea() const {
    const ArrangementLayout layout = _viewModel.layoutSettings();
    if (isFolderOpen()) {
        const QUuid folder = _viewModel.folderStack().last().id;
        return {.pages = _folder.shown(),
                .page = _viewModel.folderStack().last().page,
                .frame = _folderMetrics.panel,
                .cells = _folderMetrics.grid,
                .columns = _folderMetrics.columns,
                .rows = layout.folderRows,
                .folder = folder,
                .rulesDecide = !_viewModel.folder(folder)};
    }
    return {.pages = _grid.shown(),
            .page = shownPage(),
            .frame = QRectF({}, _windowSize),
            .cells = _metrics,
            .columns = layout.columns,
            .rows = layout.rows,
            .folder = {},
            .rulesDecide = false};
}

} // namespace tessellar
