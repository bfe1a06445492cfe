#pragma once

#include "torture/cases.h"
#include "torture/laws.h"

namespace tessellar::torture {

/// What came of a case.
struct Verdict {
    QByteArray fault;       ///< the law that was broken, and how; empty where all were kept
    bool wasReached = true; ///< false where the call never came: threads went another way
};

/// Carries out cases on a small Mac, and has the laws judge them.
class Trials {
public:
    explicit Trials(const QByteArray& folder) : _mac(folder), _laws(_mac) {}

    SmallMac& mac() { return _mac; }

    /// The calls that a command makes; nothing where it fails without any fault.
    std::optional<QList<Site>> sites(const Command& command);
    /// When faults befall a launcher: until the command reaches it, or from then on.
    enum class Phase { starting, serving };
    /// The calls that a launcher makes in that phase.
    std::optional<QList<Site>> servedSites(const Command& command, Phase phase);

    Verdict judge(const Case& one);

private:
    Verdict judgeCall(const Command& command, const QByteArrayList& parts);
    Verdict judgeDamage(const QByteArrayList& parts);
    Verdict judgeTogether(const QByteArrayList& parts);

    /// A launcher that is running serves the command; at its answer it is killed, so that what it has
    /// put off is lost. It leaves in its own way where it has said that something failed.
    Ending runServed(const Command& command, const Programs::Decide& decide, Phase phase);

    SmallMac _mac;
    Laws _laws;
};

} // namespace tessellar::torture
