// Updates of installed applications: what is known, checks, and running them.

#include "control/command_set.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_updates.h"

namespace tessellar {
namespace {

QString name(const Call& call, const QString& appKey) {
    const AppEntry* app = call->launcher().applications().withKey(appKey);
    return app ? app->name : appKey;
}

/// A record in the form of the cache, with the application's channel and the way its update comes.
QJsonObject described(const Call& call, const QString& appKey,
                      const std::optional<AppUpdateRecord>& record) {
    const LauncherUpdates& updates = call->launcher().updates();
    QJsonObject object = record ? json::encode(*record).toObject() : QJsonObject();
    if (const auto channel = updates.channel(appKey))
        object[QStringLiteral("channel")] = json::encode(*channel);
    if (const auto action = updates.actionKind(appKey))
        object[QStringLiteral("action")] = json::rawValue(*action);
    return object;
}

QString statusText(const std::optional<AppUpdateRecord>& record) {
    if (!record)
        return QStringLiteral("Not checked");
    static const std::array texts{QStringLiteral("Up to date"), QString(),
                                  QStringLiteral("Its source cannot tell"),
                                  QStringLiteral("The check failed")};
    const auto text = [&](const AppUpdateStatus& status) {
        const auto* update = std::get_if<UpdateAvailable>(&status);
        return update ? update_texts::available(record->installedVersion, update->latestVersion)
                      : texts[status.index()];
    };
    const QString last = text(record->status);
    return record->lastKnownStatus
               ? QStringLiteral("%1. Before: %2").arg(last, text(*record->lastKnownStatus))
               : last;
}

QString channelText(const AppUpdateChannel& channel) {
    const QString kind = json::rawValue(kindOf(channel));
    if (const auto* cask = std::get_if<HomebrewCaskChannel>(&channel))
        return cask->token.isEmpty() ? kind : kind + u' ' + cask->token;
    if (const auto* store = std::get_if<MacAppStoreChannel>(&channel))
        return kind + u' ' + QString::number(store->itemIdentifier);
    const QString feed = std::get<SparkleChannel>(channel).feedUrl;
    return feed.isEmpty() ? kind : kind + u' ' + feed;
}

bool refuseUnknown(const Call& call, const QString& appKey) {
    if (call->launcher().applications().withKey(appKey))
        return false;
    call->fail(InstalledApplications::unknown(appKey));
    return true;
}

void answerWithStatus(const Call& call, const QString& appKey) {
    const LauncherUpdates& updates = call->launcher().updates();
    const auto record = updates.record(appKey);
    QString lines = statusText(record) + u'\n';
    if (const auto channel = updates.channel(appKey))
        lines += channelText(*channel) + u'\n';
    call->succeed(described(call, appKey, record), lines + updates.actionLabel(appKey));
}

void answerWithStatuses(const Call& call) {
    const LauncherUpdates& updates = call->launcher().updates();
    QJsonObject records;
    QString lines;
    for (const AppEntry& app : call->launcher().applications().all()) {
        const QString key = appKey(app);
        const auto record = updates.record(key);
        if (!record && !updates.channel(key))
            continue;
        records.insert(key, described(call, key, record));
        lines += QStringLiteral("%1  %2\n").arg(app.name, statusText(record));
    }
    QJsonObject document{{QStringLiteral("records"), records}};
    if (const auto last = updates.lastCheck())
        document[QStringLiteral("lastCheck")] = json::encode(*last);
    call->succeed(document, lines + updates.summary());
}

/// Calls `answer` once the brews have told, which takes its time; an interruption ends it before.
void whenChannelsKnown(const Call& call, const std::function<void()>& answer) {
    const auto isOver = std::make_shared<bool>(false);
    call->whenUnwanted([call, isOver] {
        *isOver = true;
        call->fail({QStringLiteral("cancelled"), QStringLiteral("The command was cancelled."), {}});
    });
    call->launcher().updates().whenChannelsKnown([isOver, answer] {
        if (!*isOver)
            answer();
    });
}

void addStatus(CommandSet& set, CLI::App* group) {
    CLI::App* status = set.add("status", "What the last check found", group);
    auto wanted = std::make_shared<std::string>();
    status->add_option("appkey", *wanted, "One application; without it all that can be checked");
    set.onRun(status, CommandNeeds::launcher, [wanted](const Call& call) {
        whenChannelsKnown(call, [call, wanted] {
            if (wanted->empty())
                answerWithStatuses(call);
            else if (!refuseUnknown(call, text(wanted)))
                answerWithStatus(call, text(wanted));
        });
    });
}

void addChannels(CommandSet& set, CLI::App* group) {
    set.onRun(set.add("channels", "Where version information of applications comes from", group),
              CommandNeeds::launcher, [](const Call& call) {
                  whenChannelsKnown(call, [call] {
                      const auto channels = call->launcher().updates().channels();
                      QJsonObject object;
                      QString lines;
                      for (const AppEntry& app : call->launcher().applications().all()) {
                          const auto channel = channels.constFind(appKey(app));
                          if (channel == channels.constEnd())
                              continue;
                          object.insert(channel.key(), json::encode(*channel));
                          lines += QStringLiteral("%1  %2\n").arg(app.name, channelText(*channel));
                      }
                      call->succeed(object, lines);
                  });
              });
}

// ---- checks

QString progressText(const AppUpdateProgress& progress) {
    return progress.total == 0 ? update_texts::summary(true, 0, {})
                               : QStringLiteral("Checked %1 of %2  %3")
                                     .arg(progress.checked)
                                     .arg(progress.total)
                                     .arg(progress.currentAppName);
}

void showResult(const Call& call, const QString& appKey, const AppUpdateRecord& record) {
    QJsonObject object = described(call, appKey, record);
    object[QStringLiteral("appKey")] = appKey;
    const bool isWorthALine =
        std::holds_alternative<UpdateAvailable>(record.status) || hasFailed(record.status);
    if (!call->options.json && !isWorthALine)
        return;
    call->showProgress({});
    call->print(object, QStringLiteral("%1  %2").arg(name(call, appKey), statusText(record)));
}

void endCheck(const Call& call, const std::expected<bool, LauncherError>& outcome) {
    call->showProgress({});
    if (!outcome)
        return call->fail(outcome.error());
    LauncherUpdates& updates = call->launcher().updates();
    if (!*outcome)
        return call->fail(
            {QStringLiteral("cancelled"), QStringLiteral("The check was cancelled."), {}});
    if (const auto saved = updates.flush(); !saved)
        return call->fail(saved.error());
    QJsonObject document{{QStringLiteral("availableUpdateCount"), updates.availableCount()}};
    if (const auto last = updates.lastCheck())
        document[QStringLiteral("lastCheck")] = json::encode(*last);
    call->succeed(document, updates.summary());
}

void addCheck(CommandSet& set, CLI::App* group) {
    CLI::App* check = set.add("check",
                              "Look for newer versions now; with --json one document a line, each "
                              "result as it comes and a summary last",
                              group);
    auto channel = std::make_shared<std::string>();
    std::vector<std::string> kinds;
    for (const auto& [kind, raw] : json::RawValues<AppUpdateChannelKind>::values)
        kinds.emplace_back(raw);
    check->add_option("--channel", *channel, "Of the applications of this channel only")
        ->check(CLI::IsMember(kinds));
    set.onRun(check, CommandNeeds::launcherUntilStopped, [channel](const Call& call) {
        call->options.oneLine = true;
        call->whenUnwanted(call->launcher().updates().check(
            json::fromRawValue<AppUpdateChannelKind>(text(channel)),
            {.result = [call](const QString& appKey,
                              const AppUpdateRecord& record) { showResult(call, appKey, record); },
             .progress =
                 [call] { call->showProgress(progressText(call->launcher().updates().progress())); },
             .done =
                 [call](const std::expected<bool, LauncherError>& outcome) {
                     endCheck(call, outcome);
                 }}));
    });
}

// ---- updates

void addRun(CommandSet& set, CLI::App* group) {
    CLI::App* run =
        set.add("run", "Bring an application up to date, by the way its updates come", group);
    auto yes = std::make_shared<bool>(false);
    run->add_flag("--yes", *yes, "Go on where the launcher would ask first");
    set.onRun(
        run, CommandNeeds::launcherUntilStopped,
        [key = word(run, "appkey", ""), yes](const Call& call) {
            if (refuseUnknown(call, text(key)))
                return;
            const auto asked = std::make_shared<QString>();
            const auto answer = [yes, asked](const LauncherQuestion& question,
                                             const std::function<void(bool)>& reply) {
                *asked = QStringLiteral("%1 %2 --yes goes on.").arg(question.title, question.text);
                reply(*yes);
            };
            call->whenUnwanted(call->launcher().updates().run(
                text(key), answer,
                [call, key, asked](const std::expected<QString, LauncherError>& outcome) {
                    if (!outcome)
                        return call->fail(
                            outcome.error().code == u"declined"
                                ? LauncherError{QStringLiteral("confirmationRequired"), *asked, {}}
                                : outcome.error());
                    LauncherUpdates& updates = call->launcher().updates();
                    if (const auto saved = updates.flush(); !saved)
                        return call->fail(saved.error());
                    const auto record = updates.record(text(key));
                    QJsonObject document = described(call, text(key), record);
                    document[QStringLiteral("message")] = *outcome;
                    call->succeed(document, record && !outcome->isEmpty()
                                                ? *outcome + u'\n' + statusText(record)
                                                : *outcome);
                }));
        });
}

} // namespace

void addUpdateCommands(CommandSet& set) {
    CLI::App* group = set.addGroup("updates", "Newer versions of installed applications");
    addStatus(set, group);
    addCheck(set, group);
    addRun(set, group);
    addChannels(set, group);
}

} // namespace tessellar
