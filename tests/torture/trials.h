#pragma once

#include "torture/cases.h"

namespace tessellar::torture {

/// What came of a case.
struct Verdict {
    QByteArray fault;       ///< the law that was broken, and how; empty where all were kept
    bool wasReached = true; ///< false where the call never came: threads went another way
};

/// Carries out cases on a small Mac and judges them by laws:
///  - a program ends in time, by itself;
///  - every file is whole, nothing is set aside that was, and no heap of temporary files is left;
///  - after success, what a command does is on the disk, and nothing else is;
///  - after failure or death all of it is there or none of it, at the latest when the next command has
///  started;
///    failure that was said is the last word that is true;
///  - what has failed can be done again.
class Trials {
public:
    explicit Trials(const QByteArray& folder) : _mac(folder) {}

    SmallMac& mac() { return _mac; }

    /// The calls that a command makes; nothing where it fails without any fault.
    std::optional<QList<Site>> sites(const Command& command);
    /// Those that a launcher makes that is running, from the moment in which the command reaches it.
    std::optional<QList<Site>> servedSites(const Command& command);

    Verdict judge(const Case& one);

private:
    /// The states around a command without a fault.
    struct Reference {
        State before, after;
        State settledAfter; ///< once the next command has started
    };
    const Reference& reference(const Command& command);

    Verdict judgeCall(const QByteArrayList& parts);
    Verdict judgeServed(const QByteArrayList& parts);
    Verdict judgeLimit(const QByteArrayList& parts);
    Verdict judgeDamage(const QByteArrayList& parts);
    Verdict judgeTogether(const QByteArrayList& parts);

    QByteArray brokenLaw(const Command& command, const Ending& ending, bool mayFailLate);
    QByteArray brokenFile() const;
    QByteArray putRegistryBack();
    /// Runs the command with this limit or fault, beside a launcher where there is one.
    Ending runServed(const Command& command, const Programs::Decide& decide, bool& isServing);

    SmallMac _mac;
    QMap<QByteArray, Reference> _references;
};

} // namespace tessellar::torture
