#pragma once

#include "editing/edit_names.h"
#include "editing/navigation.h"
#include "editing/page_tree.h"
#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "smartfolders/smart_folder_definition.h"
#include "smartfolders/smart_folder_vocabulary.h"

#include <expected>
#include <optional>

namespace tessellar {

class LauncherHistory;
class LiveLayouts;
class SmartFolderLibrary;
struct Machine;

/// What the user does to the tiles of one display mode: each edit is a pure change of the layout, made
/// as one step of `LauncherHistory`. A refusal has changed nothing. Tiles are named by their
/// identifiers. Main thread only.
class LauncherEditor {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Mode = LauncherWindowMode;

    LauncherEditor(Machine& machine, LauncherHistory& history, LiveLayouts& layouts,
                   SmartFolderLibrary& smartFolders);

    Outcome moveTiles(Mode mode, const QList<QUuid>& tiles, const LayoutPlace& place,
                      const std::optional<Navigation>& begunAt = {});
    Outcome groupTiles(Mode mode, const QList<QUuid>& tiles, const QUuid& target,
                       const std::optional<Navigation>& begunAt = {});
    Outcome ungroupFolder(Mode mode, const QUuid& folder);
    /// A folder, an application or a smart folder, whichever the tile is. A smart folder's name is the
    /// same in both modes.
    /// What a folder of these tiles would be called.
    QString suggestedFolderName(const Page& tiles) const;
    Outcome rename(Mode mode, const QUuid& tile, const QString& name);
    Outcome revertAppName(Mode mode, const QUuid& tile);
    Outcome setFolderSymbol(Mode mode, const QUuid& folder, const std::optional<QString>& symbolName);
    Outcome hideApps(Mode mode, const QList<QUuid>& tiles);
    Outcome unhideApp(Mode mode, const QString& appKey);
    Outcome createAlias(Mode mode, const QUuid& tile, const LayoutPlace& place);
    Outcome removeAliases(Mode mode, const QList<QUuid>& tiles);
    Outcome sortPage(Mode mode, const std::optional<QUuid>& folder, qsizetype page);
    Outcome sortEverything(Mode mode);

    // Smart folders. Their definitions are the same in both modes; a new one gets its tile in one, one
    // that is deleted loses its tiles in both.
    /// Without a place the tile comes after the selected one, else at the end of the page shown. Its
    /// page is turned to, and it is selected.
    Outcome addSmartFolder(Mode mode, const SmartFolderDefinition& definition,
                           const std::optional<LayoutPlace>& place = {});
    Outcome addSmartFolder(Mode mode, SmartFolderTemplate which);
    /// A tile for a definition that has none in the mode.
    Outcome addSmartFolderTile(Mode mode, const QUuid& definitionID,
                               const std::optional<LayoutPlace>& place = {});
    /// The tile goes, the definition stays.
    Outcome removeSmartFolderTile(Mode mode, const QUuid& definitionID);
    Outcome changeSmartFolder(Mode mode, SmartFolderDefinition definition);
    Outcome deleteSmartFolder(Mode mode, const QUuid& definitionID);

private:
    LayoutPlace placeFor(Mode mode, const std::optional<LayoutPlace>& place) const;

    Machine& _machine;
    LauncherHistory& _history;
    LiveLayouts& _layouts;
    SmartFolderLibrary& _smartFolders;
};

} // namespace tessellar
