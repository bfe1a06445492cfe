#pragma once

#include "platform/lifetime.h"
#include "updates/app_update_checker.h"

#include <QSet>

#include <vector>

namespace tessellar {

class AppUpdateChannels;
class KnownAppUpdates;

/// The progress of a check.
struct AppUpdateProgress {
    qsizetype checked = 0;
    qsizetype total = 0;   ///< 0 while bundles are still being read
    QString currentAppKey; ///< the application checked most recently
    QString currentAppName;

    bool operator==(const AppUpdateProgress&) const = default;
};

/// Reads bundles on several workers in parallel.
class AppUpdateInspection {
public:
    using Done = std::function<void(const QList<AppUpdateCandidate>&)>;

    AppUpdateInspection(Machine& machine, const QList<AppEntry>& apps, Done done);

private:
    Done _done;
    QList<QList<AppUpdateCandidate>> _found; ///< in the order of the applications
    qsizetype _left = 0;
    std::vector<Task> _tasks;
};

/// One check of many applications, from its request to its last verdict:
///
/// 1. Bundles are read (`inspected`).
/// 2. All channels are queried at once about the applications known to be theirs (`assign`), while
///    channels that depend on tools ask them which applications they own now.
/// 3. Checkers report to `handle`. If ownership changes, the application is moved to its new channel.
/// 4. Each verdict is recorded in the known updates, which tell everybody else (`recorded` at once,
///    `changed` throttled). The check ends with the last one, once all tools have answered.
///
/// Channels never wait for each other. Destroying it cancels it silently; any notification may destroy
/// it.
class AppUpdateCheck {
public:
    /// With `isDisabled`, checking was switched off before the check was complete.
    using Ended = std::function<void(AppUpdateCheck& check, bool isDisabled)>;

    /// `apps` are all installed applications. Only a check that `isShown` sends `progressed`.
    AppUpdateCheck(Machine& machine, AppUpdateChannels& channels, KnownAppUpdates& known,
                   const QList<AppEntry>& apps, AppUpdateCheckRequest request, bool isShown,
                   Ended ended);
    ~AppUpdateCheck();
    AppUpdateCheck(const AppUpdateCheck&) = delete;
    AppUpdateCheck& operator=(const AppUpdateCheck&) = delete;

    const AppUpdateCheckRequest& request() const { return _request; }
    bool isShown() const { return _isShown; }
    const AppUpdateProgress& progress() const { return _progress; }
    const QList<AppUpdateProblem>& problems() const { return _problems; }
    /// Restores the records that it has replaced.
    void revert();

private:
    static constexpr std::chrono::milliseconds learnDelay{20};
    static constexpr std::size_t noChecker = -1;

    void inspected(const QList<AppUpdateCandidate>& candidates);
    bool isToDiscover(const AppUpdateChecker& checker) const;
    bool isWanted(const AppUpdateCandidate& candidate) const;
    AppUpdateSink sink(std::size_t checker);
    void assign();
    std::size_t ownerOf(const AppUpdateCandidate& candidate) const;
    void handle(std::size_t checker, const AppUpdateFinding& finding);
    void progressed();
    void end(bool isDisabled);

    Machine& _machine;
    AppUpdateChannels& _channels;
    KnownAppUpdates& _known;
    AppUpdateCheckRequest _request;
    bool _isShown;
    Ended _ended;
    AppUpdateProgress _progress;
    QList<AppUpdateProblem> _problems;
    QHash<QString, std::optional<AppUpdateRecord>> _replaced; ///< records, by app key

    QList<AppUpdateCandidate> _candidates;
    QHash<QString, qsizetype> _places;     ///< by app key, indices into `_candidates`
    QHash<QString, std::size_t> _assigned; ///< by app key: the checker whose verdict counts
    QSet<QString> _left;                   ///< app keys without a verdict
    std::size_t _discoveries = 0;          ///< still running

    std::optional<AppUpdateInspection> _inspection;
    std::vector<std::unique_ptr<AppUpdateWork>> _discovering;
    std::vector<std::vector<std::unique_ptr<AppUpdateWork>>> _checking; ///< by checker
    Timer _learning;
    Timer _ending;
    Lifetime _lifetime;
};

} // namespace tessellar
