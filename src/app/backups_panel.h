#pragma once

#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

struct BackupSummary;

/// The sheet about backups of the arrangement in QML's terms.
class BackupsPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {name, title, text}, newest first.
    Q_PROPERTY(QVariantList backups READ backups NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed) ///< in place of a list

public:
    explicit BackupsPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    const QVariantList& backups() const { return _backups; }
    QString summary() const;
    /// Looks at the disk; the list is empty until that is done.
    void refresh();
    /// Asks first. In the mode that is shown.
    Q_INVOKABLE void restore(const QString& name);

Q_SIGNALS:
    void changed();

private:
    void show(const QList<BackupSummary>& all);

    LauncherViewModel& _viewModel;
    QVariantList _backups;
    bool _isLooking = false;
};

} // namespace tessellar
