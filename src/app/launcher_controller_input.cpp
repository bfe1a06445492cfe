#include "app/launcher_controller.h"
#include "editing/tile_drop.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "platform/uuid_source.h"

#include <QGuiApplication>

#include <algorithm>

namespace tessellar {

// Handles the user's input.

GridModel& LauncherController::shown() {
    return _search.isActive() ? *_search.results() : _folder.isOpen() ? *_folder.tiles() : _grid;
}

bool LauncherController::isCovered() const {
    return _alert.isOpen() || !_sheets.current().isEmpty() || _panels.removal()->isOpen();
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

// ---- the pointer

void LauncherController::activate(const QString& tileId) {
    // A smart folder's contents and search results need not have a tile in the arrangement.
    const auto item = shown().tile(QUuid::fromString(tileId));
    if (item)
        _viewModel.open(_viewModel.shown().mode(), *item);
}

void LauncherController::click(const QString& tileId, int modifiers) {
    const QUuid id = QUuid::fromString(tileId);
    constexpr int meant = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (!(modifiers & meant)) {
        unselect();
        return activate(tileId);
    }
    if (_search.isActive())
        return _search.select(id);
    if (modifiers & Qt::ShiftModifier)
        return selectRange(id);
    QList<QUuid> selected = _viewModel.shown().inOrder(_viewModel.shown().selectedItemIDs());
    // The tile clicked last becomes the anchor.
    if (!selected.removeOne(id))
        selected = QList{id} + selected + QList{id};
    _viewModel.shown().select(selected);
}

/// Selects everything from the anchor to a tile of the current page.
void LauncherController::selectRange(const QUuid& to) {
    const GridModel& model = shown();
    const auto end = model.pages().slotOf(to, model.page());
    if (!end)
        return;
    const auto& anchor = _viewModel.shown().navigation().selectionAnchorID;
    const auto begin = anchor ? model.pages().slotOf(*anchor, model.page()) : std::nullopt;
    const Page tiles = model.pages().tiles(model.page());
    QList<QUuid> range;
    const qsizetype by = begin && *begin > *end ? -1 : 1;
    for (qsizetype slot = begin.value_or(*end);; slot += by) {
        range.append(tiles.at(slot).id());
        if (slot == *end)
            break;
    }
    _viewModel.shown().select(range);
}

void LauncherController::selectTiles(const QStringList& tileIds, bool adds) {
    if (_search.isActive())
        return;
    QList<QUuid> selected =
        adds ? _viewModel.shown().inOrder(_viewModel.shown().selectedItemIDs()) : QList<QUuid>();
    for (const QString& text : tileIds)
        if (const QUuid id = QUuid::fromString(text); !selected.contains(id))
            selected.append(id);
    _viewModel.shown().select(selected);
}

void LauncherController::clickBackground() {
    if (_menu.isOpen())
        return _menu.close();
    if (_search.isActive())
        return _search.clear();
    const bool isSelection = _viewModel.shown().selectedItemIDs().size() > 1;
    if (isSelection || _folder.isOpen() || isWindowed())
        unselect();
    else
        Q_EMIT closeRequested();
}

/// After turning the page, deselects the tiles of other pages.
void LauncherController::leaveBehind() {
    const GridModel& model = _folder.isOpen() ? *_folder.tiles() : _grid;
    QList<QUuid> selected = _viewModel.shown().inOrder(_viewModel.shown().selectedItemIDs());
    if (selected.removeIf([&](const QUuid& id) { return !model.pages().slotOf(id, model.page()); }) > 0)
        _viewModel.shown().select(selected);
}

// ---- keys

void LauncherController::escape() {
    const auto all = menus();
    const auto open = std::ranges::find_if(all, &MenuModel::isOpen);
    if (open != all.end())
        (*open)->close();
    else if (_panels.smartFolder()->days()->isOpen())
        _panels.smartFolder()->days()->close();
    else if (_drag.putBack())
        return;
    else if (_alert.isOpen())
        _alert.answer(false);
    else if (_panels.removal()->isOpen())
        _panels.removal()->cancel();
    else if (_sheets.current() == Sheets::smartFolder)
        _panels.smartFolder()->leave();
    else if (_sheets.current() == Sheets::arrangements && _panels.arrangements()->endTask())
        return;
    else if (!_sheets.current().isEmpty())
        _sheets.leave();
    else if (_search.isActive())
        _search.clear();
    else if (_viewModel.shown().selectedItemIDs().size() > 1)
        unselect();
    else if (_folder.isOpen())
        _folder.close();
    else
        Q_EMIT closeRequested();
}

/// Swaps the horizontal arrow keys in right-to-left layouts.
static int inReadingOrder(int key) {
    if (!QGuiApplication::isRightToLeft())
        return key;
    return key == Qt::Key_Left ? Qt::Key_Right : key == Qt::Key_Right ? Qt::Key_Left : key;
}

bool LauncherController::pressKey(int key, int modifiers, const QString& text) {
    key = inReadingOrder(key);
    for (MenuModel* menu : menus()) {
        if (menu->isOpen()) {
            menu->pressKey(key, modifiers & Qt::ControlModifier ? QString() : text);
            return true;
        }
    }
    if (_panels.smartFolder()->days()->isOpen()) {
        _panels.smartFolder()->days()->pressKey(key);
        return true;
    }
    if (key == Qt::Key_Escape) {
        escape();
        return true;
    }
    if (_alert.isOpen()) {
        _alert.pressKey(key);
        return true;
    }
    if (_panels.removal()->isOpen())
        _panels.removal()->pressKey(key, modifiers & Qt::ControlModifier);
    if (_drag.isLifted() || isCovered())
        return true;
    GridModel& model = shown();
    if (pressArrow(key, modifiers))
        return true;
    if (modifiers & Qt::ControlModifier)
        return pressShortcut(key, modifiers & Qt::ShiftModifier);
    if (text == u"?" && !_search.isActive()) {
        _sheets.open(Sheets::keys);
        return true;
    }
    switch (key) {
    case Qt::Key_PageUp:
        model.turnTo(model.page() - 1);
        return true;
    case Qt::Key_PageDown:
        model.turnTo(model.page() + 1);
        return true;
    case Qt::Key_Home:
        model.turnTo(0);
        return true;
    case Qt::Key_End:
        model.turnTo(model.pageCount() - 1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const QStringList selected = selectedIds(); selected.size() == 1)
            activate(selected.first());
        return true;
    case Qt::Key_F2:
        if (const QStringList selected = selectedIds(); selected.size() == 1)
            _renaming.begin(selected.first());
        return true;
    case Qt::Key_F10:
        if (!(modifiers & Qt::ShiftModifier))
            return false;
        [[fallthrough]];
    case Qt::Key_Menu:
        Q_EMIT menuRequested(selectedIds().value(0));
        return true;
    default:
        return false;
    }
}

bool LauncherController::pressShortcut(int key, bool isShifted) {
    if (_search.isActive()) {
        if (key >= Qt::Key_1 && key <= Qt::Key_9)
            if (const auto result = _search.resultAt(key - Qt::Key_1)) {
                activate(toText(*result));
                return true;
            }
        if (key != Qt::Key_I)
            return false; // while searching, these are the text field's
    }
    const auto modifiers = isShifted ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier;
    const ActionTarget target = selectedTarget();
    const auto done = performShortcut(_viewModel, target, Qt::Key(key), modifiers);
    if (done)
        perform(target, done);
    return done.has_value();
}

/// The target of keyboard commands: the last selected tile, or the selected search result.
ActionTarget LauncherController::selectedTarget() {
    const auto& selected =
        _search.isActive() ? _search.selected() : _viewModel.shown().selectedItemID();
    return {.mode = _viewModel.shown().mode(),
            .item = selected ? shown().tile(*selected) : std::nullopt,
            .isSearchResult = _search.isActive()};
}

bool LauncherController::type(const QString& text) {
    if (text.isEmpty() || !text.at(0).isPrint() || _menu.isOpen() || _drag.isLifted() || isCovered())
        return false;
    _search.setText(_search.text() + text);
    return true;
}

bool LauncherController::pressArrow(int key, int modifiers) {
    static const QHash<int, Direction> directions{{Qt::Key_Left, Direction::left},
                                                  {Qt::Key_Right, Direction::right},
                                                  {Qt::Key_Up, Direction::up},
                                                  {Qt::Key_Down, Direction::down}};
    const auto direction = directions.find(key);
    if (direction == directions.end())
        return false;
    const bool isShifted = modifiers & Qt::ShiftModifier;
    if (!(modifiers & Qt::ControlModifier) || _search.isActive())
        moveSelection(*direction, isShifted && !_search.isActive());
    else if (isShifted)
        groupWith(*direction);
    else
        moveTiles(*direction);
    return true;
}

/// The slot next to the selected tile.
std::optional<ShownPlace> LauncherController::beside(Direction direction) {
    const GridModel& model = shown();
    const GridGeometry geometry{.rows = model.metrics().rows, .columns = model.metrics().columns};
    const auto& selected =
        _search.isActive() ? _search.selected() : _viewModel.shown().selectedItemID();
    return neighbour(model.pages(), geometry, model.page(),
                     selected ? model.pages().slotOf(*selected, model.page()) : std::nullopt,
                     direction);
}

void LauncherController::moveSelection(Direction direction, bool extends) {
    GridModel& model = shown();
    const auto to = beside(direction);
    if (!to || (extends && to->page != model.page()))
        return; // a selection cannot span pages
    const QUuid tile = model.pages().tiles(to->page).at(to->slot).id();
    if (to->page != model.page())
        model.turnTo(static_cast<int>(to->page));
    if (_search.isActive())
        return _search.select(tile);
    if (extends)
        return selectRange(tile);
    _viewModel.shown().select(tile);
}

/// Moves the selected tiles one slot or row on; past the end of a page, to the next page.
void LauncherController::moveTiles(Direction direction) {
    LiveLayout& layout = _viewModel.shown();
    const QSet<QUuid> selected = layout.selectedItemIDs();
    const TileDrag::Area area = dragArea();
    if (area.rulesDecide)
        return _viewModel.messages().report(launcherError(EditRefusal::rulesDecide));
    const Page tiles = area.pages.tiles(area.page);
    int home = -1; // the number of other tiles before the first selected one
    int staying = 0;
    for (const LaunchpadItem& item : tiles) {
        if (!selected.contains(item.id()))
            ++staying;
        else if (home < 0)
            home = staying;
    }
    if (home < 0)
        return;
    const bool isBack = direction == Direction::left || direction == Direction::up;
    const bool isAcross = direction == Direction::left || direction == Direction::right;
    int page = area.page;
    int slot = home + (isBack ? -1 : 1) * (isAcross ? 1 : area.cells.columns);
    if (isAcross && (slot < 0 || slot > staying)) {
        page += isBack ? -1 : 1;
        if (page < 0 || (page >= area.pages.count() && staying == 0))
            return;
        slot = isBack ? static_cast<int>(area.pages.tiles(page).size()) : 0;
    }
    slot = std::max(0, slot);
    const Drop drop = dropAt({.pages = area.pages,
                              .page = page,
                              .columns = area.cells.columns,
                              .rows = area.cells.rows + 1, // may go past a full page
                              .gap = slot,
                              .folder = area.folder,
                              .lifted = selected},
                             {slot % area.cells.columns + 0.5, slot / area.cells.columns + 0.5});
    if (drop.kind != Drop::Kind::between)
        return;
    const QList<QUuid> moved = layout.inOrder(selected);
    _viewModel.messages().report(_viewModel.editor().moveTiles(layout.mode(), moved, drop.place));
    shown().turnTo(page);
    layout.select(moved);
}

/// Groups the selected tiles with the one next to them.
void LauncherController::groupWith(Direction direction) {
    const GridModel& model = shown();
    const auto to = beside(direction);
    LiveLayout& layout = _viewModel.shown();
    if (!to || to->page != model.page() || layout.selectedItemIDs().isEmpty())
        return;
    const LaunchpadItem target = model.pages().tiles(to->page).at(to->slot);
    if (layout.selectedItemIDs().contains(target.id()))
        return;
    const auto grouped = _viewModel.editor().groupTiles(
        layout.mode(), layout.inOrder(layout.selectedItemIDs()), target.id());
    _viewModel.messages().report(grouped);
    unselect();
    if (grouped && target.app())
        nameFolderAround(target.id());
    else if (grouped)
        layout.select(target.id());
}

// ---- menus

void LauncherController::openMenu(const QString& tileId, QPointF point) {
    if (_alert.isOpen() || _drag.isLifted())
        return;
    _drag.release();
    const auto item = tileId.isEmpty() ? std::nullopt : shown().tile(QUuid::fromString(tileId));
    if (item && !_search.isActive() && !_viewModel.shown().selectedItemIDs().contains(item->id()))
        _viewModel.shown().select(item->id());
    else if (!item)
        unselect();
    _menuTarget = {
        .mode = _viewModel.shown().mode(), .item = item, .isSearchResult = _search.isActive()};
    _menu.open(actionMenu(_viewModel, _menuTarget), point);
}

void LauncherController::openArrangements() {
    _panels.arrangements()->open();
    _sheets.open(Sheets::arrangements);
}

void LauncherController::openArranging(bool isFirstRun) {
    _panels.arranging()->open(isFirstRun);
    _sheets.open(Sheets::arranging);
}

void LauncherController::openBackups() {
    _panels.backups()->refresh();
    _sheets.open(Sheets::backups);
}

void LauncherController::openUpdateMenu(const QString& appKey, QPointF point) {
    const AppEntry* app = _viewModel.applications().withKey(appKey);
    if (!app)
        return;
    _menuTarget = {.mode = _viewModel.shown().mode(),
                   .item = *app,
                   .isSearchResult = true,
                   .isAboutUpdates = true};
    _menu.open(actionMenu(_viewModel, _menuTarget), point, 0);
}

void LauncherController::performMenuEntry(const QString& id) {
    const ActionTarget target = _menuTarget;
    perform(target, performAction(_viewModel, target, id));
}

void LauncherController::perform(const ActionTarget& target, std::optional<ActionRequest> request) {
    switch (request.value_or(ActionRequest::none)) {
    case ActionRequest::none:
        return;
    case ActionRequest::rename:
        return _renaming.begin(target.item ? toText(target.item->id()) : selectedIds().value(0));
    case ActionRequest::whereabouts:
        return _search.clear();
    case ActionRequest::keys:
        return _sheets.open(Sheets::keys);
    case ActionRequest::information:
        if (const AppEntry* app = target.item ? target.item->app() : nullptr) {
            _panels.information()->open(target.mode, *app);
            _sheets.open(Sheets::information);
        }
        return;
    case ActionRequest::icon:
        return _sheets.open(Sheets::icon, target.item ? target.item->app() : nullptr);
    case ActionRequest::rules:
        return _sheets.open(Sheets::smartFolder);
    case ActionRequest::settings:
        return _sheets.open(Sheets::settings);
    case ActionRequest::arrangements:
        return openArrangements();
    case ActionRequest::arranging:
        return openArranging(false);
    case ActionRequest::backups:
        return openBackups();
    case ActionRequest::unplaced:
        _panels.unplaced()->refresh();
        _sheets.open(Sheets::unplaced);
        return requestIcons();
    case ActionRequest::updates:
        return _sheets.open(Sheets::updates);
    case ActionRequest::pastRemovals:
        _panels.pastRemovals()->open();
        return _sheets.open(Sheets::pastRemovals);
    }
}

} // namespace tessellar
