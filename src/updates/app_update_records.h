#pragma once

#include "model/json_unions.h"
#include "updates/app_update_reason.h"

#include <QHash>

namespace tessellar {

// Sources of version information, in order of precedence.
struct HomebrewCaskChannel {
    QString token;
    bool operator==(const HomebrewCaskChannel&) const = default;
};
struct MacAppStoreChannel {
    qint64 itemIdentifier = 0;
    bool operator==(const MacAppStoreChannel&) const = default;
};
struct SparkleChannel {
    QString feedUrl; ///< empty if the bundle has the framework but declares no feed
    bool operator==(const SparkleChannel&) const = default;
};
using AppUpdateChannel = std::variant<HomebrewCaskChannel, MacAppStoreChannel, SparkleChannel>;
enum class AppUpdateChannelKind { homebrewCask, macAppStore, sparkle };

inline AppUpdateChannelKind kindOf(const AppUpdateChannel& channel) {
    return static_cast<AppUpdateChannelKind>(channel.index());
}

// Results of an application's last check.
struct UpToDate {
    bool operator==(const UpToDate&) const = default;
};
struct UpdateAvailable {
    QString latestVersion;
    bool operator==(const UpdateAvailable&) const = default;
};
struct UpdateUnsupported { ///< the channel cannot tell
    bool operator==(const UpdateUnsupported&) const = default;
};
struct UpdateCheckFailed {
    bool operator==(const UpdateCheckFailed&) const = default;
};
using AppUpdateStatus = std::variant<UpToDate, UpdateAvailable, UpdateUnsupported, UpdateCheckFailed>;

inline bool hasFailed(const AppUpdateStatus& status) {
    return std::holds_alternative<UpdateCheckFailed>(status);
}

/// The release notes.
struct AppUpdateNotes {
    QString text; ///< plain text on one line; may be empty
    QString url;  ///< of a web page, https; may be empty

    bool isEmpty() const { return text.isEmpty() && url.isEmpty(); }
    bool operator==(const AppUpdateNotes&) const = default;
};

/// A checker's result for one application.
struct AppUpdateVerdict {
    AppUpdateStatus status;
    std::optional<AppUpdateReason> reason; ///< unless the answer is plain
    std::optional<AppUpdateNotes> notes;   ///< for an available update

    AppUpdateVerdict() = default;
    AppUpdateVerdict(AppUpdateStatus found) : status(std::move(found)) {} // NOLINT: meant to convert
    static AppUpdateVerdict failed(AppUpdateReason reason) {
        AppUpdateVerdict verdict(UpdateCheckFailed{});
        verdict.reason = std::move(reason);
        return verdict;
    }
    static AppUpdateVerdict unsupported(AppUpdateReason::Code code) {
        AppUpdateVerdict verdict(UpdateUnsupported{});
        verdict.reason = AppUpdateReason{code, {}};
        return verdict;
    }
    bool operator==(const AppUpdateVerdict&) const = default;
};

struct AppUpdateRecord {
    AppUpdateStatus status;
    Instant checkedAt;
    std::optional<QString> installedVersion;
    std::optional<QString> installedBuild;
    std::optional<QString> sourceFingerprint; ///< identifies the checker and its revision
    /// Only with a failure: the previous status of the same installed version.
    std::optional<AppUpdateStatus> lastKnownStatus;
    std::optional<AppUpdateReason> reason; ///< why it failed, cannot tell, or is held back
    std::optional<AppUpdateNotes> notes;

    /// The status, or the last known one if the check failed.
    const AppUpdateStatus& knownStatus() const { return lastKnownStatus ? *lastKnownStatus : status; }
    bool operator==(const AppUpdateRecord&) const = default;
};

/// The cask that owns an application, as last reported by its brew.
struct HomebrewCaskOwnership {
    QString path; ///< of the application, links resolved; elsewhere it is a different one
    QString token;
    QString brewExecutablePath;
    QString catalogVersion;
    bool updatesItself = false;

    /// "homebrew:", the executable's path, a colon and the catalog's version.
    QString fingerprint() const;
    bool operator==(const HomebrewCaskOwnership&) const = default;
};

/// Spotlight's answer for an application's store identifier, which may be none.
struct StoreItem {
    QString bundle; ///< the bundle's fingerprint, see `AppUpdateCandidate::fingerprint`
    std::optional<qint64> identifier;
    Instant askedAt;

    bool operator==(const StoreItem&) const = default;
};

/// A channel that could not be queried because one of its tools failed.
struct AppUpdateProblem {
    AppUpdateChannelKind channel = AppUpdateChannelKind::homebrewCask;
    AppUpdateReason reason;

    bool operator==(const AppUpdateProblem&) const = default;
};

/// The contents of "app-updates.json".
struct AppUpdateCache {
    QMap<QString, AppUpdateRecord> records; ///< by app key
    std::optional<Instant> lastCheck;       ///< the last full check with a result
    QList<AppUpdateProblem> problems;       ///< of the last full check
    /// Cask owners by app key; nullopt until brews have been asked.
    std::optional<QMap<QString, HomebrewCaskOwnership>> owners;
    QMap<QString, StoreItem> storeItems;
    /// The skipped version by app key, or `everyVersion`.
    QMap<QString, QString> skipped;
    /// This machine's group, of seven, for phased roll-outs.
    std::optional<int> rolloutGroup;

    static inline const QString everyVersion = QStringLiteral("*");

    /// Applies changed app keys to all tables; false if nothing changed.
    bool changeKeys(const QHash<QString, QString>& changedKeys);

    bool operator==(const AppUpdateCache&) const = default;
};

/// By app key.
using AppUpdateStatuses = QHash<QString, AppUpdateStatus>;

namespace json {

template <>
struct RawValues<AppUpdateChannelKind> : EnumeratorNames<AppUpdateChannelKind::sparkle> {};
template <>
struct Cases<AppUpdateChannel> {
    static constexpr std::array<const char*, 3> names{"homebrewCask", "macAppStore", "sparkle"};
};
template <>
struct Fields<HomebrewCaskChannel> {
    static constexpr auto list = fields(required("token", &HomebrewCaskChannel::token));
};
template <>
struct Fields<MacAppStoreChannel> {
    static constexpr auto list =
        fields(required("itemIdentifier", &MacAppStoreChannel::itemIdentifier));
};
template <>
struct Fields<SparkleChannel> {
    static constexpr auto list = fields(required("feedURL", &SparkleChannel::feedUrl));
};

template <>
struct Cases<AppUpdateStatus> {
    static constexpr std::array<const char*, 4> names{"upToDate", "updateAvailable", "unsupported",
                                                      "failed"};
};
template <>
struct Fields<UpToDate> {
    static constexpr auto list = fields();
};
template <>
struct Fields<UpdateAvailable> {
    static constexpr auto list = fields(required("latestVersion", &UpdateAvailable::latestVersion));
};
template <>
struct Fields<UpdateUnsupported> {
    static constexpr auto list = fields();
};
template <>
struct Fields<UpdateCheckFailed> {
    static constexpr auto list = fields();
};

template <>
struct Fields<AppUpdateNotes> {
    static constexpr auto list =
        fields(defaulted("text", &AppUpdateNotes::text), defaulted("url", &AppUpdateNotes::url));
};
template <>
struct Fields<AppUpdateRecord> {
    using R = AppUpdateRecord;
    static constexpr auto list =
        fields(required("status", &R::status), required("checkedAt", &R::checkedAt),
               optional("installedVersion", &R::installedVersion),
               optional("installedBuild", &R::installedBuild),
               optional("sourceFingerprint", &R::sourceFingerprint),
               optional("lastKnownStatus", &R::lastKnownStatus), optional("reason", &R::reason),
               optional("notes", &R::notes));
};
template <>
struct Fields<HomebrewCaskOwnership> {
    using O = HomebrewCaskOwnership;
    static constexpr auto list =
        fields(required("path", &O::path), required("token", &O::token),
               required("brew", &O::brewExecutablePath), required("version", &O::catalogVersion),
               defaulted("updatesItself", &O::updatesItself));
};
template <>
struct Fields<StoreItem> {
    static constexpr auto list =
        fields(required("bundle", &StoreItem::bundle), optional("identifier", &StoreItem::identifier),
               required("askedAt", &StoreItem::askedAt));
};
template <>
struct Fields<AppUpdateProblem> {
    static constexpr auto list = fields(required("channel", &AppUpdateProblem::channel),
                                        required("reason", &AppUpdateProblem::reason));
};
/// Omits empty tables.
template <>
struct Codec<AppUpdateCache> {
    static Decoded<AppUpdateCache> decode(const QJsonValue& value);
    static QJsonValue encode(const AppUpdateCache& cache);
};

} // namespace json
} // namespace tessellar
