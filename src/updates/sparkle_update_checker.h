#pragma once

#include "updates/sparkle_feed.h"
#include "updates/web_update_checker.h"

namespace tessellar {

/// Reads the update feeds that applications declare.
class SparkleUpdateChecker final : public WebUpdateChecker {
public:
    using WebUpdateChecker::WebUpdateChecker;

    static inline const QString recordFingerprint = QStringLiteral("sparkle-v2");
    static constexpr int rolloutGroups = 7;
    /// Feeds with five hundred releases and their notes take several megabytes.
    static constexpr std::int64_t maximumFeedBytes = 8 << 20;

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::sparkle; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate&) const override { return recordFingerprint; }
    /// The phased roll-out group is chosen once per machine.
    void restore(const AppUpdateCache& cache) override;
    void keep(AppUpdateCache& cache) const override { cache.rolloutGroup = _rolloutGroup; }

    static AppUpdateVerdict verdict(const std::optional<SparkleItem>& best,
                                    const AppUpdateCandidate& candidate);

protected:
    /// Without a feed, or if its address is not secure, the application is unsupported.
    std::expected<HttpRequest, AppUpdateVerdict>
    request(const AppUpdateCandidate& candidate) const override;
    Judge judge() const override;

private:
    int _rolloutGroup = 0;
};

} // namespace tessellar
