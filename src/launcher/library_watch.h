#pragma once

#include "discovery/library_watcher.h"
#include "model/json.h"
#include "platform/signal.h"

#include <memory>
#include <optional>

namespace tessellar {

class InstalledApplications;
class LauncherMessages;
class LiveLayouts;

/// Something that the watch of the application folders noticed.
struct LibraryNotice {
    enum class Kind {
        watching,   ///< these folders are watched
        polling,    ///< some of them only by looking at them every ten seconds
        changed,    ///< in these folders something came or went
        gone,       ///< applications that were there a moment ago; perhaps only for a moment
        added,      ///< applications that a scan found
        removed,    ///< applications that a scan no longer found
        replaced,   ///< applications replaced or updated in place
        incomplete, ///< bundles that cannot be used yet
    };
    Kind kind = Kind::watching;
    QStringList paths; ///< sorted

    bool operator==(const LibraryNotice&) const = default;
};

template <>
struct json::RawValues<LibraryNotice::Kind> {
    using Kind = LibraryNotice::Kind;
    static constexpr std::array values{
        std::pair{Kind::watching, "watching"}, std::pair{Kind::polling, "polling"},
        std::pair{Kind::changed, "changed"},   std::pair{Kind::gone, "gone"},
        std::pair{Kind::added, "added"},       std::pair{Kind::removed, "removed"},
        std::pair{Kind::replaced, "replaced"}, std::pair{Kind::incomplete, "incomplete"}};
};
template <>
struct json::Fields<LibraryNotice> {
    static constexpr auto list =
        fields(required("event", &LibraryNotice::kind), required("paths", &LibraryNotice::paths));
};

/// Follows what happens to the installed applications, from `start` on: what comes and goes leads to a
/// scan, and an application that is gone is marked at once. Main thread only.
class LibraryWatch {
public:
    LibraryWatch(Machine& machine, InstalledApplications& applications, LiveLayouts& layouts,
                 LauncherMessages& messages);
    ~LibraryWatch();

    /// Begins with the last scan, or the first one that is to come.
    void start(std::unique_ptr<DirectoryEvents> events = makeDirectoryEvents());
    bool isStarted() const { return _watcher != nullptr; }
    /// True while some folders are polled, because the system has no more watches to give.
    bool isPolling() const { return _isPolling; }
    /// The folders that the last scan gave to watch; empty until the watches stand.
    const QStringList& watchedDirectories() const { return _watched; }

    Signal<LibraryNotice> noticed;
    Signal<> changed; ///< how the folders are watched

private:
    void scanned();
    void watching();
    void notice(LibraryNotice::Kind kind, QStringList paths);

    Machine& _machine;
    InstalledApplications& _installed;
    LiveLayouts& _layouts;
    LauncherMessages& _messages;
    QSet<QString> _applications; ///< of the scan before
    QSet<QString> _incomplete;
    QStringList _watched;
    bool _isPolling = false;
    bool _hasScan = false;
    Subscription _subscription;
    std::unique_ptr<LibraryWatcher> _watcher; // last: it calls back
};

} // namespace tessellar
