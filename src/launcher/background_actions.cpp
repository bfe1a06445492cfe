#include "launcher/action_parts.h"

#include "launcher/launcher_history.h"
#include "launcher/launcher_import.h"
#include "launcher/launcher_updates.h"
#include "launcher/layout_archive.h"
#include "platform/texts.h"
#include "smartfolders/smart_folder_raw_values.h"

namespace tessellar {
namespace {

using Context = ActionContext;

// ---- the actions

ActionRequest reset(const Context& context, const QString&) {
    confirm(
        context,
        {.title = LayoutArchive::resetTitle(),
         .text = Texts::tr("Restores the default alphabetical layout and removes all folders, "
                           "custom ordering, and hidden apps."),
         .accept = Texts::tr("Reset")},
        [&archive = context.launcher.archive(), mode = context.mode()] { return archive.reset(mode); });
    return ActionRequest::none;
}

ActionRequest selectAll(const Context& context, const QString&) {
    LiveLayout& layout = context.layout;
    const auto open = layout.navigation().openFolder();
    const int page =
        open ? layout.navigation().folderStack().last().page : layout.navigation().currentPage();
    QList<QUuid> tiles;
    for (const LaunchpadItem& item :
         (open ? layout.shownPages(*open) : layout.shownPages()).tiles(page))
        tiles.append(item.id());
    layout.navigation().select(tiles);
    return ActionRequest::none;
}

ActionRequest sortPage(const Context& context, const QString&) {
    const LiveLayout& layout = context.layout;
    const auto open = context.openFolder();
    const FolderEntry* folder = open ? layout.folder(*open) : nullptr;
    const ShownPages shown = folder ? layout.shownPages(*folder) : layout.shownPages();
    const int page =
        folder ? layout.navigation().folderStack().last().page : layout.navigation().currentPage();
    if (const auto stored = shown.tileAt({page, 0}))
        return edit(context, [&](LauncherEditor& editor) {
            return editor.sortPage(context.mode(), open, stored->page);
        });
    return ActionRequest::none;
}

bool isBackground(const Context& context) { return context.isBackground(); }
/// Excludes the background of an open folder.
bool isOfGrid(const Context& context) { return context.isBackground() && !context.openFolder(); }

// ---- smart folders

QList<MenuEntry> recoveryEntries(const Context&, const QString& id) {
    return {
        {.id = id + QStringLiteral(":restore"), .title = Texts::tr("Read the Preserved File Again")},
        {.id = id + QStringLiteral(":replace"),
         .title = Texts::tr("Begin without Smart Folders…"),
         .isDestructive = true}};
}

ActionRequest recoverSmartFolders(const Context& context, const QString& how) {
    SmartFolderLibrary& library = context.launcher.smartFolders();
    if (how == u"restore") {
        context.told(library.recover(SmartFolderRecovery::restore));
    } else if (how == u"replace") {
        confirm(context,
                {.title = Texts::tr("Begin without Smart Folders?"),
                 .text = SmartFolderLibrary::unavailableNotice() +
                         Texts::tr(" It stays where it was put. New Smart Folders can be made "
                                   "again; tiles of the old ones remain until they are removed."),
                 .accept = Texts::tr("Begin Anew")},
                [&library] { return library.recover(SmartFolderRecovery::replace); });
    }
    return ActionRequest::none;
}

/// Smart folders without a tile in this mode.
QList<MenuEntry> tilelessEntries(const Context& context, const QString& id) {
    QList<MenuEntry> entries;
    for (const SmartFolderDefinition& definition : context.launcher.smartFolders().definitions())
        if (!context.layout.item(definition.id))
            entries.append({.id = id + u':' + toText(definition.id), .title = definition.name});
    return entries;
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

// ---- the rows

constexpr std::array rows = std::to_array<ActionRow>({
    {"undo",
     [](const Context& c) {
         const LayoutUndoEntry* next = c.launcher.history().steps().nextUndo(c.mode()).entry;
         return next ? Texts::tr("Undo %1").arg(next->name) : Texts::tr("Undo");
     },
     isBackground,
     [](const Context& c) { return c.launcher.history().steps().nextUndo(c.mode()).entry != nullptr; },
     [](const Context& c, const QString&) {
         c.launcher.history().undo(c.mode(), c.told);
         return ActionRequest::underway;
     },
     false, nullptr, "Ctrl+Z"},
    {"redo",
     [](const Context& c) {
         const LayoutUndoEntry* next = c.launcher.history().steps().nextRedo(c.mode()).entry;
         return next ? Texts::tr("Redo %1").arg(next->name) : Texts::tr("Redo");
     },
     isBackground,
     [](const Context& c) { return c.launcher.history().steps().nextRedo(c.mode()).entry != nullptr; },
     [](const Context& c, const QString&) {
         c.launcher.history().redo(c.mode(), c.told);
         return ActionRequest::underway;
     },
     false, nullptr, "Ctrl+Shift+Z"},
    {"selectAll", Texts::noop("Select All"), isBackground, nullptr, selectAll, false, nullptr,
     "Ctrl+A"},
    {},
    {"smartFoldersUnavailable", Texts::noop("Smart Folders are unavailable"),
     [](const Context& c) { return c.isBackground() && !c.launcher.smartFolders().isWritable(); },
     nullptr, recoverSmartFolders, false, recoveryEntries},
    {"newSmartFolder", Texts::noop("New Smart Folder…"), isOfGrid, hasWritableRules, editSmartFolder},
    {"newFromTemplate", Texts::noop("New Smart Folder from Template"), isOfGrid, hasWritableRules,
     [](const Context& c, const QString& argument) {
         const auto which = json::fromRawValue<SmartFolderTemplate>(argument);
         return !which ? ActionRequest::none
                       : edit(c, [&](LauncherEditor& e) { return e.addSmartFolder(c.mode(), *which); });
     },
     false, templateEntries},
    {"showSmartFolder", Texts::noop("Existing Smart Folder"),
     [](const Context& c) { return isOfGrid(c) && !tilelessEntries(c, {}).isEmpty(); }, isEditable,
     [](const Context& c, const QString& id) {
         return edit(c, [&](LauncherEditor& e) {
             return e.addSmartFolderTile(c.mode(), QUuid::fromString(id));
         });
     },
     false, tilelessEntries},
    {"unhide", Texts::noop("Unhide"),
     [](const Context& c) { return isOfGrid(c) && !c.layout.hiddenKeys().isEmpty(); }, isEditable,
     [](const Context& c, const QString& key) {
         return edit(c, [&](LauncherEditor& e) { return e.unhideApp(c.mode(), key); });
     },
     false, hiddenEntries},
    {"unplaced", Texts::noop("Hidden and Remembered…"), isOfGrid,
     [](const Context& c) { return c.launcher.isBootstrapped(); },
     [](const Context&, const QString&) { return ActionRequest::unplaced; }},
    {},
    {"sortPage", Texts::noop("Sort Page by Name"),
     [](const Context& c) { return c.isBackground() && !c.isComputed; }, isEditable, sortPage},
    {"sortEverything", Texts::noop("Sort All Pages by Name"), isOfGrid, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.sortEverything(c.mode()); });
     }},
    {},
    {"updates", [](const Context&) { return update_texts::checkNow(); }, isOfGrid, nullptr,
     [](const Context& c, const QString&) {
         if (c.launcher.updates().isEnabled())
             c.launcher.updates().check();
         return ActionRequest::updates;
     }},
    {"pastRemovals", Texts::noop("Past Removals…"), isOfGrid, nullptr,
     [](const Context&, const QString&) { return ActionRequest::pastRemovals; }},
    {},
    {"settings", Texts::noop("Settings…"), isOfGrid, nullptr,
     [](const Context&, const QString&) { return ActionRequest::settings; }, false, nullptr, "Ctrl+,"},
    {"keys", Texts::noop("Keyboard Shortcuts"), isOfGrid, nullptr,
     [](const Context&, const QString&) { return ActionRequest::keys; }},
    {"mode",
     [](const Context& c) {
         return c.mode() == LauncherWindowMode::fullScreen ? Texts::tr("Show in a Window")
                                                           : Texts::tr("Show in Full Screen");
     },
     isOfGrid, nullptr,
     [](const Context& c, const QString&) {
         c.launcher.layouts().show(otherMode(c.mode()));
         return ActionRequest::none;
     }},
    {"importLaunchpad", Texts::noop("Import Old Launchpad…"), isOfGrid,
     [](const Context& c) { return c.isEditable && !c.launcher.launchpadImport().isRunning(); },
     [](const Context& c, const QString&) {
         c.launcher.launchpadImport().offer(c.mode());
         return ActionRequest::none;
     }},
    {"arrange", Texts::noop("Arrange Applications…"), isOfGrid, isEditable,
     [](const Context&, const QString&) { return ActionRequest::arranging; }},
    {"arrangements", Texts::noop("Saved Arrangements…"), isOfGrid,
     [](const Context& c) { return c.launcher.isBootstrapped(); },
     [](const Context&, const QString&) { return ActionRequest::arrangements; }},
    {"backups", Texts::noop("Backups…"), isOfGrid,
     [](const Context& c) { return c.launcher.isBootstrapped(); },
     [](const Context&, const QString&) { return ActionRequest::backups; }},
    {"resetLayout", Texts::noop("Reset Layout…"), isOfGrid,
     [](const Context& c) { return c.launcher.isBootstrapped(); }, reset, true},
});

} // namespace

std::span<const ActionRow> backgroundRows() { return rows; }

} // namespace tessellar
