#pragma once

#include "app/backdrop.h"
#include "app/tile_icons.h"

#include <QPointer>
#include <QQuickItem>
#include <QVariant>

namespace tessellar {

/// Shows one image, pixel for pixel if the item has its size.
class ImageItem : public QQuickItem {
    Q_OBJECT

public:
    explicit ImageItem(QQuickItem* parent = nullptr);

protected:
    /// Makes the next frame call `image()` again.
    void refresh();
    /// Switches to another source and connects to its signal.
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
    /// The image for a size in physical pixels.
    virtual QImage image(QSize pixels) = 0;

    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    bool _isChanged = true;
};

/// A tile's image: an application's icon, or a folder's contents or symbol.
class IconItem : public ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::TileIcons* icons MEMBER _icons WRITE setIcons REQUIRED FINAL)
    Q_PROPERTY(Kind kind MEMBER _kind WRITE setKind FINAL)
    Q_PROPERTY(QStringList appKeys MEMBER _appKeys WRITE setAppKeys FINAL)
    Q_PROPERTY(QString symbolName MEMBER _symbolName WRITE setSymbolName FINAL)

public:
    enum Kind { App, Folder, SmartFolder };
    Q_ENUM(Kind)

    using ImageItem::ImageItem;

    void setIcons(TileIcons* icons);
    void setKind(Kind kind);
    /// The application's key, or those in a folder's preview.
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

/// A thumbnail of a page.
class PagePicture : public ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::TileIcons* icons MEMBER _icons WRITE setIcons REQUIRED FINAL)
    Q_PROPERTY(int rows MEMBER _rows WRITE setRows FINAL)
    Q_PROPERTY(int columns MEMBER _columns WRITE setColumns FINAL)
    Q_PROPERTY(bool isMirrored MEMBER _isMirrored WRITE setMirrored FINAL) ///< right to left
    /// {kind, appKeys, symbolName} per slot; kinds as in `IconItem`.
    Q_PROPERTY(QVariantList tiles MEMBER _tiles WRITE setTiles FINAL)

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

/// The background behind the tiles.
class BackdropItem : public ImageItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::Backdrop* backdrop MEMBER _backdrop WRITE setBackdrop REQUIRED FINAL)
    Q_PROPERTY(bool isDark MEMBER _isDark WRITE setDark FINAL) ///< the user prefers dark panels

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
