#pragma once

#include "launcher/launcher_updates.h"
#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet about updates in QML's terms.
class UpdatesPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString explanation READ explanation CONSTANT)
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY changed)
    Q_PROPERTY(QVariantList intervals READ intervals NOTIFY changed) ///< {title, seconds, isChosen}
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed) ///< from 0 to 1
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed)
    /// {appKey, name, text, action, isRunning, canRun} of the applications that have one.
    Q_PROPERTY(QVariantList available READ available NOTIFY availableChanged)

public:
    explicit UpdatesPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    static QString title();
    static QString explanation();
    bool isEnabled() const;
    void setEnabled(bool isEnabled);
    QVariantList intervals() const;
    QString summary() const;
    bool isChecking() const;
    double progress() const;
    QString progressText() const;
    QVariantList available() const;

    Q_INVOKABLE void chooseInterval(int seconds);
    Q_INVOKABLE void checkNow();
    Q_INVOKABLE void cancelCheck();
    Q_INVOKABLE void run(const QString& appKey);
    Q_INVOKABLE void cancelRun();
    void refresh();

Q_SIGNALS:
    void changed();
    void availableChanged();

private:
    void report(const LauncherUpdates::Outcome& outcome);

    LauncherViewModel& _viewModel;
    QVariantList _listed; ///< while the sheet shows them
};

} // namespace tessellar
