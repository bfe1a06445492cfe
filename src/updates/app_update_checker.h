#pragma once

#include "updates/app_update_candidate.h"
#include "updates/app_update_records.h"

namespace tessellar {

/// Work of a checker that is under way; destroying it ends it, and nothing more is heard of it.
class AppUpdateWork {
public:
    virtual ~AppUpdateWork() = default;
};

/// What a check tells while it runs, on the main thread: that the turn of an application has come, and
/// its verdict. Each application gets exactly one verdict.
struct AppUpdateObserver {
    std::function<void(const QString& appKey)> began;
    std::function<void(const QString& appKey, const AppUpdateStatus& status)> ended;
};

/// One channel through which updates are found. A further channel is a further class, and a line in
/// the coordinator's list. Main thread; work that blocks runs on workers.
class AppUpdateChecker {
public:
    /// How much is to be learned before channels are decided.
    enum class Depth {
        channels, ///< enough to say which applications are this checker's
        statuses, ///< what `check` needs, too
    };

    virtual ~AppUpdateChecker() = default;

    virtual AppUpdateChannelKind kind() const = 0;
    /// Learns what tells which applications are its own, where bundles alone do not say it. `done` is
    /// called at once or later, or never when the work is dropped.
    virtual std::unique_ptr<AppUpdateWork> prepare(const QList<AppUpdateCandidate>& candidates,
                                                   const QMap<QString, AppUpdateRecord>& records,
                                                   Depth depth, const std::function<void()>& done);
    /// False while `channel` cannot say yet which applications are this checker's.
    virtual bool isPrepared() const { return true; }
    virtual std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const = 0;
    /// What a record of this checker for this application carries.
    virtual QString fingerprint(const AppUpdateCandidate& candidate) const = 0;
    /// True when a record with this fingerprint comes from this checker, in its present revision.
    virtual bool accepts(const QString& recordedFingerprint,
                         const AppUpdateCandidate& candidate) const {
        return recordedFingerprint == fingerprint(candidate);
    }
    /// Checks one application or many of its own.
    [[nodiscard]] virtual std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                               AppUpdateObserver observer) = 0;
};

inline std::unique_ptr<AppUpdateWork> AppUpdateChecker::prepare(const QList<AppUpdateCandidate>&,
                                                                const QMap<QString, AppUpdateRecord>&,
                                                                Depth,
                                                                const std::function<void()>& done) {
    done();
    return nullptr;
}

} // namespace tessellar
