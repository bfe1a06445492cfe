#include "updates/tool_lanes.h"

namespace tessellar {

void ToolLanes::enter(const QString& tool, Entry start) {
    if (_busy.contains(tool)) {
        _waiting[tool].push_back(std::move(start));
        return;
    }
    _busy.insert(tool);
    start();
}

void ToolLanes::leave(const QString& tool) {
    _busy.remove(tool);
    const auto found = _waiting.find(tool);
    if (found == _waiting.end())
        return;
    Entry next = std::move(found->second.front());
    found->second.pop_front();
    if (found->second.empty())
        _waiting.erase(found);
    enter(tool, std::move(next));
}

} // namespace tessellar
