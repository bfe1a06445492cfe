#pragma once

#include <QImage>
#include <QList>
#include <QSize>
#include <QStringList>

namespace tessellar {

// What the launcher draws itself, as images: they are drawn once, not in every frame.

/// A folder's tile: the icons of what is in it, at most nine, small on a translucent plate.
QImage folderArt(const QList<QImage>& contents, int side);

/// The names of all symbols that are drawn.
QStringList drawnSymbols();
/// True when two names mean the same drawing: what is filled is not drawn otherwise.
bool isSameSymbol(QStringView a, QStringView b);
/// A folder's tile with a symbol that the user chose, by its name ("star", "gamecontroller.fill"). A
/// name that is not among the drawn ones gives a null image.
QImage symbolFolderArt(const QString& symbolName, int side);
/// A smart folder's tile, on a plate of its own colours: its symbol where that is drawn, else what it
/// shows, else the sign of smart folders.
QImage smartFolderArt(const QList<QImage>& contents, const QString& symbolName, int side);

/// A page of the grid in small.
QImage pageArt(const QList<QImage>& tiles, int rows, int columns, QSize size, bool isMirrored);

} // namespace tessellar
