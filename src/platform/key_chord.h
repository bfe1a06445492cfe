#pragma once

#include <QString>

#include <optional>

namespace tessellar {

/// A key with modifiers, by a Mac keyboard's key codes.
struct KeyChord {
    enum Modifier : unsigned { withCommand = 1, withShift = 2, withOption = 4, withControl = 8 };

    unsigned keyCode = 0;
    unsigned modifiers = 0;

    bool operator==(const KeyChord&) const = default;
};

/// Parses "option+space", "control+command+l", "f4". nullopt for unknown keys, and for a key without
/// command, option or control unless it is a function key: it could no longer be typed anywhere.
std::optional<KeyChord> keyChord(const QString& text);

/// The lower-case letter or digit of a key on a US layout; 0 for any other key.
char keyCharacter(unsigned keyCode);

} // namespace tessellar
