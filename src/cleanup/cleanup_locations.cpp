#include "cleanup/cleanup_locations.h"

#include <array>

namespace tessellar {
namespace {

using enum CleanupDomain;
constexpr std::array locations{
    CleanupLocation{"Application Support", "Application Support", user, 4},
    CleanupLocation{"Caches", "Caches", user, 4},
    CleanupLocation{"Logs", "Logs", user, 4},
    CleanupLocation{"Preferences", "Preferences", user, 1},
    CleanupLocation{"Containers", "Containers", user, 1},
    CleanupLocation{"Group Containers", "Group Containers", user, 1},
    CleanupLocation{"Saved Application State", "Saved State", user, 1},
    CleanupLocation{"HTTPStorages", "HTTP Storage", user, 1},
    CleanupLocation{"WebKit", "WebKit", user, 1},
    CleanupLocation{"LaunchAgents", "Launch Agents", user, 1},
    CleanupLocation{"Application Support", "Application Support", system, 3},
    CleanupLocation{"Preferences", "Preferences", system, 1},
    CleanupLocation{"LaunchAgents", "Launch Agents", system, 1},
    CleanupLocation{"LaunchDaemons", "Launch Daemons", system, 1},
    CleanupLocation{"PrivilegedHelperTools", "Helper Tools", system, 1},
    CleanupLocation{"Application Scripts", "Application Scripts", user, 1, true},
};

} // namespace

QString CleanupLocation::path(const QString& home) const {
    const QString library = domain == user ? FileSystem::joined(home, QStringLiteral("Library"))
                                           : QStringLiteral("/Library");
    return FileSystem::joined(library, QString::fromLatin1(folder));
}

std::span<const CleanupLocation> cleanupLocations() { return locations; }

QStringList applicationFolders(const QString& home) {
    return {QStringLiteral("/Applications"), FileSystem::joined(home, QStringLiteral("Applications"))};
}

const CleanupLocation* cleanupLocationOf(const QString& path, const QString& home) {
    for (const CleanupLocation& location : locations) {
        const QString folder = location.path(home);
        if (path != folder && FileSystem::isWithin(path, folder))
            return &location;
    }
    return nullptr;
}

} // namespace tessellar
