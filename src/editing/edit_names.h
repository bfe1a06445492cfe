#pragma once

#include <QString>

namespace tessellar {

/// The edits that history keeps.
enum class EditKind {
    move,
    group,
    ungroup,
    renameFolder,
    renameApp,
    revertAppName,
    hide,
    unhide,
    paste,
    createAlias,
    removeAlias,
    sort,
    changeFolderSymbol,
    addSmartFolder,
    changeSmartFolder,
    deleteSmartFolder,
    moveToTrash,
    importLaunchpad,
    removeSmartFolderTile,
    restoreArrangement,
    restoreBackup,
    resetLayout,
    arrange,
    putBack,
};

/// What an edit is called, by the number of tiles concerned: "Move Tile", "Move Tiles".
QString editName(EditKind kind, qsizetype count = 1);

} // namespace tessellar
