#pragma once

#include "app/grid_metrics.h"
#include "app/grid_model.h"
#include "app/tile_icons.h"
#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QRectF>
#include <QSizeF>

namespace tessellar {

/// What the window shows of the view model, and what the user does in it, in QML's terms. Holds no
/// rules.
class LauncherController final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

    Q_PROPERTY(bool isReady READ isReady NOTIFY readyChanged)
    Q_PROPERTY(bool isWindowed READ isWindowed NOTIFY modeChanged)
    Q_PROPERTY(tessellar::TileIcons* icons READ icons CONSTANT)

    Q_PROPERTY(tessellar::GridModel* grid READ grid CONSTANT)
    Q_PROPERTY(int currentPage READ currentPage WRITE setCurrentPage NOTIFY navigationChanged)
    Q_PROPERTY(QString selectedId READ selectedId NOTIFY navigationChanged)
    Q_PROPERTY(int columns READ columns NOTIFY metricsChanged)
    Q_PROPERTY(int left READ left NOTIFY metricsChanged)
    Q_PROPERTY(int top READ top NOTIFY metricsChanged)
    Q_PROPERTY(int cellWidth READ cellWidth NOTIFY metricsChanged)
    Q_PROPERTY(int cellHeight READ cellHeight NOTIFY metricsChanged)
    Q_PROPERTY(int iconSide READ iconSide NOTIFY metricsChanged)
    Q_PROPERTY(int labelPixels READ labelPixels NOTIFY metricsChanged)

    /// The innermost open folder. What it was stays while its panel closes.
    Q_PROPERTY(bool isFolderOpen READ isFolderOpen NOTIFY navigationChanged)
    Q_PROPERTY(QString folderId READ folderId NOTIFY navigationChanged)
    Q_PROPERTY(QString folderTitle READ folderTitle NOTIFY navigationChanged)
    Q_PROPERTY(int folderPage READ folderPage WRITE setFolderPage NOTIFY navigationChanged)
    Q_PROPERTY(tessellar::GridModel* folder READ folder CONSTANT)
    Q_PROPERTY(QRectF folderPanel READ folderPanel NOTIFY metricsChanged)
    Q_PROPERTY(int folderColumns READ folderColumns NOTIFY metricsChanged)
    Q_PROPERTY(int folderLeft READ folderLeft NOTIFY metricsChanged)
    Q_PROPERTY(int folderTop READ folderTop NOTIFY metricsChanged)
    Q_PROPERTY(int folderCellWidth READ folderCellWidth NOTIFY metricsChanged)
    Q_PROPERTY(int folderCellHeight READ folderCellHeight NOTIFY metricsChanged)
    Q_PROPERTY(int folderIconSide READ folderIconSide NOTIFY metricsChanged)

    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(QString unavailableNotice READ unavailableNotice CONSTANT)
    Q_PROPERTY(bool hasAlert READ hasAlert NOTIFY alertChanged)
    Q_PROPERTY(QString alertTitle READ alertTitle NOTIFY alertChanged)
    Q_PROPERTY(QString alertText READ alertText NOTIFY alertChanged)

public:
    LauncherController(LauncherViewModel& viewModel, TileIcons& icons);

    /// The size of the window in its own pixels, and how many of the screen's each of them has.
    void setWindow(QSizeF size, double pixelRatio);

    bool isReady() const { return _viewModel.isBootstrapped(); }
    bool isWindowed() const { return _viewModel.mode() == LauncherWindowMode::windowed; }
    TileIcons* icons() const { return &_icons; }
    GridModel* grid() { return &_grid; }
    GridModel* folder() { return &_folder; }

    int currentPage() const { return _viewModel.currentPage(); }
    void setCurrentPage(int page) { _viewModel.setCurrentPage(page); }
    QString selectedId() const;
    bool isFolderOpen() const { return !_viewModel.folderStack().isEmpty(); }
    QString folderId() const { return _folderId; }
    QString folderTitle() const { return _folderTitle; }
    int folderPage() const { return _folderPage; }
    void setFolderPage(int page) { _viewModel.setFolderPage(page); }

    int columns() const { return _viewModel.layoutSettings().columns; }
    int left() const { return _metrics.left; }
    int top() const { return _metrics.top; }
    int cellWidth() const { return _metrics.cellWidth; }
    int cellHeight() const { return _metrics.cellHeight; }
    int iconSide() const { return _metrics.iconSide; }
    int labelPixels() const { return _metrics.labelPixels; }
    QRectF folderPanel() const { return _folderMetrics.panel; }
    int folderColumns() const { return _folderMetrics.columns; }
    int folderLeft() const { return _folderMetrics.grid.left; }
    int folderTop() const { return _folderMetrics.grid.top; }
    int folderCellWidth() const { return _folderMetrics.grid.cellWidth; }
    int folderCellHeight() const { return _folderMetrics.grid.cellHeight; }
    int folderIconSide() const { return _folderMetrics.grid.iconSide; }

    QString notice() const;
    static QString unavailableNotice() { return LauncherViewModel::unavailableNotice(); }
    bool hasAlert() const { return !_alerts.isEmpty(); }
    QString alertTitle() const { return hasAlert() ? _alerts.first().title : QString(); }
    QString alertText() const { return hasAlert() ? _alerts.first().message : QString(); }

    /// Launches an application, opens a folder.
    Q_INVOKABLE void activate(const QString& tileId);
    Q_INVOKABLE void closeFolder() { _viewModel.closeFolder(); }
    Q_INVOKABLE void dismissAlert();
    /// One step back: an alert, a folder, the window.
    Q_INVOKABLE void escape();
    Q_INVOKABLE void unselect() { _viewModel.select(std::nullopt); }
    /// A Qt::Key; true when it means something here.
    Q_INVOKABLE bool pressKey(int key);

Q_SIGNALS:
    void readyChanged();
    void modeChanged();
    void navigationChanged();
    void metricsChanged();
    void noticeChanged();
    void alertChanged();
    /// The window is to go.
    void closeRequested();

private:
    void onChange(LauncherChange change);
    void fill(GridModel& model, const ShownPages& pages);
    void showLayout();
    void showBadges();
    void showNavigation();
    void updateMetrics();
    void wantIcons();
    void moveSelection(int key);
    void turn(int pages);
    std::optional<FolderEntry> openFolder() const;

    LauncherViewModel& _viewModel;
    TileIcons& _icons;
    GridModel _grid;
    GridModel _folder;
    QString _folderId;
    QString _folderTitle;
    int _folderPage = 0;
    QSizeF _windowSize;
    double _pixelRatio = 1;
    GridMetrics _metrics;
    FolderMetrics _folderMetrics;
    QList<LauncherError> _alerts;
    AppUpdateStatuses _badgeStatuses;
    LauncherViewModel::Subscription _subscription;
};

} // namespace tessellar
