#include "app/launcher_controller.h"

#include "app/icon_wishes.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_search.h"
#include "launcher/launcher_updates.h"
#include "launcher/smart_folder_editing.h"
#include "launcher/smart_folder_library.h"
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
    , _drag(viewModel, scheduler, [this] { return dragArea(); }) {
    follow();
    connect(&_menu, &MenuModel::chosen, this, &LauncherController::performMenuEntry);
    connect(&_drag, &TileDrag::refused, this,
            [this](const LauncherError& error) { _viewModel.messages().report(error); });
    connect(&_drag, &TileDrag::newPageChanged, this, [this] {
        _grid.setHasNewPage(_drag.isOnNewPage());
        Q_EMIT navigationChanged();
    });
    connect(&_search, &TileSearch::changed, this, [this] {
        _menu.close();
        // What is found lies over everything.
        while (_search.isActive() && isFolderOpen())
            _viewModel.shown().closeFolder();
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

void LauncherController::follow() {
    const auto on = [this](auto& signal, auto call) {
        _subscriptions.push_back(signal.connect(std::move(call)));
    };
    LauncherViewModel& launcher = _viewModel;
    for (const LauncherWindowMode mode : LiveLayouts::modes) {
        LiveLayout& layout = launcher.layout(mode);
        const auto whenShown = [this, mode](auto call) {
            return [this, mode, call] {
                if (mode == _viewModel.layouts().shownMode())
                    call();
            };
        };
        on(layout.changed, whenShown([this] { showLayout(); }));
        on(layout.navigationChanged, whenShown([this] { showNavigation(); }));
        on(layout.selectionChanged, whenShown([this] { Q_EMIT selectionChanged(); }));
    }
    on(launcher.smartFolders().changed, [this] { showLayout(); });
    const auto showMode = [this] {
        _drag.cancel();
        _menu.close();
        _updates.refresh();
        updateMetrics();
        Q_EMIT modeChanged();
    };
    on(launcher.layouts().shownModeChanged, [this, showMode] {
        showMode();
        showLayout();
    });
    on(launcher.settingsChanged, showMode);
    on(launcher.history().changed, [this] { Q_EMIT noticeChanged(); });
    on(launcher.messages().noticeChanged, [this] { Q_EMIT noticeChanged(); });
    on(launcher.messages().alerted, [this] {
        _alerts += _viewModel.messages().takeAlerts();
        showAlerts();
    });
    on(launcher.messages().questionChanged, [this] { showAlerts(); });
    on(launcher.launched, [this] { Q_EMIT closeRequested(); });
    on(launcher.bootstrapped, [this] {
        Q_EMIT readyChanged();
        showLayout();
    });
    on(launcher.search().ready, [this](LauncherWindowMode mode) {
        if (_search.isActive() && mode == _viewModel.layouts().shownMode())
            _search.refresh();
    });
    on(launcher.updates().changed, [this] {
        showBadges();
        _updates.refresh();
    });
    on(launcher.cleanup().changed, [this] { _removal.refresh(); });
    on(launcher.smartFolderEditing().changed, [this] {
        _smartFolder.refresh();
        if (!_smartFolder.isOpen() && _sheet == smartFolderSheet)
            closeSheet();
    });
}

void LauncherController::showAlerts() {
    _isAcceptDefault = !isAlertDestructive();
    if (hasAlert()) {
        _drag.cancel();
        _menu.close();
        _smartFolder.choices()->close();
    }
    Q_EMIT alertChanged();
}

void LauncherController::fill(GridModel& model, const ShownPages& pages) {
    model.setPages(
        pages, _viewModel.shown().unavailableAppKeys(),
        [this](const LaunchpadItem& item) {
            return _viewModel.shown().openable(item).value_or(FolderEntry());
        },
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
    if (_renaming && !_viewModel.shown().item(*_renaming))
        cancelRename();
    _search.refresh();
    fill(_grid, _viewModel.shown().shownPages());
    showNavigation();
}

void LauncherController::showNavigation() {
    if (const auto open = openFolder()) {
        _folderId = toText(open->id);
        _folderTitle = open->name;
        _folderNotice = _viewModel.shown().folder(open->id)
                            ? QString()
                            : _viewModel.smartFolders().notice(open->id);
        _folderPage = _viewModel.shown().folderStack().last().page;
        fill(_folder, _viewModel.shown().shownPages(*open));
        updateMetrics();
    }
    wantIcons();
    Q_EMIT navigationChanged();
    Q_EMIT selectionChanged();
}

void LauncherController::updateMetrics() {
    if (_windowSize.isEmpty())
        return;
    const ArrangementLayout layout = _viewModel.shown().settings();
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
    for (const QUuid& id : _viewModel.shown().selectedItemIDs())
        ids.append(toText(id));
    return ids;
}

QString LauncherController::notice() const {
    if (const auto& feedback = _viewModel.history().steps().feedback())
        return feedback->text();
    const auto& notice = _viewModel.messages().notice();
    return notice ? notice->text : QString();
}

QString LauncherController::alertTitle() const {
    if (!_alerts.isEmpty())
        return _alerts.first().title;
    return _viewModel.messages().question() ? _viewModel.messages().question()->title : QString();
}

QString LauncherController::alertText() const {
    if (!_alerts.isEmpty())
        return _alerts.first().message;
    return _viewModel.messages().question() ? _viewModel.messages().question()->text : QString();
}

QString LauncherController::alertAccept() const {
    return _alerts.isEmpty() && _viewModel.messages().question()
               ? _viewModel.messages().question()->accept
               : QString();
}

bool LauncherController::isAlertDestructive() const {
    return _alerts.isEmpty() && _viewModel.messages().question() &&
           _viewModel.messages().question()->isDestructive;
}

TileDrag::Area LauncherController::dragArea() const {
    const ArrangementLayout layout = _viewModel.shown().settings();
    if (isFolderOpen()) {
        const QUuid folder = _viewModel.shown().folderStack().last().id;
        return {.pages = _folder.shown(),
                .page = _viewModel.shown().folderStack().last().page,
                .frame = _folderMetrics.panel,
                .cells = _folderMetrics.grid,
                .columns = _folderMetrics.columns,
                .rows = layout.folderRows,
                .folder = folder,
                .rulesDecide = !_viewModel.shown().folder(folder)};
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
