#pragma once

#include "app/grid_metrics.h"
#include "app/image_item.h"
#include "editing/grid_geometry.h"
#include "icons/icon_loader.h"

#include <QAbstractListModel>

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

/// The tiles of one page, in the order of their slots. Filled when somebody first asks.
class PageModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the grid's model")

public:
    enum Role {
        IdRole = Qt::UserRole,
        KindRole,
        LabelRole,
        AppKeysRole,
        SymbolRole,
        BadgeRole,
        ActivityRole,
        UnavailableRole
    };
    using Fill = std::function<QList<TileView>()>;

    explicit PageModel(Fill fill) : _fill(std::move(fill)) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return names(); }
    static QHash<int, QByteArray> names();
    static QVariant value(const TileView& tile, int role);

    const QList<TileView>& tiles() const;
    /// The tiles may have changed. A page that is shown is filled at once, tiles that stay in their
    /// slots keeping their items; another one when somebody asks again.
    void refresh();

private:
    Fill _fill;
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
    explicit GridModel(TileFacts facts) : _facts(std::move(facts)) {}

    int pageCount() const { return static_cast<int>(_models.size()); }
    int page() const { return _page; }
    void setPage(int page);
    /// The user turns to a page.
    Q_INVOKABLE void turnTo(int page) { Q_EMIT turned(page); }
    const GridMetrics& metrics() const { return _metrics; }
    void setMetrics(const GridMetrics& metrics);
    Q_INVOKABLE tessellar::PageModel* tilesOf(int page) const;

    const TilePages& pages() const { return _pages; }
    void setPages(TilePages pages);
    /// What is known of the tiles has changed.
    void refresh();
    /// An empty page after the last, for tiles that are carried there.
    void setHasNewPage(bool hasNewPage);
    /// A tile of any page; the one shown is looked at first.
    std::optional<LaunchpadItem> tile(const QUuid& id) const;

Q_SIGNALS:
    void pageCountChanged();
    void pageChanged();
    void metricsChanged();
    void turned(int page);

private:
    void resize();
    QList<TileView> views(qsizetype page) const;

    TileFacts _facts;
    TilePages _pages;
    std::vector<std::unique_ptr<PageModel>> _models;
    bool _hasNewPage = false;
    int _page = 0;
    GridMetrics _metrics;
};

} // namespace tessellar
