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

/// A cask of the installed listing.
struct InfoCask {
    QString token;
    QString fullToken;
    QString version;
    std::optional<bool> autoUpdates;
    QList<CaskArtifact> artifacts;
};
struct InfoResponse {
    QList<InfoCask> casks;
};

struct OutdatedCask {
    QString name; ///< the cask's token
    QString currentVersion;
};
struct OutdatedResponse {
    QList<OutdatedCask> casks;
};

/// A cask with all its targets together.
struct DecodedCask {
    QString token;
    QString fullToken;
    QString version;
    bool autoUpdates = false;
    QStringList appTargets;
    QStringList suiteTargets;

    bool operator==(const DecodedCask&) const = default;
};

DecodedCask decodedCask(const InfoCask& cask);

/// The JSON of a listing decoded; a banner that stands on lines before it is passed over.
json::Decoded<InfoResponse> decodeInfo(const QByteArray& output);
json::Decoded<OutdatedResponse> decodeOutdated(const QByteArray& output);

/// Which cask owns an application.
struct HomebrewCaskOwnership {
    QString token;
    QString brewExecutablePath;
    QString catalogVersion;
    AppUpdateStatus status;

    /// "homebrew:", the executable's path, a colon and the catalog's version.
    QString fingerprint() const;
    bool operator==(const HomebrewCaskOwnership&) const = default;
};

/// What one brew tells of its casks. Tables by standardized path with links resolved.
struct HomebrewCaskSnapshot {
    /// A folder of a suite; every application in it is the cask's.
    struct Suite {
        QString rootPath;
        qsizetype cask = 0;
        bool operator==(const Suite&) const = default;
    };

    QString brewExecutablePath;
    QList<DecodedCask> casks;
    QHash<QString, qsizetype> exactMatches; ///< application path to index of the cask
    QList<Suite> suiteMatches;              ///< in the order of the casks
    QHash<QString, QString> outdated;       ///< token to the newest version

    AppUpdateStatus status(const DecodedCask& cask) const;
};

struct HomebrewCaskCheckResult {
    QList<HomebrewCaskSnapshot> snapshots; ///< of the brews that answered, in their order
    QStringList discoveredExecutablePaths;
    QStringList failedExecutablePaths; ///< were found, but a command of theirs failed

    /// Exact matches of any brew go before suites; then the first brew and its first cask count.
    std::optional<HomebrewCaskOwnership> owner(const QString& resolvedAppPath) const;
};

/// The executables that are brews, each once even when it is reached by several paths: under
/// HOMEBREW_PREFIX, along PATH, and in the two usual places.
QStringList findBrews(const FileSystem& files, const std::map<QByteArray, QByteArray>& environment);

/// Fills the tables of a snapshot from its casks.
void buildMatches(const FileSystem& files, const QString& home, HomebrewCaskSnapshot& snapshot);

/// True for a record of Homebrew's: its fingerprint begins with "homebrew:" and, when brews were found,
/// goes on with the path of one of them and a colon.
bool isHomebrewFingerprint(const QString& fingerprint, const QStringList& discoveredExecutablePaths);

namespace json {

/// Never fails: what is no application and no suite is empty.
template <>
struct Codec<CaskArtifact> {
    static Decoded<CaskArtifact> decode(const QJsonValue& value);
};
template <>
struct Codec<InfoCask> {
    static Decoded<InfoCask> decode(const QJsonValue& value);
};
template <>
struct Codec<InfoResponse> {
    static Decoded<InfoResponse> decode(const QJsonValue& value);
};
template <>
struct Fields<OutdatedCask> {
    static constexpr auto list = fields(required("name", &OutdatedCask::name),
                                        required("current_version", &OutdatedCask::currentVersion));
};
template <>
struct Fields<OutdatedResponse> {
    static constexpr auto list = fields(required("casks", &OutdatedResponse::casks));
};

} // namespace json
} // namespace tessellar
