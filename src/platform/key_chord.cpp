#include "platform/key_chord.h"

#include <QStringList>

#include <algorithm>
#include <span>

namespace tessellar {

namespace {

struct Named {
    const char* name;
    unsigned value;
};

constexpr Named modifiers[] = {{"command", KeyChord::withCommand},
                               {"shift", KeyChord::withShift},
                               {"option", KeyChord::withOption},
                               {"control", KeyChord::withControl}};

constexpr Named functionKeys[] = {{"f1", 122},  {"f2", 120},  {"f3", 99},   {"f4", 118},  {"f5", 96},
                                  {"f6", 97},   {"f7", 98},   {"f8", 100},  {"f9", 101},  {"f10", 109},
                                  {"f11", 103}, {"f12", 111}, {"f13", 105}, {"f14", 107}, {"f15", 113}};

/// Physical keys, by their names on a US layout.
constexpr Named keys[] = {
    {"a", 0},       {"b", 11},     {"c", 8},       {"d", 2},       {"e", 14},      {"f", 3},
    {"g", 5},       {"h", 4},      {"i", 34},      {"j", 38},      {"k", 40},      {"l", 37},
    {"m", 46},      {"n", 45},     {"o", 31},      {"p", 35},      {"q", 12},      {"r", 15},
    {"s", 1},       {"t", 17},     {"u", 32},      {"v", 9},       {"w", 13},      {"x", 7},
    {"y", 16},      {"z", 6},      {"0", 29},      {"1", 18},      {"2", 19},      {"3", 20},
    {"4", 21},      {"5", 23},     {"6", 22},      {"7", 26},      {"8", 28},      {"9", 25},
    {"space", 49},  {"tab", 48},   {"return", 36}, {"escape", 53}, {"delete", 51}, {"left", 123},
    {"right", 124}, {"down", 125}, {"up", 126},
};

std::optional<unsigned> find(std::span<const Named> table, const QString& name) {
    const auto found =
        std::ranges::find_if(table, [&](const Named& one) { return name == QLatin1String(one.name); });
    return found == table.end() ? std::nullopt : std::optional(found->value);
}

} // namespace

char keyCharacter(unsigned keyCode) {
    const auto* found = std::ranges::find_if(
        keys, [&](const Named& key) { return key.value == keyCode && key.name[1] == 0; });
    return found == std::end(keys) ? '\0' : found->name[0];
}

std::optional<KeyChord> keyChord(const QString& text) {
    QStringList names = text.toLower().split(u'+');
    const QString key = names.takeLast().trimmed();
    KeyChord chord;
    for (const QString& name : std::as_const(names)) {
        const auto modifier = find(modifiers, name.trimmed());
        if (!modifier)
            return std::nullopt;
        chord.modifiers |= *modifier;
    }
    auto code = find(functionKeys, key);
    if (!code && (chord.modifiers & ~unsigned{KeyChord::withShift}))
        code = find(keys, key);
    if (!code)
        return std::nullopt;
    chord.keyCode = *code;
    return chord;
}

} // namespace tessellar
