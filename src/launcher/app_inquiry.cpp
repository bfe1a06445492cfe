#include "launcher/app_inquiry.h"

#include "cleanup/app_related_files_scanner.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_updates.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "smartfolders/bundle_tools.h"

#include <algorithm>

namespace tessellar {

std::optional<AppEntry> AppInquiry::application(const LauncherViewModel& launcher,
                                                LauncherWindowMode mode, const QString& key) {
    const AppEntry* tile = launcher.layout(mode).tileOf(key);
    const AppEntry* installed = launcher.applications().withKey(key);
    if (!installed)
        return tile ? std::optional(*tile) : std::nullopt;
    AppEntry app = *installed;
    if (tile)
        app.name = tile->name;
    return app;
}

AppInquiry::AppInquiry(LauncherViewModel& launcher, Machine& machine, LauncherWindowMode mode,
                       const AppEntry& app, Told told)
    : _launcher(launcher), _machine(machine), _mode(mode), _key(appKey(app)), _told(std::move(told)) {
    _information.facts.entry = app;
    const auto follow = [this](auto& signal) {
        _subscriptions.push_back(signal.connect([this] {
            lookAtLauncher();
            tell();
        }));
    };
    follow(launcher.updates().changed);
    follow(launcher.smartFolders().changed);
    follow(launcher.layout(mode).changed);
    lookAtLauncher();
    // In the next turn: some of this may be known at once.
    machine.workers.mailbox().post(_lifetime.guard([this] {
        gatherFacts();
        learnUpdates();
        measure();
        inspectCode();
    }));
}

void AppInquiry::gatherFacts() {
    SmartFolderLibrary& library = _launcher.smartFolders();
    library.gatherFactsOf(_information.entry(), _mode,
                          _lifetime.guard([this, isLast = _areChannelsKnown](
                                              const SmartFolderAppFacts& facts, bool isComplete) {
                              _information.facts = facts;
                              _information.pending.facts = !isComplete || !isLast;
                              lookAtLauncher();
                              tell();
                          }));
    // Which folders show it is known at the end of a round.
    library.gatherFacts(library.needs(), _lifetime.guard([this] {
        _areFoldersKnown = true;
        lookAtLauncher();
        tell();
    }));
}

/// What the channels found out is a fact, too.
void AppInquiry::learnUpdates() {
    _launcher.updates().whenChannelsKnown(_lifetime.guard([this] {
        _areChannelsKnown = true;
        lookAtLauncher();
        tell();
        gatherFacts();
    }));
}

void AppInquiry::measure() {
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

void AppInquiry::inspectCode() {
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

/// What the launcher itself knows at the moment.
void AppInquiry::lookAtLauncher() {
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

void AppInquiry::tell() {
    // A copy: it may be the end of this.
    const Told told = _told;
    told(_information);
}

} // namespace tessellar
