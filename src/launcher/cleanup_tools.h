#pragma once

#include "cleanup/app_cleanup_remover.h"
#include "cleanup/app_related_files_scanner.h"
#include "cleanup/desktop_trash.h"
#include "cleanup/finder_trash.h"
#include "cleanup/privileged/privileged_helper_coordinator.h"

#include <optional>

namespace tessellar {

/// What a removal needs from the machine: Trash, running applications, removal helper. Not thread-safe;
/// the machine must outlive it.
struct CleanupTools {
    CleanupTools(Machine& machine, HelperSetupBroker::Present present);

    Trash& trash();
    std::expected<void, QString> helperHealth(std::stop_token stop);
    /// Looks up an application's signing team.
    AppRelatedFilesScanner::TeamOf teams() const;

    /// For one run; only with `mayQuit` are running applications asked to quit.
    AppCleanupRemover remover(bool mayQuit);

    Machine& machine;
    OsascriptInterpreter interpreter;
    SystemRunningApplications running;

private:
    /// Never quits running applications.
    class RunningObserver final : public RunningApplications {
    public:
        explicit RunningObserver(RunningApplications& running) : _running(running) {}
        State state(const CleanupApplication& application) override {
            return _running.state(application);
        }
        void askToQuit(const CleanupApplication&, std::stop_token) override {}

    private:
        RunningApplications& _running;
    };

    FinderTrash _finder;
    SystemLaunchAgents _agents;
    DesktopTrash _desktop;
    RunningObserver _observer;
    LocalSocketTransport _transport;
    SystemAuthorization _authorization;
    std::optional<HelperSetupBroker> _broker;
    PrivilegedHelperCoordinator _coordinator;
};

} // namespace tessellar
