#include "discovery/app_source_places.h"

#include "discovery/app_discovery_settings.h"

#include <algorithm>

namespace tessellar {

AppSourcePlaces AppSourcePlaces::read(const FileSystem& files, const QString& home) {
    AppSourcePlaces places;
    const auto add = [&](QStringList& list, const QString& path) {
        list.append(path);
        if (const auto resolved = files.resolved(path); resolved && *resolved != path)
            list.append(*resolved);
    };
    const QStringList standard = AppDiscoverySettings::defaultSearchPaths(home);
    add(places.system, QStringLiteral("/System"));
    add(places.system, standard[1]);
    add(places.system, standard[2]);
    add(places.user, standard[3]);
    return places;
}

AppSource AppSourcePlaces::sourceOf(const QString& path) const {
    const auto holds = [&](const QString& place) { return FileSystem::isWithin(path, place); };
    if (std::ranges::any_of(user, holds))
        return AppSource::user;
    return std::ranges::any_of(system, holds) ? AppSource::system : AppSource::local;
}

} // namespace tessellar
