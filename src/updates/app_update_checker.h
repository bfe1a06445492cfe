#pragma once

#include "updates/app_update_candidate.h"
#include "updates/app_update_records.h"

#include <memory>

namespace tessellar {

/// Receives a checker's results, on the main thread, never before the call that started the work has
/// returned. Each application given to `check` gets exactly one verdict.
class AppUpdateFindings {
public:
    virtual ~AppUpdateFindings() = default;
    /// Results of `channel` may have changed.
    virtual void learned() = 0;
    /// `discover` has ended; `problem` is why it may be incomplete.
    virtual void discovered(const std::optional<AppUpdateReason>& problem) = 0;
    /// The check of an application has started.
    virtual void began(const QString& appKey) = 0;
    virtual void ended(const QString& appKey, const AppUpdateVerdict& verdict) = 0;
};

/// A checker's running work; destroying it cancels it silently.
class AppUpdateWork {
public:
    virtual ~AppUpdateWork() = default;
    /// Drops an application whose verdict is no longer wanted.
    virtual void forget(const QString& appKey) = 0;
};

/// One update channel. To add a channel, add a subclass and a line in the coordinator's list. Main
/// thread only; blocking work runs on workers.
class AppUpdateChecker {
public:
    using Findings = std::shared_ptr<AppUpdateFindings>;

    virtual ~AppUpdateChecker() = default;

    virtual AppUpdateChannelKind kind() const = 0;
    /// The application's channel if it belongs to this checker, as far as known, including from earlier
    /// runs.
    virtual std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const = 0;
    /// The source fingerprint for this checker's record of an application.
    virtual QString fingerprint(const AppUpdateCandidate& candidate) const = 0;
    /// Checks applications of this channel.
    [[nodiscard]] virtual std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                               Findings findings) = 0;

    // For checkers that cannot recognize their applications by bundle alone.
    /// False until tools have been asked which applications belong to this checker.
    virtual bool isDiscovered() const { return true; }
    /// Asks tools which of these applications belong to this checker; null if bundles suffice.
    [[nodiscard]] virtual std::unique_ptr<AppUpdateWork>
    discover(const QList<AppUpdateCandidate>& candidates, Findings findings) {
        (void)candidates, (void)findings;
        return nullptr;
    }
    /// Restore and save the checker's persistent state.
    virtual void restore(const AppUpdateCache& cache) { (void)cache; }
    virtual void keep(AppUpdateCache& cache) const { (void)cache; }
};

} // namespace tessellar
