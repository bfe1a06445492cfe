#include "platform/clock_watch.h"

#include "platform/descriptor.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSocketNotifier>

#include <ctime>

#include <sys/timerfd.h>
#include <unistd.h>

namespace tessellar {

namespace {

class SystemClockWatch final : public QObject, public ClockWatch {
public:
    SystemClockWatch() : _timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
        watchClock();
        watchZone();
    }

private:
    /// A timer that never expires in practice is cancelled when the clock is set, also after a sleep.
    void watchClock() {
        if (!_timer || !arm())
            return;
        _notifier = std::make_unique<QSocketNotifier>(_timer.get(), QSocketNotifier::Read);
        connect(_notifier.get(), &QSocketNotifier::activated, this, [this] {
            std::uint64_t count = 0;
            (void)!::read(_timer.get(), &count, sizeof count);
            if (!arm())
                _notifier.reset();
            leapt.notify();
        });
    }

    bool arm() {
        itimerspec never{};
        never.it_value.tv_sec = std::time_t{1} << 33; // centuries
        return ::timerfd_settime(_timer.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never,
                                 nullptr) == 0;
    }

    void watchZone() {
        const auto zone = [] { return QFileInfo(QStringLiteral("/etc/localtime")).symLinkTarget(); };
        connect(&_etc, &QFileSystemWatcher::directoryChanged, this, [this, zone] {
            if (const QString now = zone(); std::exchange(_zone, now) != now)
                leapt.notify();
        });
        _zone = zone();
        _etc.addPath(QStringLiteral("/etc"));
    }

    Descriptor _timer;
    std::unique_ptr<QSocketNotifier> _notifier;
    QFileSystemWatcher _etc;
    QString _zone;
};

} // namespace

std::unique_ptr<ClockWatch> makeClockWatch() { return std::make_unique<SystemClockWatch>(); }

} // namespace tessellar
