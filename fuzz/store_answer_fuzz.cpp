// What the store and Spotlight answer about an application.

#include "fuzz/touch_all.h"
#include "updates/app_store_update_checker.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto item = firstCatalogItem(bytes); item && *item) {
        const AppUpdateCandidate candidate{.appKey = QStringLiteral("org.example.fern"),
                                           .path = QStringLiteral("/Applications/Fern.app")};
        (void)AppStoreUpdateChecker::verdict(*item, candidate);
        fuzz::require(!(*item)->version || !(*item)->version->isEmpty());
    }
    const auto identifier = storeItemIdentifier(bytes);
    fuzz::require(!identifier || *identifier > 0);
    return 0;
}
