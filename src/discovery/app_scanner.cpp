#include "discovery/app_scanner.h"

#include "discovery/library_walk.h"

namespace tessellar {

AppScanner::AppScanner(ScanContext context) : _context(std::move(context)) {}

std::optional<AppScanner::LibraryScan> AppScanner::scan(ScanCache& cache, std::stop_token stop) const {
    return LibraryWalk(_context, cache, std::move(stop)).run();
}

bool AppScanner::LibraryScan::isOutOfReach(const QString& path) const {
    for (const UnreadableDirectory& directory : unreadableDirectories)
        if (directory.reason != UnreadableDirectory::Reason::absent &&
            FileSystem::isWithin(path, directory.path))
            return true;
    for (const IncompleteBundle& bundle : incompleteBundles)
        if (FileSystem::isWithin(path, bundle.path))
            return true;
    return false;
}

QStringList ScanCache::observedPaths() const {
    QStringList result;
    const auto add = [&](const ScanEvidence& evidence) {
        for (const ScanObservation& observation : evidence.observations)
            result.append(observation.path);
    };
    for (const auto& listing : _listings)
        add(listing->evidence);
    for (const auto& bundle : _bundles)
        add(bundle->evidence);
    return result;
}

} // namespace tessellar
