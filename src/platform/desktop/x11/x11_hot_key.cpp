#include "platform/desktop/x11/x11_hot_key.h"

#include "platform/desktop/key_symbols.h"
#include "platform/desktop/x11/x11_session.h"

#include <xcb/xcb_keysyms.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace tessellar {
namespace {

template <typename T>
using Freed = std::unique_ptr<T, decltype(&std::free)>;

std::uint16_t modifierMask(unsigned modifiers) {
    unsigned mask = 0;
    for (const auto& [ours, theirs] :
         {std::pair<unsigned, unsigned>{KeyChord::withCommand, XCB_MOD_MASK_4},
          {KeyChord::withShift, XCB_MOD_MASK_SHIFT},
          {KeyChord::withOption, XCB_MOD_MASK_1},
          {KeyChord::withControl, XCB_MOD_MASK_CONTROL}})
        mask |= modifiers & ours ? theirs : 0;
    return static_cast<std::uint16_t>(mask);
}

/// Caps Lock and Num Lock are not held by anybody: the key counts with them as without.
constexpr std::array<std::uint16_t, 4> locks{0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                             XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

class X11HotKey final : public HotKey {
public:
    X11HotKey(xcb_connection_t* connection, std::vector<xcb_keycode_t> codes, std::uint16_t modifiers,
              std::function<void()> pressed)
        : _connection(connection)
        , _root(x11RootWindow(connection))
        , _codes(std::move(codes))
        , _modifiers(modifiers)
        , _pressed(std::move(pressed))
        , _filter([this](const xcb_generic_event_t& event) { see(event); }) {}
    ~X11HotKey() override {
        for (const xcb_keycode_t code : _codes)
            for (const std::uint16_t lock : locks)
                xcb_ungrab_key(_connection, code, _root, _modifiers | lock);
        xcb_flush(_connection);
    }

    bool grab() {
        bool isOurs = true;
        for (const xcb_keycode_t code : _codes)
            for (const std::uint16_t lock : locks) {
                const auto asked = xcb_grab_key_checked(_connection, true, _root, _modifiers | lock,
                                                        code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
                const Freed<xcb_generic_error_t> refused(xcb_request_check(_connection, asked),
                                                         &std::free);
                isOurs = isOurs && !refused;
            }
        return isOurs;
    }

private:
    void see(const xcb_generic_event_t& event) {
        constexpr std::uint8_t kind = 0x7f; // without the mark of events that programs sent
        const int type = event.response_type & kind;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
            return;
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        if (key.event != _root || std::ranges::find(_codes, key.detail) == _codes.end())
            return;
        constexpr unsigned known =
            XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
        // A key that is held is released and pressed in the same moment, again and again.
        if (type == XCB_KEY_RELEASE)
            _released = key.time;
        else if ((key.state & known) == _modifiers && key.time != _released)
            _pressed();
    }

    xcb_connection_t* _connection;
    xcb_window_t _root;
    std::vector<xcb_keycode_t> _codes;
    std::uint16_t _modifiers;
    std::function<void()> _pressed;
    xcb_timestamp_t _released = XCB_CURRENT_TIME;
    X11EventFilter _filter;
};

std::vector<xcb_keycode_t> codesOf(xcb_connection_t* connection, xcb_keysym_t keysym) {
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols(
        xcb_key_symbols_alloc(connection), &xcb_key_symbols_free);
    const Freed<xcb_keycode_t> codes(
        symbols ? xcb_key_symbols_get_keycode(symbols.get(), keysym) : nullptr, &std::free);
    std::vector<xcb_keycode_t> result;
    for (const xcb_keycode_t* code = codes.get(); code && *code != XCB_NO_SYMBOL; ++code)
        result.push_back(*code);
    return result;
}

} // namespace

std::unique_ptr<HotKey> makeX11HotKey(KeyChord chord, std::function<void()> pressed) {
    xcb_connection_t* connection = x11Connection();
    const auto key = keySymbol(chord.keyCode);
    auto codes = connection && key ? codesOf(connection, key->symbol) : std::vector<xcb_keycode_t>();
    if (codes.empty())
        return nullptr;
    auto hotKey = std::make_unique<X11HotKey>(connection, std::move(codes),
                                              modifierMask(chord.modifiers), std::move(pressed));
    return hotKey->grab() ? std::move(hotKey) : nullptr;
}

} // namespace tessellar
