#pragma once

#include "icons/icon_loader.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The images of tiles: decoded icons, and drawings made from them. Main thread only.
class TileIcons final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

public:
    TileIcons(const FileSystem& files, WorkerPool& workers);

    IconLoader& loader() { return _loader; }
    bool hasVisible() const { return _loader.hasVisible(); }

    QImage icon(const QString& appKey) { return _loader.icon(appKey); }
    QImage genericIcon() { return _loader.genericIcon(); }
    QImage folder(const QStringList& appKeys, const QString& symbolName, int side);
    QImage smartFolder(const QStringList& appKeys, const QString& symbolName, int side);

Q_SIGNALS:
    /// An icon changed.
    void ready(const QString& appKey);

private:
    IconLoader _loader;
};

} // namespace tessellar
