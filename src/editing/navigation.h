#pragma once

#include "model/items.h"

#include <QSet>

#include <optional>

namespace tessellar {

/// One open folder and the page shown in it.
struct OpenFolderLevel {
    QUuid id;
    int page = 0;

    bool operator==(const OpenFolderLevel&) const = default;
};

/// The user's position in an arrangement, restored by undo.
struct Navigation {
    int currentPage = 0;                ///< as displayed in the grid
    QList<OpenFolderLevel> folderStack; ///< outermost first
    std::optional<QUuid> selectedItemID;
    QSet<QUuid> selectedItemIDs;
    std::optional<QUuid> selectionAnchorID;

    bool operator==(const Navigation&) const = default;
};

} // namespace tessellar
