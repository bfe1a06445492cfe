#include "platform/desktop/hot_key.h"

#include "platform/desktop/portal/portal_hot_key.h"
#include "platform/desktop/x11/x11_hot_key.h"
#include "platform/desktop/x11/x11_session.h"

#include <QGuiApplication>

namespace tessellar {

static bool hasPortal() {
    static const bool isThere = QGuiApplication::platformName().startsWith(u"wayland") &&
                                PortalHotKey::isAvailable(QDBusConnection::sessionBus());
    return isThere;
}

bool HotKey::areAvailable() { return x11Connection() || hasPortal(); }

std::unique_ptr<HotKey> HotKey::make(KeyChord chord, std::function<void()> pressed) {
    if (x11Connection())
        return makeX11HotKey(chord, std::move(pressed));
    if (hasPortal())
        return std::make_unique<PortalHotKey>(QDBusConnection::sessionBus(), chord, std::move(pressed));
    return nullptr;
}

} // namespace tessellar
