#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// Tells screen readers what the user is at. Tiles, lines of menus and rows of lists never have the
/// keyboard themselves, of which Qt would tell; what has it walks over them.
class AccessibleFocus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE static void moveTo(QQuickItem* item);
    /// Where it is said to be; null once that is gone.
    static QQuickItem* item();
};

} // namespace tessellar
