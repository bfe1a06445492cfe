#pragma once

#include "platform/desktop/hot_key.h"

namespace tessellar {

/// A key grabbed from the X server, whichever window has the focus.
std::unique_ptr<HotKey> makeX11HotKey(KeyChord chord, std::function<void()> pressed);

} // namespace tessellar
