#include "app/launcher_controller.h"

#include "app/icon_requests.h"
#include "launcher/launcher_arrangements.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_search.h"
#include "launcher/launcher_updates.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_editing.h"
#include "launcher/smart_folder_library.h"
#include "launcher/tile_opener.h"
#include "platform/uuid_source.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace tessellar {

LauncherController::LauncherController(LauncherViewModel& viewModel, TileIcons& icons, Machine& machine)
    : _viewModel(viewModel)
    , _icons(icons)
    , _backdrop(machine)
    , _appearance(machine.settings)
    , _grid(tileFacts())
    , _folder(viewModel, tileFacts())
    , _search(viewModel, tileFacts(), machine)
    , _selection(viewModel, _grid, _folder, _search)
    , _drag(viewModel, machine.scheduler, [this] { return dragArea(); })
    , _renaming(viewModel)
    , _sheets(viewModel)
    , _panels(viewModel, _sheets, machine)
    , _alert(viewModel)
    , _input(viewModel, _selection, _folder, _search, _drag, _renaming, _sheets, _panels, _alert) {
    follow();
    connect(&_grid, &GridModel::turned, this,
            [this](int page) { _viewModel.shown().navigation().setCurrentPage(page); });
    for (const GridModel* model : {&_grid, _folder.tiles()})
        connect(model, &GridModel::turned, &_selection, &TileSelection::keepToPage);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &LauncherController::showCut);
    connect(&_drag, &TileDrag::refused, this,
            [this](const LauncherError& error) { _viewModel.messages().report(error); });
    connect(&_drag, &TileDrag::folderMade, &_renaming, &TileRenaming::nameFolderAround);
    connect(&_drag, &TileDrag::newPageChanged, this, &LauncherController::showGridPage);
    connect(&_search, &TileSearch::changed, this, [this] {
        // The results cover everything.
        while (_search.isActive() && _folder.isOpen())
            _viewModel.shown().navigation().closeFolder();
        requestIcons();
    });
    connect(_search.results(), &GridModel::turned, this, &LauncherController::requestIcons);
    connect(&_search, &TileSearch::selectionChanged, this, &LauncherController::showSelection);
    connect(_panels.arranging(), &ArrangingPanel::changed, this, &LauncherController::requestIcons);
    connect(_panels.arrangements(), &ArrangementsPanel::changed, this,
            &LauncherController::requestIcons);
    connect(&_sheets, &Sheets::changed, this, &LauncherController::requestIcons);
    connect(&_input, &LauncherInput::closeRequested, this, &LauncherController::closeRequested);
    showLayout();
}

TileFacts LauncherController::tileFacts() const {
    return {.isUnavailable =
                [this](const QString& key) {
                    return _viewModel.shown().unavailableAppKeys().contains(key);
                },
            .badge = [this](const QString& key) { return _viewModel.updates().of(key).badge(); },
            .activity = [this](const QString& key) { return _viewModel.updates().of(key).tileText(); },
            .smartFolder =
                [this](const QUuid& id) {
                    const SmartFolderLibrary& library = _viewModel.smartFolders();
                    TileFacts::SmartFolder folder{.name = library.name(id)};
                    if (const SmartFolderDefinition* definition = library.definition(id))
                        folder.symbolName = definition->customSymbolName.value_or(QString());
                    if (const SmartFolderEvaluation* evaluation =
                            library.evaluation(id, _viewModel.shown().mode())) {
                        folder.count = evaluation->matches.size();
                        for (const auto& facts :
                             evaluation->matches.first(std::min(folder.count, previewCount)))
                            folder.icons.append(iconRequest(facts->entry));
                    }
                    return folder;
                },
            .isSelected = [this](const QUuid& tile) { return _selection.contains(tile); },
            .isCut = [this](const QUuid& tile) { return _cut.contains(tile); }};
}

QVariantMap LauncherController::tileView(const QString& tileId) const {
    QVariantMap values;
    const LaunchpadItem* item = _viewModel.shown().item(QUuid::fromString(tileId));
    if (!item)
        return values;
    const TileView view = tessellar::tileView(*item, tileFacts());
    const auto names = PageModel::names();
    for (auto name = names.begin(); name != names.end(); ++name)
        values.insert(QString::fromLatin1(name.value()), PageModel::value(view, name.key()));
    return values;
}

void LauncherController::setWindow(QSizeF size, double pixelRatio) {
    if (size == _windowSize && pixelRatio == _pixelRatio)
        return;
    _windowSize = size;
    _pixelRatio = pixelRatio;
    updateMetrics();
    requestIcons();
}

void LauncherController::startAfresh() {
    _input.menu()->close();
    _drag.cancel();
    _search.clear();
    _renaming.cancel();
    // Hiding the window must not lose what was typed, or not yet read.
    if (!_panels.isWelcoming() && !_sheets.isTyped() &&
        (!_panels.smartFolder()->isOpen() || !_panels.smartFolder()->isChanged()))
        _sheets.close();
}

// ---- updates from the view model

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
        on(layout.replaced, whenShown([this] { _drag.cancel(); }));
        on(layout.changed, whenShown([this] { showLayout(); }));
        on(layout.navigation().changed, whenShown([this] { showNavigation(); }));
        on(layout.navigation().selectionChanged, whenShown([this] { showSelection(); }));
    }
    on(launcher.smartFolders().changed, [this] {
        for (const LauncherWindowMode mode : LiveLayouts::modes)
            _viewModel.layout(mode).navigation().tidy(); // an open smart folder may have lost a page
        showLayout();
    });
    on(launcher.layouts().shownModeChanged, [this] {
        _drag.cancel();
        _input.menu()->close();
        showMode();
        showLayout();
    });
    on(launcher.settingsChanged, [this] {
        _backdrop.applySettings();
        showMode();
        Q_EMIT _appearance.changed();
    });
    on(launcher.bootstrapped, [this] {
        Q_EMIT readyChanged();
        showLayout();
    });
    on(launcher.search().ready, [this](LauncherWindowMode mode) {
        if (mode != _viewModel.layouts().shownMode())
            return;
        if (!_search.isActive())
            return _search.prepare();
        _search.refresh();
        requestIcons();
    });
    on(launcher.updates().changed, [this] { showBadges(); });
    on(launcher.history().changed, [this] {
        followUndo();
        Q_EMIT noticeChanged();
    });
    on(launcher.messages().noticeChanged, [this] { Q_EMIT noticeChanged(); });
    on(launcher.messages().alerted, [this] { _alert.refresh(); });
    on(launcher.messages().questionChanged, [this] { _alert.refresh(); });
    on(launcher.opener().launched, [this] { Q_EMIT closeRequested(); });
    on(launcher.updates().opened, [this] { Q_EMIT closeRequested(); });
    on(launcher.updates().passwordAsked, [this] {
        // A full-screen launcher would cover the password prompt.
        if (!isWindowed())
            Q_EMIT closeRequested();
    });
}

void LauncherController::showMode() {
    updateMetrics();
    Q_EMIT modeChanged();
}

void LauncherController::showBadges() {
    for (GridModel* model : {&_grid, _folder.tiles(), _search.results()})
        model->refresh();
}

void LauncherController::showLayout() {
    if (_sheets.current() == Sheets::unplaced)
        _panels.unplaced()->refresh();
    _renaming.refresh();
    _search.refresh();
    _formerPages = std::exchange(_shownPages, _viewModel.shown().shownPages());
    _grid.setPages(_shownPages);
    showNavigation();
    _selection.deselectHidden();
    showCut();
    _drag.follow();
}

void LauncherController::showCut() {
    const QSet<QUuid> cut = _viewModel.clipboard().cutTiles(_viewModel.shown().mode());
    if (std::exchange(_cut, cut) != cut)
        showBadges();
}

/// If an undo changed nothing on the current page, turns to the page where it did.
void LauncherController::followUndo() {
    const auto& reflow = _viewModel.history().steps().reflow();
    if (!reflow || std::exchange(_lastReflow, reflow->id) == reflow->id ||
        !reflow->movedOrder.isEmpty() || !reflow->appearing.isEmpty() || _folder.isOpen())
        return;
    QHash<QUuid, qsizetype> former;
    for (qsizetype page = 0; page < _formerPages.count(); ++page)
        for (const LaunchpadItem& item : _formerPages.tiles(page))
            former.insert(item.id(), page);
    for (qsizetype page = 0; page < _shownPages.count(); ++page)
        for (const LaunchpadItem& item : _shownPages.tiles(page))
            if (former.value(item.id(), -1) != page)
                return _viewModel.shown().navigation().setCurrentPage(static_cast<int>(page));
}

void LauncherController::showNavigation() {
    _folder.refresh();
    showGridPage();
    updateMetrics();
    requestIcons();
    showSelection();
}

void LauncherController::showSelection() {
    for (GridModel* model : {&_grid, _folder.tiles(), _search.results()})
        model->refreshSelection();
}

void LauncherController::showGridPage() {
    _grid.setHasNewPage(_drag.isOnNewPage());
    _grid.setPage(_drag.isOnNewPage() ? _grid.pageCount() - 1
                                      : _viewModel.shown().navigation().currentPage());
}

void LauncherController::updateMetrics() {
    if (_windowSize.isEmpty())
        return;
    const ArrangementLayout layout = _viewModel.shown().settings();
    const GridMetrics metrics =
        isWindowed() ? windowedMetrics(_windowSize, layout)
                     : fullScreenMetrics(_windowSize, pageGeometry(layout), layout.tileLabelFontSize);
    _grid.setMetrics(metrics);
    _search.results()->setMetrics(metrics);
    _search.results()->keepPages(2, qsizetype(metrics.columns) * metrics.rows);
    _folder.layOut(_windowSize, metrics);
}

void LauncherController::requestIcons() {
    if (_windowSize.isEmpty() || !isReady())
        return;
    // Search results and open folders cover the grid.
    const GridModel* over = _search.isActive() ? _search.results()
                            : _folder.isOpen() ? _folder.tiles()
                                               : nullptr;
    const int side = std::max(_grid.metrics().iconSide, over ? over->metrics().iconSide : 0);
    IconLoader::Requests requests = iconRequests(_grid, over);
    if (_sheets.current() == Sheets::arranging)
        requests.visible += _panels.arranging()->icons();
    if (_sheets.current() == Sheets::unplaced)
        requests.neighbours += _panels.unplaced()->icons();
    if (_sheets.current() == Sheets::arrangements)
        requests.neighbours += _panels.arrangements()->icons();
    _icons.loader().request(std::move(requests),
                            std::clamp(static_cast<int>(std::lround(side * _pixelRatio)), 16, 1024));
}

QString LauncherController::notice() const {
    if (const auto& feedback = _viewModel.history().steps().feedback())
        return feedback->text();
    const auto& notice = _viewModel.messages().notice();
    return notice ? notice->text : QString();
}

TileDrag::Area LauncherController::dragArea() const {
    if (!_folder.isOpen())
        return {.pages = _shownPages,
                .page = _grid.page(),
                .frame = QRectF({}, _windowSize),
                .cells = _grid.metrics()};
    return {.pages = _folder.shown(),
            .page = _folder.tiles()->page(),
            .frame = _folder.panel(),
            .cells = _folder.tiles()->metrics(),
            .folder = _viewModel.shown().navigation().folderStack().last().id,
            .rulesDecide = _folder.rulesDecide()};
}

} // namespace tessellar
