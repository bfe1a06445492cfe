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
struct ScanCache;
struct ScanListing;

/// Limits for one scan. Anything beyond is missing from the result without an error; real Macs stay far
/// below.
struct ScanLimits {
    qsizetype directories = 20'000;
    qsizetype bundles = 20'000;
    qsizetype entries = 1'000'000;
    qsizetype entriesPerDirectory = 200'000;

    bool operator==(const ScanLimits&) const = default;
};

/// Everything that a scan depends on apart from the disk.
struct ScanContext {
    const FileSystem& files;
    AppDiscoverySettings settings;
    QString home;
    QStringList languages; ///< in order of preference, for localized names
    Locale locale;         ///< for sorting the result
    UuidSource& uuids;
    Instant now; ///< the start of the scan; later scans recheck anything changed just before
    ScanLimits limits = {};
    unsigned threads = 2;
};

/// Finds the installed applications.
///
/// The result depends only on the context and the disk. Blocks the calling thread and uses helper
/// threads. Scanning an unchanged machine twice gives the same result in the same order, apart from
/// identifiers; with the first scan's cache, the same identifiers too.
///
/// - Folders are visited breadth first across all search paths, so that a deep folder cannot use up the
///   limits before the other search paths are visited. Within a depth, the order is that of the search
///   paths and, inside a folder, bytewise by name.
/// - Aliases and links are followed. Folders and bundles are identified by resolved path and by device
///   and inode, and visited once, at the smallest depth.
/// - Names starting with "." are skipped as hidden, and names that are not UTF-8 because an arrangement
///   cannot store them.
/// - Bundles are not entered, except that "Contents/Applications" counts as a folder two levels below
///   its bundle: users know those applications as separate tools. Links and aliases may lead anywhere,
///   even into bundles: they were put there on purpose.
/// - Applications without a Dock icon or window are included.
class AppScanner {
public:
    /// What is at a bundle's path.
    enum class InstallState {
        missing,    ///< no folder
        unseen,     ///< could not be read
        incomplete, ///< being copied or damaged: no readable Info.plist, or no executable
        ready,
    };

    /// A bundle that cannot be used yet.
    struct IncompleteBundle {
        QString path;
        std::optional<std::int64_t> fileIdentifier; ///< the inode; detects replacement

        bool operator==(const IncompleteBundle&) const = default;
    };

    /// A folder and its depth below its search path.
    struct ScannedDirectory {
        QString path;
        int depth = 0;
    };
    using PendingDirectory = ScannedDirectory;

    /// One entry of a folder, aliases and links resolved. Regular files carry no further data.
    struct TraversalCandidate {
        QString path;
        bool isDirectory = false;
        bool isPackage = false; ///< a folder shown as a single item; only applications count

        bool isApplication() const { return isDirectory && isPackage; }
        bool operator==(const TraversalCandidate&) const = default;
    };

    /// What a wrapped iPhone application declares.
    struct WrappedIOSAppMetadata {
        std::optional<QString> bundleIdentifier;
        std::optional<QString> name;
        std::optional<QString> category;
        std::optional<QString> sourceApp;

        bool operator==(const WrappedIOSAppMetadata&) const = default;
    };

    /// A folder whose contents the scan did not read completely.
    struct UnreadableDirectory {
        enum class Reason {
            absent,           ///< a search path that does not exist: nothing is missing
            volumeNotMounted, ///< `path` is the mount point, for example "/Volumes/Work"
            unreadable,
            limit, ///< `path` is where a limit cut the scan short; "/" if anything may be missing
        };
        QString path;
        Reason reason = Reason::unreadable;

        bool operator==(const UnreadableDirectory&) const = default;
    };

    /// Whether an application is at a path, as far as a scan can tell.
    enum class Presence {
        present,
        /// Certainly not there: its folder was listed completely, or is gone itself, on the same volume
        /// as before. Also if the bundle was read and is not an application.
        gone,
        unknown, ///< may or may not be there
    };

    /// What a scan has covered; used to judge what it did not find.
    struct Coverage {
        QHash<QString, int> folders; ///< completely listed, with their depths
        QSet<QString> absent;        ///< search paths that do not exist
        /// The bundles read, and whether they contain applications.
        QHash<QString, bool> bundles;
        QSet<QString> applications;
        QList<MountedVolume> volumes; ///< of these folders, and known ones that are mounted
        KnownVolumes known;           ///< before this scan
        int scanDepth = 0;
        /// False before any scan, and if the search paths are only defaults because the settings were
        /// unreadable.
        bool isCertain = false;

        /// Compares only what was seen, not `known`.
        bool operator==(const Coverage& other) const {
            return folders == other.folders && absent == other.absent && bundles == other.bundles &&
                   applications == other.applications && volumes == other.volumes &&
                   scanDepth == other.scanDepth && isCertain == other.isCertain;
        }
    };

    /// The result. Equality includes identifiers.
    struct LibraryScan {
        QList<AppEntry> apps;                      ///< by name, then by path
        QStringList watchableDirectories;          ///< the listed folders, in visiting order
        QList<IncompleteBundle> incompleteBundles; ///< in visiting order
        QList<UnreadableDirectory> unreadableDirectories;
        Coverage coverage;

        bool operator==(const LibraryScan&) const = default;

        Presence presence(const QString& path) const;
        bool isGone(const QString& path) const { return presence(path) == Presence::gone; }
    };

    explicit AppScanner(ScanContext context);

    /// Scans, reusing and then updating the cache. If stopped, returns nullopt and leaves the cache
    /// unchanged.
    std::optional<LibraryScan> scan(ScanCache& cache, std::stop_token stop = {}) const;

    static InstallState installState(const FileSystem& files, const QString& path);
    /// nullopt if the bundle is not wrapped. Values of the wrong type are absent.
    static std::optional<WrappedIOSAppMetadata> wrappedMetadata(const Bundle& bundle);

private:
    ScanContext _context;
};

/// Reusable results of a scan: each folder and bundle read, with the evidence. A plain value, cheap to
/// copy. Discarded if the locale or the languages change.
struct ScanCache {
    /// Statistics of the latest scan.
    struct Work {
        qsizetype observationsChecked = 0; ///< stat calls and link resolutions
        qsizetype directoriesListed = 0;
        qsizetype bundlesRead = 0;
        bool reusedResult = false;
    };

    /// The paths that a scan of an unchanged machine checks.
    QStringList observedPaths() const;
    /// Bundles replaced or updated in place since `before`.
    QStringList replacedBundles(const ScanCache& before) const;

    QStringList languages;
    QString locale;
    AppDiscoverySettings settings;
    ScanLimits limits;
    AppSourcePlaces places;
    std::shared_ptr<const ScanListing> searchPaths;
    QList<std::shared_ptr<const ScanListing>> listings;
    QList<std::shared_ptr<const BundleRecord>> bundles;
    AppScanner::LibraryScan result;
    /// The volumes with applications; all that is kept for the next run.
    KnownVolumes knownVolumes;
    Work work;
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
