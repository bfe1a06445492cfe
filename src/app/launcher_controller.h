#pragma once

#include "app/alert_panel.h"
#include "app/backdrop.h"
#include "app/grid_metrics.h"
#include "app/grid_model.h"
#include "app/menu_model.h"
#include "app/open_folder.h"
#include "app/panels.h"
#include "app/sheets.h"
#include "app/tile_drag.h"
#include "app/tile_icons.h"
#include "app/tile_navigation.h"
#include "app/tile_renaming.h"
#include "app/tile_search.h"
#include "launcher/actions.h"
#include "launcher/launcher_view_model.h"
#include "platform/machine.h"

#include <QObject>
#include <QSizeF>

#include <array>
#include <vector>

namespace tessellar {

/// The window for QML: its parts, and the meaning of keys, clicks and menus. Keeps the parts in sync
/// with the view model. Contains no rules.
class LauncherController final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

    Q_PROPERTY(bool isReady READ isReady NOTIFY readyChanged)
    Q_PROPERTY(bool isWindowed READ isWindowed NOTIFY modeChanged)
    /// A sheet or alert covers the tiles and receives keys and clicks.
    Q_PROPERTY(bool isCovered READ isCovered NOTIFY coveredChanged)
    Q_PROPERTY(tessellar::TileIcons* icons READ icons CONSTANT)
    Q_PROPERTY(tessellar::Backdrop* backdrop READ backdrop CONSTANT)
    /// "light", "dark", or any other value to follow the system.
    Q_PROPERTY(QString appearance READ appearance NOTIFY appearanceChanged)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY appearanceChanged)
    /// Relative to the usual size.
    Q_PROPERTY(double textScale READ textScale NOTIFY appearanceChanged)

    Q_PROPERTY(tessellar::GridModel* grid READ grid CONSTANT)
    Q_PROPERTY(tessellar::OpenFolder* folder READ folder CONSTANT)
    Q_PROPERTY(tessellar::TileSearch* search READ search CONSTANT)
    Q_PROPERTY(tessellar::TileDrag* drag READ drag CONSTANT)
    Q_PROPERTY(tessellar::TileRenaming* renaming READ renaming CONSTANT)
    Q_PROPERTY(tessellar::MenuModel* menu READ menu CONSTANT)

    Q_PROPERTY(tessellar::Sheets* sheets READ sheets CONSTANT)
    Q_PROPERTY(tessellar::Panels* panels READ panels CONSTANT) ///< what the sheets show
    Q_PROPERTY(tessellar::AlertPanel* alert READ alert CONSTANT)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(QString unavailableNotice READ unavailableNotice CONSTANT)

public:
    LauncherController(LauncherViewModel& viewModel, TileIcons& icons, Machine& machine);

    /// The window's size in its own pixels, and the physical pixels per pixel.
    void setWindow(QSizeF size, double pixelRatio);
    /// Closes popups and clears the user's state, for the next time the window is shown.
    void startAfresh();

    bool isReady() const { return _viewModel.isBootstrapped(); }
    bool isWindowed() const { return _viewModel.shown().mode() == LauncherWindowMode::windowed; }
    bool isCovered() const;
    TileIcons* icons() const { return &_icons; }
    Backdrop* backdrop() { return &_backdrop; }
    QString appearance() const;
    bool reducesMotion() const;
    double textScale() const;
    GridModel* grid() { return &_grid; }
    OpenFolder* folder() { return &_folder; }
    TileSearch* search() { return &_search; }
    QStringList selectedIds() const;
    bool isSelected(const QUuid& tile) const;
    TileDrag* drag() { return &_drag; }
    TileRenaming* renaming() { return &_renaming; }
    MenuModel* menu() { return &_menu; }
    Sheets* sheets() { return &_sheets; }
    Panels* panels() { return &_panels; }
    AlertPanel* alert() { return &_alert; }
    QString notice() const;
    static QString unavailableNotice() { return LiveLayout::unavailableNotice(); }

    /// A tile's data, keyed by the names of the model's roles.
    Q_INVOKABLE QVariantMap tileView(const QString& tileId) const;
    /// Launches an application or opens a folder.
    Q_INVOKABLE void activate(const QString& tileId);
    /// A click opens a tile. With Control it toggles the tile's selection, with Shift it selects the
    /// range from the anchor; with any modifier nothing opens.
    Q_INVOKABLE void click(const QString& tileId, int modifiers);
    /// A click outside the tiles: clears the search or selection, or closes a full-screen launcher.
    Q_INVOKABLE void clickBackground();
    /// Selects only these tiles of the page, or adds them to the selection.
    Q_INVOKABLE void selectTiles(const QStringList& tileIds, bool adds);
    /// Goes back one step: an alert, a search, a folder, the window.
    Q_INVOKABLE void escape();
    /// Takes a Qt::Key and Qt::KeyboardModifiers; true if handled.
    Q_INVOKABLE bool pressKey(int key, int modifiers = 0, const QString& text = {});
    /// Text typed while no field has the focus.
    Q_INVOKABLE bool type(const QString& text);
    /// The menu of a tile, or of the background if `tileId` is empty.
    Q_INVOKABLE void openMenu(const QString& tileId, QPointF point);
    Q_INVOKABLE void openArrangements();
    Q_INVOKABLE void openBackups();
    /// True while a welcome or release notes are shown.
    bool isWelcoming() const;
    /// Opens the ways to rearrange all applications; on the first run, with a welcome.
    void openArranging(bool isFirstRun);
    /// Opens the menu for an application's update.
    Q_INVOKABLE void openUpdateMenu(const QString& appKey, QPointF point);

Q_SIGNALS:
    void readyChanged();
    void modeChanged();
    void appearanceChanged();
    void coveredChanged();
    void noticeChanged();
    /// The Menu key was pressed; handled by the selected tile, which knows its position.
    void menuRequested(const QString& tileId);
    /// The window should close.
    void closeRequested();

private:
    TileFacts tileFacts() const;
    void showSelection();
    void follow();
    void showMode();
    void showLayout();
    void showBadges();
    void showNavigation();
    void showGridPage();
    void updateMetrics();
    void requestIcons();
    void makeRoomForAlert();
    void showCut();
    void followUndo();
    void nameFolderAround(const QUuid& tile);
    TileDrag::Area dragArea() const;

    /// The tiles that keys and clicks apply to: search results, open folder or grid.
    GridModel& shown();
    /// Each receives all keys while open.
    std::array<MenuModel*, 3> menus() {
        return {&_menu, _panels.smartFolder()->choices(), _panels.arrangements()->menu()};
    }
    void unselect() { _viewModel.shown().select(std::nullopt); }
    void selectRange(const QUuid& to);
    void leaveBehind();
    void moveSelection(Direction direction, bool extends);
    bool pressArrow(int key, int modifiers);
    void moveTiles(Direction direction);
    void groupWith(Direction direction);
    std::optional<ShownPlace> beside(Direction direction);
    bool pressShortcut(int key, bool isShifted);
    ActionTarget selectedTarget();
    void performMenuEntry(const QString& id);
    void perform(const ActionTarget& target, std::optional<ActionRequest> request);

    LauncherViewModel& _viewModel;
    TileIcons& _icons;
    const Machine& _machine;
    Backdrop _backdrop;
    QSizeF _windowSize;
    double _pixelRatio = 1;
    ShownPages _shownPages;
    ShownPages _formerPages; ///< before the last change
    std::optional<QUuid> _lastReflow;
    QSet<QUuid> _cut; ///< waiting to be pasted
    GridModel _grid;
    OpenFolder _folder;
    TileSearch _search;
    TileDrag _drag;
    TileRenaming _renaming;
    MenuModel _menu;
    ActionTarget _menuTarget;
    Sheets _sheets;
    Panels _panels;
    AlertPanel _alert;
    std::vector<Subscription> _subscriptions;
};

} // namespace tessellar
