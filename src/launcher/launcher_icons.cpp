#include "launcher/launcher_icons.h"

#include "launcher/installed_applications.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

#include <algorithm>
#include <array>

namespace tessellar {

static LauncherError launcherError(CustomAppIconStore::Error error) {
    static constexpr std::array names{"notICNSFile",  "unreadableFile", "invalidICNSFile",
                                      "fileTooLarge", "couldNotSave",   "couldNotRemove"};
    return {QLatin1StringView(names.at(static_cast<std::size_t>(error))), message(error),
            error == CustomAppIconStore::Error::couldNotRemove
                ? Texts::tr("Could not remove the custom icon")
                : Texts::tr("Could not change the icon")};
}

LauncherIcons::LauncherIcons(Machine& machine, const LiveLayouts& layouts,
                             InstalledApplications& applications, SmartFolderLibrary& smartFolders)
    : _machine(machine)
    , _layouts(layouts)
    , _applications(applications)
    , _smartFolders(smartFolders)
    , _store(std::make_shared<CustomAppIconStore>(
          machine.files, CustomAppIconStore::defaultDirectory(machine.places), machine.locale))
    , _scanned(applications.scanned.connect([this] { scanned(); }))
    , _keysChanged(applications.keysChanged.connect(
          [this](const QHash<QString, QString>& keys) { changeKeys(keys); })) {}

// ---- requests

void LauncherIcons::set(const QString& appKey, const QString& file, Done done,
                        const FileSystem* files) {
    if (!knownKeys().contains(appKey)) {
        if (done)
            done(std::unexpected(InstalledApplications::unknown(appKey)));
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
            // Before anyone is notified, who may request more.
            startNext();
            announce();
            if (finished.done)
                finished.done(answer.result ? Outcome()
                                            : std::unexpected(launcherError(answer.result.error())));
        });
}

// ---- following changes elsewhere

/// Sorted so that each key is changed before another one changes to it.
static QList<std::pair<QString, QString>> inOrder(QHash<QString, QString> keys) {
    QList<std::pair<QString, QString>> result;
    while (!keys.isEmpty()) {
        auto next = keys.constBegin();
        for (qsizetype i = 0; i < keys.size() && keys.contains(*next); ++i)
            next = keys.constFind(*next);
        result.append({next.key(), *next});
        keys.erase(next);
    }
    return result;
}

void LauncherIcons::changeKeys(const QHash<QString, QString>& keys) {
    for (const auto& [from, to] : inOrder(keys)) {
        bool waits = false;
        for (Request& request : _requests) {
            if (request.appKey != from)
                continue;
            if (_isUnderWay && &request == &_requests.front())
                waits = true;
            else
                request.appKey = to;
        }
        if (waits) {
            _keysToChange.insert(from, to);
        } else if (has(from)) {
            // Synchronously, although it does I/O: the arrangement is about to be saved with the new
            // keys.
            if (const auto moved = _store->changeKey(from, to); !moved)
                _machine.log.warning(
                    QStringLiteral("Could not move the icon of %1 to %2.").arg(from, to));
            _toAnnounce += {from, to};
        }
    }
    if (!_isUnderWay)
        announce();
}

void LauncherIcons::scanned() {
    for (const QString& path : _applications.replacedBundles())
        if (const AppEntry* app = _applications.withPath(path))
            _toAnnounce.insert(appKey(*app));
    announce();
    tellSmartFolders(); // there may be new applications, even if no key has changed
}

void LauncherIcons::announce() {
    if (_toAnnounce.isEmpty())
        return;
    changed.notify(std::exchange(_toAnnounce, {}));
    tellSmartFolders();
}

void LauncherIcons::tellSmartFolders() {
    SmartFolderRuntimeFacts facts = _smartFolders.runtimeFacts();
    QStringList installed;
    for (const AppEntry& app : _applications.all())
        installed.append(appKey(app));
    facts.customIconKeys = _store->keysWithIcon(installed);
    _smartFolders.setRuntimeFacts(std::move(facts));
}

// ---- keys

QSet<QString> LauncherIcons::knownKeys() const {
    QSet<QString> keys;
    for (const AppEntry& app : _applications.all())
        keys.insert(appKey(app));
    _layouts.forEachApplication(
        [&](LauncherWindowMode, const AppEntry& app) { keys.insert(appKey(app)); });
    return keys;
}

QStringList LauncherIcons::appKeys() const {
    QStringList keys = _store->keysWithIcon(knownKeys().values()).values();
    keys.sort();
    return keys;
}

} // namespace tessellar
