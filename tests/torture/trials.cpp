#include "torture/trials.h"

#include "model/json.h"
#include "model/layout_document.h"

#include <signal.h>
#include <sys/resource.h>

#include <random>

namespace tessellar::torture {
namespace {

constexpr int secondsForAProgram = 60;
constexpr qint64 pageSize = 4096;

using Kind = SystemCall::Kind;

/// Notes where a program goes, and lets one call meet its fate.
class Injection {
public:
    explicit Injection(const SmallMac& mac) : _mac(mac) {}
    /// CALL, PATH, N, FATE
    Injection(const SmallMac& mac, const QByteArrayList& parts)
        : _mac(mac), _place(parts[0] + ':' + parts[1]), _number(parts[2].toInt()) {
        QByteArray fate = parts[3];
        _isLasting = fate.endsWith('+');
        if (_isLasting)
            fate.chop(1);
        if (fate == "before")
            _fate.kind = Fate::Kind::killedBefore;
        else if (fate == "after")
            _fate.kind = Fate::Kind::killedAfter;
        else
            _fate = {Fate::Kind::fails, errors().value(fate, EIO)};
    }

    Fate decide(const SystemCall& call) {
        const auto path = call.kind == Kind::reads || call.kind == Kind::changes
                              ? _mac.siteOf(call.path)
                              : std::optional<QByteArray>("");
        if (!path)
            return {};
        const QByteArray place = QByteArray(call.name) + ':' + *path;
        const int number = ++_counts[place];
        _sites.append({call.name, *path, number, call.kind});
        if (place == _place && number == _number) {
            _kind = call.kind;
            _path = *path;
            _wasReached = true;
            return _fate;
        }
        return _wasReached && _isLasting && isStruckToo(call, *path) ? _fate : Fate{};
    }
    Programs::Decide asDecide() {
        return [this](const SystemCall& call) { return decide(call); };
    }

    bool wasReached() const { return _wasReached; }
    const QList<Site>& sites() const { return _sites; }
    void forgetSites() {
        _sites.clear();
        _counts.clear();
    }

private:
    /// A disk that is full or read-only is so for all that would change it; a bad sector is one file's.
    bool isStruckToo(const SystemCall& call, const QByteArray& path) const {
        if (call.kind != _kind || qstrcmp(call.name, "close") == 0)
            return false;
        const bool isOfTheDisk = _fate.error == ENOSPC || _fate.error == EROFS;
        return isOfTheDisk || path == _path;
    }

    const SmallMac& _mac;
    QByteArray _place;
    int _number = 0;
    Fate _fate;
    bool _isLasting = false;
    bool _wasReached = false;
    Kind _kind = Kind::reads;
    QByteArray _path;
    QMap<QByteArray, int> _counts;
    QList<Site> _sites;
};

/// Identifiers in a text.
QSet<QByteArray> identifiers(const QByteArray& text) {
    QSet<QByteArray> all;
    for (const QByteArray& word : text.split('"'))
        if (word.size() == 36 && word.count('-') == 4)
            all.insert(word);
    return all;
}

QByteArray shortened(const QByteArray& text) { return text.simplified().left(300); }

} // namespace

std::optional<QList<Site>> Trials::sites(const Command& command) {
    _mac.restore();
    Injection injection(_mac);
    Programs programs;
    const pid_t program = programs.start(_mac.tessellarctl(command.line), injection.asDecide());
    const Ending ending = programs.waitFor(program, secondsForAProgram);
    if (ending.status != 0)
        return std::nullopt;
    return injection.sites();
}

/// A launcher that is running serves the command; at its answer it is killed, so that what it has put
/// off is lost. It leaves in its own way where it has said that something failed.
Ending Trials::runServed(const Command& command, const Programs::Decide& decide, bool& isServing) {
    Programs programs;
    bool isListening = false;
    const pid_t launcher = programs.start(_mac.launcher(), [&](const SystemCall& call) {
        isListening = isListening || qstrcmp(call.name, "listen") == 0;
        isServing = isServing || qstrcmp(call.name, "accept4") == 0;
        return isServing ? decide(call) : Fate{};
    });
    if (!programs.runUntil(isListening, secondsForAProgram))
        return {.isLate = true};
    const pid_t client = programs.start(_mac.tessellarctl(command.line));
    const Ending ending = programs.waitFor(client, secondsForAProgram);
    programs.signal(launcher, ending.status == 0 ? SIGKILL : SIGTERM);
    const Ending end = programs.waitFor(launcher, secondsForAProgram);
    return end.isLate ? end : ending;
}

std::optional<QList<Site>> Trials::servedSites(const Command& command) {
    _mac.restore();
    Injection injection(_mac);
    bool isServing = false;
    const Ending ending = runServed(command, injection.asDecide(), isServing);
    if (ending.status != 0 || !isServing)
        return std::nullopt;
    return injection.sites();
}

const Trials::Reference& Trials::reference(const Command& command) {
    const auto known = _references.constFind(command.line);
    if (known != _references.cend())
        return *known;
    Reference reference;
    _mac.restore();
    reference.before = _mac.state();
    _mac.run(command.line);
    reference.after = _mac.state();
    _mac.run("list");
    reference.settledAfter = _mac.state();
    return *_references.insert(command.line, reference);
}

Verdict Trials::judge(const Case& one) {
    const QByteArrayList parts = one.split(':');
    const QByteArrayList rest = parts.sliced(1);
    const QByteArray& row = parts.first();
    if ((row == "call" || row == "kill") && rest.size() == 5)
        return judgeCall(rest);
    if (row == "served" && rest.size() == 5)
        return judgeServed(rest);
    if ((row == "full" && rest.size() == 2) || (row == "limit" && rest.size() == 3))
        return judgeLimit(rest);
    if ((row == "bits" || row == "cut") && rest.size() == 2)
        return judgeDamage(parts);
    if (row == "together" && rest.size() == 2)
        return judgeTogether(rest);
    return {"this names no case", false};
}

Verdict Trials::judgeCall(const QByteArrayList& parts) {
    const Command* command = commandNamed(parts.first());
    if (!command)
        return {"there is no such command", false};
    reference(*command);
    _mac.restore();
    Injection injection(_mac, parts.sliced(1));
    Programs programs;
    const pid_t program = programs.start(_mac.tessellarctl(command->line), injection.asDecide());
    const Ending ending = programs.waitFor(program, secondsForAProgram);
    // What was renamed is there although its folder could not be made safe.
    const bool mayFailLate = parts[1] == "fsync" || parts[1] == "fdatasync";
    return {brokenLaw(*command, ending, mayFailLate), injection.wasReached()};
}

Verdict Trials::judgeServed(const QByteArrayList& parts) {
    const Command* command = commandNamed(parts.first());
    if (!command)
        return {"there is no such command", false};
    reference(*command);
    _mac.restore();
    Injection injection(_mac, parts.sliced(1));
    bool isServing = false;
    const Ending ending = runServed(*command, injection.asDecide(), isServing);
    const bool isKilled = parts.last() == "before" || parts.last() == "after";
    return {brokenLaw(*command, ending, isKilled || parts[1] == "fsync" || parts[1] == "accept4"),
            injection.wasReached()};
}

Verdict Trials::judgeLimit(const QByteArrayList& parts) {
    const Command* command = commandNamed(parts.first());
    if (!command)
        return {"there is no such command", false};
    reference(*command);
    _mac.restore();
    const auto main = _mac.tessellarctl(command->line);
    Programs programs;
    if (parts.size() == 2) {
        _mac.leaveFree(parts.last().toInt() * pageSize);
        const Ending ending = programs.waitFor(programs.start(main), secondsForAProgram);
        _mac.leaveFree(std::nullopt);
        return {brokenLaw(*command, ending, false)};
    }
    const bool isMemory = parts[1] == "memory";
    const pid_t program = programs.start([&, count = parts[2].toULongLong()]() -> int {
        rlim_t bound = count;
        int resource = RLIMIT_NOFILE;
        if (parts[1] == "fileSize") {
            resource = RLIMIT_FSIZE;
            ::signal(SIGXFSZ, SIG_IGN);
        } else if (isMemory) {
            resource = RLIMIT_AS;
            // Beside what is mapped already.
            long pages = 0;
            if (std::FILE* file = std::fopen("/proc/self/statm", "re")) {
                if (std::fscanf(file, "%ld", &pages) != 1)
                    pages = 0;
                std::fclose(file);
            }
            bound = (bound << 20) + static_cast<rlim_t>(pages) * pageSize;
        }
        const rlimit limit{bound, bound};
        ::setrlimit(resource, &limit);
        return main();
    });
    Ending ending = programs.waitFor(program, secondsForAProgram);
    // Without memory a program may end as it can, as long as it harms nothing.
    if (isMemory && !ending.status && !ending.isLate)
        ending.signal = SIGKILL;
    return {brokenLaw(*command, ending, false)};
}

/// What one place of one file spoils is at most one thing; else the bytes are kept.
Verdict Trials::judgeDamage(const QByteArrayList& parts) {
    const QByteArray path = parts[1].startsWith("com.tessellar.app.json")
                                ? SmallMac::settingsFile
                                : SmallMac::applicationFolder + '/' + parts[1];
    const qsizetype at = parts[2].toLongLong();
    _mac.restore();
    const QMap<QByteArray, QByteArray> before = _mac.files();
    QByteArray damaged = before.value(path);
    if (parts[0] == "cut")
        damaged.truncate(at);
    else if (at / 8 < damaged.size())
        damaged[at / 8] = static_cast<char>(damaged[at / 8] ^ (1 << (at % 8)));
    _mac.write(path, damaged);
    for (const char* line : {"list", "rename org.example.maple Acer"}) {
        const Ending ending = _mac.run(line);
        if (!ending.status)
            return {ending.isLate ? "it did not end" : "it crashed: " + shortened(ending.error)};
    }
    const QMap<QByteArray, QByteArray> after = _mac.files();
    const QList<QByteArray> contents = after.values();
    const bool isKept = contents.contains(damaged);
    const bool isJson = json::parse(damaged).has_value();
    for (auto file = before.begin(); file != before.end(); ++file) {
        const bool isDamaged = file.key() == path;
        if (isDamaged && isKept)
            continue;
        if (!file.key().endsWith(".json") || contents.contains(*file) ||
            file.key().endsWith("bundle-answers.json") || file.key().endsWith("known-volumes.json"))
            continue;
        if (path == SmallMac::settingsFile && isJson)
            continue; // other folders may be searched now
        const QSet<QByteArray> lost = identifiers(*file) - identifiers(after.value(file.key()));
        if (lost.size() > 1 || (isDamaged && !isJson && !damaged.isEmpty()))
            return {file.key() + " lost " + QByteArray::number(lost.size()) +
                    " identifiers, and what it held is kept nowhere"};
    }
    for (auto file = after.begin(); file != after.end(); ++file)
        if ((file.key().contains(".damaged") || file.key().contains(".corrupt")) &&
            !before.contains(file.key()) && *file != damaged)
            return {file.key() + " was set aside, and is whole"};
    return {};
}

Verdict Trials::judgeTogether(const QByteArrayList& parts) {
    const bool isServed = parts[0] == "served";
    std::mt19937 random(parts[1].toUInt());
    QList<Command> some;
    for (const Command& command : independentCommands())
        if (random() % 3 != 0)
            some.append(command);
    _mac.restore();
    QList<Command> done;
    {
        Programs programs;
        pid_t launcher = 0;
        if (isServed) {
            bool isListening = false;
            launcher = programs.start(_mac.launcher(), [&](const SystemCall& call) {
                isListening = isListening || qstrcmp(call.name, "listen") == 0;
                return Fate{};
            });
            if (!programs.runUntil(isListening, secondsForAProgram))
                return {"the launcher does not listen"};
        }
        std::vector<pid_t> running;
        for (const Command& command : some)
            running.push_back(programs.start(_mac.tessellarctl(command.line)));
        for (std::size_t i = 0; i < running.size(); ++i) {
            const Ending ending = programs.waitFor(running[i], secondsForAProgram);
            if (!ending.status)
                return {QByteArray(some[static_cast<qsizetype>(i)].line) + " did not end by itself"};
            if (ending.status == 0)
                done.append(some[static_cast<qsizetype>(i)]);
        }
        if (launcher != 0) {
            programs.signal(launcher, SIGKILL);
            programs.waitFor(launcher, secondsForAProgram);
        }
    }
    const State together = _mac.state();
    if (const QByteArray broken = brokenFile(); !broken.isEmpty())
        return {broken};
    _mac.restore();
    for (const Command& command : done)
        _mac.run(command.line);
    const State inTurn = _mac.state();
    if (together != inTurn)
        return {QByteArray::number(done.size()) + " commands said that they were done, but " +
                difference(inTurn, together)};
    return {};
}

QByteArray Trials::brokenFile() const {
    const QMap<QByteArray, QByteArray> files = _mac.files();
    int temporary = 0;
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QByteArray& path = file.key();
        if (!path.startsWith(SmallMac::applicationFolder) && path != SmallMac::settingsFile)
            continue;
        const bool isNew = !_mac.builtFiles().contains(path);
        temporary += path.contains(".tessellar-save-") ? 1 : 0;
        if (isNew &&
            (path.contains(".damaged") || path.contains(".corrupt") || path.contains("recovery")))
            return path + " was set aside, and nothing was damaged";
        if (path.endsWith(".json") && !json::parse(*file))
            return path + " is broken";
        if (path.contains("/Backups/") && path.endsWith(".json") &&
            !json::decodeDocument<BackupDocument>(*file))
            return path + " is no backup";
    }
    return temporary > 2 ? QByteArray("temporary files add up") : QByteArray();
}

/// The registry of smart folders is set aside by whatever keeps it from being read, byte for byte, and
/// comes back when the user says so.
QByteArray Trials::putRegistryBack() {
    const QByteArray marker = SmallMac::applicationFolder + "/computed-folders.recovery.json";
    if (!_mac.files().contains(marker))
        return {};
    const Ending ending = _mac.run("smart-folders recover restore");
    return ending.status == 0 ? QByteArray()
                              : "the registry cannot be put back: " + shortened(ending.error);
}

QByteArray Trials::brokenLaw(const Command& command, const Ending& ending, bool mayFailLate) {
    const auto with = [&](const QByteArray& law) {
        return law + (ending.error.isEmpty() ? QByteArray() : "; it said: " + shortened(ending.error));
    };
    if (ending.isLate)
        return with("it did not end");
    if (!ending.status && ending.signal != SIGKILL)
        return with("it crashed with signal " + QByteArray::number(ending.signal));
    if (const QByteArray broken = brokenFile(); !broken.isEmpty())
        return with(broken);
    if (const QByteArray broken = putRegistryBack(); !broken.isEmpty())
        return with(broken);
    const Reference& expected = reference(command);
    State now = _mac.state();
    if (ending.status == 0)
        return now == expected.after
                   ? QByteArray()
                   : with("it said that it was done, but " + difference(expected.after, now));
    if (ending.status && !mayFailLate && now == expected.after && expected.after != expected.before)
        return with("it said that it failed, and did it");
    const auto isWhole = [&] {
        return now == expected.before || now == expected.after || now == expected.settledAfter;
    };
    if (!isWhole()) {
        _mac.run("list");
        now = _mac.state();
        if (!isWhole())
            return with("it was half done: from before, " + difference(expected.before, now) +
                        "; from after, " + difference(expected.after, now));
    }
    if (now != expected.before)
        return {};
    const Ending again = _mac.run(command.line);
    if (again.status != 0)
        return with("it cannot be done again: " + shortened(again.error));
    const State later = _mac.state();
    return later == expected.after ? QByteArray()
                                   : with("done again, " + difference(expected.after, later));
}

} // namespace tessellar::torture
