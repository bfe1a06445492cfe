#include "platform/directory_events.h"

#include "platform/descriptor.h"

#include <array>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>

namespace tessellar {

namespace {

class InotifyEvents final : public DirectoryEvents {
public:
    std::expected<int, int> add(const QByteArray& hostPath) override {
        if (!_inotify)
            return std::unexpected(EMFILE);
        const int watch =
            ::inotify_add_watch(_inotify.get(), hostPath.constData(),
                                IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF |
                                    IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW | IN_EXCL_UNLINK);
        if (watch < 0)
            return std::unexpected(errno);
        return watch;
    }

    void remove(int watch) override { ::inotify_rm_watch(_inotify.get(), watch); }

    QList<Event> wait() override {
        std::array<pollfd, 3> sources{pollfd{_wake.get(), POLLIN, 0}, pollfd{_inotify.get(), POLLIN, 0},
                                      pollfd{_mounts.get(), POLLPRI, 0}};
        retrying([&] { return ::poll(sources.data(), sources.size(), -1); });
        std::uint64_t count = 0;
        if (sources[0].revents != 0)
            (void)retrying([&] { return ::read(_wake.get(), &count, sizeof count); });
        QList<Event> events;
        if (sources[1].revents != 0)
            read(events);
        if (sources[2].revents != 0) // one event for each change; there is nothing to read
            events.append({.kind = Event::Kind::mounted});
        return events;
    }

    void wake() override {
        const std::uint64_t one = 1;
        (void)retrying([&] { return ::write(_wake.get(), &one, sizeof one); });
    }

private:
    void read(QList<Event>& events) {
        alignas(inotify_event) std::array<char, 64 << 10> buffer;
        const auto size =
            retrying([&] { return ::read(_inotify.get(), buffer.data(), buffer.size()); });
        for (ssize_t offset = 0; offset + ssize_t(sizeof(inotify_event)) <= size;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            const char* name = buffer.data() + offset + sizeof event;
            offset += ssize_t(sizeof event + event.len);
            if (event.mask & IN_Q_OVERFLOW)
                events.append({.kind = Event::Kind::lost});
            else if (event.mask & IN_IGNORED)
                events.append({.kind = Event::Kind::gone, .watch = event.wd});
            else if (event.mask & IN_MOVE_SELF) // no longer at its path; IN_IGNORED follows
                remove(event.wd);
            else if (event.len > 0)
                events.append({.watch = event.wd, .name = QByteArray(name)});
        }
    }

    Descriptor _inotify{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};
    Descriptor _wake{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    Descriptor _mounts{::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)};
};

} // namespace

std::unique_ptr<DirectoryEvents> makeDirectoryEvents() { return std::make_unique<InotifyEvents>(); }

} // namespace tessellar
