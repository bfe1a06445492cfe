#pragma once

#include "launcher/launcher_error.h"
#include "platform/lifetime.h"
#include "platform/settings.h"
#include "platform/signal.h"

#include <expected>
#include <functional>
#include <list>

namespace tessellar {

class LauncherHistory;
struct Machine;

/// Settings with changes that are not written.
struct ChangedSettings final : Settings {
    using Changes = QMap<QString, QJsonValue>; ///< null removes

    explicit ChangedSettings(const Settings& settings, std::list<Changes> made = {})
        : before(settings), changes(std::move(made)) {}

    QMap<QString, QJsonValue> values() const override;
    std::expected<void, FileError> set(const Changes& more) override;

    const Settings& before;
    std::list<Changes> changes; ///< in call order
};

/// Changes the user's settings while the launcher runs: they are written on a worker, in call order,
/// and hold once they are on the disk. Main thread only.
class LauncherSettings {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(Outcome)>;

    LauncherSettings(Machine& machine, LauncherHistory& history);

    /// Validates and stores a value of the table of settings; null removes it, even for keys that are
    /// not in the table. `done` is called when it holds, or with the error: at once if it is refused.
    void store(const QString& key, const QJsonValue& value, Done done = {});
    /// Stores all of these values or none, unchecked; null removes one. Written even if the launcher
    /// ends meanwhile, but then `done` is not called.
    void store(const QMap<QString, QJsonValue>& changes, Done done = {});

    /// Blocks until everything so far has been written.
    static void flush(const Machine& machine);
    /// Stores in the same order, and blocks until it is done: for what is part of a larger step.
    static std::expected<void, FileError> storeNow(const Machine& machine,
                                                   const QMap<QString, QJsonValue>& changes);
    /// The settings as they will be once everything has been written: what a sheet shows.
    const Settings& expected() const { return _expected; }

    Signal<> stored; ///< before `done`

private:
    Machine& _machine;
    LauncherHistory& _history;
    ChangedSettings _expected;
    Lifetime _lifetime;
};

} // namespace tessellar
