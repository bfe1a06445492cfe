#pragma once

#include "app/appearance.h"
#include "app/backdrop.h"
#include "app/grid_metrics.h"
#include "app/grid_model.h"
#include "app/launcher_input.h"
#include "app/tile_icons.h"

#include <QObject>
#include <QSizeF>

#include <vector>

namespace tessellar {

/// The window for QML: its parts, kept in sync with the view model. Contains no rules.
class LauncherController final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

    Q_PROPERTY(bool isReady READ isReady NOTIFY readyChanged FINAL)
    Q_PROPERTY(bool isWindowed READ isWindowed NOTIFY modeChanged FINAL)
    Q_PROPERTY(tessellar::TileIcons* icons READ icons CONSTANT FINAL)
    Q_PROPERTY(tessellar::Backdrop* backdrop READ backdrop CONSTANT FINAL)
    Q_PROPERTY(tessellar::Appearance* appearance READ appearance CONSTANT FINAL)

    Q_PROPERTY(tessellar::GridModel* grid READ grid CONSTANT FINAL)
    Q_PROPERTY(tessellar::OpenFolder* folder READ folder CONSTANT FINAL)
    Q_PROPERTY(tessellar::TileSearch* search READ search CONSTANT FINAL)
    Q_PROPERTY(tessellar::TileSelection* selection READ selection CONSTANT FINAL)
    Q_PROPERTY(tessellar::TileDrag* drag READ drag CONSTANT FINAL)
    Q_PROPERTY(tessellar::TileRenaming* renaming READ renaming CONSTANT FINAL)
    Q_PROPERTY(tessellar::LauncherInput* input READ input CONSTANT FINAL)

    Q_PROPERTY(tessellar::Sheets* sheets READ sheets CONSTANT FINAL)
    Q_PROPERTY(tessellar::Panels* panels READ panels CONSTANT FINAL) ///< what the sheets show
    Q_PROPERTY(tessellar::AlertPanel* alert READ alert CONSTANT FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged FINAL)
    Q_PROPERTY(QString unavailableNotice READ unavailableNotice CONSTANT FINAL)

public:
    LauncherController(LauncherViewModel& viewModel, TileIcons& icons, Machine& machine);

    /// The window's size in its own pixels, and the physical pixels per pixel.
    void setWindow(QSizeF size, double pixelRatio);
    /// Closes popups and clears the user's state, for the next time the window is shown.
    void startAfresh();

    bool isReady() const { return _viewModel.isBootstrapped(); }
    bool isWindowed() const { return _viewModel.shown().mode() == LauncherWindowMode::windowed; }
    TileIcons* icons() const { return &_icons; }
    Backdrop* backdrop() { return &_backdrop; }
    Appearance* appearance() { return &_appearance; }
    GridModel* grid() { return &_grid; }
    OpenFolder* folder() { return &_folder; }
    TileSearch* search() { return &_search; }
    TileSelection* selection() { return &_selection; }
    TileDrag* drag() { return &_drag; }
    TileRenaming* renaming() { return &_renaming; }
    LauncherInput* input() { return &_input; }
    Sheets* sheets() { return &_sheets; }
    Panels* panels() { return &_panels; }
    AlertPanel* alert() { return &_alert; }
    QString notice() const;
    static QString unavailableNotice() { return LiveLayout::unavailableNotice(); }

    /// A tile's data, keyed by the names of the model's roles.
    Q_INVOKABLE QVariantMap tileView(const QString& tileId) const;

Q_SIGNALS:
    void readyChanged();
    void modeChanged();
    void noticeChanged();
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
    void showCut();
    void followUndo();
    TileDrag::Area dragArea() const;

    LauncherViewModel& _viewModel;
    TileIcons& _icons;
    Backdrop _backdrop;
    Appearance _appearance;
    QSizeF _windowSize;
    double _pixelRatio = 1;
    ShownPages _shownPages;
    ShownPages _formerPages; ///< before the last change
    std::optional<QUuid> _lastReflow;
    QSet<QUuid> _cut; ///< waiting to be pasted
    GridModel _grid;
    OpenFolder _folder;
    TileSearch _search;
    TileSelection _selection;
    TileDrag _drag;
    TileRenaming _renaming;
    Sheets _sheets;
    Panels _panels;
    AlertPanel _alert;
    LauncherInput _input;
    std::vector<Subscription> _subscriptions;
};

} // namespace tessellar
