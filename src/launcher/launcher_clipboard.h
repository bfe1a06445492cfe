#pragma once

#include "editing/page_tree.h"
#include "editing/tile_clipboard.h"

#include <optional>

namespace tessellar {

class LauncherHistory;
class LauncherMessages;
class LiveLayouts;
class SmartFolderLibrary;
struct Machine;

/// Cutting, copying and pasting the tiles of one display mode. Nothing is said when there is nothing to
/// cut, copy or paste; a paste that cannot be saved alerts. Main thread only.
class LauncherClipboard {
public:
    using Mode = LauncherWindowMode;

    /// Without a pasteboard of the desktop, tiles are cut and copied within this program alone.
    LauncherClipboard(Machine& machine, Pasteboard* pasteboard, LauncherHistory& history,
                      LiveLayouts& layouts, SmartFolderLibrary& smartFolders,
                      LauncherMessages& messages);

    bool copy(Mode mode, const QList<QUuid>& tiles);
    /// The tiles stay where they are until they are pasted.
    bool cut(Mode mode, const QList<QUuid>& tiles);
    /// Copies come as new tiles, cut tiles are moved: after the selected tile, else at the end of the
    /// page shown. One step of history. False when there is nothing that can be pasted here.
    bool paste(Mode mode, const std::optional<LayoutPlace>& place = {});
    /// The tiles of a mode that wait to be pasted elsewhere. A paste ends that, though what was cut can
    /// be pasted again.
    QSet<QUuid> cutTiles(Mode mode) const;
    /// True when there are tiles to paste.
    bool hasTiles() const { return _clipboard.read().has_value(); }

private:
    bool write(Mode mode, const QList<QUuid>& tiles, TileClipboardPayload::Operation operation);

    Machine& _machine;
    MemoryPasteboard _ownPasteboard;
    TileClipboard _clipboard;
    std::optional<TileClipboardPayload> _pasted; ///< what was pasted last
    LauncherHistory& _history;
    LiveLayouts& _layouts;
    SmartFolderLibrary& _smartFolders;
    LauncherMessages& _messages;
};

} // namespace tessellar
