#pragma once

#include "updates/tool_lanes.h"
#include "updates/web_update_checker.h"

namespace tessellar {

/// The fields used of one entry in the store's answer. Versions are trimmed, empty ones absent; values
/// of the wrong type count as absent.
struct CatalogItem {
    std::optional<QString> version;
    std::optional<QString> bundleId;
    std::optional<QStringList> supportedDevices;
    std::optional<QString> releaseNotes;
    std::optional<QString> trackViewUrl;

    bool operator==(const CatalogItem&) const = default;
};

/// The first entry of an answer, nullopt if there is none; an error if the answer is malformed.
std::expected<std::optional<CatalogItem>, AppUpdateReason::Code>
firstCatalogItem(const QByteArray& answer);

/// Parses Spotlight's value of "kMDItemAppStoreAdamID": a positive integer, possibly as text with a
/// sign; otherwise nullopt.
std::optional<qint64> storeItemIdentifier(const QByteArray& spotlightAnswer);

/// Queries the Mac App Store's public lookup service about applications with a store receipt. Spotlight
/// provides each bundle's item identifier, once.
class AppStoreUpdateChecker final : public WebUpdateChecker {
public:
    AppStoreUpdateChecker(Machine& machine, ToolLanes& lanes)
        : WebUpdateChecker(machine), _lanes(lanes) {}

    static inline const QString recordFingerprint = QStringLiteral("mac-app-store-v2");
    static constexpr std::chrono::seconds spotlightTimeout{10};

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::macAppStore; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate&) const override { return recordFingerprint; }
    [[nodiscard]] std::unique_ptr<AppUpdateWork> discover(const QList<AppUpdateCandidate>& candidates,
                                                          AppUpdateSink sink) override;
    void restore(const AppUpdateCache& cache) override { _items = cache.storeItems; }
    void keep(AppUpdateCache& cache) const override { cache.storeItems = _items; }

    /// The verdict for an installed application, given its listing, if any.
    static AppUpdateVerdict verdict(const std::optional<CatalogItem>& item,
                                    const AppUpdateCandidate& candidate);
    static QUrl lookupUrl(const QString& base, qint64 itemIdentifier, const QString& region);
    static QUrl storePageUrl(const QString& base, qint64 itemIdentifier);

protected:
    std::expected<HttpRequest, AppUpdateVerdict>
    request(const AppUpdateCandidate& candidate) const override;
    Judge judge() const override;
    bool isThrottling(int httpStatus) const override {
        return httpStatus == 403 || WebUpdateChecker::isThrottling(httpStatus);
    }

private:
    class Discovery;

    const StoreItem* item(const AppUpdateCandidate& candidate) const;

    ToolLanes& _lanes;
    QMap<QString, StoreItem> _items; ///< by app key
};

} // namespace tessellar
