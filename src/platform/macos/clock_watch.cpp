#include "platform/clock_watch.h"

#include "platform/descriptor.h"

#include <QSocketNotifier>

#include <array>

#include <notify.h>
#include <unistd.h>

namespace tessellar {

namespace {

class SystemClockWatch final : public QObject, public ClockWatch {
public:
    SystemClockWatch() {
        // The clock is also set after a sleep.
        for (const char* name : {"com.apple.system.clock_set", "com.apple.system.timezone"}) {
            const bool isFirst = _descriptor < 0;
            int token = 0;
            if (::notify_register_file_descriptor(name, &_descriptor, isFirst ? 0 : NOTIFY_REUSE,
                                                  &token) == NOTIFY_STATUS_OK)
                _tokens[_count++] = token;
        }
        if (_count == 0)
            return;
        _notifier = std::make_unique<QSocketNotifier>(_descriptor, QSocketNotifier::Read);
        connect(_notifier.get(), &QSocketNotifier::activated, this, [this] {
            int token = 0;
            (void)!::read(_descriptor, &token, sizeof token);
            leapt.notify();
        });
    }
    ~SystemClockWatch() override {
        _notifier.reset();
        for (std::size_t i = 0; i < _count; ++i)
            ::notify_cancel(_tokens[i]); // the last one closes the descriptor
    }

private:
    int _descriptor = -1;
    std::array<int, 2> _tokens{};
    std::size_t _count = 0;
    std::unique_ptr<QSocketNotifier> _notifier;
};

} // namespace

std::unique_ptr<ClockWatch> makeClockWatch() { return std::make_unique<SystemClockWatch>(); }

} // namespace tessellar
