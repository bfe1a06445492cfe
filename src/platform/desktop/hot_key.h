#pragma once

#include "platform/key_chord.h"

#include <functional>
#include <memory>

namespace tessellar {

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
