#pragma once

#include "platform/directory_events.h"
#include "platform/machine.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <thread>

namespace tessellar {

/// Tells which folders have changed: entries that came, went or were renamed, not what is in files. A
/// thread of its own waits for the system's notices, so that neither a storm of them nor a server that
/// does not answer holds up the main thread; while nothing changes it makes no system call.
///
/// - A missing folder is reported when it appears, a removed one when it goes and when it returns; so
///   is a folder when a volume is mounted over it or unmounted.
/// - Where the system is out of watches, the remaining folders are polled every ten seconds; the log
///   says so. While no thread can be made, nothing is watched; that is tried again as often.
///
/// Made, called and destroyed on the main thread, which is where the listener is called.
class DirectoryWatcher {
public:
    using Listener = std::function<void(const QStringList& changedDirectories)>;
    static constexpr std::chrono::seconds pollInterval{10};

    DirectoryWatcher(const Machine& machine, Listener listener,
                     std::unique_ptr<DirectoryEvents> events = makeDirectoryEvents());
    ~DirectoryWatcher();
    DirectoryWatcher(const DirectoryWatcher&) = delete;
    DirectoryWatcher& operator=(const DirectoryWatcher&) = delete;

    /// Watches these folders (resolved paths) in place of those before. A folder that is new among them
    /// and was changed since `since` counts as changed: nothing is missed between someone's reading of
    /// it and the beginning of its watch. `done` is called when the watches stand.
    void watch(const QStringList& directories, Instant since, std::function<void()> done = {});
    /// True while some folders are polled: the system is out of watches.
    bool isPolling() const { return _isPolling; }

private:
    struct Shared;
    class Thread;

    void begin();
    void setPolling(bool polling);
    void schedulePoll();

    const Machine& _machine;
    Listener _listener;
    std::shared_ptr<Shared> _shared;
    bool _isPolling = false;
    Timer _poll;
    std::thread _thread;
};

} // namespace tessellar
