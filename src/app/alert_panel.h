#pragma once

#include "launcher/launcher_error.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_view_model.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The alert or question shown on top of everything else, for QML.
class AlertPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    /// The confirming button's label; empty for an alert, which is only acknowledged.
    Q_PROPERTY(QString accept READ accept NOTIFY changed FINAL)
    Q_PROPERTY(QString decline READ decline NOTIFY changed FINAL) ///< the other button's label
    Q_PROPERTY(bool isDestructive READ isDestructive NOTIFY changed FINAL)
    /// True while Return confirms; arrow keys and Tab change that.
    Q_PROPERTY(bool isAcceptDefault READ isAcceptDefault NOTIFY changed FINAL)

public:
    explicit AlertPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    bool isOpen() const { return !_alerts.isEmpty() || _viewModel.messages().question(); }
    QString title() const;
    QString text() const;
    QString accept() const;
    QString decline() const { return remedy() != Remedy::none ? tr("Leave It") : tr("Cancel"); }
    bool isDestructive() const;
    bool isAcceptDefault() const { return _isAcceptDefault; }

    /// Answers the question or acknowledges the alert.
    Q_INVOKABLE void answer(bool accepted);
    /// Receives all keys while open.
    void pressKey(int key);
    void refresh();

Q_SIGNALS:
    void changed();
    void savedAgain(); ///< as an alert offered

private:
    using Remedy = LauncherError::Remedy;

    /// Offered by the current alert.
    Remedy remedy() const;
    void saveAgain();
    void resetLayouts();

    LauncherViewModel& _viewModel;
    QList<LauncherError> _alerts;
    bool _isAcceptDefault = true;
};

} // namespace tessellar
