#pragma once

#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

struct BackupSummary;

/// The sheet of the arrangement's backups, for QML.
class BackupsPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {name, title, text}, newest first.
    Q_PROPERTY(QVariantList backups READ backups NOTIFY changed FINAL)
    Q_PROPERTY(QString summary READ summary NOTIFY changed FINAL) ///< shown instead of an empty list

public:
    explicit BackupsPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    const QVariantList& backups() const { return _backups; }
    QString summary() const;
    /// Reads the backups from disk; the list is empty until then.
    void refresh();
    /// Asks for confirmation; restores into the mode shown.
    Q_INVOKABLE void restore(const QString& name);

Q_SIGNALS:
    void changed();

private:
    void show(const QList<BackupSummary>& all);

    LauncherViewModel& _viewModel;
    QVariantList _backups;
    bool _isLoading = false;
};

} // namespace tessellar
