#pragma once

#include "icons/icon_loader.h"
#include "launcher/launcher_view_model.h"
#include "launcher/unplaced_items.h"
#include "platform/lifetime.h"
#include "platform/machine.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet of everything that is not on the pages, for QML.
class UnplacedPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// {title, text, kind, appKeys, action}; a row without an action is a heading.
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed FINAL)
    Q_PROPERTY(QString summary READ summary NOTIFY changed FINAL) ///< shown instead of an empty list

public:
    UnplacedPanel(LauncherViewModel& viewModel, const Machine& machine)
        : _viewModel(viewModel), _machine(machine) {}

    const QVariantList& rows() const { return _rows; }
    QString summary() const;
    /// Performs the action of a row's button.
    Q_INVOKABLE void act(int row);
    void refresh();
    /// The icons shown: no page requests those of hidden applications.
    QList<IconRequest> icons() const;

Q_SIGNALS:
    void changed();

private:
    LauncherViewModel& _viewModel;
    const Machine& _machine;
    QList<std::optional<UnplacedItem>> _items; ///< by row; nullopt for headings
    QVariantList _rows;
    Lifetime _lifetime;
};

} // namespace tessellar
