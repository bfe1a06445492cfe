#pragma once

#include "editing/layout_edits.h"
#include "editing/navigation.h"
#include "editing/tile_clipboard.h"
#include "platform/uuid_source.h"
#include "smartfolders/smart_folder_definition.h"

namespace tessellar {

/// The state in which to paste.
struct PasteContext {
    LayoutDocument layout;
    LauncherWindowMode mode = LauncherWindowMode::fullScreen;
    QList<SmartFolderDefinition> smartFolderDefinitions;
    GridCapacities capacities;
    Instant now;
};

struct PasteResult {
    LayoutDocument layout;
    /// Copies made of smart folders, to be appended to the definitions.
    QList<SmartFolderDefinition> addedDefinitions;
    QList<QUuid> tiles; ///< the pasted tiles, to be selected
};

/// Where to paste: after the selected tile on the shown page, else at the end of that page. `moved`
/// tiles are not counted, as they leave their places.
LayoutPlace pastePlace(const LayoutDocument& layout, const Navigation& navigation,
                       const GridCapacities& capacities, const QList<QUuid>& moved = {});

/// Copied tiles get new identifiers; a copied smart folder gets a copy of its definition, and is
/// dropped if that is unknown. Cut tiles are moved in their current state. Pastes at `at`, else at
/// `pastePlace`.
std::expected<PasteResult, EditRefusal> pasteTiles(const TileClipboardPayload& payload,
                                                   const PasteContext& context,
                                                   const Navigation& navigation, UuidSource& uuids,
                                                   const std::optional<LayoutPlace>& at = {});

} // namespace tessellar
