#include "app/accessible_focus.h"

#include <QAccessible>
#include <QPointer>

namespace tessellar {

static QPointer<QQuickItem>& lastItem() {
    static QPointer<QQuickItem> item;
    return item;
}

QQuickItem* AccessibleFocus::item() { return lastItem(); }

void AccessibleFocus::moveTo(QQuickItem* item) {
    lastItem() = item;
    QAccessibleEvent event(item, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

} // namespace tessellar
