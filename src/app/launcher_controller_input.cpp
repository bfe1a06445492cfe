#include "app/launcher_controller.h"
#include "app/tile_navigation.h"
#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"
#include "platform/uuid_source.h"

#include <algorithm>

namespace tessellar {

// What the user does in the window.

GridModel& LauncherController::shown() {
    return _search.isActive() ? *_search.results() : _folder.isOpen() ? *_folder.tiles() : _grid;
}

bool LauncherController::isCovered() const {
    return _alert.isOpen() || !_sheets.current().isEmpty() || _removal.isOpen();
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
    // What a smart folder shows, or a search finds, may have no tile in the arrangement.
    const auto item = shown().tile(QUuid::fromString(tileId));
    if (item)
        _viewModel.open(_viewModel.shown().mode(), *item);
}

void LauncherController::click(const QString& tileId, int modifiers) {
    if (!(modifiers & Qt::ControlModifier) || _search.isActive()) {
        unselect();
        return activate(tileId);
    }
    const QUuid id = QUuid::fromString(tileId);
    QList<QUuid> selected = _viewModel.shown().selectedItemIDs().values();
    if (!selected.removeOne(id))
        selected.append(id);
    _viewModel.shown().select(selected);
}

// ---- keys

void LauncherController::escape() {
    if (_menu.isOpen())
        _menu.close();
    else if (_smartFolder.choices()->isOpen())
        _smartFolder.choices()->close();
    else if (_smartFolder.days()->isOpen())
        _smartFolder.days()->close();
    else if (_drag.cancel())
        return;
    else if (_alert.isOpen())
        _alert.answer(false);
    else if (_removal.isOpen())
        _removal.cancel();
    else if (_sheets.current() == Sheets::smartFolder)
        _smartFolder.leave();
    else if (!_sheets.current().isEmpty())
        _sheets.close();
    else if (_search.isActive())
        _search.clear();
    else if (_viewModel.shown().selectedItemIDs().size() > 1)
        unselect();
    else if (_folder.isOpen())
        _folder.close();
    else
        Q_EMIT closeRequested();
}

bool LauncherController::pressKey(int key, int modifiers) {
    for (MenuModel* menu : {&_menu, _smartFolder.choices()}) {
        if (menu->isOpen()) {
            menu->pressKey(key);
            return true;
        }
    }
    if (_smartFolder.days()->isOpen()) {
        _smartFolder.days()->pressKey(key);
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
    if (_sheets.current() == Sheets::smartFolder && (key == Qt::Key_Return || key == Qt::Key_Enter))
        _smartFolder.save();
    if (_removal.isOpen())
        _removal.pressKey(key, modifiers & Qt::ControlModifier);
    if (_drag.isLifted() || isCovered())
        return true;
    GridModel& model = shown();
    const bool isShifted = modifiers & Qt::ShiftModifier;
    if (modifiers & Qt::ControlModifier)
        return pressShortcut(key, isShifted);
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        moveSelection(key, isShifted);
        return true;
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
        if (const QStringList selected = selectedIds(); selected.size() == 1 && !_search.isActive())
            _renaming.begin(selected.first());
        return true;
    case Qt::Key_Menu:
        Q_EMIT menuWanted(selectedIds().value(0));
        return true;
    default:
        return false;
    }
}

bool LauncherController::pressShortcut(int key, bool isShifted) {
    // While something is typed, these are the field's.
    if (_search.isActive())
        return false;
    const auto modifiers = isShifted ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier;
    const auto done = performShortcut(_viewModel, _viewModel.shown().mode(), Qt::Key(key), modifiers);
    if (done)
        perform({}, done);
    return done.has_value();
}

bool LauncherController::type(const QString& text) {
    if (text.isEmpty() || !text.at(0).isPrint() || _menu.isOpen() || _drag.isLifted() || isCovered())
        return false;
    _search.setText(_search.text() + text);
    return true;
}

void LauncherController::moveSelection(int key, bool extends) {
    const Direction direction = key == Qt::Key_Left    ? Direction::left
                                : key == Qt::Key_Right ? Direction::right
                                : key == Qt::Key_Up    ? Direction::up
                                                       : Direction::down;
    GridModel& model = shown();
    const GridGeometry geometry{.rows = model.metrics().rows, .columns = model.metrics().columns};
    std::optional<qsizetype> from;
    if (const auto& selected =
            _search.isActive() ? _search.selected() : _viewModel.shown().selectedItemID())
        from = model.pages().slotOf(*selected, model.page());
    const auto to = neighbour(model.pages(), geometry, model.page(), from, direction);
    if (!to)
        return;
    const QUuid tile = model.pages().tiles(to->page).at(to->slot).id();
    if (to->page != model.page())
        model.turnTo(static_cast<int>(to->page));
    if (_search.isActive())
        return _search.select(tile);
    if (!extends)
        return _viewModel.shown().select(tile);
    QList<QUuid> selected = _viewModel.shown().selectedItemIDs().values();
    selected.removeOne(tile);
    _viewModel.shown().select(selected + QList{tile});
}

// ---- menus

void LauncherController::openMenu(const QString& tileId, QPointF point) {
    if (_alert.isOpen() || _drag.isLifted())
        return;
    _drag.letGo();
    const auto item = tileId.isEmpty() ? std::nullopt : shown().tile(QUuid::fromString(tileId));
    if (item && !_search.isActive() && !_viewModel.shown().selectedItemIDs().contains(item->id()))
        _viewModel.shown().select(item->id());
    else if (!item)
        unselect();
    _menuTarget = {
        .mode = _viewModel.shown().mode(), .item = item, .isSearchResult = _search.isActive()};
    _menu.open(actionMenu(_viewModel, _menuTarget), point);
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
    case ActionRequest::icon:
        return _sheets.open(Sheets::icon, target.item ? target.item->app() : nullptr);
    case ActionRequest::rules:
        return _sheets.open(Sheets::smartFolder);
    case ActionRequest::backups:
        _backups.refresh();
        return _sheets.open(Sheets::backups);
    case ActionRequest::updates:
        return _sheets.open(Sheets::updates);
    case ActionRequest::pastRemovals:
        _pastRemovals.open();
        return _sheets.open(Sheets::pastRemovals);
    }
}

} // namespace tessellar
