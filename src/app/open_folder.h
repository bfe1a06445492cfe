#pragma once

#include "app/grid_model.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"

namespace tessellar {

/// The innermost open folder. Keeps its last contents while its panel closes.
class OpenFolder final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(QString tileId READ tileId NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY changed FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed FINAL)
    Q_PROPERTY(tessellar::GridModel* tiles READ tiles CONSTANT FINAL)
    Q_PROPERTY(QRectF panel READ panel NOTIFY panelChanged FINAL) ///< in window coordinates

public:
    OpenFolder(LauncherViewModel& viewModel, const TileFacts& facts);

    bool isOpen() const { return !_viewModel.shown().navigation().folderStack().isEmpty(); }
    QString tileId() const { return _tileId; }
    QString title() const { return _title; }
    QString notice() const { return _notice; }
    bool isEmpty() const { return _shown.count() == 0 || _shown.tiles(0).isEmpty(); }
    GridModel* tiles() { return &_tiles; }
    const GridModel* tiles() const { return &_tiles; }
    const ShownPages& shown() const { return _shown; }
    QRectF panel() const { return _panel; }
    /// True if a smart folder is open: its contents follow from its rules.
    bool rulesDecide() const { return _viewModel.shown().navigation().isOpenFolderComputed(); }

    /// Closes the folder. If tiles in it were selected, the folder is selected instead.
    Q_INVOKABLE void close();
    void refresh();
    /// Lays out the panel over a grid with these metrics.
    void layOut(QSizeF window, const GridMetrics& grid);

Q_SIGNALS:
    void changed();
    void panelChanged();

private:
    LauncherViewModel& _viewModel;
    bool _wasOpen = false; ///< at the last refresh
    QString _tileId;
    QString _title;
    QString _notice;
    GridModel _tiles;
    ShownPages _shown;
    QRectF _panel;
};

} // namespace tessellar
