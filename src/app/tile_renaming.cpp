#include "app/tile_renaming.h"

#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"

#include <algorithm>

namespace tessellar {

void TileRenaming::begin(const QString& tileId) {
    const LaunchpadItem* item = _viewModel.shown().item(QUuid::fromString(tileId));
    const bool isFixed =
        item && item->smartFolder() && !_viewModel.smartFolders().definition(item->id());
    if (!item || isFixed)
        return;
    _tile = item->id();
    Q_EMIT changed();
}

void TileRenaming::nameFolderAround(const QUuid& tile) {
    std::optional<QUuid> folder;
    forEachItem(_viewModel.shown().pages(), [&](const LaunchpadItem& item) {
        const FolderEntry* entry = item.folder();
        for (const Page& page : entry ? entry->pages : Pages())
            if (std::ranges::find(page, tile, &LaunchpadItem::id) != page.end())
                folder = item.id();
        return true;
    });
    if (folder && _viewModel.shown().navigation().openFolder(*folder))
        begin(toText(*folder));
}

void TileRenaming::end(const QString& name) {
    const auto tile = std::exchange(_tile, std::nullopt);
    if (!tile)
        return;
    Q_EMIT changed();
    const LaunchpadItem* item = _viewModel.shown().item(*tile);
    if (!item || trimmed(name).isEmpty())
        return;
    _viewModel.messages().report(_viewModel.editor().rename(_viewModel.shown().mode(), *tile, name));
}

void TileRenaming::cancel() {
    if (std::exchange(_tile, std::nullopt))
        Q_EMIT changed();
}

void TileRenaming::refresh() {
    if (_tile && !_viewModel.shown().item(*_tile))
        cancel();
}

} // namespace tessellar
