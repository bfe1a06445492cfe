// An icon file, with the images in it.

#include "fuzz/touch_all.h"
#include "icons/icns_file.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto file = IcnsFile::parse(bytes);
    if (!file)
        return 0;
    fuzz::require(file->entries().size() <= IcnsFile::maximumEntries);
    for (const IcnsFile::Entry& entry : file->entries()) {
        const QImage image = IcnsFile::decode(entry);
        fuzz::require(image.isNull() || (image.width() <= IcnsFile::maximumSide &&
                                         image.height() <= IcnsFile::maximumSide));
    }
    (void)file->image(128);
    return 0;
}
