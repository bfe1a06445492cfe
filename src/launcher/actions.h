#pragma once

#include "model/items.h"
#include "model/launcher_window_mode.h"

#include <Qt>

#include <optional>

namespace tessellar {

class LauncherViewModel;

/// One line of a menu.
struct MenuEntry {
    QString id; ///< for `performAction`; empty for a line between groups
    QString title;
    bool isEnabled = true;
    bool isDestructive = false;
    bool isChosen = false;
    QList<MenuEntry> entries; ///< of its submenu; what has one is not performed itself
    QString shortcut = {};    ///< as QKeySequence reads it, such as "Ctrl+Z"

    bool isSeparator() const { return id.isEmpty(); }
    bool operator==(const MenuEntry&) const = default;
};

/// What an action is about: a tile of the page or folder shown, with the selection that it belongs to;
/// an application found by search, which need not have a tile; nothing: the background.
struct ActionTarget {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen;
    std::optional<LaunchpadItem> item = {};
    bool isSearchResult = false;
    bool isAboutUpdates = false; ///< no more is wanted than what concerns its update
};

/// What remains for the window to do after an action.
enum class ActionRequest {
    none,
    rename,       ///< let the user type a name over the tile's label
    settings,     ///< show what can be set
    backups,      ///< show the backups of arrangements
    updates,      ///< show what is known of updates
    pastRemovals, ///< show them, to put one back
    icon,         ///< let the user choose a file for the tile's icon
    whereabouts,  ///< show the tile of the application that was found, in place of what was found
    keys,         ///< show what the keys do
    rules,        ///< let the user edit the smart folder that is open in `SmartFolderEditing`
    information,  ///< show all that is known of the application
    arrangements, ///< show the saved arrangements
    arranging,    ///< show the ways to arrange all applications anew
    unplaced,     ///< show what is hidden, has no tile, or has gone and may come back
};

// What a menu, a key and `tessellarctl actions` offer is one table, in tile_actions.cpp and
// background_actions.cpp: each row has a name, a title, perhaps a shortcut, says when it applies and
// when it is allowed, and what it does.

/// The menu of a target. With the tile of a selection it is about all of these.
QList<MenuEntry> actionMenu(LauncherViewModel& launcher, const ActionTarget& target);

/// Does what an entry says, as far as the launcher can by itself: what has to be confirmed is asked,
/// what is refused is told. Nothing for an entry that does not apply, or is not allowed, now.
std::optional<ActionRequest> performAction(LauncherViewModel& launcher, const ActionTarget& target,
                                           const QString& id);

/// Does what a key stands for: with the target, or the background where it does not apply to that.
/// Nothing where it stands for nothing now.
std::optional<ActionRequest> performShortcut(LauncherViewModel& launcher, const ActionTarget& target,
                                             Qt::Key key, Qt::KeyboardModifiers modifiers);

} // namespace tessellar
