#pragma once

#include "app/open_folder.h"
#include "app/tile_navigation.h"
#include "app/tile_search.h"

namespace tessellar {

/// The selected tiles of what is shown: the search results, where at most one is selected, the open
/// folder, or the grid. A selection never spans pages.
class TileSelection final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")

public:
    TileSelection(LauncherViewModel& viewModel, GridModel& grid, OpenFolder& folder,
                  TileSearch& search);

    /// The tiles that can be selected: search results, open folder or grid.
    GridModel& shown() const;
    QStringList ids() const;
    bool contains(const QUuid& tile) const;
    /// The one that was selected last.
    std::optional<QUuid> last() const;
    /// The slot next to that.
    std::optional<ShownPlace> beside(Direction direction) const;

    /// Selects only these tiles of the page, or adds them to the selection.
    Q_INVOKABLE void select(const QStringList& tileIds, bool adds);
    /// Adds a tile, which becomes the anchor, or removes it.
    void toggle(const QUuid& tile);
    /// Selects everything from the anchor to a tile of the current page.
    void extendTo(const QUuid& tile);
    /// Selects the tile next to the last one, on the next page if necessary; or extends the selection
    /// to it.
    void move(Direction direction, bool extends);
    void clear();
    /// Deselects the tiles of other pages, after the page was turned.
    void keepToPage();
    void deselectHidden();

private:
    LayoutNavigation& navigation() const { return _viewModel.shown().navigation(); }
    QList<QUuid> inOrder() const;
    void deselectIf(const std::function<bool(const QUuid&)>& isGone);

    LauncherViewModel& _viewModel;
    GridModel& _grid;
    OpenFolder& _folder;
    TileSearch& _search;
};

} // namespace tessellar
