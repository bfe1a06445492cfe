#pragma once

#include "app/grid_model.h"

namespace tessellar {

enum class Direction { left, right, up, down };

/// The tile that an arrow key leads to from one: along its row, and from the end of a row to the same
/// row of the neighbouring page; up and down within the page. Where there is no tile in that row, the
/// nearest before it. Stays where nothing follows. Without a tile of `page` to begin from, its first
/// one.
std::optional<ShownPlace> neighbour(const TilePages& pages, const GridGeometry& geometry,
                                    qsizetype page, std::optional<qsizetype> from, Direction direction);

} // namespace tessellar
