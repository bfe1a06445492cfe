#pragma once

#include "launcher/app_information_gatherer.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace tessellar {

/// The read-only sheet about one application, for QML.
class InformationPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(QString appKey READ appKey NOTIFY changed FINAL)
    Q_PROPERTY(QString name READ name NOTIFY changed FINAL)
    Q_PROPERTY(QString version READ version NOTIFY changed FINAL) ///< "Version 1.2 (34)"; may be empty
    /// {title, rows: {label, text, isKnown, path}}.
    Q_PROPERTY(QVariantList sections READ sections NOTIFY changed FINAL)
    Q_PROPERTY(bool isPending READ isPending NOTIFY changed FINAL) ///< more is being gathered

public:
    InformationPanel(LauncherViewModel& viewModel, Machine& machine)
        : _viewModel(viewModel), _machine(machine) {}

    QString appKey() const;
    QString name() const { return _information.entry().name; }
    QString version() const;
    const QVariantList& sections() const { return _sections; }
    bool isPending() const { return _information.pending.any(); }

    void open(LauncherWindowMode mode, const AppEntry& app);
    Q_INVOKABLE void close();
    Q_INVOKABLE void reveal(const QString& path);

Q_SIGNALS:
    void changed();

private:
    void show(const AppInformation& information);

    LauncherViewModel& _viewModel;
    Machine& _machine;
    std::unique_ptr<AppInformationGatherer> _gatherer;
    AppInformation _information;
    QVariantList _sections;
};

} // namespace tessellar
