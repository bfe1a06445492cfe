#pragma once

#include "platform/key_chord.h"

#include <functional>
#include <memory>

namespace tessellar {

/// A system-wide key that calls back whichever program has the focus. Destroying it releases the key.
///
/// macOS: Carbon's hot keys, which need no permission (an event tap would need permission to watch
/// every key). Unproven: compiled against declarations, never run. X11: a key grab; command is Super,
/// option is Alt. Wayland: the desktop's portal, where the user decides. Elsewhere a shortcut of the
/// desktop can run `tessellarctl toggle`.
class HotKey {
public:
    virtual ~HotKey() = default;

    /// Whether this platform offers such keys.
    static bool areAvailable();
    /// Null if the key is taken or unavailable. Calls back on the main thread.
    static std::unique_ptr<HotKey> make(KeyChord chord, std::function<void()> pressed);
};

} // namespace tessellar
