#pragma once

#include <QByteArray>
#include <QMap>
#include <QSet>

namespace tessellar::torture {

/// What the launcher keeps of the user's, and where things lie: the contents of its durable files, and
/// the names of all others. By paths below the root; identifiers and stamps that are new are numbered,
/// so that two runs of one command come to the same.
using State = QMap<QByteArray, QByteArray>;

/// In what two states differ, for people: the first difference, and the paths of the others.
QByteArray difference(const State& expected, const State& actual);

/// Without where things stood when a program last started, which one more or less changes.
State withoutPlaces(State state);
/// What a program said, for people.
QByteArray shortened(const QByteArray& text);

/// Identifiers, and the tags of stamped names.
QSet<QByteArray> identifiersIn(const QByteArray& text);
/// Gives those that are not known numbers, in the order in which they come.
QByteArray withNumberedIdentifiers(const QByteArray& text, const QSet<QByteArray>& known,
                                   QMap<QByteArray, QByteArray>& numbers);
/// A path with what differs from run to run replaced: the "-2026-11-14T12-00-00Z-1A2B3C4D" of a name,
/// or the identifier that it is.
QByteArray withoutStamps(const QByteArray& path);
/// A document's bytes in one form, without where files lie on the disk, which differs each time that
/// they are put back; the bytes of anything else as they are.
QByteArray withoutIdentities(const QByteArray& bytes);

} // namespace tessellar::torture
