#pragma once

#include "editing/edit_names.h"
#include "editing/navigation.h"
#include "editing/page_tree.h"
#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "smartfolders/smart_folder_definition.h"
#include "smartfolders/smart_folder_vocabulary.h"

#include <expected>
#include <functional>
#include <optional>

namespace tessellar {

class LauncherHistory;
class LiveLayouts;
class SmartFolderLibrary;
struct Machine;

/// Edits the tiles of one display mode. Each edit is a pure change of the layout, made as one step of
/// `LauncherHistory`; a refused one changes nothing. Tiles are given by their identifiers. Main thread
/// only.
class LauncherEditor {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Mode = LauncherWindowMode;

    LauncherEditor(Machine& machine, LauncherHistory& history, LiveLayouts& layouts,
                   SmartFolderLibrary& smartFolders);

    Outcome moveTiles(Mode mode, const QList<QUuid>& tiles, const LayoutPlace& place,
                      const std::optional<Navigation>& initialNavigation = {});
    Outcome groupTiles(Mode mode, const QList<QUuid>& tiles, const QUuid& target,
                       const std::optional<Navigation>& initialNavigation = {});
    Outcome ungroupFolder(Mode mode, const QUuid& folder);
    /// The name of a new folder of these tiles.
    QString suggestedFolderName(const Page& tiles) const;
    /// Renames a folder, an application or a smart folder; the latter in both modes.
    Outcome rename(Mode mode, const QUuid& tile, const QString& name);
    Outcome revertAppName(Mode mode, const QUuid& tile);
    Outcome setFolderSymbol(Mode mode, const QUuid& folder, const std::optional<QString>& symbolName);
    Outcome hideApps(Mode mode, const QList<QUuid>& tiles);
    Outcome unhideApp(Mode mode, const QString& appKey);
    Outcome createAlias(Mode mode, const QUuid& tile, const LayoutPlace& place);
    Outcome removeAliases(Mode mode, const QList<QUuid>& tiles);
    Outcome sortPage(Mode mode, const std::optional<QUuid>& folder, qsizetype page);
    Outcome sortEverything(Mode mode);

    // Smart folders. Both modes share the definitions: adding one adds a tile in this mode, deleting
    // one removes its tiles in both.
    /// By default the tile is inserted after the selected one, or else at the end of the current page.
    /// It is selected, and its page shown. `takenBack` as in `EditStep`.
    Outcome addSmartFolder(Mode mode, const SmartFolderDefinition& definition,
                           const std::optional<LayoutPlace>& place = {},
                           std::function<void()> takenBack = {});
    Outcome addSmartFolder(Mode mode, SmartFolderTemplate which);
    /// Adds a tile for a definition that has none in this mode.
    Outcome addSmartFolderTile(Mode mode, const QUuid& definitionID,
                               const std::optional<LayoutPlace>& place = {});
    /// Removes the tile, but not the definition.
    Outcome removeSmartFolderTile(Mode mode, const QUuid& definitionID);
    Outcome changeSmartFolder(Mode mode, SmartFolderDefinition definition,
                              std::function<void()> takenBack = {});
    Outcome deleteSmartFolder(Mode mode, const QUuid& definitionID);

private:
    LayoutPlace placeFor(Mode mode, const std::optional<LayoutPlace>& place) const;

    Machine& _machine;
    LauncherHistory& _history;
    LiveLayouts& _layouts;
    SmartFolderLibrary& _smartFolders;
};

} // namespace tessellar
