// Commands for removing applications: review, removal, restoring, the helper.

#include "control/command_set.h"
#include "control/named_file.h"
#include "launcher/launcher_cleanup.h"
#include "platform/texts.h"

#include <QLocale>

#include <algorithm>

namespace tessellar {
namespace {

constexpr std::uint64_t maximumItemsFile = 16 << 20;

QString sizeText(std::uint64_t bytes, bool isPartial) {
    const QString size =
        QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
    return isPartial ? Texts::tr("at least %1").arg(size) : size;
}

QString countText(qsizetype count) {
    return count == 1 ? Texts::tr("1 item") : Texts::tr("%n items", nullptr, static_cast<int>(count));
}

QJsonObject itemJson(const RelatedFile& file) {
    return {{QStringLiteral("path"), file.path},
            {QStringLiteral("location"), file.location},
            {QStringLiteral("domain"), json::encode(file.domain)},
            {QStringLiteral("match"), json::encode(file.match)},
            {QStringLiteral("size"),
             file.size ? QJsonValue(static_cast<qint64>(*file.size)) : QJsonValue()},
            {QStringLiteral("sizeIsPartial"), file.isSizePartial},
            {QStringLiteral("identity"), json::encode(file.identity)},
            {QStringLiteral("preselected"), CleanupReviewState::isPreselected(file)},
            {QStringLiteral("needsAdministrator"), file.needsAdministrator},
            {QStringLiteral("reason"), file.reason}};
}

QString itemText(const RelatedFile& file, bool isSelected) {
    QString text =
        QStringLiteral("%1 %2  %3  (%4)  %5\n")
            .arg(isSelected ? QStringLiteral("[x]") : QStringLiteral("[ ]"))
            .arg(file.size ? sizeText(*file.size, file.isSizePartial) : QStringLiteral("?"), 9)
            .arg(file.path, Texts::tr(file.location.toUtf8()), file.reason);
    if (file.needsAdministrator)
        text += QStringLiteral("               %1\n").arg(administratorMark());
    return text;
}

QString unsearched() { return Texts::tr("Some folders could not be searched."); }

/// The number and size of the selected items, the number of the others, and warnings.
QString totalText(const CleanupReviewState& review) {
    const MeasuredSize size = review.selectedSize();
    QString text = countText(review.selectedPaths.size()) + QStringLiteral(", ") +
                   sizeText(size.bytes, !size.isComplete);
    if (const qsizetype staying = review.items.size() - review.selectedPaths.size(); staying > 0)
        text += QStringLiteral("; ") + Texts::tr("%1 will stay").arg(countText(staying));
    text += u'\n';
    if (review.needsAdministrator())
        text += administratorWarning() + u'\n';
    if (!review.isComplete)
        text += unsearched() + u'\n';
    return text;
}

QJsonArray logJson(const QList<CleanupLogLine>& log) {
    QJsonArray lines;
    for (const CleanupLogLine& line : log)
        lines.append(QJsonObject{{QStringLiteral("path"), line.path},
                                 {QStringLiteral("done"), line.kind != CleanupLogLine::Kind::failed},
                                 {QStringLiteral("text"), line.text}});
    return lines;
}

QString logText(const QList<CleanupLogLine>& log) {
    QString text;
    for (const CleanupLogLine& line : log)
        text += line.text + u'\n';
    return text;
}

/// Closes the review when the command ends: the running launcher may want to show another.
void endReview(const Call& call) {
    call->held.clear(); // unsubscribe first
    call->launcher().cleanup().close();
}

/// Calls `then` once everything has been found and measured. If the window closes or replaces the
/// review, the command fails, so that another application's files are never taken for this one's.
void reviewed(const Call& call, const QString& key, std::function<void()> then) {
    LauncherCleanup& cleanup = call->launcher().cleanup();
    if (cleanup.phase() != LauncherCleanup::Phase::idle &&
        cleanup.phase() != LauncherCleanup::Phase::done)
        return call->fail(
            {QStringLiteral("removalInProgress"), Texts::tr("Another removal is being reviewed."), {}});
    const auto isMeasured = std::make_shared<bool>(false);
    cleanup.open(key, [call](const LauncherCleanup::Outcome& outcome) {
        if (!outcome)
            call->fail(outcome.error());
    });
    if (cleanup.phase() != LauncherCleanup::Phase::scanning)
        return;
    // Notified of every size; the last one ends the wait.
    call->held.push_back(std::make_shared<Subscription>(
        cleanup.changed.connect([call, key, isMeasured, then = std::move(then)] {
            const LauncherCleanup& state = call->launcher().cleanup();
            if (call->held.empty()) // the command itself is closing the review
                return;
            if (state.phase() == LauncherCleanup::Phase::idle || appKey(state.app()) != key) {
                call->held.clear();
                return call->fail(
                    {QStringLiteral("reviewEnded"), Texts::tr("The review was closed meanwhile."), {}});
            }
            if (state.phase() != LauncherCleanup::Phase::review || state.isMeasuring() ||
                std::exchange(*isMeasured, true))
                return;
            then();
        })));
}

/// Cancelling the command closes the review, or stops the removal; what was moved by then is reported
/// and recorded.
void endWhenUnwanted(const Call& call) {
    call->whenCancelled([call] {
        LauncherCleanup& cleanup = call->launcher().cleanup();
        if (cleanup.phase() == LauncherCleanup::Phase::removing)
            return cleanup.stop();
        endReview(call);
        call->fail({QStringLiteral("cancelled"), Texts::tr("The removal was cancelled."), {}});
    });
}

void addReview(CommandSet& set, CLI::App* group) {
    CLI::App* review =
        set.add("review", Texts::noop("What a removal of an application could take"), group);
    const Word key = word(review, "appkey", appKeyHelp);
    set.onRun(review, CommandNeeds::launcher, [key](const Call& call) {
        reviewed(call, text(key), [call] {
            const LauncherCleanup& cleanup = call->launcher().cleanup();
            QJsonArray items;
            QString lines = cleanup.app().name + u'\n';
            for (const RelatedFile& file : cleanup.review().items) {
                items.append(itemJson(file));
                lines += itemText(file, CleanupReviewState::isPreselected(file));
            }
            lines += totalText(cleanup.review());
            const QJsonObject answer{{QStringLiteral("app"), json::encode(cleanup.app())},
                                     {QStringLiteral("items"), items}};
            endReview(call);
            call->succeed(answer, lines);
        });
    });
}

/// An item listed in a file, with its identity at the time of the review if the file has it.
struct NamedItem {
    QString path;
    std::optional<FileIdentity> identity;
};

/// The items in a file: a JSON array of paths, or the output of `cleanup review`, of which the selected
/// ones count. nullopt if it is neither.
std::optional<QList<NamedItem>> itemsFrom(const QByteArray& bytes) {
    const auto document = json::parse(bytes);
    if (!document)
        return std::nullopt;
    const QJsonValue list =
        document->isObject() ? document->toObject().value(QStringLiteral("items")) : *document;
    if (!list.isArray())
        return std::nullopt;
    QList<NamedItem> items;
    for (const QJsonValue entry : list.toArray()) {
        const QJsonObject item = entry.toObject();
        const QJsonValue path = entry.isObject() ? item.value(QStringLiteral("path")) : entry;
        const QJsonValue identity = item.value(QStringLiteral("identity"));
        const auto known = json::decode<FileIdentity>(identity);
        if (!path.isString() || (!identity.isUndefined() && !known))
            return std::nullopt;
        items.append({path.toString(), known ? std::optional(*known) : std::nullopt});
    }
    return items;
}

std::expected<void, LauncherError> select(LauncherCleanup& cleanup, const QList<NamedItem>& named) {
    const QList<RelatedFile> items = cleanup.review().items;
    for (const NamedItem& wanted : named) {
        const auto item = std::ranges::find(items, wanted.path, &RelatedFile::path);
        if (item == items.end())
            return std::unexpected(LauncherError{
                QStringLiteral("notReviewed"),
                Texts::tr("“%1” is not among the items of the review.").arg(wanted.path.left(1'000)),
                {}});
        if (wanted.identity && *wanted.identity != item->identity)
            return std::unexpected(LauncherError{
                QStringLiteral("changed"),
                Texts::tr("“%1” has changed since it was reviewed.").arg(wanted.path.left(1'000)),
                {}});
    }
    for (const RelatedFile& item : items)
        cleanup.setSelected(item.path,
                            std::ranges::find(named, item.path, &NamedItem::path) != named.end());
    return {};
}

/// Without --yes: prints what would be removed, and refuses.
void refuseWithoutYes(const Call& call) {
    LauncherCleanup& cleanup = call->launcher().cleanup();
    cleanup.findRunning([call](bool isRunning) {
        const CleanupReviewState& review = call->launcher().cleanup().review();
        QString lines;
        for (const RelatedFile& file : review.selectedItems())
            lines += itemText(file, true);
        lines += totalText(review);
        if (isRunning)
            lines += Texts::tr("%1 is open and would be asked to quit.\n")
                         .arg(call->launcher().cleanup().app().name);
        const LauncherError error{QStringLiteral("confirmationRequired"),
                                  Texts::tr("%1Nothing was removed; add --yes to continue.").arg(lines),
                                  {}};
        endReview(call);
        call->fail(error);
    });
}

/// Removes what is selected, and answers with the log.
void removeReviewed(const Call& call) {
    const auto asker = [call](const LauncherQuestion& question,
                              const std::function<void(bool)>& answer) {
        if (!call->options.json)
            call->print({}, question.title + QStringLiteral(". ") + question.text);
        answer(true);
    };
    call->launcher().cleanup().remove(asker, [call](const LauncherCleanup::Outcome& outcome) {
        const QList<CleanupLogLine> log = call->launcher().cleanup().log();
        if (!call->launcher().cleanup().review().isComplete)
            call->warn(unsearched());
        endReview(call);
        if (!outcome) {
            // The refusal tells why the first item stayed; the log has the others.
            if (!call->options.json && log.size() > 1)
                call->print({}, logText(log));
            return call->fail(outcome.error());
        }
        const bool isWhole = std::ranges::none_of(
            log, [](const CleanupLogLine& line) { return line.kind == CleanupLogLine::Kind::failed; });
        call->print(QJsonObject{{QStringLiteral("log"), logJson(log)}}, logText(log));
        call->finish(isWhole ? ExitStatus::done : ExitStatus::refused);
    });
}

void addRemove(CommandSet& set, CLI::App* group) {
    CLI::App* remove = set.add(
        "remove",
        Texts::noop("Move an application and the files that surely belong to it to the Trash"), group);
    const Word key = word(remove, "appkey", appKeyHelp);
    const Flag all =
        flag(remove, "--all-matches", Texts::noop("Also files that may belong to something else"));
    const Word file = std::make_shared<std::string>();
    remove
        ->add_option("--items", *file,
                     Texts::noop("Only these items: a file with their paths as a JSON array, or with "
                                 "the output of a review"))
        ->excludes("--all-matches");
    const Flag yes =
        flag(remove, "--yes", Texts::noop("Do it, and ask the application to quit if it is open"));
    set.onRun(remove, CommandNeeds::launcherUntilStopped, [key, all, file, yes](const Call& call) {
        const auto begin = [call, key, all = *all,
                            yes = *yes](const std::optional<QList<NamedItem>>& named) {
            endWhenUnwanted(call);
            reviewed(call, text(key), [call, all, named, yes] {
                LauncherCleanup& cleanup = call->launcher().cleanup();
                if (all)
                    cleanup.selectAllMatches();
                if (const auto selected = named ? select(cleanup, *named) : LauncherCleanup::Outcome();
                    !selected) {
                    endReview(call);
                    return call->fail(selected.error());
                }
                yes ? removeReviewed(call) : refuseWithoutYes(call);
            });
        };
        if (file->empty())
            return begin(std::nullopt);
        readNamedFile(call, text(file), maximumItemsFile, [call, file, begin](const QByteArray& bytes) {
            if (const auto named = itemsFrom(bytes))
                return begin(named);
            call->fail({QStringLiteral("damaged"),
                        Texts::tr("%1 is not a list of paths: neither a JSON array nor the output of "
                                  "cleanup review.")
                            .arg(text(file)),
                        {}});
        });
    });
}

QJsonObject pastJson(const CleanupRecord& past) {
    return {{QStringLiteral("id"), toText(past.id)},
            {QStringLiteral("name"), past.name},
            {QStringLiteral("path"), past.path},
            {QStringLiteral("removedAt"), past.removedAt.toIso8601()},
            {QStringLiteral("inTrash"), past.items.size()},
            {QStringLiteral("restored"), past.restored.size()}};
}

QString pastText(const CleanupRecord& past) {
    return QStringLiteral("%1  %2  %3  (%4)\n")
        .arg(toText(past.id), past.removedAt.toIso8601(), past.name,
             past.items.isEmpty() ? Texts::tr("brought back")
                                  : Texts::tr("%1 in the Trash").arg(past.items.size()));
}

void addHistory(CommandSet& set, CLI::App* group) {
    CLI::App* history = set.add("history", Texts::noop("The past removals, latest first"), group);
    set.onRun(history, CommandNeeds::launcher, [](const Call& call) {
        call->launcher().cleanup().listPast([call](const LauncherCleanup::Past& past) {
            if (!past)
                return call->fail(past.error());
            QJsonArray removals;
            QString lines;
            for (const CleanupRecord& record : *past) {
                removals.append(pastJson(record));
                lines += pastText(record);
            }
            call->succeed(QJsonObject{{QStringLiteral("removals"), removals}}, lines);
        });
    });
}

void addRestore(CommandSet& set, CLI::App* group) {
    CLI::App* restore =
        set.add("restore", Texts::noop("Put back what a removal moved to the Trash"), group);
    const Word id = std::make_shared<std::string>();
    restore->add_option("id", *id,
                        Texts::noop("Which one, as listed by history; by default the last one"));
    set.onRun(restore, CommandNeeds::launcherUntilStopped, [id](const Call& call) {
        std::optional<QUuid> removal;
        if (!id->empty()) {
            removal = QUuid::fromString(text(id));
            if (removal->isNull())
                return call->fail({QStringLiteral("unknownRemoval"),
                                   Texts::tr("There is no removal “%1”.").arg(text(id)),
                                   {}});
        }
        call->whenCancelled([call] { call->launcher().cleanup().stop(); });
        call->launcher().cleanup().restore(removal, [call](const LauncherCleanup::Restored& restored) {
            if (!restored)
                return call->fail(restored.error());
            const bool isWhole = std::ranges::none_of(*restored, [](const CleanupLogLine& line) {
                return line.kind == CleanupLogLine::Kind::failed;
            });
            call->print(QJsonObject{{QStringLiteral("log"), logJson(*restored)}}, logText(*restored));
            call->finish(isWhole ? ExitStatus::done : ExitStatus::refused);
        });
    });
}

void addHelper(CommandSet& set) {
    CLI::App* helper = set.addGroup("helper", Texts::noop("The removal helper"));
    CLI::App* status = set.add("status", Texts::noop("Whether the helper answers"), helper);
    set.onRun(status, CommandNeeds::launcher, [](const Call& call) {
        call->launcher().cleanup().checkHelper([call](const std::expected<void, QString>& health) {
            const QString said = health ? QStringLiteral("enabled") : QStringLiteral("unavailable");
            QJsonObject answer{{QStringLiteral("status"), said},
                               {QStringLiteral("description"), removalHelperDescription()}};
            if (!health)
                answer.insert(QStringLiteral("message"), health.error());
            call->succeed(answer, (health ? Texts::tr("The removal helper answers.") : health.error()) +
                                      u'\n' + removalHelperDescription());
        });
    });
}

} // namespace

void addCleanupCommands(CommandSet& set) {
    CLI::App* group = set.addGroup("cleanup", Texts::noop("Remove applications with what they left"));
    addReview(set, group);
    addRemove(set, group);
    addHistory(set, group);
    addRestore(set, group);
    addHelper(set);
}

} // namespace tessellar
