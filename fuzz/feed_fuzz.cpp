// A feed of releases.

#include "fuzz/touch_all.h"
#include "updates/sparkle_feed.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const SparkleCircumstances circumstances{
        .systemVersion = QStringLiteral("14.5"), .now = Instant{800'000'000}, .rolloutGroup = 3};
    const auto item = bestSparkleItem(bytes, circumstances);
    if (item && *item)
        fuzz::require(!(*item)->version.isEmpty());
    return 0;
}
