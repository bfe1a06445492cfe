#pragma once

#include "app/backdrop.h"
#include "app/tile_icons.h"

#include <QPointer>
#include <QQuickItem>
#include <QVariant>

namespace tessellar {

/// Shows one image, pixel for pixel where the item has its size.
class ImageItem : public QQuickItem {
    Q_OBJECT

public:
    explicit ImageItem(QQuickItem* parent = nullptr);

protected:
    /// Calls `image()` again before the next frame.
    void refresh();
    /// Takes another source in place of the former one, and listens to it.
    template <typename Source, typename Signal, typename Call>
    void follow(QPointer<Source>& source, Source* now, Signal signal, Call call) {
        if (source == now)
            return;
        if (source)
            disconnect(source, nullptr, this, nullptr);
        source = now;
        if (source)
            connect(source, signal, this, std::move(call));
        refresh();
    }
    /// The image for a number of screen pixels.
    virtual QImage image(QSize pixels) = 0;

    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    bool _isChanged = true;
};

/// The picture of a tile: an application's icon, a folder's contents or its symbol.
class IconItem : public ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::TileIcons* icons MEMBER _icons WRITE setIcons REQUIRED)
    Q_PROPERTY(Kind kind MEMBER _kind WRITE setKind)
    Q_PROPERTY(QStringList appKeys MEMBER _appKeys WRITE setAppKeys)
    Q_PROPERTY(QString symbolName MEMBER _symbolName WRITE setSymbolName)

public:
    enum Kind { App, Folder, SmartFolder };
    Q_ENUM(Kind)

    using ImageItem::ImageItem;

    void setIcons(TileIcons* icons);
    void setKind(Kind kind);
    /// The application's, or those that a folder previews.
    void setAppKeys(const QStringList& appKeys);
    void setSymbolName(const QString& symbolName);

protected:
    QImage image(QSize pixels) override;

private:
    QPointer<TileIcons> _icons;
    Kind _kind = App;
    QStringList _appKeys;
    QString _symbolName;
};

/// A small picture of a page of the grid.
class PagePicture : public ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::TileIcons* icons MEMBER _icons WRITE setIcons REQUIRED)
    Q_PROPERTY(int rows MEMBER _rows WRITE setRows)
    Q_PROPERTY(int columns MEMBER _columns WRITE setColumns)
    Q_PROPERTY(bool isMirrored MEMBER _isMirrored WRITE setMirrored) ///< the first tile is at the right
    /// {kind, appKeys, symbolName} by slot, with the kinds of `IconItem`.
    Q_PROPERTY(QVariantList tiles MEMBER _tiles WRITE setTiles)

public:
    using ImageItem::ImageItem;

    void setIcons(TileIcons* icons);
    void setRows(int rows);
    void setColumns(int columns);
    void setMirrored(bool isMirrored);
    void setTiles(const QVariantList& tiles);

protected:
    QImage image(QSize pixels) override;

private:
    QPointer<TileIcons> _icons;
    int _rows = 1;
    int _columns = 1;
    bool _isMirrored = false;
    QVariantList _tiles;
};

/// What lies behind the tiles.
class BackdropItem : public ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::Backdrop* backdrop MEMBER _backdrop WRITE setBackdrop REQUIRED)
    Q_PROPERTY(bool isDark MEMBER _isDark WRITE setDark) ///< as the user wants panels

public:
    using ImageItem::ImageItem;

    void setBackdrop(Backdrop* backdrop);
    void setDark(bool isDark);

protected:
    QImage image(QSize pixels) override;

private:
    QPointer<Backdrop> _backdrop;
    bool _isDark = false;
};

} // namespace tessellar
