#pragma once

#include "model/json_unions.h"
#include "updates/app_update_reason.h"

#include <QHash>

namespace tessellar {

// Where version information for an application comes from; the order of the cases is the order in which
// they are tried.
struct HomebrewCaskChannel {
    QString token;
    bool operator==(const HomebrewCaskChannel&) const = default;
};
struct MacAppStoreChannel {
    qint64 itemIdentifier = 0;
    bool operator==(const MacAppStoreChannel&) const = default;
};
struct SparkleChannel {
    QString feedUrl; ///< empty where a bundle has the framework and names no feed
    bool operator==(const SparkleChannel&) const = default;
};
using AppUpdateChannel = std::variant<HomebrewCaskChannel, MacAppStoreChannel, SparkleChannel>;
enum class AppUpdateChannelKind { homebrewCask, macAppStore, sparkle };

inline AppUpdateChannelKind kindOf(const AppUpdateChannel& channel) {
    return static_cast<AppUpdateChannelKind>(channel.index());
}

// What the last check of an application came to.
struct UpToDate {
    bool operator==(const UpToDate&) const = default;
};
struct UpdateAvailable {
    QString latestVersion;
    bool operator==(const UpdateAvailable&) const = default;
};
struct UpdateUnsupported { ///< its channel cannot tell
    bool operator==(const UpdateUnsupported&) const = default;
};
struct UpdateCheckFailed {
    bool operator==(const UpdateCheckFailed&) const = default;
};
using AppUpdateStatus = std::variant<UpToDate, UpdateAvailable, UpdateUnsupported, UpdateCheckFailed>;

inline bool hasFailed(const AppUpdateStatus& status) {
    return std::holds_alternative<UpdateCheckFailed>(status);
}

/// What a release brings, in its maker's words.
struct AppUpdateNotes {
    QString text; ///< plain, on one line; empty for none
    QString url;  ///< of a page, at a secure address; empty for none

    bool isEmpty() const { return text.isEmpty() && url.isEmpty(); }
    bool operator==(const AppUpdateNotes&) const = default;
};

/// What a checker found out about one application.
struct AppUpdateVerdict {
    AppUpdateStatus status;
    std::optional<AppUpdateReason> reason; ///< of anything but a plain answer
    std::optional<AppUpdateNotes> notes;   ///< of an update

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
    std::optional<QString> sourceFingerprint; ///< the checker and its revision
    /// Beside a failure: what was known before of the same installed version. Present only then.
    std::optional<AppUpdateStatus> lastKnownStatus;
    std::optional<AppUpdateReason> reason; ///< why it failed, cannot tell, or is held back
    std::optional<AppUpdateNotes> notes;

    /// The status, or in place of a failure what is known from before.
    const AppUpdateStatus& knownStatus() const { return lastKnownStatus ? *lastKnownStatus : status; }
    bool operator==(const AppUpdateRecord&) const = default;
};

/// Which cask owns an application, as its brew last told.
struct HomebrewCaskOwnership {
    QString path; ///< of the application, links resolved: elsewhere it is another one
    QString token;
    QString brewExecutablePath;
    QString catalogVersion;
    bool updatesItself = false;

    /// "homebrew:", the executable's path, a colon and the catalog's version.
    QString fingerprint() const;
    bool operator==(const HomebrewCaskOwnership&) const = default;
};

/// What Spotlight said of the store's number of an application; none is an answer too.
struct StoreItem {
    QString bundle; ///< which bundle was asked about, see `AppUpdateCandidate::fingerprint`
    std::optional<qint64> identifier;
    Instant askedAt;

    bool operator==(const StoreItem&) const = default;
};

/// A channel that could not be asked as a whole, for one of its tools failed.
struct AppUpdateProblem {
    AppUpdateChannelKind channel = AppUpdateChannelKind::homebrewCask;
    AppUpdateReason reason;

    bool operator==(const AppUpdateProblem&) const = default;
};

/// What is kept in "app-updates.json".
struct AppUpdateCache {
    QMap<QString, AppUpdateRecord> records; ///< by app key
    std::optional<Instant> lastCheck;       ///< when a full check last came to something
    QList<AppUpdateProblem> problems;       ///< of the last full check
    /// By app key, what tools told of whose applications they are; absent until brews were asked once.
    std::optional<QMap<QString, HomebrewCaskOwnership>> owners;
    QMap<QString, StoreItem> storeItems;
    /// By app key, the version that the user does not want to hear of, or `everyVersion`.
    QMap<QString, QString> skipped;
    /// In which of the seven groups of phased roll-outs this machine is.
    std::optional<int> rolloutGroup;

    static inline const QString everyVersion = QStringLiteral("*");

    /// Applications are known by other keys now: all that is kept by key goes along. False when there
    /// is nothing of theirs.
    bool changeKeys(const QHash<QString, QString>& changedKeys);

    bool operator==(const AppUpdateCache&) const = default;
};

/// By app key: plain values, for those who show or sort by them.
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
/// Tables that hold nothing are left out.
template <>
struct Codec<AppUpdateCache> {
    static Decoded<AppUpdateCache> decode(const QJsonValue& value);
    static QJsonValue encode(const AppUpdateCache& cache);
};

} // namespace json
} // namespace tessellar
