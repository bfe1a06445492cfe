// The arrangement: scan, list, reset, open, saved arrangements.

#include "control/command_set.h"

namespace tessellar {
namespace {

/// The grid for people: each page with its tiles, folders indented.
void writeTiles(QString& out, const LauncherViewModel& launcher, const Page& page, int indent) {
    for (const LaunchpadItem& item : page) {
        out += QString(indent, u' ');
        if (const AppEntry* app = item.app()) {
            out += app->name;
            if (app->alias)
                out += QStringLiteral(" (alias)");
            if (launcher.hiddenKeys().contains(appKey(*app)))
                out += QStringLiteral(" (hidden)");
            if (launcher.unavailableAppKeys().contains(appKey(*app)))
                out += QStringLiteral(" (not available)");
            out += u'\n';
        } else if (const FolderEntry* folder = item.folder()) {
            out += folder->name + QStringLiteral("/\n");
            for (const Page& inner : folder->pages)
                writeTiles(out, launcher, inner, indent + 4);
        } else {
            out += launcher.smartFolders().name(item.smartFolder()->definitionID) +
                   QStringLiteral(" (smart folder)\n");
        }
    }
}

QString gridText(const LauncherViewModel& launcher) {
    QString out;
    int number = 0;
    for (const Page& page : launcher.pages()) {
        out += QStringLiteral("%1Page %2\n")
                   .arg(number ? QStringLiteral("\n") : QString())
                   .arg(number + 1);
        writeTiles(out, launcher, page, 2);
        ++number;
    }
    return out.isEmpty() ? QStringLiteral("There are no applications.") : out;
}

QString counted(int count, const QString& one) {
    return QStringLiteral("%1 %2%3").arg(count).arg(one, count == 1 ? QString() : QStringLiteral("s"));
}

QString arrangementLine(const ArrangementSummary& summary) {
    return QStringLiteral("%1  %2  %3 (%4, %5, %6)\n")
        .arg(toText(summary.id), summary.createdAt.toIso8601(), summary.name,
             counted(summary.pageCount, QStringLiteral("page")),
             counted(summary.appCount, QStringLiteral("application")),
             counted(summary.folderCount, QStringLiteral("folder")));
}

std::optional<QUuid> identifier(const std::shared_ptr<CommandCall>& command, const QString& text) {
    if (const auto id = json::decode<QUuid>(text))
        return *id;
    command->fail({QStringLiteral("notAnIdentifier"),
                   QStringLiteral("“%1” is no identifier.").arg(text.left(80)),
                   {}});
    return std::nullopt;
}

void addScan(CommandSet& set) {
    set.onRun(
        set.add("scan", "Look for applications and print what is found"), CommandNeeds::machine,
        [](const std::shared_ptr<CommandCall>& command) {
            Machine& machine = command->machine;
            auto task = std::make_shared<Task>();
            command->held.push_back(task);
            *task = machine.workers.run(
                [scanner = AppScanner(LauncherViewModel::scanContext(machine))](std::stop_token stop) {
                    ScanCache cache;
                    return scanner.scan(cache, stop).value_or(AppScanner::LibraryScan());
                },
                [command](const AppScanner::LibraryScan& scan) {
                    QString text;
                    for (const AppEntry& app : scan.apps)
                        text += QStringLiteral("%1  %2\n").arg(app.name, app.path);
                    for (const AppScanner::IncompleteBundle& bundle : scan.incompleteBundles)
                        text += QStringLiteral("(incomplete)  %1\n").arg(bundle.path);
                    command->succeed(json::encode(scan), text);
                });
        });
}

void addArrangements(CommandSet& set) {
    CLI::App* group = set.addGroup("arrangements", "The saved arrangements of the display mode");
    set.onRun(set.add("list", "Newest first", group), CommandNeeds::launcher,
              [](const std::shared_ptr<CommandCall>& command) {
                  const QList<ArrangementSummary> summaries = command->launcher().arrangements();
                  QString text;
                  for (const ArrangementSummary& summary : summaries)
                      text += arrangementLine(summary);
                  command->succeed(json::encode(summaries),
                                   text.isEmpty() ? QStringLiteral("There are no saved arrangements.")
                                                  : text);
              });

    CLI::App* save = set.add("save", "Save the arrangement under a name", group);
    set.onRun(
        save, CommandNeeds::launcher,
        [name = word(save, "name", "What to call it")](const std::shared_ptr<CommandCall>& command) {
            const auto saved = command->launcher().saveArrangement(text(name));
            if (saved)
                command->succeed(json::encode(*saved), arrangementLine(*saved));
            else
                command->fail(saved.error());
        });

    CLI::App* restore =
        set.add("restore", "Put a saved arrangement in place of the present one", group);
    set.onRun(restore, CommandNeeds::launcher,
              [id = word(restore, "id", "The arrangement's identifier")](
                  const std::shared_ptr<CommandCall>& command) {
                  if (const auto uuid = identifier(command, text(id)))
                      command->answer(command->launcher().restoreArrangement(*uuid));
              });

    CLI::App* remove = set.add("delete", "Remove a saved arrangement", group);
    set.onRun(remove, CommandNeeds::launcher,
              [id = word(remove, "id", "The arrangement's identifier")](
                  const std::shared_ptr<CommandCall>& command) {
                  if (const auto uuid = identifier(command, text(id)))
                      command->answer(command->launcher().deleteArrangement(*uuid));
              });
}

} // namespace

void addLayoutCommands(CommandSet& set) {
    addScan(set);
    set.onRun(set.add("list",
                      "Print the arrangement: the working layout, in the form of its file with --json"),
              CommandNeeds::launcher, [](const std::shared_ptr<CommandCall>& command) {
                  const LauncherViewModel& launcher = command->launcher();
                  command->succeed(json::encode(launcher.document()), gridText(launcher));
              });
    set.onRun(set.add("reset", "Back to the default alphabetical arrangement"), CommandNeeds::launcher,
              [](const std::shared_ptr<CommandCall>& command) {
                  const auto outcome = command->launcher().resetLayout();
                  command->answer(
                      outcome, QStringLiteral("Layout reset to the default alphabetical arrangement."));
              });
    CLI::App* open = set.add("open", "Start an application");
    set.onRun(
        open, CommandNeeds::launcher,
        [key = word(open, "appkey", "Its bundle identifier, or the path of one of several copies")](
            const std::shared_ptr<CommandCall>& command) {
            command->launcher().launch(text(key), [command](const LauncherViewModel::Outcome& outcome) {
                command->answer(outcome);
            });
        });
    addArrangements(set);
}

} // namespace tessellar
