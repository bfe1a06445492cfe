#include "app/launcher_controller.h"
#include "app/tile_navigation.h"
#include "launcher/launcher_icons.h"
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

void LauncherController::report(const LauncherEditor::Outcome& outcome) {
    if (!outcome)
        _viewModel.report(outcome.error());
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
    const LaunchpadItem* item = shownItem(tileId);
    if (!item)
        return;
    if (const AppEntry* app = item->app())
        _viewModel.launch(appKey(*app));
    else
        _viewModel.openFolder(item->id());
}

void LauncherController::click(const QString& tileId, int modifiers) {
    if (!(modifiers & Qt::ControlModifier) || _search.isActive()) {
        unselect();
        return activate(tileId);
    }
    const QUuid id = QUuid::fromString(tileId);
    QList<QUuid> selected = _viewModel.selectedItemIDs().values();
    if (!selected.removeOne(id))
        selected.append(id);
    _viewModel.editor().select(selected);
}

// ---- alerts and questions

void LauncherController::answerAlert(bool accepted) {
    if (!_alerts.isEmpty()) {
        _alerts.removeFirst();
        _isAcceptDefault = !isAlertDestructive();
        Q_EMIT alertChanged();
    } else {
        _viewModel.answer(accepted);
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
    else if (_viewModel.selectedItemIDs().size() > 1)
        unselect();
    else if (isFolderOpen())
        _viewModel.closeFolder();
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
    LauncherEditor& editor = _viewModel.editor();
    const auto told = [this](const LauncherEditor::Outcome& outcome) { report(outcome); };
    if (key == Qt::Key_Z || key == Qt::Key_Y) {
        if (isShifted || key == Qt::Key_Y)
            editor.redo(told);
        else
            editor.undo(told);
        return true;
    }
    // In the order of the arrangement, not of a set.
    QList<QUuid> selected;
    tessellar::forEachItem(_viewModel.pages(), [&](const LaunchpadItem& item) {
        if (_viewModel.selectedItemIDs().contains(item.id()))
            selected.append(item.id());
        return true;
    });
    const bool rulesDecide = isFolderOpen() && !_viewModel.folder(_viewModel.folderStack().last().id);
    switch (key) {
    case Qt::Key_A: {
        QList<QUuid> all;
        for (const LaunchpadItem& item : shown().tiles(page()))
            all.append(item.id());
        editor.select(all);
        return true;
    }
    case Qt::Key_C:
        editor.copy(selected);
        return true;
    case Qt::Key_X:
        if (!rulesDecide)
            editor.cut(selected);
        return true;
    case Qt::Key_V:
        if (!rulesDecide)
            editor.paste();
        return true;
    default:
        return false;
    }
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
        _viewModel.setFolderPage(page() + pages);
    else
        _viewModel.setCurrentPage(page() + pages);
}

void LauncherController::moveSelection(int key, bool extends) {
    const Direction direction = key == Qt::Key_Left    ? Direction::left
                                : key == Qt::Key_Right ? Direction::right
                                : key == Qt::Key_Up    ? Direction::up
                                                       : Direction::down;
    const bool isInFolder = isFolderOpen() && !_search.isActive();
    GridGeometry geometry = isInFolder ? folderGeometry(_viewModel.layoutSettings())
                                       : pageGeometry(_viewModel.layoutSettings());
    if (isInFolder)
        geometry.columns = folderColumns();
    std::optional<ShownPlace> from;
    if (const auto& selected = _search.isActive() ? _search.selected() : _viewModel.selectedItemID())
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
        return _viewModel.select(tile);
    QList<QUuid> selected = _viewModel.selectedItemIDs().values();
    selected.removeOne(tile);
    _viewModel.editor().select(selected + QList{tile});
}

// ---- menus

void LauncherController::openMenu(const QString& tileId, QPointF point) {
    if (hasAlert() || _drag.isLifted())
        return;
    _drag.letGo();
    const LaunchpadItem* item = tileId.isEmpty() ? nullptr : shownItem(tileId);
    if (item && !_search.isActive() && !_viewModel.selectedItemIDs().contains(item->id()))
        _viewModel.select(item->id());
    else if (!item)
        unselect();
    _menuTarget = {.item = item ? std::optional(*item) : std::nullopt,
                   .isSearchResult = _search.isActive()};
    _menu.open(tileMenu(_viewModel, _menuTarget), point);
}

void LauncherController::performMenuEntry(const QString& id) {
    const MenuTarget target = _menuTarget;
    switch (tessellar::performMenuEntry(_viewModel, target, id)) {
    case MenuRequest::none:
        return;
    case MenuRequest::rename:
        return beginRename(toText(target.item->id()));
    case MenuRequest::icon:
        return openSheet(QStringLiteral("icon"));
    case MenuRequest::rules:
        return openSheet(smartFolderSheet);
    case MenuRequest::updates:
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
        appKey(*app), file, [this](const LauncherIcons::Outcome& outcome) { report(outcome); }, &host);
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
    const LaunchpadItem* item = _viewModel.item(QUuid::fromString(tileId));
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
    const LaunchpadItem* item = _viewModel.item(*tile);
    if (!item || trimmed(name).isEmpty())
        return;
    if (!item->smartFolder())
        return report(_viewModel.editor().rename(*tile, name));
    if (const SmartFolderDefinition* known = _viewModel.smartFolders().definition(*tile)) {
        SmartFolderDefinition renamed = *known;
        renamed.name = trimmed(name);
        if (renamed.name != known->name)
            report(_viewModel.editor().changeSmartFolder(renamed));
    }
}

void LauncherController::cancelRename() {
    if (std::exchange(_renaming, std::nullopt))
        Q_EMIT renamingChanged();
}

} // namespace tessellar
