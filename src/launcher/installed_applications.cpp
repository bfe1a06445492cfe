#include "launcher/installed_applications.h"

#include "platform/texts.h"
#include "updates/app_update_runner.h"

#include <algorithm>

namespace tessellar {

static constexpr std::uint64_t maximumKnownVolumesBytes = 16u << 20;

InstalledApplications::InstalledApplications(Machine& machine)
    : _machine(machine)
    , _knownVolumes(machine,
                    FileSystem::joined(machine.places.applicationFolder(), KnownVolumes::fileName),
                    maximumKnownVolumesBytes) {
    _knownVolumes.load();
    _cache.knownVolumes = _knownVolumes.value();
}

ScanContext InstalledApplications::scanContext(const Machine& machine) {
    return {.files = machine.files,
            .settings = AppDiscoverySettings::read(machine.settings, machine.places.home),
            .home = machine.places.home,
            .languages = machine.locale.languages(),
            .locale = machine.locale,
            .uuids = machine.uuids,
            .now = machine.clock.now()};
}

// ---- scans

void InstalledScan::index() {
    byKey.clear();
    byPath.clear();
    for (qsizetype i = scan.apps.size() - 1; i >= 0; --i) {
        byKey.insert(appKey(scan.apps.at(i)), i);
        byPath.insert(scan.apps.at(i).path, i);
    }
}

struct InstalledApplications::Scanned {
    std::shared_ptr<InstalledScan> found; ///< null if it was cancelled
    ScanCache cache;
    QStringList replacedBundles;
    Instant startedAt;
    quint64 holds = 0; ///< their number when it began
    quint64 replacements = 0;
};

void InstalledApplications::rescan(std::function<void()> done) {
    if (done)
        _waiting.push_back(std::move(done));
    if (_isScanning || isHeld())
        _isScanWanted = true;
    else
        start();
}

InstalledApplications::Hold InstalledApplications::hold() {
    ++_holds;
    if (auto held = _held.lock())
        return held;
    const Hold held(static_cast<void*>(this), [](void*) {});
    _held = held;
    return held;
}

InstalledApplications::Hold InstalledApplications::replacing() {
    ++_replacements;
    if (auto held = _replacing.lock())
        return held;
    const Hold held(static_cast<void*>(this), [this](void*) {
        if (_hasScanned)
            rescan();
    });
    _replacing = held;
    return held;
}

void InstalledApplications::start() {
    _isScanning = true;
    _isScanWanted = false;
    ScanContext context = scanContext(_machine);
    if (haveSettingsVanished())
        context.settings.isCertain = false;
    _scannedWith = context.settings;
    _task = _machine.workers.run(
        [scanner = AppScanner(std::move(context)), before = _cache, startedAt = _machine.clock.now(),
         holds = _holds, replacements = _replacements, isReplacing = !_replacing.expired(),
         &machine = _machine](std::stop_token stop) {
            Scanned result{.found = {},
                           .cache = before,
                           .replacedBundles = {},
                           .startedAt = startedAt,
                           .holds = holds,
                           .replacements = replacements};
            const bool sawReplacing = isReplacing || AppUpdateRunner::isInterruptedRunActive(machine);
            if (auto scan = scanner.scan(result.cache, stop)) {
                result.found = std::make_shared<InstalledScan>();
                result.found->scan = *std::move(scan);
                result.found->sawReplacing = sawReplacing;
                result.found->index();
            }
            result.replacedBundles = result.cache.replacedBundles(before);
            return result;
        },
        [this](Scanned result) { finish(std::move(result)); });
}

/// A scan does not count if bundles were moved during it, or if it was cancelled: it must not drop any
/// application.
bool InstalledApplications::counts(const Scanned& result) const {
    return result.found && result.holds == _holds && !isHeld();
}

void InstalledApplications::finish(Scanned result) {
    if (!counts(result))
        return adopt(std::move(result));
    if (std::exchange(result.replacements, _replacements) != _replacements)
        result.found->sawReplacing = true;
    if (!_prepare)
        return adopt(std::move(result));
    _prepare(result.found, [this, result] { adopt(result); });
}

void InstalledApplications::adopt(Scanned result) {
    _isScanning = false;
    const bool isUsed = counts(result) && result.replacements == _replacements;
    if (isUsed) {
        // The previous scan's records are freed on a worker, because that takes milliseconds.
        _machine.workers.submit(
            Lane::computing, {},
            [former = std::exchange(_cache, std::move(result.cache))](std::stop_token) {});
        _latest = result.found;
        _scanStartedAt = result.startedAt;
        _replacedBundles = std::move(result.replacedBundles);
        _hasScanned = true;
        scanned.notify();
        // After the merge, which still needs the old volumes.
        KnownVolumes known = _cache.knownVolumes;
        known.hasSearchSettings =
            haveSettingsVanished() || AppDiscoverySettings::areIn(_machine.settings);
        _knownVolumes.set(std::move(known));
    }
    if (isHeld())
        return; // whoever holds scans will rescan
    if (_isScanWanted || !isUsed)
        return result.found ? start() : void();
    for (const auto& done : std::exchange(_waiting, {}))
        done();
}

/// A lost settings file looks like one that never existed, and one that could not be read starts anew
/// with the next setting. If search settings were stored once, their absence is not the user's choice.
bool InstalledApplications::haveSettingsVanished() const {
    return _knownVolumes.value().hasSearchSettings && !AppDiscoverySettings::areIn(_machine.settings);
}

void InstalledApplications::settingsChanged() {
    KnownVolumes known = _knownVolumes.value();
    const bool wasCertain = !_scannedWith || _scannedWith->isCertain;
    known.hasSearchSettings =
        AppDiscoverySettings::areIn(_machine.settings) || (known.hasSearchSettings && !wasCertain);
    _knownVolumes.set(std::move(known));
    if (_scannedWith &&
        *_scannedWith != AppDiscoverySettings::read(_machine.settings, _machine.places.home))
        rescan();
}

// ---- lookup

const AppEntry* InstalledApplications::withKey(const QString& key) const {
    const auto found = _latest->byKey.constFind(key);
    return found == _latest->byKey.constEnd() ? nullptr : &all().at(*found);
}

const AppEntry* InstalledApplications::withPath(const QString& path) const {
    const auto found = _latest->byPath.constFind(path);
    return found == _latest->byPath.constEnd() ? nullptr : &all().at(*found);
}

void InstalledApplications::forget(const QString& path) {
    auto without = std::make_shared<InstalledScan>(*_latest);
    without->scan.apps.removeIf(
        [&](const AppEntry& app) { return FileSystem::isWithin(app.path, path); });
    without->index();
    _latest = std::move(without);
}

LauncherError InstalledApplications::unknown(const QString& appKey) {
    return {QStringLiteral("unknownApplication"),
            Texts::tr("No installed application is known by “%1”.").arg(appKey.left(200)),
            {}};
}

std::optional<LauncherError> InstalledApplications::protection(const AppEntry& app) {
    const auto isProtected = [](const QString& why) {
        return LauncherError{QStringLiteral("protectedApplication"), why, {}};
    };
    if (FileSystem::isWithin(app.path, QStringLiteral("/System")))
        return isProtected(Texts::tr("“%1” belongs to macOS and cannot be removed.").arg(app.name));
    if (isNestedInAnotherApplication(app.path))
        return isProtected(
            Texts::tr("“%1” is a part of another application and goes with it.").arg(app.name));
    if (app.bundleIdentifier == applicationIdentifier)
        return isProtected(Texts::tr("Tessellar cannot remove itself."));
    return std::nullopt;
}

} // namespace tessellar
