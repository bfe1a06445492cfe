// Commands that edit the arrangement as a person would: move, group, rename, hide, alias, sort, undo,
// search.
//
// Tiles are named by identifier or app key, places as PAGE:INDEX or FOLDER/PAGE:INDEX, all counted from
// 0.

#include "control/command_set.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_search.h"
#include "launcher/launcher_updates.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

constexpr const char* tileHelp = Texts::noop("A tile, by its identifier or app key");
constexpr const char* tilesHelp = Texts::noop("Tiles, by identifier or app key");
constexpr const char* placeHelp =
    Texts::noop("PAGE:INDEX or FOLDER/PAGE:INDEX, counted from 0; without INDEX the page's end");

void answerWithHits(const Call& call, const Word& query) {
    QJsonArray hits;
    QString lines;
    for (const SearchIndex::Hit& hit : call->launcher().search().search(call->mode(), text(query))) {
        const QString key = appKey(*hit.entry);
        const AppUpdateView update = call->launcher().updates().of(key);
        QJsonObject object{{QStringLiteral("score"), hit.score},
                           {QStringLiteral("appKey"), key},
                           {QStringLiteral("entry"), json::encode(*hit.entry)}};
        if (const auto status = update.status())
            object[QStringLiteral("updateStatus")] = json::encode(*status);
        hits.append(object);
        lines += QStringLiteral("%1  %2 %3")
                     .arg(hit.score, 7, 'f', 1)
                     .arg(hit.entry->name, update.badge())
                     .trimmed() +
                 u'\n';
    }
    call->succeed(QJsonObject{{QStringLiteral("hits"), hits}}, lines);
}

std::optional<QUuid> tile(const Call& call, const QString& name, AppTiles which = AppTiles::ownFirst) {
    const auto found = findTile(call->layout().pages(), name, which);
    if (!found)
        call->fail({QStringLiteral("noSuchTile"),
                    Texts::tr("There is no tile “%1”.").arg(name.left(200)),
                    {}});
    return found;
}

std::optional<QUuid> tile(const Call& call, const Word& name) { return tile(call, text(name)); }

/// Each tile once, however often and in whatever way it is named.
std::optional<QList<QUuid>> tiles(const Call& call, const Words& names,
                                  AppTiles which = AppTiles::ownFirst) {
    QList<QUuid> result;
    for (const std::string& name : *names) {
        const auto found = tile(call, QString::fromStdString(name), which);
        if (!found)
            return std::nullopt;
        if (!result.contains(*found))
            result.append(*found);
    }
    return result;
}

std::optional<LayoutPlace> place(const Call& call, const Word& word) {
    const auto found = LayoutPlace::fromText(text(word));
    if (!found)
        call->fail({QStringLiteral("noSuchPlace"),
                    Texts::tr("“%1” is not a place: write PAGE:INDEX or FOLDER/PAGE:INDEX.")
                        .arg(text(word).left(200)),
                    {}});
    return found;
}

void addMoves(CommandSet& set) {
    CLI::App* move = set.add("move", Texts::noop("Move tiles to a place"));
    set.onRun(move, CommandNeeds::launcher,
              [names = words(move, "tiles", tilesHelp),
               to = requiredOption(move, "--to", placeHelp)](const Call& call) {
                  const auto ids = tiles(call, names);
                  const auto where = ids ? place(call, to) : std::nullopt;
                  if (where)
                      call->answer(call->launcher().editor().moveTiles(call->mode(), *ids, *where));
              });

    CLI::App* group = set.add(
        "group",
        Texts::noop("Group tiles with another: into it, if it is a folder, or into a new folder"));
    set.onRun(
        group, CommandNeeds::launcher,
        [names = words(group, "tiles", tilesHelp),
         with = requiredOption(group, "--with", Texts::noop("The tile that they are dropped on"))](
            const Call& call) {
            const auto ids = tiles(call, names);
            const auto target = ids ? tile(call, with) : std::nullopt;
            if (target)
                call->answer(call->launcher().editor().groupTiles(call->mode(), *ids, *target));
        });

    CLI::App* ungroup = set.add("ungroup", Texts::noop("Replace a folder with its tiles"));
    set.onRun(ungroup, CommandNeeds::launcher,
              [name = word(ungroup, "folder", tileHelp)](const Call& call) {
                  if (const auto id = tile(call, name))
                      call->answer(call->launcher().editor().ungroupFolder(call->mode(), *id));
              });

    CLI::App* sort = set.add("sort", Texts::noop("Sort a page by name, or everything"));
    const Word page =
        optionalWord(sort, "page", Texts::noop("PAGE or FOLDER/PAGE; without it everything"));
    set.onRun(sort, CommandNeeds::launcher, [page](const Call& call) {
        if (page->empty())
            return call->answer(call->launcher().editor().sortEverything(call->mode()));
        if (const auto where = place(call, page))
            call->answer(call->launcher().editor().sortPage(call->mode(), where->folder, where->page));
    });
}

void addNames(CommandSet& set) {
    CLI::App* rename = set.add("rename", Texts::noop("Give a folder or an application another name"));
    set.onRun(rename, CommandNeeds::launcher,
              [name = word(rename, "tile", tileHelp),
               to = word(rename, "name", Texts::noop("The new name"))](const Call& call) {
                  if (const auto id = tile(call, name))
                      call->answer(call->launcher().editor().rename(call->mode(), *id, text(to)));
              });

    CLI::App* revert = set.add("revert-name", Texts::noop("Restore the application's own name"));
    set.onRun(revert, CommandNeeds::launcher,
              [name = word(revert, "tile", tileHelp)](const Call& call) {
                  if (const auto id = tile(call, name))
                      call->answer(call->launcher().editor().revertAppName(call->mode(), *id));
              });

    CLI::App* symbol = set.add("symbol", Texts::noop("Show a symbol on a folder; none clears it"));
    set.onRun(
        symbol, CommandNeeds::launcher,
        [name = word(symbol, "folder", tileHelp),
         to = word(symbol, "symbol", Texts::noop("Its name, or none"))](const Call& call) {
            if (const auto id = tile(call, name))
                call->answer(call->launcher().editor().setFolderSymbol(
                    call->mode(), *id, text(to) == u"none" ? std::nullopt : std::optional(text(to))));
        });
}

void addHiding(CommandSet& set) {
    CLI::App* hide = set.add("hide", Texts::noop("Hide applications from the grid"));
    set.onRun(hide, CommandNeeds::launcher,
              [names = words(hide, "tiles", tilesHelp)](const Call& call) {
                  if (const auto ids = tiles(call, names))
                      call->answer(call->launcher().editor().hideApps(call->mode(), *ids));
              });

    CLI::App* unhide = set.add("unhide", Texts::noop("Show a hidden application again"));
    set.onRun(unhide, CommandNeeds::launcher,
              [key = word(unhide, "appkey", appKeyHelp)](const Call& call) {
                  call->answer(call->launcher().editor().unhideApp(call->mode(), text(key)));
              });
}

void addAliases(CommandSet& set) {
    CLI::App* alias = set.addGroup("alias", Texts::noop("Second tiles for applications"));
    CLI::App* create = set.add("create", Texts::noop("A second tile for an application"), alias);
    set.onRun(create, CommandNeeds::launcher,
              [name = word(create, "tile", tileHelp),
               to = requiredOption(create, "--to", placeHelp)](const Call& call) {
                  const auto id = tile(call, name);
                  const auto where = id ? place(call, to) : std::nullopt;
                  if (where)
                      call->answer(call->launcher().editor().createAlias(call->mode(), *id, *where));
              });
    CLI::App* remove = set.add("remove", Texts::noop("Remove alias tiles"), alias);
    set.onRun(remove, CommandNeeds::launcher,
              [names = words(remove, "tiles", tilesHelp)](const Call& call) {
                  if (const auto ids = tiles(call, names, AppTiles::aliasesOnly))
                      call->answer(call->launcher().editor().removeAliases(call->mode(), *ids));
              });
}

QJsonArray names(const QList<LayoutUndoEntry>& stack) {
    QJsonArray result;
    for (const LayoutUndoEntry& entry : stack)
        result.append(entry.name);
    return result;
}

void addHistory(CommandSet& set) {
    set.onRun(set.add("undo", Texts::noop("Undo the last edit")), CommandNeeds::launcher,
              [](const Call& call) {
                  call->launcher().history().undo(
                      call->mode(),
                      [call](const LauncherEditor::Outcome& outcome) { call->answer(outcome); });
              });
    set.onRun(set.add("redo", Texts::noop("Redo the last undone edit")), CommandNeeds::launcher,
              [](const Call& call) {
                  call->launcher().history().redo(
                      call->mode(),
                      [call](const LauncherEditor::Outcome& outcome) { call->answer(outcome); });
              });
    set.onRun(set.add("history", Texts::noop("What can be undone and redone, oldest first")),
              CommandNeeds::launcher, [](const Call& call) {
                  const LayoutUndoHistory& history = call->launcher().history().steps();
                  QString lines;
                  for (const LayoutUndoEntry& entry : history.undoStack())
                      lines += Texts::tr("Undo %1\n").arg(entry.name);
                  for (const LayoutUndoEntry& entry : history.redoStack())
                      lines += Texts::tr("Redo %1\n").arg(entry.name);
                  call->succeed(QJsonObject{{QStringLiteral("undo"), names(history.undoStack())},
                                            {QStringLiteral("redo"), names(history.redoStack())}},
                                lines);
              });
    set.onRun(set.add("save",
                      Texts::noop("Wait until every edit is on the disk, as a batch does at its end")),
              CommandNeeds::launcher, [](const Call& call) { call->answerAllSaved(); });
    CLI::App* select = set.add("select", Texts::noop("Select tiles; none clears the selection"));
    auto chosen = std::make_shared<std::vector<std::string>>();
    select->add_option("tiles", *chosen, tilesHelp);
    set.onRun(select, CommandNeeds::launcher, [chosen](const Call& call) {
        if (const auto ids = tiles(call, chosen)) {
            call->layout().navigation().select(*ids);
            call->answer({});
        }
    });
}

/// Cutting and copying fail if the pasteboard does not accept the tiles.
void answerClipboard(const Call& call, bool isDone) {
    isDone ? call->answer({}) : call->fail(LauncherClipboard::refusal());
}

void addClipboard(CommandSet& set) {
    CLI::App* copy = set.add("copy", Texts::noop("Copy tiles to the clipboard"));
    set.onRun(copy, CommandNeeds::launcher,
              [names = words(copy, "tiles", tilesHelp)](const Call& call) {
                  if (const auto ids = tiles(call, names))
                      answerClipboard(call, call->launcher().clipboard().copy(call->mode(), *ids));
              });
    CLI::App* cut = set.add("cut", Texts::noop("Cut tiles: they move when they are pasted"));
    set.onRun(cut, CommandNeeds::launcher, [names = words(cut, "tiles", tilesHelp)](const Call& call) {
        if (const auto ids = tiles(call, names))
            answerClipboard(call, call->launcher().clipboard().cut(call->mode(), *ids));
    });
    CLI::App* paste = set.add("paste", Texts::noop("Paste after the selected tile, or at a place"));
    const Word to = optionalWord(paste, "--to", placeHelp);
    set.onRun(paste, CommandNeeds::launcher, [to](const Call& call) {
        const auto where = to->empty() ? std::nullopt : place(call, to);
        if (to->empty() || where)
            answerClipboard(call, call->launcher().clipboard().paste(call->mode(), where));
    });
}

void addSearch(CommandSet& set) {
    CLI::App* search = set.add("search", Texts::noop("Applications by name, best first"));
    set.onRun(search, CommandNeeds::launcher,
              [query = word(search, "query", Texts::noop("What to look for"))](const Call& call) {
                  // Smart folders are evaluated first, because their applications are found by the
                  // folders' names.
                  LauncherViewModel& launcher = call->launcher();
                  launcher.updates().whenReady([call, query, &launcher] {
                      launcher.smartFolders().gatherFacts({}, [call, query, &launcher] {
                          launcher.search().whenReady(call->mode(),
                                                      [call, query] { answerWithHits(call, query); });
                      });
                  });
              });
}

} // namespace

void addEditingCommands(CommandSet& set) {
    addMoves(set);
    addNames(set);
    addHiding(set);
    addAliases(set);
    addHistory(set);
    addClipboard(set);
    addSearch(set);
}

} // namespace tessellar
