#pragma once

#include "torture/small_mac.h"

namespace tessellar::torture {

/// What may be otherwise than the laws have it.
struct Lenience {
    bool mayFailLate = false;    ///< after the last moment in which it could be taken back
    bool warnsElsewhere = false; ///< in the launcher's log
    /// The registry of smart folders cannot be read for as long as the program runs, and is then set
    /// aside, byte for byte, until the user puts it back.
    bool hidesRegistry = false;
    bool hidesSome = false;  ///< a read failed: a scan may have seen less than there is
    bool deniesLock = false; ///< for as long as the program runs: then nothing may change
};

/// By which it is judged what came of a fault:
///
/// 1. A program ends in time, by itself.
/// 2. Every file is whole; nothing is set aside that was; no heap of temporary files is left; of an
///    arrangement that another took the place of there is a copy.
/// 3. After success what the command does is on the disk, and nothing else is.
/// 4. A failure that was said is the last word that is true.
/// 5. After failure all of it is there or none of it, at the latest once the next command has started;
///    what went into the Trash comes back. So it is after death, of which a client of a launcher knows
///    no more than that it had no answer.
/// 6. What has failed can be done again.
class Laws {
public:
    explicit Laws(SmallMac& mac) : _mac(mac) {}

    /// Learns what the command leads to without a fault; puts the Mac back for the trial.
    void prepare(const Command& command);
    /// The law that was broken, and how; empty where all were kept.
    QByteArray broken(const Command& command, const Ending& ending, Lenience lenience = {});
    /// Of the second law alone.
    QByteArray brokenFile(Lenience lenience = {}) const;

private:
    /// The states around a command without a fault.
    struct Reference {
        State before, after;
        State settledAfter; ///< once the next command has started
        State allBack;      ///< once all has come back from the Trash, where it went there
        QList<State>
            between; ///< where the lines of a batch lead that is cut off, or of which one fails
    };
    const Reference& reference(const Command& command);
    QList<State> statesWithin(const Command& command);
    State now() const;

    bool isSettledByTheNext(const Command& command, const State& wanted);
    bool isWhole(const Command& command, bool werePlacesKept = false);
    bool arePlacesKept(const Command& command);
    bool isCopyKept() const;
    bool comesBack(const Command& command);
    bool holdsAll(const Command& command);
    QByteArray putRegistryBack();

    SmallMac& _mac;
    QMap<QByteArray, Reference> _references;
};

} // namespace tessellar::torture
