#pragma once

#include <QByteArray>
#include <QList>

#include <expected>
#include <memory>

namespace tessellar {

/// The system's own notices about folders: inotify, on a Mac kqueue. One thread adds, removes and
/// waits; any thread may wake it. Costs nothing while nothing changes.
class DirectoryEvents {
public:
    struct Event {
        enum class Kind {
            entries, ///< something in the folder came, went or was renamed
            gone,    ///< the folder itself; its watch has ended
            lost,    ///< events were dropped: anything may have changed
            mounted, ///< a volume came or went: a path may lead to another folder than before
        };
        Kind kind = Kind::entries;
        int watch = -1;
        QByteArray name = {}; ///< of `entries`, where the system tells
    };

    virtual ~DirectoryEvents() = default;
    /// A number for the watch of a folder, never that of one that goes on; or an errno. ENOSPC, EMFILE,
    /// ENFILE and ENOMEM mean that the system has no more to give.
    virtual std::expected<int, int> add(const QByteArray& hostPath) = 0;
    virtual void remove(int watch) = 0;
    /// Blocks until there are events or someone wakes it; then there may be none.
    virtual QList<Event> wait() = 0;
    virtual void wake() = 0;
};

/// Those of this system. Where it has none to give, every `add` fails with the limit's errno.
std::unique_ptr<DirectoryEvents> makeDirectoryEvents();

} // namespace tessellar
