// What `brew` lists. The first byte says which of the two listings it is.

#include "fuzz/touch_all.h"
#include "updates/homebrew_casks.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
    if (data[0] % 2 == 0) {
        if (const auto outdated = decodeOutdated(bytes))
            for (const OutdatedCask& cask : outdated->casks)
                fuzz::require(!cask.currentVersion || !cask.currentVersion->isEmpty());
        return 0;
    }
    const auto info = decodeInfo(bytes);
    if (!info)
        return 0;
    static const FileSystem files(QStringLiteral("/nonexistent"));
    HomebrewCaskSnapshot snapshot{.casks = info->casks};
    buildMatches(files, QStringLiteral("/Users/ada"), snapshot);
    for (const qsizetype cask : std::as_const(snapshot.exactMatches))
        fuzz::require(cask >= 0 && cask < snapshot.casks.size());
    for (const auto& suite : std::as_const(snapshot.suiteMatches))
        fuzz::require(suite.cask >= 0 && suite.cask < snapshot.casks.size());
    return 0;
}
