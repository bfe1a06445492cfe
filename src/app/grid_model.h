#pragma once

#include "app/grid_metrics.h"
#include "app/image_item.h"
#include "editing/grid_geometry.h"
#include "icons/icon_loader.h"

#include <QAbstractListModel>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tessellar {

/// A tile as the window shows it.
struct TileView {
    QString id;
    IconItem::Kind kind = IconItem::App;
    QString label;
    QList<IconWish> icons; ///< the application's, or those that a folder previews
    QString symbolName;
    QString badge;    ///< at the picture's corner; empty for none
    QString activity; ///< what is being done to it, in place of its name; empty for nothing
    bool isUnavailable = false;
    bool isSelected = false;
    bool isVacant = false; ///< not shown; what it was last stays, and costs nothing
    QString markedLabel;   ///< the label with what was searched for set off, in Qt's styled text
    QString place;         ///< where a tile that was found lies; empty for the grid itself
    bool isWeak = false;   ///< found by letters that lie apart: less than the ones before
    bool isCut = false;    ///< waits to be pasted elsewhere

    bool operator==(const TileView&) const = default;
};

/// What a tile shows that its arrangement does not know. Asked when a page is first looked at.
struct TileFacts {
    struct SmartFolder {
        QString name;
        QString symbolName;
        QList<IconWish> icons; ///< of the first applications in it
        qsizetype count = 0;   ///< of all
    };

    std::function<bool(const QString& appKey)> isUnavailable;
    std::function<QString(const QString& appKey)> badge;
    std::function<QString(const QString& appKey)> activity = {};
    std::function<SmartFolder(const QUuid& definition)> smartFolder;
    std::function<bool(const QUuid& tile)> isSelected = {};
    std::function<bool(const QUuid& tile)> isCut = {};
};

TileView tileView(const LaunchpadItem& item, const TileFacts& facts);

/// Tiles in pages: those of the arrangement or of an open folder, or what a search found. A page's
/// tiles are made when they are asked for.
struct TilePages {
    TilePages() = default;
    TilePages(qsizetype pageCount, std::function<Page(qsizetype page)> tilesOf)
        : count(pageCount), tiles(std::move(tilesOf)) {}
    TilePages(const ShownPages& shown) // NOLINT: the same pages
        : count(shown.count()), tiles([shown](qsizetype page) { return shown.tiles(page); }) {}

    std::optional<qsizetype> slotOf(const QUuid& id, qsizetype page) const;

    qsizetype count = 0;
    std::function<Page(qsizetype page)> tiles;
};

/// The tiles of one page, in the order of their slots. Filled when somebody first asks. A page that
/// keeps its rows has vacant ones after its tiles: their items need not be made again.
class PageModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the grid's model")
    /// The first tile that was found by letters that lie apart; -1 for none.
    Q_PROPERTY(int firstWeak READ firstWeak NOTIFY refreshed)

public:
    enum Role {
        IdRole = Qt::UserRole,
        KindRole,
        LabelRole,
        AppKeysRole,
        SymbolRole,
        BadgeRole,
        ActivityRole,
        UnavailableRole,
        SelectedRole,
        VacantRole,
        MarkedLabelRole,
        PlaceRole,
        WeakRole,
        CutRole
    };
    using Fill = std::function<QList<TileView>()>;

    explicit PageModel(Fill fill) : _fill(std::move(fill)) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return names(); }
    static QHash<int, QByteArray> names();
    static QVariant value(const TileView& tile, int role);

    const QList<TileView>& tiles() const;
    int firstWeak() const;
    /// The tiles may have changed. A page that is shown is filled at once, tiles that stay on it
    /// keeping their rows, which move with them; another one when somebody asks again.
    void refresh();
    /// The same for which of them are selected.
    void refreshSelection(const std::function<bool(const QUuid&)>& isSelected);
    /// From now on there are at least so many rows, and never fewer than there were.
    void keepRows(qsizetype count);

Q_SIGNALS:
    void refreshed();

private:
    QList<TileView> filled() const;
    void setRow(qsizetype row, const TileView& tile);
    void moveRow(qsizetype from, qsizetype to);
    void letRowsFollow(const QList<TileView>& tiles);

    Fill _fill;
    qsizetype _keptRows = 0;
    mutable std::optional<QList<TileView>> _tiles;
};

/// The pages of the grid, of an open folder or of what was found: how many there are, which one is
/// shown and how its tiles lie.
class GridModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(int pageCount READ pageCount NOTIFY pageCountChanged)
    Q_PROPERTY(int page READ page NOTIFY pageChanged)
    Q_PROPERTY(tessellar::GridMetrics metrics READ metrics NOTIFY metricsChanged)

public:
    explicit GridModel(TileFacts facts);

    int pageCount() const { return _pageCount; }
    int page() const { return _page; }
    void setPage(int page);
    /// The user turns to a page.
    Q_INVOKABLE void turnTo(int page) { Q_EMIT turned(page); }
    const GridMetrics& metrics() const { return _metrics; }
    void setMetrics(const GridMetrics& metrics);
    Q_INVOKABLE tessellar::PageModel* tilesOf(int page) const;

    const TilePages& pages() const { return _pages; }
    void setPages(TilePages pages);
    /// What is added to the tiles of a page, where something is: of those that were found.
    using Annotate = std::function<void(qsizetype page, QList<TileView>& views)>;
    void setAnnotate(Annotate annotate) { _annotate = std::move(annotate); }
    /// What is known of the tiles has changed.
    void refresh();
    void refreshSelection();
    /// So many pages stay when there are no tiles, each with at least so many rows: what is shown there
    /// changes with every letter of a search. Those beside the page that is shown follow a moment
    /// later.
    void keepPages(std::size_t count, qsizetype rows);
    /// An empty page after the last, for tiles that are carried there.
    void setHasNewPage(bool hasNewPage);
    /// A tile of any page; the one shown is looked at first.
    std::optional<LaunchpadItem> tile(const QUuid& id) const;

Q_SIGNALS:
    void pageCountChanged();
    void pageChanged();
    void metricsChanged();
    void turned(int page);
    /// Tiles are about to come to other places; they have.
    void aboutToRearrange();
    void rearranged();

private:
    void resize();
    void refreshAll();
    QList<TileView> views(qsizetype page) const;

    TileFacts _facts;
    Annotate _annotate;
    TilePages _pages;
    std::vector<std::unique_ptr<PageModel>> _models;
    bool _hasNewPage = false;
    std::size_t _keptPages = 0;
    qsizetype _keptRows = 0; ///< of each of them
    QTimer _later;           ///< until the pages beside the one that is shown follow
    int _pageCount = 0;
    int _page = 0;
    GridMetrics _metrics;
};

} // namespace tessellar
