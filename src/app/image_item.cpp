#include "app/image_item.h"

#include "app/tile_art.h"

#include <QQuickWindow>
#include <QSGImageNode>

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
        // A node of the software renderer asks its texture for its size and so needs one at once.
        node->setTexture(window()->createTextureFromImage(art));
        _isChanged = false;
    }
    node->setRect(boundingRect());
    return node;
}

// ---- icons

void IconItem::setIcons(TileIcons* icons) {
    if (_icons == icons)
        return;
    if (_icons)
        disconnect(_icons, nullptr, this, nullptr);
    _icons = icons;
    if (_icons)
        connect(_icons, &TileIcons::ready, this, [this](const QString& appKey) {
            if (_appKeys.contains(appKey))
                refresh();
        });
    refresh();
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

QImage IconItem::image(QSize pixels) {
    if (!_icons || pixels.isEmpty())
        return {};
    switch (_kind) {
    case App:
        return _appKeys.isEmpty() ? _icons->genericIcon() : _icons->icon(_appKeys.first());
    case Folder:
        return _icons->folder(_appKeys, _symbolName, pixels.width());
    case SmartFolder:
        return _icons->smartFolder(_appKeys, _symbolName, pixels.width());
    }
    return {};
}

QImage BackdropItem::image(QSize pixels) { return _icons ? _icons->backdrop(pixels) : QImage(); }

} // namespace tessellar
