#include "fuzz/touch_all.h"
#include "platform/alias_file.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto target =
        aliasTarget(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    // A target is an absolute path that names its components and never climbs.
    fuzz::require(!target ||
                  (target->startsWith(u'/') && FileSystem::standardized(*target) == *target));
    return 0;
}
