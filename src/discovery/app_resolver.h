#pragma once

#include "discovery/launchpad_rows.h"
#include "model/items.h"
#include "platform/text.h"

#include <QHash>

#include <optional>

namespace tessellar {

/// Finds the installed applications for tiles of the old Launchpad: by bundle identifier, then by
/// title, folded as in search.
///
/// Each installed application resolves at most one tile. The old Launchpad showed two copies with the
/// same identifier as two tiles; both keep their places, and a copy with a tile's title gets that tile.
class AppResolver {
public:
    AppResolver(QList<AppEntry> installedApps, Locale locale);

    /// The installed application for each of `apps`, in order; nullopt if there is none, or an earlier
    /// tile has it. Identifiers take precedence across the whole list: a title match never takes an
    /// application that another tile names by identifier.
    QList<std::optional<AppEntry>> resolve(const QList<NativeLaunchpadApp>& apps) const;
    /// True if an installed application has the identifier or the title, even if already resolved.
    bool knows(const NativeLaunchpadApp& app) const;

private:
    using Candidates = QHash<QString, QList<qsizetype>>;

    static void add(Candidates& candidates, const QString& key, qsizetype app);
    QString normalized(const QString& name) const;
    QString both(const QString& identifier, const QString& name) const;

    Locale _locale;
    QList<AppEntry> _installedApps;
    Candidates _appsByBundleID;
    Candidates _appsByBundleIDAndName;
    Candidates _appsByNormalizedName;
};

} // namespace tessellar
