#include "launcher/app_information_gatherer.h"

#include "cleanup/app_related_files_scanner.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_updates.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "smartfolders/bundle_tools.h"

#include <algorithm>

namespace tessellar {

std::optional<AppEntry> AppInformationGatherer::application(const LauncherViewModel& launcher,
                                                            LauncherWindowMode mode,
                                                            const QString& key) {
    const AppEntry* tile = launcher.layout(mode).tileOf(key);
    const AppEntry* installed = launcher.applications().withKey(key);
    if (!installed)
        return tile ? std::optional(*tile) : std::nullopt;
    AppEntry app = *installed;
    if (tile)
        app.name = tile->name;
    return app;
}

AppInformationGatherer::AppInformationGatherer(LauncherViewModel& launcher, Machine& machine,
                                               LauncherWindowMode mode, const AppEntry& app,
                                               Updated updated)
    : _launcher(launcher)
    , _machine(machine)
    , _mode(mode)
    , _key(appKey(app))
    , _updated(std::move(updated)) {
    _information.facts.entry = app;
    const auto follow = [this](auto& signal) {
        _subscriptions.push_back(signal.connect([this] {
            readLauncher();
            tell();
        }));
    };
    follow(launcher.updates().changed);
    follow(launcher.smartFolders().changed);
    follow(launcher.layout(mode).changed);
    readLauncher();
    // Deferred, because some of this may call back immediately.
    machine.workers.mailbox().post(_lifetime.guard([this] {
        gatherFacts();
        learnUpdates();
        measure();
        inspectCode();
    }));
}

void AppInformationGatherer::gatherFacts() {
    SmartFolderLibrary& library = _launcher.smartFolders();
    library.gatherFactsOf(_information.entry(), _mode,
                          _lifetime.guard([this, isLast = _areChannelsKnown](
                                              const SmartFolderAppFacts& facts, bool isComplete) {
                              if (!isLast && _areChannelsKnown)
                                  return; // outrun by the second request
                              _information.facts = facts;
                              _information.pending.facts = !isComplete || !isLast;
                              readLauncher();
                              tell();
                          }));
    // At the end of a round it is known which folders show it.
    library.gatherFacts(needsOf(library.definitions()), _lifetime.guard([this] {
        _areFoldersKnown = true;
        readLauncher();
        tell();
    }));
}

/// The channels are facts, too.
void AppInformationGatherer::learnUpdates() {
    _launcher.updates().whenChannelsKnown(_lifetime.guard([this] {
        _areChannelsKnown = true;
        readLauncher();
        tell();
        gatherFacts();
    }));
}

void AppInformationGatherer::measure() {
    struct Found {
        MeasuredSize size;
        std::optional<Instant> modified;
    };
    _measuring = _machine.workers.run(
        [&files = _machine.files, path = _information.entry().path](const std::stop_token& stop) {
            const auto status = files.status(path);
            return Found{AppRelatedFilesScanner::measure(files, path, stop),
                         status ? std::optional(status->modified) : std::nullopt};
        },
        [this](const Found& found) {
            _information.pending.size = false;
            _information.modifiedDate = found.modified;
            if (found.modified)
                _information.size = static_cast<qint64>(found.size.bytes);
            _information.isSizeWhole = found.size.isComplete;
            tell();
        });
}

void AppInformationGatherer::inspectCode() {
    _inspecting = _machine.workers.run(
        Lane::tools,
        [&machine = _machine, path = _information.entry().path](const std::stop_token& stop) {
            return BundleTools(machine).code(path, stop).value_or(CodeFindings());
        },
        [this](const CodeFindings& code) {
            _information.pending.code = false;
            _information.code = code;
            tell();
        });
}

/// What the launcher itself knows at this moment.
void AppInformationGatherer::readLauncher() {
    const AppUpdateView update = _launcher.updates().of(_key);
    const SmartFolderLibrary& library = _launcher.smartFolders();
    const InstalledApplications& applications = _launcher.applications();
    if (const auto app = application(_launcher, _mode, _key))
        _information.facts.entry = *app;
    const AppEntry& entry = _information.entry();
    _information.isInstalled =
        applications.withKey(_key) && !_launcher.layout(_mode).unavailableAppKeys().contains(_key);
    _information.isHidden = _launcher.layout(_mode).hiddenKeys().contains(_key);
    _information.channel = update.channel();
    _information.updateSource = update.sourceText().value_or(AppUpdateSourceText());
    _information.update = update.record();
    _information.pending.updates = !_areChannelsKnown;
    _information.smartFolders =
        namesByAppKey(library.definitions(), library.evaluations(_mode)).value(_key);
    _information.pending.smartFolders = !_areFoldersKnown;
    _information.copies.clear();
    for (const AppEntry& other : applications.all())
        if (entry.bundleIdentifier && other.bundleIdentifier == entry.bundleIdentifier &&
            other.path != entry.path)
            _information.copies.append(other.path);
}

void AppInformationGatherer::tell() {
    // A copy: it may destroy this object.
    const Updated updated = _updated;
    updated(_information);
}

} // namespace tessellar
