#include "discovery/library_walk.h"

#include "discovery/scan_coverage.h"

#include "platform/for_each_index.h"

#include <algorithm>

namespace tessellar {

namespace {

/// The number of unreadable places that are listed individually.
constexpr qsizetype maximumUnreadable = 1'000;
/// Folders listed before their entries are checked against the limit.
constexpr qsizetype listingBatch = 64;
/// The smallest batch that is worth another thread.
constexpr qsizetype smallestShare = 8;

} // namespace

LibraryWalk::LibraryWalk(const ScanContext& context, ScanCache& cache, std::stop_token stop)
    : _context(context)
    , _cache(cache)
    , _stop(std::move(stop))
    , _reliableDevices(reliableDevices(context.files, context.home)) {
    _next.languages = context.languages;
    _next.locale = context.locale.identifier();
    _next.settings = context.settings;
    _next.limits = context.limits;
    _next.places = AppSourcePlaces::read(context.files, context.home);
}

std::optional<AppScanner::LibraryScan> LibraryWalk::run() {
    const bool isRefreshed = _cache.languages == _next.languages && _cache.locale == _next.locale;
    bool isUnchanged = isRefreshed && _cache.searchPaths && _cache.settings == _next.settings &&
                       _cache.limits == _next.limits && _cache.places == _next.places;
    if (isRefreshed && !refresh())
        isUnchanged = false;
    _next.searchPaths = std::make_shared<const ScanListing>(listSearchPaths(_context));
    if (_stop.stop_requested())
        return std::nullopt;

    if (isUnchanged && _next.searchPaths->sameFindings(*_cache.searchPaths)) {
        _next.result = _cache.result;
        _next.work.reusedResult = true;
    } else if (walk()) {
        finish();
    } else {
        return std::nullopt;
    }
    recordVolumes();
    _cache = std::move(_next);
    return _cache.result;
}

/// Observes again everything in the cache and rereads what changed. True if no change could lead the
/// scan elsewhere.
bool LibraryWalk::refresh() {
    const qsizetype listings = _cache.listings.size();
    const qsizetype bundles = _cache.bundles.size();
    std::vector<Listing> listed(static_cast<std::size_t>(listings));
    std::vector<Record> read(static_cast<std::size_t>(bundles));
    std::atomic<bool> isUnchanged{true};
    std::atomic<qsizetype> checked{0};
    std::atomic<qsizetype> relisted{0};
    std::atomic<qsizetype> reread{0};

    forEachIndex(listings + bundles, _context.threads, smallestShare, [&](qsizetype i) {
        if (_stop.stop_requested())
            return;
        if (i < listings) {
            Listing& listing = listed[static_cast<std::size_t>(i)];
            listing = _cache.listings.at(i);
            checked.fetch_add(listing->evidence.observations.size(), std::memory_order_relaxed);
            if (listing->evidence.holds(_context.files))
                return;
            relisted.fetch_add(1, std::memory_order_relaxed);
            auto anew = std::make_shared<const ScanListing>(
                listDirectory(_context, _reliableDevices, listing->path));
            if (!anew->sameFindings(*listing))
                isUnchanged = false;
            listing = std::move(anew);
        } else {
            Record& record = read[static_cast<std::size_t>(i - listings)];
            record = _cache.bundles.at(i - listings);
            checked.fetch_add(record->evidence.observations.size(), std::memory_order_relaxed);
            if (record->evidence.holds(_context.files))
                return;
            reread.fetch_add(1, std::memory_order_relaxed);
            auto anew = std::make_shared<const BundleRecord>(readBundleRecord(_context, record->path));
            if (!anew->sameFindings(*record))
                isUnchanged = false;
            record = std::move(anew);
        }
    });
    _next.listings = QList<Listing>(listed.begin(), listed.end());
    _next.bundles = QList<Record>(read.begin(), read.end());
    _next.work = {checked, relisted, reread, false};
    return isUnchanged;
}

/// False if a stop was requested.
bool LibraryWalk::walk() {
    for (const Listing& listing : std::as_const(_next.listings)) {
        if (_stop.stop_requested())
            return false;
        _knownListings.insert(listing->path, listing);
    }
    for (const Record& record : std::as_const(_next.bundles))
        _knownRecords.insert(record->path, record);
    _next.listings.clear();
    _next.bundles.clear();

    const int deepest = _context.settings.scanDepth;
    _pending.resize(static_cast<std::size_t>(deepest) + 1);
    for (const auto& directory : std::as_const(_next.searchPaths->unreadable))
        addUnreadable(directory);
    for (const auto& candidate : std::as_const(_next.searchPaths->candidates))
        enqueue(candidate, 0);
    for (int depth = 0; depth <= deepest; ++depth)
        if (!listLevel(depth) || !readBundles())
            return false;
    return true;
}

/// Lists the folders of one depth, in order.
bool LibraryWalk::listLevel(int depth) {
    const QList<PendingDirectory> level = std::exchange(_pending[static_cast<std::size_t>(depth)], {});
    for (qsizetype begin = 0; begin < level.size() && !_isOverLimit; begin += listingBatch) {
        const qsizetype count = std::min(listingBatch, level.size() - begin);
        std::vector<Listing> batch(static_cast<std::size_t>(count));
        forEachIndex(count, _context.threads, smallestShare, [&](qsizetype i) {
            const QString& path = level.at(begin + i).path;
            Listing listing = _knownListings.value(path);
            if (!listing && !_stop.stop_requested())
                listing = std::make_shared<const ScanListing>(
                    listDirectory(_context, _reliableDevices, path));
            batch[static_cast<std::size_t>(i)] = std::move(listing);
        });
        if (_stop.stop_requested())
            return false;
        for (const Listing& listing : batch)
            addListing(listing, depth);
    }
    return true;
}

void LibraryWalk::addListing(const Listing& listing, int depth) {
    if (_isOverLimit)
        return;
    if (!_knownListings.contains(listing->path))
        ++_next.work.directoriesListed;
    if (seenBefore(listing->evidence))
        return;
    _entryCount += listing->entryCount;
    if (_next.listings.size() >= _context.limits.directories || _entryCount > _context.limits.entries) {
        stopAtLimit();
        return;
    }
    _next.listings.append(listing);
    for (const auto& directory : std::as_const(listing->unreadable))
        addUnreadable(directory);
    if (!listing->listed)
        return;
    _next.result.coverage.folders.insert(listing->path, depth);
    _next.result.watchableDirectories.append(listing->path);
    _foundPaths.reserve(_foundPaths.size() + listing->candidates.size());
    for (const auto& candidate : std::as_const(listing->candidates))
        enqueue(candidate, depth + 1);
}

/// Queues a candidate found at `depth`.
void LibraryWalk::enqueue(const AppScanner::TraversalCandidate& candidate, int depth) {
    if (!candidate.isDirectory)
        return;
    if (!candidate.isApplication() && depth > _context.settings.scanDepth)
        return;
    const qsizetype known = _foundPaths.size();
    _foundPaths.insert(candidate.path);
    if (_foundPaths.size() == known)
        return;
    if (candidate.isApplication())
        _pendingBundles.append({candidate.path, depth});
    else
        _pending[static_cast<std::size_t>(depth)].append({candidate.path, depth});
}

bool LibraryWalk::readBundles() {
    QList<PendingBundle> bundles = std::exchange(_pendingBundles, {});
    if (_bundleCount + bundles.size() > _context.limits.bundles) {
        stopAtLimit();
        bundles.resize(_context.limits.bundles - _bundleCount);
    }
    _bundleCount += bundles.size();

    std::vector<Record> records(static_cast<std::size_t>(bundles.size()));
    forEachIndex(bundles.size(), _context.threads, smallestShare, [&](qsizetype i) {
        const QString& path = bundles.at(i).path;
        Record record = _knownRecords.value(path);
        if (!record && !_stop.stop_requested())
            record = std::make_shared<const BundleRecord>(readBundleRecord(_context, path));
        records[static_cast<std::size_t>(i)] = std::move(record);
    });
    if (_stop.stop_requested())
        return false;
    _seenFiles.reserve(_seenFiles.size() + bundles.size());
    _next.result.coverage.bundles.reserve(_bundleCount);
    for (qsizetype i = 0; i < bundles.size(); ++i)
        addRecord(records[static_cast<std::size_t>(i)], bundles.at(i).depth);
    return true;
}

void LibraryWalk::addRecord(const Record& record, int depth) {
    if (!_knownRecords.contains(record->path))
        ++_next.work.bundlesRead;
    if (seenBefore(record->evidence))
        return;
    _next.bundles.append(record);
    // It was listed a moment ago: it is being replaced.
    if (record->state == AppScanner::InstallState::unseen ||
        !record->evidence.observations.first().found())
        return addUnreadable({record->path, Reason::unreadable});
    _next.result.coverage.bundles.insert(record->path, record->holdsApplications);
    if (record->isPartlyUnseen)
        addUnreadable({record->path + QStringLiteral("/Contents/Applications"), Reason::unreadable});
    if (record->holdsApplications)
        enqueue({record->path + QStringLiteral("/Contents/Applications"), true, false}, depth + 2);
    if (record->isLaunchProhibited)
        return;
    if (record->state == AppScanner::InstallState::ready)
        _ready.append(record);
    else if (record->state == AppScanner::InstallState::incomplete)
        _next.result.incompleteBundles.append({record->path, record->fileIdentifier()});
}

/// True for a folder that has been visited by another path.
bool LibraryWalk::seenBefore(const ScanEvidence& evidence) {
    const ScanObservation& self = evidence.observations.first();
    if (!self.found())
        return false;
    const qsizetype known = _seenFiles.size();
    _seenFiles.insert({self.status.device, self.status.inode});
    return _seenFiles.size() == known;
}

void LibraryWalk::addUnreadable(const AppScanner::UnreadableDirectory& directory) {
    if (directory.reason == Reason::absent)
        _next.result.coverage.absent.insert(directory.path);
    auto& all = _next.result.unreadableDirectories;
    if (all.size() < maximumUnreadable && !all.contains(directory))
        all.append(directory);
    else if (all.size() >= maximumUnreadable)
        markUncertain();
}

void LibraryWalk::stopAtLimit() {
    _isOverLimit = true;
    markUncertain();
}

/// Marks the scan as incomplete everywhere: what was not found may be anywhere.
void LibraryWalk::markUncertain() {
    const AppScanner::UnreadableDirectory everything{QStringLiteral("/"), Reason::limit};
    if (!_next.result.unreadableDirectories.contains(everything))
        _next.result.unreadableDirectories.append(everything);
}

/// Builds the entries of the applications found.
void LibraryWalk::finish() {
    std::ranges::sort(_ready, [](const Record& a, const Record& b) {
        const int byName = a->nameSortKey.compare(b->nameSortKey);
        return byName != 0 ? byName < 0 : a->path < b->path;
    });
    QHash<QString, int> declarations;
    declarations.reserve(_ready.size());
    for (const Record& record : std::as_const(_ready))
        if (record->bundleIdentifier)
            ++declarations[*record->bundleIdentifier];
    QHash<QString, QUuid> identities;
    for (const AppEntry& entry : std::as_const(_cache.result.apps))
        identities.insert(entry.path, entry.id);

    AppScanner::LibraryScan& result = _next.result;
    result.apps.reserve(_ready.size());
    result.coverage.applications.reserve(_ready.size());
    for (const Record& record : std::as_const(_ready)) {
        const auto known = identities.constFind(record->path);
        AppEntry entry;
        entry.id = known != identities.constEnd() ? *known : _context.uuids.next();
        entry.bundleIdentifier = record->bundleIdentifier;
        entry.name = record->name;
        entry.originalName = record->name;
        entry.path = record->path;
        entry.source = _next.places.sourceOf(record->path);
        entry.category = record->category;
        entry.isDuplicateBundleIdentifier =
            record->bundleIdentifier && declarations.value(*record->bundleIdentifier) > 1;
        result.apps.append(std::move(entry));
        result.coverage.applications.insert(record->path);
    }
    result.coverage.scanDepth = _context.settings.scanDepth;
    result.coverage.isCertain = _context.settings.isCertain;
}

/// Records which volumes were scanned. Only the topmost folders cost a system call: the devices of all
/// others are known.
void LibraryWalk::recordVolumes() {
    VolumeFinder finder(_context.files);
    for (const Listing& listing : std::as_const(_next.listings))
        if (listing->listed)
            finder.knowDevice(listing->path, listing->evidence.observations.first().status.device);
    AppScanner::Coverage& coverage = _next.result.coverage;
    QStringList roots{QStringLiteral("/")};
    const auto add = [&](const QString& root) {
        if (!roots.contains(root))
            roots.append(root);
    };
    for (const Listing& listing : std::as_const(_next.listings))
        if (listing->listed)
            add(finder.rootOf(listing->path));
    for (const QString& path : std::as_const(coverage.absent))
        add(finder.rootOf(path));
    for (const KnownVolume& volume : _cache.knownVolumes.volumes)
        add(volume.root);
    coverage.known = _cache.knownVolumes;
    coverage.volumes.clear();
    roots.sort();
    for (const QString& root : std::as_const(roots))
        if (const auto identity = finder.identityOf(root))
            coverage.volumes.append({root, *identity});
    if (_next.work.reusedResult && coverage.volumes == _cache.result.coverage.volumes &&
        coverage.known == _cache.result.coverage.known) {
        _next.knownVolumes = _cache.knownVolumes;
        return;
    }
    _next.knownVolumes =
        updatedKnownVolumes(coverage, [&](const QString& path) { return _next.result.isGone(path); });
}

} // namespace tessellar
