#pragma once

#include "platform/settings.h"

#include <QString>
#include <QStringList>

namespace tessellar {

/// Where to look for applications, and how deep.
struct AppDiscoverySettings {
    static inline const QString searchPathsKey = QStringLiteral("appDiscovery.searchPaths");
    static inline const QString additionalSearchPathsKey =
        QStringLiteral("appDiscovery.additionalSearchPaths");
    static inline const QString scanDepthKey = QStringLiteral("appDiscovery.scanDepth");

    static constexpr int minimumScanDepth = 1;
    static constexpr int maximumScanDepth = 10;
    static constexpr int defaultScanDepth = 4;
    /// Longer lists are truncated; nobody keeps applications in more places.
    static constexpr qsizetype maximumSearchPaths = 1'000;

    QStringList searchPaths;          ///< normalized, in search order
    int scanDepth = defaultScanDepth; ///< levels below a search path; deeper folders are not listed
    /// False if the user's settings were unreadable and these are defaults: there may be further search
    /// paths.
    bool isCertain = true;

    bool operator==(const AppDiscoverySettings&) const = default;

    /// "appDiscovery.searchPaths" replaces the default list; "appDiscovery.additionalSearchPaths"
    /// extends whichever applies; "appDiscovery.scanDepth" is clamped. Values of the wrong type count
    /// as absent.
    static AppDiscoverySettings read(const Settings& settings, const QString& home);
    /// True if any of these settings is set.
    static bool areIn(const Settings& settings);

    static QStringList defaultSearchPaths(const QString& home);
    /// Standardized, "~" expanded, without duplicates. Relative paths are dropped.
    static QStringList normalized(const QStringList& paths, const QString& home);
};

} // namespace tessellar
