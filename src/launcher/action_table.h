#pragma once

#include "launcher/actions.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

#include <algorithm>
#include <concepts>
#include <span>

namespace tessellar {

/// What an action applies to.
struct ActionContext {
    LauncherViewModel& launcher;
    LiveLayout& layout;
    const ActionTarget& target;
    ActionTold told;
    QList<QUuid> tiles = {}; ///< the tile, or the selection containing it
    bool hasTile = false;
    bool isComputed = false; ///< inside an open smart folder, whose rules determine its contents
    bool isEditable = false;

    LauncherWindowMode mode() const { return target.mode; }
    const AppEntry* app() const { return target.item ? target.item->app() : nullptr; }
    const FolderEntry* folder() const { return target.item ? target.item->folder() : nullptr; }
    const SmartFolderReference* smartFolder() const {
        return target.item ? target.item->smartFolder() : nullptr;
    }
    bool isBackground() const { return !target.item; }
    /// A single tile, not a selection.
    bool isOne() const { return target.item && tiles.size() <= 1; }
    /// Tiles that the user placed where they are shown.
    bool isPlaced() const { return hasTile && !isComputed && !target.isSearchResult; }
    bool isUnavailable() const { return app() && layout.unavailableAppKeys().contains(appKey(*app())); }
    /// Of the tile, or of the open smart folder if the target is its background.
    const SmartFolderDefinition* definition() const {
        const SmartFolderLibrary& library = launcher.smartFolders();
        if (isBackground() && isComputed)
            return library.definition(*openFolder());
        return smartFolder() ? library.definition(smartFolder()->definitionID) : nullptr;
    }
    /// Whether a condition holds for all tiles, of which there is at least one.
    bool all(bool (*holds)(const LaunchpadItem&)) const {
        return !tiles.isEmpty() && std::ranges::all_of(tiles, [&](const QUuid& id) {
            const LaunchpadItem* item = layout.item(id);
            return item && holds(*item);
        });
    }
    std::optional<QUuid> openFolder() const {
        const auto& stack = layout.navigation().folderStack();
        return stack.isEmpty() || target.isSearchResult ? std::nullopt : std::optional(stack.last().id);
    }
};

/// Without `told`, outcomes are reported to the user.
ActionContext contextOf(LauncherViewModel& launcher, const ActionTarget& target, ActionTold told = {});

/// Entries for the pages and folders that tiles can be moved to; the identifier's last word is the
/// place.
QList<MenuEntry> placeEntries(const ActionContext& context, const QString& id, bool withOwn);

/// An action's title: fixed, or computed from the context.
class ActionTitle {
public:
    using Of = QString (*)(const ActionContext&);

    constexpr ActionTitle() = default;
    constexpr ActionTitle(const char* text) : _text(text) {}
    template <std::convertible_to<Of> Function>
    constexpr ActionTitle(Function of) : _of(of) {}

    QString operator()(const ActionContext& context) const {
        return _of ? _of(context) : Texts::tr(_text);
    }

private:
    const char* _text = nullptr;
    Of _of = nullptr;
};

/// One action.
struct ActionRow {
    const char* id; ///< null for a separator
    ActionTitle title;
    bool (*applies)(const ActionContext&);
    bool (*isEnabled)(const ActionContext&) = nullptr; ///< null for always
    /// Null for an entry that is only informative.
    ActionRequest (*perform)(const ActionContext&, const QString& argument) = nullptr;
    bool isDestructive = false;
    QList<MenuEntry> (*entries)(const ActionContext&, const QString& id) = nullptr;
    const char* shortcut = nullptr; ///< in the format of QKeySequence
    bool isInMenu = true;
    bool isAboutUpdates = false;
};

/// All actions, in menu order: everything that menus, keys and `tessellarctl actions` offer.
std::span<const ActionRow> actionRows();

} // namespace tessellar
