#pragma once

#include "updates/web_update_checker.h"

namespace tessellar {

/// Reads the feeds that applications declare for updating themselves.
class SparkleUpdateChecker final : public WebUpdateChecker {
public:
    using WebUpdateChecker::WebUpdateChecker;

    static inline const QString recordFingerprint = QStringLiteral("sparkle-v1");

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::sparkle; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate&) const override { return recordFingerprint; }

protected:
    /// A bundle without a feed, or with one at an address that is not secure, is unsupported.
    std::expected<HttpRequest, AppUpdateStatus>
    request(const AppUpdateCandidate& candidate) const override;
    Judge judge() const override;
};

} // namespace tessellar
