#pragma once

#include "launcher/launcher_view_model.h"
#include "platform/uuid_source.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The tile whose name is being edited in place.
class TileRenaming final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(QString tileId READ tileId NOTIFY changed FINAL) ///< empty if none

public:
    explicit TileRenaming(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    QString tileId() const { return _tile ? toText(*_tile) : QString(); }

    Q_INVOKABLE void begin(const QString& tileId);
    /// Opens the new folder around a tile, with its suggested name selected, ready to be replaced.
    void nameFolderAround(const QUuid& tile);
    Q_INVOKABLE void end(const QString& name);
    Q_INVOKABLE void cancel();
    /// Cancels if the tile is gone.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    LauncherViewModel& _viewModel;
    std::optional<QUuid> _tile;
};

} // namespace tessellar
