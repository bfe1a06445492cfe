// The arrangement: scan, list, reset, open, saved arrangements.

#include "control/command_set.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_history.h"
#include "launcher/layout_archive.h"
#include "launcher/smart_folder_library.h"

#include <algorithm>

namespace tessellar {
namespace {

/// The grid for people: each page with its tiles, folders indented.
void writeTiles(QString& out, const Call& call, const Page& page, int indent) {
    const LiveLayout& layout = call->layout();
    for (const LaunchpadItem& item : page) {
        out += QString(indent, u' ');
        if (const AppEntry* app = item.app()) {
            out += app->name;
            if (app->alias)
                out += QStringLiteral(" (alias)");
            if (layout.hiddenKeys().contains(appKey(*app)))
                out += QStringLiteral(" (hidden)");
            if (layout.unavailableAppKeys().contains(appKey(*app)))
                out += QStringLiteral(" (not available)");
            out += u'\n';
        } else if (const FolderEntry* folder = item.folder()) {
            out += folder->name + QStringLiteral("/\n");
            for (const Page& inner : folder->pages)
                writeTiles(out, call, inner, indent + 4);
        } else {
            out += call->launcher().smartFolders().name(item.smartFolder()->definitionID) +
                   QStringLiteral(" (smart folder)\n");
        }
    }
}

QString gridText(const Call& call) {
    QString out;
    int number = 0;
    for (const Page& page : call->layout().pages()) {
        out += QStringLiteral("%1Page %2\n")
                   .arg(number ? QStringLiteral("\n") : QString())
                   .arg(number + 1);
        writeTiles(out, call, page, 2);
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

std::optional<QUuid> identifier(const Call& call, const QString& text) {
    if (const auto id = json::decode<QUuid>(text))
        return *id;
    call->fail({QStringLiteral("notAnIdentifier"),
                QStringLiteral("“%1” is no identifier.").arg(text.left(80)),
                {}});
    return std::nullopt;
}

/// Does it, and says so of the arrangement by its name.
void answerNaming(const Call& call, const QString& sentence, const QUuid& id,
                  LayoutArchive::Outcome (LayoutArchive::*work)(LauncherWindowMode, const QUuid&)) {
    LayoutArchive& archive = call->launcher().archive();
    const QString name = archive.nameOf(call->mode(), id);
    call->answer((archive.*work)(call->mode(), id), sentence.arg(name));
}

void addScan(CommandSet& set) {
    set.onRun(set.add("scan", "Look for applications and print what is found"), CommandNeeds::machine,
              [](const Call& call) {
                  Machine& machine = call->machine;
                  auto task = std::make_shared<Task>();
                  call->held.push_back(task);
                  *task = machine.workers.run(
                      [scanner = AppScanner(InstalledApplications::scanContext(machine))](
                          std::stop_token stop) {
                          ScanCache cache;
                          return scanner.scan(cache, stop).value_or(AppScanner::LibraryScan());
                      },
                      [call](const AppScanner::LibraryScan& scan) {
                          QString text;
                          for (const AppEntry& app : scan.apps)
                              text += QStringLiteral("%1  %2\n").arg(app.name, app.path);
                          for (const AppScanner::IncompleteBundle& bundle : scan.incompleteBundles)
                              text += QStringLiteral("(incomplete)  %1\n").arg(bundle.path);
                          call->succeed(json::encode(scan), text);
                      });
              });
}

void addArrangements(CommandSet& set) {
    CLI::App* group = set.addGroup("arrangements", "The saved arrangements of the display mode");
    set.onRun(set.add("list", "Newest first", group), CommandNeeds::launcher, [](const Call& call) {
        call->launcher().archive().listArrangements(
            call->mode(), [call](const QList<ArrangementSummary>& summaries) {
                QString text;
                for (const ArrangementSummary& summary : summaries)
                    text += arrangementLine(summary);
                call->succeed(json::encode(summaries),
                              text.isEmpty() ? QStringLiteral("There are no saved arrangements.")
                                             : text);
            });
    });

    CLI::App* save = set.add("save", "Save the arrangement under a name", group);
    set.onRun(save, CommandNeeds::launcher,
              [name = word(save, "name", "What to call it")](const Call& call) {
                  const auto saved = call->launcher().archive().save(call->mode(), text(name));
                  if (saved)
                      call->succeed(json::encode(*saved), arrangementLine(*saved));
                  else
                      call->fail(saved.error());
              });

    CLI::App* restore =
        set.add("restore", "Put a saved arrangement in place of the present one", group);
    set.onRun(restore, CommandNeeds::launcher,
              [id = word(restore, "id", "The arrangement's identifier")](const Call& call) {
                  if (const auto uuid = identifier(call, text(id)))
                      answerNaming(call, QStringLiteral("Restored “%1”."), *uuid,
                                   &LayoutArchive::restore);
              });

    CLI::App* remove = set.add("delete", "Remove a saved arrangement", group);
    set.onRun(remove, CommandNeeds::launcher,
              [id = word(remove, "id", "The arrangement's identifier")](const Call& call) {
                  if (const auto uuid = identifier(call, text(id)))
                      answerNaming(call, QStringLiteral("Deleted “%1”."), *uuid,
                                   &LayoutArchive::remove);
              });
}

/// A command to the window of a launcher that is running.
void addPresence(CommandSet& set, const char* name, const char* description,
                 void (*act)(const LauncherViewModel::Presenter&)) {
    set.onRun(set.add(name, description), CommandNeeds::window, [act](const Call& call) {
        const auto& window = call->launcher().presenter();
        if (!window)
            return call->fail(
                {QStringLiteral("notRunning"), QStringLiteral("The launcher is not running."), {}});
        act(*window);
        call->finish(ExitStatus::done);
    });
}

} // namespace

void addLayoutCommands(CommandSet& set) {
    addScan(set);
    set.onRun(set.add("list",
                      "Print the arrangement: the working layout, in the form of its file with --json"),
              CommandNeeds::launcher, [](const Call& call) {
                  if (!call->launcher().isBootstrapped())
                      return call->answer(call->launcher().history().guard(call->mode()));
                  call->succeed(json::encode(call->layout().document()), gridText(call));
              });
    set.onRun(set.add("reset", "Back to the default alphabetical arrangement"), CommandNeeds::launcher,
              [](const Call& call) {
                  const auto outcome = call->launcher().archive().reset(call->mode());
                  call->answer(outcome,
                               QStringLiteral("Layout reset to the default alphabetical arrangement."));
              });
    using Presenter = LauncherViewModel::Presenter;
    addPresence(set, "show", "Bring the launcher that is running before the user",
                [](const Presenter& window) { window.show(); });
    addPresence(set, "dismiss", "Put its window away",
                [](const Presenter& window) { window.dismiss(); });
    addPresence(set, "toggle", "Show it, or put it away where it is shown",
                [](const Presenter& window) { window.isShown() ? window.dismiss() : window.show(); });
    addPresence(set, "quit", "End it, with everything saved",
                [](const Presenter& window) { window.quit(); });
    CLI::App* open = set.add("open", "Start an application");
    set.onRun(open, CommandNeeds::launcher, [key = word(open, "appkey", appKeyHelp)](const Call& call) {
        call->launcher().launch(
            text(key), [call](const LauncherViewModel::Outcome& outcome) { call->answer(outcome); });
    });
    addArrangements(set);
}

} // namespace tessellar
