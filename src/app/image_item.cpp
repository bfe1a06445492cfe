#include "app/image_item.h"

#include "app/tile_art.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>

namespace tessellar {

ImageItem::ImageItem(QQuickItem* parent) : QQuickItem(parent) { setFlag(ItemHasContents); }

void ImageItem::refresh() {
    _isChanged = true;
    update();
}

void ImageItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        refresh();
}

QSGNode* ImageItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGImageNode*>(old);
    const double ratio = window()->effectiveDevicePixelRatio();
    if (!node || _isChanged) {
        const QImage art = image((size() * ratio).toSize());
        if (art.isNull()) {
            delete node;
            return nullptr;
        }
        if (!node) {
            node = window()->createImageNode();
            node->setOwnsTexture(true);
            node->setFiltering(QSGTexture::Linear);
        }
        // The software renderer's node needs a texture at once, because it asks it for its size.
        node->setTexture(window()->createTextureFromImage(art));
        _isChanged = false;
    }
    node->setRect(boundingRect());
    return node;
}

// ---- icons

void IconItem::setIcons(TileIcons* icons) {
    follow(_icons, icons, &TileIcons::ready, [this](const QString& appKey) {
        if (_appKeys.contains(appKey))
            refresh();
    });
}

void IconItem::setKind(Kind kind) {
    if (std::exchange(_kind, kind) != kind)
        refresh();
}

void IconItem::setAppKeys(const QStringList& appKeys) {
    if (std::exchange(_appKeys, appKeys) != appKeys)
        refresh();
}

void IconItem::setSymbolName(const QString& symbolName) {
    if (std::exchange(_symbolName, symbolName) != symbolName)
        refresh();
}

static QImage art(TileIcons& icons, IconItem::Kind kind, const QStringList& appKeys,
                  const QString& symbolName, int side) {
    switch (kind) {
    case IconItem::App:
        return appKeys.isEmpty() ? icons.genericIcon() : icons.icon(appKeys.first());
    case IconItem::Folder:
        return icons.folder(appKeys, symbolName, side);
    case IconItem::SmartFolder:
        return icons.smartFolder(appKeys, symbolName, side);
    }
    return {};
}

QImage IconItem::image(QSize pixels) {
    return _icons && !pixels.isEmpty() ? art(*_icons, _kind, _appKeys, _symbolName, pixels.width())
                                       : QImage();
}

// ---- pages

void PagePicture::setIcons(TileIcons* icons) {
    follow(_icons, icons, &TileIcons::ready, [this] { refresh(); });
}

void PagePicture::setRows(int rows) {
    if (std::exchange(_rows, std::max(1, rows)) != rows)
        refresh();
}

void PagePicture::setColumns(int columns) {
    if (std::exchange(_columns, std::max(1, columns)) != columns)
        refresh();
}

void PagePicture::setMirrored(bool isMirrored) {
    if (std::exchange(_isMirrored, isMirrored) != isMirrored)
        refresh();
}

void PagePicture::setTiles(const QVariantList& tiles) {
    if (std::exchange(_tiles, tiles) != tiles)
        refresh();
}

QImage PagePicture::image(QSize pixels) {
    if (!_icons || pixels.isEmpty())
        return {};
    QList<QImage> tiles;
    // Drawn larger than shown, so that folders' contents are discernible.
    const int side = 4 * std::max(1, pixels.height() / _rows);
    for (const QVariant& each : std::as_const(_tiles)) {
        if (tiles.size() >= qsizetype(_rows) * _columns)
            break;
        const QVariantMap tile = each.toMap();
        tiles.append(art(*_icons, IconItem::Kind(tile[QStringLiteral("kind")].toInt()),
                         tile[QStringLiteral("appKeys")].toStringList(),
                         tile[QStringLiteral("symbolName")].toString(), side));
    }
    return pageArt(tiles, _rows, _columns, pixels, _isMirrored);
}

// ---- backdrop

void BackdropItem::setBackdrop(Backdrop* backdrop) {
    follow(_backdrop, backdrop, &Backdrop::changed, [this] { refresh(); });
}

void BackdropItem::setDark(bool isDark) {
    if (std::exchange(_isDark, isDark) != isDark)
        refresh();
}

QImage BackdropItem::image(QSize pixels) {
    return _backdrop ? _backdrop->image(pixels, _isDark) : QImage();
}

} // namespace tessellar
