#pragma once

#include "model/json_unions.h"

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

struct AppUpdateRecord {
    AppUpdateStatus status;
    Instant checkedAt;
    std::optional<QString> installedVersion;
    std::optional<QString> sourceFingerprint; ///< the checker and its revision
    /// Beside a failure: what was known before of the same installed version. Present only then.
    std::optional<AppUpdateStatus> lastKnownStatus;

    /// The status, or in place of a failure what is known from before.
    const AppUpdateStatus& knownStatus() const { return lastKnownStatus ? *lastKnownStatus : status; }
    bool operator==(const AppUpdateRecord&) const = default;
};

/// What is kept in "app-updates.json".
struct AppUpdateCache {
    QMap<QString, AppUpdateRecord> records; ///< by app key
    std::optional<Instant> lastCheck;       ///< when a full check was last completed

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
struct Fields<AppUpdateRecord> {
    using R = AppUpdateRecord;
    static constexpr auto list =
        fields(required("status", &R::status), required("checkedAt", &R::checkedAt),
               optional("installedVersion", &R::installedVersion),
               optional("sourceFingerprint", &R::sourceFingerprint),
               optional("lastKnownStatus", &R::lastKnownStatus));
};
template <>
struct Fields<AppUpdateCache> {
    static constexpr auto list = fields(defaulted("records", &AppUpdateCache::records),
                                        optional("lastCheck", &AppUpdateCache::lastCheck));
};

} // namespace json
} // namespace tessellar
