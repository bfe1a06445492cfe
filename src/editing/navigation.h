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

/// Where the user is in an arrangement: what an undo puts back besides the arrangement itself.
struct Navigation {
    int currentPage = 0;                ///< as the grid shows them
    QList<OpenFolderLevel> folderStack; ///< outermost first
    std::optional<QUuid> selectedItemID;
    QSet<QUuid> selectedItemIDs;
    std::optional<QUuid> selectionAnchorID;

    bool operator==(const Navigation&) const = default;
};

} // namespace tessellar
