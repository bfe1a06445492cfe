#pragma once

#include "app/alert_panel.h"
#include "app/menu_model.h"
#include "app/panels.h"
#include "app/tile_drag.h"
#include "app/tile_renaming.h"
#include "app/tile_selection.h"
#include "launcher/actions.h"

#include <array>

namespace tessellar {

/// The meaning of keys, clicks and menus. Contains no rules.
class LauncherInput final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// A sheet or alert covers the tiles and receives keys and clicks.
    Q_PROPERTY(bool isCovered READ isCovered NOTIFY coveredChanged FINAL)
    Q_PROPERTY(tessellar::MenuModel* menu READ menu CONSTANT FINAL)

public:
    LauncherInput(LauncherViewModel& viewModel, TileSelection& selection, OpenFolder& folder,
                  TileSearch& search, TileDrag& drag, TileRenaming& renaming, Sheets& sheets,
                  Panels& panels, AlertPanel& alert);

    bool isCovered() const;
    MenuModel* menu() { return &_menu; }

    /// Launches an application or opens a folder.
    Q_INVOKABLE void activate(const QString& tileId);
    /// A click opens a tile. With Control it toggles the tile's selection, with Shift it selects the
    /// range from the anchor; with any modifier nothing opens.
    Q_INVOKABLE void click(const QString& tileId, int modifiers);
    /// A click outside the tiles: clears the search or selection, or closes a full-screen launcher.
    Q_INVOKABLE void clickBackground();
    /// Takes a Qt::Key and Qt::KeyboardModifiers; true if handled.
    Q_INVOKABLE bool pressKey(int key, int modifiers = 0, const QString& text = {});
    /// Text typed while no field has the focus.
    Q_INVOKABLE bool type(const QString& text);
    /// The menu of a tile, or of the background if `tileId` is empty.
    Q_INVOKABLE void openMenu(const QString& tileId, QPointF point);
    /// Opens the menu for an application's update.
    Q_INVOKABLE void openUpdateMenu(const QString& appKey, QPointF point);

    // For actions begun by a command.
    /// A sheet, a removal or a question is open, or a name is being typed.
    bool isBusy() const;
    /// Does what the action requests of the window. False if it is about a hidden tile, or the layout
    /// of the mode that is not shown.
    bool continueAction(const ActionTarget& target, ActionRequest request);

Q_SIGNALS:
    void coveredChanged();
    /// The Menu key was pressed; handled by the selected tile, which knows its position.
    void menuRequested(const QString& tileId);
    /// The window should close.
    void closeRequested();

private:
    /// Each receives all keys while open.
    std::array<MenuModel*, 3> menus() {
        return {&_menu, _panels.smartFolder()->popups()->choices(), _panels.arrangements()->menu()};
    }
    LauncherWindowMode mode() const { return _viewModel.shown().mode(); }
    bool isSeveralSelected() const;
    void makeRoom();
    void escape();
    bool pressArrow(int key, int modifiers);
    void moveTiles(Direction direction);
    void groupWith(Direction direction);
    bool pressShortcut(int key, bool isShifted);
    ActionTarget selectedTarget() const;
    void perform(const ActionTarget& target, ActionRequest request);

    LauncherViewModel& _viewModel;
    TileSelection& _selection;
    OpenFolder& _folder;
    TileSearch& _search;
    TileDrag& _drag;
    TileRenaming& _renaming;
    Sheets& _sheets;
    Panels& _panels;
    AlertPanel& _alert;
    MenuModel _menu;
    ActionTarget _menuTarget;
};

} // namespace tessellar
