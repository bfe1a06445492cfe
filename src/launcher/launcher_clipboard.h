#pragma once

#include "editing/page_tree.h"
#include "editing/tile_clipboard.h"
#include "launcher/launcher_error.h"

#include <optional>

namespace tessellar {

class LauncherHistory;
class LauncherMessages;
class LiveLayouts;
class SmartFolderLibrary;
struct Machine;

/// Cuts, copies and pastes tiles. Does nothing if there is nothing to cut, copy or paste; shows an
/// alert if a paste cannot be saved. Main thread only.
class LauncherClipboard {
public:
    using Mode = LauncherWindowMode;

    /// What a command says if one of these returns false.
    static LauncherError refusal();

    /// Without a desktop pasteboard, the clipboard is private to this process.
    LauncherClipboard(Machine& machine, Pasteboard* pasteboard, LauncherHistory& history,
                      LiveLayouts& layouts, SmartFolderLibrary& smartFolders,
                      LauncherMessages& messages);

    bool copy(Mode mode, const QList<QUuid>& tiles);
    /// The tiles stay in place until they are pasted.
    bool cut(Mode mode, const QList<QUuid>& tiles);
    /// Pastes copied tiles as new ones, and moves cut tiles: by default after the selected tile, or
    /// else at the end of the current page. One undo step. False if nothing could be pasted.
    bool paste(Mode mode, const std::optional<LayoutPlace>& place = {});
    /// The tiles of a mode that were cut and not pasted yet. After pasting, they can be pasted again.
    QSet<QUuid> cutTiles(Mode mode) const;
    /// True if there are tiles to paste.
    bool hasTiles() const { return _clipboard.read().has_value(); }

private:
    bool write(Mode mode, const QList<QUuid>& tiles, TileClipboardPayload::Operation operation);

    Machine& _machine;
    MemoryPasteboard _ownPasteboard;
    TileClipboard _clipboard;
    std::optional<TileClipboardPayload> _pasted; ///< the last payload pasted
    LauncherHistory& _history;
    LiveLayouts& _layouts;
    SmartFolderLibrary& _smartFolders;
    LauncherMessages& _messages;
};

} // namespace tessellar
