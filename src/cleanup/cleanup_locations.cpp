#include "cleanup/cleanup_locations.h"

#include <array>

namespace tessellar {
namespace {

using enum CleanupDomain;
constexpr std::array locations{
    CleanupLocation{"Application Support", "Application Support", user, false},
    CleanupLocation{"Caches", "Caches", user, false},
    CleanupLocation{"Logs", "Logs", user, false},
    CleanupLocation{"Preferences", "Preferences", user, true},
    CleanupLocation{"Containers", "Containers", user, true},
    CleanupLocation{"Group Containers", "Group Containers", user, true},
    CleanupLocation{"Saved Application State", "Saved State", user, true},
    CleanupLocation{"HTTPStorages", "HTTP Storage", user, true},
    CleanupLocation{"WebKit", "WebKit", user, true},
    CleanupLocation{"LaunchAgents", "Launch Agents", user, true},
    CleanupLocation{"Application Support", "Application Support", system, true},
    CleanupLocation{"Preferences", "Preferences", system, true},
    CleanupLocation{"LaunchAgents", "Launch Agents", system, true},
    CleanupLocation{"LaunchDaemons", "Launch Daemons", system, true},
    CleanupLocation{"PrivilegedHelperTools", "Helper Tools", system, true},
};

} // namespace

QString CleanupLocation::path(const QString& home) const {
    const QString library = domain == user ? FileSystem::joined(home, QStringLiteral("Library"))
                                           : QStringLiteral("/Library");
    return FileSystem::joined(library, QString::fromLatin1(folder));
}

std::span<const CleanupLocation> cleanupLocations() { return locations; }

const CleanupLocation* cleanupLocationOf(const QString& path, const QString& home) {
    for (const CleanupLocation& location : locations) {
        const QString folder = location.path(home);
        if (path != folder && FileSystem::isWithin(path, folder))
            return &location;
    }
    return nullptr;
}

} // namespace tessellar
