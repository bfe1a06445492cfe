#include "launcher/step_writer.h"

#include "platform/machine.h"

namespace tessellar {

StepWriter::StepWriter(const Machine& machine, StepJournal& journal)
    : _machine(machine), _journal(journal) {}

StepWriter::~StepWriter() {
    if (isWriting())
        _ended.wait();
}

void StepWriter::write(Job job, Done done) {
    // Shared: the worker may still be leaving `set_value` when a wait ends.
    const auto ended = std::make_shared<std::promise<Ended>>();
    _ended = ended->get_future();
    _done = std::move(done);
    // If somebody has waited for it, another job may be under way by then.
    auto told = _lifetime.guard([this, number = ++_number] {
        if (number == _number)
            (void)finish();
    });
    _machine.workers.submit(Lane::saving, {},
                            [this, ended, job = std::move(job), told = std::move(told),
                             &mailbox = _machine.workers.mailbox()](std::stop_token) mutable {
                                ended->set_value(run(std::move(job)));
                                mailbox.post(std::move(told));
                            });
}

StepWriter::Outcome StepWriter::finish() {
    Outcome outcome;
    while (isWriting()) { // `done` may begin another
        const Ended ended = _ended.get();
        if (outcome)
            outcome = ended.outcome;
        std::exchange(_done, nullptr)(ended);
    }
    return outcome;
}

StepWriter::Ended StepWriter::run(Job job) const {
    Ended ended{.outcome = {}, .before = std::move(job.before)};
    const auto carryOut = [&](const std::vector<Call>& calls) {
        for (const Call& call : calls)
            if (ended.outcome)
                ended.outcome = call();
    };
    const auto note = [&](const std::expected<void, FileError>& noted) {
        if (!noted)
            ended.outcome = std::unexpected(launcherError(noted.error(), couldNotSaveLayout()));
    };
    carryOut(job.first);
    if (!ended.outcome)
        return ended;
    // As stored: absent settings become absent again.
    if (auto& settings = ended.before.settings)
        for (auto setting = settings->begin(); setting != settings->end(); ++setting)
            *setting = _machine.settings.value(setting.key()).value_or(QJsonValue());
    if (ended.before.importRecord)
        ended.before.importRecord = _journal.importRecord();
    if (job.isNoted)
        note(_journal.begin(ended.before, job.after));
    if (!ended.outcome) {
        // The journal may have been written all the same; it describes files that have not changed.
        (void)_journal.end();
        return ended;
    }
    ended.isBegun = true;
    carryOut(job.files);
    if (job.isNoted && ended.outcome)
        note(_journal.end());
    return ended;
}

} // namespace tessellar
