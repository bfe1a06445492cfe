// Commands for what is kept of former arrangements: the places of removed applications, and backups.

#include "control/command_set.h"
#include "launcher/counts_text.h"
#include "launcher/layout_archive.h"
#include "launcher/place_memory.h"
#include "launcher/unplaced_items.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

QString placeLine(const PlaceSummary& place) {
    QString where = Texts::tr("page %1").arg(place.page + 1);
    for (const QString& folder : place.folderNames)
        where += QStringLiteral(", “%1”").arg(folder);
    return QStringLiteral("%1  %2  %3 (%4)%5\n")
        .arg(appKey(place.tile), place.goneAt.toIso8601(), place.tile.name, where,
             place.isRemoved ? Texts::tr(", removed") : QString());
}

QJsonValue encoded(const PlaceSummary& place) {
    return QJsonObject{{QStringLiteral("tile"), json::encode(place.tile)},
                       {QStringLiteral("goneAt"), place.goneAt.toIso8601()},
                       {QStringLiteral("isRemoved"), place.isRemoved},
                       {QStringLiteral("page"), place.page},
                       {QStringLiteral("folders"), QJsonArray::fromStringList(place.folderNames)}};
}

void addPlaces(CommandSet& set) {
    CLI::App* group =
        set.addGroup("places", Texts::noop("The remembered places of applications that are gone"));
    set.onRun(set.add("list", Texts::noop("In the order of the arrangement"), group),
              CommandNeeds::launcher, [](const Call& call) {
                  QJsonArray all;
                  QString lines;
                  const LiveLayout& layout = call->layout();
                  for (const PlaceSummary& place : summaries(call->launcher().places()[call->mode()])) {
                      if (layout.item(place.tile.id)) // it is back
                          continue;
                      all.append(encoded(place));
                      lines += placeLine(place);
                  }
                  call->succeed(all, lines.isEmpty() ? Texts::tr("No places are remembered.") : lines);
              });
    CLI::App* forget =
        set.add("forget", Texts::noop("Forget the place of an application, or all"), group);
    set.onRun(
        forget, CommandNeeds::launcher,
        [key = optionalWord(forget, "appkey",
                            Texts::noop("Its key or path; without it all are forgotten"))](
            const Call& call) {
            const auto application = key->empty() ? std::nullopt : std::optional(text(key));
            call->launcher().places().forget(
                call->mode(), application, [call, application](const auto& forgotten) {
                    if (!forgotten)
                        return call->fail(forgotten.error());
                    if (*forgotten > 0 || !application)
                        return call->succeed(QJsonObject(), QString());
                    call->fail(
                        {QStringLiteral("noSuchPlace"),
                         Texts::tr("No place is remembered for “%1”.").arg(application->left(200)),
                         {}});
                });
        });
}

void addUnplaced(CommandSet& set) {
    set.onRun(
        set.add("unplaced", Texts::noop("What is hidden, has no tile, or has gone and may come back")),
        CommandNeeds::launcher, [](const Call& call) {
            const auto items = unplacedItems(call->launcher(), call->mode(), call->machine.locale);
            QString lines;
            for (const UnplacedItem& item : items)
                lines +=
                    QStringLiteral("%1  %2  %3\n").arg(json::rawValue(item.kind), item.id, item.name);
            call->succeed(json::encode(items),
                          lines.isEmpty() ? Texts::tr("Everything is on the pages.") : lines);
        });
}

void addBackups(CommandSet& set) {
    CLI::App* group = set.addGroup("backups", Texts::noop("The backups of the arrangement"));
    set.onRun(set.add("list", Texts::noop("Newest first"), group), CommandNeeds::launcher,
              [](const Call& call) {
                  call->launcher().archive().listBackups([call](const QList<BackupSummary>& all) {
                      QString lines;
                      for (const BackupSummary& backup : all)
                          lines += QStringLiteral("%1  %2 (%3)\n")
                                       .arg(backup.name, backupReasonText(backup.reason),
                                            countsText(backup.appCount, backup.folderCount,
                                                       backup.pageCount));
                      call->succeed(json::encode(all),
                                    lines.isEmpty() ? Texts::tr("There are no backups.") : lines);
                  });
              });
    CLI::App* restore =
        set.add("restore", Texts::noop("Replace the current arrangement with a backup"), group);
    set.onRun(restore, CommandNeeds::launcher,
              [name = word(restore, "name", Texts::noop("As listed"))](const Call& call) {
                  call->launcher().archive().restoreBackup(
                      call->mode(), text(name), [call](const LayoutArchive::Outcome& outcome) {
                          call->answer(outcome, Texts::tr("The backup was restored."));
                      });
              });
}

} // namespace

void addMemoryCommands(CommandSet& set) {
    addUnplaced(set);
    addPlaces(set);
    addBackups(set);
}

} // namespace tessellar
