#include "fuzz/touch_all.h"
#include "platform/strings_file.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    fuzz::touchAll(readStringsFile(bytes));
    return 0;
}
