#pragma once

#include "torture/cases.h"
#include "torture/laws.h"

namespace tessellar::torture {

/// What came of a case.
struct Verdict {
    QByteArray fault;       ///< the law that was broken, and how; empty where all were kept
    bool wasReached = true; ///< false where the call never came: threads went another way
};

class Injection;

/// Carries out cases on a small Mac, and has the laws judge them.
class Trials {
public:
    const SmallMac& mac() const { return _mac; }

    /// The calls that a case of this row, "call", "served" or "started", may befall. Throws where the
    /// command fails without any fault.
    QList<Site> sites(const QByteArray& row, const Command& command);

    Verdict judge(const Case& one);

private:
    Verdict judgeCall(const Command& command, const QByteArrayList& parts);
    Verdict judgeDamage(const QByteArrayList& parts);
    Verdict judgeTogether(const QByteArrayList& parts);

    Ending run(const QByteArray& row, const Command& command, Injection& injection) const;
    /// A launcher that is running serves the command; at its answer it is killed, so that what it has
    /// put off is lost. It leaves in its own way where it has said that something failed. Faults befall
    /// it until the command reaches it, or from then on.
    Ending runServed(const Command& command, Injection& injection, bool fromThenOn) const;

    SmallMac _mac;
    Laws _laws{_mac};
};

} // namespace tessellar::torture
