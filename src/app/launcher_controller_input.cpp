#include "app/launcher_controller.h"
#include "app/tile_navigation.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_icons.h"
#include "launcher/smart_folder_library.h"
#include "platform/uuid_source.h"

#include <algorithm>

namespace tessellar {

// What the user does in the window.

const ShownPages& LauncherController::shown() const {
    return _search.isActive() ? _search.shown() : isFolderOpen() ? _folder.shown() : _grid.shown();
}

int LauncherController::page() const {
    return _search.isActive() ? _search.page() : isFolderOpen() ? folderPage() : currentPage();
}

const LaunchpadItem* LauncherController::shownItem(const QString& tileId) {
    const QUuid id = QUuid::fromString(tileId);
    // What a smart folder shows, or a search finds, may have no tile in the arrangement.
    const ShownPages& pages = shown();
    for (qsizetype page = 0; page < pages.count(); ++page) {
        for (const LaunchpadItem& item : pages.tiles(page)) {
            if (item.id() == id) {
                _shownItem = item;
                return &*_shownItem;
            }
        }
    }
    return nullptr;
}

QVariantMap LauncherController::tileView(const QString& tileId) const {
    for (const GridModel* model : {&_folder, &_grid}) {
        for (int index = 0; index < model->pageCount(); ++index) {
            const PageModel& page = *model->page(index);
            for (int row = 0; row < page.rowCount(); ++row) {
                if (page.tiles().at(row).id != tileId)
                    continue;
                QVariantMap view;
                const auto names = page.roleNames();
                for (auto name = names.begin(); name != names.end(); ++name)
                    view.insert(QString::fromLatin1(name.value()),
                                page.data(page.index(row), name.key()));
                return view;
            }
        }
    }
    return {};
}

// ---- the pointer

void LauncherController::activate(const QString& tileId) {
    if (const LaunchpadItem* item = shownItem(tileId))
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

// ---- alerts and questions

void LauncherController::answerAlert(bool accepted) {
    if (!_alerts.isEmpty()) {
        _alerts.removeFirst();
        _isAcceptDefault = !isAlertDestructive();
        Q_EMIT alertChanged();
    } else {
        _viewModel.messages().answer(accepted);
    }
}

void LauncherController::pressAlertKey(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return answerAlert(_isAcceptDefault);
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        if (!alertAccept().isEmpty()) {
            _isAcceptDefault = !_isAcceptDefault;
            Q_EMIT alertChanged();
        }
        return;
    default:
        return;
    }
}

void LauncherController::escape() {
    if (_menu.isOpen())
        _menu.close();
    else if (_smartFolder.choices()->isOpen())
        _smartFolder.choices()->close();
    else if (_drag.cancel())
        return;
    else if (hasAlert())
        answerAlert(false);
    else if (_removal.isOpen())
        _removal.cancel();
    else if (!_sheet.isEmpty())
        closeSheet();
    else if (_search.isActive())
        _search.clear();
    else if (_viewModel.shown().selectedItemIDs().size() > 1)
        unselect();
    else if (isFolderOpen())
        _viewModel.shown().closeFolder();
    else
        Q_EMIT closeRequested();
}

// ---- keys

bool LauncherController::pressKey(int key, int modifiers) {
    for (MenuModel* menu : {&_menu, _smartFolder.choices()}) {
        if (menu->isOpen()) {
            menu->pressKey(key);
            return true;
        }
    }
    if (key == Qt::Key_Escape) {
        escape();
        return true;
    }
    if (hasAlert()) {
        pressAlertKey(key);
        return true;
    }
    if (_sheet == smartFolderSheet && (key == Qt::Key_Return || key == Qt::Key_Enter))
        _smartFolder.save();
    if (_drag.isLifted() || !_sheet.isEmpty() || _removal.isOpen())
        return true;
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
        turn(-1);
        return true;
    case Qt::Key_PageDown:
        turn(1);
        return true;
    case Qt::Key_Home:
        turn(-static_cast<int>(shown().count()));
        return true;
    case Qt::Key_End:
        turn(static_cast<int>(shown().count()));
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const QStringList selected = selectedIds(); selected.size() == 1)
            activate(selected.first());
        return true;
    case Qt::Key_F2:
        if (const QStringList selected = selectedIds(); selected.size() == 1 && !_search.isActive())
            beginRename(selected.first());
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
    if (text.isEmpty() || !text.at(0).isPrint() || hasAlert() || _menu.isOpen() || _drag.isLifted() ||
        !_sheet.isEmpty() || _removal.isOpen())
        return false;
    _search.setText(_search.text() + text);
    return true;
}

void LauncherController::turn(int pages) {
    if (_search.isActive())
        _search.setPage(page() + pages);
    else if (isFolderOpen())
        _viewModel.shown().setFolderPage(page() + pages);
    else
        _viewModel.shown().setCurrentPage(page() + pages);
}

void LauncherController::moveSelection(int key, bool extends) {
    const Direction direction = key == Qt::Key_Left    ? Direction::left
                                : key == Qt::Key_Right ? Direction::right
                                : key == Qt::Key_Up    ? Direction::up
                                                       : Direction::down;
    const bool isInFolder = isFolderOpen() && !_search.isActive();
    GridGeometry geometry = isInFolder ? folderGeometry(_viewModel.shown().settings())
                                       : pageGeometry(_viewModel.shown().settings());
    if (isInFolder)
        geometry.columns = folderColumns();
    std::optional<ShownPlace> from;
    if (const auto& selected =
            _search.isActive() ? _search.selected() : _viewModel.shown().selectedItemID())
        from = shown().placeOf(*selected);
    const int before = page();
    const auto to = neighbour(shown(), geometry, before, from, direction);
    if (!to)
        return;
    const QUuid tile = shown().tiles(to->page).at(to->slot).id();
    turn(static_cast<int>(to->page) - before);
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
    if (hasAlert() || _drag.isLifted())
        return;
    _drag.letGo();
    const LaunchpadItem* item = tileId.isEmpty() ? nullptr : shownItem(tileId);
    if (item && !_search.isActive() && !_viewModel.shown().selectedItemIDs().contains(item->id()))
        _viewModel.shown().select(item->id());
    else if (!item)
        unselect();
    _menuTarget = {.mode = _viewModel.shown().mode(),
                   .item = item ? std::optional(*item) : std::nullopt,
                   .isSearchResult = _search.isActive()};
    _menu.open(actionMenu(_viewModel, _menuTarget), point);
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
        return beginRename(target.item ? toText(target.item->id()) : selectedIds().value(0));
    case ActionRequest::icon:
        return openSheet(QStringLiteral("icon"));
    case ActionRequest::rules:
        return openSheet(smartFolderSheet);
    case ActionRequest::updates:
        return openSheet(QStringLiteral("updates"));
    }
}

// ---- sheets

void LauncherController::openSheet(const QString& sheet) {
    const QString before = std::exchange(_sheet, sheet);
    if (before == sheet)
        return;
    Q_EMIT sheetChanged();
    if (before == smartFolderSheet)
        _smartFolder.cancel();
}

QString LauncherController::sheetName() const {
    const AppEntry* app = _menuTarget.item ? _menuTarget.item->app() : nullptr;
    return app ? app->name : QString();
}

void LauncherController::changeIcon(const QString& file) {
    const AppEntry* app = _menuTarget.item ? _menuTarget.item->app() : nullptr;
    if (!app || file.isEmpty())
        return;
    static const FileSystem host;
    _viewModel.icons().set(
        appKey(*app), file,
        [this](const LauncherIcons::Outcome& outcome) { _viewModel.messages().report(outcome); },
        &host);
    closeSheet();
}

void LauncherController::startAfresh() {
    _menu.close();
    _drag.cancel();
    _search.clear();
    cancelRename();
    closeSheet();
}

// ---- names

void LauncherController::beginRename(const QString& tileId) {
    const LaunchpadItem* item = _viewModel.shown().item(QUuid::fromString(tileId));
    const bool isFixed =
        item && item->smartFolder() && !_viewModel.smartFolders().definition(item->id());
    if (!item || isFixed)
        return;
    _renaming = item->id();
    Q_EMIT renamingChanged();
}

void LauncherController::endRename(const QString& name) {
    const auto tile = std::exchange(_renaming, std::nullopt);
    if (!tile)
        return;
    Q_EMIT renamingChanged();
    const LaunchpadItem* item = _viewModel.shown().item(*tile);
    if (!item || trimmed(name).isEmpty())
        return;
    _viewModel.messages().report(_viewModel.editor().rename(_viewModel.shown().mode(), *tile, name));
}

void LauncherController::cancelRename() {
    if (std::exchange(_renaming, std::nullopt))
        Q_EMIT renamingChanged();
}

} // namespace tessellar
