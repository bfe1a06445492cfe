#pragma once

#include <QString>

namespace tessellar {

/// The kinds of edits recorded in history.
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

/// An edit's name, for `count` tiles: "Move Tile", "Move Tiles".
QString editName(EditKind kind, qsizetype count = 1);

} // namespace tessellar
