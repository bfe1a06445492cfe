#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// Reports the current item to screen readers. Tiles, menu entries and list rows never have Qt's
/// keyboard focus, which Qt would report; the item that has it navigates among them.
class AccessibleFocus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE static void moveTo(QQuickItem* item);
    /// The item last reported; null once it is destroyed.
    static QQuickItem* item();
};

} // namespace tessellar
