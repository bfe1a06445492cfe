#include "platform/interruption.h"

#include "platform/descriptor.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tessellar {

namespace {
constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP};
// All that a signal handler may access.
volatile std::sig_atomic_t writeEnd = -1;

void tell(int signal) {
    const int before = errno;
    const char byte = static_cast<char>(signal);
    (void)!::write(writeEnd, &byte, 1);
    errno = before;
}
} // namespace

struct Interruption::State {
    Descriptor read;
    Descriptor write;
    std::array<struct sigaction, endingSignals.size()> before = {};
    std::unique_ptr<QSocketNotifier> notifier;
};

Interruption::Interruption(std::function<void(int)> interrupted) : _state(std::make_unique<State>()) {
    std::array<int, 2> ends = {-1, -1};
    if (::pipe(ends.data()) != 0)
        return; // the signals then terminate the program at once
    _state->read = Descriptor(ends[0]);
    _state->write = Descriptor(ends[1]);
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    writeEnd = ends[1];
    _state->notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(_state->notifier.get(), &QSocketNotifier::activated,
                     [end = ends[0], interrupted = std::move(interrupted)] {
                         std::array<char, 16> bytes = {};
                         if (::read(end, bytes.data(), bytes.size()) > 0)
                             interrupted(bytes.front());
                     });
    struct sigaction action = {};
    action.sa_handler = tell;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < endingSignals.size(); ++i) {
        ::sigaction(endingSignals[i], &action, &_state->before[i]);
        // Started to outlive the terminal (nohup).
        if (endingSignals[i] == SIGHUP && _state->before[i].sa_handler == SIG_IGN)
            ::sigaction(SIGHUP, &_state->before[i], nullptr);
    }
}

Interruption::~Interruption() {
    if (!_state->notifier)
        return;
    for (std::size_t i = 0; i < endingSignals.size(); ++i)
        ::sigaction(endingSignals[i], &_state->before[i], nullptr);
    writeEnd = -1;
}

bool Interruption::waitToWrite(int descriptor) const {
    std::array<pollfd, 2> ends{
        {{.fd = _state->read.get(), .events = POLLIN}, {.fd = descriptor, .events = POLLOUT}}};
    while (::poll(ends.data(), ends.size(), -1) < 0 && errno == EINTR) {
    }
    return ends[0].revents == 0;
}

} // namespace tessellar
