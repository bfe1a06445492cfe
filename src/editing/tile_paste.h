#pragma once

#include "editing/layout_edits.h"
#include "editing/navigation.h"
#include "editing/tile_clipboard.h"
#include "platform/uuid_source.h"
#include "smartfolders/smart_folder_definition.h"

namespace tessellar {

/// What pasting works on.
struct PasteContext {
    LayoutDocument layout;
    LauncherWindowMode mode = LauncherWindowMode::fullScreen;
    QList<SmartFolderDefinition> smartFolderDefinitions;
    GridCapacities capacities;
    Instant now;
};

struct PasteResult {
    LayoutDocument layout;
    /// The copies that were made of smart folders, to be kept after the others.
    QList<SmartFolderDefinition> addedDefinitions;
    QList<QUuid> tiles; ///< that were pasted, to be selected
};

/// Where pasted tiles go: after the selected tile of the page shown, else at the end of that page.
/// `moved` tiles do not count, for they leave their places.
LayoutPlace pastePlace(const LayoutDocument& layout, const Navigation& navigation,
                       const GridCapacities& capacities, const QList<QUuid>& moved = {});

/// Copies come with fresh identifiers; a smart folder's copy shows a copy of its definition. One whose
/// definition is not known is left out. Cut tiles are moved, as they are now. The place is `at`, else
/// `pastePlace`.
std::expected<PasteResult, EditRefusal> pasteTiles(const TileClipboardPayload& payload,
                                                   const PasteContext& context,
                                                   const Navigation& navigation, UuidSource& uuids,
                                                   const std::optional<LayoutPlace>& at = {});

} // namespace tessellar
