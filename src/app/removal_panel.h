#pragma once

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// What the sheet of a removal shows and does, in QML's terms.
class RemovalPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    Q_PROPERTY(QString phase READ phase NOTIFY changed) ///< the name of the launcher's
    Q_PROPERTY(QString appKey READ appKey NOTIFY changed)
    Q_PROPERTY(QString appName READ appName NOTIFY changed)
    /// {path, name, place, reason, size, isSelected, isLocked} of what may go.
    Q_PROPERTY(QVariantList items READ items NOTIFY changed)
    Q_PROPERTY(QString total READ total NOTIFY changed)
    Q_PROPERTY(bool canRemove READ canRemove NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed) ///< from 0 to 1
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed)
    Q_PROPERTY(QVariantList log READ log NOTIFY changed) ///< {text, isFailure}
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY changed)
    Q_PROPERTY(QString lockText READ lockText CONSTANT)

public:
    explicit RemovalPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    bool isOpen() const { return _viewModel.cleanup().phase() != LauncherCleanup::Phase::idle; }
    QString phase() const;
    QString appKey() const;
    QString appName() const;
    QVariantList items() const;
    QString total() const;
    bool canRemove() const;
    QString warning() const;
    double progress() const;
    QString progressText() const;
    QVariantList log() const;
    bool canRestore() const { return _viewModel.cleanup().canRestore(); }
    static QString lockText() { return administratorMark; }

    Q_INVOKABLE void select(const QString& path, bool isSelected);
    Q_INVOKABLE void remove();
    /// Ends what is under way, or closes.
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void restore();
    void refresh() { Q_EMIT changed(); }

Q_SIGNALS:
    void changed();

private:
    LauncherViewModel& _viewModel;
};

} // namespace tessellar
