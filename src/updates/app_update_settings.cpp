#include "updates/app_update_settings.h"

#include "platform/http.h"

namespace tessellar {

std::optional<AppUpdateInterval> appUpdateInterval(qint64 seconds) {
    using enum AppUpdateInterval;
    if (seconds == 0)
        return daily;
    for (const AppUpdateInterval interval : {sixHours, daily, threeDays, weekly})
        if (seconds == qToUnderlying(interval))
            return interval;
    return std::nullopt;
}

bool isStoreAddress(const QString& base) {
    const QUrl url(base, QUrl::StrictMode);
    return isAllowedAddress(url) && !url.hasQuery() && !url.hasFragment();
}

static QString base(const Settings& settings, const QString& key, const QString& usual) {
    QString text = settings.text(key).value_or(usual);
    if (!isStoreAddress(text))
        return usual;
    while (text.endsWith(u'/'))
        text.chop(1);
    return text;
}

bool isUpdateCheckingEnabled(const Settings& settings) {
    return settings.boolean(AppUpdateSettings::enabledKey).value_or(true);
}

AppUpdateSettings readAppUpdateSettings(const Settings& settings) {
    using S = AppUpdateSettings;
    return {.enabled = isUpdateCheckingEnabled(settings),
            .interval = appUpdateInterval(settings.integer(S::intervalKey).value_or(0))
                            .value_or(AppUpdateInterval::daily),
            .storeLookupBase =
                base(settings, S::storeLookupKey, QStringLiteral("https://itunes.apple.com")),
            .storePageBase = base(settings, S::storePageKey, QStringLiteral("https://apps.apple.com"))};
}

} // namespace tessellar
