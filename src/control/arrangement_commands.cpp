// Commands for saved arrangements.

#include "control/command_set.h"
#include "control/named_file.h"
#include "launcher/counts_text.h"
#include "launcher/launcher_arrangements.h"
#include "launcher/layout_archive.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

QString arrangementLine(const ArrangementSummary& summary) {
    return QStringLiteral("%1  %2  %3 (%4)\n")
        .arg(toText(summary.id), summary.createdAt.toIso8601(), summary.name,
             countsText(summary.appCount, summary.folderCount, summary.pageCount));
}

/// The identifier of the command's arrangement.
Word arrangementWord(CLI::App* command) {
    return word(command, "id", Texts::noop("The arrangement's identifier"));
}

std::optional<QUuid> identifier(const Call& call, const Word& word) {
    if (const auto id = json::decode<QUuid>(text(word)))
        return *id;
    call->fail({QStringLiteral("notAnIdentifier"),
                Texts::tr("“%1” is not an identifier.").arg(text(word).left(80)),
                {}});
    return std::nullopt;
}

/// Finishes the command with the resulting arrangement, and a sentence about it.
LauncherArrangements::Done answering(const Call& call,
                                     std::function<QString(const ArrangementSummary&)> text) {
    return [call, text = std::move(text)](const LauncherArrangements::Saved& saved) {
        if (saved)
            call->succeed(json::encode(*saved), text(*saved));
        else
            call->fail(saved.error());
    };
}
/// As above, with the arrangement's name in the sentence.
LauncherArrangements::Done answering(const Call& call, const QString& sentence) {
    return answering(call, [sentence](const ArrangementSummary& saved) {
        return sentence.arg(saved.name.isEmpty() ? toText(saved.id) : saved.name);
    });
}

void addList(CommandSet& set, CLI::App* group) {
    set.onRun(
        set.add("list", Texts::noop("Newest first"), group), CommandNeeds::launcher,
        [](const Call& call) {
            call->launcher().arrangements().list(
                call->mode(), [call](const QList<ListedArrangement>& all) {
                    QJsonArray summaries;
                    QString lines;
                    for (const ListedArrangement& arrangement : all) {
                        QJsonObject summary = json::encode(arrangement.summary).toObject();
                        if (!arrangement.isReadable)
                            summary.insert(QStringLiteral("isReadable"), false);
                        summaries.append(summary);
                        lines +=
                            arrangement.isReadable
                                ? arrangementLine(arrangement.summary)
                                : Texts::tr("%1  cannot be read\n").arg(toText(arrangement.summary.id));
                    }
                    call->succeed(summaries, lines.isEmpty()
                                                 ? Texts::tr("There are no saved arrangements.")
                                                 : lines);
                });
        });
}

void addChanges(CommandSet& set, CLI::App* group) {
    CLI::App* save = set.add("save", Texts::noop("Save the arrangement under a name"), group);
    set.onRun(save, CommandNeeds::launcher,
              [name = word(save, "name", Texts::noop("Its name"))](const Call& call) {
                  call->launcher().arrangements().save(call->mode(), text(name),
                                                       answering(call, arrangementLine));
              });

    CLI::App* replace = set.add(
        "replace", Texts::noop("Replace a saved arrangement with the current one, under the same name"),
        group);
    set.onRun(replace, CommandNeeds::launcher, [word = arrangementWord(replace)](const Call& call) {
        if (const auto id = identifier(call, word))
            call->launcher().arrangements().replace(call->mode(), *id,
                                                    answering(call, Texts::tr("Replaced “%1”.")));
    });

    CLI::App* rename = set.add("rename", Texts::noop("Give a saved arrangement another name"), group);
    set.onRun(rename, CommandNeeds::launcher,
              [word = arrangementWord(rename),
               name = tessellar::word(rename, "name", Texts::noop("Its name"))](const Call& call) {
                  if (const auto id = identifier(call, word))
                      call->launcher().arrangements().rename(
                          call->mode(), *id, text(name),
                          answering(call, Texts::tr("Renamed to “%1”.")));
              });

    CLI::App* remove = set.add("delete", Texts::noop("Remove a saved arrangement"), group);
    set.onRun(remove, CommandNeeds::launcher, [word = arrangementWord(remove)](const Call& call) {
        if (const auto id = identifier(call, word))
            call->launcher().arrangements().remove(call->mode(), *id,
                                                   answering(call, Texts::tr("Deleted “%1”.")));
    });
}

void addRestore(CommandSet& set, CLI::App* group) {
    CLI::App* restore =
        set.add("restore", Texts::noop("Replace the current arrangement with a saved one"), group);
    set.onRun(restore, CommandNeeds::launcher, [word = arrangementWord(restore)](const Call& call) {
        if (const auto id = identifier(call, word))
            call->launcher().archive().restore(
                call->mode(), *id, [call](const LayoutArchive::Restored& restored) {
                    if (restored)
                        call->succeed(QJsonObject(), Texts::tr("Restored “%1”.").arg(*restored));
                    else
                        call->fail(restored.error());
                });
    });
}

void addFiles(CommandSet& set, CLI::App* group) {
    CLI::App* give = set.add("export", Texts::noop("Export a saved arrangement to a new file"), group);
    set.onRun(give, CommandNeeds::launcher,
              [word = arrangementWord(give),
               file = tessellar::word(give, "file", Texts::noop("The new file"))](const Call& call) {
                  const NamedFile named = namedFile(*call, text(file));
                  if (const auto id = identifier(call, word))
                      call->launcher().arrangements().exportTo(
                          call->mode(), *id, *named.files, named.path,
                          answering(call, Texts::tr("Exported “%1”.")));
              });
    CLI::App* take =
        set.add("import", Texts::noop("Add an exported arrangement to the saved ones"), group);
    set.onRun(take, CommandNeeds::launcher,
              [file = word(take, "file", Texts::noop("An exported file"))](const Call& call) {
                  const NamedFile named = namedFile(*call, text(file));
                  call->launcher().arrangements().importFrom(
                      call->mode(), *named.files, named.path,
                      answering(call, Texts::tr("Imported “%1”.")));
              });
}

/// Only useful within one launcher: each command without a running one starts its own.
void addSteps(CommandSet& set, CLI::App* group) {
    set.onRun(set.add("undo", Texts::noop("Undo the last change to the saved arrangements"), group),
              CommandNeeds::launcher, [](const Call& call) {
                  const QString name = call->launcher().arrangements().undoName(call->mode());
                  call->launcher().arrangements().undo(
                      call->mode(), answering(call, [name](const ArrangementSummary&) {
                          return Texts::tr("Undid: %1.").arg(name);
                      }));
              });
    set.onRun(set.add("redo", Texts::noop("Redo the change that was undone"), group),
              CommandNeeds::launcher, [](const Call& call) {
                  const QString name = call->launcher().arrangements().redoName(call->mode());
                  call->launcher().arrangements().redo(
                      call->mode(), answering(call, [name](const ArrangementSummary&) {
                          return Texts::tr("Redid: %1.").arg(name);
                      }));
              });
}

} // namespace

void addArrangementCommands(CommandSet& set) {
    CLI::App* group =
        set.addGroup("arrangements", Texts::noop("The saved arrangements of the display mode"));
    addList(set, group);
    addChanges(set, group);
    addRestore(set, group);
    addFiles(set, group);
    addSteps(set, group);
}

} // namespace tessellar
