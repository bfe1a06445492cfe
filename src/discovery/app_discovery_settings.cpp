#include "discovery/app_discovery_settings.h"

#include <algorithm>
#include <cmath>

namespace tessellar {

bool AppDiscoverySettings::areIn(const Settings& settings) {
    return settings.value(searchPathsKey) || settings.value(additionalSearchPathsKey) ||
           settings.value(scanDepthKey);
}

AppDiscoverySettings AppDiscoverySettings::read(const Settings& settings, const QString& home) {
    AppDiscoverySettings result;
    result.isCertain = settings.isReadable();
    for (const auto& key : {searchPathsKey, additionalSearchPathsKey})
        if (settings.value(key) && !settings.texts(key))
            result.isCertain = false;
    const QStringList paths = settings.texts(searchPathsKey).value_or(defaultSearchPaths(home)) +
                              settings.texts(additionalSearchPathsKey).value_or(QStringList());
    result.searchPaths = normalized(paths, home);

    // Any whole number is valid, even beyond the integer types: it is clamped like the rest.
    const auto depth = settings.number(scanDepthKey);
    if (depth && std::isfinite(*depth) && std::trunc(*depth) == *depth)
        result.scanDepth =
            static_cast<int>(std::clamp<double>(*depth, minimumScanDepth, maximumScanDepth));
    return result;
}

QStringList AppDiscoverySettings::defaultSearchPaths(const QString& home) {
    return {QStringLiteral("/Applications"), QStringLiteral("/System/Applications"),
            QStringLiteral("/System/Cryptexes/App/System/Applications"),
            FileSystem::joined(home, QStringLiteral("Applications"))};
}

QStringList AppDiscoverySettings::normalized(const QStringList& paths, const QString& home) {
    QStringList result;
    for (const QString& path : paths) {
        if (result.size() == maximumSearchPaths)
            break;
        const bool inHome = path == u"~" || path.startsWith(u"~/");
        const QString whole = inHome ? home + path.sliced(1) : path;
        if (!whole.startsWith(u'/') || whole.contains(QChar::Null))
            continue;
        if (const QString standardized = FileSystem::standardized(whole);
            !result.contains(standardized))
            result.append(standardized);
    }
    return result;
}

} // namespace tessellar
