#pragma once

#include "launcher/launcher_view_model.h"

namespace tessellar {

/// One line of a menu.
struct MenuEntry {
    QString id; ///< for `performMenuEntry`; empty for a line between groups
    QString title;
    bool isEnabled = true;
    bool isDestructive = false;
    bool isChosen = false;
    QList<MenuEntry> entries; ///< of its submenu; what has one is not performed itself

    bool isSeparator() const { return id.isEmpty(); }
    bool operator==(const MenuEntry&) const = default;
};

/// What the pointer was on: a tile of the page or folder shown, or an application found by search,
/// which need not have a tile; nothing: the background.
struct MenuTarget {
    std::optional<LaunchpadItem> item;
    bool isSearchResult = false;
};

/// What remains for the window to do after an entry was performed.
enum class MenuRequest {
    none,
    rename,  ///< let the user type a name over the tile's label
    updates, ///< show what is known of updates
    icon,    ///< let the user choose a file for the tile's icon
    rules,   ///< let the user edit the smart folder that is open in `SmartFolderEditing`
};

/// The menu of a tile, or of the background. With the tile of a selection it is about all of these.
QList<MenuEntry> tileMenu(LauncherViewModel& launcher, const MenuTarget& target);

/// Does what an entry says, as far as the launcher can by itself: what has to be confirmed is asked,
/// what is refused is told. An entry that is not in the menu now does nothing.
MenuRequest performMenuEntry(LauncherViewModel& launcher, const MenuTarget& target, const QString& id);

} // namespace tessellar
