#pragma once

#include "platform/settings.h"

#include <QUrl>

#include <chrono>

namespace tessellar {

/// How often installed applications are checked; the values are seconds.
enum class AppUpdateInterval : qint64 {
    sixHours = 21'600,
    daily = 86'400,
    threeDays = 259'200,
    weekly = 604'800,
};

/// The interval of a stored number: 0 is a day, and nothing comes of a number that is no interval.
std::optional<AppUpdateInterval> appUpdateInterval(qint64 seconds);

/// Whether the store can be asked at this base of addresses: https, or http on the loopback, without a
/// query.
bool isStoreAddress(const QString& base);

struct AppUpdateSettings {
    static inline const QString enabledKey = QStringLiteral("appUpdates.enabled");
    static inline const QString intervalKey = QStringLiteral("appUpdates.intervalSeconds");
    /// Bases of addresses, to which the path is appended.
    static inline const QString storeLookupKey = QStringLiteral("appUpdates.storeLookupURL");
    static inline const QString storePageKey = QStringLiteral("appUpdates.storePageURL");

    bool enabled = true;
    AppUpdateInterval interval = AppUpdateInterval::daily;
    QString storeLookupBase; ///< without a slash at its end
    QString storePageBase;

    std::chrono::seconds period() const { return std::chrono::seconds(qToUnderlying(interval)); }
    bool operator==(const AppUpdateSettings&) const = default;
};

/// A value that is missing, of the wrong type or out of range counts as its default.
AppUpdateSettings readAppUpdateSettings(const Settings& settings);

} // namespace tessellar
