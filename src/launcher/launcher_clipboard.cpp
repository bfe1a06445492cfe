#include "launcher/launcher_clipboard.h"

#include "editing/tile_paste.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

namespace tessellar {

LauncherClipboard::LauncherClipboard(Machine& machine, Pasteboard* pasteboard, LauncherHistory& history,
                                     LiveLayouts& layouts, SmartFolderLibrary& smartFolders,
                                     LauncherMessages& messages)
    : _machine(machine)
    , _clipboard(pasteboard ? *pasteboard : _ownPasteboard)
    , _history(history)
    , _layouts(layouts)
    , _smartFolders(smartFolders)
    , _messages(messages) {}

LauncherError LauncherClipboard::refusal() {
    return {QStringLiteral("clipboardRefused"),
            Texts::tr("There is nothing to cut, copy or paste there."),
            {}};
}

bool LauncherClipboard::write(Mode mode, const QList<QUuid>& tiles,
                              TileClipboardPayload::Operation operation) {
    Page items;
    for (const QUuid& id : tiles)
        if (const LaunchpadItem* item = _layouts[mode].item(id))
            items.append(*item);
    const bool isCut = operation == TileClipboardPayload::Operation::cut;
    const auto before = std::exchange(_pasted, std::nullopt); // reset before observers are notified
    const bool isWritten =
        _clipboard.write(items, operation, isCut ? std::optional(mode) : std::nullopt);
    if (!isWritten)
        _pasted = before;
    return isWritten;
}

bool LauncherClipboard::copy(Mode mode, const QList<QUuid>& tiles) {
    return write(mode, tiles, TileClipboardPayload::Operation::copy);
}

bool LauncherClipboard::cut(Mode mode, const QList<QUuid>& tiles) {
    return write(mode, tiles, TileClipboardPayload::Operation::cut);
}

QSet<QUuid> LauncherClipboard::cutTiles(Mode mode) const {
    QSet<QUuid> tiles;
    const auto payload = _clipboard.read();
    if (payload && payload->operation == TileClipboardPayload::Operation::cut &&
        payload->sourceMode == mode && payload != _pasted)
        for (const LaunchpadItem& item : payload->items)
            tiles.insert(item.id());
    return tiles;
}

bool LauncherClipboard::paste(Mode mode, const std::optional<LayoutPlace>& place) {
    const auto payload = _clipboard.read();
    if (!payload || !_history.guard(mode))
        return false;
    LiveLayout& layout = _layouts[mode];
    auto pasted = pasteTiles(*payload,
                             {.layout = layout.document(),
                              .mode = mode,
                              .smartFolderDefinitions = _smartFolders.definitions(),
                              .capacities = layout.capacities(),
                              .now = _machine.clock.now()},
                             layout.navigation().position(), _machine.uuids, place);
    if (!pasted)
        return false;
    EditStep step{.name = editName(EditKind::paste, pasted->tiles.size()),
                  .mode = mode,
                  .document = std::move(pasted->layout)};
    if (!pasted->addedDefinitions.isEmpty())
        step.definitions = _smartFolders.definitions() + pasted->addedDefinitions;
    const auto before = std::exchange(_pasted, payload); // set before observers are notified
    step.takenBack = [this, before, payload] {
        if (_pasted == payload)
            _pasted = before;
    };
    if (const auto made = _history.make(std::move(step)); !made) {
        _pasted = before;
        _messages.alert(made.error()); // the definitions could not be saved
        return false;
    }
    layout.navigation().reveal(pasted->tiles.first()); // they may have overflowed to another page
    layout.navigation().select(pasted->tiles);
    return true;
}

} // namespace tessellar
