#pragma once

#include "platform/machine.h"
#include "updates/app_update_records.h"

#include <QHash>

namespace tessellar {

/// One element of a cask's artifacts, as far as it puts applications on the disk: names as the listing
/// gives them, relative to the base folder unless they begin with "/" or "~".
struct CaskArtifact {
    QStringList appTargets;
    QStringList suiteTargets;

    bool operator==(const CaskArtifact&) const = default;
};

/// A cask of the installed listing, with all its targets together.
struct InstalledCask {
    QString token;
    QString version;
    bool updatesItself = false; ///< "auto_updates"
    QStringList appTargets;
    QStringList suiteTargets;

    bool operator==(const InstalledCask&) const = default;
};
struct InfoResponse {
    QList<InstalledCask> casks;
};

/// A cask of the listing of what is outdated.
struct OutdatedCask {
    std::optional<QString> currentVersion; ///< none where the listing gives no version that can be one
    bool isPinned = false;

    bool operator==(const OutdatedCask&) const = default;
};
struct OutdatedResponse {
    QHash<QString, OutdatedCask> casks; ///< by token
};

/// A listing decoded. Warnings that stand on lines before it are passed over, and so is an element that
/// makes no sense: one cask costs the others nothing.
json::Decoded<InfoResponse> decodeInfo(const QByteArray& output);
json::Decoded<OutdatedResponse> decodeOutdated(const QByteArray& output);

/// What one brew tells of its casks. Tables by standardized path with links resolved.
struct HomebrewCaskSnapshot {
    /// A folder of a suite; every application in it is the cask's.
    struct Suite {
        QString rootPath;
        qsizetype cask = 0;
        bool operator==(const Suite&) const = default;
    };

    QString brewExecutablePath;
    QList<InstalledCask> casks;
    QHash<QString, qsizetype> exactMatches; ///< application path to index of the cask
    QList<Suite> suiteMatches;              ///< in the order of the casks
};

/// What the listing of outdated casks says of an application.
AppUpdateVerdict verdict(const HomebrewCaskOwnership& owner, const OutdatedResponse& outdated);

struct HomebrewCaskCheckResult {
    QList<HomebrewCaskSnapshot> snapshots; ///< of the brews that answered, in their order
    QStringList failedExecutablePaths;     ///< were found, but have not answered

    /// Exact matches of any brew go before suites; then the first brew and its first cask count.
    std::optional<HomebrewCaskOwnership> owner(const QString& resolvedAppPath) const;
};

/// The executables that are brews, each once even when it is reached by several paths: under
/// HOMEBREW_PREFIX, along PATH, and in the two usual places.
QStringList findBrews(const FileSystem& files, const std::map<QByteArray, QByteArray>& environment);

/// Fills the tables of a snapshot from its casks.
void buildMatches(const FileSystem& files, const QString& home, HomebrewCaskSnapshot& snapshot);

/// What a record of Homebrew's tells of its application's cask: all but the token and the place.
std::optional<HomebrewCaskOwnership> ownershipOf(const QString& fingerprint);

namespace json {

/// Never fails: what is no application and no suite is empty.
template <>
struct Codec<CaskArtifact> {
    static Decoded<CaskArtifact> decode(const QJsonValue& value);
};
template <>
struct Codec<InstalledCask> {
    static Decoded<InstalledCask> decode(const QJsonValue& value);
};
template <>
struct Codec<InfoResponse> {
    static Decoded<InfoResponse> decode(const QJsonValue& value);
};
template <>
struct Codec<OutdatedResponse> {
    static Decoded<OutdatedResponse> decode(const QJsonValue& value);
};

} // namespace json
} // namespace tessellar
