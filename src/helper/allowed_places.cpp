#include "helper/allowed_places.h"

#include "privileged/records.h"

#include <algorithm>
#include <array>

namespace tessellar {
namespace {

constexpr std::array allowedFolders{"Application Support", "Preferences", "LaunchAgents",
                                    "LaunchDaemons", "PrivilegedHelperTools"};
constexpr std::array reservedNames{"apple", "com.apple", "com.tessellar.app.removal-helper"};

bool isSame(const QByteArray& a, const char* b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

bool isReserved(const QByteArray& name) {
    const QByteArray lower = name.toLower();
    return std::ranges::any_of(reservedNames, [&](const char* reserved) {
        return lower == reserved || lower.startsWith(QByteArray(reserved) + '.');
    });
}

} // namespace

std::optional<NamedPlace> namedPlace(const QString& path) {
    const auto bytes = path.isValidUtf16() ? FileSystem::toHostBytes(path) : std::nullopt;
    if (!bytes || !bytes->startsWith('/') || bytes->size() > helper_limits::pathBytes)
        return std::nullopt;
    NamedPlace place{.folders = bytes->sliced(1).split('/'), .name = {}};
    for (const QByteArray& name : std::as_const(place.folders))
        if (name.isEmpty() || name == "." || name == "..")
            return std::nullopt;
    place.name = place.folders.takeLast();
    return place;
}

bool isAllowed(const NamedPlace& place) {
    if (place.folders.size() < 2 || !isSame(place.folders[0], "Library") ||
        std::ranges::none_of(allowedFolders,
                             [&](const char* folder) { return isSame(place.folders[1], folder); }))
        return false;
    return !isReserved(place.folders.value(2, place.name));
}

} // namespace tessellar
