#include "launcher/action_parts.h"

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_icons.h"
#include "launcher/launcher_updates.h"
#include "launcher/tile_opener.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

using Context = ActionContext;

bool isApp(const LaunchpadItem& item) { return item.app() != nullptr; }
bool isAlias(const LaunchpadItem& item) { return item.app() && item.app()->alias; }

// ---- the actions

ActionRequest open(const Context& context, const QString&) {
    if (const AppEntry* app = context.app()) {
        context.launcher.opener().launch(appKey(*app), context.told);
        return ActionRequest::underway;
    }
    context.launcher.opener().open(context.mode(), *context.target.item);
    return ActionRequest::none;
}

ActionRequest deleteSmartFolder(const Context& context, const QString&) {
    const QUuid id = context.smartFolder()->definitionID;
    confirm(context,
            {.title = Texts::tr("Delete “%1”?").arg(context.launcher.smartFolders().name(id)),
             .text = Texts::tr("This deletes its shared rules and removes the Smart Folder from "
                               "both launcher modes. The apps themselves are not changed."),
             .accept = Texts::tr("Delete")},
            [&editor = context.launcher.editor(), mode = context.mode(), id] {
                return editor.deleteSmartFolder(mode, id);
            });
    return ActionRequest::none;
}

ActionRequest showWhere(const Context& context, const QString&) {
    context.layout.reveal(context.target.item->id());
    return ActionRequest::whereabouts;
}

/// The first application among the tiles stays in place and becomes the folder.
ActionRequest group(const Context& context, const QString&) {
    QList<QUuid> tiles = context.tiles;
    const QUuid target = tiles.takeFirst();
    return edit(context, [&](LauncherEditor& editor) {
        return editor.groupTiles(context.mode(), tiles, target);
    });
}

ActionRequest clipboard(bool isDone) { return isDone ? ActionRequest::none : ActionRequest::refused; }

// ---- updates

QString updateStatus(const Context& context) {
    if (!context.app())
        return {};
    const AppUpdateView update = context.launcher.updates().of(appKey(*context.app()));
    const QString running = update.runningText();
    return running.isEmpty() ? update.statusText() : running;
}

/// The available version, or empty.
QString offeredVersion(const Context& context) {
    const auto known = context.app() && context.isOne()
                           ? context.launcher.updates().of(appKey(*context.app())).status()
                           : std::nullopt;
    const auto* update = known ? std::get_if<UpdateAvailable>(&*known) : nullptr;
    return update ? update->latestVersion : QString();
}

bool isUpdating(const Context& context) {
    return context.isOne() && context.app() &&
           !context.launcher.updates().of(appKey(*context.app())).runningText().isEmpty();
}

bool isUpdateOffered(const Context& context) {
    return !offeredVersion(context).isEmpty() && !isUpdating(context);
}

/// Marks a row as concerning an application's update.
constexpr ActionRow aboutUpdates(ActionRow row) {
    row.isAboutUpdates = true;
    return row;
}

template <bool everyVersion>
ActionRequest skip(const Context& context, const QString&) {
    context.told(context.launcher.updates().skip(appKey(*context.app()), everyVersion));
    return ActionRequest::none;
}

// ---- the rows

constexpr std::array rows = std::to_array<ActionRow>({
    // Tells why a tile is unavailable.
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
    aboutUpdates({"open", Texts::noop("Open"), [](const Context& c) { return c.isOne(); },
                  [](const Context& c) { return !c.isUnavailable(); }, open}),
    {},
    {"updateStatus", [](const Context& c) { return updateStatus(c); },
     [](const Context& c) { return c.isOne() && !updateStatus(c).isEmpty(); },
     [](const Context&) { return false; }},
    aboutUpdates({"update",
                  [](const Context& c) { return c.launcher.updates().of(appKey(*c.app())).actionLabel(); },
                  [](const Context& c) {
                      return isUpdateOffered(c) && c.launcher.updates().of(appKey(*c.app())).actionKind();
                  },
                  [](const Context& c) { return !c.launcher.updates().isRunning(); },
                  [](const Context& c, const QString&) {
                      c.launcher.updates().run(appKey(*c.app()));
                      return ActionRequest::none;
                  }}),
    aboutUpdates({"cancelUpdate", Texts::noop("Cancel Update"), isUpdating, nullptr,
                  [](const Context& c, const QString&) {
                      c.launcher.updates().cancelRun();
                      return ActionRequest::none;
                  }}),
    aboutUpdates(
        {"releaseNotes", Texts::noop("Release Notes"),
         [](const Context& c) {
             const auto record =
                 c.isOne() && c.app() ? c.launcher.updates().of(appKey(*c.app())).record() : std::nullopt;
             return record && record->notes && !record->notes->url.isEmpty();
         },
         nullptr,
         [](const Context& c, const QString&) {
             c.launcher.updates().openNotes(appKey(*c.app()));
             return ActionRequest::none;
         }}),
    aboutUpdates(
        {"skipVersion",
         [](const Context& c) { return Texts::tr("Skip Version %1").arg(offeredVersion(c)); },
         isUpdateOffered, nullptr, skip<false>}),
    aboutUpdates({"skipUpdates", Texts::noop("Skip All Its Updates"), isUpdateOffered, nullptr, skip<true>}),
    aboutUpdates({"offerUpdates", Texts::noop("Offer Its Updates Again"),
                  [](const Context& c) {
                      return c.isOne() && c.app() && c.launcher.updates().of(appKey(*c.app())).skipped();
                  },
                  nullptr,
                  [](const Context& c, const QString&) {
                      c.told(c.launcher.updates().unskip(appKey(*c.app())));
                      return ActionRequest::none;
                  }}),
    {},
    {"showWhere", Texts::noop("Show Where It Is"),
     [](const Context& c) {
         return c.target.isSearchResult && !c.target.isAboutUpdates && c.hasTile && c.app() &&
                !c.layout.hiddenKeys().contains(appKey(*c.app()));
     },
     nullptr, showWhere},
    {"information", Texts::noop("Information"), [](const Context& c) { return c.isOne() && c.app(); },
     nullptr, [](const Context&, const QString&) { return ActionRequest::information; }, false, nullptr,
     "Ctrl+I"},
    {"reveal", Texts::noop("Reveal"),
     [](const Context& c) { return c.isOne() && c.app() && !c.isUnavailable(); }, nullptr,
     [](const Context& c, const QString&) {
         c.launcher.cleanup().reveal(c.app()->path, c.told);
         return ActionRequest::underway;
     }},
    {"rename", Texts::noop("Rename…"),
     [](const Context& c) { return c.isOne() && c.hasTile && (!c.smartFolder() || c.definition()); },
     [](const Context& c) { return c.smartFolder() ? hasWritableRules(c) : c.isEditable; },
     [](const Context&, const QString&) { return ActionRequest::rename; }, false, nullptr, "F2"},
    {"editSmartFolder", Texts::noop("Edit Smart Folder…"),
     [](const Context& c) { return (c.isOne() || c.isBackground()) && c.definition(); },
     hasWritableRules, editSmartFolder},
    {"revertName", Texts::noop("Revert Name"),
     [](const Context& c) {
         return c.isOne() && c.hasTile && c.app() && c.app()->name != c.app()->originalName;
     },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.revertAppName(c.mode(), c.tiles.first()); });
     }},
    {"changeIcon", Texts::noop("Change Icon…"),
     [](const Context& c) { return c.isOne() && c.app() && c.hasTile; }, nullptr,
     [](const Context&, const QString&) { return ActionRequest::icon; }},
    {"removeIcon", Texts::noop("Remove Custom Icon"),
     [](const Context& c) { return c.isOne() && c.app() && c.launcher.icons().has(appKey(*c.app())); },
     nullptr,
     [](const Context& c, const QString&) {
         c.launcher.icons().remove(appKey(*c.app()), c.told);
         return ActionRequest::underway;
     }},
    {},
    {"cut", Texts::noop("Cut"), [](const Context& c) { return c.isPlaced(); }, isEditable,
     [](const Context& c, const QString&) {
         return clipboard(c.launcher.clipboard().cut(c.mode(), c.tiles));
     },
     false, nullptr, "Ctrl+X"},
    {"copy", Texts::noop("Copy"), [](const Context& c) { return c.hasTile; }, nullptr,
     [](const Context& c, const QString&) {
         return clipboard(c.launcher.clipboard().copy(c.mode(), c.tiles));
     },
     false, nullptr, "Ctrl+C"},
    {"paste", Texts::noop("Paste"),
     [](const Context& c) { return (c.isPlaced() || c.isBackground()) && !c.isComputed; },
     [](const Context& c) { return c.isEditable && c.launcher.clipboard().hasTiles(); },
     [](const Context& c, const QString&) {
         if (c.target.item)
             c.layout.navigation().select(c.tiles);
         return clipboard(c.launcher.clipboard().paste(c.mode()));
     },
     false, nullptr, "Ctrl+V"},
    {},
    {"moveTo", Texts::noop("Move to"), [](const Context& c) { return c.isPlaced(); }, isEditable,
     [](const Context& c, const QString& argument) {
         const auto place = LayoutPlace::fromText(argument);
         return !place ? ActionRequest::none : edit(c, [&](LauncherEditor& e) {
             return e.moveTiles(c.mode(), c.tiles, *place);
         });
     },
     false, [](const Context& c, const QString& id) { return placeEntries(c, id, false); }},
    {"createAlias", Texts::noop("Create Alias in…"),
     [](const Context& c) { return c.isOne() && c.hasTile && c.app(); }, isEditable,
     [](const Context& c, const QString& argument) {
         const auto place = LayoutPlace::fromText(argument);
         return !place ? ActionRequest::none : edit(c, [&](LauncherEditor& e) {
             return e.createAlias(c.mode(), c.tiles.first(), *place);
         });
     },
     false, [](const Context& c, const QString& id) { return placeEntries(c, id, true); }},
    {"removeAlias",
     [](const Context& c) {
         if (c.tiles.size() > 1)
             return editName(EditKind::removeAlias, c.tiles.size());
         const AppEntry* app = c.launcher.applications().withKey(c.app()->alias->appKey);
         return Texts::tr("Remove alias to %1").arg(app ? app->name : c.app()->name);
     },
     [](const Context& c) { return c.isPlaced() && c.all(isAlias); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.removeAliases(c.mode(), c.tiles); });
     }},
    {"group", Texts::noop("Group"),
     [](const Context& c) { return c.isPlaced() && c.tiles.size() > 1; },
     [](const Context& c) {
         const LaunchpadItem* first = c.layout.item(c.tiles.first());
         return c.isEditable && first && !first->smartFolder();
     },
     group, false, nullptr, "Ctrl+G"},
    {"ungroup", Texts::noop("Ungroup"), [](const Context& c) { return c.isOne() && c.folder(); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.ungroupFolder(c.mode(), c.tiles.first()); });
     }},
    {"hide", Texts::noop("Hide"),
     [](const Context& c) {
         return c.all(isApp) && (!c.app() || !c.layout.hiddenKeys().contains(appKey(*c.app())));
     },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.hideApps(c.mode(), c.tiles); });
     }},
    {"show", Texts::noop("Unhide"),
     [](const Context& c) { return c.app() && c.layout.hiddenKeys().contains(appKey(*c.app())); },
     isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) { return e.unhideApp(c.mode(), appKey(*c.app())); });
     }},
    {},
    {"removeSmartFolderTile", Texts::noop("Remove from This Page"),
     [](const Context& c) { return c.isOne() && c.isPlaced() && c.smartFolder(); }, isEditable,
     [](const Context& c, const QString&) {
         return edit(c, [&](LauncherEditor& e) {
             return e.removeSmartFolderTile(c.mode(), c.smartFolder()->definitionID);
         });
     }},
    {"deleteSmartFolder", Texts::noop("Delete…"),
     [](const Context& c) { return c.isOne() && c.definition(); }, hasWritableRules, deleteSmartFolder,
     true},
    {"moveToTrash", Texts::noop("Move to Trash…"),
     [](const Context& c) { return c.isOne() && c.app() && !c.isUnavailable(); },
     [](const Context& c) {
         return c.isEditable && !c.launcher.cleanup().isMoving() &&
                !InstalledApplications::protection(*c.app());
     },
     [](const Context& c, const QString&) {
         c.launcher.cleanup().open(appKey(*c.app()), c.told);
         return ActionRequest::removal;
     },
     true},
});

} // namespace

std::span<const ActionRow> tileRows() { return rows; }

} // namespace tessellar
