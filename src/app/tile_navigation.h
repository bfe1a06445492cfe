#pragma once

#include "editing/grid_geometry.h"

namespace tessellar {

enum class Direction { left, right, up, down };

/// The tile that an arrow key leads to from one: along its row, and from the end of a row to the same
/// row of the neighbouring page; up and down within the page. Where there is no tile in that row, the
/// nearest before it. Stays where nothing follows. Without a tile to begin from (`from` empty or no
/// longer shown), the first one of `page`.
std::optional<ShownPlace> neighbour(const ShownPages& pages, const GridGeometry& geometry,
                                    qsizetype page, std::optional<ShownPlace> from,
                                    Direction direction);

} // namespace tessellar
