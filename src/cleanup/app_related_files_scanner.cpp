#include "cleanup/app_related_files_scanner.h"

#include "cleanup/cleanup_locations.h"
#include "cleanup/related_file_matcher.h"
#include "platform/texts.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <set>

namespace tessellar {
namespace {

/// Folders that are shown as files.
constexpr std::array<QByteArrayView, 22> packageExtensions{
    "app",   "appex",      "bundle",        "component",    "framework",       "kext",
    "lproj", "mdimporter", "pkg",           "plugin",       "prefpane",        "qlgenerator",
    "rtfd",  "saver",      "service",       "sparsebundle", "systemextension", "vst",
    "vst3",  "xpc",        "photoslibrary", "musiclibrary"};
/// A walk that finds more has gone astray; the certain matches are still among those kept.
constexpr qsizetype maximumFound = 10'000;
constexpr std::uint64_t maximumEntries = 5'000'000;

bool isPackage(QByteArrayView name) {
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0)
        return false;
    const QByteArrayView extension = name.sliced(dot + 1);
    return std::ranges::any_of(packageExtensions, [&](QByteArrayView known) {
        return extension.size() == known.size() && extension.compare(known, Qt::CaseInsensitive) == 0;
    });
}

bool mayMoveByRights(const FileSystem& files, const QString& path) {
    const auto mayWrite = [&](const QString& at) {
        return ::access(files.hostPath(at).constData(), W_OK) == 0;
    };
    const auto status = files.linkStatus(path);
    // Moving a folder changes its "..", which requires write access to it.
    return mayWrite(FileSystem::parent(path)) &&
           (!status || status->type != FileType::directory || mayWrite(path));
}

class Search {
public:
    Search(const FileSystem& files, const QString& home, const CleanupApplication& application,
           const QList<CleanupApplication>& others, const AppRelatedFilesScanner::TeamOf& teamOf,
           std::stop_token stop)
        : _files(files)
        , _home(home)
        , _application(application)
        , _matcher(files, application, others, teamOf, stop)
        , _stop(std::move(stop)) {}

    void addBundle(RelatedFilesScan& scan) const {
        const auto status = _files.linkStatus(_application.path);
        if (!status || status->type != FileType::directory)
            return;
        scan.files.append({.path = FileSystem::standardized(_application.path),
                           .location = QLatin1StringView(Texts::noop("Application")),
                           .match = RelatedFileMatch::appBundle,
                           .reason = RelatedFileMatcher::reasonOf({RelatedFileMatch::appBundle, {}}),
                           .identity = identityOf(*status)});
        addLinks(scan);
    }

    /// Links among the applications that the removal would leave dangling.
    void addLinks(RelatedFilesScan& scan) const {
        const auto bundle = _files.resolved(_application.path);
        if (!bundle)
            return;
        for (const QString& folder : applicationFolders(_home)) {
            const auto entries = _files.entries(folder);
            if (!entries)
                continue;
            for (const DirectoryEntry& entry : *entries) {
                const QString path = FileSystem::joined(folder, FileSystem::fromHostBytes(entry.name));
                const auto status = _files.linkStatus(path);
                if (status && status->type == FileType::symbolicLink &&
                    _files.resolved(path).value_or(QString()) == *bundle)
                    scan.files.append({.path = path,
                                       .location = QLatin1StringView(Texts::noop("Application")),
                                       .match = RelatedFileMatch::strong,
                                       .reason = Texts::tr("It is a link to the application."),
                                       .identity = identityOf(*status)});
            }
        }
    }

    void searchLocation(const CleanupLocation& location, RelatedFilesScan& scan) {
        const QString folder = location.path(_home);
        const auto status = _files.linkStatus(folder);
        if (!status)
            return leaveOut(status.error(), scan);
        if (status->type != FileType::directory)
            return;
        const auto isSearched = isInItsPlace(location, folder);
        if (!isSearched)
            return leaveOut(isSearched.error(), scan);
        if (!*isSearched)
            return;
        _found.clear();
        const auto walked =
            walkDirectory(_files, folder, {.maximumDepth = 8, .maximumEntries = maximumEntries}, _stop,
                          [&](const WalkEntry& entry) { return visit(location, entry); });
        scan.unreadable += walked.unreadable;
        scan.isComplete = scan.isComplete && walked.complete && walked.unreadable.isEmpty() &&
                          _found.size() < maximumFound;
        // Files in a vendor's shared folder are preferred to the folder itself.
        const QList<Found> all = _found;
        _found.removeIf([&all](const Found& found) {
            return found.finding.isShared && std::ranges::any_of(all, [&](const Found& inner) {
                       return inner.path.size() > found.path.size() &&
                              FileSystem::isWithin(inner.path, found.path);
                   });
        });
        std::ranges::sort(_found, {}, &Found::path);
        for (const Found& found : std::as_const(_found)) {
            const auto item = _files.linkStatus(found.path);
            if (!item)
                leaveOut(item.error(), scan);
            // Removed or replaced meanwhile, or a mount point.
            if (!item || item->type != found.type || item->device != status->device)
                continue;
            RelatedFileFinding finding = found.finding;
            if (!finding.isContested && found.type == FileType::directory &&
                _matcher.holdsFilesOfAnother(found.path)) {
                finding.isContested = true;
                finding.reason += Texts::tr(" It contains files of another application.");
            }
            scan.files.append({.path = found.path,
                               .location = QString::fromLatin1(location.label),
                               .domain = location.domain,
                               .match = finding.match,
                               .reason = finding.reason,
                               .isContested = finding.isContested,
                               .identity = identityOf(*item)});
        }
    }

private:
    struct Found {
        QString path;
        FileType type = FileType::other;
        RelatedFileFinding finding;
    };

    /// Missing folders do not make the scan incomplete.
    static void leaveOut(const FileError& why, RelatedFilesScan& scan) {
        if (why.code == FileError::Code::notFound)
            return;
        scan.unreadable.append(why);
        scan.isComplete = false;
    }

    /// False if a link leads the location elsewhere: then it is not what it claims to be.
    std::expected<bool, FileError> isInItsPlace(const CleanupLocation& location,
                                                const QString& folder) const {
        const auto real = _files.resolved(folder);
        if (!real)
            return std::unexpected(real.error());
        const auto home = _files.resolved(_home);
        if (!home && location.domain != CleanupDomain::system)
            return std::unexpected(home.error());
        return *real == location.path(home.value_or(_home)) &&
               protectionClass(_files, *real) == ProtectionClass::ordinary;
    }

    WalkStep visit(const CleanupLocation& location, const WalkEntry& entry) {
        if (entry.type != FileType::directory && entry.type != FileType::regular)
            return WalkStep::skip;
        const MatchingName name(entry.name);
        if (entersSystemFolder(location, entry))
            return WalkStep::descend;
        if (!_matcher.isApple() && (namesApple(name) || (entry.depth == 1 && belongsToSystem(name))))
            return WalkStep::skip;
        if (auto finding = _matcher.of(location, entry, name)) {
            const bool goesOn =
                finding->isShared && entry.type == FileType::directory && entry.depth < location.depth;
            keep({entry.path(), entry.type, *std::move(finding)});
            return goesOn ? WalkStep::descend : WalkStep::skip;
        }
        if (entry.type != FileType::directory || isPackage(entry.name) || entry.depth >= location.depth)
            return WalkStep::skip;
        return _matcher.matchesAnother(name) ? WalkStep::skip : WalkStep::descend;
    }

    /// Of the system's folders, only these have entries for each application.
    static bool entersSystemFolder(const CleanupLocation& location, const WalkEntry& entry) {
        constexpr std::array<QByteArrayView, 6> folders{
            "ByHost",
            "CrashReporter",
            "DiagnosticReports",
            "com.apple.FileProvider",
            "com.apple.sharedfilelist",
            "com.apple.LSSharedFileList.ApplicationRecentDocuments"};
        return entry.type == FileType::directory && entry.depth <= 2 &&
               location.domain == CleanupDomain::user &&
               std::ranges::any_of(folders, [&](QByteArrayView folder) {
                   return entry.name.compare(folder, Qt::CaseInsensitive) == 0;
               });
    }

    void keep(Found found) {
        const std::scoped_lock lock(_mutex);
        if (_found.size() < maximumFound) {
            _found.append(std::move(found));
            return;
        }
        const auto weakest =
            std::ranges::max_element(_found, {}, [](const Found& f) { return f.finding.match; });
        if (found.finding.match < weakest->finding.match)
            *weakest = std::move(found);
    }

    const FileSystem& _files;
    const QString& _home;
    const CleanupApplication& _application;
    const RelatedFileMatcher _matcher;
    const std::stop_token _stop;
    std::mutex _mutex;
    QList<Found> _found;
};

} // namespace

AppRelatedFilesScanner::AppRelatedFilesScanner(const FileSystem& files, QString home, MayMove mayMove,
                                               TeamOf teamOf)
    : _files(files)
    , _home(std::move(home))
    , _mayMove(mayMove ? std::move(mayMove) : MayMove(mayMoveByRights))
    , _teamOf(std::move(teamOf)) {}

std::optional<RelatedFilesScan> AppRelatedFilesScanner::scan(const CleanupApplication& application,
                                                             const QList<CleanupApplication>& others,
                                                             std::stop_token stop,
                                                             const Progress& progress) const {
    Search search(_files, _home, application, others, _teamOf, stop);
    RelatedFilesScan scan;
    search.addBundle(scan);
    const auto locations = cleanupLocations();
    RelatedFilesProgress state{.locationCount = static_cast<int>(locations.size())};
    const auto tell = [&](const QString& path) {
        state.path = path;
        state.found = scan.files.size();
        if (progress)
            progress(state);
    };
    for (const CleanupLocation& location : locations) {
        tell(location.path(_home));
        search.searchLocation(location, scan);
        if (stop.stop_requested())
            return std::nullopt;
        ++state.locationsDone;
    }
    for (RelatedFile& file : scan.files)
        file.needsAdministrator = file.domain == CleanupDomain::system && !_mayMove(_files, file.path);
    tell({});
    return scan;
}

MeasuredSize AppRelatedFilesScanner::measure(const FileSystem& files, const QString& path,
                                             std::stop_token stop) {
    const auto status = files.linkStatus(path);
    const auto own = WalkEntry::spaceAt(-1, files.hostPath(path).constData());
    if (!status || !own)
        return {.isComplete = false};
    if (status->type != FileType::directory)
        return {.bytes = own->allocated};
    std::atomic<std::uint64_t> bytes = own->allocated;
    std::atomic<bool> isComplete = true;
    std::mutex mutex;
    std::set<std::pair<std::uint64_t, std::uint64_t>> linked;
    const auto walked =
        walkDirectory(files, path, {.maximumDepth = 100'000}, stop, [&](const WalkEntry& entry) {
            const auto space = entry.space();
            if (!space && space.error() != ENOENT)
                isComplete.store(false, std::memory_order_relaxed);
            bool counts = space.has_value();
            // A file with several names takes its space once.
            if (space && space->links > 1 && entry.type != FileType::directory) {
                const std::scoped_lock lock(mutex);
                counts = linked.emplace(space->device, space->inode).second;
            }
            if (counts)
                bytes.fetch_add(space->allocated, std::memory_order_relaxed);
            return WalkStep::descend;
        });
    return {bytes.load(), isComplete.load() && walked.complete && walked.unreadable.isEmpty()};
}

Task AppRelatedFilesScanner::start(Machine& machine, CleanupApplication application,
                                   QList<CleanupApplication> others, TeamOf teamOf, Progress progress,
                                   std::function<void(RelatedFilesScan)> done) {
    return machine.workers.run(
        [&files = machine.files, home = machine.places.home, mailbox = &machine.workers.mailbox(),
         application = std::move(application), others = std::move(others), teamOf = std::move(teamOf),
         progress = std::move(progress)](std::stop_token stop) {
            const auto tell = [&](const RelatedFilesProgress& state) {
                mailbox->post([stop, progress, state] {
                    if (progress && !stop.stop_requested())
                        progress(state);
                });
            };
            return AppRelatedFilesScanner(files, home, {}, teamOf)
                .scan(application, others, stop, tell);
        },
        [done = std::move(done)](std::optional<RelatedFilesScan> scan) {
            if (scan)
                done(*std::move(scan));
        });
}

Task AppRelatedFilesScanner::startMeasuring(Machine& machine, QStringList paths,
                                            std::function<void(QString, MeasuredSize)> measured,
                                            std::function<void()> done) {
    return machine.workers.run(
        [&files = machine.files, mailbox = &machine.workers.mailbox(), paths = std::move(paths),
         measured = std::move(measured)](std::stop_token stop) {
            for (const QString& path : paths) {
                const MeasuredSize size = measure(files, path, stop);
                if (stop.stop_requested())
                    return;
                mailbox->post([stop, measured, path, size] {
                    if (!stop.stop_requested())
                        measured(path, size);
                });
            }
        },
        std::move(done));
}

} // namespace tessellar
