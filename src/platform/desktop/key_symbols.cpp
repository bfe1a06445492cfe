#include "platform/desktop/key_symbols.h"

#include "platform/desktop/hot_key.h"

#include <X11/keysym.h>

#include <algorithm>

namespace tessellar {
namespace {

struct SpecialKey {
    unsigned code;
    std::uint32_t symbol;
    const char* name;
};

constexpr SpecialKey specialKeys[] = {
    {49, XK_space, "space"},
    {48, XK_Tab, "Tab"},
    {36, XK_Return, "Return"},
    {53, XK_Escape, "Escape"},
    {51, XK_BackSpace, "BackSpace"},
    {123, XK_Left, "Left"},
    {124, XK_Right, "Right"},
    {125, XK_Down, "Down"},
    {126, XK_Up, "Up"},
    {122, XK_F1, "F1"},
    {120, XK_F2, "F2"},
    {99, XK_F3, "F3"},
    {118, XK_F4, "F4"},
    {96, XK_F5, "F5"},
    {97, XK_F6, "F6"},
    {98, XK_F7, "F7"},
    {100, XK_F8, "F8"},
    {101, XK_F9, "F9"},
    {109, XK_F10, "F10"},
    {103, XK_F11, "F11"},
    {111, XK_F12, "F12"},
    {105, XK_F13, "F13"},
    {107, XK_F14, "F14"},
    {113, XK_F15, "F15"},
};

} // namespace

std::optional<KeySymbol> keySymbol(unsigned keyCode) {
    // Letters and digits have their Latin-1 values.
    if (const char name = keyCharacter(keyCode))
        return KeySymbol{static_cast<std::uint32_t>(name), std::string(1, name)};
    const auto* found = std::ranges::find(specialKeys, keyCode, &SpecialKey::code);
    return found == std::end(specialKeys) ? std::nullopt
                                          : std::optional(KeySymbol{found->symbol, found->name});
}

} // namespace tessellar
