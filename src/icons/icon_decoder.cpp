#include "icons/icon_decoder.h"

#include "icons/icns_file.h"

namespace tessellar {

qsizetype QtIconDecoder::imageCount(const QByteArray& icns) const {
    const auto file = IcnsFile::parse(icns);
    return file ? file->entries().size() : 0;
}

QImage QtIconDecoder::image(const QByteArray& icns, qsizetype index) const {
    const auto file = IcnsFile::parse(icns);
    if (!file || index < 0 || index >= file->entries().size())
        return {};
    return IcnsFile::decode(file->entries()[index]);
}

QImage QtIconDecoder::bestImage(const QByteArray& icns, int wantedSide) const {
    const auto file = IcnsFile::parse(icns);
    return file ? file->image(wantedSide) : QImage();
}

} // namespace tessellar
