#pragma once

#include <QByteArray>
#include <QList>

#include <expected>
#include <memory>

namespace tessellar {

/// The system's notifications about folders: inotify, or kqueue on macOS. One thread adds, removes and
/// waits; any thread may wake it. Costs nothing while nothing changes.
class DirectoryEvents {
public:
    struct Event {
        enum class Kind {
            entries, ///< an entry appeared, vanished or was renamed
            gone,    ///< the folder itself was removed; its watch has ended
            lost,    ///< events were dropped: anything may have changed
            mounted, ///< a volume was mounted or unmounted: a path may now lead to another folder
        };
        Kind kind = Kind::entries;
        int watch = -1;
        QByteArray name = {}; ///< for `entries`, if the system reports it
    };

    virtual ~DirectoryEvents() = default;
    /// Starts watching a folder; returns a watch number unique among the active watches, or an errno.
    /// ENOSPC, EMFILE, ENFILE and ENOMEM mean that the system is out of watches.
    virtual std::expected<int, int> add(const QByteArray& hostPath) = 0;
    virtual void remove(int watch) = 0;
    /// Blocks until there are events or `wake` is called; may return none.
    virtual QList<Event> wait() = 0;
    virtual void wake() = 0;
};

/// The implementation for this system. If it is unavailable, every `add` fails with the errno of the
/// limit.
std::unique_ptr<DirectoryEvents> makeDirectoryEvents();

} // namespace tessellar
