#include "updates/sparkle_update_checker.h"

#include "platform/property_list.h"
#include "updates/sparkle_feed.h"

namespace tessellar {

std::optional<AppUpdateChannel>
SparkleUpdateChecker::channel(const AppUpdateCandidate& candidate) const {
    if (!candidate.sparkleFeedUrl && !candidate.hasSparkleFramework)
        return std::nullopt;
    return SparkleChannel{candidate.sparkleFeedUrl.value_or(QString())};
}

std::expected<HttpRequest, AppUpdateStatus>
SparkleUpdateChecker::request(const AppUpdateCandidate& candidate) const {
    const QUrl url(trimmed(candidate.sparkleFeedUrl.value_or(QString())));
    if (!isAllowedAddress(url))
        return std::unexpected(UpdateUnsupported());
    return HttpRequest{.url = url, .maximumRedirects = 5};
}

static std::optional<QString> systemVersion(const FileSystem& files) {
    const auto bytes =
        files.read(QStringLiteral("/System/Library/CoreServices/SystemVersion.plist"), 64u << 10);
    const auto list = parsePropertyList(bytes.value_or(QByteArray()));
    return list ? (*list)[QStringLiteral("ProductVersion")].text() : std::nullopt;
}

static AppUpdateStatus verdict(const std::optional<SparkleItem>& best,
                               const AppUpdateCandidate& candidate) {
    const QString build = trimmed(candidate.build.value_or(QString()));
    if (build.isEmpty())
        return UpdateUnsupported(); // there is nothing to compare with
    if (best && compareNumeric(best->version, build) > 0)
        return UpdateAvailable{best->shownVersion};
    return UpToDate();
}

WebUpdateChecker::Judge SparkleUpdateChecker::judge() const {
    return [&files = _machine.files](const HttpClient::Answer& answer,
                                     const QList<AppUpdateCandidate>& candidates) {
        QList<AppUpdateStatus> statuses(candidates.size(), UpdateCheckFailed());
        if (!answer || answer->status != 200)
            return statuses;
        const auto best = bestSparkleItem(answer->body, systemVersion(files));
        for (qsizetype i = 0; best && i < candidates.size(); ++i)
            statuses[i] = verdict(*best, candidates[i]);
        return statuses;
    };
}

} // namespace tessellar
