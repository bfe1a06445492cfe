#include "platform/desktop/pointer_watch.h"

#include "platform/desktop/x11/x11_session.h"

#include <xcb/xinput.h>

#include <QCursor>

#include <cstdlib>

namespace tessellar {
namespace {

/// Raw motion events are delivered whichever window the pointer is over.
class X11PointerWatch final : public PointerWatch {
public:
    X11PointerWatch(xcb_connection_t* connection, std::function<void(QPoint)> moved)
        : _connection(connection)
        , _extension(xcb_get_extension_data(connection, &xcb_input_id)->major_opcode)
        , _moved(std::move(moved))
        , _filter([this](const xcb_generic_event_t& event) { see(event); }) {
        select(XCB_INPUT_XI_EVENT_MASK_RAW_MOTION);
    }
    ~X11PointerWatch() override { select(0); }

private:
    void select(std::uint32_t events) {
        struct {
            xcb_input_event_mask_t head;
            std::uint32_t mask;
        } wanted{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
        xcb_input_xi_select_events(_connection, x11RootWindow(_connection), 1, &wanted.head);
        xcb_flush(_connection);
    }
    void see(const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
            return;
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        if (generic.extension == _extension && generic.event_type == XCB_INPUT_RAW_MOTION)
            _moved(QCursor::pos());
    }

    xcb_connection_t* _connection;
    std::uint8_t _extension;
    std::function<void(QPoint)> _moved;
    X11EventFilter _filter;
};

/// Requests at least the version that Qt requested on this connection: the server refuses a lower one.
bool hasInputExtension(xcb_connection_t* connection) {
    const auto* extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (!extension || !extension->present)
        return false;
    const std::unique_ptr<xcb_input_xi_query_version_reply_t, decltype(&std::free)> version(
        xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 4),
                                         nullptr),
        &std::free);
    return version && version->major_version >= 2;
}

} // namespace

bool PointerWatch::isAvailable() {
    xcb_connection_t* connection = x11Connection();
    return connection && hasInputExtension(connection);
}

std::unique_ptr<PointerWatch> PointerWatch::make(std::function<void(QPoint)> moved) {
    if (!isAvailable())
        return nullptr;
    return std::make_unique<X11PointerWatch>(x11Connection(), std::move(moved));
}

} // namespace tessellar
