#pragma once

#include "platform/lifetime.h"
#include "platform/opener.h"
#include "updates/app_update_action.h"

#include <deque>

namespace tessellar {

/// A question to the user before something is done.
struct AppUpdateQuestion {
    QString title;
    QString text;

    bool operator==(const AppUpdateQuestion&) const = default;
};

/// An update that runs, as it is kept on the disk: whoever starts the launcher next takes it up.
struct AppUpdateRun {
    QString appKey;
    QString updaterName;
    qint64 processNumber = 0;
    Instant startedAt;
    std::optional<QString> installedVersion; ///< before it
    std::optional<QString> installedBuild;

    bool operator==(const AppUpdateRun&) const = default;
};

/// Brings applications up to date, one after the other. A command that does so is no child that goes
/// with the launcher: it runs on its own, says what it does into a file, and is followed there. When
/// the launcher ends meanwhile, the next one takes it up. What came of it is told by what is installed
/// afterwards. Main thread.
class AppUpdateRunner {
public:
    /// What it needs to know, and who hears of it.
    class Owner {
    public:
        virtual ~Owner() = default;
        virtual const AppUpdateCandidate* candidate(const QString& appKey) const = 0;
        virtual std::optional<AppUpdateAction> action(const QString& appKey) const = 0;
        /// What the same update brings, itself first.
        virtual QStringList siblings(const QString& appKey) const = 0;
        virtual bool hasUpdate(const QString& appKey) const = 0;
        /// Reads the bundles anew, and checks them where that may be; then `done`.
        virtual void verify(const QStringList& appKeys, std::function<void()> done) = 0;
        virtual void actionChanged(const QString& appKey) = 0;
        virtual void updated(const QString& appKey) = 0;
    };
    using Answer = std::function<void(bool confirmed)>;
    using Asker = std::function<void(const AppUpdateQuestion&, Answer)>;
    using Done = std::function<void()>;

    static constexpr std::chrono::milliseconds lookInterval{500};
    static constexpr std::chrono::hours commandTimeout{2};
    /// How long a command that is asked to end may take.
    static constexpr std::chrono::seconds terminationGrace{30};

    AppUpdateRunner(Machine& machine, Owner& owner);
    ~AppUpdateRunner();
    AppUpdateRunner(const AppUpdateRunner&) = delete;
    AppUpdateRunner& operator=(const AppUpdateRunner&) = delete;

    /// What an earlier launcher left running. Any thread.
    static std::optional<AppUpdateRun> left(const Machine& machine);
    /// True while its command runs. Not to be asked by the launcher that started it, which would miss
    /// how it ended. Any thread.
    static bool isLeftRunning(const Machine& machine);
    /// Takes it up; nothing is begun before it has ended.
    void takeUp(const AppUpdateRun& run);

    /// What the user is to be asked before these are updated: nothing where no command is run.
    std::optional<AppUpdateQuestion> question(const QStringList& appKeys) const;
    /// Updates them in their order, after asking once. Several at once are those that commands update;
    /// the rest would open a window each. False when another update is under way. `done` is called at
    /// the end, whatever came of it, and `state` says what; one that is under way already is joined.
    bool update(const QStringList& appKeys, const Asker& ask, Done done = {});
    /// Ends the command that runs, and begins none of those that wait.
    void cancel();

    bool isBusy() const { return _active.has_value(); }
    /// True while a command runs that may show windows of its own, such as a question for a password.
    bool isExternalUpdaterRunning() const { return _run && !_isVerifying; }
    const std::optional<QString>& activeAppKey() const { return _active; }
    /// True while the command is one that an earlier launcher began.
    bool isTakenUp() const { return _run && _isTakenUp; }
    /// How an update runs, waits, or ended, until its next one begins.
    std::optional<AppUpdateActionState> state(const QString& appKey) const;

private:
    struct Start;
    struct Look;

    void askFirst(const QStringList& appKeys, const Asker& ask);
    void next();
    void run(const QString& appKey, const AppUpdateCommand& command);
    void started(const Start& start);
    void look();
    void looked(const Look& seen);
    void ended(const DetachedState& state);
    void verified(const DetachedState& state);
    void open(const QString& appKey, const AppUpdateAction& action);
    void finish(const QString& appKey, AppUpdateActionState state);
    void set(const QString& appKey, AppUpdateActionState state);

    static QString journalPath(const Machine& machine);
    static QString outputPath(const Machine& machine);

    Machine& _machine;
    Owner& _owner;
    Opener _opener;
    QHash<QString, AppUpdateActionState> _states;
    std::deque<QString> _waiting;
    std::optional<QString> _active;
    std::vector<Done> _done;

    std::optional<AppUpdateRun> _run; ///< while its command runs
    QList<QByteArray> _lines;         ///< the last ones that it said
    /// How long the command was seen to run: a leap of the clock, or a sleep, is no part of it.
    std::chrono::duration<double> _seen{0};
    std::optional<Instant> _lookedAt;
    std::optional<std::chrono::duration<double>> _terminatedAfter; ///< of `_seen`
    bool _isTakenUp = false;
    bool _isCancelled = false;
    bool _isTimedOut = false;
    bool _isLooking = false;
    bool _isVerifying = false;
    Timer _nextLook;
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
