#pragma once

#include "app/grid_metrics.h"
#include "app/grid_model.h"
#include "app/menu_model.h"
#include "app/removal_panel.h"
#include "app/smart_folder_panel.h"
#include "app/tile_drag.h"
#include "app/tile_icons.h"
#include "app/tile_search.h"
#include "app/updates_panel.h"
#include "launcher/actions.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"
#include "updates/app_update_records.h"

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QUrl>

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
    /// The one shown; one past the last while tiles are carried to a new one.
    Q_PROPERTY(int shownPage READ shownPage NOTIFY navigationChanged)
    Q_PROPERTY(QStringList selectedIds READ selectedIds NOTIFY selectionChanged)
    Q_PROPERTY(int columns READ columns NOTIFY metricsChanged)
    Q_PROPERTY(int rows READ rows NOTIFY metricsChanged)
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
    Q_PROPERTY(QString folderNotice READ folderNotice NOTIFY navigationChanged)
    Q_PROPERTY(int folderPage READ folderPage WRITE setFolderPage NOTIFY navigationChanged)
    Q_PROPERTY(tessellar::GridModel* folder READ folder CONSTANT)
    Q_PROPERTY(QRectF folderPanel READ folderPanel NOTIFY metricsChanged)
    Q_PROPERTY(int folderColumns READ folderColumns NOTIFY metricsChanged)
    Q_PROPERTY(int folderRows READ folderRows NOTIFY metricsChanged)
    Q_PROPERTY(int folderLeft READ folderLeft NOTIFY metricsChanged)
    Q_PROPERTY(int folderTop READ folderTop NOTIFY metricsChanged)
    Q_PROPERTY(int folderCellWidth READ folderCellWidth NOTIFY metricsChanged)
    Q_PROPERTY(int folderCellHeight READ folderCellHeight NOTIFY metricsChanged)
    Q_PROPERTY(int folderIconSide READ folderIconSide NOTIFY metricsChanged)

    Q_PROPERTY(tessellar::TileSearch* search READ search CONSTANT)
    Q_PROPERTY(tessellar::TileDrag* drag READ drag CONSTANT)
    Q_PROPERTY(tessellar::MenuModel* menu READ menu CONSTANT)
    Q_PROPERTY(tessellar::UpdatesPanel* updates READ updates CONSTANT)
    Q_PROPERTY(tessellar::RemovalPanel* removal READ removal CONSTANT)
    Q_PROPERTY(tessellar::SmartFolderPanel* smartFolder READ smartFolder CONSTANT)
    /// The sheet that lies over the grid: "updates", "icon", "smartFolder", or nothing.
    Q_PROPERTY(QString sheet READ sheet NOTIFY sheetChanged)
    /// The application that it is about.
    Q_PROPERTY(QString sheetName READ sheetName NOTIFY sheetChanged)
    /// The tile whose name is being typed, or nothing.
    Q_PROPERTY(QString renamingId READ renamingId NOTIFY renamingChanged)

    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(QString unavailableNotice READ unavailableNotice CONSTANT)
    /// What stands before everything else: an alert, or a question.
    Q_PROPERTY(bool hasAlert READ hasAlert NOTIFY alertChanged)
    Q_PROPERTY(QString alertTitle READ alertTitle NOTIFY alertChanged)
    Q_PROPERTY(QString alertText READ alertText NOTIFY alertChanged)
    /// What its button says that does it; empty for an alert, of which one takes note.
    Q_PROPERTY(QString alertAccept READ alertAccept NOTIFY alertChanged)
    Q_PROPERTY(bool isAlertDestructive READ isAlertDestructive NOTIFY alertChanged)
    /// True while Return means yes; arrow keys and Tab change that.
    Q_PROPERTY(bool isAcceptDefault READ isAcceptDefault NOTIFY alertChanged)

public:
    LauncherController(LauncherViewModel& viewModel, TileIcons& icons, Scheduler& scheduler);

    /// The size of the window in its own pixels, and how many of the screen's each of them has.
    void setWindow(QSizeF size, double pixelRatio);

    bool isReady() const { return _viewModel.isBootstrapped(); }
    bool isWindowed() const { return _viewModel.shown().mode() == LauncherWindowMode::windowed; }
    TileIcons* icons() const { return &_icons; }
    GridModel* grid() { return &_grid; }
    GridModel* folder() { return &_folder; }

    int currentPage() const { return _viewModel.shown().currentPage(); }
    void setCurrentPage(int page) { _viewModel.shown().setCurrentPage(page); }
    int shownPage() const { return _drag.isOnNewPage() ? _grid.pageCount() - 1 : currentPage(); }
    QStringList selectedIds() const;
    bool isFolderOpen() const { return !_viewModel.shown().folderStack().isEmpty(); }
    QString folderId() const { return _folderId; }
    QString folderTitle() const { return _folderTitle; }
    QString folderNotice() const { return _folderNotice; }
    int folderPage() const { return _folderPage; }
    void setFolderPage(int page) { _viewModel.shown().setFolderPage(page); }

    int columns() const { return _viewModel.shown().settings().columns; }
    int rows() const { return _viewModel.shown().settings().rows; }
    int left() const { return _metrics.left; }
    int top() const { return _metrics.top; }
    int cellWidth() const { return _metrics.cellWidth; }
    int cellHeight() const { return _metrics.cellHeight; }
    int iconSide() const { return _metrics.iconSide; }
    int labelPixels() const { return _metrics.labelPixels; }
    QRectF folderPanel() const { return _folderMetrics.panel; }
    int folderColumns() const { return _folderMetrics.columns; }
    int folderRows() const { return _viewModel.shown().settings().folderRows; }
    int folderLeft() const { return _folderMetrics.grid.left; }
    int folderTop() const { return _folderMetrics.grid.top; }
    int folderCellWidth() const { return _folderMetrics.grid.cellWidth; }
    int folderCellHeight() const { return _folderMetrics.grid.cellHeight; }
    int folderIconSide() const { return _folderMetrics.grid.iconSide; }

    QString notice() const;
    static QString unavailableNotice() { return LiveLayout::unavailableNotice(); }
    bool hasAlert() const { return !_alerts.isEmpty() || _viewModel.messages().question(); }
    QString alertTitle() const;
    QString alertText() const;
    QString alertAccept() const;
    bool isAlertDestructive() const;
    bool isAcceptDefault() const { return _isAcceptDefault; }

    TileSearch* search() { return &_search; }
    TileDrag* drag() { return &_drag; }
    MenuModel* menu() { return &_menu; }
    UpdatesPanel* updates() { return &_updates; }
    RemovalPanel* removal() { return &_removal; }
    SmartFolderPanel* smartFolder() { return &_smartFolder; }
    QString sheet() const { return _sheet; }
    Q_INVOKABLE void openSheet(const QString& sheet);
    QString sheetName() const;
    /// Gives the application of the sheet the icon in a file of the host.
    Q_INVOKABLE void changeIcon(const QString& file);
    Q_INVOKABLE static QString localFile(const QUrl& url) { return url.toLocalFile(); }
    Q_INVOKABLE void closeSheet() { openSheet({}); }
    /// As it is when the window comes before the user anew.
    void startAfresh();
    QString renamingId() const { return _renaming ? toText(*_renaming) : QString(); }

    /// What a tile of the grid or the open folder shows, by the names of its model's roles.
    Q_INVOKABLE QVariantMap tileView(const QString& tileId) const;
    /// Launches an application, opens a folder.
    Q_INVOKABLE void activate(const QString& tileId);
    /// A click on a tile: with the control key it joins the selection or leaves it.
    Q_INVOKABLE void click(const QString& tileId, int modifiers);
    Q_INVOKABLE void closeFolder() { _viewModel.shown().closeFolder(); }
    /// Answers the question, or takes note of the alert.
    Q_INVOKABLE void answerAlert(bool accepted);
    /// One step back: an alert, a search, a folder, the window.
    Q_INVOKABLE void escape();
    Q_INVOKABLE void unselect() { _viewModel.shown().select(std::nullopt); }
    /// A Qt::Key with Qt::KeyboardModifiers; true when it means something here.
    Q_INVOKABLE bool pressKey(int key, int modifiers = 0);
    /// Text that comes while no field has the keyboard.
    Q_INVOKABLE bool type(const QString& text);

    /// The menu of a tile, or of the background where there is no identifier.
    Q_INVOKABLE void openMenu(const QString& tileId, QPointF point);
    Q_INVOKABLE void beginRename(const QString& tileId);
    Q_INVOKABLE void endRename(const QString& name);
    Q_INVOKABLE void cancelRename();

Q_SIGNALS:
    void readyChanged();
    void modeChanged();
    void navigationChanged();
    void selectionChanged();
    void metricsChanged();
    void noticeChanged();
    void renamingChanged();
    void sheetChanged();
    /// The Menu key was pressed: the selected tile knows where it lies.
    void menuWanted(const QString& tileId);
    void alertChanged();
    /// The window is to go.
    void closeRequested();

private:
    static inline const QString smartFolderSheet = QStringLiteral("smartFolder");

    void follow();
    void showAlerts();
    void fill(GridModel& model, const ShownPages& pages);
    void showLayout();
    void showBadges();
    void showNavigation();
    void updateMetrics();
    void wantIcons();
    void moveSelection(int key, bool extends);
    void turn(int pages);
    bool pressShortcut(int key, bool isShifted);
    void pressAlertKey(int key);
    /// The pages that keys and clicks are about: what was found, the open folder's, the grid's.
    const ShownPages& shown() const;
    int page() const;
    std::optional<FolderEntry> openFolder() const { return _viewModel.shown().openFolder(); }
    const LaunchpadItem* shownItem(const QString& tileId);
    TileDrag::Area dragArea() const;
    void performMenuEntry(const QString& id);
    void perform(const ActionTarget& target, std::optional<ActionRequest> request);

    LauncherViewModel& _viewModel;
    TileIcons& _icons;
    GridModel _grid;
    GridModel _folder;
    QString _folderId;
    QString _folderTitle;
    QString _folderNotice;
    int _folderPage = 0;
    QSizeF _windowSize;
    double _pixelRatio = 1;
    GridMetrics _metrics;
    FolderMetrics _folderMetrics;
    QList<LauncherError> _alerts;
    AppUpdateStatuses _badgeStatuses;
    bool _isAcceptDefault = true;
    TileSearch _search;
    UpdatesPanel _updates;
    RemovalPanel _removal;
    SmartFolderPanel _smartFolder;
    QString _sheet;
    TileDrag _drag;
    MenuModel _menu;
    ActionTarget _menuTarget;
    std::optional<LaunchpadItem> _shownItem; ///< of the last look
    std::optional<QUuid> _renaming;
    std::vector<Subscription> _subscriptions;
};

} // namespace tessellar
