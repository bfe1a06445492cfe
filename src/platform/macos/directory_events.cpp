#include "platform/directory_events.h"

#include "platform/descriptor.h"

#include <array>
#include <map>

#include <fcntl.h>
#include <sys/event.h>
#include <sys/mount.h>

namespace tessellar {

namespace {

/// One descriptor per folder, opened for events only, so that it does not block unmounting.
class KqueueEvents final : public DirectoryEvents {
public:
    KqueueEvents() {
        struct kevent change;
        EV_SET(&change, 0, EVFILT_USER, EV_ADD | EV_CLEAR, 0, 0, nullptr);
        (void)::kevent(_queue.get(), &change, 1, nullptr, 0, nullptr);
        EV_SET(&change, 0, EVFILT_FS, EV_ADD | EV_CLEAR, 0, 0, nullptr);
        (void)::kevent(_queue.get(), &change, 1, nullptr, 0, nullptr);
    }

    std::expected<int, int> add(const QByteArray& hostPath) override {
        Descriptor folder(
            ::open(hostPath.constData(), O_EVTONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!folder)
            return std::unexpected(errno);
        struct kevent change;
        EV_SET(&change, folder.get(), EVFILT_VNODE, EV_ADD | EV_CLEAR,
               NOTE_WRITE | NOTE_DELETE | NOTE_RENAME | NOTE_REVOKE, 0, nullptr);
        if (::kevent(_queue.get(), &change, 1, nullptr, 0, nullptr) != 0)
            return std::unexpected(errno);
        const int watch = folder.get();
        _folders.insert_or_assign(watch, std::move(folder));
        return watch;
    }

    void remove(int watch) override { _folders.erase(watch); }

    QList<Event> wait() override {
        std::array<struct kevent, 256> notices;
        const int count = retrying([&] {
            return ::kevent(_queue.get(), nullptr, 0, notices.data(), int(notices.size()), nullptr);
        });
        QList<Event> events;
        for (int i = 0; i < count; ++i) {
            const auto& notice = notices[static_cast<std::size_t>(i)];
            if (notice.filter == EVFILT_FS && (notice.fflags & (VQ_MOUNT | VQ_UNMOUNT)))
                events.append({.kind = Event::Kind::mounted});
            const int watch = static_cast<int>(notice.ident);
            if (notice.filter != EVFILT_VNODE || !_folders.contains(watch))
                continue;
            if (notice.fflags & (NOTE_DELETE | NOTE_RENAME | NOTE_REVOKE)) {
                _folders.erase(watch);
                events.append({.kind = Event::Kind::gone, .watch = watch});
            } else {
                events.append({.watch = watch});
            }
        }
        return events;
    }

    void wake() override {
        struct kevent change;
        EV_SET(&change, 0, EVFILT_USER, 0, NOTE_TRIGGER, 0, nullptr);
        (void)::kevent(_queue.get(), &change, 1, nullptr, 0, nullptr);
    }

private:
    Descriptor _queue{::kqueue()};
    std::map<int, Descriptor> _folders;
};

} // namespace

std::unique_ptr<DirectoryEvents> makeDirectoryEvents() { return std::make_unique<KqueueEvents>(); }

} // namespace tessellar
