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
    QUuid tile;
    QString id; ///< of the tile, as text
    IconItem::Kind kind = IconItem::App;
    QString label;
    QList<IconRequest> icons; ///< the application's own, or a folder's preview
    QString symbolName;
    QString badge;    ///< at the icon's corner; empty for none
    QString activity; ///< shown instead of the label during an update; empty for none
    bool isUnavailable = false;
    bool isSelected = false;
    bool isVacant = false;    ///< not shown; keeps its last contents, so that its item can be reused
    QString markedLabel;      ///< the label with matches highlighted, as Qt styled text
    QString place;            ///< where a search result lies; empty for the grid itself
    bool isWeakMatch = false; ///< a search result that matches only scattered letters
    bool isCut = false;       ///< cut, and not pasted yet

    bool operator==(const TileView&) const = default;
};

/// Supplies what tiles show beyond their layout. Called when a page is first read.
struct TileFacts {
    struct SmartFolder {
        QString name;
        QString symbolName;
        QList<IconRequest> icons; ///< of its first applications
        qsizetype count = 0;      ///< of all its applications
    };

    std::function<bool(const QString& appKey)> isUnavailable;
    std::function<QString(const QString& appKey)> badge;
    std::function<QString(const QString& appKey)> activity = {};
    std::function<SmartFolder(const QUuid& definition)> smartFolder;
    std::function<bool(const QUuid& tile)> isSelected = {};
    std::function<bool(const QUuid& tile)> isCut = {};
};

TileView tileView(const LaunchpadItem& item, const TileFacts& facts);

/// Pages of tiles: of the layout, of an open folder, or of search results. Each page is created on
/// demand.
struct TilePages {
    TilePages() = default;
    TilePages(qsizetype pageCount, std::function<Page(qsizetype page)> tilesOf)
        : count(pageCount), tiles(std::move(tilesOf)) {}
    TilePages(const ShownPages& shown) // NOLINT: implicit on purpose
        : count(shown.count()), tiles([shown](qsizetype page) { return shown.tiles(page); }) {}

    std::optional<qsizetype> slotOf(const QUuid& id, qsizetype page) const;

    qsizetype count = 0;
    std::function<Page(qsizetype page)> tiles;
};

/// The tiles of one page, in slot order. Filled on first use. With `keepRows`, vacant rows follow the
/// tiles, so that their QML items can be reused.
class PageModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the grid's model")
    /// The first weak match; -1 for none.
    Q_PROPERTY(int firstWeakMatch READ firstWeakMatch NOTIFY refreshed FINAL)

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
        WeakMatchRole,
        CutRole,
        DescriptionRole ///< what is said of it besides its label
    };
    using Fill = std::function<QList<TileView>()>;

    explicit PageModel(Fill fill) : _fill(std::move(fill)) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return names(); }
    static QHash<int, QByteArray> names();
    static QVariant value(const TileView& tile, int role);

    const QList<TileView>& tiles() const;
    int firstWeakMatch() const;
    /// The tiles may have changed. A page in use is updated at once: tiles that stay on it keep their
    /// rows, which move with them. Other pages are filled on next use.
    void refresh();
    /// The selection may have changed.
    void refreshSelection(const std::function<bool(const QUuid&)>& isSelected);
    /// Keeps at least `count` rows from now on, and never removes rows.
    void keepRows(qsizetype count);

Q_SIGNALS:
    void refreshed();

private:
    QList<TileView> filled() const;
    void setRow(qsizetype row, const TileView& tile);
    void moveRow(qsizetype from, qsizetype to);
    void updateRows(const QList<TileView>& tiles);

    Fill _fill;
    qsizetype _keptRows = 0;
    mutable std::optional<QList<TileView>> _tiles;
};

/// The pages of the grid, of an open folder or of search results: their number, the current page and
/// its metrics.
class GridModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(int pageCount READ pageCount NOTIFY pageCountChanged FINAL)
    Q_PROPERTY(int page READ page NOTIFY pageChanged FINAL)
    Q_PROPERTY(tessellar::GridMetrics metrics READ metrics NOTIFY metricsChanged FINAL)

public:
    explicit GridModel(TileFacts facts);

    int pageCount() const { return _pageCount; }
    int page() const { return _page; }
    void setPage(int page);
    /// Requests a page on behalf of the user.
    Q_INVOKABLE void turnTo(int page) { Q_EMIT turned(page); }
    const GridMetrics& metrics() const { return _metrics; }
    void setMetrics(const GridMetrics& metrics);
    Q_INVOKABLE tessellar::PageModel* tilesOf(int page) const;

    const TilePages& pages() const { return _pages; }
    void setPages(TilePages pages);
    /// Adds to the tiles of a page what only search results show.
    using Annotate = std::function<void(qsizetype page, QList<TileView>& views)>;
    void setAnnotate(Annotate annotate) { _annotate = std::move(annotate); }
    /// The tiles or their facts may have changed.
    void refresh();
    void refreshSelection();
    /// Keeps at least `count` pages of at least `rows` rows even without tiles, because search results
    /// change with every keystroke. Pages beside the current one are updated with a short delay.
    void keepPages(std::size_t count, qsizetype rows);
    /// Adds an empty page at the end, for dropping tiles on.
    void setHasNewPage(bool hasNewPage);
    /// Finds a tile on any page, searching the current one first.
    std::optional<LaunchpadItem> tile(const QUuid& id) const;

Q_SIGNALS:
    void pageCountChanged();
    void pageChanged();
    void metricsChanged();
    void turned(int page);
    /// Emitted before and after tiles move to other places.
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
    qsizetype _keptRows = 0; ///< per page
    QTimer _later;           ///< updates the pages beside the current one
    int _pageCount = 0;
    int _page = 0;
    GridMetrics _metrics;
};

} // namespace tessellar
