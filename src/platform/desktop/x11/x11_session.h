#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>

#include <functional>

namespace tessellar {

/// This program's X connection; null if it does not run under X11.
xcb_connection_t* x11Connection();
xcb_window_t x11RootWindow(xcb_connection_t* connection);

/// Sees X events before Qt does. Main thread only.
class X11EventFilter : private QAbstractNativeEventFilter {
public:
    explicit X11EventFilter(std::function<void(const xcb_generic_event_t&)> seen);
    ~X11EventFilter() override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

    std::function<void(const xcb_generic_event_t&)> _seen;
};

} // namespace tessellar
