#include "updates/app_update_runner.h"

#include "platform/texts.h"
#include "updates/known_app_updates.h"
#include "updates/untrusted_text.h"

#include <algorithm>
#include <cerrno>

namespace tessellar {

using Kind = AppUpdateActionState::Kind;
using Phase = AppUpdateActionState::Phase;

namespace {

constexpr std::uint64_t maximumOutput = 4u << 20;
constexpr std::uint64_t maximumJournal = 64u << 10;
constexpr qsizetype shownLines = 5;
constexpr qsizetype longestLine = 300;

QList<QByteArray> lastLines(const QByteArray& output) {
    QList<QByteArray> lines;
    for (const QByteArray& line : QByteArray(output).replace('\r', '\n').split('\n'))
        if (!line.trimmed().isEmpty())
            lines.append(line.trimmed());
    return lines.sliced(std::max<qsizetype>(0, lines.size() - shownLines));
}

/// The readable part of Homebrew's output.
QString detail(const QList<QByteArray>& lines) {
    QStringList shown;
    for (const QByteArray& line : lines)
        if (const QString words = toSingleLine(QString::fromUtf8(line), longestLine); !words.isEmpty())
            shown.append(words);
    return shown.join(u'\n');
}

} // namespace

/// The result of starting a command.
struct AppUpdateRunner::Start {
    std::expected<std::int64_t, int> number = std::unexpected(0);
    std::optional<FileError> notNoted; ///< set if the journal could not be written, so that the next
                                       ///< launcher will not resume it
};

/// A snapshot of a command.
struct AppUpdateRunner::PollResult {
    DetachedState state;
    std::optional<QByteArray> output;
};

AppUpdateRunner::AppUpdateRunner(Machine& machine, const AppUpdateChannels& channels,
                                 KnownAppUpdates& known, Verify verify)
    : _machine(machine)
    , _channels(channels)
    , _known(known)
    , _verify(std::move(verify))
    , _opener(machine) {}

AppUpdateRunner::~AppUpdateRunner() = default;

QString AppUpdateRunner::journalPath(const Machine& machine) {
    return FileSystem::joined(machine.places.applicationFolder(),
                              QStringLiteral("app-update-run.json"));
}

QString AppUpdateRunner::outputPath(const Machine& machine) {
    return FileSystem::joined(machine.places.applicationFolder(), QStringLiteral("app-update-run.log"));
}

std::optional<AppUpdateActionState> AppUpdateRunner::state(const QString& appKey) const {
    const auto found = _states.constFind(appKey);
    return found == _states.constEnd() ? std::nullopt : std::optional(*found);
}

void AppUpdateRunner::set(const QString& appKey, const AppUpdateActionState& state) {
    _states.insert(appKey, state);
    _known.notify(AppUpdateEvent::Kind::actionChanged, appKey);
}

// ---- questions and requests

std::optional<AppUpdateQuestion> AppUpdateRunner::question(const QStringList& appKeys) const {
    QStringList names;
    QStringList updaters;
    for (const QString& appKey : appKeys) {
        const auto action = _channels.action(appKey);
        const auto updater = action ? command(*action) : std::nullopt;
        const AppUpdateCandidate* app = _channels.candidate(appKey);
        if (!updater || !app)
            continue;
        names.append(toSingleLine(app->name, longestLine));
        if (!updaters.contains(updater->updaterName))
            updaters.append(updater->updaterName);
    }
    if (names.isEmpty())
        return std::nullopt;
    if (names.size() == 1)
        return AppUpdateQuestion{
            Texts::tr("Update “%1”?").arg(names.first()),
            Texts::tr("%1 may quit the app while it downloads and installs the update.")
                .arg(updaters.first())};
    return AppUpdateQuestion{
        Texts::tr("Update %n apps?", nullptr, static_cast<int>(names.size())),
        Texts::tr("%1 may quit the apps while it downloads and installs the updates, one after the "
                  "other: %2.")
            .arg(updaters.join(Texts::tr(" and ")), names.join(QStringLiteral(", ")))};
}

bool AppUpdateRunner::update(const QStringList& appKeys, const Asker& ask, Done done) {
    if (_active) {
        const bool isJoined = std::ranges::all_of(appKeys, [this](const QString& appKey) {
            return appKey == *_active || std::ranges::find(_waiting, appKey) != _waiting.end();
        });
        if (isJoined && done)
            _done.push_back(std::move(done));
        return isJoined;
    }
    QStringList wanted;
    for (const QString& appKey : appKeys) {
        const auto action = _channels.action(appKey);
        if (action && (appKeys.size() == 1 || command(*action)))
            wanted.append(appKey);
    }
    if (done)
        _done.push_back(std::move(done));
    if (wanted.isEmpty()) {
        next();
        return true;
    }
    _active = wanted.first();
    for (const QString& appKey : std::as_const(wanted))
        _states.remove(appKey);
    const auto alive = _lifetime.watch();
    for (const QString& appKey : std::as_const(wanted))
        if (!alive.expired())
            _known.notify(AppUpdateEvent::Kind::actionChanged, appKey);
    if (!alive.expired())
        askFirst(wanted, ask);
    return true;
}

void AppUpdateRunner::askFirst(const QStringList& appKeys, const Asker& ask) {
    const auto answered = [this, appKeys, alive = _lifetime.watch(),
                           isAnswered = std::make_shared<bool>()](bool confirmed) {
        if (alive.expired() || std::exchange(*isAnswered, true))
            return;
        const bool isBeginning = confirmed && !_isCancelled;
        if (isBeginning)
            _waiting.assign(appKeys.begin(), appKeys.end());
        for (const QString& appKey : appKeys) {
            if (isBeginning)
                _states.insert(appKey, {appKey == appKeys.first() ? Kind::running : Kind::waiting});
            _known.notify(AppUpdateEvent::Kind::actionChanged, appKey);
            if (alive.expired())
                return;
        }
        next();
    };
    const auto asked = question(appKeys);
    if (asked && ask)
        ask(*asked, answered);
    else
        answered(!asked);
}

/// Starts the next waiting update, or reports that all are done.
void AppUpdateRunner::next() {
    while (!_waiting.empty()) {
        const QString appKey = _waiting.front();
        _waiting.pop_front();
        const auto action = _channels.action(appKey);
        const auto kind = state(appKey) ? state(appKey)->kind : Kind::running;
        // An earlier update may have included this one.
        if (!action || (kind == Kind::waiting && !_known.hasUpdate(appKey))) {
            set(appKey, {Kind::succeeded, Texts::tr("The app is up to date.")});
            continue;
        }
        _active = appKey;
        if (const auto updater = command(*action))
            return run(appKey, *updater);
        return open(appKey, *action);
    }
    _active.reset();
    _isCancelled = false;
    const auto alive = _lifetime.watch();
    for (const Done& done : std::exchange(_done, {})) {
        done();
        if (alive.expired())
            return;
    }
}

void AppUpdateRunner::cancel() {
    const auto alive = _lifetime.watch();
    for (const QString& appKey : std::exchange(_waiting, {})) {
        set(appKey, {Kind::cancelled, message(AppUpdateOutcome::cancelled)});
        if (alive.expired())
            return;
    }
    if (!_active || _isCancelled)
        return;
    _isCancelled = true;
    if (_run && _run->processNumber > 0 && !_isPolling && !_isVerifying)
        poll(); // the poll ends it
}

// ---- commands

void AppUpdateRunner::run(const QString& appKey, const AppUpdateCommand& updater) {
    const AppUpdateCandidate* app = _channels.candidate(appKey);
    auto environment = _machine.environment;
    for (const auto& [name, value] : updater.furtherEnvironment)
        environment[name] = value;
    const Command child{.executable = _machine.files.hostPath(updater.executable),
                        .arguments = updater.arguments,
                        .environment = std::move(environment),
                        .input = {}};
    _run = AppUpdateRun{.appKey = appKey,
                        .updaterName = updater.updaterName,
                        .startedAt = _machine.clock.now(),
                        .installedVersion = app ? app->version : std::nullopt,
                        .installedBuild = app ? app->build : std::nullopt};
    _lines.clear();
    _seen = {};
    _polledAt.reset();
    _terminatedAfter.reset();
    _isTimedOut = _isResumed = false;
    // The command is started and journaled in one go, on a worker that nothing cancels in between.
    _work = _machine.workers.run(
        Lane::actions,
        [&machine = _machine, child, begun = *_run](std::stop_token) mutable {
            Start start;
            if (auto made = machine.files.createDirectories(machine.places.applicationFolder()); !made)
                start.notNoted = made.error();
            start.number = machine.commands.start(child, machine.files.hostPath(outputPath(machine)));
            begun.processNumber = start.number.value_or(0);
            if (start.number)
                if (auto noted = machine.files.writeAtomically(journalPath(machine),
                                                               json::write(json::encode(begun)));
                    !noted)
                    start.notNoted = noted.error();
            return start;
        },
        [this](const Start& start) { started(start); });
    set(appKey, {Kind::running, {}, Phase::starting});
}

void AppUpdateRunner::started(const Start& start) {
    if (start.notNoted)
        _machine.log.warning(QStringLiteral("Could not save the journal of the running update: %1")
                                 .arg(message(*start.notNoted)));
    if (start.number) {
        _run->processNumber = *start.number;
        return poll();
    }
    const QString appKey = std::exchange(_run, std::nullopt)->appKey;
    finish(appKey, {Kind::failed,
                    message(start.number.error() == EWOULDBLOCK ? AppUpdateOutcome::alreadyRunning
                                                                : AppUpdateOutcome::couldNotLaunch)});
}

std::optional<AppUpdateRun> AppUpdateRunner::interruptedRun(const Machine& machine) {
    const auto bytes = machine.files.read(journalPath(machine), maximumJournal);
    auto run = bytes ? json::decodeDocument<AppUpdateRun>(*bytes) : json::fail({});
    return run ? std::optional(*std::move(run)) : std::nullopt;
}

bool AppUpdateRunner::isInterruptedRunActive(const Machine& machine) {
    const auto run = interruptedRun(machine);
    return run && machine.commands.poll(run->processNumber, machine.files.hostPath(outputPath(machine)))
                      .isRunning();
}

void AppUpdateRunner::resume(const AppUpdateRun& run) {
    if (_active)
        return;
    _active = run.appKey;
    _run = run;
    _isResumed = true;
    set(run.appKey, {Kind::running, {}, Phase::starting});
    poll();
}

/// Polls the command on a worker, and schedules the next poll.
void AppUpdateRunner::poll() {
    using Seconds = std::chrono::duration<double>;
    const Instant now = _machine.clock.now();
    if (_polledAt)
        _seen += std::clamp<Seconds>(now - *_polledAt, Seconds::zero(), 4 * Seconds(pollInterval));
    _polledAt = now;
    _isTimedOut = _isTimedOut || _seen >= Seconds(commandTimeout);
    const bool isToEnd = _isCancelled || _isTimedOut;
    std::optional<bool> terminates; // set to terminate; true kills
    if (isToEnd && !_terminatedAfter) {
        _terminatedAfter = _seen;
        terminates = false;
    } else if (isToEnd && _seen - *_terminatedAfter >= Seconds(terminationGrace)) {
        terminates = true;
    }
    _nextPoll.cancel();
    _isPolling = true;
    _work = _machine.workers.run(
        [&machine = _machine, number = _run->processNumber, terminates](std::stop_token) {
            const QByteArray file = machine.files.hostPath(outputPath(machine));
            if (terminates)
                machine.commands.terminate(number, file, *terminates);
            PollResult seen{.state = machine.commands.poll(number, file)};
            if (auto output = machine.files.read(outputPath(machine), maximumOutput))
                seen.output = *std::move(output);
            return seen;
        },
        [this](const PollResult& seen) { polled(seen); });
}

void AppUpdateRunner::polled(const PollResult& seen) {
    _isPolling = false;
    if (seen.output)
        _lines = lastLines(*seen.output);
    if (!seen.state.isRunning())
        return ended(seen.state);
    if (_isCancelled && !_terminatedAfter)
        return poll();
    _nextPoll = _machine.scheduler.after(pollInterval, [this] { poll(); });
    AppUpdateActionState state{Kind::running, {}, phaseOf(_lines)};
    if (!_lines.isEmpty())
        state.detail = toSingleLine(QString::fromUtf8(_lines.last()), longestLine);
    if (_states.value(_run->appKey) != state)
        set(_run->appKey, state);
}

void AppUpdateRunner::ended(const DetachedState& state) {
    const QString appKey = _run->appKey;
    const auto alive = _lifetime.watch();
    _isVerifying = true;
    const bool isGood = state.status == 0 || state.kind == DetachedState::Kind::gone;
    set(appKey,
        {Kind::running, isGood ? message(AppUpdateOutcome::completed) : QString(), Phase::verifying});
    if (!alive.expired())
        _verify(_channels.siblings(appKey), [this, alive, state] {
            if (!alive.expired() && _run)
                verified(state);
        });
}

/// The installed version decides; the command's output explains.
void AppUpdateRunner::verified(const DetachedState& state) {
    const AppUpdateRun run = *std::exchange(_run, std::nullopt);
    _isVerifying = false;
    const AppUpdateCandidate* app = _channels.candidate(run.appKey);
    const bool isUnfinished = state.kind == DetachedState::Kind::signalled ||
                              (state.kind == DetachedState::Kind::exited && state.status != 0);
    const bool isOther =
        app && (app->version != run.installedVersion || app->build != run.installedBuild);
    const bool isStillOld = !isOther && _known.hasUpdate(run.appKey);
    AppUpdateActionState result{isUnfinished || !app || isStillOld ? Kind::failed : Kind::succeeded};
    if (isOther && !_known.hasUpdate(run.appKey))
        result.kind = Kind::succeeded;
    if (result.kind == Kind::succeeded)
        result.message = isOther && app->version
                             ? Texts::tr("Updated to version %1.").arg(*app->version)
                             : Texts::tr("The app is up to date.");
    else if (_isTimedOut)
        result.message = message(AppUpdateOutcome::timedOut);
    else if (_isCancelled)
        result = {Kind::cancelled, message(AppUpdateOutcome::cancelled)};
    else if (!app)
        result.message = Texts::tr("The app is no longer installed.");
    else if (isUnfinished || state.kind == DetachedState::Kind::gone) // its exit status is unknown
        result.message = message(AppUpdateOutcome::failed);
    else
        result.message =
            Texts::tr("%1 reported no error, but %2 is still installed.")
                .arg(run.updaterName, run.installedVersion
                                          ? Texts::tr("version %1").arg(*run.installedVersion)
                                          : Texts::tr("the old version"));
    if (result.kind == Kind::failed || isUnfinished)
        result.detail = detail(_lines);
    if (result.kind == Kind::failed && phaseOf(_lines) == Phase::password)
        result.message +=
            Texts::tr(" %1 asked for your password. Run the update in Terminal.").arg(run.updaterName);
    if (!result.detail.isEmpty())
        _machine.log.warning(
            QStringLiteral("The update of %1: %2\n%3").arg(run.appKey, result.message, result.detail));
    // Before the next update writes its journal.
    _work = _machine.workers.run(
        [&machine = _machine](std::stop_token) { (void)machine.files.remove(journalPath(machine)); },
        [this, appKey = run.appKey, result] {
            const auto alive = _lifetime.watch();
            _known.events.notify({AppUpdateEvent::Kind::updated, appKey});
            if (!alive.expired())
                finish(appKey, result);
        });
}

void AppUpdateRunner::finish(const QString& appKey, const AppUpdateActionState& state) {
    const auto alive = _lifetime.watch();
    set(appKey, state);
    if (!alive.expired())
        next();
}

// ---- other actions

void AppUpdateRunner::open(const QString& appKey, const AppUpdateAction& wanted) {
    auto opened = [this, appKey](const std::expected<void, QString>& result) {
        if (result)
            return finish(appKey, {Kind::succeeded, {}});
        _machine.log.warning(
            QStringLiteral("The updater of %1 could not be opened: %2").arg(appKey, result.error()));
        finish(appKey, {Kind::failed, message(AppUpdateOutcome::couldNotLaunch)});
    };
    const AppUpdateCandidate* app = _channels.candidate(appKey);
    if (const auto* store = std::get_if<AppStoreAction>(&wanted))
        _work = _opener.openUrl(store->storeUrl, std::move(opened));
    else if (std::holds_alternative<SystemSoftwareUpdateAction>(wanted))
        _work = _opener.openUrl(
            QStringLiteral("x-apple.systempreferences:com.apple.Software-Update-Settings.extension"),
            std::move(opened));
    else
        _work = _opener.openApplication(app ? app->path : QString(), std::move(opened));
}

} // namespace tessellar
