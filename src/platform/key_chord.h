#pragma once

#include <QString>

#include <optional>

namespace tessellar {

/// A key with modifiers, as a Mac's keyboard numbers it.
struct KeyChord {
    enum Modifier : unsigned { withCommand = 1, withShift = 2, withOption = 4, withControl = 8 };

    unsigned keyCode = 0;
    unsigned modifiers = 0;

    bool operator==(const KeyChord&) const = default;
};

/// "option+space", "control+command+l", "f4". Nothing for what names no key, and for a key without a
/// modifier that is no function key: no program could be typed into any more.
std::optional<KeyChord> keyChord(const QString& text);

/// The lower-case letter or the digit that a US layout has on a key; 0 for any other key.
char keyCharacter(unsigned keyCode);

} // namespace tessellar
