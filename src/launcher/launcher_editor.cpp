#include "launcher/launcher_editor.h"

#include "editing/folder_names.h"
#include "editing/tile_paste.h"
#include "launcher/launcher_history.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "platform/machine.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

using Outcome = LauncherEditor::Outcome;

static LauncherError noSuchSmartFolder() {
    return {QStringLiteral("noSuchSmartFolder"), Texts::tr("There is no such Smart Folder."), {}};
}

LauncherEditor::LauncherEditor(Machine& machine, LauncherHistory& history, LiveLayouts& layouts,
                               SmartFolderLibrary& smartFolders)
    : _machine(machine), _history(history), _layouts(layouts), _smartFolders(smartFolders) {}

Outcome LauncherEditor::moveTiles(Mode mode, const QList<QUuid>& tiles, const LayoutPlace& place,
                                  const std::optional<Navigation>& initialNavigation) {
    return _history.edit(
        mode, editName(EditKind::move, tiles.size()),
        [&](const LayoutDocument& layout) {
            return tessellar::moveTiles(layout, tiles, place, _layouts[mode].capacities());
        },
        initialNavigation);
}

Outcome LauncherEditor::groupTiles(Mode mode, const QList<QUuid>& tiles, const QUuid& target,
                                   const std::optional<Navigation>& initialNavigation) {
    // Moving tiles into an existing folder is a move, not a grouping.
    const EditKind kind = _layouts[mode].folder(target) ? EditKind::move : EditKind::group;
    return _history.edit(
        mode, editName(kind, tiles.size() - tiles.count(target)),
        [&](const LayoutDocument& layout) {
            return tessellar::groupTiles(layout, tiles, target, _machine.uuids.next(), _machine.locale,
                                         _layouts[mode].capacities());
        },
        initialNavigation);
}

QString LauncherEditor::suggestedFolderName(const Page& tiles) const {
    return tessellar::suggestedFolderName(tiles, _machine.locale);
}

Outcome LauncherEditor::ungroupFolder(Mode mode, const QUuid& folder) {
    return _history.edit(mode, editName(EditKind::ungroup), [&](const LayoutDocument& layout) {
        return tessellar::ungroupFolder(layout, folder, _layouts[mode].capacities());
    });
}

Outcome LauncherEditor::rename(Mode mode, const QUuid& tile, const QString& name) {
    const LaunchpadItem* item = _layouts[mode].item(tile);
    if (item && item->folder())
        return _history.edit(mode, editName(EditKind::renameFolder), [&](const LayoutDocument& layout) {
            return renameFolder(layout, tile, name);
        });
    if (!item || !item->smartFolder())
        return _history.edit(mode, editName(EditKind::renameApp), [&](const LayoutDocument& layout) {
            return renameApp(layout, tile, name);
        });
    const SmartFolderDefinition* known = _smartFolders.definition(tile);
    if (!known)
        return std::unexpected(noSuchSmartFolder());
    SmartFolderDefinition renamed = *known;
    renamed.name = trimmed(name);
    if (renamed.name == known->name)
        return _history.guard(mode);
    return changeSmartFolder(mode, renamed);
}

Outcome LauncherEditor::revertAppName(Mode mode, const QUuid& tile) {
    return _history.edit(mode, editName(EditKind::revertAppName), [&](const LayoutDocument& layout) {
        return tessellar::revertAppName(layout, tile);
    });
}

Outcome LauncherEditor::setFolderSymbol(Mode mode, const QUuid& folder,
                                        const std::optional<QString>& symbolName) {
    return _history.edit(mode, editName(EditKind::changeFolderSymbol),
                         [&](const LayoutDocument& layout) {
                             return tessellar::setFolderSymbol(layout, folder, symbolName);
                         });
}

Outcome LauncherEditor::hideApps(Mode mode, const QList<QUuid>& tiles) {
    return _history.edit(
        mode, editName(EditKind::hide, tiles.size()),
        [&](const LayoutDocument& layout) { return tessellar::hideApps(layout, tiles); });
}

Outcome LauncherEditor::unhideApp(Mode mode, const QString& appKey) {
    return _history.edit(mode, editName(EditKind::unhide), [&](const LayoutDocument& layout) {
        return tessellar::unhideApp(layout, appKey, _layouts[mode].capacities());
    });
}

Outcome LauncherEditor::createAlias(Mode mode, const QUuid& tile, const LayoutPlace& place) {
    return _history.edit(mode, editName(EditKind::createAlias), [&](const LayoutDocument& layout) {
        return tessellar::createAlias(layout, tile, _machine.uuids.next(), place,
                                      _layouts[mode].capacities());
    });
}

Outcome LauncherEditor::removeAliases(Mode mode, const QList<QUuid>& tiles) {
    return _history.edit(
        mode, editName(EditKind::removeAlias, tiles.size()),
        [&](const LayoutDocument& layout) { return tessellar::removeAliases(layout, tiles); });
}

Outcome LauncherEditor::sortPage(Mode mode, const std::optional<QUuid>& folder, qsizetype page) {
    return _history.edit(mode, editName(EditKind::sort), [&](const LayoutDocument& layout) {
        return tessellar::sortPage(layout, folder, page, _machine.locale,
                                   [this](const QUuid& id) { return _smartFolders.name(id); });
    });
}

Outcome LauncherEditor::sortEverything(Mode mode) {
    return _history.edit(
        mode, editName(EditKind::sort), [&](const LayoutDocument& layout) -> EditResult {
            return tessellar::sortEverything(
                layout, _machine.locale, [this](const QUuid& id) { return _smartFolders.name(id); },
                _layouts[mode].capacities());
        });
}

// ---- smart folders

static Outcome outcomeOf(const LauncherHistory::Made& made) {
    return made ? Outcome() : std::unexpected(made.error());
}

LayoutPlace LauncherEditor::placeFor(Mode mode, const std::optional<LayoutPlace>& place) const {
    const LiveLayout& layout = _layouts[mode];
    return place ? *place
                 : pastePlace(layout.document(), layout.navigation().position(), layout.capacities());
}

Outcome LauncherEditor::addSmartFolder(Mode mode, const SmartFolderDefinition& definition,
                                       const std::optional<LayoutPlace>& place,
                                       std::function<void()> takenBack) {
    if (auto guarded = _history.guard(mode); !guarded)
        return guarded;
    const LiveLayout& layout = _layouts[mode];
    auto document = tessellar::addSmartFolder(layout.document(), definition.id, placeFor(mode, place),
                                              layout.capacities());
    if (!document)
        return std::unexpected(launcherError(document.error()));
    const auto made = _history.make({.name = editName(EditKind::addSmartFolder),
                                     .mode = mode,
                                     .document = *std::move(document),
                                     .definitions = _smartFolders.definitions() + QList{definition},
                                     .takenBack = std::move(takenBack)});
    if (made)
        _layouts[mode].navigation().reveal(definition.id);
    return outcomeOf(made);
}

Outcome LauncherEditor::addSmartFolder(Mode mode, SmartFolderTemplate which) {
    return addSmartFolder(
        mode, templateDefinition(which, _machine.uuids.next(), _machine.clock.now(), _machine.uuids));
}

Outcome LauncherEditor::addSmartFolderTile(Mode mode, const QUuid& definitionID,
                                           const std::optional<LayoutPlace>& place) {
    if (!_smartFolders.definition(definitionID))
        return std::unexpected(noSuchSmartFolder());
    const auto added =
        _history.edit(mode, editName(EditKind::addSmartFolder), [&](const LayoutDocument& layout) {
            return tessellar::addSmartFolder(layout, definitionID, placeFor(mode, place),
                                             _layouts[mode].capacities());
        });
    if (added)
        _layouts[mode].navigation().reveal(definitionID);
    return added;
}

Outcome LauncherEditor::removeSmartFolderTile(Mode mode, const QUuid& definitionID) {
    const LaunchpadItem* tile = _layouts[mode].item(definitionID);
    if (!tile || !tile->smartFolder())
        return std::unexpected(noSuchSmartFolder());
    return _history.edit(mode, editName(EditKind::removeSmartFolderTile),
                         [&](const LayoutDocument& layout) -> EditResult {
                             return removeSmartFolder(layout, definitionID);
                         });
}

Outcome LauncherEditor::changeSmartFolder(Mode mode, SmartFolderDefinition definition,
                                          std::function<void()> takenBack) {
    definition.modifiedAt = _machine.clock.now();
    QList<SmartFolderDefinition> definitions = _smartFolders.definitions();
    const auto found = std::ranges::find(definitions, definition.id, &SmartFolderDefinition::id);
    if (found == definitions.end())
        return std::unexpected(noSuchSmartFolder());
    *found = std::move(definition);
    return outcomeOf(_history.make({.name = editName(EditKind::changeSmartFolder),
                                    .mode = mode,
                                    .definitions = definitions,
                                    .takenBack = std::move(takenBack)}));
}

Outcome LauncherEditor::deleteSmartFolder(Mode mode, const QUuid& definitionID) {
    QList<SmartFolderDefinition> definitions = _smartFolders.definitions();
    if (!definitions.removeIf([&](const SmartFolderDefinition& d) { return d.id == definitionID; }))
        return std::unexpected(noSuchSmartFolder());
    return outcomeOf(_history.make(
        {.name = editName(EditKind::deleteSmartFolder),
         .mode = mode,
         .document = removeSmartFolder(_layouts[mode].document(), definitionID),
         .otherDocument = removeSmartFolder(_layouts[otherMode(mode)].document(), definitionID),
         .definitions = definitions}));
}

} // namespace tessellar
