#pragma once

#include "app/update_rows.h"
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
    Q_PROPERTY(tessellar::UpdateRows* rows READ rows CONSTANT)
    /// How many "Update All" would bring up to date.
    Q_PROPERTY(int runnableCount READ runnableCount NOTIFY changed)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)

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
    /// What a line's button does: brings the update or cancels it, lists a section or closes it.
    Q_INVOKABLE void act(int row);
    Q_INVOKABLE void runAll();
    Q_INVOKABLE void cancelRun();
    /// While it is shown, its list follows what is known.
    void setShown(bool isShown);
    void refresh();

Q_SIGNALS:
    void changed();

private:
    void report(const LauncherUpdates::Outcome& outcome);

    LauncherViewModel& _viewModel;
    UpdateRows _rows;
    bool _isShown = false;
};

} // namespace tessellar
