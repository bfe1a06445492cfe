#include "updates/sparkle_update_checker.h"

#include "platform/property_list.h"
#include "updates/sparkle_version.h"

namespace tessellar {

std::optional<AppUpdateChannel>
SparkleUpdateChecker::channel(const AppUpdateCandidate& candidate) const {
    if (!candidate.sparkleFeedUrl && !candidate.hasSparkleFramework)
        return std::nullopt;
    return SparkleChannel{candidate.sparkleFeedUrl.value_or(QString())};
}

std::expected<HttpRequest, AppUpdateVerdict>
SparkleUpdateChecker::request(const AppUpdateCandidate& candidate) const {
    using enum AppUpdateReason::Code;
    const QUrl url(trimmed(candidate.sparkleFeedUrl.value_or(QString())));
    if (url.isEmpty())
        return std::unexpected(AppUpdateVerdict::unsupported(noFeed));
    if (!isAllowedAddress(url))
        return std::unexpected(AppUpdateVerdict::unsupported(noSecureAddress));
    return HttpRequest{.url = url, .maximumBytes = maximumFeedBytes, .maximumRedirects = 5};
}

static std::optional<QString> systemVersion(const FileSystem& files) {
    const auto bytes =
        files.read(QStringLiteral("/System/Library/CoreServices/SystemVersion.plist"), 64u << 10);
    const auto list = parsePropertyList(bytes.value_or(QByteArray()));
    return list ? (*list)[QStringLiteral("ProductVersion")].text() : std::nullopt;
}

AppUpdateVerdict SparkleUpdateChecker::verdict(const std::optional<SparkleItem>& best,
                                               const AppUpdateCandidate& candidate) {
    const QString build = trimmed(candidate.build.value_or(QString()));
    if (build.isEmpty()) // nothing to compare with
        return AppUpdateVerdict::unsupported(AppUpdateReason::Code::noInstalledVersion);
    if (!best || compareSparkle(best->version, build) <= 0)
        return {UpToDate()};
    // If the displayed versions are equal, the builds distinguish them.
    const bool isSameForPeople = best->shownVersion == candidate.version;
    AppUpdateVerdict update{UpdateAvailable{
        isSameForPeople ? QStringLiteral("%1 (%2)").arg(best->shownVersion, best->version)
                        : best->shownVersion}};
    if (!best->notes.isEmpty())
        update.notes = best->notes;
    return update;
}

WebUpdateChecker::Judge SparkleUpdateChecker::judge() const {
    return [&files = _machine.files, now = _machine.clock.now(), group = _rolloutGroup](
               const QByteArray& body, const QList<AppUpdateCandidate>& candidates) {
        const auto best = bestSparkleItem(
            body, {.systemVersion = systemVersion(files), .now = now, .rolloutGroup = group});
        QList<AppUpdateVerdict> verdicts;
        for (const AppUpdateCandidate& candidate : candidates)
            verdicts.append(best
                                ? verdict(*best, candidate)
                                : AppUpdateVerdict::failed({AppUpdateReason::Code::notUnderstood, {}}));
        return verdicts;
    };
}

void SparkleUpdateChecker::restore(const AppUpdateCache& cache) {
    _rolloutGroup = cache.rolloutGroup.value_or(-1);
    if (_rolloutGroup < 0 || _rolloutGroup >= rolloutGroups)
        _rolloutGroup = static_cast<int>(_machine.uuids.next().data1 % rolloutGroups);
}

} // namespace tessellar
