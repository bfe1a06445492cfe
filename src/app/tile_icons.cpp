#include "app/tile_icons.h"

#include "app/tile_art.h"

namespace tessellar {

TileIcons::TileIcons(const FileSystem& files, WorkerPool& workers) : _loader(files, workers) {
    _loader.setReady([this](const QString& appKey) { Q_EMIT ready(appKey); });
}

QImage TileIcons::folder(const QStringList& appKeys, const QString& symbolName, int side) {
    if (!symbolName.isEmpty())
        if (QImage art = symbolFolderArt(symbolName, side); !art.isNull())
            return art;
    QList<QImage> contents;
    for (const QString& key : appKeys)
        contents.append(icon(key));
    return folderArt(contents, side);
}

QImage TileIcons::smartFolder(const QStringList& appKeys, const QString& symbolName, int side) {
    QList<QImage> contents;
    for (const QString& key : appKeys)
        contents.append(icon(key));
    return smartFolderArt(contents, symbolName, side);
}

} // namespace tessellar
