#pragma once

#include "updates/app_update_checker.h"

#include <QSet>

#include <vector>

namespace tessellar {

/// The progress of a check.
struct AppUpdateProgress {
    qsizetype checked = 0;
    qsizetype total = 0;   ///< 0 while bundles are still being read
    QString currentAppKey; ///< the application checked most recently
    QString currentAppName;

    bool operator==(const AppUpdateProgress&) const = default;
};

/// Selects the applications to check; a full check if nothing is set.
struct AppUpdateCheckRequest {
    std::optional<AppUpdateChannelKind> channel; ///< only those of this channel
    std::optional<QStringList> appKeys;          ///< only these
    bool asksAllTools = false; ///< asks tools again which applications they own, even if known

    bool isFull() const { return !channel && !appKeys; }
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

/// One check of many applications, in four steps:
///
/// 1. Bundles are read.
/// 2. All channels are queried at once about the applications known to be theirs, while channels that
///    depend on tools ask them which applications they own now.
/// 3. If ownership changes, the application is moved to its new channel.
/// 4. Verdicts are reported as they arrive. The check ends with the last one, once all tools have
///    answered.
///
/// Channels never wait for each other. Destroying it cancels it silently; listeners may destroy it.
class AppUpdateCheck {
public:
    /// Receives everything that a check reports.
    class Listener {
    public:
        virtual ~Listener() = default;
        virtual void inspected(AppUpdateCheck& check, const QList<AppUpdateCandidate>& found) = 0;
        /// Tools have reported which applications they own.
        virtual void channelsLearned(AppUpdateCheck& check) = 0;
        virtual void progressed(AppUpdateCheck& check) = 0;
        virtual void found(AppUpdateCheck& check, const AppUpdateCandidate& candidate,
                           const AppUpdateChecker& checker, const AppUpdateVerdict& verdict) = 0;
        virtual void ended(AppUpdateCheck& check) = 0;
    };
    using Checkers = std::vector<std::unique_ptr<AppUpdateChecker>>;

    /// `apps` are all installed applications.
    AppUpdateCheck(Machine& machine, const Checkers& checkers, const QList<AppEntry>& apps,
                   AppUpdateCheckRequest request, Listener& listener);
    ~AppUpdateCheck();
    AppUpdateCheck(const AppUpdateCheck&) = delete;
    AppUpdateCheck& operator=(const AppUpdateCheck&) = delete;

    const AppUpdateCheckRequest& request() const { return _request; }
    const AppUpdateProgress& progress() const { return _progress; }
    const QList<AppUpdateProblem>& problems() const { return _problems; }

private:
    class Findings;
    static constexpr std::chrono::milliseconds learnDelay{20};

    void begin(const QList<AppUpdateCandidate>& candidates);
    bool isToDiscover(const AppUpdateChecker& checker) const;
    bool isWanted(const AppUpdateCandidate& candidate) const;
    void assign();
    void learned();
    void reassign();
    void discovered(std::size_t checker, const std::optional<AppUpdateReason>& problem);
    void began(const QString& appKey);
    void ended(std::size_t checker, const QString& appKey, const AppUpdateVerdict& verdict);
    void endIfOver();

    Machine& _machine;
    const Checkers& _checkers;
    AppUpdateCheckRequest _request;
    Listener& _listener;
    AppUpdateProgress _progress;
    QList<AppUpdateProblem> _problems;

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
    std::shared_ptr<AppUpdateCheck*> _alive = std::make_shared<AppUpdateCheck*>(this);
};

} // namespace tessellar
