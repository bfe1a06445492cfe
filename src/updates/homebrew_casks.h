#pragma once

#include "platform/machine.h"
#include "updates/app_update_records.h"

#include <QHash>

namespace tessellar {

/// The applications in one element of a cask's artifacts, by name; relative to the base folder unless
/// they start with "/" or "~".
struct CaskArtifact {
    QStringList appTargets;
    QStringList suiteTargets;

    bool operator==(const CaskArtifact&) const = default;
};

/// An installed cask with the targets of all its artifacts.
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

/// A cask in the listing of outdated casks.
struct OutdatedCask {
    std::optional<QString> currentVersion; ///< nullopt if missing or implausible
    bool isPinned = false;

    bool operator==(const OutdatedCask&) const = default;
};
struct OutdatedResponse {
    QHash<QString, OutdatedCask> casks; ///< by token
};

/// Decode listings. Skip preceding warning lines and malformed elements, so that one cask cannot spoil
/// the others.
json::Decoded<InfoResponse> decodeInfo(const QByteArray& output);
json::Decoded<OutdatedResponse> decodeOutdated(const QByteArray& output);

/// The casks of one brew. Tables are keyed by standardized path with links resolved.
struct HomebrewCaskSnapshot {
    /// A suite's folder, whose applications all belong to the cask.
    struct Suite {
        QString rootPath;
        qsizetype cask = 0;
        bool operator==(const Suite&) const = default;
    };

    QString brewExecutablePath;
    QList<InstalledCask> casks;
    QHash<QString, qsizetype> exactMatches; ///< application path to index into `casks`
    QList<Suite> suiteMatches;              ///< in cask order
};

/// The verdict for an application, from the listing of outdated casks.
AppUpdateVerdict verdict(const HomebrewCaskOwnership& owner, const OutdatedResponse& outdated);

struct HomebrewCaskCheckResult {
    QList<HomebrewCaskSnapshot> snapshots; ///< of the brews that answered, in order
    QStringList failedExecutablePaths;     ///< found, but did not answer

    /// Exact matches of any brew take precedence over suites; then the first brew and its first cask.
    std::optional<HomebrewCaskOwnership> owner(const QString& resolvedAppPath) const;
};

/// Finds brew executables, without duplicates: under HOMEBREW_PREFIX, in PATH, and in the two standard
/// places.
QStringList findBrews(const FileSystem& files, const std::map<QByteArray, QByteArray>& environment);

/// Computes the snapshot's tables from its casks.
void buildMatches(const FileSystem& files, const QString& home, HomebrewCaskSnapshot& snapshot);

/// Parses the ownership from a record's fingerprint, without token and path.
std::optional<HomebrewCaskOwnership> ownershipOf(const QString& fingerprint);

namespace json {

/// Never fails: anything but applications and suites is empty.
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
