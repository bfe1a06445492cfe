// Each of the launcher's own JSON documents: what is read is written and read again as the same. Built
// once for each type, see CMakeLists.txt.

#include "fuzz/touch_all.h"
#include DOCUMENT_HEADER
#include "model/json.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto document = json::decodeDocument<DOCUMENT>(bytes);
    if (!document) {
        fuzz::require(!json::message(document.error()).isEmpty());
        return 0;
    }
    const QByteArray written = json::write(json::encode(*document));
    const auto again = json::decodeDocument<DOCUMENT>(written);
    fuzz::require(again && json::write(json::encode(*again)) == written);
    return 0;
}
