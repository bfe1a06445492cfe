#pragma once

#include "app/image_item.h"
#include "editing/grid_geometry.h"

#include <QAbstractListModel>
#include <QSet>

#include <functional>
#include <memory>
#include <vector>

namespace tessellar {

/// A tile as the window shows it.
struct TileView {
    QString id;
    IconItem::Kind kind = IconItem::App;
    QString label;
    QStringList appKeys; ///< the application's, or those that a folder previews
    QString symbolName;
    QString badge; ///< at the picture's corner; empty for none
    bool isUnavailable = false;

    bool operator==(const TileView&) const = default;
};

/// A smart folder's tile as a folder of what it shows.
using SmartFolderContents = std::function<FolderEntry(const LaunchpadItem& item)>;
/// What stands at the corner of an application's tile.
using AppBadge = std::function<QString(const QString& appKey)>;

/// What stands at the corner of an application's picture, by its key; empty for nothing.
using AppBadge = std::function<QString(const QString& appKey)>;

/// The tiles of one page, in the order of their slots.
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
        UnavailableRole
    };

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    const QList<TileView>& tiles() const { return _tiles; }
    /// Tiles that stay in their slots keep their items.
    void setTiles(const QList<TileView>& tiles);

private:
    QList<TileView> _tiles;
};

/// The pages of the grid, or of an open folder.
class GridModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(int pageCount READ pageCount NOTIFY pageCountChanged)

public:
    using QObject::QObject;

    int pageCount() const { return static_cast<int>(_pages.size()); }
    Q_INVOKABLE tessellar::PageModel* page(int index) const;
    void setPages(const ShownPages& pages, const QSet<QString>& unavailableAppKeys,
                  const SmartFolderContents& smartFolderContents, const AppBadge& appBadge = {});
    const ShownPages& shown() const { return _shown; }
    /// An empty page after the last, for tiles that are carried there.
    void setHasNewPage(bool hasNewPage);

Q_SIGNALS:
    void pageCountChanged();

private:
    void resize(std::size_t count);

    ShownPages _shown;
    std::vector<std::unique_ptr<PageModel>> _pages;
};

} // namespace tessellar
