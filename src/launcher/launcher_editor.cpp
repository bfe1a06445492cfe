#include "launcher/launcher_editor.h"

#include "editing/tile_paste.h"
#include "launcher/launcher_view_model.h"

namespace tessellar {

static LauncherError launcherError(EditRefusal refusal) {
    return {code(refusal), message(refusal), {}};
}

/// Without a Trash nothing goes in or out of it.
static void refuseTrash(const QList<TrashedAppRecord>& records,
                        const LayoutUndoActions::TrashDone& done) {
    QList<TrashOutcome> outcomes;
    for (const TrashedAppRecord& record : records)
        outcomes.append({record, QStringLiteral("There is no Trash here.")});
    done(std::move(outcomes));
}

LauncherEditor::LauncherEditor(LauncherViewModel& launcher, Pasteboard& pasteboard)
    : _launcher(launcher)
    , _clipboard(pasteboard)
    , _restoreFromTrash(refuseTrash)
    , _moveToTrash(refuseTrash)
    , _history(launcher._machine.scheduler, launcher._machine.uuids, actions()) {}

GridCapacities LauncherEditor::capacities() const {
    return GridCapacities::of(_launcher.layoutSettings());
}

// ---- the step that all edits take

LauncherEditor::Outcome LauncherEditor::edit(EditKind kind, qsizetype count, const Change& change) {
    if (auto guard = _launcher.editGuard(); !guard)
        return guard;
    LayoutUndoState before = snapshot();
    auto changedLayout = change(before.document);
    if (!changedLayout)
        return std::unexpected(launcherError(changedLayout.error()));
    if (*changedLayout == before.document)
        return {};
    _launcher.replaceDocument(*std::move(changedLayout));
    record(kind, count, std::move(before));
    return {};
}

void LauncherEditor::record(EditKind kind, qsizetype count, LayoutUndoState before,
                            const QList<TrashedAppRecord>& trashedApps) {
    if (_history.record(editName(kind, count), std::move(before), trashedApps))
        _launcher.changed(LauncherChange::history);
}

LauncherEditor::Outcome LauncherEditor::moveTiles(const QList<QUuid>& tiles, const LayoutPlace& place) {
    return edit(EditKind::move, tiles.size(), [&](const LayoutDocument& layout) {
        return tessellar::moveTiles(layout, tiles, place, capacities());
    });
}

LauncherEditor::Outcome LauncherEditor::groupTiles(const QList<QUuid>& tiles, const QUuid& target) {
    // Into a folder that is there already they only move.
    const EditKind kind = _launcher.folder(target) ? EditKind::move : EditKind::group;
    return edit(kind, tiles.size() - tiles.count(target), [&](const LayoutDocument& layout) {
        return tessellar::groupTiles(layout, tiles, target, _launcher._machine.uuids.next(),
                                     _launcher._machine.locale, capacities());
    });
}

LauncherEditor::Outcome LauncherEditor::ungroupFolder(const QUuid& folder) {
    return edit(EditKind::ungroup, 1, [&](const LayoutDocument& layout) {
        return tessellar::ungroupFolder(layout, folder, capacities());
    });
}

LauncherEditor::Outcome LauncherEditor::renameFolder(const QUuid& folder, const QString& name) {
    return edit(EditKind::renameFolder, 1, [&](const LayoutDocument& layout) {
        return tessellar::renameFolder(layout, folder, name);
    });
}

LauncherEditor::Outcome LauncherEditor::renameApp(const QUuid& tile, const QString& name) {
    return edit(EditKind::renameApp, 1,
                [&](const LayoutDocument& layout) { return tessellar::renameApp(layout, tile, name); });
}

LauncherEditor::Outcome LauncherEditor::rename(const QUuid& tile, const QString& name) {
    return _launcher.folder(tile) ? renameFolder(tile, name) : renameApp(tile, name);
}

LauncherEditor::Outcome LauncherEditor::revertAppName(const QUuid& tile) {
    return edit(EditKind::revertAppName, 1,
                [&](const LayoutDocument& layout) { return tessellar::revertAppName(layout, tile); });
}

LauncherEditor::Outcome LauncherEditor::setFolderSymbol(const QUuid& folder,
                                                        const std::optional<QString>& symbolName) {
    return edit(EditKind::changeFolderSymbol, 1, [&](const LayoutDocument& layout) {
        return tessellar::setFolderSymbol(layout, folder, symbolName);
    });
}

LauncherEditor::Outcome LauncherEditor::hideApps(const QList<QUuid>& tiles) {
    return edit(EditKind::hide, tiles.size(),
                [&](const LayoutDocument& layout) { return tessellar::hideApps(layout, tiles); });
}

LauncherEditor::Outcome LauncherEditor::unhideApp(const QString& appKey) {
    return edit(EditKind::unhide, 1, [&](const LayoutDocument& layout) {
        return tessellar::unhideApp(layout, appKey, capacities());
    });
}

LauncherEditor::Outcome LauncherEditor::createAlias(const QUuid& tile, const LayoutPlace& place) {
    return edit(EditKind::createAlias, 1, [&](const LayoutDocument& layout) {
        return tessellar::createAlias(layout, tile, _launcher._machine.uuids.next(), place,
                                      capacities());
    });
}

LauncherEditor::Outcome LauncherEditor::removeAliases(const QList<QUuid>& tiles) {
    return edit(EditKind::removeAlias, tiles.size(),
                [&](const LayoutDocument& layout) { return tessellar::removeAliases(layout, tiles); });
}

LauncherEditor::Outcome LauncherEditor::sortPage(const std::optional<QUuid>& folder, qsizetype page) {
    return edit(EditKind::sort, 1, [&](const LayoutDocument& layout) {
        return tessellar::sortPage(
            layout, folder, page, _launcher._machine.locale,
            [this](const QUuid& id) { return _launcher.smartFolders().name(id); });
    });
}

LauncherEditor::Outcome LauncherEditor::sortEverything() {
    return edit(EditKind::sort, 1, [&](const LayoutDocument& layout) -> EditResult {
        return tessellar::sortEverything(
            layout, _launcher._machine.locale,
            [this](const QUuid& id) { return _launcher.smartFolders().name(id); }, capacities());
    });
}

// ---- smart folders

LauncherEditor::Outcome
LauncherEditor::editWithDefinitions(EditKind kind, qsizetype count,
                                    const QList<SmartFolderDefinition>& definitions,
                                    const Change& change, const Change& changeOfOther) {
    if (auto guard = _launcher.editGuard(); !guard)
        return guard;
    LayoutUndoState before = snapshot();
    auto changedLayout = change(before.document);
    if (!changedLayout)
        return std::unexpected(launcherError(changedLayout.error()));
    auto changedOther = changeOfOther ? changeOfOther(_launcher.otherDocument()) : EditResult();
    if (!changedOther)
        return std::unexpected(launcherError(changedOther.error()));
    // Before the layouts, of which nothing changes when this is refused: a definition without a tile
    // loses nothing, a tile without its definition does.
    if (auto saved = _launcher.smartFolders().setDefinitions(definitions); !saved)
        return saved;
    if (*changedLayout != before.document)
        _launcher.replaceDocument(*std::move(changedLayout));
    if (changeOfOther)
        _launcher.replaceOtherDocument(*std::move(changedOther));
    record(kind, count, std::move(before));
    return {};
}

LauncherEditor::Outcome LauncherEditor::addSmartFolder(const SmartFolderDefinition& definition,
                                                       const std::optional<LayoutPlace>& place) {
    return editWithDefinitions(
        EditKind::addSmartFolder, 1, _launcher.smartFolders().definitions() + QList{definition},
        [&](const LayoutDocument& layout) {
            const LayoutPlace end = pastePlace(layout, _launcher.live().navigation, capacities());
            return tessellar::addSmartFolder(layout, definition.id, place.value_or(end), capacities());
        });
}

LauncherEditor::Outcome LauncherEditor::addSmartFolder(SmartFolderTemplate which) {
    Machine& machine = _launcher._machine;
    return addSmartFolder(
        templateDefinition(which, machine.uuids.next(), machine.clock.now(), machine.uuids));
}

LauncherEditor::Outcome LauncherEditor::addSmartFolderTile(const QUuid& definitionID,
                                                           const LayoutPlace& place) {
    return edit(EditKind::addSmartFolder, 1, [&](const LayoutDocument& layout) {
        return tessellar::addSmartFolder(layout, definitionID, place, capacities());
    });
}

static LauncherError noSuchSmartFolder() {
    return {QStringLiteral("noSuchSmartFolder"), QStringLiteral("There is no such Smart Folder."), {}};
}

LauncherEditor::Outcome LauncherEditor::changeSmartFolder(const SmartFolderDefinition& definition) {
    QList<SmartFolderDefinition> definitions = _launcher.smartFolders().definitions();
    const auto found = std::ranges::find(definitions, definition.id, &SmartFolderDefinition::id);
    if (found == definitions.end())
        return std::unexpected(noSuchSmartFolder());
    *found = definition;
    return editWithDefinitions(EditKind::changeSmartFolder, 1, definitions,
                               [](const LayoutDocument& layout) -> EditResult { return layout; });
}

LauncherEditor::Outcome LauncherEditor::deleteSmartFolder(const QUuid& definitionID) {
    QList<SmartFolderDefinition> definitions = _launcher.smartFolders().definitions();
    if (!definitions.removeIf([&](const SmartFolderDefinition& d) { return d.id == definitionID; }))
        return std::unexpected(noSuchSmartFolder());
    const auto removeTiles = [&](const LayoutDocument& layout) -> EditResult {
        return removeSmartFolder(layout, definitionID);
    };
    return editWithDefinitions(EditKind::deleteSmartFolder, 1, definitions, removeTiles, removeTiles);
}

// ---- clipboard

bool LauncherEditor::writeClipboard(const QList<QUuid>& tiles,
                                    TileClipboardPayload::Operation operation) {
    Page items;
    for (const QUuid& id : tiles)
        if (const LaunchpadItem* item = _launcher.item(id))
            items.append(*item);
    return _clipboard.write(items, operation,
                            operation == TileClipboardPayload::Operation::cut
                                ? std::optional(_launcher.mode())
                                : std::nullopt);
}

bool LauncherEditor::copy(const QList<QUuid>& tiles) {
    return writeClipboard(tiles, TileClipboardPayload::Operation::copy);
}

bool LauncherEditor::cut(const QList<QUuid>& tiles) {
    return writeClipboard(tiles, TileClipboardPayload::Operation::cut);
}

bool LauncherEditor::paste(const std::optional<LayoutPlace>& place) {
    const auto payload = _clipboard.read();
    if (!payload || !_launcher.editGuard())
        return false;
    LayoutUndoState before = snapshot();
    auto pasted = pasteTiles(*payload,
                             {.layout = before.document,
                              .mode = _launcher.mode(),
                              .smartFolderDefinitions = before.smartFolderDefinitions,
                              .capacities = capacities(),
                              .now = _launcher._machine.clock.now()},
                             before.navigation, _launcher._machine.uuids, place);
    if (!pasted)
        return false;
    const auto saved = _launcher.smartFolders().setDefinitions(before.smartFolderDefinitions +
                                                               pasted->addedDefinitions);
    if (!saved) {
        _launcher.alert(saved.error());
        return false;
    }
    _launcher.replaceDocument(std::move(pasted->layout));
    select(pasted->tiles);
    record(EditKind::paste, pasted->tiles.size(), std::move(before));
    return true;
}

// ---- selection

void LauncherEditor::select(const QList<QUuid>& tiles) {
    Navigation& navigation = _launcher.live().navigation;
    navigation.selectedItemIDs = QSet<QUuid>(tiles.begin(), tiles.end());
    navigation.selectedItemID = tiles.isEmpty() ? std::nullopt : std::optional(tiles.last());
    navigation.selectionAnchorID = tiles.isEmpty() ? std::nullopt : std::optional(tiles.first());
    _launcher.tidyNavigation();
    _launcher.changed(LauncherChange::selection);
}

// ---- history

LayoutUndoState LauncherEditor::snapshot() const {
    const LauncherViewModel& launcher = _launcher;
    return {.mode = launcher.mode(),
            .document = launcher.document(),
            .otherDocument = launcher.otherDocument(),
            .smartFolderDefinitions = launcher.smartFolders().definitions(),
            .navigation = launcher.live().navigation};
}

LayoutUndoActions LauncherEditor::actions() {
    return {
        .snapshot = [this] { return snapshot(); },
        .applyLayout =
            [this](const LayoutUndoState& state) { return _launcher.restoreDocuments(state); },
        .applyDefinitions =
            [this](const QList<SmartFolderDefinition>& definitions) {
                return _launcher.smartFolders().setDefinitions(definitions).has_value();
            },
        .applyNavigation =
            [this](const LayoutUndoState& state) {
                _launcher.restoreNavigation(state.mode, state.navigation);
            },
        .restoreFromTrash =
            [this](QList<TrashedAppRecord> records, LayoutUndoActions::TrashDone done) {
                _restoreFromTrash(std::move(records), std::move(done));
            },
        .moveToTrash =
            [this](QList<TrashedAppRecord> records, LayoutUndoActions::TrashDone done) {
                _moveToTrash(std::move(records), std::move(done));
            },
        .alert =
            [this](const QString& title, const QString& message) {
                _launcher.alert({QStringLiteral("trashFailed"), message, title});
            },
        .capacities =
            [this](LauncherWindowMode mode) {
                return GridCapacities::of(readLayoutSettings(_launcher._machine.settings, mode));
            },
        .changed = [this] { _launcher.changed(LauncherChange::history); },
    };
}

void LauncherEditor::setTrash(LayoutUndoActions::TrashMove restore,
                              LayoutUndoActions::TrashMove trash) {
    _restoreFromTrash = std::move(restore);
    _moveToTrash = std::move(trash);
}

LauncherEditor::Outcome LauncherEditor::outcome(LayoutUndoHistory::Result result, bool isUndo) const {
    using Result = LayoutUndoHistory::Result;
    switch (result) {
    case Result::done:
        return {};
    case Result::refused:
        return std::unexpected(
            LauncherError{isUndo ? QStringLiteral("nothingToUndo") : QStringLiteral("nothingToRedo"),
                          isUndo ? QStringLiteral("There is nothing to undo.")
                                 : QStringLiteral("There is nothing to redo."),
                          {}});
    case Result::trashFailed:
        return std::unexpected(LauncherError{
            QStringLiteral("trashFailed"), QStringLiteral("An application could not be moved."), {}});
    case Result::notApplied:
        break;
    }
    return std::unexpected(LauncherError{
        QStringLiteral("notApplied"), QStringLiteral("The arrangement could not be saved."), {}});
}

void LauncherEditor::undo(std::function<void(Outcome)> done) { step(true, std::move(done)); }

void LauncherEditor::redo(std::function<void(Outcome)> done) { step(false, std::move(done)); }

void LauncherEditor::step(bool isUndo, std::function<void(Outcome)> done) {
    const bool isAny = isUndo ? _history.canUndo() : _history.canRedo();
    if (const auto guard = _launcher.editGuard(); !guard && (_history.isInProgress() || isAny))
        return done ? done(guard) : void();
    auto ended = [this, isUndo, done = std::move(done)](LayoutUndoHistory::Result result) {
        if (result == LayoutUndoHistory::Result::done)
            _launcher.lookAgainAfterStep();
        if (done)
            done(outcome(result, isUndo));
    };
    isUndo ? _history.undo(std::move(ended)) : _history.redo(std::move(ended));
}

// ---- search

QList<SearchIndex::Hit> LauncherEditor::search(const QString& query) {
    if (!_index)
        _index = SearchIndex(searchInput(_launcher.document(), _launcher.lastScannedApps(),
                                         _launcher.smartFolders().namesByAppKey()),
                             _launcher._machine.locale);
    return _index->search(query);
}

} // namespace tessellar
