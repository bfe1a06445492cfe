#include "torture/small_mac.h"

#include "control/command_interpreter.h"
#include "control/running_launcher.h"
#include "control/shell_words.h"
#include "control/tessellarctl.h"
#include "launcher/launcher_view_model.h"
#include "model/json.h"
#include "platform/host_machine.h"
#include "platform/interruption.h"
#include "sample/launchpad_database.h"
#include "sample/mac_builder.h"
#include "sample/tools.h"
#include "tests/icons/icns_bytes.h"

#include <QColor>
#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <ranges>
#include <stdexcept>

namespace tessellar::torture {

namespace fs = std::filesystem;
using namespace Qt::Literals::StringLiterals;

const QByteArray SmallMac::applicationFolder =
    "Users/ada/Library/Application Support/com.tessellar.app";
const QByteArray SmallMac::settingsFile = "Users/ada/Library/Preferences/com.tessellar.app.json";

namespace {

/// What the launcher can do without, what serves one moment, and what the Mac's tools write.
bool isPassing(const QByteArray& path) {
    if (path.startsWith("private/var/tessellar-sample/") || path.startsWith("tmp/"))
        return true;
    if (!path.startsWith(SmallMac::applicationFolder + '/'))
        return path.contains("/.tessellar-save-");
    const QByteArray name = path.sliced(SmallMac::applicationFolder.size() + 1);
    static const QSet<QByteArray> names{"known-volumes.json", "bundle-answers.json",
                                        "app-update-run.json", "lock", "control.socket"};
    return names.contains(name) || name.contains(".tessellar-save-") || name.contains(".damaged") ||
           name.startsWith("Backups");
}

} // namespace

SmallMac::SmallMac() {
    build();
    arrange();
    _built = walk();
    _builtFiles = files();
    for (const auto& [path, bytes] : _builtFiles.asKeyValueRange())
        _knownIdentifiers += identifiersIn(path + '\n' + bytes);
}

void SmallMac::build() {
    sample::MacBuilder mac(QString::fromUtf8(_root));
    mac.addStandardFolders();
    sample::addTools(mac);
    const auto add = [&](const QString& name, const QString& folder) {
        mac.addApplication({.name = name,
                            .folder = folder,
                            .identifier = u"org.example."_s + name.toLower(),
                            .category = u"public.app-category.utilities"_s});
    };
    for (const char* name :
         {"Ash", "Beech", "Cedar", "Dogwood", "Elm", "Fir", "Gorse", "Hazel", "Kelp", "Larch", "Maple"})
        add(QString::fromLatin1(name), u"/Applications"_s);
    add(u"Iris"_s, u"/Applications/Tools"_s);
    add(u"Juniper"_s, u"/Users/ada/Extra"_s);
    add(u"Nettle"_s, u"/System/Applications"_s);
    add(u"Oak"_s, u"/Users/ada/Applications"_s);
    add(u"Pine"_s, u"/Users/ada/Elsewhere"_s);
    mac.addLink(u"/Applications/Pine.app"_s, u"/Users/ada/Elsewhere/Pine.app"_s);
    for (const auto& identifier : {u"org.example.cedar"_s, u"org.example.larch"_s}) {
        mac.addFile(u"/Users/ada/Library/Preferences/%1.plist"_s.arg(identifier), "old");
        mac.addFile(u"/Users/ada/Library/Caches/%1/cache"_s.arg(identifier), "old");
    }
    const auto tile = [](const QString& name) {
        return sample::OldTile{name, u"org.example."_s + name.toLower()};
    };
    sample::addOldLaunchpad(
        mac, {.pages = {{tile(u"Hazel"_s),
                         sample::OldFolder{u"Trees"_s, {{tile(u"Fir"_s), tile(u"Elm"_s)}}}}}});
    mac.addFile(u"/Users/ada/icon.icns"_s,
                test::icnsFile(test::icnsEntry("ic07", test::png(128, Qt::darkGreen))));
    mac.addFile(u"/Users/ada/edits"_s, "rename org.example.gorse Batched\nhide org.example.fir\nundo\n"
                                       "group org.example.hazel --with org.example.gorse\n");
    mac.addFile(u"/Users/ada/undone"_s, "smart-folders add --template games\nundo\nredo\n");
    mac.addFile(u"/Users/ada/pasted"_s, "cut org.example.ash\npaste --to 0:0\n");
    const auto cask = [](const QString& name) {
        const QString info = u"/Applications/%1.app/Contents/Info.plist"_s.arg(name);
        return sample::Cask{.token = name,
                            .version = u"2.0"_s,
                            .installedVersion = u"1.0"_s,
                            .artifacts = {QJsonObject{{u"app"_s, QJsonArray{name + u".app"_s}}}},
                            .update = sample::PendingUpdate{name, u"2.0"_s, info, {}}};
    };
    sample::addHomebrew(mac, {cask(u"Maple"_s), cask(u"Gorse"_s)});
    mac.settleDates(QDateTime::fromString(u"2026-01-02T03:04:05Z"_s, Qt::ISODate));
    if (const auto failure = mac.failure())
        throw std::runtime_error(failure->toStdString());
}

/// An arrangement as a user may have made it, through the commands.
void SmallMac::arrange() {
    const auto done = [&](const QByteArray& line) {
        const Ending ending = run(line);
        if (ending.status != 0)
            throw std::runtime_error((line + ": " + ending.error.trimmed()).toStdString());
        return json::parse(ending.out).value_or(QJsonValue());
    };
    const auto name = [&](const char* word, const QJsonValue& value) {
        if (value.toString().isEmpty())
            throw std::runtime_error(std::string("there is nothing to call ") + word);
        _words.insert(word, value.toString().toUtf8());
    };
    _words.insert("{root}", _root);
    done("settings set appDiscovery.additionalSearchPaths '[\"/Users/ada/Extra\"]'");
    done("list");
    done("group org.example.beech --with org.example.ash");
    done("group org.example.gorse --with org.example.dogwood");
    for (const QJsonValue page : done("list")[u"pages"].toArray())
        for (const QJsonValue tile : page.toArray())
            if (const QJsonValue id = tile[u"folder"][u"_0"][u"id"]; id.isString())
                name("{folder}", id);
    done("rename {folder} Broad");
    done("hide org.example.elm");
    done("rename org.example.hazel 'Hazel of mine'");
    name("{arrangement}", done("arrangements save First")[u"id"]);
    done("move org.example.fir --to 0:0");
    done("arrangements restore {arrangement}");
    name("{backup}", done("backups list")[0][u"name"]);
    name("{smartFolder}", done("smart-folders add --template installedThisWeek")[u"id"]);
    QJsonObject definition = done("smart-folders show {smartFolder}").toObject();
    definition.insert(u"name"_s, u"Newest"_s);
    write("Users/ada/definition.json", json::write(definition));
    name("{unplaced}", done("smart-folders add --template games")[u"id"]);
    done("smart-folders unplace {unplaced}");
    done("alias create org.example.nettle --to 0");
    done("icon set org.example.oak /Users/ada/icon.icns");
    done("open org.example.oak");
    done("updates check");
    done("updates skip org.example.gorse");
    fs::remove_all(host("Applications/Kelp.app"));
    done("list");
    done("cleanup remove org.example.larch --yes");
    done("settings set gridRows 4");
    // What a start settles is settled.
    done("list");
    done("--mode windowed list");
    done("list");
}

Programs::Main SmallMac::tessellarctl(const QByteArray& line) const {
    QByteArray text = line;
    for (const auto& [word, meaning] : _words.asKeyValueRange())
        text.replace(word, meaning);
    std::vector<std::string> words{
        "tessellarctl", "--root", _root.toStdString(),   "--json", "--locale",
        "en_GB",        "--now",  "2026-11-14T12:00:00Z"};
    for (const QString& word : splitWords(QString::fromUtf8(text)).value_or(QStringList()))
        words.push_back(word.toStdString());
    return [words = std::move(words)]() mutable {
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        return tessellar::tessellarctl(static_cast<int>(words.size()), arguments.data());
    };
}

Programs::Main SmallMac::launcher() const {
    return [root = _root]() -> int {
        int count = 1;
        std::string name = "launcher";
        std::array<char*, 2> words{name.data(), nullptr};
        const QCoreApplication application(count, words.data());
        const auto host = HostMachine::make({.root = QString::fromUtf8(root),
                                             .home = {},
                                             .locale = u"en_GB"_s,
                                             .now = Instant::fromIso8601(u"2026-11-14T12:00:00Z")});
        if (!host)
            return 2;
        const auto found = findLauncherOrLock(**host, u"a launcher"_s);
        if (!found || found->launcher)
            return 2;
        const Interruption interruption([](int) { QCoreApplication::quit(); });
        LauncherViewModel launcher((*host)->machine());
        CommandInterpreter interpreter((*host)->machine(), launcher);
        ControlServer server((*host)->machine(), interpreter);
        if (!server.listen())
            return 2;
        launcher.start();
        QCoreApplication::exec();
        return launcher.quit() ? 0 : 1;
    };
}

Ending SmallMac::run(const QByteArray& line) {
    Programs programs;
    return programs.waitFor(programs.start(tessellarctl(line)), 60);
}

void SmallMac::bringAllBack() {
    // At most that of the built Mac, and one of a trial's.
    for (int removal = 0; removal < 2; ++removal)
        run("cleanup restore");
    run("list");
}

QByteArray SmallMac::batchFile(const Command& command) {
    static const QByteArray start = "batch {root}/";
    return command.line.startsWith(start) ? command.line.sliced(start.size()) : QByteArray();
}

SmallMac::Tree SmallMac::walk() const {
    Tree tree;
    const std::string root = host({});
    std::error_code error; // what a killed program had started may be at work still
    for (fs::recursive_directory_iterator at(root, error), end; at != end; at.increment(error)) {
        const std::string path = at->path().string();
        Entry entry;
        if (::lstat(path.c_str(), &entry.status) != 0)
            continue;
        if (S_ISLNK(entry.status.st_mode))
            entry.bytes = QByteArray::fromStdString(fs::read_symlink(path, error).string());
        else if (S_ISREG(entry.status.st_mode))
            entry.bytes = QByteArray::fromStdString(test::readFile(path));
        tree.emplace(QByteArray::fromStdString(path.substr(root.size())), entry);
    }
    return tree;
}

QMap<QByteArray, QByteArray> SmallMac::files() const {
    QMap<QByteArray, QByteArray> files;
    for (const auto& [path, entry] : walk())
        files.insert(path, entry.bytes);
    return files;
}

void SmallMac::write(const QByteArray& path, const QByteArray& bytes) const {
    // As a new file: a change within one tick of the disk's clock would not be seen.
    ::unlink(host(path).c_str());
    test::writeFile(host(path), {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

bool SmallMac::isThere(const QByteArray& path) const {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(host(path), ignored));
}

/// What was moved goes back as it is: the record of a removal knows its items by their identity.
void SmallMac::moveBack() const {
    QHash<ino_t, QByteArray> places;
    for (const auto& [path, entry] : walk())
        places.insert(entry.status.st_ino, path);
    for (const auto& [path, entry] : _built)
        if (const QByteArray place = places.value(entry.status.st_ino);
            !place.isEmpty() && !isThere(path))
            ::rename(host(place).c_str(), host(path).c_str());
}

void SmallMac::put(const QByteArray& path, const Entry& entry) const {
    const mode_t mode = entry.status.st_mode;
    std::error_code ignored;
    if (S_ISDIR(mode))
        fs::create_directory(host(path), ignored);
    else if (S_ISLNK(mode))
        fs::create_symlink(entry.bytes.toStdString(), host(path), ignored);
    else
        write(path, entry.bytes);
    if (!S_ISLNK(mode))
        ::chmod(host(path).c_str(), mode & 07777);
}

void SmallMac::restore() {
    moveBack();
    std::error_code ignored;
    for (const auto& [path, entry] : walk() | std::views::reverse) {
        const auto built = _built.find(path);
        if (built == _built.end() || built->second.status.st_mode != entry.status.st_mode ||
            built->second.bytes != entry.bytes)
            fs::remove_all(host(path), ignored);
    }
    for (const auto& [path, entry] : _built)
        if (!isThere(path))
            put(path, entry);
    // What lies in a folder changes its date: deeper ones come first.
    for (auto& [path, entry] : _built | std::views::reverse) {
        struct stat now {};
        ::lstat(host(path).c_str(), &now);
        const timespec times[] = {entry.status.st_mtim, entry.status.st_mtim};
        if (now.st_mtim.tv_sec != times->tv_sec || now.st_mtim.tv_nsec != times->tv_nsec)
            ::utimensat(AT_FDCWD, host(path).c_str(), times, AT_SYMLINK_NOFOLLOW);
        entry.status.st_ino = now.st_ino;
    }
}

State SmallMac::state() const {
    State state;
    QMap<QByteArray, QByteArray> numbers;
    for (const auto& [path, bytes] : files().asKeyValueRange()) {
        const bool isKeptBackup =
            path.startsWith(applicationFolder + "/Backups") && _builtFiles.contains(path);
        if (isPassing(path) && !isKeptBackup)
            continue;
        const QByteArray contents = path.endsWith(".json") ? withoutIdentities(bytes) : bytes;
        state.insert(withNumberedIdentifiers(path, _knownIdentifiers, numbers),
                     withNumberedIdentifiers(contents, _knownIdentifiers, numbers));
    }
    return state;
}

std::optional<QByteArray> SmallMac::siteOf(const QByteArray& hostPath) const {
    if (hostPath == _root)
        return ".";
    if (!hostPath.startsWith(_root + '/'))
        return std::nullopt;
    QByteArray path = hostPath.sliced(_root.size() + 1);
    if (path.endsWith(" (deleted)"))
        path.chop(10);
    return withoutStamps(path);
}

} // namespace tessellar::torture
