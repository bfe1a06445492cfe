#pragma once

#include <QImage>
#include <QList>
#include <QSize>
#include <QStringList>

namespace tessellar {

// Drawings of the launcher's own, rendered to images once rather than in every frame.

/// A folder's tile: at most nine small icons of its contents on a translucent plate.
QImage folderArt(const QList<QImage>& contents, int side);

/// The names of all available symbols.
QStringList drawnSymbols();
/// True if both names give the same drawing: ".fill" makes no difference.
bool isSameSymbol(QStringView a, QStringView b);
/// A folder's tile with a symbol, by name ("star", "gamecontroller.fill"). Null if the name is unknown.
QImage symbolFolderArt(const QString& symbolName, int side);
/// A smart folder's tile, on a plate of its own colours: its symbol if available, else its contents,
/// else the generic symbol of smart folders.
QImage smartFolderArt(const QList<QImage>& contents, const QString& symbolName, int side);

/// A thumbnail of a page.
QImage pageArt(const QList<QImage>& tiles, int rows, int columns, QSize size, bool isMirrored);

} // namespace tessellar
