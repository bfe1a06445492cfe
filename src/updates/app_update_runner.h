#pragma once

#include "platform/lifetime.h"
#include "platform/opener.h"
#include "updates/app_update_action.h"

#include <deque>

namespace tessellar {

class AppUpdateChannels;
class KnownAppUpdates;

/// A question for the user before updating.
struct AppUpdateQuestion {
    QString title;
    QString text;

    bool operator==(const AppUpdateQuestion&) const = default;
};

/// A running update, stored on disk so that the next run of the launcher can resume following it.
struct AppUpdateRun {
    QString appKey;
    QString updaterName;
    qint64 processNumber = 0;
    Instant startedAt;
    std::optional<QString> installedVersion; ///< before the update
    std::optional<QString> installedBuild;

    bool operator==(const AppUpdateRun&) const = default;
};

/// Updates applications, one at a time. Commands run detached from the launcher, write their output to
/// a file and are followed there; if the launcher quits, the next run resumes following. Success is
/// judged by what is installed afterwards. Main thread only.
class AppUpdateRunner {
public:
    /// Reads the bundles again, checks them if possible, then calls `done`.
    using Verify = std::function<void(const QStringList& appKeys, std::function<void()> done)>;
    using Answer = std::function<void(bool confirmed)>;
    using Asker = std::function<void(const AppUpdateQuestion&, Answer)>;
    using Done = std::function<void()>;

    static constexpr std::chrono::milliseconds pollInterval{500};
    static constexpr std::chrono::hours commandTimeout{2};
    /// How long to wait after asking a command to end.
    static constexpr std::chrono::seconds terminationGrace{30};

    /// Sends `known`'s events about updates.
    AppUpdateRunner(Machine& machine, const AppUpdateChannels& channels, KnownAppUpdates& known,
                    Verify verify);
    ~AppUpdateRunner();
    AppUpdateRunner(const AppUpdateRunner&) = delete;
    AppUpdateRunner& operator=(const AppUpdateRunner&) = delete;

    /// The update left running by an earlier launcher. Thread-safe.
    static std::optional<AppUpdateRun> interruptedRun(const Machine& machine);
    /// True while the command left running still runs. Must not be called by the launcher that started
    /// it, as that would lose the exit status. Thread-safe.
    static bool isInterruptedRunActive(const Machine& machine);
    /// Resumes following it; no other update starts before it has ended.
    void resume(const AppUpdateRun& run);

    /// What to ask before updating these; nullopt if no command would run.
    std::optional<AppUpdateQuestion> question(const QStringList& appKeys) const;
    /// Updates the applications in order, after asking once. If several, only those updated by
    /// commands: each other one would open a window. While an update runs: joins it if it includes
    /// all of these, else returns false and never calls `done`. Otherwise `done` is called at the end
    /// in any case, and `state` has the result.
    bool update(const QStringList& appKeys, const Asker& ask, Done done = {});
    /// Ends the running command and clears the queue.
    void cancel();

    bool isBusy() const { return _active.has_value(); }
    /// True while a command runs that may show its own windows, such as a password prompt.
    bool isExternalUpdaterRunning() const { return _run && !_isVerifying; }
    const std::optional<QString>& activeAppKey() const { return _active; }
    /// True while following a command started by an earlier launcher.
    bool isResumed() const { return _run && _isResumed; }
    /// The state of the application's current or last update.
    std::optional<AppUpdateActionState> state(const QString& appKey) const;

private:
    struct Start;
    struct PollResult;

    void askFirst(const QStringList& appKeys, const Asker& ask);
    void next();
    void run(const QString& appKey, const AppUpdateCommand& command);
    void started(const Start& start);
    void poll();
    void polled(const PollResult& seen);
    void ended(const DetachedState& state);
    void verified(const DetachedState& state);
    void open(const QString& appKey, const AppUpdateAction& action);
    void finish(const QString& appKey, const AppUpdateActionState& state);
    void set(const QString& appKey, const AppUpdateActionState& state);

    static QString journalPath(const Machine& machine);
    static QString outputPath(const Machine& machine);

    Machine& _machine;
    const AppUpdateChannels& _channels;
    KnownAppUpdates& _known;
    Verify _verify;
    Opener _opener;
    QHash<QString, AppUpdateActionState> _states;
    std::deque<QString> _waiting;
    std::optional<QString> _active;
    std::vector<Done> _done;

    std::optional<AppUpdateRun> _run; ///< while its command runs
    QList<QByteArray> _lines;         ///< the last lines of output
    /// How long the command was seen running, without clock changes and sleep.
    std::chrono::duration<double> _seen{0};
    std::optional<Instant> _polledAt;
    std::optional<std::chrono::duration<double>> _terminatedAfter; ///< value of `_seen`
    bool _isResumed = false;
    bool _isCancelled = false;
    bool _isTimedOut = false;
    bool _isPolling = false;
    bool _isVerifying = false;
    Timer _nextPoll;
    Task _work;
    Lifetime _lifetime;
};

namespace json {

template <>
struct Fields<AppUpdateRun> {
    using R = AppUpdateRun;
    static constexpr auto list =
        fields(required("appKey", &R::appKey), required("updater", &R::updaterName),
               required("process", &R::processNumber), required("startedAt", &R::startedAt),
               optional("installedVersion", &R::installedVersion),
               optional("installedBuild", &R::installedBuild));
};

} // namespace json
} // namespace tessellar
