#include "platform/desktop/hot_key.h"

namespace tessellar {

std::unique_ptr<HotKey> HotKey::make(KeyChord, std::function<void()>) { return nullptr; }

} // namespace tessellar
