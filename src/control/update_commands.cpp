// Commands for updates: status, checks, and running them.

#include "control/command_set.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_updates.h"
#include "platform/texts.h"
#include "updates/untrusted_text.h"

#include <algorithm>

namespace tessellar {
namespace {

QString name(const Call& call, const QString& appKey) {
    const AppEntry* app = call->launcher().applications().withKey(appKey);
    return toSingleLine(app ? app->name : appKey, 200);
}

/// A record in the cache's format, with the application's channel, how its update is installed, and
/// where its version was found.
QJsonObject described(const Call& call, const QString& appKey,
                      const std::optional<AppUpdateRecord>& record) {
    const AppUpdateView update = call->launcher().updates().of(appKey);
    QJsonObject object = record ? json::encode(*record).toObject() : QJsonObject();
    if (const auto channel = update.channel())
        object[QStringLiteral("channel")] = json::encode(*channel);
    if (const auto action = update.actionKind())
        object[QStringLiteral("action")] = json::rawValue(*action);
    if (const auto source = update.sourceText())
        object[QStringLiteral("source")] = source->explanation;
    if (const auto why = update.reason())
        object[QStringLiteral("reason")] =
            QJsonObject{{QStringLiteral("code"), json::rawValue(why->code)},
                        {QStringLiteral("message"), message(*why)}};
    if (const auto version = update.skipped())
        object[QStringLiteral("skipped")] = *version;
    if (update.isHeld())
        object[QStringLiteral("isHeld")] = true;
    if (const QString running = update.runningText(); !running.isEmpty())
        object[QStringLiteral("running")] = running;
    return object;
}

QString statusText(const Call& call, const QString& appKey,
                   const std::optional<AppUpdateRecord>& record) {
    const AppUpdateView update = call->launcher().updates().of(appKey);
    const QString running = update.runningText();
    if (!running.isEmpty())
        return running;
    const auto why = record ? std::nullopt : update.reason();
    const QString known = record ? update_texts::status(*record)
                          : why  ? message(*why)
                                 : Texts::tr("Not checked");
    return update.isHeld() ? update_texts::held() + QStringLiteral(". ") + known : known;
}

QString channelText(const AppUpdateChannel& channel) {
    const QString kind = json::rawValue(kindOf(channel));
    if (const auto* cask = std::get_if<HomebrewCaskChannel>(&channel))
        return cask->token.isEmpty() ? kind : kind + u' ' + cask->token;
    if (const auto* store = std::get_if<MacAppStoreChannel>(&channel))
        return kind + u' ' + QString::number(store->itemIdentifier);
    const QString feed = std::get<SparkleChannel>(channel).feedUrl;
    return feed.isEmpty() ? kind : kind + u' ' + toSingleLine(feed, 1'000);
}

bool refuseUnknown(const Call& call, const QString& appKey) {
    if (call->launcher().applications().withKey(appKey))
        return false;
    call->fail(InstalledApplications::unknown(appKey));
    return true;
}

void answerWithStatus(const Call& call, const QString& appKey) {
    const AppUpdateView update = call->launcher().updates().of(appKey);
    const auto record = update.record();
    QStringList lines{statusText(call, appKey, record)};
    if (const auto channel = update.channel())
        lines.append(channelText(*channel));
    lines.append(update.actionLabel());
    if (const auto source = update.sourceText())
        lines.append(source->explanation);
    if (record && record->notes)
        for (const QString& notes : {record->notes->text, record->notes->url})
            if (!notes.isEmpty())
                lines.append(notes);
    call->succeed(described(call, appKey, record), lines.join(u'\n'));
}

/// All checkable applications, or all without a plain answer, with the reason.
void answerWithStatuses(const Call& call, bool isUnchecked) {
    const LauncherUpdates& updates = call->launcher().updates();
    QJsonObject records;
    QString lines;
    for (const AppEntry& app : call->launcher().applications().all()) {
        const QString key = appKey(app);
        const AppUpdateView update = updates.of(key);
        const auto record = update.record();
        const bool isListed =
            isUnchecked ? update.reason() && !update.isHeld() : record || update.channel();
        if (!isListed)
            continue;
        records.insert(key, described(call, key, record));
        lines += QStringLiteral("%1  %2\n").arg(name(call, key), statusText(call, key, record));
    }
    QJsonObject document{{QStringLiteral("records"), records}};
    if (const auto last = updates.lastCheck())
        document[QStringLiteral("lastCheck")] = json::encode(*last);
    if (const auto problems = updates.problems(); !problems.isEmpty())
        document[QStringLiteral("problems")] = json::encode(problems);
    call->succeed(document, lines + updates.summary());
}

/// Answers once the known updates are loaded or, if `asksTools`, once the tools have reported which
/// applications are theirs, which takes time. Can be cancelled.
void whenReady(const Call& call, bool asksTools, const std::function<void()>& answer) {
    const auto isOver = std::make_shared<bool>(false);
    call->whenCancelled([call, isOver] {
        *isOver = true;
        call->fail({QStringLiteral("cancelled"), Texts::tr("The command was cancelled."), {}});
    });
    const auto known = [isOver, answer] {
        if (!*isOver)
            answer();
    };
    LauncherUpdates& updates = call->launcher().updates();
    if (asksTools)
        updates.whenChannelsKnown(known);
    else
        updates.whenReady(known);
}

void addStatus(CommandSet& set, CLI::App* group) {
    CLI::App* status = set.add(
        "status", Texts::noop("The results of the last check; contacts nothing and runs no tools"),
        group);
    auto wanted = std::make_shared<std::string>();
    auto refresh = std::make_shared<bool>(false);
    auto unchecked = std::make_shared<bool>(false);
    status->add_option("appkey", *wanted,
                       Texts::noop("One application; without it all that can be checked"));
    status->add_flag("--refresh", *refresh,
                     Texts::noop("First ask tools which applications they manage"));
    status->add_flag("--unchecked", *unchecked,
                     Texts::noop("The applications without a clear result, and why"));
    set.onRun(status, CommandNeeds::launcher, [wanted, refresh, unchecked](const Call& call) {
        whenReady(call, *refresh, [call, wanted, unchecked] {
            if (wanted->empty())
                answerWithStatuses(call, *unchecked);
            else if (!refuseUnknown(call, text(wanted)))
                answerWithStatus(call, text(wanted));
        });
    });
}

void addChannels(CommandSet& set, CLI::App* group) {
    set.onRun(
        set.add("channels", Texts::noop("Where version information of applications comes from"), group),
        CommandNeeds::launcher, [](const Call& call) {
            whenReady(call, true, [call] {
                const auto channels = call->launcher().updates().channels();
                QJsonObject object;
                QString lines;
                for (const AppEntry& app : call->launcher().applications().all()) {
                    const auto channel = channels.constFind(appKey(app));
                    if (channel == channels.constEnd())
                        continue;
                    object.insert(channel.key(), json::encode(*channel));
                    lines += QStringLiteral("%1  %2\n")
                                 .arg(name(call, channel.key()), channelText(*channel));
                }
                call->succeed(object, lines);
            });
        });
}

// ---- checks

QString progressText(const AppUpdateProgress& progress) {
    return progress.total == 0 ? update_texts::checking()
                               : Texts::tr("Checked %1 of %2  %3")
                                     .arg(progress.checked)
                                     .arg(progress.total)
                                     .arg(toSingleLine(progress.currentAppName, 200));
}

void showResult(const Call& call, const QString& appKey, const AppUpdateRecord& record) {
    QJsonObject object = described(call, appKey, record);
    object[QStringLiteral("appKey")] = appKey;
    const bool isWorthALine =
        std::holds_alternative<UpdateAvailable>(record.status) || hasFailed(record.status);
    if (!call->options.json && !isWorthALine)
        return;
    call->showProgress({});
    call->print(object,
                QStringLiteral("%1  %2").arg(name(call, appKey), statusText(call, appKey, record)));
}

/// A check that got no answer, because it is offline or brew fails, has not succeeded.
void endCheck(const Call& call, const std::expected<bool, LauncherError>& outcome, bool wasAnswered) {
    call->showProgress({});
    if (!outcome)
        return call->fail(outcome.error());
    LauncherUpdates& updates = call->launcher().updates();
    if (!*outcome)
        return call->fail({QStringLiteral("cancelled"), Texts::tr("The check was cancelled."), {}});
    if (const auto saved = updates.flush(); !saved)
        return call->fail(saved.error());
    if (!wasAnswered)
        return call->fail({QStringLiteral("checkFailed"), updates.summary(), {}});
    QJsonObject document{{QStringLiteral("availableUpdateCount"), updates.availableCount()}};
    if (const auto problems = updates.problems(); !problems.isEmpty())
        document[QStringLiteral("problems")] = json::encode(problems);
    if (const auto last = updates.lastCheck())
        document[QStringLiteral("lastCheck")] = json::encode(*last);
    call->succeed(document, updates.summary());
}

void addCheck(CommandSet& set, CLI::App* group) {
    CLI::App* check = set.add("check",
                              Texts::noop("Check for newer versions now; with --json one document a "
                                          "line: each result as it arrives, then a summary"),
                              group);
    auto channel = std::make_shared<std::string>();
    std::vector<std::string> kinds;
    for (const auto& [kind, raw] : json::RawValues<AppUpdateChannelKind>::values)
        kinds.emplace_back(raw);
    check->add_option("--channel", *channel, Texts::noop("Of the applications of this channel only"))
        ->check(CLI::IsMember(kinds));
    set.onRun(check, CommandNeeds::launcherUntilStopped, [channel](const Call& call) {
        call->options.oneLine = true;
        struct Answers {
            bool areAny = false;
            bool areFailures = false;
        };
        const auto answers = std::make_shared<Answers>();
        const auto wanted = json::fromRawValue<AppUpdateChannelKind>(text(channel));
        call->whenCancelled(call->launcher().updates().check(
            wanted,
            {.result =
                 [call, answers](const QString& appKey, const AppUpdateRecord& record) {
                     (hasFailed(record.status) ? answers->areFailures : answers->areAny) = true;
                     showResult(call, appKey, record);
                 },
             .progress =
                 [call] { call->showProgress(progressText(call->launcher().updates().progress())); },
             .done =
                 [call, answers, wanted](const std::expected<bool, LauncherError>& outcome) {
                     const bool isTrouble =
                         answers->areFailures ||
                         std::ranges::any_of(call->launcher().updates().problems(),
                                             [&](const AppUpdateProblem& problem) {
                                                 return !wanted || problem.channel == *wanted;
                                             });
                     endCheck(call, outcome, answers->areAny || !isTrouble);
                 }}));
    });
}

// ---- updates

/// Shows each step of the running updates, on one line that is rewritten.
void showSteps(const Call& call) {
    LauncherUpdates& updates = call->launcher().updates();
    call->held.push_back(std::make_shared<Subscription>(
        updates.ran.connect([call = std::weak_ptr(call)](const QString& key) {
            const Call running = call.lock();
            if (!running)
                return;
            const AppUpdateView update = running->launcher().updates().of(key);
            const auto state = update.actionState();
            if (!state || state->kind != AppUpdateActionState::Kind::running)
                return;
            const QString step = state->message.isEmpty() ? update.runningText() : state->message;
            running->showProgress(
                QStringLiteral("%1  %2 %3").arg(name(running, key), step, state->detail).trimmed());
        })));
}

void endRun(const Call& call, const QStringList& keys,
            const std::expected<QString, LauncherError>& outcome, const QString& asked) {
    call->showProgress({});
    if (!outcome)
        return call->fail(outcome.error().code == u"declined"
                              ? LauncherError{QStringLiteral("confirmationRequired"), asked, {}}
                              : outcome.error());
    LauncherUpdates& updates = call->launcher().updates();
    if (const auto saved = updates.flush(); !saved)
        return call->fail(saved.error());
    QJsonObject document;
    QString lines = *outcome;
    for (const QString& key : keys) {
        const auto record = updates.of(key).record();
        QJsonObject object = described(call, key, record);
        if (const auto state = updates.of(key).actionState())
            object[QStringLiteral("message")] = state->message;
        if (keys.size() == 1) {
            document = object;
            if (record && !outcome->isEmpty())
                lines += u'\n' + statusText(call, key, record);
        } else {
            document[key] = object;
        }
    }
    call->succeed(document, lines);
}

void addRun(CommandSet& set, CLI::App* group) {
    CLI::App* run = set.add(
        "run",
        Texts::noop("Update applications, each through its own source; a running update continues when "
                    "the launcher quits, and the next launcher resumes following it"),
        group);
    auto wanted = std::make_shared<std::vector<std::string>>();
    auto all = std::make_shared<bool>(false);
    auto yes = std::make_shared<bool>(false);
    CLI::Option* named =
        run->add_option("appkey", *wanted, Texts::noop("Applications, one after the other"));
    run->add_flag("--all", *all, Texts::noop("All that Homebrew or Microsoft AutoUpdate can update"))
        ->excludes(named);
    run->add_flag("--yes", *yes, Texts::noop("Do not ask before updating"));
    set.onRun(run, CommandNeeds::launcherUntilStopped, [wanted, all, yes](const Call& call) {
        QStringList given;
        for (const std::string& word : *wanted)
            given.append(QString::fromStdString(word));
        if (given.isEmpty() && !*all)
            return call->fail(
                {QStringLiteral("usage"), Texts::tr("Name an application, or use --all."), {}},
                ExitStatus::wrongUsage);
        for (const QString& key : std::as_const(given))
            if (refuseUnknown(call, key))
                return;
        showSteps(call);
        const auto asked = std::make_shared<QString>();
        const auto answer = [yes, asked](const LauncherQuestion& question,
                                         const std::function<void(bool)>& reply) {
            *asked = Texts::tr("%1 %2 Add --yes to continue.").arg(question.title, question.text);
            reply(*yes);
        };
        LauncherUpdates& updates = call->launcher().updates();
        const auto begin = [call, answer, asked](const QStringList& keys) {
            const auto stop = call->launcher().updates().run(
                keys, answer,
                [call, keys, asked](const std::expected<QString, LauncherError>& outcome) {
                    endRun(call, keys, outcome, *asked);
                });
            // An interrupt cancels an upgrade; a closed terminal does not.
            call->whenCancelled([stop](Cancellation why) {
                using enum LauncherUpdates::StopMode;
                stop(why == Cancellation::stopped ? cancel : detach);
            });
        };
        if (!*all)
            return begin(given);
        updates.whenReady([call, begin] {
            const QStringList keys = call->launcher().updates().runnable();
            if (keys.isEmpty())
                return call->succeed(QJsonObject(), Texts::tr("There is nothing to update."));
            begin(keys);
        });
    });
}

// ---- skipped versions

void addSkip(CommandSet& set, CLI::App* group) {
    CLI::App* skip = set.add("skip", Texts::noop("Skip the version that is available now"), group);
    auto every = std::make_shared<bool>(false);
    const Word skipped = word(skip, "appkey", "");
    skip->add_flag("--every-version", *every, Texts::noop("Skip every version of this application"));
    set.onRun(skip, CommandNeeds::launcher, [skipped, every](const Call& call) {
        whenReady(call, false, [call, skipped, every] {
            LauncherUpdates& updates = call->launcher().updates();
            const QString key = text(skipped);
            if (!refuseUnknown(call, key))
                call->answer(updates.saved(key, [&] { return updates.skip(key, *every); }));
        });
    });
    CLI::App* unskip =
        set.add("unskip", Texts::noop("Offer all versions of an application again"), group);
    set.onRun(unskip, CommandNeeds::launcher, [key = word(unskip, "appkey", "")](const Call& call) {
        whenReady(call, false, [call, key] {
            LauncherUpdates& updates = call->launcher().updates();
            if (!refuseUnknown(call, text(key)))
                call->answer(updates.saved(text(key), [&] { return updates.unskip(text(key)); }));
        });
    });
}

} // namespace

void addUpdateCommands(CommandSet& set) {
    CLI::App* group = set.addGroup("updates", Texts::noop("Newer versions of installed applications"));
    addStatus(set, group);
    addCheck(set, group);
    addRun(set, group);
    addSkip(set, group);
    addChannels(set, group);
}

} // namespace tessellar
