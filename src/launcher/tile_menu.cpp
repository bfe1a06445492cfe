#include "launcher/tile_menu.h"

#include "launcher/launcher_icons.h"
#include "launcher/launcher_import.h"
#include "launcher/smart_folder_editing.h"
#include "smartfolders/smart_folder_raw_values.h"

#include <algorithm>

namespace tessellar {
namespace {

/// More places than anybody reads are not listed; tiles can still be dragged there.
constexpr qsizetype maximumPlaces = 60;

struct Context {
    LauncherViewModel& launcher;
    const MenuTarget& target;
    QList<QUuid> tiles; ///< the tile, or the selection that it belongs to
    bool hasTile = false;
    bool isComputed = false; ///< in an open smart folder, whose rules decide what is in it
    bool isEditable = false;

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
    bool isUnavailable() const {
        return app() && launcher.unavailableAppKeys().contains(appKey(*app()));
    }
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
            const LaunchpadItem* item = launcher.item(id);
            return item && holds(*item);
        });
    }
    std::optional<QUuid> openFolder() const {
        const auto& stack = launcher.folderStack();
        return stack.isEmpty() || target.isSearchResult ? std::nullopt : std::optional(stack.last().id);
    }
};

bool isApp(const LaunchpadItem& item) { return item.app() != nullptr; }
bool isAlias(const LaunchpadItem& item) { return item.app() && item.app()->alias; }

Context contextOf(LauncherViewModel& launcher, const MenuTarget& target) {
    Context context{launcher, target, {}, false, false, launcher.editGuard().has_value()};
    if (const auto open = context.openFolder())
        context.isComputed = !launcher.folder(*open);
    if (!target.item)
        return context;
    const QUuid id = target.item->id();
    context.hasTile = launcher.item(id) != nullptr;
    const QSet<QUuid>& selected = launcher.selectedItemIDs();
    if (!target.isSearchResult && selected.size() > 1 && selected.contains(id)) {
        // In the order of the arrangement, not of a set.
        forEachItem(launcher.pages(), [&](const LaunchpadItem& item) {
            if (selected.contains(item.id()))
                context.tiles.append(item.id());
            return true;
        });
    } else if (context.hasTile) {
        context.tiles = {id};
    }
    return context;
}

void report(const Context& context, const LauncherViewModel::Outcome& outcome) {
    if (!outcome)
        context.launcher.report(outcome.error());
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
    const Pages& pages = context.launcher.pages();
    const ShownPages shown = context.launcher.shownPages();
    for (qsizetype page = 0; page < shown.count() && entries.size() < maximumPlaces; ++page) {
        const auto stored = shown.tileAt({page, 0});
        const bool isOwn = !open && page == context.launcher.currentPage();
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

using Perform = MenuRequest (*)(const Context&, const QString& argument);

MenuRequest open(const Context& context, const QString&) {
    if (const AppEntry* app = context.app())
        context.launcher.launch(appKey(*app));
    else
        context.launcher.openFolder(context.target.item->id());
    return MenuRequest::none;
}

MenuRequest reset(const Context& context, const QString&) {
    context.launcher.ask(
        {.title = QStringLiteral("Reset the Launchpad layout?"),
         .text = QStringLiteral("Restores the default alphabetical layout and removes all folders, "
                                "custom ordering, and hidden apps."),
         .accept = QStringLiteral("Reset"),
         .isDestructive = true},
        [&launcher = context.launcher](bool accepted) {
            if (!accepted)
                return;
            if (const auto done = launcher.resetLayout(); !done)
                launcher.report(done.error());
        });
    return MenuRequest::none;
}

MenuRequest deleteSmartFolder(const Context& context, const QString&) {
    const QUuid id = context.smartFolder()->definitionID;
    context.launcher.ask(
        {.title = QStringLiteral("Delete “%1”?").arg(context.launcher.smartFolders().name(id)),
         .text = QStringLiteral("This deletes its shared rules and removes the Smart Folder from both "
                                "launcher modes. The apps themselves are not changed."),
         .accept = QStringLiteral("Delete"),
         .isDestructive = true},
        [&launcher = context.launcher, id](bool accepted) {
            if (!accepted)
                return;
            if (const auto done = launcher.editor().deleteSmartFolder(id); !done)
                launcher.report(done.error());
        });
    return MenuRequest::none;
}

MenuRequest editSmartFolder(const Context& context, const QString&) {
    if (const SmartFolderDefinition* definition = context.definition())
        context.launcher.smartFolderEditing().open(*definition);
    else
        context.launcher.smartFolderEditing().openNew();
    return MenuRequest::rules;
}

MenuRequest sortPage(const Context& context, const QString&) {
    LauncherViewModel& launcher = context.launcher;
    const auto open = context.openFolder();
    const FolderEntry* folder = open ? launcher.folder(*open) : nullptr;
    const ShownPages shown = folder ? launcher.shownPages(*folder) : launcher.shownPages();
    const int page = folder ? launcher.folderStack().last().page : launcher.currentPage();
    if (const auto stored = shown.tileAt({page, 0}))
        report(context, launcher.editor().sortPage(open, stored->page));
    return MenuRequest::none;
}

template <typename Edit>
MenuRequest edit(const Context& context, Edit change) {
    report(context, change(context.launcher.editor()));
    return MenuRequest::none;
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
    for (const QString& key : context.launcher.hiddenKeys()) {
        const AppEntry* app = context.launcher.application(key);
        entries.append({.id = id + u':' + key, .title = app ? app->name : key});
    }
    std::ranges::sort(entries, {}, [](const MenuEntry& entry) { return entry.title.toCaseFolded(); });
    return entries;
}

const std::array rows = std::to_array<Row>({
    // What a tile that cannot be used says of itself.
    {"unavailable", [](const Context&) { return LauncherViewModel::unavailableNotice(); },
     [](const Context& c) { return c.isOne() && c.isUnavailable(); },
     [](const Context&) { return false; }},
    {"smartFolderNotice",
     [](const Context& c) { return c.launcher.smartFolders().notice(c.smartFolder()->definitionID); },
     [](const Context& c) {
         return c.isOne() && c.smartFolder() &&
                !c.launcher.smartFolders().notice(c.smartFolder()->definitionID).isEmpty();
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
         return MenuRequest::none;
     }},
    {},
    {"rename", always<"Rename…">,
     [](const Context& c) { return c.isOne() && c.hasTile && (!c.smartFolder() || c.definition()); },
     [](const Context& c) { return c.smartFolder() ? hasWritableRules(c) : c.isEditable; },
     [](const Context&, const QString&) { return MenuRequest::rename; }},
    {"editSmartFolder", always<"Edit Smart Folder…">,
     [](const Context& c) { return (c.isOne() || c.isBackground()) && c.definition(); },
     hasWritableRules, editSmartFolder},
    {"revertName", always<"Revert Name">,
     [](const Context& c) {
         return c.isOne() && c.hasTile && c.app() && c.app()->name != c.app()->originalName;
     },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.revertAppName(c.tiles.first()); });
     }},
    {"changeIcon", always<"Change Icon…">,
     [](const Context& c) { return c.isOne() && c.app() && c.hasTile; }, nullptr,
     [](const Context&, const QString&) { return MenuRequest::icon; }},
    {"removeIcon", always<"Remove Custom Icon">,
     [](const Context& c) { return c.isOne() && c.app() && c.launcher.icons().has(appKey(*c.app())); },
     nullptr,
     [](const Context& c, const QString&) {
         c.launcher.icons().remove(appKey(*c.app()),
                                   [&l = c.launcher](const LauncherIcons::Outcome& o) {
                                       if (!o)
                                           l.report(o.error());
                                   });
         return MenuRequest::none;
     }},
    {},
    {"cut", always<"Cut">, [](const Context& c) { return c.isPlaced(); }, isEditable,
     [](const Context& c, const QString&) {
         c.launcher.editor().cut(c.tiles);
         return MenuRequest::none;
     }},
    {"copy", always<"Copy">, [](const Context& c) { return c.hasTile; }, nullptr,
     [](const Context& c, const QString&) {
         c.launcher.editor().copy(c.tiles);
         return MenuRequest::none;
     }},
    {"paste", always<"Paste">,
     [](const Context& c) { return (c.isPlaced() || c.isBackground()) && !c.isComputed; },
     [](const Context& c) { return c.isEditable && c.launcher.editor().hasTilesToPaste(); },
     [](const Context& c, const QString&) {
         if (c.target.item)
             c.launcher.editor().select(c.tiles);
         c.launcher.editor().paste();
         return MenuRequest::none;
     }},
    {},
    {"moveTo", always<"Move to">, [](const Context& c) { return c.isPlaced(); }, isEditable,
     [](const Context& c, const QString& argument) {
         const auto place = LayoutPlace::fromText(argument);
         return !place ? MenuRequest::none
                       : edit(c, [&](LauncherEditor& e) { return e.moveTiles(c.tiles, *place); });
     },
     false, [](const Context& c, const QString& id) { return places(c, id, false); }},
    {"createAlias", always<"Create Alias in…">,
     [](const Context& c) { return c.isOne() && c.hasTile && c.app(); }, isEditable,
     [](const Context& c, const QString& argument) {
         const auto place = LayoutPlace::fromText(argument);
         return !place ? MenuRequest::none : edit(c, [&](LauncherEditor& e) {
             return e.createAlias(c.tiles.first(), *place);
         });
     },
     false, [](const Context& c, const QString& id) { return places(c, id, true); }},
    {"removeAlias",
     [](const Context& c) {
         if (c.tiles.size() > 1)
             return editName(EditKind::removeAlias, c.tiles.size());
         const AppEntry* app = c.launcher.application(c.app()->alias->appKey);
         return QStringLiteral("Remove alias to %1").arg(app ? app->name : c.app()->name);
     },
     [](const Context& c) { return c.isPlaced() && c.all(isAlias); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.removeAliases(c.tiles); });
     }},
    {"ungroup", always<"Ungroup">, [](const Context& c) { return c.isOne() && c.folder(); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.ungroupFolder(c.tiles.first()); });
     }},
    {"hide", always<"Hide">,
     [](const Context& c) {
         return c.all(isApp) && (!c.app() || !c.launcher.hiddenKeys().contains(appKey(*c.app())));
     },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.hideApps(c.tiles); });
     }},
    {"show", always<"Unhide">,
     [](const Context& c) { return c.app() && c.launcher.hiddenKeys().contains(appKey(*c.app())); },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.unhideApp(appKey(*c.app())); });
     }},
    {},
    {"deleteSmartFolder", always<"Delete…">,
     [](const Context& c) { return c.isOne() && c.definition(); }, hasWritableRules, deleteSmartFolder,
     true},
    {"moveToTrash", always<"Move to Trash…">,
     [](const Context& c) { return c.isOne() && c.app() && !c.isUnavailable(); },
     [](const Context& c) {
         return c.isEditable && !c.launcher.cleanup().isMoving() &&
                !c.app()->path.startsWith(u"/System/");
     },
     [](const Context& c, const QString&) {
         c.launcher.cleanup().open(appKey(*c.app()),
                                   [&l = c.launcher](const LauncherCleanup::Outcome& o) {
                                       if (!o)
                                           l.report(o.error());
                                   });
         return MenuRequest::none;
     },
     true},

    // The background.
    {"undo",
     [](const Context& c) {
         const auto& stack = c.launcher.editor().history().undoStack();
         return stack.isEmpty() ? QStringLiteral("Undo")
                                : QStringLiteral("Undo %1").arg(stack.last().name);
     },
     isBackground, [](const Context& c) { return c.launcher.editor().history().canUndo(); },
     [](const Context& c, const QString&) {
         c.launcher.editor().undo([&l = c.launcher](const LauncherEditor::Outcome& o) {
             if (!o)
                 l.report(o.error());
         });
         return MenuRequest::none;
     }},
    {"redo",
     [](const Context& c) {
         const auto& stack = c.launcher.editor().history().redoStack();
         return stack.isEmpty() ? QStringLiteral("Redo")
                                : QStringLiteral("Redo %1").arg(stack.last().name);
     },
     isBackground, [](const Context& c) { return c.launcher.editor().history().canRedo(); },
     [](const Context& c, const QString&) {
         c.launcher.editor().redo([&l = c.launcher](const LauncherEditor::Outcome& o) {
             if (!o)
                 l.report(o.error());
         });
         return MenuRequest::none;
     }},
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
         return !which ? MenuRequest::none
                       : edit(c, [&](LauncherEditor& e) { return e.addSmartFolder(*which); });
     },
     false, templateEntries},
    {"unhide", always<"Unhide">,
     [](const Context& c) {
         return c.isBackground() && !c.openFolder() && !c.launcher.hiddenKeys().isEmpty();
     },
     isEditable,
     [](const Context& c, const QString& key) {
         return edit(c, [&](LauncherEditor& e) { return e.unhideApp(key); });
     },
     false, hiddenEntries},
    {},
    {"sortPage", always<"Sort Page by Name">,
     [](const Context& c) { return c.isBackground() && !c.isComputed; }, isEditable, sortPage},
    {"sortEverything", always<"Sort All Pages by Name">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [](LauncherEditor& e) { return e.sortEverything(); });
     }},
    {},
    {"updates", [](const Context&) { return update_texts::checkNow; },
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, nullptr,
     [](const Context& c, const QString&) {
         if (c.launcher.updates().isEnabled())
             c.launcher.updates().checkNow();
         return MenuRequest::updates;
     }},
    {},
    {"mode",
     [](const Context& c) {
         return c.launcher.mode() == LauncherWindowMode::fullScreen
                    ? QStringLiteral("Show in a Window")
                    : QStringLiteral("Show in Full Screen");
     },
     [](const Context& c) { return c.isBackground() && !c.openFolder(); }, nullptr,
     [](const Context& c, const QString&) {
         c.launcher.setMode(otherMode(c.launcher.mode()));
         return MenuRequest::none;
     }},
    {"importLaunchpad", always<"Import Old Launchpad…">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); },
     [](const Context& c) { return c.isEditable && !c.launcher.launchpadImport().isRunning(); },
     [](const Context& c, const QString&) {
         c.launcher.launchpadImport().offer();
         return MenuRequest::none;
     }},
    {"resetLayout", always<"Reset Layout…">,
     [](const Context& c) { return c.isBackground() && !c.openFolder(); },
     [](const Context& c) { return c.launcher.isBootstrapped(); }, reset, true},
});

bool isEnabled(const Row& row, const Context& context) {
    return !row.isEnabled || row.isEnabled(context);
}

} // namespace

QList<MenuEntry> tileMenu(LauncherViewModel& launcher, const MenuTarget& target) {
    const Context context = contextOf(launcher, target);
    QList<MenuEntry> menu;
    bool isGroupDue = false;
    for (const Row& row : rows) {
        if (!row.id) {
            isGroupDue = true;
            continue;
        }
        if (!row.applies(context))
            continue;
        if (std::exchange(isGroupDue, false) && !menu.isEmpty())
            menu.append(MenuEntry());
        const QString id = QLatin1StringView(row.id);
        menu.append({.id = id,
                     .title = row.title(context),
                     .isEnabled = isEnabled(row, context),
                     .isDestructive = row.isDestructive,
                     .entries = row.entries ? row.entries(context, id) : QList<MenuEntry>()});
    }
    return menu;
}

MenuRequest performMenuEntry(LauncherViewModel& launcher, const MenuTarget& target, const QString& id) {
    const Context context = contextOf(launcher, target);
    const qsizetype colon = id.indexOf(u':');
    const QStringView name = QStringView(id).first(colon < 0 ? id.size() : colon);
    for (const Row& row : rows)
        if (row.id && name == QLatin1StringView(row.id) && row.perform && row.applies(context) &&
            isEnabled(row, context))
            return row.perform(context, colon < 0 ? QString() : id.mid(colon + 1));
    return MenuRequest::none;
}

} // namespace tessellar
