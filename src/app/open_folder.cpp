#include "app/open_folder.h"

#include "launcher/smart_folder_library.h"
#include "platform/uuid_source.h"

namespace tessellar {

OpenFolder::OpenFolder(LauncherViewModel& viewModel, const TileFacts& facts)
    : _viewModel(viewModel), _tiles(facts) {
    connect(&_tiles, &GridModel::turned, this,
            [this](int page) { _viewModel.shown().navigation().setFolderPage(page); });
}

void OpenFolder::refresh() {
    // Every tile is connected to `changed`, so it is not emitted while the folder stays closed.
    if (!std::exchange(_wasOpen, isOpen()) && !isOpen())
        return;
    if (const auto open = _viewModel.shown().navigation().openFolder()) {
        _tileId = toText(open->id);
        _title = open->name;
        _notice = rulesDecide() ? _viewModel.smartFolders().notice(open->id, _viewModel.shown().mode())
                                : QString();
        _shown = _viewModel.shown().shownPages(*open);
        _tiles.setPages(_shown);
        _tiles.setPage(_viewModel.shown().navigation().folderStack().last().page);
    }
    Q_EMIT changed();
}

void OpenFolder::close() {
    LiveLayout& layout = _viewModel.shown();
    if (layout.navigation().folderStack().isEmpty())
        return;
    const QUuid folder = layout.navigation().folderStack().last().id;
    layout.navigation().closeFolder();
    if (layout.navigation().selectedItemID())
        layout.navigation().select(folder);
}

void OpenFolder::layOut(QSizeF window, const GridMetrics& grid) {
    const qsizetype tiles = _shown.count() > 0 ? _shown.tiles(0).size() : 0;
    const FolderMetrics metrics =
        folderMetrics(window, grid, _viewModel.shown().settings(), tiles, _shown.count());
    _tiles.setMetrics(metrics.grid);
    if (std::exchange(_panel, metrics.panel) != metrics.panel)
        Q_EMIT panelChanged();
}

} // namespace tessellar
