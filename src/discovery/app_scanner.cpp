#include "discovery/app_scanner.h"

#include "discovery/library_walk.h"

#include <QHash>

#include <algorithm>

namespace tessellar {

AppScanner::AppScanner(ScanContext context) : _context(std::move(context)) {}

std::optional<AppScanner::LibraryScan> AppScanner::scan(ScanCache& cache, std::stop_token stop) const {
    return LibraryWalk(_context, cache, std::move(stop)).run();
}

QStringList ScanCache::observedPaths() const {
    QStringList paths;
    const auto add = [&](const ScanEvidence& evidence) {
        for (const ScanObservation& observation : evidence.observations)
            paths.append(observation.path);
    };
    for (const auto& listing : listings)
        add(listing->evidence);
    for (const auto& bundle : bundles)
        add(bundle->evidence);
    return paths;
}

QStringList ScanCache::replacedBundles(const ScanCache& before) const {
    QStringList paths;
    if (work.bundlesRead == 0 || before.bundles.isEmpty())
        return paths;
    QHash<QString, const BundleRecord*> known;
    known.reserve(before.bundles.size());
    for (const auto& bundle : before.bundles)
        known.insert(bundle->path, bundle.get());
    for (const auto& bundle : bundles) {
        const BundleRecord* old = known.value(bundle->path);
        // A new record may be equal: what had only just changed is read a second time.
        if (old && old != bundle.get() &&
            !std::ranges::equal(old->evidence.observations, bundle->evidence.observations, {},
                                &ScanObservation::status, &ScanObservation::status))
            paths.append(bundle->path);
    }
    return paths;
}

} // namespace tessellar
