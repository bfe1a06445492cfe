#pragma once

#include <QString>

#include <functional>
#include <memory>
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

/// A key that calls back whichever program has the focus. Destroying it gives the key back.
///
/// On a Mac through Carbon's hot keys, which need no permission: an event tap would ask for the right
/// to watch every key, and there is no tool. Unproven: compiled against declarations, never run. With
/// X11 the server sends the key to who grabbed it; command is its Super key, option is Alt. With
/// Wayland the desktop's portal is asked, and its user decides. Where there is none, a shortcut of the
/// desktop's own can run `tessellarctl toggle`.
class HotKey {
public:
    virtual ~HotKey() = default;

    /// Whether there are such keys here at all.
    static bool areAvailable();
    /// Nothing when another program has the key, or none can be had. Calls back on the main thread.
    static std::unique_ptr<HotKey> make(KeyChord chord, std::function<void()> pressed);
};

} // namespace tessellar
