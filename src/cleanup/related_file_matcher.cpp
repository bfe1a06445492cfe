#include "cleanup/related_file_matcher.h"

#include "platform/property_list.h"
#include "platform/texts.h"

#include <QUuid>

#include <algorithm>
#include <atomic>

namespace tessellar {
namespace {

/// How deep a folder is searched for other applications' files.
constexpr int deepestProduct = 8;
constexpr std::uint64_t mostProducts = 200'000;

/// The contents of a small property list; absent if it cannot be read.
PropertyValue propertyList(const FileSystem& files, const QString& path) {
    constexpr std::uint64_t mostBytes = 1u << 20;
    const auto status = files.linkStatus(path);
    if (!status || status->type != FileType::regular || status->size > mostBytes)
        return {};
    const auto bytes = files.read(path, mostBytes);
    return bytes ? parsePropertyList(*bytes).value_or(PropertyValue()) : PropertyValue();
}

QList<CleanupApplication> othersOf(const CleanupApplication& application,
                                   const QList<CleanupApplication>& all) {
    QList<CleanupApplication> others;
    // What is inside the bundle is removed with it.
    std::ranges::copy_if(all, std::back_inserter(others), [&](const CleanupApplication& other) {
        return !FileSystem::isWithin(other.path, application.path);
    });
    return others;
}

} // namespace

RelatedFileMatcher::RelatedFileMatcher(const FileSystem& files, const CleanupApplication& application,
                                       const QList<CleanupApplication>& others,
                                       const AppRelatedFilesScanner::TeamOf& teamOf,
                                       std::stop_token stop)
    : _files(files)
    , _application(application)
    , _teamOf(teamOf)
    , _names(application)
    , _others(othersOf(application, others))
    , _claims(_others)
    , _stop(std::move(stop)) {}

QString RelatedFileMatcher::reasonOf(const ApplicationNames::Grade& grade) {
    const QString word = QString::fromUtf8(grade.because);
    switch (grade.match) {
    case RelatedFileMatch::appBundle:
        return Texts::tr("The application itself.");
    case RelatedFileMatch::strong:
        return Texts::tr("Its name is the identifier “%1”.").arg(word);
    case RelatedFileMatch::strongish:
        return Texts::tr("Its name begins or ends with the identifier “%1”.").arg(word);
    case RelatedFileMatch::medium:
        return Texts::tr("It is named “%1” like the application.").arg(word);
    case RelatedFileMatch::risky:
        return Texts::tr("Its name contains “%1”.").arg(word);
    }
    return {};
}

std::optional<RelatedFileFinding> RelatedFileMatcher::of(const CleanupLocation& location,
                                                         const WalkEntry& entry,
                                                         const MatchingName& name) const {
    if (const auto grade = _names.grade(name))
        if (auto finding = byName(location, *grade, name);
            finding && (!location.isForCertain || finding->match <= RelatedFileMatch::strongish))
            return finding;
    if (auto finding = byContents(location, entry))
        return finding;
    return location.isForCertain ? std::nullopt : byDeveloper(name);
}

std::optional<RelatedFileFinding> RelatedFileMatcher::byName(const CleanupLocation& location,
                                                             const ApplicationNames::Grade& grade,
                                                             const MatchingName& name) const {
    const auto verdict = _claims.judge(name, grade);
    if (verdict.isAnothers)
        return std::nullopt;
    RelatedFileFinding finding{.match = grade.match, .reason = reasonOf(grade)};
    const auto contest = [&](const QString& why) {
        finding.isContested = true;
        finding.reason += u' ' + why;
    };
    finding.isShared = !verdict.sharedWith.isEmpty() && !grade.isByIdentifier();
    if (!verdict.sharedWith.isEmpty())
        contest(Texts::tr("May also belong to %1.").arg(verdict.sharedWith.join(QStringLiteral(", "))));
    else if (_names.isApple())
        contest(Texts::tr("macOS itself may use it."));
    else if (namesVendor(_names.identifier()) ||
             (grade.isByIdentifier() && !grade.because.contains('.')))
        contest(Texts::tr("The identifier may be more than this application’s."));
    else if (QByteArrayView(location.folder) == "Group Containers" && mayShareGroup())
        contest(Texts::tr("Applications of the same developer may share it."));
    else if (grade.match == RelatedFileMatch::strongish &&
             (!_names.ownsExtensions() || namesSiblingProduct(name, _names.identifier())))
        contest(Texts::tr("It may be another product’s."));
    return finding;
}

/// Property lists of agents and daemons name the program that they start; metadata of containers with
/// numeric names tell their application.
std::optional<RelatedFileFinding> RelatedFileMatcher::byContents(const CleanupLocation& location,
                                                                 const WalkEntry& entry) const {
    if (entry.depth != 1)
        return std::nullopt;
    const QByteArrayView folder = location.folder;
    if (folder.startsWith("Launch") && entry.type == FileType::regular &&
        entry.name.endsWith(".plist")) {
        const PropertyValue list = propertyList(_files, entry.path());
        const auto words = list[QStringLiteral("ProgramArguments")].texts().value_or(QStringList());
        const QString program = list[QStringLiteral("Program")].text().value_or(words.value(0));
        if (program.startsWith(u'/') &&
            FileSystem::isWithin(FileSystem::standardized(program), _application.path))
            return RelatedFileFinding{.match = RelatedFileMatch::strongish,
                                      .reason = Texts::tr("It starts a program of the application.")};
    }
    if (folder == "Containers" && entry.type == FileType::directory && !_names.identifier().isEmpty() &&
        !QUuid::fromString(FileSystem::fromHostBytes(entry.name)).isNull()) {
        const PropertyValue list = propertyList(
            _files, FileSystem::joined(entry.path(),
                                       QStringLiteral(".com.apple.containermanagerd.metadata.plist")));
        const auto owner = list[QStringLiteral("MCMMetadataIdentifier")].text();
        if (owner && owner->compare(*_application.bundleIdentifier, Qt::CaseInsensitive) == 0)
            return RelatedFileFinding{.match = RelatedFileMatch::strong,
                                      .reason = Texts::tr("It is the container of “%1”.").arg(*owner)};
    }
    return std::nullopt;
}

/// An identifier of the same developer that belongs to no known application: perhaps a helper's, or
/// another product's leftovers.
std::optional<RelatedFileFinding> RelatedFileMatcher::byDeveloper(const MatchingName& name) const {
    const QByteArray& developer = _names.developer();
    if (developer.isEmpty() || !name.view().startsWith(developer + '.') ||
        _claims.matchesIdentifier(name))
        return std::nullopt;
    return RelatedFileFinding{.match = RelatedFileMatch::risky,
                              .reason =
                                  Texts::tr("Its name begins with “%1”, as the identifiers of this "
                                            "developer do.")
                                      .arg(QString::fromUtf8(developer)),
                              .isContested = true};
}

bool RelatedFileMatcher::holdsFilesOfAnother(const QString& folder) const {
    std::atomic<bool> hold = false;
    (void)walkDirectory(
        _files, folder, {.maximumDepth = deepestProduct, .maximumEntries = mostProducts}, _stop,
        [&](const WalkEntry& entry) {
            const MatchingName name(entry.name);
            const auto own = _names.grade(name);
            if (_claims.matchesIdentifier(name, own && own->isByIdentifier() ? own->because.size() : 0))
                hold.store(true, std::memory_order_relaxed);
            return hold.load(std::memory_order_relaxed) ? WalkStep::skip : WalkStep::descend;
        });
    return hold.load();
}

/// Group containers belong to the applications of one team. Reading signatures is slow, so only this
/// application's is read, once. Others whose team is unknown count as the same team if their
/// developer's identifier is the same.
bool RelatedFileMatcher::mayShareGroup() const {
    std::call_once(_groupAsked, [this] {
        const auto team = teamOf(_application);
        _mayShareGroup = !team || team->isEmpty() ||
                         std::ranges::any_of(_others, [&](const CleanupApplication& other) {
                             return other.team
                                        ? *other.team == *team
                                        : !_names.developer().isEmpty() &&
                                              ApplicationNames(other).developer() == _names.developer();
                         });
    });
    return _mayShareGroup;
}

std::optional<QString> RelatedFileMatcher::teamOf(const CleanupApplication& application) const {
    if (application.team || !_teamOf)
        return application.team;
    return _teamOf(application, _stop);
}

} // namespace tessellar
