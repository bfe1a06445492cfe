#pragma once

#include "platform/settings.h"

#include <QString>
#include <QStringList>

namespace tessellar {

/// Where applications are looked for, and how deep.
struct AppDiscoverySettings {
    static inline const QString searchPathsKey = QStringLiteral("appDiscovery.searchPaths");
    static inline const QString additionalSearchPathsKey =
        QStringLiteral("appDiscovery.additionalSearchPaths");
    static inline const QString scanDepthKey = QStringLiteral("appDiscovery.scanDepth");

    static constexpr int minimumScanDepth = 1;
    static constexpr int maximumScanDepth = 10;
    static constexpr int defaultScanDepth = 4;
    /// Longer lists are cut; no one keeps applications in more places.
    static constexpr qsizetype maximumSearchPaths = 1'000;

    QStringList searchPaths;          ///< normalised, in the order in which they are looked at
    int scanDepth = defaultScanDepth; ///< a folder deeper than this below its search path is not listed
    /// False when the user's settings could not be read and these are only the defaults: what lies
    /// elsewhere may be searched too, for all that is known.
    bool isCertain = true;

    bool operator==(const AppDiscoverySettings&) const = default;

    /// "appDiscovery.searchPaths" replaces the default list, "appDiscovery.additionalSearchPaths" is
    /// added to whichever list it is, "appDiscovery.scanDepth" is clamped. A value of a wrong type
    /// counts as absent.
    static AppDiscoverySettings read(const Settings& settings, const QString& home);
    /// True when the settings say anything of this.
    static bool areIn(const Settings& settings);

    static QStringList defaultSearchPaths(const QString& home);
    /// Standardized, "~" standing for the home, each path once at its first place. What is not
    /// absolute names no place and is left out.
    static QStringList normalized(const QStringList& paths, const QString& home);
};

} // namespace tessellar
