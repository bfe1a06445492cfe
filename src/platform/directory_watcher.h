#pragma once

#include "platform/directory_events.h"
#include "platform/machine.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <thread>

namespace tessellar {

/// Reports folders whose entries were added, removed or renamed; not changes of file contents. Its own
/// thread waits for the system's notifications, so neither a flood of them nor a hung server blocks the
/// main thread; it makes no system calls while nothing changes.
///
/// - A missing folder is reported when it appears, a removed one when it vanishes and when it returns;
///   a folder also when a volume is mounted over it or unmounted.
/// - If the system runs out of watches, the remaining folders are polled every ten seconds, which is
///   logged. If no thread can be created, nothing is watched and creation is retried at the same
///   interval.
///
/// Main thread only; calls the listener there.
class DirectoryWatcher {
public:
    using Listener = std::function<void(const QStringList& changedDirectories)>;
    static constexpr std::chrono::seconds pollInterval{10};

    DirectoryWatcher(const Machine& machine, Listener listener,
                     std::unique_ptr<DirectoryEvents> events = makeDirectoryEvents());
    ~DirectoryWatcher();
    DirectoryWatcher(const DirectoryWatcher&) = delete;
    DirectoryWatcher& operator=(const DirectoryWatcher&) = delete;

    /// Replaces the set of watched folders (resolved paths). A new one that changed after `since` is
    /// reported, so nothing is missed between the caller's last scan and the start of the watch. `done`
    /// is called once the watches are active.
    void watch(const QStringList& directories, Instant since, std::function<void()> done = {});
    /// True while some folders are polled because the system is out of watches.
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
