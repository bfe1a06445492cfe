#pragma once

#include "discovery/launchpad_rows.h"
#include "model/items.h"
#include "platform/text.h"

#include <QHash>

#include <optional>

namespace tessellar {

/// Finds the installed applications that the old Launchpad's stand for: by bundle identifier first,
/// then by title, folded as names are searched.
///
/// Each installed application stands for one tile at most, so that two copies with one identifier,
/// which the old Launchpad showed as two tiles, keep both their places: the one that has the title
/// gets the tile with that title.
class AppResolver {
public:
    AppResolver(QList<AppEntry> installedApps, Locale locale);

    /// For each of `apps`, in their order, the installed application; nothing where there is none, or
    /// where an earlier one has taken it. Identifiers go before titles through the whole list: a title
    /// never takes what another tile names exactly.
    QList<std::optional<AppEntry>> resolve(const QList<NativeLaunchpadApp>& apps) const;
    /// True when an installed application has the identifier or the title, taken or not.
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
