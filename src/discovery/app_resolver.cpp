#include "discovery/app_resolver.h"

#include "platform/file_system.h"

#include <vector>

namespace tessellar {

AppResolver::AppResolver(QList<AppEntry> installedApps, Locale locale)
    : _locale(std::move(locale)), _installedApps(std::move(installedApps)) {
    for (qsizetype i = 0; i < _installedApps.size(); ++i) {
        const AppEntry& app = _installedApps.at(i);
        if (app.bundleIdentifier && !app.bundleIdentifier->isEmpty()) {
            add(_appsByBundleID, *app.bundleIdentifier, i);
            add(_appsByBundleIDAndName, both(*app.bundleIdentifier, app.name), i);
        }
        // The old Launchpad kept names in whichever language it last ran in.
        QString fileName = FileSystem::fileName(app.path);
        fileName.chop(FileSystem::extension(fileName).size() + 1);
        for (const QString& name : {app.name, app.originalName, fileName})
            add(_appsByNormalizedName, normalized(name), i);
    }
}

void AppResolver::add(Candidates& candidates, const QString& key, qsizetype app) {
    if (key.isEmpty())
        return;
    auto& same = candidates[key];
    if (same.isEmpty() || same.last() != app)
        same.append(app);
}

QString AppResolver::both(const QString& identifier, const QString& name) const {
    return identifier + QChar(u'\n') + normalized(name);
}

QString AppResolver::normalized(const QString& name) const { return _locale.folded(trimmed(name)); }

QList<std::optional<AppEntry>> AppResolver::resolve(const QList<NativeLaunchpadApp>& apps) const {
    QList<std::optional<AppEntry>> result(apps.size());
    std::vector<bool> taken(static_cast<std::size_t>(_installedApps.size()));
    const auto pass = [&](const Candidates& candidates, auto keyOf) {
        QHash<QString, qsizetype> next; // by key: the first candidate that may be free
        for (qsizetype tile = 0; tile < apps.size(); ++tile) {
            if (result.at(tile))
                continue;
            const auto found = candidates.constFind(keyOf(apps.at(tile)));
            if (found == candidates.cend())
                continue;
            qsizetype& place = next[found.key()];
            while (place < found->size() && taken[static_cast<std::size_t>(found->at(place))])
                ++place;
            if (place == found->size())
                continue;
            taken[static_cast<std::size_t>(found->at(place))] = true;
            result[tile] = _installedApps.at(found->at(place));
        }
    };
    using Old = NativeLaunchpadApp;
    pass(_appsByBundleIDAndName, [this](const Old& app) { return both(app.bundleid, app.title); });
    pass(_appsByBundleID, [](const Old& app) { return app.bundleid; });
    pass(_appsByNormalizedName, [this](const Old& app) { return normalized(app.title); });
    return result;
}

bool AppResolver::knows(const NativeLaunchpadApp& app) const {
    return _appsByBundleID.contains(app.bundleid) ||
           _appsByNormalizedName.contains(normalized(app.title));
}

} // namespace tessellar
