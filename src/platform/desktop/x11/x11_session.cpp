#include "platform/desktop/x11/x11_session.h"

#include <QGuiApplication>

namespace tessellar {

xcb_connection_t* x11Connection() {
    if (!qGuiApp)
        return nullptr;
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t x11RootWindow(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

X11EventFilter::X11EventFilter(std::function<void(const xcb_generic_event_t&)> seen)
    : _seen(std::move(seen)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11EventFilter::~X11EventFilter() {
    if (QCoreApplication* application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

bool X11EventFilter::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type == "xcb_generic_event_t")
        _seen(*static_cast<const xcb_generic_event_t*>(message));
    return false;
}

} // namespace tessellar
