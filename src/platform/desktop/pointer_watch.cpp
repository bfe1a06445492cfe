#include "platform/desktop/pointer_watch.h"

namespace tessellar {

std::unique_ptr<PointerWatch> PointerWatch::make(std::function<void(QPoint)>) { return nullptr; }

} // namespace tessellar
