// Running updates, and skipping versions.

#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_updates.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

/// One caller's request: `done` is called once, however it ends.
struct LauncherUpdates::RunRequest {
    Stage stage = Stage::waiting;
    RunDone done;

    void end(const std::expected<QString, LauncherError>& outcome) {
        if (std::exchange(stage, Stage::over) != Stage::over && done)
            std::exchange(done, nullptr)(outcome);
    }
};

static LauncherError cancelled() {
    return {QStringLiteral("cancelled"), message(AppUpdateOutcome::cancelled), {}};
}

// ---- skipped versions

LauncherUpdates::Outcome LauncherUpdates::skip(const QString& appKey, bool everyVersion) {
    const auto found = of(appKey).record();
    const auto* update = found ? std::get_if<UpdateAvailable>(&found->knownStatus()) : nullptr;
    if (!_coordinator || !_coordinator->channels().candidate(appKey))
        return std::unexpected(InstalledApplications::unknown(appKey));
    if (!update && !everyVersion)
        return std::unexpected(
            LauncherError{QStringLiteral("noUpdate"), Texts::tr("There is no update to skip."), {}});
    _coordinator->known().skip(appKey,
                               everyVersion ? std::nullopt : std::optional(update->latestVersion));
    return {};
}

LauncherUpdates::Outcome LauncherUpdates::unskip(const QString& appKey) {
    if (_coordinator)
        _coordinator->known().unskip(appKey);
    return {};
}

LauncherUpdates::Outcome LauncherUpdates::saved(const QString& appKey,
                                                const std::function<Outcome()>& change) {
    const std::optional<QString> before = of(appKey).skipped();
    if (auto made = change(); !made || !_coordinator)
        return made;
    auto onDisk = flush();
    if (!onDisk) {
        before ? _coordinator->known().skip(appKey, before) : _coordinator->known().unskip(appKey);
        (void)flush();
    }
    return onDisk;
}

// ---- updates

void LauncherUpdates::openNotes(const QString& appKey) {
    const auto found = of(appKey).record();
    if (!found || !found->notes || found->notes->url.isEmpty())
        return;
    _opening = _opener.openUrl(found->notes->url, [this](const std::expected<void, QString>& done) {
        if (!done)
            return _messages.showNotice(done.error());
        opened.notify();
    });
}

void LauncherUpdates::run(const QString& appKey) {
    if (_coordinator && _coordinator->runner().activeAppKey() == appKey)
        return;
    run(QStringList{appKey}, _messages.asker(),
        [this](const std::expected<QString, LauncherError>& outcome) {
            if (outcome && !outcome->isEmpty())
                _messages.showNotice(*outcome);
            else if (!outcome && outcome.error().code != u"declined" &&
                     outcome.error().code != u"cancelled")
                _messages.alert(outcome.error());
        });
}

void LauncherUpdates::runAll() {
    const QStringList keys = runnable();
    run(keys, _messages.asker(), [this, keys](const std::expected<QString, LauncherError>& outcome) {
        if (outcome)
            _messages.showNotice(keys.size() == 1 ? *outcome
                                                  : Texts::tr("%n apps are up to date.", nullptr,
                                                              static_cast<int>(keys.size())));
        else if (outcome.error().code != u"declined" && outcome.error().code != u"cancelled")
            _messages.alert(outcome.error());
    });
}

QStringList LauncherUpdates::runnable() const {
    QStringList keys;
    for (const AppEntry& app : _applications.all()) {
        const QString key = appKey(app);
        const auto known = of(key).status();
        if (!known || !std::holds_alternative<UpdateAvailable>(*known))
            continue;
        if (const auto action = _coordinator->channels().action(key); action && command(*action))
            keys.append(key);
    }
    return keys;
}

std::function<void(LauncherUpdates::StopMode)> LauncherUpdates::run(const QStringList& appKeys,
                                                                    LauncherAsker asker, RunDone done) {
    const auto request = std::make_shared<RunRequest>(RunRequest{.done = std::move(done)});
    const auto begin = [this, request, appKeys, asker = std::move(asker)] {
        if (request->stage == Stage::waiting)
            startRun(request, appKeys, asker);
    };
    // Tools are only asked if some application's channel is unknown.
    whenReady([this, begin, appKeys] {
        if (std::ranges::all_of(appKeys,
                                [this](const QString& key) { return of(key).channel().has_value(); }))
            begin();
        else
            _coordinator->learnChannels(begin);
    });
    return [this, waiting = std::weak_ptr(request)](StopMode how) {
        const auto ended = waiting.lock();
        if (!ended)
            return;
        if (ended->stage != Stage::underWay)
            ended->end(std::unexpected(cancelled()));
        else if (how == StopMode::cancel)
            cancelRun();
        else
            ended->end(std::unexpected(LauncherError{
                QStringLiteral("left"), Texts::tr("The update continues by itself."), {}}));
    };
}

/// True if another application was opened, in which the user continues.
static bool isContinuedElsewhere(const AppUpdateActionState& state) { return state.message.isEmpty(); }

void LauncherUpdates::startRun(const std::shared_ptr<RunRequest>& request, const QStringList& appKeys,
                               const LauncherAsker& asker) {
    for (const QString& appKey : appKeys)
        if (!_coordinator->channels().candidate(appKey))
            return request->end(std::unexpected(InstalledApplications::unknown(appKey)));
    request->stage = Stage::underWay;
    const bool isBegun = _coordinator->runner().update(
        appKeys,
        [asker](const AppUpdateQuestion& question, const AppUpdateRunner::Answer& answer) {
            asker({.title = question.title, .text = question.text, .accept = Texts::tr("Update")},
                  answer);
        },
        [this, request, appKeys] {
            // Not earlier: this may close the launcher's window and quit it before it has opened
            // anything.
            if (std::ranges::any_of(appKeys, [this](const QString& appKey) {
                    const auto state = of(appKey).actionState();
                    return state && isContinuedElsewhere(*state);
                }))
                opened.notify();
            request->end(outcome(appKeys));
        });
    if (!isBegun)
        request->end(std::unexpected(LauncherError{
            QStringLiteral("updateInProgress"), message(AppUpdateOutcome::alreadyRunning), {}}));
}

QString LauncherUpdates::name(const QString& appKey) const {
    const AppUpdateCandidate* installed = _coordinator->channels().candidate(appKey);
    return installed ? installed->name : appKey;
}

/// The message about finished updates; an error if any failed.
std::expected<QString, LauncherError> LauncherUpdates::outcome(const QStringList& appKeys) const {
    using Kind = AppUpdateActionState::Kind;
    QStringList lines;
    QStringList failures;
    QString failedName;
    bool isAnyCancelled = false;
    bool isAnyKnown = appKeys.isEmpty();
    for (const QString& appKey : appKeys) {
        const auto state = of(appKey).actionState();
        isAnyKnown = isAnyKnown || state;
        if (!state)
            continue;
        isAnyCancelled = isAnyCancelled || state->kind == Kind::cancelled;
        const QString said =
            state->detail.isEmpty() ? state->message : state->message + u'\n' + state->detail;
        const QString line = appKeys.size() == 1 ? said : name(appKey) + QStringLiteral(": ") + said;
        if (state->kind == Kind::failed) {
            failures.append(line);
            failedName = name(appKey);
        } else if (!said.isEmpty()) {
            lines.append(line);
        }
    }
    if (!failures.isEmpty())
        return std::unexpected(LauncherError{QStringLiteral("updateFailed"), failures.join(u'\n'),
                                             failures.size() == 1
                                                 ? Texts::tr("Could not update “%1”").arg(failedName)
                                                 : Texts::tr("Could not update some apps")});
    if (isAnyCancelled)
        return std::unexpected(cancelled());
    if (!isAnyKnown)
        return std::unexpected(LauncherError{QStringLiteral("declined"), {}, {}});
    return lines.join(u'\n');
}

void LauncherUpdates::cancelRun() {
    if (_coordinator)
        _coordinator->runner().cancel();
}

} // namespace tessellar
