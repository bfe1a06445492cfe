#pragma once

#include "platform/settings.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// How the user wants the window to look, for QML.
class Appearance final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    /// "light", "dark", or any other value to follow the system.
    Q_PROPERTY(QString theme READ theme NOTIFY changed FINAL)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY changed FINAL)
    /// Relative to the usual size.
    Q_PROPERTY(double textScale READ textScale NOTIFY changed FINAL)

public:
    explicit Appearance(const Settings& settings) : _settings(settings) {}

    QString theme() const;
    bool reducesMotion() const;
    double textScale() const;

Q_SIGNALS:
    void changed();

private:
    const Settings& _settings;
};

} // namespace tessellar
