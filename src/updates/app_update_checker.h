#pragma once

#include "updates/app_update_candidate.h"
#include "updates/app_update_records.h"

#include <functional>
#include <memory>
#include <variant>

namespace tessellar {

/// Selects the applications to check; a full check if nothing is set.
struct AppUpdateCheckRequest {
    std::optional<AppUpdateChannelKind> channel; ///< only those of this channel
    std::optional<QStringList> appKeys;          ///< only these
    bool asksAllTools = false; ///< asks tools again which applications they own, even if known

    bool isFull() const { return !channel && !appKeys; }
};

// What a checker reports of its work.
struct ChannelsLearned {}; ///< results of `channel` may have changed
struct DiscoveryEnded {
    std::optional<AppUpdateReason> problem; ///< why it may be incomplete
};
struct AppCheckBegan {
    QString appKey;
};
struct AppCheckEnded {
    QString appKey;
    AppUpdateVerdict verdict;
};
using AppUpdateFinding = std::variant<ChannelsLearned, DiscoveryEnded, AppCheckBegan, AppCheckEnded>;
/// Receives them on the main thread, never before the call that started the work has returned.
using AppUpdateSink = std::function<void(const AppUpdateFinding&)>;

/// A checker's running work; destroying it cancels it silently.
class AppUpdateWork {
public:
    virtual ~AppUpdateWork() = default;
    /// Drops an application whose verdict is no longer wanted.
    virtual void forget(const QString& appKey) = 0;
};

/// One update channel. To add a channel, add a subclass and a line in `KnownAppUpdates`. Main
/// thread only; blocking work runs on workers.
class AppUpdateChecker {
public:
    virtual ~AppUpdateChecker() = default;

    virtual AppUpdateChannelKind kind() const = 0;
    /// The application's channel if it belongs to this checker, as far as known, including from earlier
    /// runs.
    virtual std::optional<AppUpdateChannel> channel(const AppUpdateCandidate& candidate) const = 0;
    /// The source fingerprint for this checker's record of an application.
    virtual QString fingerprint(const AppUpdateCandidate& candidate) const = 0;
    /// Checks applications of this channel; each gets exactly one verdict.
    [[nodiscard]] virtual std::unique_ptr<AppUpdateWork> check(QList<AppUpdateCandidate> candidates,
                                                               AppUpdateSink sink) = 0;

    // For checkers that cannot recognize their applications by bundle alone.
    /// False until tools have been asked which applications belong to this checker.
    virtual bool isDiscovered() const { return true; }
    /// Asks tools which of these applications belong to this checker; null if bundles suffice.
    [[nodiscard]] virtual std::unique_ptr<AppUpdateWork>
    // NOLINTNEXTLINE(performance-unnecessary-value-param): others keep the sink
    discover(const QList<AppUpdateCandidate>& /*candidates*/, AppUpdateSink /*sink*/) {
        return nullptr;
    }
    /// Restore and save the checker's persistent state.
    virtual void restore(const AppUpdateCache& cache) { (void)cache; }
    virtual void keep(AppUpdateCache& cache) const { (void)cache; }
};

} // namespace tessellar
