#include "launcher/launcher_settings.h"

#include "launcher/launcher_history.h"
#include "launcher/setting_table.h"
#include "platform/machine.h"
#include "platform/texts.h"

#include <future>
#include <memory>

namespace tessellar {

LauncherSettings::LauncherSettings(Machine& machine, LauncherHistory& history)
    : _machine(machine), _history(history), _expected(machine.settings) {
    history.setExpectedSettings(_expected);
}

QMap<QString, QJsonValue> ChangedSettings::values() const {
    QMap<QString, QJsonValue> values = before.values();
    for (const Changes& each : changes)
        for (auto it = each.begin(); it != each.end(); ++it)
            it->isNull() ? void(values.remove(it.key())) : void(values.insert(it.key(), *it));
    return values;
}

std::expected<void, FileError> ChangedSettings::set(const Changes& more) {
    changes.push_back(more);
    return {};
}

/// Runs `call` on the saving lane, after what is queued there.
static void inTurn(WorkerPool& workers, const std::function<void()>& call) {
    // Shared: the worker may still be leaving `set_value` when the wait ends.
    const auto done = std::make_shared<std::promise<void>>();
    workers.submit(Lane::saving, {}, [&call, done](std::stop_token) {
        call();
        done->set_value();
    });
    done->get_future().wait();
}

void LauncherSettings::flush(const Machine& machine) {
    inTurn(machine.workers, [] {});
}

std::expected<void, FileError> LauncherSettings::storeNow(const Machine& machine,
                                                          const QMap<QString, QJsonValue>& changes) {
    std::expected<void, FileError> stored;
    inTurn(machine.workers, [&] { stored = machine.settings.set(changes); });
    return stored;
}

void LauncherSettings::store(const QString& key, const QJsonValue& value, Done done) {
    if (const auto refused = refusal(key, value))
        return done ? done(std::unexpected(*refused)) : void();
    store({{key, value}}, std::move(done));
}

void LauncherSettings::store(const QMap<QString, QJsonValue>& changes, Done done) {
    (void)_history.settle(); // a failed step's rollback must not revert this later
    (void)_expected.set(changes);
    auto written =
        _lifetime.guard([this, done = std::move(done)](const std::expected<void, FileError>& outcome) {
            _expected.changes.pop_front();
            if (outcome)
                stored.notify();
            if (done)
                done(outcome ? Outcome()
                             : std::unexpected(launcherError(outcome.error(),
                                                             Texts::tr("Could not save setting"))));
        });
    _machine.workers.submit(Lane::saving, {},
                            [&settings = _machine.settings, &mailbox = _machine.workers.mailbox(),
                             changes, written = std::move(written)](std::stop_token) mutable {
                                mailbox.post(
                                    [written = std::move(written),
                                     outcome = settings.set(changes)]() mutable { written(outcome); });
                            });
}

} // namespace tessellar
