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
struct InstalledScan;

/// An event noticed in the application folders.
struct LibraryNotice {
    enum class Kind {
        watching,   ///< these folders are watched
        polling,    ///< these folders are only polled: out of watches
        changed,    ///< entries of these folders changed
        gone,       ///< applications disappeared, perhaps only for a moment
        added,      ///< applications added since the last scan
        removed,    ///< applications removed since the last scan
        replaced,   ///< bundles replaced or updated in place
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

/// Watches the installed applications from `start` on: changes trigger a scan, and missing applications
/// are marked at once. Main thread only.
class LibraryWatch {
public:
    LibraryWatch(Machine& machine, InstalledApplications& applications, LiveLayouts& layouts,
                 LauncherMessages& messages);
    ~LibraryWatch();

    /// Starts with the last scan, or the first one to come.
    void start(std::unique_ptr<DirectoryEvents> events = makeDirectoryEvents());
    bool isStarted() const { return _watcher != nullptr; }
    /// True while some folders are polled, because the system is out of watches.
    bool isPolling() const { return _isPolling; }
    /// The folders from the last scan; empty until the watches are active.
    const QStringList& watchedDirectories() const { return _watched; }

    Signal<LibraryNotice> noticed;
    Signal<> changed; ///< how the folders are watched has changed

private:
    void scanned();
    void watching();
    void notice(LibraryNotice::Kind kind, QStringList paths);

    Machine& _machine;
    InstalledApplications& _installed;
    LiveLayouts& _layouts;
    LauncherMessages& _messages;
    std::shared_ptr<const InstalledScan> _former; ///< none before the first scan
    QSet<QString> _incomplete;
    QStringList _watched;
    bool _isPolling = false;
    Subscription _subscription;
    std::unique_ptr<LibraryWatcher> _watcher; // last, because it calls back
};

} // namespace tessellar
