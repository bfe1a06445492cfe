#pragma once

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet of past removals, for QML: what can be restored, even after a restart.
class PastRemovalsPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {id, name, text, canPutBack}, latest first.
    Q_PROPERTY(QVariantList removals READ removals NOTIFY changed FINAL)
    Q_PROPERTY(QString message READ message NOTIFY changed FINAL) ///< shown instead of a list
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY changed FINAL)

public:
    explicit PastRemovalsPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    const QVariantList& removals() const { return _removals; }
    const QString& message() const { return _message; }
    bool isMoving() const { return _viewModel.cleanup().isMoving(); }

    /// Lists the removals, and again whenever something was moved.
    void open();
    Q_INVOKABLE void close();
    Q_INVOKABLE void putBack(const QString& id);
    void refresh();

Q_SIGNALS:
    void changed();

private:
    void list();

    LauncherViewModel& _viewModel;
    bool _isOpen = false;
    bool _wasMoving = false;
    QVariantList _removals;
    QString _message;
};

} // namespace tessellar
