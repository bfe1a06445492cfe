#include "launcher/actions.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_icons.h"
#include "launcher/launcher_import.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_updates.h"
#include "launcher/launcher_view_model.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_editing.h"
#include "launcher/smart_folder_library.h"
#include "smartfolders/smart_folder_raw_values.h"

#include <algorithm>

namespace tessellar {
namespace {

/// More places than anybody reads are not listed; tiles can still be dragged there.
constexpr qsizetype maximumPlaces = 60;

struct Context {
    LauncherViewModel& launcher;
    LiveLayout& layout;
    const ActionTarget& target;
    QList<QUuid> tiles = {}; ///< the tile, or the selection that it belongs to
    bool hasTile = false;
    bool isComputed = false; ///< in an open smart folder, whose rules decide what is in it
    bool isEditable = false;

    LauncherWindowMode mode() const { return target.mode; }
    const AppEntry* app() const { return target.item ? target.item->app() : nullptr; }
    const FolderEntry* folder() const { return target.item ? target.item->folder() : nullptr; }
    const SmartFolderReference* smartFolder() const {
        return target.item ? target.item->smartFolder() : nullptr;
    }
    bool isBackground() const { return !target.item; }
    /// One tile and not a selection.
    bool isOne() const { return target.item && tiles.size() <= 1; }
    /// Tiles that lie where they are seen, by the user's own hand.
    bool isPlaced() const { return hasTile && !isComputed && !target.isSearchResult; }
    bool isUnavailable() const { return app() && layout.unavailableAppKeys().contains(appKey(*app())); }
    /// Of the tile, or of the smart folder whose background it is.
    const SmartFolderDefinition* definition() const {
        const SmartFolderLibrary& library = launcher.smartFolders();
        if (isBackground() && isComputed)
            return library.definition(*openFolder());
        return smartFolder() ? library.definition(smartFolder()->definitionID) : nullptr;
    }
    /// Whether a condition holds for every chosen tile.
    bool all(bool (*holds)(const LaunchpadItem&)) const {
        return !tiles.isEmpty() && std::ranges::all_of(tiles, [&](const QUuid& id) {
            const LaunchpadItem* item = layout.item(id);
            return item && holds(*item);
        });
    }
    std::optional<QUuid> openFolder() const {
        const auto& stack = layout.folderStack();
        return stack.isEmpty() || target.isSearchResult ? std::nullopt : std::optional(stack.last().id);
    }
};

bool isApp(const LaunchpadItem& item) { return item.app() != nullptr; }
bool isAlias(const LaunchpadItem& item) { return item.app() && item.app()->alias; }

Context contextOf(LauncherViewModel& launcher, const ActionTarget& target) {
    LiveLayout& layout = launcher.layout(target.mode);
    Context context{.launcher = launcher,
                    .layout = layout,
                    .target = target,
                    .isEditable = launcher.history().guard(target.mode).has_value()};
    if (const auto open = context.openFolder())
        context.isComputed = !layout.folder(*open);
    if (!target.item)
        return context;
    const QUuid id = target.item->id();
    context.hasTile = layout.item(id) != nullptr;
    const QSet<QUuid>& selected = layout.selectedItemIDs();
    if (!target.isSearchResult && selected.size() > 1 && selected.contains(id))
        context.tiles = layout.inOrder(selected);
    else if (context.hasTile)
        context.tiles = {id};
    return context;
}

using Outcome = std::expected<void, LauncherError>;

/// For what is told when it is done: a refusal is told to the user.
auto reporting(const Context& context) {
    return
        [&messages = context.launcher.messages()](const Outcome& outcome) { messages.report(outcome); };
}

// ---- places

QString placeText(const LayoutPlace& place) {
    return (place.folder ? toText(*place.folder) + u'/' : QString()) + QString::number(place.page);
}

/// Pages and folders that tiles can be put into: by their titles, with the place as the last word of
/// the identifier.
QList<MenuEntry> places(const Context& context, const QString& id, bool withOwn) {
    QList<MenuEntry> entries;
    const auto open = context.openFolder();
    const Pages& pages = context.layout.pages();
    const ShownPages& shown = context.layout.shownPages();
    for (qsizetype page = 0; page < shown.count() && entries.size() < maximumPlaces; ++page) {
        const auto stored = shown.tileAt({page, 0});
        const bool isOwn = !open && page == context.layout.currentPage();
        // Of a stored page that is shown as several, the first stands for all.
        const bool isAnother = page == 0 || shown.tileAt({page - 1, 0})->page != stored->page;
        if ((isOwn && !withOwn) || !isAnother)
            continue;
        entries.append(
            {.id = id + u':' + placeText({.folder = {}, .page = stored->page}),
             .title = isOwn ? QStringLiteral("This Page") : QStringLiteral("Page %1").arg(page + 1)});
    }
    entries.append({.id = id + u':' + placeText({.folder = {}, .page = pages.size()}),
                    .title = QStringLiteral("New Page")});
    bool isFirst = true;
    forEachItem(pages, [&](const LaunchpadItem& item) {
        const FolderEntry* folder = item.folder();
        if (!folder || context.tiles.contains(folder->id) || (folder->id == open && !withOwn))
            return true;
        if (std::exchange(isFirst, false))
            entries.append(MenuEntry());
        const qsizetype last = std::max<qsizetype>(folder->pages.size() - 1, 0);
        entries.append(
            {.id = id + u':' + placeText({.folder = folder->id, .page = last}), .title = folder->name});
        return entries.size() < maximumPlaces;
    });
    return entries;
}

// ---- what entries do

using Perform = ActionRequest (*)(const Context&, const QString& argument);

ActionRequest open(const Context& context, const QString&) {
    context.launcher.open(context.mode(), *context.target.item);
    return ActionRequest::none;
}

/// Asks first; `work` is done after a yes, and a refusal of it told.
void confirm(const Context& context, LauncherQuestion question, std::function<Outcome()> work) {
    question.isDestructive = true;
    context.launcher.messages().ask(question,
                                    [told = reporting(context), work = std::move(work)](bool accepted) {
                                        if (accepted)
                                            told(work());
                                    });
}

ActionRequest reset(const Context& context, const QString&) {
    confirm(
        context,
        {.title = QStringLiteral("Reset the Launchpad layout?"),
         .text = QStringLiteral("Restores the default alphabetical layout and removes all folders, "
                                "custom ordering, and hidden apps."),
         .accept = QStringLiteral("Reset")},
        [&archive = context.launcher.archive(), mode = context.mode()] { return archive.reset(mode); });
    return ActionRequest::none;
}

ActionRequest deleteSmartFolder(const Context& context, const QString&) {
    const QUuid id = context.smartFolder()->definitionID;
    confirm(context,
            {.title = QStringLiteral("Delete “%1”?").arg(context.launcher.smartFolders().name(id)),
             .text = QStringLiteral("This deletes its shared rules and removes the Smart Folder from "
                                    "both launcher modes. The apps themselves are not changed."),
             .accept = QStringLiteral("Delete")},
            [&editor = context.launcher.editor(), mode = context.mode(), id] {
                return editor.deleteSmartFolder(mode, id);
            });
    return ActionRequest::none;
}

ActionRequest editSmartFolder(const Context& context, const QString&) {
    if (const SmartFolderDefinition* definition = context.definition())
        context.launcher.smartFolderEditing().open(context.mode(), *definition);
    else
        context.launcher.smartFolderEditing().openNew(context.mode());
    return ActionRequest::rules;
}

ActionRequest selectAll(const Context& context, const QString&) {
    LiveLayout& layout = context.layout;
    const auto open = layout.openFolder();
    const int page = open ? layout.folderStack().last().page : layout.currentPage();
    QList<QUuid> tiles;
    for (const LaunchpadItem& item :
         (open ? layout.shownPages(*open) : layout.shownPages()).tiles(page))
        tiles.append(item.id());
    layout.select(tiles);
    return ActionRequest::none;
}

template <typename Edit>
ActionRequest edit(const Context& context, Edit change) {
    context.launcher.messages().report(change(context.launcher.editor()));
    return ActionRequest::none;
}

ActionRequest sortPage(const Context& context, const QString&) {
    const LiveLayout& layout = context.layout;
    const auto open = context.openFolder();
    const FolderEntry* folder = open ? layout.folder(*open) : nullptr;
    const ShownPages shown = folder ? layout.shownPages(*folder) : layout.shownPages();
    const int page = folder ? layout.folderStack().last().page : layout.currentPage();
    if (const auto stored = shown.tileAt({page, 0}))
        return edit(context, [&](LauncherEditor& editor) {
            return editor.sortPage(context.mode(), open, stored->page);
        });
    return ActionRequest::none;
}

// ---- the table

struct Row {
    const char* id; ///< nothing: a line between groups
    QString (*title)(const Context&);
    bool (*applies)(const Context&);
    bool (*isEnabled)(const Context&) = nullptr; ///< always without
    Perform perform = nullptr;                   ///< nothing for what is only said, and for submenus
    bool isDestructive = false;
    QList<MenuEntry> (*entries)(const Context&, const QString& id) = nullptr;
    const char* shortcut = nullptr; ///< as QKeySequence reads it
    bool isInMenu = true;
};

bool isEditable(const Context& context) { return context.isEditable; }
bool isBackground(const Context& context) { return context.isBackground(); }
bool hasWritableRules(const Context& context) {
    return context.isEditable && context.launcher.smartFolders().isWritable();
}

QString updateStatus(const Context& context) {
    return context.app() ? context.launcher.updates().statusText(appKey(*context.app())) : QString();
}

/// A title that is always the same.
template <json::Name text>
QString always(const Context&) {
    return QString::fromUtf8(text.text);
}

QList<MenuEntry> templateEntries(const Context&, const QString& id) {
    QList<MenuEntry> entries;
    for (const auto& [which, name] : json::RawValues<SmartFolderTemplate>::values)
        entries.append({.id = id + u':' + QLatin1StringView(name), .title = templateName(which)});
    return entries;
}

QList<MenuEntry> hiddenEntries(const Context& context, const QString& id) {
    QList<MenuEntry> entries;
    for (const QString& key : context.layout.hiddenKeys()) {
        const AppEntry* app = context.launcher.applications().withKey(key);
        entries.append({.id = id + u':' + key, .title = app ? app->name : key});
    }
    std::ranges::sort(entries, {}, [](const MenuEntry& entry) { return entry.title.toCaseFolded(); });
    return entries;
}

const std::array rows = std::to_array<Row>({
    // What a tile that cannot be used says of itself.
    {"unavailable", [](const Context&) { return LiveLayout::unavailableNotice(); },
     [](const Context& c) { return c.isOne() && c.isUnavailable(); },
     [](const Context&) { return false; }},
    {"smartFolderNotice",
     [](const Context& c) {
         return c.launcher.smartFolders().notice(c.smartFolder()->definitionID, c.mode());
     },
     [](const Context& c) {
         return c.isOne() && c.smartFolder() &&
                !c.launcher.smartFolders().notice(c.smartFolder()->definitionID, c.mode()).isEmpty();
     },
     [](const Context&) { return false; }},
    {},
    {"open", always<"Open">, [](const Context& c) { return c.isOne(); },
     [](const Context& c) { return !c.isUnavailable(); }, open},
    {},
    {"updateStatus", [](const Context& c) { return updateStatus(c); },
     [](const Context& c) { return c.isOne() && !updateStatus(c).isEmpty(); },
     [](const Context&) { return false; }},
    {"update", [](const Context& c) { return c.launcher.updates().actionLabel(appKey(*c.app())); },
     [](const Context& c) {
         return c.isOne() && !updateStatus(c).isEmpty() &&
                c.launcher.updates().actionKind(appKey(*c.app()));
     },
     [](const Context& c) { return !c.launcher.updates().activeAppKey(); },
     [](const Context& c, const QString&) {
         c.launcher.updates().run(appKey(*c.app()));
         return ActionRequest::none;
     }},
    {},
    {"rename", always<"Rename…">,
     [](const Context& c) { return c.isOne() && c.hasTile && (!c.smartFolder() || c.definition()); },
     [](const Context& c) { return c.smartFolder() ? hasWritableRules(c) : c.isEditable; },
     [](const Context&, const QString&) { return ActionRequest::rename; }, false, nullptr, "F2"},
    {"editSmartFolder", always<"Edit Smart Folder…">,
     [](const Context& c) { return (c.isOne() || c.isBackground()) && c.definition(); },
     hasWritableRules, editSmartFolder},
    {"revertName", always<"Revert Name">,
     [](const Context& c) {
         return c.isOne() && c.hasTile && c.app() && c.app()->name != c.app()->originalName;
     },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.revertAppName(c.mode(), c.tiles.first()); });
     }},
    {"changeIcon", always<"Change Icon…">,
     [](const Context& c) { return c.isOne() && c.app() && c.hasTile; }, nullptr,
     [](const Context&, const QString&) { return ActionRequest::icon; }},
    {"removeIcon", always<"Remove Custom Icon">,
     [](const Context& c) { return c.isOne() && c.app() && c.launcher.icons().has(appKey(*c.app())); },
     nullptr,
     [](const Context& c, const QString&) {
         c.launcher.icons().remove(appKey(*c.app()), reporting(c));
         return ActionRequest::none;
     }},
    {},
    {"cut", always<"Cut">, [](const Context& c) { return c.isPlaced(); }, isEditable,
     [](const Context& c, const QString&) {
         c.launcher.clipboard().cut(c.mode(), c.tiles);
         return ActionRequest::none;
     },
     false, nullptr, "Ctrl+X"},
    {"copy", always<"Copy">, [](const Context& c) { return c.hasTile; }, nullptr,
     [](const Context& c, const QString&) {
         c.launcher.clipboard().copy(c.mode(), c.tiles);
         return ActionRequest::none;
     },
     false, nullptr, "Ctrl+C"},
    {"paste", always<"Paste">,
     [](const Context& c) { return (c.isPlaced() || c.isBackground()) && !c.isComputed; },
     [](const Context& c) { return c.isEditable && c.launcher.clipboard().hasTiles(); },
     [](const Context& c, const QString&) {
         if (c.target.item)
             c.layout.select(c.tiles);
         c.launcher.clipboard().paste(c.mode());
         return ActionRequest::none;
     },
     false, nullptr, "Ctrl+V"},
    {},
    {"moveTo", always<"Move to">, [](const Context& c) { return c.isPlaced(); }, isEditable,
     [](const Context& c, const QString& argument) {
         const auto place = LayoutPlace::fromText(argument);
         return !place ? ActionRequest::none : edit(c, [&](LauncherEditor& e) {
             return e.moveTiles(c.mode(), c.tiles, *place);
         });
     },
     false, [](const Context& c, const QString& id) { return places(c, id, false); }},
    {"createAlias", always<"Create Alias in…">,
     [](const Context& c) { return c.isOne() && c.hasTile && c.app(); }, isEditable,
     [](const Context& c, const QString& argument) {
         const auto place = LayoutPlace::fromText(argument);
         return !place ? ActionRequest::none : edit(c, [&](LauncherEditor& e) {
             return e.createAlias(c.mode(), c.tiles.first(), *place);
         });
     },
     false, [](const Context& c, const QString& id) { return places(c, id, true); }},
    {"removeAlias",
     [](const Context& c) {
         if (c.tiles.size() > 1)
             return editName(EditKind::removeAlias, c.tiles.size());
         const AppEntry* app = c.launcher.applications().withKey(c.app()->alias->appKey);
         return QStringLiteral("Remove alias to %1").arg(app ? app->name : c.app()->name);
     },
     [](const Context& c) { return c.isPlaced() && c.all(isAlias); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.removeAliases(c.mode(), c.tiles); });
     }},
    {"ungroup", always<"Ungroup">, [](const Context& c) { return c.isOne() && c.folder(); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.ungroupFolder(c.mode(), c.tiles.first()); });
     }},
    {"hide", always<"Hide">,
     [](const Context& c) {
         return c.all(isApp) && (!c.app() || !c.layout.hiddenKeys().contains(appKey(*c.app())));
     },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.hideApps(c.mode(), c.tiles); });
     }},
    {"show", always<"Unhide">,
     [](const Context& c) { return c.app() && c.layout.hiddenKeys().contains(appKey(*c.app())); },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.unhideApp(c.mode(), appKey(*c.app())); });
     }},
    {},
    {"deleteSmartFolder", always<"Delete…">,
     [](const Context& c) { return c.isOne() && c.definition(); }, hasWritableRules, deleteSmartFolder,
     true},
    {"moveToTrash", always<"Move to Trash…">,
     [](const Context& c) { return c.isOne() && c.app() && !c.isUnavailable(); },
     [](const Context& c) {
         return c.isEditable && !c.launcher.cleanup().isMoving() &&
                !InstalledApplications::protection(*c.app());
     },
     [](const Context& c, const QString&) {
         c.launcher.cleanup().open(appKey(*c.app()), reporting(c));
         return ActionRequest::none;
     },
     true},

    // The background.
    {"undo",
     [](const Context& c) {
         const LayoutUndoEntry* next = c.launcher.history().steps().nextUndo(c.mode()).entry;
         return next ? QStringLiteral("Undo %1").arg(next->name) : QStringLiteral("Undo");
     },
     isBackground,
     [](const Context& c) { return c.launcher.history().steps().nextUndo(c.mode()).entry != nullptr; },
     [](const Context& c, const QString&) {
         c.launcher.history().undo(c.mode(), reporting(c));
         return ActionRequest::none;
     },
     false, nullptr, "Ctrl+Z"},
    {"redo",
     [](const Context& c) {
         const LayoutUndoEntry* next = c.launcher.history().steps().nextRedo(c.mode()).entry;
         return next ? QStringLiteral("Redo %1").arg(next->name) : QStringLiteral("Redo");
     },
     isBackground,
     [](const Context& c) { return c.launcher.history().steps().nextRedo(c.mode()).entry != nullptr; },
     [](const Context& c, const QString&) {
         c.launcher.history().redo(c.mode(), reporting(c));
         return ActionRequest::none;
     },
     false, nullptr, "Ctrl+Shift+Z"},
    {"selectAll", always<"Select All">, isBackground, nullptr, selectAll, false, nullptr, "Ctrl+A",
     false},
    {},
    {"smartFoldersUnavailable", always<"Smart Folders are unavailable">,
     [](const Context& c) { return c.isBackground() && !c.launcher.smartFolders().isWritable(); },
     [](const Context&) { return false; }},
    {"newSmartFolder", always<"New Smart Folder…">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, hasWritableRules,
     editSmartFolder},
    {"newFromTemplate", always<"New Smart Folder from Template">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, hasWritableRules,
     [](const Context& c, const QString& argument) {
         const auto which = json::fromRawValue<SmartFolderTemplate>(argument);
         return !which ? ActionRequest::none
                       : edit(c, [&](LauncherEditor& e) { return e.addSmartFolder(c.mode(), *which); });
     },
     false, templateEntries},
    {"unhide", always<"Unhide">,
     [](const Context& c) {
         return c.isBackground() && !c.openFolder() && !c.layout.hiddenKeys().isEmpty();
     },
     isEditable,
     [](const Context& c, const QString& key) {
         return edit(c, [&](LauncherEditor& e) { return e.unhideApp(c.mode(), key); });
     },
     false, hiddenEntries},
    {},
    {"sortPage", always<"Sort Page by Name">,
     [](const Context& c) { return c.isBackground() && !c.isComputed; }, isEditable, sortPage},
    {"sortEverything", always<"Sort All Pages by Name">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.sortEverything(c.mode()); });
     }},
    {},
    {"updates", [](const Context&) { return update_texts::checkNow; },
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, nullptr,
     [](const Context& c, const QString&) {
         if (c.launcher.updates().isEnabled())
             c.launcher.updates().checkNow();
         return ActionRequest::updates;
     }},
    {"pastRemovals", always<"Past Removals…">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, nullptr,
     [](const Context&, const QString&) { return ActionRequest::pastRemovals; }},
    {},
    {"mode",
     [](const Context& c) {
         return c.mode() == LauncherWindowMode::fullScreen ? QStringLiteral("Show in a Window")
                                                           : QStringLiteral("Show in Full Screen");
     },
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, nullptr,
     [](const Context& c, const QString&) {
         c.launcher.layouts().show(otherMode(c.mode()));
         return ActionRequest::none;
     }},
    {"importLaunchpad", always<"Import Old Launchpad…">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); },
     [](const Context& c) { return c.isEditable && !c.launcher.launchpadImport().isRunning(); },
     [](const Context& c, const QString&) {
         c.launcher.launchpadImport().offer(c.mode());
         return ActionRequest::none;
     }},
    {"backups", always<"Backups…">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); },
     [](const Context& c) { return c.launcher.isBootstrapped(); },
     [](const Context&, const QString&) { return ActionRequest::backups; }},
    {"resetLayout", always<"Reset Layout…">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); },
     [](const Context& c) { return c.launcher.isBootstrapped(); }, reset, true},
});

bool isEnabled(const Row& row, const Context& context) {
    return !row.isEnabled || row.isEnabled(context);
}

} // namespace

QList<MenuEntry> actionMenu(LauncherViewModel& launcher, const ActionTarget& target) {
    const Context context = contextOf(launcher, target);
    QList<MenuEntry> menu;
    bool isGroupDue = false;
    for (const Row& row : rows) {
        if (!row.id) {
            isGroupDue = true;
            continue;
        }
        if (!row.isInMenu || !row.applies(context))
            continue;
        if (std::exchange(isGroupDue, false) && !menu.isEmpty())
            menu.append(MenuEntry());
        const QString id = QLatin1StringView(row.id);
        menu.append({.id = id,
                     .title = row.title(context),
                     .isEnabled = isEnabled(row, context),
                     .isDestructive = row.isDestructive,
                     .entries = row.entries ? row.entries(context, id) : QList<MenuEntry>(),
                     .shortcut = QLatin1StringView(row.shortcut)});
    }
    return menu;
}

std::optional<ActionRequest> performAction(LauncherViewModel& launcher, const ActionTarget& target,
                                           const QString& id) {
    const Context context = contextOf(launcher, target);
    const qsizetype colon = id.indexOf(u':');
    const QStringView name = QStringView(id).first(colon < 0 ? id.size() : colon);
    for (const Row& row : rows)
        if (row.id && name == QLatin1StringView(row.id) && row.perform && row.applies(context) &&
            isEnabled(row, context))
            return row.perform(context, colon < 0 ? QString() : id.mid(colon + 1));
    return std::nullopt;
}

// ---- keys

/// The shortcut that a key with its modifiers is, as the table writes it.
static QString shortcutText(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (key == Qt::Key_Y && modifiers == Qt::ControlModifier) // as other desktops have it
        return QStringLiteral("Ctrl+Shift+Z");
    QString text = modifiers & Qt::ControlModifier ? QStringLiteral("Ctrl+") : QString();
    if (modifiers & Qt::ShiftModifier)
        text += QStringLiteral("Shift+");
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return text + u'F' + QString::number(key - Qt::Key_F1 + 1);
    return key >= Qt::Key_A && key <= Qt::Key_Z ? text + QChar(ushort(key)) : QString();
}

std::optional<ActionRequest> performShortcut(LauncherViewModel& launcher, LauncherWindowMode mode,
                                             Qt::Key key, Qt::KeyboardModifiers modifiers) {
    const QString shortcut = shortcutText(key, modifiers);
    const auto row = std::ranges::find_if(rows, [&](const Row& candidate) {
        return candidate.shortcut && shortcut == QLatin1StringView(candidate.shortcut);
    });
    if (row == rows.end())
        return std::nullopt;
    const LiveLayout& layout = launcher.layout(mode);
    ActionTarget target{.mode = mode};
    if (const auto& selected = layout.selectedItemID())
        if (const LaunchpadItem* item = layout.item(*selected))
            target.item = *item;
    const QString id = QLatin1StringView(row->id);
    const auto done = performAction(launcher, target, id);
    return done || !target.item ? done : performAction(launcher, {.mode = mode}, id);
}

} // namespace tessellar
