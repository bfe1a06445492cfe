#pragma once

#include "updates/web_update_checker.h"

namespace tessellar {

/// One entry of the store's answer. Versions are trimmed, and an empty one is missing.
struct CatalogItem {
    std::optional<qint64> trackId;
    std::optional<QString> version;
    std::optional<QString> trackViewUrl;
    std::optional<QString> bundleId;
    std::optional<QStringList> supportedDevices;
    std::optional<QString> artistName;
    std::optional<QString> sellerName;

    bool operator==(const CatalogItem&) const = default;
};

struct LookupResponse {
    QList<CatalogItem> results;
};

/// Asks the Mac App Store's public lookup service about applications that carry its receipt.
class AppStoreUpdateChecker final : public WebUpdateChecker {
public:
    using WebUpdateChecker::WebUpdateChecker;

    static inline const QString recordFingerprint = QStringLiteral("mac-app-store-v2");

    AppUpdateChannelKind kind() const override { return AppUpdateChannelKind::macAppStore; }
    std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const override;
    QString fingerprint(const AppUpdateCandidate&) const override { return recordFingerprint; }

    /// What a listing, if there is one, says of an installed application.
    static AppUpdateStatus verdict(const std::optional<CatalogItem>& item,
                                   const AppUpdateCandidate& candidate);
    static QUrl lookupUrl(const QString& base, qint64 itemIdentifier, const QString& region);
    static QUrl storePageUrl(const QString& base, qint64 itemIdentifier);

protected:
    std::expected<HttpRequest, AppUpdateStatus>
    request(const AppUpdateCandidate& candidate) const override;
    Judge judge() const override;
};

namespace json {

/// Named as a field's codec: trimmed text, which may turn out to be nothing.
struct TrimmedText {
    static Decoded<std::optional<QString>> decode(const QJsonValue& value);
    static QJsonValue encode(const QString& value) { return value; }
};

template <>
struct Fields<CatalogItem> {
    using I = CatalogItem;
    static constexpr auto list =
        fields(optional("trackId", &I::trackId), optional<TrimmedText>("version", &I::version),
               optional("trackViewUrl", &I::trackViewUrl), optional("bundleId", &I::bundleId),
               optional<Codec<QList<QString>>>("supportedDevices", &I::supportedDevices),
               optional("artistName", &I::artistName), optional("sellerName", &I::sellerName));
};
template <>
struct Fields<LookupResponse> {
    static constexpr auto list = fields(required("results", &LookupResponse::results));
};

} // namespace json
} // namespace tessellar
