#include "platform/desktop/hot_key.h"

namespace tessellar {

bool HotKey::areAvailable() { return false; }

std::unique_ptr<HotKey> HotKey::make(KeyChord, std::function<void()>) { return nullptr; }

} // namespace tessellar
