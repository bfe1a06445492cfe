#pragma once

#include "launcher/app_information.h"
#include "launcher/launcher_view_model.h"
#include "platform/lifetime.h"
#include "platform/machine.h"
#include "platform/signal.h"

#include <functional>
#include <vector>

namespace tessellar {

/// Gathers everything known about one application and keeps it up to date: reports what is known
/// immediately, and again with each addition. Destroying it stops it. Main thread only.
class AppInformationGatherer {
public:
    /// Never called before the constructor has returned.
    using Updated = std::function<void(const AppInformation&)>;

    AppInformationGatherer(LauncherViewModel& launcher, Machine& machine, LauncherWindowMode mode,
                           const AppEntry& app, Updated updated);

    /// The application with a key, under its name in a mode; even if only its tile is left.
    static std::optional<AppEntry> application(const LauncherViewModel& launcher,
                                               LauncherWindowMode mode, const QString& appKey);

    const AppInformation& information() const { return _information; }

private:
    void gatherFacts();
    void measure();
    void inspectCode();
    void learnUpdates();
    void readLauncher();
    void tell();

    LauncherViewModel& _launcher;
    Machine& _machine;
    const LauncherWindowMode _mode;
    const QString _key;
    Updated _updated;
    AppInformation _information;
    bool _areChannelsKnown = false;
    bool _areFoldersKnown = false;
    Task _measuring;
    Task _inspecting;
    std::vector<Subscription> _subscriptions;
    Lifetime _lifetime;
};

} // namespace tessellar
