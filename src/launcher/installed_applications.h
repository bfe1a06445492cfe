#pragma once

#include "discovery/app_scanner.h"
#include "launcher/launcher_error.h"
#include "model/stored_document.h"
#include "platform/machine.h"
#include "platform/signal.h"

#include <QHash>

#include <functional>
#include <memory>
#include <vector>

namespace tessellar {

/// One scan's result, with look-up tables. Immutable once shared; any thread may use it.
struct InstalledScan {
    AppScanner::LibraryScan scan;
    QHash<QString, qsizetype> byKey; ///< into `scan.apps`; the first of equal keys
    QHash<QString, qsizetype> byPath;
    bool sawReplacing = false; ///< an updater was replacing bundles: nothing missing counts as gone

    void index();
    /// True if the scan looked where the application would be and did not find it.
    bool isGone(const QString& path) const { return !sawReplacing && scan.isGone(path); }
};

/// The installed applications, from the latest scan of the application folders.
///
/// One scan runs at a time, on a worker. A request during a scan leads to another one, which sees
/// changes the first may have missed. While the launcher itself moves bundles (`hold`), no scan starts
/// and a running one is discarded; requests wait for the end of the hold.
///
/// Main thread only.
class InstalledApplications {
public:
    using Scan = AppScanner::LibraryScan;
    /// Destroying it ends the hold; its owner must then request a scan of the changes.
    using Hold = std::shared_ptr<void>;

    /// Processes a scan before it is adopted and calls `done` on the main thread; `scanned` follows in
    /// the same event.
    using Preparation =
        std::function<void(const std::shared_ptr<const InstalledScan>&, std::function<void()> done)>;

    explicit InstalledApplications(Machine& machine);
    void setPreparation(Preparation prepare) { _prepare = std::move(prepare); }

    /// What a scan of this machine depends on. Thread-safe.
    static ScanContext scanContext(const Machine& machine);

    /// Scans the application folders. `done` is called after `scanned`, or after the scan was stopped.
    void rescan(std::function<void()> done = {});
    [[nodiscard]] Hold hold();
    bool isHeld() const { return !_held.expired(); }
    /// Hold this while an updater that the launcher started replaces bundles: scans continue, but
    /// nothing they miss counts as gone. The same applies while an updater left by an earlier launcher
    /// runs. Destroying it requests a scan.
    [[nodiscard]] Hold replacing();
    /// True once a scan has completed.
    bool hasScanned() const { return _hasScanned; }

    const std::shared_ptr<const InstalledScan>& latest() const { return _latest; }
    const Scan& scan() const { return _latest->scan; }
    const QList<AppEntry>& all() const { return _latest->scan.apps; }
    /// Null if there is none.
    const AppEntry* withKey(const QString& appKey) const;
    const AppEntry* withPath(const QString& path) const;
    /// Just before the latest scan started.
    Instant scanStartedAt() const { return _scanStartedAt; }
    /// Bundles replaced or updated in place between the last two scans.
    const QStringList& replacedBundles() const { return _replacedBundles; }

    /// Marks the application at this path, and any inside it, as gone ahead of the next scan.
    void forget(const QString& path);

    /// Call after the user changed settings: they are then trusted. Scans again if the search folders
    /// changed.
    void settingsChanged();

    static LauncherError unknown(const QString& appKey);
    /// Why an application may not be removed; nullopt if it may.
    static std::optional<LauncherError> protection(const AppEntry& app);

    /// A scan was adopted. Listeners are called in connection order, so layouts are merged first.
    Signal<> scanned;
    /// App keys changed because a second copy appeared or went away; data stored by key must follow.
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
    StoredDocument<KnownVolumes> _knownVolumes;
    ScanCache _cache;
    std::optional<AppDiscoverySettings> _scannedWith; ///< of the latest scan started
    Instant _scanStartedAt;
    QStringList _replacedBundles;
    bool _hasScanned = false;
    bool _isScanning = false;
    bool _isScanWanted = false; ///< another one, after the running one or the hold
    quint64 _holds = 0;         ///< number so far: a scan during which one began or ended is discarded
    std::weak_ptr<void> _held;
    quint64 _replacements = 0; ///< number so far
    std::weak_ptr<void> _replacing;
    std::vector<std::function<void()>> _waiting;
    Task _task;
};

} // namespace tessellar
