#include "app/launcher_input.h"

#include "editing/tile_drop.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/tile_opener.h"
#include "platform/uuid_source.h"

#include <QGuiApplication>

#include <algorithm>

namespace tessellar {

LauncherInput::LauncherInput(LauncherViewModel& viewModel, TileSelection& selection, OpenFolder& folder,
                             TileSearch& search, TileDrag& drag, TileRenaming& renaming, Sheets& sheets,
                             Panels& panels, AlertPanel& alert)
    : _viewModel(viewModel)
    , _selection(selection)
    , _folder(folder)
    , _search(search)
    , _drag(drag)
    , _renaming(renaming)
    , _sheets(sheets)
    , _panels(panels)
    , _alert(alert) {
    connect(&_menu, &MenuModel::chosen, this, [this](const QString& id) {
        const ActionTarget target = _menuTarget;
        perform(target, performAction(_viewModel, target, id).value_or(ActionRequest::none));
    });
    connect(&_search, &TileSearch::changed, &_menu, &MenuModel::close);
    connect(&_alert, &AlertPanel::changed, this, [this] {
        if (_alert.isOpen())
            makeRoom();
    });
    connect(&_alert, &AlertPanel::changed, this, &LauncherInput::coveredChanged);
    connect(panels.removal(), &RemovalPanel::changed, this, &LauncherInput::coveredChanged);
    connect(&_sheets, &Sheets::changed, this, &LauncherInput::coveredChanged);
}

bool LauncherInput::isCovered() const {
    return _alert.isOpen() || !_sheets.current().isEmpty() || _panels.removal()->isOpen();
}

bool LauncherInput::isBusy() const {
    return !_sheets.current().isEmpty() || _panels.removal()->isOpen() ||
           !_renaming.tileId().isEmpty() || _viewModel.messages().question();
}

/// Called before something opens that the user did not click or type for.
void LauncherInput::makeRoom() {
    _drag.cancel();
    for (MenuModel* menu : menus())
        menu->close();
    _panels.smartFolder()->popups()->close();
}

bool LauncherInput::isSeveralSelected() const {
    return _viewModel.shown().navigation().selectedItemIDs().size() > 1;
}

// ---- the pointer

void LauncherInput::activate(const QString& tileId) {
    // A smart folder's contents and search results need not have a tile in the arrangement.
    const auto item = _selection.shown().tile(QUuid::fromString(tileId));
    if (item)
        _viewModel.opener().open(mode(), *item);
}

void LauncherInput::click(const QString& tileId, int modifiers) {
    const QUuid id = QUuid::fromString(tileId);
    constexpr int meant = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (!(modifiers & meant)) {
        _selection.clear();
        return activate(tileId);
    }
    if (modifiers & Qt::ShiftModifier)
        return _selection.extendTo(id);
    _selection.toggle(id);
}

void LauncherInput::clickBackground() {
    if (_menu.isOpen())
        return _menu.close();
    if (_search.isActive())
        return _search.clear();
    if (isSeveralSelected() || _folder.isOpen() || mode() == LauncherWindowMode::windowed)
        _selection.clear();
    else
        Q_EMIT closeRequested();
}

// ---- keys

void LauncherInput::escape() {
    const auto all = menus();
    const auto open = std::ranges::find_if(all, &MenuModel::isOpen);
    if (open != all.end())
        return (*open)->close();
    if (DayPicker* days = _panels.smartFolder()->popups()->days(); days->isOpen())
        return days->close();
    if (_drag.putBack())
        return;
    if (_alert.isOpen())
        return _alert.answer(false);
    if (_panels.removal()->isOpen())
        return _panels.removal()->cancel();
    if (_sheets.current() == Sheets::smartFolder)
        return _panels.smartFolder()->leave();
    if (_sheets.current() == Sheets::arrangements && _panels.arrangements()->endTask())
        return;
    if (!_sheets.current().isEmpty())
        return _sheets.leave();
    if (_search.isActive())
        return _search.clear();
    if (isSeveralSelected())
        return _selection.clear();
    if (_folder.isOpen())
        return _folder.close();
    Q_EMIT closeRequested();
}

/// Swaps the horizontal arrow keys in right-to-left layouts.
static int inReadingOrder(int key) {
    if (!QGuiApplication::isRightToLeft())
        return key;
    return key == Qt::Key_Left ? Qt::Key_Right : key == Qt::Key_Right ? Qt::Key_Left : key;
}

bool LauncherInput::pressKey(int key, int modifiers, const QString& text) {
    key = inReadingOrder(key);
    for (MenuModel* menu : menus()) {
        if (menu->isOpen()) {
            menu->pressKey(key, modifiers & Qt::ControlModifier ? QString() : text);
            return true;
        }
    }
    if (_panels.smartFolder()->popups()->days()->isOpen()) {
        _panels.smartFolder()->popups()->days()->pressKey(key);
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
    if (_drag.isActive() || isCovered())
        return true;
    GridModel& model = _selection.shown();
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
        if (const QStringList selected = _selection.ids(); selected.size() == 1)
            activate(selected.first());
        return true;
    case Qt::Key_F2:
        if (const QStringList selected = _selection.ids(); selected.size() == 1)
            _renaming.begin(selected.first());
        return true;
    case Qt::Key_F10:
        if (!(modifiers & Qt::ShiftModifier))
            return false;
        [[fallthrough]];
    case Qt::Key_Menu:
        Q_EMIT menuRequested(_selection.ids().value(0));
        return true;
    default:
        return false;
    }
}

bool LauncherInput::pressShortcut(int key, bool isShifted) {
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
        perform(target, *done);
    return done.has_value();
}

/// The target of keyboard commands: the last selected tile, or the selected search result.
ActionTarget LauncherInput::selectedTarget() const {
    const auto selected = _selection.last();
    return {.mode = mode(),
            .item = selected ? _selection.shown().tile(*selected) : std::nullopt,
            .isSearchResult = _search.isActive()};
}

bool LauncherInput::type(const QString& text) {
    if (text.isEmpty() || !text.at(0).isPrint() || _menu.isOpen() || _drag.isActive() || isCovered())
        return false;
    _search.setText(_search.text() + text);
    return true;
}

bool LauncherInput::pressArrow(int key, int modifiers) {
    static const QHash<int, Direction> directions{{Qt::Key_Left, Direction::left},
                                                  {Qt::Key_Right, Direction::right},
                                                  {Qt::Key_Up, Direction::up},
                                                  {Qt::Key_Down, Direction::down}};
    const auto direction = directions.find(key);
    if (direction == directions.end())
        return false;
    const bool isShifted = modifiers & Qt::ShiftModifier;
    if (!(modifiers & Qt::ControlModifier) || _search.isActive())
        _selection.move(*direction, isShifted && !_search.isActive());
    else if (isShifted)
        groupWith(*direction);
    else
        moveTiles(*direction);
    return true;
}

/// Moves the selected tiles one slot or row on; past the end of a page, to the next page.
void LauncherInput::moveTiles(Direction direction) {
    LiveLayout& layout = _viewModel.shown();
    const QSet<QUuid> selected = layout.navigation().selectedItemIDs();
    const GridModel& model = _selection.shown();
    const ShownPages& pages = _folder.isOpen() ? _folder.shown() : layout.shownPages();
    const int columns = model.metrics().columns;
    if (_folder.isOpen() && _folder.rulesDecide())
        return _viewModel.messages().report(launcherError(EditRefusal::rulesDecide));
    const Page tiles = pages.tiles(model.page());
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
    int page = model.page();
    int slot = home + (isBack ? -1 : 1) * (isAcross ? 1 : columns);
    if (isAcross && (slot < 0 || slot > staying)) {
        page += isBack ? -1 : 1;
        if (page < 0 || (page >= pages.count() && staying == 0))
            return;
        slot = isBack ? static_cast<int>(pages.tiles(page).size()) : 0;
    }
    slot = std::max(0, slot);
    const int row = slot / columns;
    const Drop drop =
        dropAt({.pages = pages,
                .page = page,
                .columns = columns,
                .rows = model.metrics().rows + 1, // may go past a full page
                .gap = slot,
                .folder = _folder.isOpen() ? std::optional(layout.navigation().folderStack().last().id)
                                           : std::nullopt,
                .moving = selected},
               {slot % columns + 0.5, row + 0.5});
    if (drop.kind != Drop::Kind::between)
        return;
    const QList<QUuid> moved = layout.inOrder(selected);
    _viewModel.messages().report(_viewModel.editor().moveTiles(layout.mode(), moved, drop.place));
    _selection.shown().turnTo(page);
    layout.navigation().select(moved);
}

/// Groups the selected tiles with the one next to them.
void LauncherInput::groupWith(Direction direction) {
    const GridModel& model = _selection.shown();
    const auto to = _selection.beside(direction);
    LiveLayout& layout = _viewModel.shown();
    if (!to || to->page != model.page() || layout.navigation().selectedItemIDs().isEmpty())
        return;
    const LaunchpadItem target = model.pages().tiles(to->page).at(to->slot);
    if (layout.navigation().selectedItemIDs().contains(target.id()))
        return;
    const auto grouped = _viewModel.editor().groupTiles(
        layout.mode(), layout.inOrder(layout.navigation().selectedItemIDs()), target.id());
    _viewModel.messages().report(grouped);
    _selection.clear();
    if (grouped && target.app())
        _renaming.nameFolderAround(target.id());
    else if (grouped)
        layout.navigation().select(target.id());
}

// ---- menus

void LauncherInput::openMenu(const QString& tileId, QPointF point) {
    if (_alert.isOpen() || _drag.isActive())
        return;
    _drag.release();
    const auto item =
        tileId.isEmpty() ? std::nullopt : _selection.shown().tile(QUuid::fromString(tileId));
    if (item && !_search.isActive() && !_selection.contains(item->id()))
        _viewModel.shown().navigation().select(item->id());
    else if (!item)
        _selection.clear();
    _menuTarget = {.mode = mode(), .item = item, .isSearchResult = _search.isActive()};
    _menu.open(actionMenu(_viewModel, _menuTarget), point);
}

void LauncherInput::openUpdateMenu(const QString& appKey, QPointF point) {
    const AppEntry* app = _viewModel.applications().withKey(appKey);
    if (!app)
        return;
    _menuTarget = {.mode = mode(), .item = *app, .isSearchResult = true, .isAboutUpdates = true};
    _menu.open(actionMenu(_viewModel, _menuTarget), point, 0);
}

bool LauncherInput::continueAction(const ActionTarget& target, ActionRequest request) {
    using enum ActionRequest;
    static constexpr std::array ofLayout{none, rename, arrangements, arranging, backups, unplaced};
    if (target.mode != mode() && std::ranges::find(ofLayout, request) != ofLayout.end())
        return false;
    if (request == rename && target.item) {
        const AppEntry* app = target.item->app();
        if (app && _viewModel.shown().hiddenKeys().contains(appKey(*app)))
            return false;
        _search.clear();
        _viewModel.shown().reveal(target.item->id());
    }
    makeRoom();
    perform(target, request);
    return true;
}

void LauncherInput::perform(const ActionTarget& target, ActionRequest request) {
    switch (request) {
    case ActionRequest::none:
    case ActionRequest::underway:
    case ActionRequest::refused:
    case ActionRequest::removal: // shows itself
        return;
    case ActionRequest::rename:
        return _renaming.begin(target.item ? toText(target.item->id()) : _selection.ids().value(0));
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
        return _panels.openArrangements();
    case ActionRequest::arranging:
        return _panels.openArranging(false);
    case ActionRequest::backups:
        return _panels.openBackups();
    case ActionRequest::unplaced:
        _panels.unplaced()->refresh();
        return _sheets.open(Sheets::unplaced);
    case ActionRequest::updates:
        return _sheets.open(Sheets::updates);
    case ActionRequest::pastRemovals:
        _panels.pastRemovals()->open();
        return _sheets.open(Sheets::pastRemovals);
    }
}

} // namespace tessellar
