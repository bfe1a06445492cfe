#include "updates/app_store_update_checker.h"

#include "updates/app_update_settings.h"

#include <QUrlQuery>

#include <algorithm>

namespace tessellar {

json::Decoded<std::optional<QString>> json::TrimmedText::decode(const QJsonValue& value) {
    if (!value.isString())
        return expected("a string");
    const QString text = trimmed(value.toString());
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

std::optional<AppUpdateChannel>
AppStoreUpdateChecker::channel(const AppUpdateCandidate& candidate) const {
    if (!candidate.hasStoreReceipt || !candidate.storeItemIdentifier)
        return std::nullopt;
    return MacAppStoreChannel{*candidate.storeItemIdentifier};
}

AppUpdateStatus AppStoreUpdateChecker::verdict(const std::optional<CatalogItem>& item,
                                               const AppUpdateCandidate& candidate) {
    if (!item)
        return UpdateCheckFailed();
    if (item->bundleId && candidate.bundleIdentifier &&
        item->bundleId->compare(*candidate.bundleIdentifier, Qt::CaseInsensitive) != 0)
        return UpdateCheckFailed();
    if (candidate.isNativeMacApp && item->supportedDevices && !item->supportedDevices->isEmpty()) {
        const auto isMac = [](const QString& device) {
            return device.contains(u"MacDesktop", Qt::CaseInsensitive);
        };
        // A listing without a Mac says nothing of a Mac's build, and one that is shared between a Mac
        // and other devices may give the other devices' version: neither is trusted.
        if (!std::ranges::all_of(*item->supportedDevices, isMac))
            return UpdateUnsupported();
    }
    const QString installed = trimmed(candidate.version.value_or(QString()));
    if (item->version && !installed.isEmpty() && compareNumeric(*item->version, installed) > 0)
        return UpdateAvailable{*item->version};
    return UpToDate();
}

QUrl AppStoreUpdateChecker::lookupUrl(const QString& base, qint64 itemIdentifier,
                                      const QString& region) {
    QUrl url(base + QLatin1StringView("/lookup"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("id"), QString::number(itemIdentifier));
    query.addQueryItem(QStringLiteral("entity"), QStringLiteral("macSoftware"));
    query.addQueryItem(QStringLiteral("country"), region.isEmpty() ? QStringLiteral("US") : region);
    url.setQuery(query);
    return url;
}

QUrl AppStoreUpdateChecker::storePageUrl(const QString& base, qint64 itemIdentifier) {
    return QUrl(base + QLatin1StringView("/app/id") + QString::number(itemIdentifier));
}

std::expected<HttpRequest, AppUpdateStatus>
AppStoreUpdateChecker::request(const AppUpdateCandidate& candidate) const {
    if (!candidate.storeItemIdentifier)
        return std::unexpected(UpdateCheckFailed());
    return HttpRequest{.url = lookupUrl(readAppUpdateSettings(_machine.settings).storeLookupBase,
                                        *candidate.storeItemIdentifier, _machine.locale.region())};
}

WebUpdateChecker::Judge AppStoreUpdateChecker::judge() const {
    return [](const HttpClient::Answer& answer, const QList<AppUpdateCandidate>& candidates) {
        QList<AppUpdateStatus> statuses(candidates.size(), UpdateCheckFailed());
        if (!answer || answer->status != 200)
            return statuses;
        const auto response = json::decodeDocument<LookupResponse>(answer->body);
        if (!response || response->results.isEmpty())
            return statuses;
        for (qsizetype i = 0; i < candidates.size(); ++i)
            statuses[i] = verdict(response->results.first(), candidates[i]);
        return statuses;
    };
}

} // namespace tessellar
