#include "platform/desktop/x11/x11_hot_key.h"

#include "platform/desktop/key_symbols.h"
#include "platform/desktop/x11/x11_session.h"

#include <xcb/xcb_keysyms.h>
#include <xcb/xcbext.h>

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

/// The modifier that Num Lock is mapped to; 0 if there is none.
std::uint16_t numLockMask(xcb_connection_t* connection) {
    constexpr xcb_keysym_t numLock = 0xff7f;
    const Freed<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr),
        &std::free);
    if (!mapping)
        return 0;
    const std::vector<xcb_keycode_t> keys = codesOf(connection, numLock);
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(mapping.get());
    const int perModifier = mapping->keycodes_per_modifier;
    for (int i = 0; i < 8 * perModifier; ++i)
        if (codes[i] != 0 && std::ranges::find(keys, codes[i]) != keys.end())
            return static_cast<std::uint16_t>(1U << (i / perModifier));
    return 0;
}

/// All combinations of Caps Lock and Num Lock: the key works with and without them.
std::array<std::uint16_t, 4> locks(xcb_connection_t* connection) {
    const std::uint16_t numLock = numLockMask(connection);
    return {0, XCB_MOD_MASK_LOCK, numLock, static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLock)};
}

class X11HotKey final : public HotKey {
public:
    X11HotKey(xcb_connection_t* connection, xcb_keysym_t symbol, std::uint16_t modifiers,
              std::function<void()> pressed)
        : _connection(connection)
        , _root(x11RootWindow(connection))
        , _symbol(symbol)
        , _modifiers(modifiers)
        , _pressed(std::move(pressed))
        , _filter([this](const xcb_generic_event_t& event) { see(event); }) {}
    ~X11HotKey() override { release(); }

    /// False if the keyboard has no such key, or another program has grabbed it.
    bool grab() {
        _codes = codesOf(_connection, _symbol);
        _locks = locks(_connection);
        bool isOurs = !_codes.empty();
        for (const xcb_keycode_t code : _codes)
            for (const std::uint16_t lock : _locks) {
                const auto asked = xcb_grab_key_checked(_connection, true, _root, _modifiers | lock,
                                                        code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
                const Freed<xcb_generic_error_t> refused(xcb_request_check(_connection, asked),
                                                         &std::free);
                isOurs = isOurs && !refused;
            }
        return isOurs;
    }

private:
    void release() {
        for (const xcb_keycode_t code : _codes)
            for (const std::uint16_t lock : _locks)
                xcb_ungrab_key(_connection, code, _root, _modifiers | lock);
        xcb_flush(_connection);
    }

    /// True if the event changes the keyboard's mapping.
    bool isRemapping(const xcb_generic_event_t& event, int type) const {
        static xcb_extension_t keyboards{"XKEYBOARD", 0};
        const auto* extension = xcb_get_extension_data(_connection, &keyboards);
        constexpr std::uint8_t lastOfRemappings = 1; // NewKeyboardNotify is 0, MapNotify 1
        return type == XCB_MAPPING_NOTIFY ||
               (extension && extension->present && type == extension->first_event &&
                event.pad0 <= lastOfRemappings);
    }

    void see(const xcb_generic_event_t& event) {
        constexpr std::uint8_t kind = 0x7f; // without the flag for events sent by programs
        const int type = event.response_type & kind;
        if (isRemapping(event, type)) {
            release();
            grab();
            return;
        }
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
            return;
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        if (key.event != _root || std::ranges::find(_codes, key.detail) == _codes.end())
            return;
        constexpr unsigned known =
            XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
        // Auto-repeat releases and presses a held key at the same time stamp.
        if (type == XCB_KEY_RELEASE)
            _released = key.time;
        else if ((key.state & known & ~unsigned{_locks[2]}) == _modifiers && key.time != _released)
            _pressed();
    }

    xcb_connection_t* _connection;
    xcb_window_t _root;
    xcb_keysym_t _symbol;
    std::vector<xcb_keycode_t> _codes; ///< of the keys with the symbol
    std::array<std::uint16_t, 4> _locks{};
    std::uint16_t _modifiers;
    std::function<void()> _pressed;
    xcb_timestamp_t _released = XCB_CURRENT_TIME;
    X11EventFilter _filter;
};

} // namespace

std::unique_ptr<HotKey> makeX11HotKey(KeyChord chord, std::function<void()> pressed) {
    xcb_connection_t* connection = x11Connection();
    const auto key = keySymbol(chord.keyCode);
    if (!connection || !key)
        return nullptr;
    auto hotKey = std::make_unique<X11HotKey>(connection, key->symbol, modifierMask(chord.modifiers),
                                              std::move(pressed));
    return hotKey->grab() ? std::move(hotKey) : nullptr;
}

} // namespace tessellar
