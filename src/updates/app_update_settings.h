#pragma once

#include "platform/settings.h"

#include <QUrl>

#include <chrono>

namespace tessellar {

/// How often to check; values are in seconds.
enum class AppUpdateInterval : qint64 {
    sixHours = 21'600,
    daily = 86'400,
    threeDays = 259'200,
    weekly = 604'800,
};

/// The interval for a stored number; 0 means daily, nullopt if it is not an interval.
std::optional<AppUpdateInterval> appUpdateInterval(qint64 seconds);

/// Whether a base URL for the store is acceptable: https, or http on the loopback, without a query.
bool isStoreAddress(const QString& base);

struct AppUpdateSettings {
    static inline const QString enabledKey = QStringLiteral("appUpdates.enabled");
    static inline const QString intervalKey = QStringLiteral("appUpdates.intervalSeconds");
    /// Base URLs, to which paths are appended.
    static inline const QString storeLookupKey = QStringLiteral("appUpdates.storeLookupURL");
    static inline const QString storePageKey = QStringLiteral("appUpdates.storePageURL");

    bool enabled = true;
    AppUpdateInterval interval = AppUpdateInterval::daily;
    QString storeLookupBase; ///< without a trailing slash
    QString storePageBase;

    std::chrono::seconds period() const { return std::chrono::seconds(qToUnderlying(interval)); }
    bool operator==(const AppUpdateSettings&) const = default;
};

/// Missing or invalid values become defaults.
AppUpdateSettings readAppUpdateSettings(const Settings& settings);
/// Only whether checking is enabled: quick enough to be asked for each verdict.
bool isUpdateCheckingEnabled(const Settings& settings);

} // namespace tessellar
