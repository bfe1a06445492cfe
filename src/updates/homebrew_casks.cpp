#include "updates/homebrew_casks.h"

#include "updates/untrusted_text.h"

#include <QSet>

namespace tessellar {

static const QString fingerprintPrefix = QStringLiteral("homebrew:");

namespace json {

static QString baseName(const QString& name) {
    return name.section(u'/', -1, -1, QString::SectionSkipEmpty);
}

/// The installed names in one stanza. A "target" beside the list is the resolved path; one in the list
/// renames the preceding name; a name with folders loses them.
static QStringList targets(const QJsonObject& stanza, QLatin1StringView key) {
    if (const QString resolved = stanza.value(u"target").toString(); !resolved.isEmpty())
        return {resolved};
    QStringList names;
    for (const QJsonArray items = stanza.value(key).toArray(); const QJsonValue item : items) {
        const QString target = item.toObject().value(u"target").toString();
        if (item.isString() && !baseName(item.toString()).isEmpty())
            names.append(baseName(item.toString()));
        else if (!target.isEmpty() && !names.isEmpty())
            names.last() = target;
        else if (!target.isEmpty())
            names.append(target);
    }
    return names;
}

Decoded<CaskArtifact> Codec<CaskArtifact>::decode(const QJsonValue& value) {
    const QJsonObject stanza = value.toObject();
    CaskArtifact artifact;
    if (stanza.value(u"app").isArray())
        artifact.appTargets = targets(stanza, QLatin1StringView("app"));
    else if (stanza.value(u"suite").isArray())
        artifact.suiteTargets = targets(stanza, QLatin1StringView("suite"));
    return artifact;
}

Decoded<InstalledCask> Codec<InstalledCask>::decode(const QJsonValue& value) {
    InstalledCask cask{.token = value[QLatin1StringView("token")].toString(),
                       .version = toSingleLine(value[QLatin1StringView("version")].toString(), 100),
                       .updatesItself = value[QLatin1StringView("auto_updates")].toBool()};
    if (!isCaskToken(cask.token) || cask.version.isEmpty())
        return expected("a cask with a token and a version");
    for (const QJsonArray items = value[QLatin1StringView("artifacts")].toArray();
         const QJsonValue item : items) {
        const auto artifact = Codec<CaskArtifact>::decode(item);
        cask.appTargets += artifact->appTargets;
        cask.suiteTargets += artifact->suiteTargets;
    }
    return cask;
}

/// The casks in the listing.
static Decoded<QJsonArray> casks(const QJsonValue& value) {
    const QJsonValue list = value[QLatin1StringView("casks")];
    if (!list.isArray())
        return expected("an object with a list of casks");
    return list.toArray();
}

Decoded<InfoResponse> Codec<InfoResponse>::decode(const QJsonValue& value) {
    const auto items = casks(value);
    if (!items)
        return std::unexpected(items.error());
    InfoResponse response;
    for (const QJsonValue item : *items)
        if (auto cask = json::decode<InstalledCask>(item))
            response.casks.append(*std::move(cask));
    return response;
}

Decoded<OutdatedResponse> Codec<OutdatedResponse>::decode(const QJsonValue& value) {
    const auto items = casks(value);
    if (!items)
        return std::unexpected(items.error());
    OutdatedResponse response;
    for (const QJsonValue item : *items)
        if (const QString token = item[QLatin1StringView("name")].toString(); isCaskToken(token))
            response.casks.insert(
                token, {plausibleVersion(item[QLatin1StringView("current_version")].toString()),
                        item[QLatin1StringView("pinned")].toBool()});
    return response;
}

} // namespace json

template <typename Response>
static json::Decoded<Response> decodeListing(const QByteArray& output) {
    auto listing = json::decodeDocument<Response>(output);
    constexpr int mostTries = 8; // a line of a warning may begin with a brace, too
    qsizetype line = 0;
    for (int i = 0; !listing && i < mostTries && (line = output.indexOf("\n{", line)) >= 0; ++i)
        listing = json::decodeDocument<Response>(output.sliced(++line));
    return listing;
}

json::Decoded<InfoResponse> decodeInfo(const QByteArray& output) {
    return decodeListing<InfoResponse>(output);
}

json::Decoded<OutdatedResponse> decodeOutdated(const QByteArray& output) {
    return decodeListing<OutdatedResponse>(output);
}

QString HomebrewCaskOwnership::fingerprint() const {
    return fingerprintPrefix + brewExecutablePath + u':' + catalogVersion;
}

std::optional<HomebrewCaskOwnership> ownershipOf(const QString& fingerprint) {
    const QLatin1StringView end("/brew:");
    const qsizetype found = fingerprint.indexOf(end);
    if (!fingerprint.startsWith(fingerprintPrefix) || found < 0)
        return std::nullopt;
    const qsizetype brew = fingerprintPrefix.size();
    return HomebrewCaskOwnership{.brewExecutablePath =
                                     fingerprint.sliced(brew, found + end.size() - 1 - brew),
                                 .catalogVersion = fingerprint.sliced(found + end.size())};
}

AppUpdateVerdict verdict(const HomebrewCaskOwnership& owner, const OutdatedResponse& outdated) {
    using enum AppUpdateReason::Code;
    // Homebrew does not know which version of these is installed.
    if (owner.updatesItself)
        return AppUpdateVerdict::unsupported(updatesItself);
    if (owner.catalogVersion.compare(u"latest", Qt::CaseInsensitive) == 0)
        return AppUpdateVerdict::unsupported(alwaysLatest);
    const auto found = outdated.casks.constFind(owner.token);
    if (found == outdated.casks.constEnd())
        return {UpToDate()};
    if (!found->currentVersion)
        return AppUpdateVerdict::failed({brewNotUnderstood, {}});
    AppUpdateVerdict update{UpdateAvailable{*found->currentVersion}};
    if (found->isPinned)
        update.reason = AppUpdateReason{pinned, {}};
    return update;
}

std::optional<HomebrewCaskOwnership>
HomebrewCaskCheckResult::owner(const QString& resolvedAppPath) const {
    const auto ownership = [&](const HomebrewCaskSnapshot& snapshot, qsizetype index) {
        const InstalledCask& cask = snapshot.casks[index];
        return HomebrewCaskOwnership{.path = resolvedAppPath,
                                     .token = cask.token,
                                     .brewExecutablePath = snapshot.brewExecutablePath,
                                     .catalogVersion = cask.version,
                                     .updatesItself = cask.updatesItself};
    };
    for (const HomebrewCaskSnapshot& snapshot : snapshots)
        if (const auto found = snapshot.exactMatches.constFind(resolvedAppPath);
            found != snapshot.exactMatches.constEnd())
            return ownership(snapshot, *found);
    for (const HomebrewCaskSnapshot& snapshot : snapshots)
        for (const HomebrewCaskSnapshot::Suite& suite : snapshot.suiteMatches)
            if (resolvedAppPath != suite.rootPath &&
                FileSystem::isWithin(resolvedAppPath, suite.rootPath))
                return ownership(snapshot, suite.cask);
    return std::nullopt;
}

QStringList findBrews(const FileSystem& files, const std::map<QByteArray, QByteArray>& environment) {
    const auto variable = [&](const char* name) {
        const auto found = environment.find(name);
        return found == environment.end() ? QString() : FileSystem::fromHostBytes(found->second);
    };
    QStringList candidates;
    if (const QString prefix = variable("HOMEBREW_PREFIX"); !prefix.isEmpty())
        candidates += FileSystem::joined(prefix, QStringLiteral("bin/brew"));
    for (const QString& folder : variable("PATH").split(u':', Qt::SkipEmptyParts))
        candidates += FileSystem::joined(folder, QStringLiteral("brew"));
    candidates += QStringLiteral("/opt/homebrew/bin/brew");
    candidates += QStringLiteral("/usr/local/bin/brew");

    QStringList brews;
    QSet<QString> seen;
    for (const QString& candidate : std::as_const(candidates)) {
        if (!candidate.startsWith(u'/') || !files.isExecutableFile(candidate))
            continue;
        const QString place = files.resolved(candidate).value_or(candidate);
        if (seen.contains(place))
            continue;
        seen.insert(place);
        brews += FileSystem::standardized(candidate);
    }
    return brews;
}

/// False for folders that also contain unrelated applications, such as /Applications.
static bool isSuiteFolder(const QString& root, const QString& home) {
    const QString own = FileSystem::joined(home, QStringLiteral("Applications"));
    return root.count(u'/') > 1 && !FileSystem::isWithin(root, QStringLiteral("/System")) &&
           !FileSystem::isWithin(own, root) &&
           !FileSystem::isWithin(QStringLiteral("/Applications/Utilities"), root);
}

void buildMatches(const FileSystem& files, const QString& home, HomebrewCaskSnapshot& snapshot) {
    const auto place = [&](const QString& target) {
        QString path = FileSystem::joined(QStringLiteral("/Applications"), target);
        if (target == u"~" || target.startsWith(QLatin1StringView("~/")))
            path = home + target.sliced(1);
        else if (target.startsWith(u'/'))
            path = target;
        path = FileSystem::standardized(path);
        return files.resolved(path).value_or(path);
    };
    for (qsizetype i = 0; i < snapshot.casks.size(); ++i) {
        const InstalledCask& cask = snapshot.casks.at(i);
        for (const QString& target : cask.appTargets)
            if (const QString path = place(target); !snapshot.exactMatches.contains(path))
                snapshot.exactMatches.insert(path, i);
        for (const QString& target : cask.suiteTargets)
            if (const QString root = place(target); isSuiteFolder(root, home))
                snapshot.suiteMatches.append({root, i});
    }
}

} // namespace tessellar
