#pragma once

#include "app/grid_model.h"

namespace tessellar {

enum class Direction { left, right, up, down };

/// The tile that an arrow key leads to: left and right along the row, continuing in the same row of the
/// neighbouring page; up and down within the page. If that slot is empty, the nearest tile before it;
/// unchanged if there is none. If `from` is not a tile of `page`, the page's first tile.
std::optional<ShownPlace> neighbour(const TilePages& pages, const GridGeometry& geometry,
                                    qsizetype page, std::optional<qsizetype> from, Direction direction);

} // namespace tessellar
