#pragma once

#include "icons/icon_loader.h"
#include "launcher/launcher_view_model.h"
#include "launcher/unplaced.h"
#include "platform/lifetime.h"
#include "platform/machine.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet about what is not on the pages, in QML's terms.
class UnplacedPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {title, text, kind, appKeys, action}; a row without an action is the title of those below it.
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed) ///< in place of a list

public:
    UnplacedPanel(LauncherViewModel& viewModel, const Machine& machine)
        : _viewModel(viewModel), _machine(machine) {}

    const QVariantList& rows() const { return _rows; }
    QString summary() const;
    /// Does what the button of a row says.
    Q_INVOKABLE void act(int row);
    void refresh();
    /// The icons that it shows: what is hidden is on no page that would want them.
    QList<IconWish> icons() const;

Q_SIGNALS:
    void changed();

private:
    LauncherViewModel& _viewModel;
    const Machine& _machine;
    QList<std::optional<UnplacedThing>> _things; ///< by row; none for a title
    QVariantList _rows;
    Lifetime _lifetime;
};

} // namespace tessellar
