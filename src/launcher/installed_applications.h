#pragma once

#include "discovery/app_scanner.h"
#include "launcher/launcher_error.h"
#include "model/kept_document.h"
#include "platform/machine.h"
#include "platform/signal.h"

#include <QHash>

#include <functional>
#include <memory>
#include <vector>

namespace tessellar {

/// What one scan found, with its look-ups. Not changed any more once it is shared; good for any thread.
struct InstalledScan {
    AppScanner::LibraryScan scan;
    QHash<QString, qsizetype> byKey; ///< into `scan.apps`; of equal keys the first counts
    QHash<QString, qsizetype> byPath;
    bool sawReplacing = false; ///< an updater was at work: what was not seen is not gone

    void index();
    /// The scan looked where the application would be, and it was not there.
    bool isGone(const QString& path) const { return !sawReplacing && scan.isGone(path); }
};

/// The applications that are installed, as the latest scan of the application folders found them.
///
/// One scan runs at a time, on a worker. A request while one runs leads to another after it, for what
/// changes during a scan may have escaped it. While the launcher itself moves bundles (`hold`), no scan
/// begins and one under way does not count; those who asked for one wait until the hold has ended.
///
/// Main thread only.
class InstalledApplications {
public:
    using Scan = AppScanner::LibraryScan;
    /// Destroying it ends the hold; what has changed meanwhile is for its owner to scan.
    using Hold = std::shared_ptr<void>;

    /// Works on a scan before it counts, and calls `done` on the main thread, in the turn in which
    /// `scanned` follows.
    using Preparation =
        std::function<void(const std::shared_ptr<const InstalledScan>&, std::function<void()> done)>;

    explicit InstalledApplications(Machine& machine);
    void setPreparation(Preparation prepare) { _prepare = std::move(prepare); }

    /// What a scan of this machine depends on; good for any thread.
    static ScanContext scanContext(const Machine& machine);

    /// Looks at the application folders. `done` is called after `scanned`, or after a scan that was
    /// stopped.
    void look(std::function<void()> done = {});
    [[nodiscard]] Hold hold();
    bool isHeld() const { return !_held.expired(); }
    /// While this is held, an updater that the launcher started replaces bundles: scans go on, but what
    /// they do not see is not gone; nor is it while one runs that an earlier launcher left. Destroying
    /// it looks again.
    [[nodiscard]] Hold replacing();
    /// True once a scan was completed.
    bool isKnown() const { return _isKnown; }

    const std::shared_ptr<const InstalledScan>& latest() const { return _latest; }
    const Scan& scan() const { return _latest->scan; }
    const QList<AppEntry>& all() const { return _latest->scan.apps; }
    /// Null where there is none.
    const AppEntry* withKey(const QString& appKey) const;
    const AppEntry* withPath(const QString& path) const;
    /// Just before the latest scan began to look.
    Instant scanStartedAt() const { return _scanStartedAt; }
    /// Bundles replaced or updated in place, between the latest scan and the one before.
    const QStringList& replacedBundles() const { return _replacedBundles; }

    /// The application at this path has gone, before a scan says so; so have those inside it.
    void forget(const QString& path);

    /// The user has set something: what the settings hold now is the user's word. Looks again where
    /// they name other folders.
    void settingsChanged();

    static LauncherError unknown(const QString& appKey);
    /// Why an application may not be removed; nothing where it may.
    static std::optional<LauncherError> protection(const AppEntry& app);

    /// A scan was completed and counts. Listeners are called in the order in which they connected: the
    /// layouts are merged before anybody else looks.
    Signal<> scanned;
    /// Applications are known by other keys now, because a second copy came or went: what is kept by
    /// key goes along.
    Signal<QHash<QString, QString>> keysChanged;

private:
    struct Scanned;
    void start();
    void finish(Scanned result);
    bool counts(const Scanned& result) const;
    void adopt(Scanned result);
    bool haveSettingsVanished() const;

    Machine& _machine;
    Preparation _prepare;
    std::shared_ptr<const InstalledScan> _latest = std::make_shared<const InstalledScan>();
    KeptDocument<KnownVolumes> _knownVolumes;
    ScanCache _cache;
    std::optional<AppDiscoverySettings> _lookedIn; ///< by the scan that began last
    Instant _scanStartedAt;
    QStringList _replacedBundles;
    bool _isKnown = false;
    bool _isScanning = false;
    bool _isScanWanted = false; ///< once more, after the one under way or the hold
    quint64 _holds = 0;         ///< so far: a scan that saw one begin or end does not count
    std::weak_ptr<void> _held;
    quint64 _replacements = 0; ///< so far
    std::weak_ptr<void> _replacing;
    std::vector<std::function<void()>> _waiting;
    Task _task;
};

} // namespace tessellar
