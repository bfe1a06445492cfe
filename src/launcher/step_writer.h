#pragma once

#include "launcher/launcher_error.h"
#include "launcher/step_journal.h"
#include "platform/lifetime.h"

#include <cstdint>
#include <functional>
#include <future>
#include <vector>

namespace tessellar {

/// Writes the files of one step as a unit on the saving lane, after everything that was to be saved
/// before it, with the journal if there are several.
///
/// Main thread only, except for the calls in a `Job`. Destroying it waits for the job under way.
class StepWriter {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Call = std::function<Outcome()>;
    struct Job {
        std::vector<Call> first;   ///< to be done before the step changes anything
        StepJournal::Files before; ///< settings and import record as keys only: their values are read
        StepJournal::Files after;
        bool isNoted = false; ///< in the journal
        std::vector<Call> files;
    };
    struct Ended {
        Outcome outcome;
        StepJournal::Files before;
        bool isBegun = false; ///< files may have been changed
    };
    using Done = std::function<void(const Ended&)>;

    StepWriter(const Machine& machine, StepJournal& journal);
    ~StepWriter();
    StepWriter(const StepWriter&) = delete;
    StepWriter& operator=(const StepWriter&) = delete;

    bool isWriting() const { return _ended.valid(); }
    /// `done` is called on the main thread. Must not be writing.
    void write(Job job, Done done);
    /// Blocks until nothing is being written and `done` has been called. Fails if what was written did.
    Outcome finish();

private:
    /// On the saving lane.
    Ended run(Job job) const;

    const Machine& _machine;
    StepJournal& _journal;
    std::future<Ended> _ended; ///< valid while writing
    Done _done;
    std::uint64_t _number = 0; ///< of the last job
    Lifetime _lifetime;
};

} // namespace tessellar
