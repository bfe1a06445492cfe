#pragma once

#include "cleanup/app_cleanup_remover.h"
#include "cleanup/app_related_files_scanner.h"
#include "cleanup/desktop_trash.h"
#include "cleanup/finder_trash.h"
#include "cleanup/privileged/privileged_helper_coordinator.h"

#include <optional>

namespace tessellar {

/// What a removal works with on a machine: its Trash, its list of open applications, the way to the
/// removal helper. Used by one worker at a time; the machine outlives it.
struct CleanupTools {
    CleanupTools(Machine& machine, HelperSetupBroker::Present present);

    Trash& trash();
    std::expected<void, QString> helperHealth(std::stop_token stop);
    /// What the code signature says of an application's team, as a review wants to know it.
    AppRelatedFilesScanner::TeamOf teams() const;

    /// For one run; with `mayAsk` an application that is open is asked to quit.
    AppCleanupRemover remover(bool mayAsk);

    Machine& machine;
    OsascriptInterpreter interpreter;
    SystemRunningApplications running;

private:
    /// Lets an application be that is open.
    class Onlooker final : public RunningApplications {
    public:
        explicit Onlooker(RunningApplications& running) : _running(running) {}
        Seen look(const CleanupApplication& application) override { return _running.look(application); }
        void askToQuit(const CleanupApplication&, std::stop_token) override {}

    private:
        RunningApplications& _running;
    };

    FinderTrash _finder;
    SystemLaunchAgents _agents;
    DesktopTrash _desktop;
    Onlooker _onlooker;
    LocalSocketTransport _transport;
    SystemAuthorization _authorization;
    std::optional<HelperSetupBroker> _broker;
    PrivilegedHelperCoordinator _coordinator;
};

} // namespace tessellar
