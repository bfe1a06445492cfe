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

/// What an action is about, and where.
struct ActionContext {
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

ActionContext contextOf(LauncherViewModel& launcher, const ActionTarget& target);

/// Pages and folders that tiles can be put into: by their titles, with the place as the last word of
/// the identifier.
QList<MenuEntry> placeEntries(const ActionContext& context, const QString& id, bool withOwn);

/// What an action is called: always the same text, or one that depends on what it is about.
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

/// One action: its name, when it applies and when it is allowed, and what it does.
struct ActionRow {
    const char* id; ///< nothing: a line between groups
    ActionTitle title;
    bool (*applies)(const ActionContext&);
    bool (*isEnabled)(const ActionContext&) = nullptr; ///< always without
    /// Nothing for what is only said.
    ActionRequest (*perform)(const ActionContext&, const QString& argument) = nullptr;
    bool isDestructive = false;
    QList<MenuEntry> (*entries)(const ActionContext&, const QString& id) = nullptr;
    const char* shortcut = nullptr; ///< as QKeySequence reads it
    bool isInMenu = true;
    bool isAboutUpdates = false;
};

/// All actions, in the order of menus. What a menu, a key and `tessellarctl actions` offer is in here.
std::span<const ActionRow> actionRows();

} // namespace tessellar
