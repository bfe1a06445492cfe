#include "updates/homebrew_casks.h"

#include <QSet>

namespace tessellar {

static const QString fingerprintPrefix = QStringLiteral("homebrew:");

namespace json {

static QString baseName(const QString& name) { return name.section(u'/', -1); }

/// The installed names that one stanza gives. A "target" beside it is the place that brew itself came
/// to; one within the list renames the name before it; else a name in a subfolder of the download is
/// installed without that folder.
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

Decoded<InfoCask> Codec<InfoCask>::decode(const QJsonValue& value) {
    static constexpr auto list = fields(
        required("token", &InfoCask::token), defaulted("full_token", &InfoCask::fullToken),
        required("version", &InfoCask::version), optional("auto_updates", &InfoCask::autoUpdates));
    auto cask = decodeRecord<InfoCask>(value, list);
    if (!cask)
        return cask;
    for (const QJsonArray items = value[QLatin1StringView("artifacts")].toArray();
         const QJsonValue item : items)
        cask->artifacts.append(*Codec<CaskArtifact>::decode(item));
    return cask;
}

Decoded<InfoResponse> Codec<InfoResponse>::decode(const QJsonValue& value) {
    const QJsonValue casks = value[QLatin1StringView("casks")];
    if (!casks.isArray())
        return expected("an object with a list of casks");
    InfoResponse response;
    // One cask that makes no sense owns nothing; the others are none the worse for it.
    for (const QJsonArray items = casks.toArray(); const QJsonValue item : items)
        if (auto cask = json::decode<InfoCask>(item))
            response.casks.append(*std::move(cask));
    return response;
}

} // namespace json

template <typename Response>
static json::Decoded<Response> decodeListing(const QByteArray& output) {
    auto whole = json::decodeDocument<Response>(output);
    if (whole || output.trimmed().startsWith('{'))
        return whole;
    const qsizetype begin = output.indexOf("\n{");
    return begin < 0 ? whole : json::decodeDocument<Response>(output.sliced(begin + 1));
}

json::Decoded<InfoResponse> decodeInfo(const QByteArray& output) {
    return decodeListing<InfoResponse>(output);
}

json::Decoded<OutdatedResponse> decodeOutdated(const QByteArray& output) {
    return decodeListing<OutdatedResponse>(output);
}

DecodedCask decodedCask(const InfoCask& cask) {
    DecodedCask decoded{.token = cask.token,
                        .fullToken = cask.fullToken.isEmpty() ? cask.token : cask.fullToken,
                        .version = cask.version,
                        .autoUpdates = cask.autoUpdates.value_or(false)};
    for (const CaskArtifact& artifact : cask.artifacts) {
        decoded.appTargets += artifact.appTargets;
        decoded.suiteTargets += artifact.suiteTargets;
    }
    return decoded;
}

QString HomebrewCaskOwnership::fingerprint() const {
    return fingerprintPrefix + brewExecutablePath + u':' + catalogVersion;
}

bool isHomebrewFingerprint(const QString& fingerprint, const QStringList& discoveredExecutablePaths) {
    if (!fingerprint.startsWith(fingerprintPrefix))
        return false;
    const QStringView rest = QStringView(fingerprint).sliced(fingerprintPrefix.size());
    return discoveredExecutablePaths.isEmpty() ||
           std::ranges::any_of(discoveredExecutablePaths,
                               [&](const QString& path) { return rest.startsWith(path + u':'); });
}

AppUpdateStatus HomebrewCaskSnapshot::status(const DecodedCask& cask) const {
    // Of these Homebrew cannot tell what is installed.
    if (cask.autoUpdates || cask.version.compare(u"latest", Qt::CaseInsensitive) == 0)
        return UpdateUnsupported();
    const auto found = outdated.constFind(cask.token);
    if (found != outdated.constEnd())
        return UpdateAvailable{*found};
    return UpToDate();
}

std::optional<HomebrewCaskOwnership>
HomebrewCaskCheckResult::owner(const QString& resolvedAppPath) const {
    const auto ownership = [](const HomebrewCaskSnapshot& snapshot, qsizetype index) {
        const DecodedCask& cask = snapshot.casks[index];
        return HomebrewCaskOwnership{cask.token, snapshot.brewExecutablePath, cask.version,
                                     snapshot.status(cask)};
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
        const DecodedCask& cask = snapshot.casks.at(i);
        for (const QString& target : cask.appTargets)
            if (const QString path = place(target); !snapshot.exactMatches.contains(path))
                snapshot.exactMatches.insert(path, i);
        for (const QString& target : cask.suiteTargets)
            // Not every application of the folder in which all of them lie is a suite's.
            if (const QString root = place(target); root != u"/" && root != u"/Applications")
                snapshot.suiteMatches.append({root, i});
    }
}

} // namespace tessellar
