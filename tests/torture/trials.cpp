#include "torture/trials.h"

#include "model/json.h"

#include <signal.h>

#include <random>
#include <stdexcept>

namespace tessellar::torture {

constexpr int secondsForAProgram = 60;

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
    bool wasReached() const { return _wasReached; }
    bool isDeath() const { return _fate.kind != Fate::Kind::runs && _fate.kind != Fate::Kind::fails; }
    bool denies(const QByteArray& file) const {
        return _wasReached && _isLasting && _path == file && _place.startsWith("open");
    }
    /// It keeps whoever reads from a file, or from a folder on the way to it, for as long as he lives.
    bool hides(const QByteArray& file) const {
        return _wasReached && _isLasting && _kind == Kind::reads &&
               (_path == "." || file == _path || file.startsWith(_path + '/'));
    }
    Kind metKind() const { return _kind; } ///< of the call that met its fate
    const QList<Site>& sites() const { return _sites; }

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

namespace {

bool isOfLauncher(const QByteArray& row) { return row == "served" || row == "started"; }

/// Without memory, or what an event loop is made of, libraries end a program in their own way: that is
/// no worse than being killed, as long as it harms nothing.
void endedAsItCould(Ending& ending) {
    if (!ending.status && !ending.isLate)
        ending.signal = SIGKILL;
}

const QByteArray registry = SmallMac::applicationFolder + "/computed-folders.json";
const QByteArray lock = SmallMac::applicationFolder + "/lock";

} // namespace

QList<Site> Trials::sites(const QByteArray& row, const Command& command) {
    _mac.restore();
    Injection injection(_mac);
    const Ending ending = run(row, command, injection);
    if (ending.status != 0 || injection.sites().isEmpty())
        throw std::runtime_error(
            (row + ':' + command.name + " fails without a fault: " + ending.error).toStdString());
    return injection.sites();
}

Ending Trials::run(const QByteArray& row, const Command& command, Injection& injection) const {
    if (isOfLauncher(row))
        return runServed(command, injection, row == "served");
    Programs programs;
    const pid_t program = programs.start(_mac.tessellarctl(command.line), [&](const SystemCall& call) {
        return injection.decide(call);
    });
    return programs.waitFor(program, secondsForAProgram);
}

Ending Trials::runServed(const Command& command, Injection& injection, bool fromThenOn) const {
    Programs programs;
    bool isListening = false;
    bool isServing = false;
    const pid_t launcher = programs.start(_mac.launcher(), [&](const SystemCall& call) {
        isListening = isListening || qstrcmp(call.name, "listen") == 0;
        isServing = isServing || qstrcmp(call.name, "accept4") == 0;
        return isServing == fromThenOn ? injection.decide(call) : Fate{};
    });
    if (!programs.runUntil([&] { return isListening; }, secondsForAProgram))
        // One that cannot start ends by itself, and the command is carried out without it.
        if (fromThenOn || programs.waitFor(launcher, secondsForAProgram).isLate)
            return {.isLate = true};
    const pid_t client = programs.start(_mac.tessellarctl(command.line));
    Ending ending = programs.waitFor(client, secondsForAProgram);
    programs.signal(launcher, ending.status == 0 ? SIGKILL : SIGTERM);
    const Ending end = programs.waitFor(launcher, secondsForAProgram);
    if (end.isLate || (!end.status && end.signal != SIGKILL))
        return end;
    ending.error += end.error;
    return ending;
}

Verdict Trials::judge(const Case& one) {
    const QByteArrayList parts = one.split(':');
    const QByteArray& row = parts.first();
    const Command* command = commandNamed(parts.value(1));
    if (command && (row == "call" || row == "kill" || isOfLauncher(row)) && parts.size() == 6)
        return judgeCall(*command, parts);
    if ((row == "bits" || row == "cut") && parts.size() == 3)
        return judgeDamage(parts);
    if (row == "together" && parts.size() == 3)
        return judgeTogether(parts);
    return {"this names no case", false};
}

Verdict Trials::judgeCall(const Command& command, const QByteArrayList& parts) {
    _laws.prepare(command);
    Injection injection(_mac, parts.sliced(2));
    const bool isServed = isOfLauncher(parts[0]);
    Ending ending = run(parts[0], command, injection);
    if (injection.metKind() == Kind::makesDescriptor)
        endedAsItCould(ending);
    // Whoever had no answer says so, and knows no more.
    if (isServed && injection.isDeath() &&
        ending.error.contains("The launcher ended before it had answered.")) {
        ending.status.reset();
        ending.signal = SIGKILL;
    }
    // What was renamed is there although its folder could not be made safe.
    const bool isSync = parts[2] == "fsync" || parts[2] == "fdatasync";
    return {_laws.broken(command, ending,
                         {.mayFailLate = isSync,
                          .warnsElsewhere = isServed,
                          .hidesRegistry = injection.hides(registry),
                          .hidesSome = injection.metKind() == Kind::reads,
                          .deniesLock = !isServed && injection.denies(lock)}),
            injection.wasReached()};
}

/// What one place of one file spoils is at most one thing; else the bytes are kept.
Verdict Trials::judgeDamage(const QByteArrayList& parts) {
    _mac.restore();
    const QMap<QByteArray, QByteArray> before = _mac.files();
    const auto found = std::find_if(before.keyBegin(), before.keyEnd(), [&](const QByteArray& path) {
        return withoutStamps(path) == parts[1];
    });
    if (found == before.keyEnd())
        return {"there is no such file", false};
    const QByteArray& path = *found;
    const qsizetype at = parts[2].toLongLong();
    QByteArray damaged = before.value(path);
    if (parts[0] == "cut")
        damaged.truncate(at);
    else if (at / 8 < damaged.size())
        damaged[at / 8] = static_cast<char>(damaged[at / 8] ^ (1 << (at % 8)));
    _mac.write(path, damaged);
    for (const char* line :
         {"list", "rename org.example.maple Acer", "arrangements list", "backups list"}) {
        const Ending ending = _mac.run(line);
        if (!ending.status)
            return {ending.isLate ? "it did not end" : "it crashed: " + shortened(ending.error)};
    }
    const QMap<QByteArray, QByteArray> after = _mac.files();
    const QList<QByteArray> contents = after.values();
    const bool isKept = contents.contains(damaged);
    const bool isJson = json::parse(damaged).has_value();
    for (const auto& [name, bytes] : before.asKeyValueRange()) {
        const bool isDamaged = name == path;
        if (isDamaged && isKept)
            continue;
        if (!name.endsWith(".json") || contents.contains(bytes) ||
            name.endsWith("bundle-answers.json") || name.endsWith("known-volumes.json"))
            continue;
        if (path == SmallMac::settingsFile && isJson)
            continue; // other folders may be searched now
        const QSet<QByteArray> lost = identifiersIn(bytes) - identifiersIn(after.value(name));
        if (lost.size() > 1 || (isDamaged && !isJson && !damaged.isEmpty()))
            return {name + " lost " + QByteArray::number(lost.size()) +
                    " identifiers, and what it held is kept nowhere"};
    }
    for (const auto& [name, bytes] : after.asKeyValueRange())
        if ((name.contains(".damaged") || name.contains(".corrupt")) && !before.contains(name) &&
            bytes != damaged)
            return {name + " was set aside, and is whole"};
    return {};
}

Verdict Trials::judgeTogether(const QByteArrayList& parts) {
    std::mt19937 random(parts[2].toUInt());
    QByteArrayList some = independentCommands();
    some.removeIf([&](const QByteArray&) { return random() % 3 == 0; });
    _mac.restore();
    QByteArrayList done;
    {
        bool isListening = false;
        Programs programs;
        if (parts[1] == "served") {
            programs.start(_mac.launcher(), [&](const SystemCall& call) {
                isListening = isListening || qstrcmp(call.name, "listen") == 0;
                return Fate{};
            });
            if (!programs.runUntil([&] { return isListening; }, secondsForAProgram))
                return {"the launcher does not listen"};
        }
        std::vector<std::pair<pid_t, QByteArray>> running;
        for (const QByteArray& line : some)
            running.emplace_back(programs.start(_mac.tessellarctl(line)), line);
        for (const auto& [program, line] : running) {
            const Ending ending = programs.waitFor(program, secondsForAProgram);
            if (!ending.status)
                return {line + " did not end by itself"};
            if (ending.status == 0)
                done.append(line);
        }
    } // which kills the launcher
    const State together = withoutPlaces(_mac.state());
    if (const QByteArray broken = _laws.brokenFile(); !broken.isEmpty())
        return {broken};
    _mac.restore();
    for (const QByteArray& line : done)
        _mac.run(line);
    const State inTurn = withoutPlaces(_mac.state());
    if (together != inTurn)
        return {QByteArray::number(done.size()) + " commands said that they were done, but " +
                difference(inTurn, together)};
    return {};
}

} // namespace tessellar::torture
