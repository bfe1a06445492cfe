#include "launcher/launcher_icons.h"

#include "launcher/launcher_view_model.h"

#include <algorithm>
#include <array>

namespace tessellar {

static LauncherError launcherError(CustomAppIconStore::Error error) {
    static constexpr std::array names{"notICNSFile",  "unreadableFile", "invalidICNSFile",
                                      "fileTooLarge", "couldNotSave",   "couldNotRemove"};
    return {QLatin1StringView(names.at(static_cast<std::size_t>(error))), message(error),
            error == CustomAppIconStore::Error::couldNotRemove
                ? QStringLiteral("Could not remove the custom icon")
                : QStringLiteral("Could not change the icon")};
}

LauncherIcons::LauncherIcons(LauncherViewModel& launcher, Machine& machine)
    : _launcher(launcher)
    , _machine(machine)
    , _store(std::make_shared<CustomAppIconStore>(
          machine.files, CustomAppIconStore::defaultDirectory(machine.places), machine.locale)) {}

// ---- requests

void LauncherIcons::set(const QString& appKey, const QString& file, Done done,
                        const FileSystem* files) {
    if (!knownKeys().contains(appKey)) {
        if (done)
            done(std::unexpected(LauncherViewModel::unknownApplication(appKey)));
        return;
    }
    _requests.push_back({appKey, file, files ? files : &_machine.files, std::move(done)});
    startNext();
}

void LauncherIcons::remove(const QString& appKey, Done done) {
    _requests.push_back({appKey, {}, nullptr, std::move(done)});
    startNext();
}

void LauncherIcons::startNext() {
    if (_isUnderWay || _requests.empty())
        return;
    _isUnderWay = true;
    const Request& request = _requests.front();
    struct Answer {
        CustomAppIconStore::Result<void> result;
        bool hasIcon = false;
    };
    _task = _machine.workers.run(
        [store = _store, key = request.appKey, file = request.file,
         files = request.files](std::stop_token) {
            Answer answer;
            if (!file) {
                answer.result = store->deleteFiles(key);
            } else if (const auto bytes = store->readIcon(*file, *files)) {
                answer.result = store->writeIcon(*bytes, key);
            } else {
                answer.result = std::unexpected(bytes.error());
            }
            answer.hasIcon = store->iconPath(key).has_value();
            return answer;
        },
        [this](const Answer& answer) {
            const Request finished = std::move(_requests.front());
            _requests.pop_front();
            _isUnderWay = false;
            if (answer.result || answer.hasIcon != has(finished.appKey))
                _toAnnounce.insert(finished.appKey);
            _store->note(finished.appKey, answer.hasIcon);
            changeKeys(std::exchange(_keysToChange, {}));
            // Before anybody is told, who may ask for more.
            startNext();
            announce();
            if (finished.done)
                finished.done(answer.result ? Outcome()
                                            : std::unexpected(launcherError(answer.result.error())));
        });
}

// ---- what follows from changes elsewhere

void LauncherIcons::changeKeys(const QHash<QString, QString>& keys) {
    for (auto it = keys.begin(); it != keys.end(); ++it) {
        bool waits = false;
        for (Request& request : _requests) {
            if (request.appKey != it.key())
                continue;
            if (_isUnderWay && &request == &_requests.front())
                waits = true;
            else
                request.appKey = it.value();
        }
        if (waits) {
            _keysToChange.insert(it.key(), it.value());
        } else if (has(it.key())) {
            // At once, though it asks the disk: the arrangement is about to be saved with the new keys.
            if (const auto moved = _store->changeKey(it.key(), it.value()); !moved)
                _machine.log.warning(QStringLiteral("The icon of %1 could not follow it to %2.")
                                         .arg(it.key(), it.value()));
            _toAnnounce += {it.key(), it.value()};
        }
    }
}

void LauncherIcons::merged(const QStringList& replacedBundles) {
    const QSet<QString> replaced(replacedBundles.begin(), replacedBundles.end());
    if (!replaced.isEmpty())
        for (const AppEntry& app : _launcher.lastScannedApps())
            if (replaced.contains(app.path))
                _toAnnounce.insert(appKey(app));
    announce();
    tellSmartFolders(); // of applications that are new, if of nothing else
}

void LauncherIcons::announce() {
    if (_toAnnounce.isEmpty())
        return;
    _changedKeys = std::exchange(_toAnnounce, {});
    _launcher.changed(LauncherChange::icons);
    _changedKeys.clear();
    tellSmartFolders();
}

void LauncherIcons::tellSmartFolders() {
    SmartFolderRuntimeFacts facts = _launcher.smartFolders().runtimeFacts();
    QStringList installed;
    for (const AppEntry& app : _launcher.lastScannedApps())
        installed.append(appKey(app));
    facts.customIconKeys = _store->keysWithIcon(installed);
    _launcher.smartFolders().setRuntimeFacts(std::move(facts));
}

// ---- whose icons

QSet<QString> LauncherIcons::knownKeys() const {
    QSet<QString> keys;
    for (const AppEntry& app : _launcher.lastScannedApps())
        keys.insert(appKey(app));
    for (const auto& layout : _launcher._layouts)
        forEachItem(layout.pages, [&](const LaunchpadItem& item) {
            if (const AppEntry* app = item.app())
                keys.insert(appKey(*app));
            return true;
        });
    return keys;
}

QStringList LauncherIcons::appKeys() const {
    QStringList keys = _store->keysWithIcon(knownKeys().values()).values();
    keys.sort();
    return keys;
}

} // namespace tessellar
