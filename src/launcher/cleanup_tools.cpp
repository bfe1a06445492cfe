#include "launcher/cleanup_tools.h"

#include "platform/host_traits.h"
#include "smartfolders/bundle_tools.h"

#include <algorithm>

namespace tessellar {

CleanupTools::CleanupTools(Machine& machine_, HelperSetupBroker::Present present)
    : machine(machine_)
    , interpreter(machine_)
    , running(machine_, interpreter)
    , _finder(machine_.files, interpreter)
    , _agents(machine_)
    , _desktop(machine_)
    , _observer(running)
    // Inside the root: this computer's helper knows nothing of a Mac in a folder, and must not take its
    // paths for its own.
    , _transport(machine_.files.hostPath(QString::fromLatin1(removalHelperSocket())))
    , _coordinator([&] {
        const QString setup = helperSetupFolder();
        if (machine_.files.hostRoot() == u"/" && !setup.isEmpty())
            _broker.emplace(machine_, setup, std::move(present));
        return PrivilegedHelperCoordinator::Parts{.transport = _transport,
                                                  .authorization = _authorization,
                                                  .uuids = machine_.uuids,
                                                  .log = machine_.log,
                                                  .broker = _broker ? &*_broker : nullptr};
    }()) {}

Trash& CleanupTools::trash() {
    if (_finder.isAvailable())
        return _finder;
    return _desktop;
}

std::expected<void, QString> CleanupTools::helperHealth(std::stop_token stop) {
    return _coordinator.healthCheck(stop);
}

AppRelatedFilesScanner::TeamOf CleanupTools::teams() const {
    const auto tools = std::make_shared<BundleTools>(machine);
    return
        [tools](const CleanupApplication& application, std::stop_token stop) -> std::optional<QString> {
            // The system's applications share no group containers with others.
            if (FileSystem::isWithin(application.path, QStringLiteral("/System")))
                return QString();
            const auto answer = tools->signature(application.path, stop);
            if (!answer || !answer->isCacheable)
                return std::nullopt;
            return answer->findings ? answer->findings->teamID.value_or(QString()) : QString();
        };
}

AppCleanupRemover CleanupTools::remover(bool mayQuit) {
    QStringList trashFolders{FileSystem::joined(machine.places.home, QStringLiteral(".Trash")),
                             _desktop.folder() + QStringLiteral("/files")};
    if (!_finder.isAvailable())
        std::ranges::reverse(trashFolders);
    return AppCleanupRemover(
        {.files = machine.files,
         .home = machine.places.home,
         .trash = trash(),
         .running = mayQuit ? static_cast<RunningApplications&>(running) : _observer,
         .administrator = _coordinator,
         .agents = &_agents,
         .trashFolders = std::move(trashFolders),
         .wait = mayQuit ? Wait(interruptibleSleep)
                         : Wait([](std::chrono::milliseconds, std::stop_token) { return false; })});
}

} // namespace tessellar
