#include "launcher/installed_applications.h"

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
    _cache = ScanCache(_knownVolumes.value());
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

struct InstalledApplications::Scanned {
    std::optional<Scan> scan;
    ScanCache cache;
    QStringList replacedBundles;
    Instant startedAt;
    quint64 holds = 0; ///< when it began
    quint64 replacements = 0;
    bool sawReplacing = false; ///< from the beginning
};

void InstalledApplications::look(std::function<void()> done) {
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
        if (_isKnown)
            look();
    });
    _replacing = held;
    return held;
}

void InstalledApplications::start() {
    _isScanning = true;
    _isScanWanted = false;
    _task = _machine.workers.run(
        [scanner = AppScanner(scanContext(_machine)), before = _cache, startedAt = _machine.clock.now(),
         holds = _holds, replacements = _replacements, isReplacing = !_replacing.expired(),
         &machine = _machine](std::stop_token stop) {
            Scanned result{.scan = {},
                           .cache = before,
                           .replacedBundles = {},
                           .startedAt = startedAt,
                           .holds = holds,
                           .replacements = replacements,
                           .sawReplacing = isReplacing || AppUpdateRunner::isLeftRunning(machine)};
            result.scan = scanner.scan(result.cache, stop);
            result.replacedBundles = result.cache.replacedBundles(before);
            return result;
        },
        [this](Scanned result) { finish(std::move(result)); });
}

void InstalledApplications::finish(Scanned result) {
    _isScanning = false;
    // What was seen while bundles were moved is of no use; nor is a scan that was stopped, on whose
    // account nothing may be dropped.
    const bool counts = result.scan && result.holds == _holds && !isHeld();
    if (counts) {
        _cache = std::move(result.cache);
        _scan = *std::move(result.scan);
        _scanStartedAt = result.startedAt;
        _replacedBundles = std::move(result.replacedBundles);
        _isKnown = true;
        _sawReplacing = result.sawReplacing || result.replacements != _replacements;
        index();
        scanned.notify();
        // After the merge: what is no longer known is no longer in doubt.
        _knownVolumes.set(_cache.knownVolumes());
    }
    if (isHeld())
        return; // its owner looks again
    if (_isScanWanted || !counts)
        return result.scan ? start() : void();
    for (const auto& done : std::exchange(_waiting, {}))
        done();
}

void InstalledApplications::index() {
    _byKey.clear();
    _byPath.clear();
    for (qsizetype i = _scan.apps.size() - 1; i >= 0; --i) { // of equal keys the first counts
        _byKey.insert(appKey(_scan.apps.at(i)), i);
        _byPath.insert(_scan.apps.at(i).path, i);
    }
}

// ---- look-ups

const AppEntry* InstalledApplications::withKey(const QString& key) const {
    const auto found = _byKey.constFind(key);
    return found == _byKey.constEnd() ? nullptr : &_scan.apps.at(*found);
}

const AppEntry* InstalledApplications::withPath(const QString& path) const {
    const auto found = _byPath.constFind(path);
    return found == _byPath.constEnd() ? nullptr : &_scan.apps.at(*found);
}

void InstalledApplications::forget(const QString& path) {
    _scan.apps.removeIf([&](const AppEntry& app) { return FileSystem::isWithin(app.path, path); });
    index();
}

LauncherError InstalledApplications::unknown(const QString& appKey) {
    return {QStringLiteral("unknownApplication"),
            QStringLiteral("No installed application is known by “%1”.").arg(appKey.left(200)),
            {}};
}

std::optional<LauncherError> InstalledApplications::protection(const AppEntry& app) {
    const auto isProtected = [](const QString& why) {
        return LauncherError{QStringLiteral("protectedApplication"), why, {}};
    };
    if (FileSystem::isWithin(app.path, QStringLiteral("/System")))
        return isProtected(
            QStringLiteral("“%1” belongs to macOS and cannot be removed.").arg(app.name));
    if (isNestedInAnotherApplication(app.path))
        return isProtected(
            QStringLiteral("“%1” is a part of another application and goes with it.").arg(app.name));
    if (app.bundleIdentifier == applicationIdentifier)
        return isProtected(QStringLiteral("Tessellar cannot remove itself."));
    return std::nullopt;
}

} // namespace tessellar
