#pragma once

#include "updates/app_update_checker.h"

#include <QSet>

#include <vector>

namespace tessellar {

/// How far a check has come.
struct AppUpdateProgress {
    qsizetype checked = 0;
    qsizetype total = 0;   ///< 0 while bundles are still being read
    QString currentAppKey; ///< the application whose turn came last
    QString currentAppName;

    bool operator==(const AppUpdateProgress&) const = default;
};

/// Which applications are to be checked; without a limit it is a full check.
struct AppUpdateCheckRequest {
    std::optional<AppUpdateChannelKind> channel; ///< of this channel only
    std::optional<QStringList> appKeys;          ///< of these only
    bool asksAllTools = false;                   ///< whose applications they are, whatever is known

    bool isFull() const { return !channel && !appKeys; }
};

/// Reads bundles on several workers at once.
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

/// One check of many applications. Its way, from top to bottom:
///
/// 1. The bundles are read.
/// 2. Every channel is asked at once about the applications that are its own as far as is known from
///    before, while those channels that depend on tools ask them whose applications they are by now.
/// 3. Where that changes whose an application is, it is taken from the one and given to the other.
/// 4. Each verdict is told as it comes; the last one, once all tools have answered, is the end.
///
/// Nothing waits for another channel. Destroying it ends it, and nothing more is heard of it. What is
/// told may destroy it.
class AppUpdateCheck {
public:
    /// What a check tells; one object hears all of it.
    class Listener {
    public:
        virtual ~Listener() = default;
        virtual void inspected(AppUpdateCheck& check, const QList<AppUpdateCandidate>& found) = 0;
        /// Tools have told whose applications are whose.
        virtual void channelsLearned(AppUpdateCheck& check) = 0;
        virtual void progressed(AppUpdateCheck& check) = 0;
        virtual void found(AppUpdateCheck& check, const AppUpdateCandidate& candidate,
                           const AppUpdateChecker& checker, const AppUpdateVerdict& verdict) = 0;
        virtual void ended(AppUpdateCheck& check) = 0;
    };
    using Checkers = std::vector<std::unique_ptr<AppUpdateChecker>>;

    /// `apps` are all that are installed.
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
    QHash<QString, qsizetype> _places;     ///< by app key, in that list
    QHash<QString, std::size_t> _assigned; ///< by app key: whose verdict counts
    QSet<QString> _left;                   ///< without a verdict yet
    std::size_t _discoveries = 0;          ///< that have not ended

    std::optional<AppUpdateInspection> _inspection;
    std::vector<std::unique_ptr<AppUpdateWork>> _discovering;
    std::vector<std::vector<std::unique_ptr<AppUpdateWork>>> _checking; ///< by checker
    Timer _learning;
    Timer _ending;
    std::shared_ptr<AppUpdateCheck*> _alive = std::make_shared<AppUpdateCheck*>(this);
};

} // namespace tessellar
