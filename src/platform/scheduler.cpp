#include "platform/scheduler.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <limits>

namespace tessellar {

namespace {

using std::chrono::milliseconds;

class PendingCall final : public QObject, public Timer::Pending {
public:
    PendingCall(milliseconds delay, MoveOnlyFunction<void()> call)
        : _due(std::max(delay, milliseconds::zero()), Qt::PreciseTimer), _call(std::move(call)) {
        arm();
    }

    bool isActive() const override { return _timer != 0; }

protected:
    void timerEvent(QTimerEvent*) override {
        killTimer(std::exchange(_timer, 0));
        if (!_due.hasExpired()) {
            arm();
            return;
        }
        // The call may destroy this object, by setting the same timer again.
        auto call = std::move(_call);
        call();
    }

private:
    void arm() {
        // Coarse timers would change the order of calls; an `int` of milliseconds overflows after 24
        // days.
        const auto remaining =
            std::clamp<qint64>(_due.remainingTime(), 0, std::numeric_limits<int>::max());
        _timer = startTimer(static_cast<int>(remaining), Qt::PreciseTimer);
    }

    QDeadlineTimer _due;
    MoveOnlyFunction<void()> _call;
    int _timer = 0;
};

} // namespace

Timer EventLoopScheduler::after(milliseconds delay, MoveOnlyFunction<void()> call) {
    return Timer(std::make_unique<PendingCall>(delay, std::move(call)));
}

} // namespace tessellar
