#pragma once

#include "app/update_rows.h"
#include "launcher/launcher_updates.h"
#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The updates sheet, for QML.
class UpdatesPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(QString explanation READ explanation CONSTANT FINAL)
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY changed FINAL)
    Q_PROPERTY(
        QVariantList intervals READ intervals NOTIFY changed FINAL) ///< {title, seconds, isChosen}
    Q_PROPERTY(QString summary READ summary NOTIFY changed FINAL)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY changed FINAL) ///< 0 to 1
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed FINAL)
    Q_PROPERTY(tessellar::UpdateRows* rows READ rows CONSTANT FINAL)
    /// How many applications "Update All" would update.
    Q_PROPERTY(int runnableCount READ runnableCount NOTIFY changed FINAL)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed FINAL)

public:
    explicit UpdatesPanel(LauncherViewModel& viewModel) : _viewModel(viewModel), _rows(viewModel) {}

    static QString title();
    static QString explanation();
    bool isEnabled() const;
    void setEnabled(bool isEnabled);
    QVariantList intervals() const;
    QString summary() const;
    bool isChecking() const;
    double progress() const;
    QString progressText() const;
    UpdateRows* rows() { return &_rows; }
    int runnableCount() const;
    bool isRunning() const;

    Q_INVOKABLE void chooseInterval(int seconds);
    Q_INVOKABLE void stepInterval(int by);
    Q_INVOKABLE void checkNow();
    Q_INVOKABLE void cancelCheck();
    /// Performs the action of a row's button: starts or cancels an update, expands or collapses a
    /// section.
    Q_INVOKABLE void act(int row);
    Q_INVOKABLE void runAll();
    Q_INVOKABLE void cancelRun();
    /// While shown, the list follows changes.
    void setShown(bool isShown);
    void refresh();

Q_SIGNALS:
    void changed();

private:
    AppUpdateSettings settings() const;
    void store(const QString& key, const QJsonValue& value);

    LauncherViewModel& _viewModel;
    UpdateRows _rows;
    bool _isShown = false;
};

} // namespace tessellar
