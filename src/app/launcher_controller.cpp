#include "app/launcher_controller.h"

#include "app/icon_wishes.h"
#include "app/tile_navigation.h"
#include "platform/uuid_source.h"

#include <algorithm>
#include <cmath>

namespace tessellar {

LauncherController::LauncherController(LauncherViewModel& viewModel, TileIcons& icons)
    : _viewModel(viewModel)
    , _icons(icons)
    , _subscription(viewModel.subscribe([this](LauncherChange change) { onChange(change); })) {
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
        Q_EMIT navigationChanged();
        return;
    case LauncherChange::mode:
    case LauncherChange::settings:
        updateMetrics();
        Q_EMIT modeChanged();
        return;
    case LauncherChange::notice:
        Q_EMIT noticeChanged();
        return;
    case LauncherChange::alert:
        _alerts += _viewModel.takeAlerts();
        Q_EMIT alertChanged();
        return;
    case LauncherChange::launched:
        Q_EMIT closeRequested();
        return;
    case LauncherChange::bootstrapped:
        Q_EMIT readyChanged();
        return;
    case LauncherChange::updates:
        return showBadges();
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
    fill(_grid, ShownPages(_grid.shown()));
    if (isFolderOpen())
        fill(_folder, ShownPages(_folder.shown()));
}

void LauncherController::showLayout() {
    fill(_grid, _viewModel.shownPages());
    showNavigation();
}

std::optional<FolderEntry> LauncherController::openFolder() const { return _viewModel.openFolder(); }

void LauncherController::showNavigation() {
    if (const auto open = openFolder()) {
        _folderId = toText(open->id);
        _folderTitle = open->name;
        _folderPage = _viewModel.folderStack().last().page;
        fill(_folder, _viewModel.shownPages(*open));
        updateMetrics();
    }
    wantIcons();
    Q_EMIT navigationChanged();
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
    _icons.loader().want(iconWishes(_grid.shown(), currentPage(), open, _folderPage),
                         std::clamp(static_cast<int>(std::lround(side * _pixelRatio)), 16, 1024));
}

QString LauncherController::selectedId() const {
    const auto& selected = _viewModel.selectedItemID();
    return selected ? toText(*selected) : QString();
}

QString LauncherController::notice() const {
    const auto& notice = _viewModel.notice();
    return notice ? notice->text : QString();
}

// ---- what the user does

void LauncherController::activate(const QString& tileId) {
    const QUuid id = QUuid::fromString(tileId);
    // What a smart folder shows may have no tile in the arrangement.
    const ShownPages& shown = isFolderOpen() ? _folder.shown() : _grid.shown();
    for (qsizetype page = 0; page < shown.count(); ++page) {
        for (const LaunchpadItem& item : shown.tiles(page)) {
            if (item.id() != id)
                continue;
            if (const AppEntry* app = item.app())
                _viewModel.launch(appKey(*app));
            else
                _viewModel.openFolder(id);
            return;
        }
    }
}

void LauncherController::dismissAlert() {
    if (!hasAlert())
        return;
    _alerts.removeFirst();
    Q_EMIT alertChanged();
}

void LauncherController::escape() {
    if (hasAlert())
        dismissAlert();
    else if (isFolderOpen())
        _viewModel.closeFolder();
    else
        Q_EMIT closeRequested();
}

bool LauncherController::pressKey(int key) {
    if (key == Qt::Key_Escape) {
        escape();
        return true;
    }
    if (hasAlert()) {
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
            dismissAlert();
        return true;
    }
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        moveSelection(key);
        return true;
    case Qt::Key_PageUp:
        turn(-1);
        return true;
    case Qt::Key_PageDown:
        turn(1);
        return true;
    case Qt::Key_Home:
        turn(-_grid.pageCount() - _folder.pageCount());
        return true;
    case Qt::Key_End:
        turn(_grid.pageCount() + _folder.pageCount());
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        activate(selectedId());
        return true;
    default:
        return false;
    }
}

void LauncherController::turn(int pages) {
    if (isFolderOpen())
        _viewModel.setFolderPage(folderPage() + pages);
    else
        _viewModel.setCurrentPage(currentPage() + pages);
}

void LauncherController::moveSelection(int key) {
    const Direction direction = key == Qt::Key_Left    ? Direction::left
                                : key == Qt::Key_Right ? Direction::right
                                : key == Qt::Key_Up    ? Direction::up
                                                       : Direction::down;
    const ShownPages& pages = isFolderOpen() ? _folder.shown() : _grid.shown();
    GridGeometry geometry = isFolderOpen() ? folderGeometry(_viewModel.layoutSettings())
                                           : pageGeometry(_viewModel.layoutSettings());
    if (isFolderOpen())
        geometry.columns = folderColumns();
    const int page = isFolderOpen() ? folderPage() : currentPage();
    std::optional<ShownPlace> from;
    if (const auto& selected = _viewModel.selectedItemID())
        from = pages.placeOf(*selected);
    const auto to = neighbour(pages, geometry, page, from, direction);
    if (!to)
        return;
    turn(static_cast<int>(to->page) - page);
    _viewModel.select(pages.tiles(to->page).at(to->slot).id());
}

} // namespace tessellar
