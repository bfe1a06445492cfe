#include "cleanup/app_related_files_scanner.h"

#include "cleanup/cleanup_locations.h"
#include "cleanup/related_file_names.h"
#include "platform/directory_walker.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <mutex>

namespace tessellar {
namespace {

/// Folders that people see as one thing.
constexpr std::array<QByteArrayView, 22> packageExtensions{
    "app",   "appex",      "bundle",        "component",    "framework",       "kext",
    "lproj", "mdimporter", "pkg",           "plugin",       "prefpane",        "qlgenerator",
    "rtfd",  "saver",      "service",       "sparsebundle", "systemextension", "vst",
    "vst3",  "xpc",        "photoslibrary", "musiclibrary"};
/// A walk that finds more has been led astray; the surest of them are still among those kept.
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
    // A folder's own ".." changes with its place.
    return mayWrite(FileSystem::parent(path)) &&
           (!status || status->type != FileType::directory || mayWrite(path));
}

enum class Doubt { none, sharedName, othersInside };

QString reasonOf(const ApplicationNames::Grade& grade, Doubt doubt) {
    const QString word = QString::fromUtf8(grade.because);
    QString reason;
    switch (grade.match) {
    case RelatedFileMatch::appBundle:
        reason = QStringLiteral("The application itself.");
        break;
    case RelatedFileMatch::strong:
        reason = QStringLiteral("Its name is the identifier “%1”.").arg(word);
        break;
    case RelatedFileMatch::strongish:
        reason = QStringLiteral("Its name begins or ends with the identifier “%1”.").arg(word);
        break;
    case RelatedFileMatch::medium:
        reason = QStringLiteral("It is named “%1” like the application.").arg(word);
        break;
    case RelatedFileMatch::risky:
        reason = QStringLiteral("Its name contains “%1”.").arg(word);
        break;
    }
    switch (doubt) {
    case Doubt::none:
        break;
    case Doubt::sharedName:
        return reason + QStringLiteral(" Another application may own it.");
    case Doubt::othersInside:
        return reason + QStringLiteral(" Files of another application lie in it.");
    }
    return reason;
}

class Search {
public:
    Search(const FileSystem& files, const QString& home, const CleanupApplication& application,
           const QList<CleanupApplication>& others, const AppRelatedFilesScanner::TeamOf& teamOf,
           std::stop_token stop)
        : _files(files)
        , _home(home)
        , _application(application)
        , _teamOf(teamOf)
        , _names(application)
        , _others(othersOf(application, others))
        , _claims(_others)
        , _stop(std::move(stop)) {}

    void addBundle(RelatedFilesScan& scan) const {
        const auto status = _files.linkStatus(_application.path);
        if (!status || status->type != FileType::directory)
            return;
        scan.files.append({.path = FileSystem::standardized(_application.path),
                           .location = QStringLiteral("Application"),
                           .match = RelatedFileMatch::appBundle,
                           .reason = reasonOf({RelatedFileMatch::appBundle, {}}, Doubt::none),
                           .identity = identityOf(*status)});
    }

    void searchLocation(const CleanupLocation& location, RelatedFilesScan& scan) {
        const QString folder = location.path(_home);
        const auto status = _files.linkStatus(folder);
        if (!status || status->type != FileType::directory || !isInItsPlace(location, folder))
            return;
        _found.clear();
        const auto walked =
            walkDirectory(_files, folder, {.maximumDepth = 8, .maximumEntries = maximumEntries}, _stop,
                          [&](const WalkEntry& entry) { return visit(location, entry); });
        scan.unreadable += walked.unreadable;
        scan.isComplete = scan.isComplete && walked.complete && walked.unreadable.isEmpty() &&
                          _found.size() < maximumFound;
        std::ranges::sort(_found, {}, &Found::path);
        for (const Found& found : std::as_const(_found)) {
            const auto item = _files.linkStatus(found.path);
            // Gone or exchanged meanwhile, or a volume of its own.
            if (!item || item->type != found.type || item->device != status->device)
                continue;
            const Doubt doubt = found.isContested      ? Doubt::sharedName
                                : holdsAnothers(found) ? Doubt::othersInside
                                                       : Doubt::none;
            scan.files.append({.path = found.path,
                               .location = QString::fromLatin1(location.label),
                               .domain = location.domain,
                               .match = found.grade.match,
                               .reason = reasonOf(found.grade, doubt),
                               .isContested = doubt != Doubt::none,
                               .identity = identityOf(*item)});
        }
    }

private:
    struct Found {
        QString path;
        FileType type = FileType::other;
        ApplicationNames::Grade grade;
        bool isContested = false;
    };

    static QList<CleanupApplication> othersOf(const CleanupApplication& application,
                                              const QList<CleanupApplication>& all) {
        QList<CleanupApplication> others;
        // What lies in the bundle goes with it.
        std::ranges::copy_if(all, std::back_inserter(others), [&](const CleanupApplication& other) {
            return !FileSystem::isWithin(other.path, application.path);
        });
        return others;
    }

    /// A location that a link leads elsewhere is not what it is called.
    bool isInItsPlace(const CleanupLocation& location, const QString& folder) const {
        const auto real = _files.resolved(folder);
        const auto home = _files.resolved(_home);
        return real && (location.domain == CleanupDomain::system || home) &&
               *real == location.path(home.value_or(_home)) &&
               protectionClass(_files, *real) == ProtectionClass::ordinary;
    }

    WalkStep visit(const CleanupLocation& location, const WalkEntry& entry) {
        if (entry.type != FileType::directory && entry.type != FileType::regular)
            return WalkStep::skip;
        const MatchingName name(entry.name);
        if (const auto grade = _names.grade(name); grade && isListed(*grade, name)) {
            keep({entry.path(), entry.type, *grade, isContested(location, *grade, name)});
            return WalkStep::skip;
        }
        if (entry.type != FileType::directory || isPackage(entry.name))
            return WalkStep::skip;
        const bool isByHost = location.domain == CleanupDomain::user && entry.depth == 1 &&
                              QByteArrayView(location.folder) == "Preferences" &&
                              entry.name == "ByHost";
        if (!isByHost && (location.isFlat || entry.depth >= vendorFolderDepth))
            return WalkStep::skip;
        return isAnothers(name) ? WalkStep::skip : WalkStep::descend;
    }

    bool isListed(const ApplicationNames::Grade& grade, const MatchingName& name) const {
        if (!_names.isApple() && namesApple(name))
            return false;
        const auto claimed = _claims.strongest(name);
        return !(claimed && *claimed <= grade.match) &&
               !_claims.extendsLongerIdentifier(name, _names.identifier().size());
    }

    bool isContested(const CleanupLocation& location, const ApplicationNames::Grade& grade,
                     const MatchingName& name) const {
        if (_names.isApple() || namesVendor(_names.identifier()))
            return true;
        if (QByteArrayView(location.folder) == "Group Containers" && mayShareGroup())
            return true;
        return grade.match != RelatedFileMatch::strong &&
               (!_names.ownsExtensions() || namesSiblingProduct(name, _names.identifier()) ||
                _claims.strongest(name).has_value());
    }

    /// True for a folder in which lies, by its identifier, what belongs to another application: vendors
    /// keep their products together under the shortest of their identifiers.
    bool holdsAnothers(const Found& found) const {
        if (found.type != FileType::directory)
            return false;
        const auto entries = _files.entries(found.path);
        return entries && std::ranges::any_of(*entries, [this](const DirectoryEntry& entry) {
                   const MatchingName name(entry.name);
                   const auto claimed = _claims.strongestByWhole(name);
                   if (!claimed || *claimed > RelatedFileMatch::strongish)
                       return false;
                   const auto own = _names.grade(name);
                   return !own || *claimed < own->match ||
                          _claims.extendsLongerIdentifier(name, _names.identifier().size());
               });
    }

    /// Group containers are for the applications of one team; one whose team nobody knows may be of it.
    bool mayShareGroup() const {
        // Asked for no more than once, and only when there is a group container: signatures are slow.
        std::call_once(_groupAsked, [this] {
            const auto team = teamOf(_application);
            _mayShareGroup = !team || team->isEmpty() ||
                             std::ranges::any_of(_others, [&](const CleanupApplication& other) {
                                 const auto another = teamOf(other);
                                 return !another || *another == *team;
                             });
        });
        return _mayShareGroup;
    }

    std::optional<QString> teamOf(const CleanupApplication& application) const {
        if (application.team || !_teamOf)
            return application.team;
        return _teamOf(application, _stop);
    }

    /// A folder of another application, and not of a vendor of both.
    bool isAnothers(const MatchingName& name) const {
        const auto claimed = _claims.strongestByWhole(name);
        if (!claimed)
            return false;
        const auto own = _names.grade(name);
        return !own || *claimed < own->match || *claimed <= RelatedFileMatch::strongish;
    }

    void keep(Found found) {
        const std::scoped_lock lock(_mutex);
        if (_found.size() < maximumFound) {
            _found.append(std::move(found));
            return;
        }
        const auto weakest =
            std::ranges::max_element(_found, {}, [](const Found& f) { return f.grade.match; });
        if (found.grade.match < weakest->grade.match)
            *weakest = std::move(found);
    }

    const FileSystem& _files;
    const QString& _home;
    const CleanupApplication& _application;
    const AppRelatedFilesScanner::TeamOf& _teamOf;
    const ApplicationNames _names;
    const QList<CleanupApplication> _others;
    const InstalledClaims _claims;
    const std::stop_token _stop;
    std::mutex _mutex;
    QList<Found> _found;
    mutable std::once_flag _groupAsked;
    mutable bool _mayShareGroup = true;
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
    if (!status)
        return {.isComplete = false};
    if (status->type != FileType::directory)
        return {.bytes = status->size};
    std::atomic<std::uint64_t> bytes = 0;
    std::atomic<bool> isComplete = true;
    const auto walked =
        walkDirectory(files, path, {.maximumDepth = 100'000}, stop, [&](const WalkEntry& entry) {
            if (entry.type == FileType::regular) {
                if (const auto size = entry.size())
                    bytes.fetch_add(*size, std::memory_order_relaxed);
                else if (size.error() != ENOENT)
                    isComplete.store(false, std::memory_order_relaxed);
            }
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
