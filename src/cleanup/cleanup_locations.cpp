#include "cleanup/cleanup_locations.h"

#include "platform/texts.h"

#include <array>

namespace tessellar {
namespace {

using enum CleanupDomain;
constexpr std::array locations{
    CleanupLocation{"Application Support", Texts::noop("Application Support"), user, 4},
    CleanupLocation{"Caches", Texts::noop("Caches"), user, 4},
    CleanupLocation{"Logs", Texts::noop("Logs"), user, 4},
    CleanupLocation{"Preferences", Texts::noop("Preferences"), user, 1},
    CleanupLocation{"Containers", Texts::noop("Containers"), user, 1},
    CleanupLocation{"Group Containers", Texts::noop("Group Containers"), user, 1},
    CleanupLocation{"Saved Application State", Texts::noop("Saved State"), user, 1},
    CleanupLocation{"HTTPStorages", Texts::noop("HTTP Storage"), user, 1},
    CleanupLocation{"WebKit", Texts::noop("WebKit"), user, 1},
    CleanupLocation{"LaunchAgents", Texts::noop("Launch Agents"), user, 1},
    CleanupLocation{"Application Support", Texts::noop("Application Support"), system, 3},
    CleanupLocation{"Preferences", Texts::noop("Preferences"), system, 1},
    CleanupLocation{"LaunchAgents", Texts::noop("Launch Agents"), system, 1},
    CleanupLocation{"LaunchDaemons", Texts::noop("Launch Daemons"), system, 1},
    CleanupLocation{"PrivilegedHelperTools", Texts::noop("Helper Tools"), system, 1},
    CleanupLocation{"Application Scripts", Texts::noop("Application Scripts"), user, 1, true},
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
