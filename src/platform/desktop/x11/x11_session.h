#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>

#include <functional>

namespace tessellar {

/// The connection of this program to the X server, or null where its windows are another system's.
xcb_connection_t* x11Connection();
xcb_window_t x11RootWindow(xcb_connection_t* connection);

/// Sees the events that the X server sends to this program, before Qt does. Main thread only.
class X11EventFilter : private QAbstractNativeEventFilter {
public:
    explicit X11EventFilter(std::function<void(const xcb_generic_event_t&)> seen);
    ~X11EventFilter() override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

    std::function<void(const xcb_generic_event_t&)> _seen;
};

} // namespace tessellar
