#pragma once

#include "editing/edit_names.h"
#include "editing/layout_undo.h"
#include "editing/search_index.h"
#include "editing/tile_clipboard.h"
#include "launcher/launcher_error.h"

#include <functional>

namespace tessellar {

class LauncherViewModel;

/// What the user does to the arrangement of the mode shown. Every edit takes the same way: the guard, a
/// snapshot, the change as a pure function from layout to layout, the selection tidied, a save asked
/// for, an entry of history. A refusal has changed nothing.
///
/// Owned by the view model; main thread only.
class LauncherEditor {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Change = std::function<EditResult(const LayoutDocument&)>;

    LauncherEditor(LauncherViewModel& launcher, Pasteboard& pasteboard);

    // Tiles are named by their identifiers.
    Outcome moveTiles(const QList<QUuid>& tiles, const LayoutPlace& place);
    Outcome groupTiles(const QList<QUuid>& tiles, const QUuid& target);
    Outcome ungroupFolder(const QUuid& folder);
    Outcome renameFolder(const QUuid& folder, const QString& name);
    Outcome renameApp(const QUuid& tile, const QString& name);
    /// A folder or an application, whichever the tile is.
    Outcome rename(const QUuid& tile, const QString& name);
    Outcome revertAppName(const QUuid& tile);
    Outcome setFolderSymbol(const QUuid& folder, const std::optional<QString>& symbolName);
    Outcome hideApps(const QList<QUuid>& tiles);
    Outcome unhideApp(const QString& appKey);
    Outcome createAlias(const QUuid& tile, const LayoutPlace& place);
    Outcome removeAliases(const QList<QUuid>& tiles);
    Outcome sortPage(const std::optional<QUuid>& folder, qsizetype page);
    Outcome sortEverything();

    // Smart folders. Their definitions are the same in both modes; a new one gets its tile in the mode
    // shown, one that is deleted loses its tiles in both.
    Outcome addSmartFolder(const SmartFolderDefinition& definition,
                           const std::optional<LayoutPlace>& place = {});
    Outcome addSmartFolder(SmartFolderTemplate which);
    Outcome addSmartFolderTile(const QUuid& definitionID, const LayoutPlace& place);
    Outcome changeSmartFolder(const SmartFolderDefinition& definition);
    Outcome deleteSmartFolder(const QUuid& definitionID);

    // The clipboard. Failures of these are silent: they did nothing then.
    bool copy(const QList<QUuid>& tiles);
    /// The tiles stay where they are until they are pasted.
    bool cut(const QList<QUuid>& tiles);
    /// Copies come as new tiles, cut tiles are moved: after the selected tile, else at the end of the
    /// page shown. One step of history. False when there is nothing that can be pasted here.
    bool paste(const std::optional<LayoutPlace>& place = {});
    /// True when the clipboard holds tiles.
    bool hasTilesToPaste() const { return _clipboard.read().has_value(); }

    // Selection.
    void select(const QList<QUuid>& tiles);

    // History.
    const LayoutUndoHistory& history() const { return _history; }
    /// `done` is called at the end of the step; a refusal says why.
    void undo(std::function<void(Outcome)> done = {});
    void redo(std::function<void(Outcome)> done = {});

    /// The general step; for edits that other parts of the launcher make.
    Outcome edit(EditKind kind, qsizetype count, const Change& change);
    LayoutUndoState snapshot() const;
    /// Keeps an edit made otherwise, with the applications that it moved to the Trash.
    void record(EditKind kind, qsizetype count, LayoutUndoState before,
                const QList<TrashedAppRecord>& trashedApps = {});

    /// How applications come into and out of the Trash.
    void setTrash(LayoutUndoActions::TrashMove restore, LayoutUndoActions::TrashMove trash);

    /// Applications by a query, best first. The index is made anew when what it holds has changed.
    QList<SearchIndex::Hit> search(const QString& query);
    /// To be called when the tiles, the scan or what smart folders show has changed.
    void invalidateSearch() { _index.reset(); }

private:
    GridCapacities capacities() const;
    LayoutUndoActions actions();
    Outcome outcome(LayoutUndoHistory::Result result, bool isUndo) const;
    void step(bool isUndo, std::function<void(Outcome)> done);

    bool writeClipboard(const QList<QUuid>& tiles, TileClipboardPayload::Operation operation);
    /// The step for edits that change definitions too: saved first, put back when the rest is refused.
    Outcome editWithDefinitions(EditKind kind, qsizetype count,
                                const QList<SmartFolderDefinition>& definitions, const Change& change,
                                const Change& changeOfOther = {}); ///< of the mode that is not shown

    LauncherViewModel& _launcher;
    TileClipboard _clipboard;
    LayoutUndoActions::TrashMove _restoreFromTrash;
    LayoutUndoActions::TrashMove _moveToTrash;
    LayoutUndoHistory _history;
    std::optional<SearchIndex> _index;
};

} // namespace tessellar
