#include "fuzz/touch_all.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Limits that short inputs can reach.
    const PropertyListLimits limits{.bytes = 1u << 20, .depth = 40, .nodes = 5'000};
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto list = parsePropertyList(bytes, limits);
    if (!list)
        return 0;
    fuzz::require(fuzz::touchAll(*list) <= limits.nodes + 3);
    // What fits the narrow limits is read the same under wide ones. NaN differs from itself.
    const auto again = parsePropertyList(bytes);
    fuzz::require(again && fuzz::touchAll(*again) == fuzz::touchAll(*list));
    const PropertyValue::Dictionary entries = list->dictionary();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (!entry.key().contains(QChar::ReplacementCharacter))
            fuzz::require((*list)[entry.key()].isAbsent() == entry.value().isAbsent());
    }
    return 0;
}
