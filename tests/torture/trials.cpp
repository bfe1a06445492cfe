#include "torture/trials.h"

#include "model/json.h"

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
    bool isDeath() const {
        return _fate.kind == Fate::Kind::killedBefore || _fate.kind == Fate::Kind::killedAfter;
    }
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

/// Identifiers in a text.
QSet<QByteArray> identifiers(const QByteArray& text) {
    QSet<QByteArray> all;
    for (const QByteArray& word : text.split('"'))
        if (word.size() == 36 && word.count('-') == 4)
            all.insert(word);
    return all;
}

QByteArray shortened(const QByteArray& text) { return text.simplified().left(300); }

/// Without memory, or what an event loop is made of, libraries end a program in their own way: that is
/// no worse than being killed, as long as it harms nothing.
void endedAsItCould(Ending& ending) {
    if (!ending.status && !ending.isLate)
        ending.signal = SIGKILL;
}

const QByteArray registry = SmallMac::applicationFolder + "/computed-folders.json";
const QByteArray lock = SmallMac::applicationFolder + "/lock";

/// What was renamed is there although its folder could not be made safe.
bool isSync(const QByteArrayList& parts) { return parts[1] == "fsync" || parts[1] == "fdatasync"; }

} // namespace

std::optional<QList<Site>> Trials::sites(const Command& command) {
    _mac.restoreFor(command);
    Injection injection(_mac);
    Programs programs;
    const pid_t program = programs.start(_mac.tessellarctl(command.line), injection.asDecide());
    const Ending ending = programs.waitFor(program, secondsForAProgram);
    if (ending.status != 0)
        return std::nullopt;
    return injection.sites();
}

Ending Trials::runServed(const Command& command, const Programs::Decide& decide, Phase phase) {
    Programs programs;
    bool isListening = false;
    bool isServing = false;
    const pid_t launcher = programs.start(_mac.launcher(), [&](const SystemCall& call) {
        isListening = isListening || qstrcmp(call.name, "listen") == 0;
        isServing = isServing || qstrcmp(call.name, "accept4") == 0;
        return isServing == (phase == Phase::serving) ? decide(call) : Fate{};
    });
    if (!programs.runUntil(isListening, secondsForAProgram))
        // One that cannot start ends by itself, and the command is carried out without it.
        if (phase == Phase::serving || programs.waitFor(launcher, secondsForAProgram).isLate)
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

std::optional<QList<Site>> Trials::servedSites(const Command& command, Phase phase) {
    _mac.restoreFor(command);
    Injection injection(_mac);
    const Ending ending = runServed(command, injection.asDecide(), phase);
    if (ending.status != 0 || injection.sites().isEmpty())
        return std::nullopt;
    return injection.sites();
}

Verdict Trials::judge(const Case& one) {
    const QByteArrayList parts = one.split(':');
    const QByteArrayList rest = parts.sliced(1);
    const QByteArray& row = parts.first();
    if ((row == "call" || row == "kill") && rest.size() == 5)
        return judgeCall(rest);
    if ((row == "served" || row == "started") && rest.size() == 5)
        return judgeServed(rest, row == "served" ? Phase::serving : Phase::starting);
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
    _laws.prepare(*command);
    Injection injection(_mac, parts.sliced(1));
    Programs programs;
    const pid_t program = programs.start(_mac.tessellarctl(command->line), injection.asDecide());
    Ending ending = programs.waitFor(program, secondsForAProgram);
    if (injection.metKind() == Kind::makesDescriptor)
        endedAsItCould(ending);
    return {_laws.broken(*command, ending,
                         {.mayFailLate = isSync(parts),
                          .hidesRegistry = injection.hides(registry),
                          .hidesSome = injection.metKind() == Kind::reads,
                          .deniesLock = injection.denies(lock)}),
            injection.wasReached()};
}

Verdict Trials::judgeServed(const QByteArrayList& parts, Phase phase) {
    const Command* command = commandNamed(parts.first());
    if (!command)
        return {"there is no such command", false};
    _laws.prepare(*command);
    Injection injection(_mac, parts.sliced(1));
    Ending ending = runServed(*command, injection.asDecide(), phase);
    if (injection.metKind() == Kind::makesDescriptor)
        endedAsItCould(ending);
    // Whoever had no answer says so, and knows no more.
    if (injection.isDeath() && ending.error.contains("The launcher ended before it had answered.")) {
        ending.status.reset();
        ending.signal = SIGKILL;
    }
    return {_laws.broken(*command, ending,
                         {.mayFailLate = isSync(parts),
                          .warnsElsewhere = true,
                          .hidesRegistry = injection.hides(registry),
                          .hidesSome = injection.metKind() == Kind::reads}),
            injection.wasReached()};
}

Verdict Trials::judgeLimit(const QByteArrayList& parts) {
    const Command* command = commandNamed(parts.first());
    if (!command)
        return {"there is no such command", false};
    _laws.prepare(*command);
    const auto main = _mac.tessellarctl(command->line);
    Programs programs;
    if (parts.size() == 2) {
        _mac.leaveFree(parts.last().toInt() * pageSize);
        const Ending ending = programs.waitFor(programs.start(main), secondsForAProgram);
        _mac.leaveFree(std::nullopt);
        return {_laws.broken(*command, ending)};
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
    if (isMemory)
        endedAsItCould(ending);
    return {_laws.broken(*command, ending)};
}

/// What one place of one file spoils is at most one thing; else the bytes are kept.
Verdict Trials::judgeDamage(const QByteArrayList& parts) {
    const QByteArray path = _mac.builtFile(parts[1]);
    if (path.isEmpty())
        return {"there is no such file", false};
    const qsizetype at = parts[2].toLongLong();
    _mac.restore();
    const QMap<QByteArray, QByteArray> before = _mac.files();
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
    // Where things stood when one of them started, which their order says.
    const auto withoutPlaces = [](State state) {
        state.removeIf([](const auto& entry) { return entry.key().contains("/remembered-places"); });
        return state;
    };
    const State together = withoutPlaces(_mac.state());
    if (const QByteArray broken = _laws.brokenFile(); !broken.isEmpty())
        return {broken};
    _mac.restore();
    for (const Command& command : done)
        _mac.run(command.line);
    const State inTurn = withoutPlaces(_mac.state());
    if (together != inTurn)
        return {QByteArray::number(done.size()) + " commands said that they were done, but " +
                difference(inTurn, together)};
    return {};
}

} // namespace tessellar::torture
