#pragma once

#include "launcher/installed_applications.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/removal_steps.h"

namespace tessellar {

template <typename Result>
void LauncherCleanup::move(std::function<Result(const RemovalSteps&, std::stop_token)> work,
                           std::function<void(Result)> done) {
    _isMoving = true;
    _hold = _applications.hold();
    _stopMoving = std::stop_source();
    _moving = _machine.workers.run(
        Lane::actions,
        [tools = _tools, source = _stopMoving, tag = _machine.uuids.next(),
         work = std::move(work)](std::stop_token stop) {
            const std::stop_callback ended(stop, [source]() mutable { source.request_stop(); });
            return work(RemovalSteps(*tools, tag), source.get_token());
        },
        std::move(done));
    changed.notify();
}

} // namespace tessellar
