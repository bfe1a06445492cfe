#pragma once

#include "torture/small_mac.h"

#include <QList>

namespace tessellar::torture {

/// One thing that is done to the program: a name of its own, from which it can be done again. The first
/// part is its row in the table.
///
///     call:COMMAND:CALL:PATH:N:ERROR   the Nth such call fails once; with a "+" at the end, from then
///     on
///                                      all that would change the disk fail, or all on that path
///     kill:COMMAND:CALL:PATH:N:WHEN    the program dies there, "before" or "after"
///     served:COMMAND:CALL:PATH:N:FATE  both, in a launcher that is running and carries the command out
///     started:COMMAND:CALL:PATH:N:FATE  while such a launcher starts; it serves without a fault then
///     bits:FILE:N                      a bit of a file of the launcher's is turned over
///     cut:FILE:N                       the file ends there
///     together:SERVED:N                some commands at once, "served" by a launcher or "alone"
using Case = QByteArray;

/// A call that a command makes on the small Mac, as cases name it.
struct Site {
    QByteArray call;
    QByteArray path;
    int number = 0; ///< among those of its kind and path, from 1
    SystemCall::Kind kind = SystemCall::Kind::reads;

    QByteArray name() const { return call + ':' + path + ':' + QByteArray::number(number); }
};

/// The commands that cases are made of: all that write, and those that scan.
const QList<Command>& commands();
/// Those that may run in any order, and at once, with the same result.
const QByteArrayList& independentCommands();
const Command* commandNamed(const QByteArray& name);

/// The numbers of errors by their names.
const QMap<QByteArray, int>& errors();

/// All cases, those first that tell most: a budget of time that ends takes from each command and each
/// kind of case alike.
class CaseList {
public:
    explicit CaseList(unsigned seed) : _seed(seed) {}

    /// Of the command, "call", or of a launcher that serves it, "served", or that "started" before.
    void addCalls(const QByteArray& row, const Command& command, const QList<Site>& sites);
    void addDamage(const QByteArray& file, qsizetype size);
    void addTogether();

    /// One of each bucket in turn, in an order that the seed says.
    QList<Case> drawn() const;

private:
    void add(const QByteArray& bucket, const Case& one) { _buckets[bucket].append(one); }

    unsigned _seed;
    QMap<QByteArray, QList<Case>> _buckets;
};

} // namespace tessellar::torture
