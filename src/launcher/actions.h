#pragma once

#include "launcher/launcher_error.h"
#include "model/items.h"
#include "model/launcher_window_mode.h"

#include <Qt>

#include <expected>
#include <functional>
#include <optional>

namespace tessellar {

class LauncherViewModel;

/// One menu entry.
struct MenuEntry {
    QString id; ///< for `performAction`; empty for a separator
    QString title;
    bool isEnabled = true;
    bool isDestructive = false;
    bool isChosen = false;
    QList<MenuEntry> entries; ///< its submenu; if not empty, the entry itself does nothing
    QString shortcut = {};    ///< in the format of QKeySequence, for example "Ctrl+Z"

    bool isSeparator() const { return id.isEmpty(); }
    bool operator==(const MenuEntry&) const = default;
};

/// The target of an action: a tile on the shown page or in the open folder, together with the selection
/// containing it; an application found by search, possibly without a tile; or, without an item, the
/// background.
struct ActionTarget {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen;
    std::optional<LaunchpadItem> item = {};
    bool isSearchResult = false;
    bool isAboutUpdates = false; ///< limits the menu to the application's update
};

/// What the window must do after an action.
enum class ActionRequest {
    none,
    underway,     ///< nothing; the outcome will be told
    refused,      ///< nothing; the clipboard refused, which only commands report
    rename,       ///< edit the tile's name in place
    settings,     ///< show the settings
    backups,      ///< show the arrangement's backups
    updates,      ///< show the updates
    pastRemovals, ///< show past removals, which can be undone
    icon,         ///< choose an image file as the tile's icon
    whereabouts,  ///< show the found application's tile instead of the search results
    keys,         ///< show the keyboard shortcuts
    rules,        ///< edit the smart folder opened in `SmartFolderEditing`
    information,  ///< show the information about the application
    arrangements, ///< show the saved arrangements
    arranging,    ///< show ways to rearrange all applications
    unplaced,     ///< show what is hidden, has no tile, or is remembered
    removal,      ///< show the removal under review
};

// Menus, keys and `tessellarctl actions` share one table, in tile_actions.cpp and
// background_actions.cpp: each row declares an action's name, title, shortcut, conditions and effect.

/// The menu for a target; for a tile in the selection, it applies to the whole selection.
QList<MenuEntry> actionMenu(LauncherViewModel& launcher, const ActionTarget& target);

/// Receives the outcome of an action that can fail and is not confirmed first.
using ActionTold = std::function<void(const std::expected<void, LauncherError>&)>;

/// Performs an entry's action as far as the launcher can by itself, asking for confirmation. Refusals
/// are reported to the user, unless `told` receives them. nullopt if it does not apply or is disabled.
std::optional<ActionRequest> performAction(LauncherViewModel& launcher, const ActionTarget& target,
                                           const QString& id, ActionTold told = {});

/// Performs the action of a keyboard shortcut on the target, or else on the background. nullopt if
/// there is none.
std::optional<ActionRequest> performShortcut(LauncherViewModel& launcher, const ActionTarget& target,
                                             Qt::Key key, Qt::KeyboardModifiers modifiers);

} // namespace tessellar
