// Commands for the arrangement: scan, list, reset, open.

#include "control/command_set.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_history.h"
#include "launcher/layout_archive.h"
#include "launcher/layout_proposals.h"
#include "launcher/smart_folder_library.h"
#include "launcher/tile_opener.h"
#include "platform/texts.h"

#include <algorithm>
#include <map>

namespace tessellar {
namespace {

/// The pages with their tiles, in plain text; folders' contents are indented.
void writeTiles(QString& out, const Call& call, const Page& page, int indent) {
    const LiveLayout& layout = call->layout();
    for (const LaunchpadItem& item : page) {
        out += QString(indent, u' ');
        if (const AppEntry* app = item.app()) {
            out += app->name;
            if (app->alias)
                out += Texts::tr(" (alias)");
            if (layout.hiddenKeys().contains(appKey(*app)))
                out += Texts::tr(" (hidden)");
            if (layout.unavailableAppKeys().contains(appKey(*app)))
                out += Texts::tr(" (not available)");
            out += u'\n';
        } else if (const FolderEntry* folder = item.folder()) {
            out += folder->name + QStringLiteral("/\n");
            for (const Page& inner : folder->pages)
                writeTiles(out, call, inner, indent + 4);
        } else {
            out += call->launcher().smartFolders().name(item.smartFolder()->definitionID) +
                   Texts::tr(" (smart folder)\n");
        }
    }
}

QString gridText(const Call& call, const Pages& pages) {
    QString out;
    int number = 0;
    for (const Page& page : pages) {
        out += Texts::tr("%1Page %2\n").arg(number ? QStringLiteral("\n") : QString()).arg(number + 1);
        writeTiles(out, call, page, 2);
        ++number;
    }
    return out.isEmpty() ? Texts::tr("There are no applications.") : out;
}

void addScan(CommandSet& set) {
    set.onRun(set.add("scan", Texts::noop("Scan for applications and list them")),
              CommandNeeds::machine, [](const Call& call) {
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

/// Rearranges all installed applications in one of the ways that need no other input.
void addArrange(CommandSet& set) {
    using Kind = LayoutProposal::Kind;
    static const std::map<std::string, Kind> ways{{"by-category", Kind::byCategory},
                                                  {"by-name", Kind::byName}};
    CLI::App* arrange = set.add("arrange", Texts::noop("Rearrange all applications; a backup is kept"));
    const Word way =
        word(arrange, "way", Texts::noop("by-category, with a folder for each, or by-name"));
    arrange->get_option("way")->check(CLI::IsMember(ways));
    const Flag isPreview = flag(arrange, "--preview", Texts::noop("Only print the result"));
    set.onRun(arrange, CommandNeeds::launcher, [way, isPreview](const Call& call) {
        call->launcher().proposals().propose(
            call->mode(), [call, way, isPreview](const LayoutProposals::All& all) {
                const LayoutProposal& proposal =
                    *std::ranges::find(all.proposals, ways.at(*way), &LayoutProposal::kind);
                if (*isPreview)
                    return call->succeed(
                        QJsonObject{{QStringLiteral("pages"), json::encode(proposal.pages)}},
                        gridText(call, proposal.pages));
                call->launcher().proposals().take(
                    {call->mode()}, proposal,
                    [call, text = explanation(proposal)](const LayoutProposals::Outcome& outcome) {
                        call->answer(outcome, text);
                    });
            });
    });
}

/// The error of a window command if no launcher is running.
LauncherError notRunning() {
    return {QStringLiteral("notRunning"), Texts::tr("The launcher is not running."), {}};
}

void addPresence(CommandSet& set, const char* name, const char* description,
                 void (*act)(const LauncherViewModel::Presenter&)) {
    set.onRun(set.add(name, description), CommandNeeds::window, [act](const Call& call) {
        const auto& window = call->launcher().presenter();
        if (!window)
            return call->fail(notRunning());
        act(*window);
        call->finish(ExitStatus::done);
    });
}

/// The launcher keeps running if something cannot be saved.
void addQuit(CommandSet& set) {
    set.onRun(set.add("quit", Texts::noop("Save everything and quit it")), CommandNeeds::window,
              [](const Call& call) {
                  const auto& window = call->launcher().presenter();
                  if (!window)
                      return call->fail(notRunning());
                  call->launcher().history().unsaved().whenSaved(
                      call->options.editor, UnsavedEdits::Whose::all,
                      [call, quit = window->quit](const UnsavedEdits::Outcome& saved) {
                          if (!saved)
                              return call->fail(saved.error());
                          quit();
                          call->finish(ExitStatus::done);
                      });
              });
}

} // namespace

void addLayoutCommands(CommandSet& set) {
    addScan(set);
    set.onRun(
        set.add("list",
                Texts::noop(
                    "Print the arrangement: the working layout, in the form of its file with --json")),
        CommandNeeds::launcher, [](const Call& call) {
            if (!call->launcher().isBootstrapped())
                return call->answer(call->launcher().history().guard(call->mode()));
            call->succeed(json::encode(call->layout().document()),
                          gridText(call, call->layout().pages()));
        });
    set.onRun(set.add("reset", Texts::noop("Back to the default alphabetical arrangement")),
              CommandNeeds::launcher, [](const Call& call) {
                  const auto outcome = call->launcher().archive().reset(call->mode());
                  call->answer(outcome,
                               Texts::tr("Layout reset to the default alphabetical arrangement."));
              });
    addArrange(set);
    using Presenter = LauncherViewModel::Presenter;
    addPresence(set, "show", Texts::noop("Show the running launcher's window"),
                [](const Presenter& window) { window.show(); });
    addPresence(set, "dismiss", Texts::noop("Hide its window"),
                [](const Presenter& window) { window.dismiss(); });
    addPresence(set, "toggle", Texts::noop("Show its window, or hide it if it is shown"),
                [](const Presenter& window) { window.isShown() ? window.dismiss() : window.show(); });
    addQuit(set);
    CLI::App* open = set.add("open", Texts::noop("Start an application"));
    set.onRun(open, CommandNeeds::launcher, [key = word(open, "appkey", appKeyHelp)](const Call& call) {
        call->launcher().opener().launch(
            text(key), [call](const LauncherViewModel::Outcome& outcome) { call->answer(outcome); });
    });
}

} // namespace tessellar
