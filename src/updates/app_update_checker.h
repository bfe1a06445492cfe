#pragma once

#include "updates/app_update_candidate.h"
#include "updates/app_update_records.h"

#include <memory>

namespace tessellar {

/// Where a checker tells what it finds, on the main thread and never before the call that set it to
/// work has returned. Each application that was given to `check` gets exactly one verdict.
class AppUpdateFindings {
public:
    virtual ~AppUpdateFindings() = default;
    /// `channel` may answer differently from now on.
    virtual void learned() = 0;
    /// The end of `discover`, and what kept it from learning all.
    virtual void discovered(const std::optional<AppUpdateReason>& problem) = 0;
    /// The turn of an application has come.
    virtual void began(const QString& appKey) = 0;
    virtual void ended(const QString& appKey, const AppUpdateVerdict& verdict) = 0;
};

/// Work of a checker that is under way; destroying it ends it, and nothing more is heard of it.
class AppUpdateWork {
public:
    virtual ~AppUpdateWork() = default;
    /// No verdict is wanted of this application any more.
    virtual void forget(const QString& appKey) = 0;
};

/// One channel through which updates are found. A further channel is a further class, and a line in
/// the coordinator's list. Main thread; work that blocks runs on workers.
class AppUpdateChecker {
public:
    using Findings = std::shared_ptr<AppUpdateFindings>;

    virtual ~AppUpdateChecker() = default;

    virtual AppUpdateChannelKind kind() const = 0;
    /// The application's channel if it is this checker's, as far as that is known by now; also
    /// from earlier runs.
    virtual std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const = 0;
    /// What a record of this checker for this application carries.
    virtual QString fingerprint(const AppUpdateCandidate& candidate) const = 0;
    /// Checks applications of its own.
    [[nodiscard]] virtual std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                               Findings findings) = 0;

    // Of checkers whose applications cannot be told from their bundles alone.
    /// False until tools were once asked which applications are this checker's.
    virtual bool isDiscovered() const { return true; }
    /// Asks tools which of these applications are its own; null where the bundles say it.
    [[nodiscard]] virtual std::unique_ptr<AppUpdateWork>
    discover(const QList<AppUpdateCandidate>& candidates, Findings findings) {
        (void)candidates, (void)findings;
        return nullptr;
    }
    /// Takes up what is kept from earlier runs, and hands over what is to be kept.
    virtual void restore(const AppUpdateCache& cache) { (void)cache; }
    virtual void keep(AppUpdateCache& cache) const { (void)cache; }
};

} // namespace tessellar
