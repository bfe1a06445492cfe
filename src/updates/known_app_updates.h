#pragma once

#include "platform/lifetime.h"
#include "platform/signal.h"
#include "updates/app_update_channels.h"
#include "updates/app_update_store.h"
#include "updates/app_update_texts.h"

namespace tessellar {

/// A notification for user interfaces.
struct AppUpdateEvent {
    enum class Kind {
        inspected,     ///< the bundles of all applications have been read
        changed,       ///< statuses, channels, checks or actions; throttled to `publishInterval`
        progressed,    ///< the visible check, unthrottled
        recorded,      ///< a verdict, unthrottled
        actionChanged, ///< an update, unthrottled
        updated,       ///< an update has ended and its application was re-read
    };
    Kind kind = Kind::changed;
    QString appKey; ///< for the last three kinds

    bool operator==(const AppUpdateEvent&) const = default;
};

/// What is known of updates: records of checks, and what the user skips. Saved after a delay.
/// Everything by app key. Main thread only.
class KnownAppUpdates {
public:
    static constexpr std::chrono::milliseconds saveDelay{1'000};
    static constexpr std::chrono::milliseconds publishInterval{250};

    KnownAppUpdates(Machine& machine, const AppUpdateChannels& channels, AppUpdateStore store,
                    AppUpdateCache cache);
    /// Saves changes.
    ~KnownAppUpdates();
    KnownAppUpdates(const KnownAppUpdates&) = delete;
    KnownAppUpdates& operator=(const KnownAppUpdates&) = delete;

    /// All notifications; of checks and running updates too.
    Signal<AppUpdateEvent> events;

    // Results of checks.
    /// The published statuses: failed checks are `failed`; skipped and pinned updates are omitted.
    const AppUpdateStatuses& statuses() const { return _statuses; }
    /// The same, but with the last known status instead of a failure: for badges.
    const AppUpdateStatuses& knownStatuses() const { return _knownStatuses; }
    /// Counts `knownStatuses`.
    const AppUpdateTally& tally() const { return _tally; }
    const QList<AppUpdateProblem>& problems() const { return _cache.problems; }
    std::optional<Instant> lastCheck() const { return _cache.lastCheck; }
    /// The record, if valid for the installed version; unthrottled.
    std::optional<AppUpdateRecord> record(const QString& appKey) const;
    /// As of the record, even if it is skipped or pinned.
    bool hasUpdate(const QString& appKey) const;
    /// Why an application has no plain status: it has no channel, its channel cannot tell, or its check
    /// failed.
    std::optional<AppUpdateReason> reason(const QString& appKey) const;

    // Updates that the user ignores.
    /// Without a version, skips all updates of the application.
    void skip(const QString& appKey, const std::optional<QString>& version);
    void unskip(const QString& appKey);
    /// The skipped version, or `AppUpdateCache::everyVersion`.
    std::optional<QString> skipped(const QString& appKey) const;
    /// True if the update is skipped or pinned.
    bool isHeld(const QString& appKey) const;

    /// Applies changed app keys to records and skipped updates.
    void changeKeys(const QHash<QString, QString>& changedKeys);
    /// Saves pending changes at once.
    std::expected<void, FileError> flush();

    // For the coordinator and its checks.
    /// Records replaced by a check, nullopt where there was none; by app key.
    using Replaced = QHash<QString, std::optional<AppUpdateRecord>>;

    /// Call when checkers may have learned channels, before `publish`.
    void keepChannels();
    /// Records a verdict, unless the application was removed or updated since it was inspected.
    void recordVerdict(const AppUpdateCandidate& checked, const AppUpdateChecker& checker,
                       const AppUpdateVerdict& verdict, Replaced& replaced);
    void revert(const Replaced& replaced);
    /// Records the end of a check, except its time.
    void conclude(const AppUpdateCheckRequest& request, const QList<AppUpdateProblem>& problems);
    void setLastCheck(Instant time) { _cache.lastCheck = time; }
    /// Applications whose record is of another version, or of a checker that has changed.
    QStringList stale() const;
    /// Applications whose check failed for a reason that may pass.
    QStringList transientlyFailed() const;
    /// Sends `changed`, throttled unless `atOnce`.
    void publish(bool atOnce = false);
    /// Sends an event, and `changed`, throttled.
    void notify(AppUpdateEvent::Kind kind, const QString& appKey = {});

private:
    bool isValid(const AppUpdateRecord& record, const AppUpdateCandidate& candidate) const;
    bool isHeld(const QString& appKey, const AppUpdateRecord& record) const;
    void refreshStatuses();
    void askForSave();
    void save();

    Machine& _machine;
    const AppUpdateChannels& _channels;
    AppUpdateStore _store;
    AppUpdateCache _cache;

    AppUpdateStatuses _statuses;
    AppUpdateStatuses _knownStatuses;
    AppUpdateTally _tally;
    bool _isPublishWanted = false;
    bool _isUnsaved = false;
    Timer _publishThrottleTask;
    Timer _saveTask;
    Lifetime _lifetime;
};

} // namespace tessellar
