#pragma once

#include "discovery/app_discovery_settings.h"
#include "discovery/app_source_places.h"
#include "discovery/known_volumes.h"
#include "model/items.h"
#include "platform/bundle.h"
#include "platform/text.h"
#include "platform/uuid_source.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>

namespace tessellar {

struct BundleRecord;
class ScanCache;
struct ScanListing;

/// How much one scan looks at. What lies beyond is missing from the result, never an error; a real Mac
/// comes nowhere near.
struct ScanLimits {
    qsizetype directories = 20'000;
    qsizetype bundles = 20'000;
    qsizetype entries = 1'000'000;
    qsizetype entriesPerDirectory = 200'000;

    bool operator==(const ScanLimits&) const = default;
};

/// All that a scan depends on besides the disk.
struct ScanContext {
    const FileSystem& files;
    AppDiscoverySettings settings;
    QString home;
    QStringList languages; ///< in order of preference, for the names of bundles
    Locale locale;         ///< for the order of the result
    UuidSource& uuids;
    Instant now; ///< the start of the scan: what was changed shortly before it is not yet relied upon
    ScanLimits limits = {};
    unsigned threads = 2;
};

/// Finds the installed applications.
///
/// A scan is a function of its context and the disk. It runs on whatever thread calls it, with helpers
/// of its own, and blocks until it is done. Two scans of an unchanged machine give the same result in
/// the same order, identifiers aside; with the cache of the first, the second gives those too.
///
/// - Folders are visited breadth first through all search paths at once: nothing that lies deep below
///   one can use up the limits before another was looked at. Within a depth the order is that of the
///   search paths and, in a folder, that of the names' bytes.
/// - Aliases and links are followed; a folder or bundle is identified by its resolved path and by its
///   device and inode, and seen once, at the least depth.
/// - Names that begin with "." are hidden from people and from the scan; names that are not UTF-8
///   cannot be kept in an arrangement and are left out.
/// - A bundle is not entered, except that its "Contents/Applications" counts as a folder, two levels
///   below the bundle: people know what lies there as tools of their own. A link or an alias may
///   lead anywhere, into bundles too: someone put it there to be found.
/// - Applications without a Dock icon or window of their own are applications like any other.
class AppScanner {
public:
    /// What lies at a bundle's path.
    enum class InstallState {
        missing,    ///< no folder there
        unseen,     ///< whatever is there could not be looked at
        incomplete, ///< being copied, or damaged: no readable Info.plist, or no executable
        ready,
    };

    /// A bundle that exists but cannot be used yet.
    struct IncompleteBundle {
        QString path;
        std::optional<std::int64_t> fileIdentifier; ///< the inode: tells whether it was replaced

        bool operator==(const IncompleteBundle&) const = default;
    };

    /// A folder and its depth below its search path: visited, or still to visit.
    struct ScannedDirectory {
        QString path;
        int depth = 0;
    };
    using PendingDirectory = ScannedDirectory;

    /// One entry of a folder, aliases and links resolved. Of files only their absence of use is known.
    struct TraversalCandidate {
        QString path;
        bool isDirectory = false;
        bool isPackage =
            false; ///< a folder shown as one thing; applications are the only kind that counts

        bool isApplication() const { return isDirectory && isPackage; }
        bool operator==(const TraversalCandidate&) const = default;
    };

    /// What an iPhone's application declares in its wrapper.
    struct WrappedIOSAppMetadata {
        std::optional<QString> bundleIdentifier;
        std::optional<QString> name;
        std::optional<QString> category;
        std::optional<QString> sourceApp;

        bool operator==(const WrappedIOSAppMetadata&) const = default;
    };

    /// A folder that the scan did not see the inside of.
    struct UnreadableDirectory {
        enum class Reason {
            absent,           ///< a search path at which there is nothing: nothing is missed
            volumeNotMounted, ///< `path` is the mount point, such as "/Volumes/Work"
            unreadable,
            limit, ///< `path` is what was cut short, "/" when that may be anything
        };
        QString path;
        Reason reason = Reason::unreadable;

        bool operator==(const UnreadableDirectory&) const = default;
    };

    /// Whether an application lies at a path, as far as a scan can tell.
    enum class Presence {
        there,
        /// Looked at and not there: the folder that would hold it was listed to its end, or is gone
        /// itself, on the volume on which the application was seen before. Also what was looked at and
        /// is no application (any more).
        gone,
        notSeen, ///< anything else: it may be there
    };

    /// What a scan looked at, by which it judges what it did not find.
    struct Sight {
        QHash<QString, int> folders; ///< listed to their end, with their depths
        QSet<QString> absent;        ///< search paths at which there is nothing
        /// The bundles that were read, and whether there are applications in them.
        QHash<QString, bool> bundles;
        QSet<QString> applications;
        QList<MountedVolume> volumes; ///< those of the folders, and the known ones that are mounted
        KnownVolumes known;           ///< before this scan
        int scanDepth = 0;
        /// False while the search paths are only the defaults in place of what could not be read, and
        /// for no scan at all.
        bool isCertain = false;

        /// Of what was seen: what was known before is no part of it.
        bool operator==(const Sight& other) const {
            return folders == other.folders && absent == other.absent && bundles == other.bundles &&
                   applications == other.applications && volumes == other.volumes &&
                   scanDepth == other.scanDepth && isCertain == other.isCertain;
        }
    };

    /// The result. Equality is over everything, identifiers too.
    struct LibraryScan {
        QList<AppEntry> apps;             ///< by name, then by path
        QStringList watchableDirectories; ///< the folders that were listed, in the order of visiting
        QList<IncompleteBundle> incompleteBundles; ///< in the order of visiting
        QList<UnreadableDirectory> unreadableDirectories;
        Sight sight;

        bool operator==(const LibraryScan&) const = default;

        Presence presence(const QString& path) const;
        bool isGone(const QString& path) const { return presence(path) == Presence::gone; }
    };

    explicit AppScanner(ScanContext context);

    /// Scans, with the help of what the cache holds, and leaves in it what the next scan can use.
    /// Nothing when it was asked to stop; the cache is then as it was.
    std::optional<LibraryScan> scan(ScanCache& cache, std::stop_token stop = {}) const;

    static InstallState installState(const FileSystem& files, const QString& path);
    /// Nothing for a bundle that is not wrapped. Values of a wrong type are absent.
    static std::optional<WrappedIOSAppMetadata> wrappedMetadata(const Bundle& bundle);

private:
    ScanContext _context;
};

/// What a scan leaves for the next: each folder and bundle that it read, with what it saw there. A
/// plain value; a copy is a pointer. What was read is of no use to a scan under another locale or other
/// languages, which begins anew.
class ScanCache {
public:
    ScanCache() = default;
    /// Empty but for what an earlier run of the launcher knew.
    explicit ScanCache(KnownVolumes known) : _knownVolumes(std::move(known)) {}

    /// What the latest scan had to do.
    struct Work {
        qsizetype observationsChecked = 0; ///< each a stat call or the resolution of a link
        qsizetype directoriesListed = 0;
        qsizetype bundlesRead = 0;
        bool reusedResult = false;
    };
    const Work& work() const { return _work; }
    /// The paths that a scan of an unchanged machine looks at.
    QStringList observedPaths() const;
    /// The volumes on which applications were seen, to be kept for the next run.
    const KnownVolumes& knownVolumes() const { return _knownVolumes; }
    /// The bundles that are others than those that `before` saw at their paths, or were updated there.
    QStringList replacedBundles(const ScanCache& before) const;

private:
    friend class LibraryWalk;

    QStringList _languages;
    QString _locale;
    AppDiscoverySettings _settings;
    ScanLimits _limits;
    AppSourcePlaces _places;
    std::shared_ptr<const ScanListing> _searchPaths;
    QList<std::shared_ptr<const ScanListing>> _listings;
    QList<std::shared_ptr<const BundleRecord>> _bundles;
    AppScanner::LibraryScan _result;
    KnownVolumes _knownVolumes;
    Work _work;
};

namespace json {

template <>
struct Fields<AppScanner::IncompleteBundle> {
    static constexpr auto list =
        fields(required("path", &AppScanner::IncompleteBundle::path),
               optional("fileIdentifier", &AppScanner::IncompleteBundle::fileIdentifier));
};
template <>
struct Fields<AppScanner::LibraryScan> {
    static constexpr auto list =
        fields(required("apps", &AppScanner::LibraryScan::apps),
               required("incompleteBundles", &AppScanner::LibraryScan::incompleteBundles),
               required("watchableDirectories", &AppScanner::LibraryScan::watchableDirectories));
};

} // namespace json
} // namespace tessellar
