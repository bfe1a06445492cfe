#include "discovery/scan_coverage.h"

#include <algorithm>
#include <map>

namespace tessellar {

namespace {

using Coverage = AppScanner::Coverage;

/// The scanned volume that contains a path.
const MountedVolume* volumeOf(const Coverage& coverage, const QString& path) {
    const MountedVolume* result = nullptr;
    for (const MountedVolume& volume : coverage.volumes)
        if ((!result || volume.root.size() > result->root.size()) &&
            FileSystem::isWithin(path, volume.root))
            result = &volume;
    return result;
}

const KnownVolume* knownVolumeOf(const Coverage& coverage, const QString& path) {
    for (const KnownVolume& volume : coverage.known.volumes)
        if (std::ranges::binary_search(volume.applications, path))
            return &volume;
    return nullptr;
}

/// True if the scan saw the volume on which the application at `path` was last seen, or would have
/// been.
bool isSameVolume(const Coverage& coverage, const QString& path) {
    const MountedVolume* mounted = volumeOf(coverage, path);
    const auto mountPoint = volumeMountPoint(path);
    if (!mounted || (mountPoint && *mountPoint != mounted->root))
        return false;
    const auto isSeen = [&](const QString& application) {
        return coverage.applications.contains(application);
    };
    if (const KnownVolume* known = knownVolumeOf(coverage, path)) {
        if (known->root != mounted->root)
            return false;
        // The startup disk may be a copy of the previous one. It is recognized by its applications.
        return known->identity == mounted->identity ||
               (!mountPoint && std::ranges::any_of(known->applications, isSeen));
    }
    // The application was never seen there. A bare mount point has no applications, now or before.
    return !mountPoint || std::ranges::any_of(coverage.known.volumes, [&](const KnownVolume& known) {
        return known.root == mounted->root && known.identity == mounted->identity;
    }) || std::ranges::any_of(coverage.applications, [&](const QString& application) {
        return FileSystem::isWithin(application, mounted->root);
    });
}

/// True if the scan covered the path and found nothing there.
bool wasSearchedAndNotFound(const AppScanner::LibraryScan& scan, const QString& path) {
    const Coverage& coverage = scan.coverage;
    if (coverage.bundles.contains(path))
        return true; // not an application: those are in the list
    QString below = path;
    for (QString at = FileSystem::parent(path);; below = at, at = FileSystem::parent(at)) {
        if (coverage.absent.contains(at))
            return true;
        if (const auto bundle = coverage.bundles.constFind(at); bundle != coverage.bundles.constEnd()) {
            // Nested applications were not scanned below the depth limit.
            const QString inside = FileSystem::joined(at, QStringLiteral("Contents/Applications"));
            if (FileSystem::isWithin(path, inside))
                return !*bundle;
            break; // reached through a link
        }
        if (const auto depth = coverage.folders.constFind(at); depth != coverage.folders.constEnd())
            return below == path || *depth < coverage.scanDepth;
        if (at == u"/" || at.isEmpty())
            break;
    }
    // Nothing that was scanned leads there.
    return coverage.isCertain &&
           std::ranges::all_of(scan.unreadableDirectories, [](const auto& directory) {
               return directory.reason == AppScanner::UnreadableDirectory::Reason::absent;
           });
}

} // namespace

AppScanner::Presence AppScanner::LibraryScan::presence(const QString& path) const {
    if (coverage.applications.contains(path))
        return Presence::present;
    for (const UnreadableDirectory& directory : unreadableDirectories)
        if (directory.reason != UnreadableDirectory::Reason::absent &&
            FileSystem::isWithin(path, directory.path))
            return Presence::unknown;
    for (const IncompleteBundle& bundle : incompleteBundles)
        if (FileSystem::isWithin(path, bundle.path))
            return Presence::unknown;
    return wasSearchedAndNotFound(*this, path) && isSameVolume(coverage, path) ? Presence::gone
                                                                               : Presence::unknown;
}

KnownVolumes updatedKnownVolumes(const Coverage& coverage,
                                 const std::function<bool(const QString&)>& isGone) {
    std::map<std::pair<QString, QString>, QStringList> applications;
    qsizetype count = 0;
    const auto add = [&](const QString& root, const QString& identity, const QString& path) {
        if (count++ < KnownVolumes::maximumApplications)
            applications[{root, identity}].append(path);
    };
    for (const QString& path : coverage.applications)
        if (const MountedVolume* volume = volumeOf(coverage, path))
            add(volume->root, volume->identity, path);
    for (const KnownVolume& volume : coverage.known.volumes)
        for (const QString& path : volume.applications)
            if (!coverage.applications.contains(path) && !isGone(path))
                add(volume.root, volume.identity, path);

    KnownVolumes result;
    for (auto& [volume, paths] : applications) {
        if (result.volumes.size() == KnownVolumes::maximumVolumes)
            break;
        std::ranges::sort(paths);
        paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
        result.volumes.append({volume.first, volume.second, paths});
    }
    return result;
}

} // namespace tessellar
