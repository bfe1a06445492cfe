#pragma once

#include "updates/sparkle_feed.h"
#include "updates/web_update_checker.h"

namespace tessellar {

/// Reads the feeds that applications declare for updating themselves.
class SparkleUpdateChecker final : public WebUpdateChecker {
public:
    using WebUpdateChecker::WebUpdateChecker;

    static inline const QString recordFingerprint = QStringLiteral("sparkle-v2");
    static constexpr int rolloutGroups = 7;
    /// Feeds of five hundred releases with their notes in them have some megabytes.
    static constexpr std::int64_t maximumFeedBytes = 8 << 20;

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::sparkle; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate&) const override { return recordFingerprint; }
    /// The group of phased roll-outs is drawn once for a machine.
    void restore(const AppUpdateCache& cache) override;
    void keep(AppUpdateCache& cache) const override { cache.rolloutGroup = _rolloutGroup; }

    static AppUpdateVerdict verdict(const std::optional<SparkleItem>& best,
                                    const AppUpdateCandidate& candidate);

protected:
    /// A bundle without a feed, or with one at an address that is not secure, is unsupported.
    std::expected<HttpRequest, AppUpdateVerdict>
    request(const AppUpdateCandidate& candidate) const override;
    Judge judge() const override;

private:
    int _rolloutGroup = 0;
};

} // namespace tessellar
