#pragma once

#include "launcher/launcher_error.h"
#include "platform/calendar.h"
#include "platform/machine.h"
#include "platform/signal.h"
#include "smartfolders/app_usage_store.h"
#include "smartfolders/smart_folder_evaluator.h"
#include "smartfolders/smart_folder_facts_catalog.h"
#include "smartfolders/smart_folder_store.h"

#include <functional>

namespace tessellar {

/// The smart folders of the launcher: their definitions, the facts of all applications, and what each
/// folder shows.
///
/// Evaluations follow whatever they depend on, off the main thread:
///
///     1. the facts are gathered, from the catalog's memory where bundles are unchanged;
///     2. all definitions are evaluated over them on a worker;
///     3. the results come back; where something has changed meanwhile they are dropped, and the next
///        round's count. What equals what was shown is not redrawn.
///
/// A round begins when applications, their names, definitions, usage, update statuses, custom icons or
/// the locale change, and at the start of each day.
class SmartFolderLibrary {
public:
    using Outcome = std::expected<void, LauncherError>;
    explicit SmartFolderLibrary(Machine& machine);

    /// Reads the registry and the record of usage.
    void load();
    /// True when definitions may be changed; `failure` says why not.
    bool isWritable() const { return !_store.isWriteBlocked(); }
    const std::optional<LauncherError>& failure() const { return _failure; }
    Outcome recover(SmartFolderRecovery how);
    /// What is said, below the title of `failure`, while definitions cannot be changed.
    static QString unavailableNotice();

    const QList<SmartFolderDefinition>& definitions() const { return _definitions; }
    const SmartFolderDefinition* definition(const QUuid& id) const;
    /// Checks and saves; a refusal has changed nothing.
    Outcome setDefinitions(const QList<SmartFolderDefinition>& definitions);

    /// The definition's name, or "Unavailable Smart Folder".
    QString name(const QUuid& id) const;
    /// What stands beside a folder that is not all there: a definition that is missing, rules that
    /// could not be decided. Empty when all is well.
    QString notice(const QUuid& id) const;
    /// The same of an evaluation, whose rules may be undecided for good: update checking can be off.
    QString notice(const SmartFolderDefinition& definition,
                   const SmartFolderEvaluation& evaluation) const;
    /// What a folder shows; empty before the first round.
    QStringList appKeys(const QUuid& id) const;
    const SmartFolderEvaluation* evaluation(const QUuid& id) const;
    using Evaluations = QHash<QUuid, SmartFolderEvaluation>;
    const Evaluations& evaluations() const { return _evaluations; }
    /// One evaluation at once, on the calling thread, over the facts at hand.
    SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition, const Locale& locale,
                                   Instant now) const;

    /// What a definition would show that is not saved, with the facts that this was worked out over:
    /// found as in a round, and told again whenever it may have changed, until another is previewed or
    /// none.
    using Previewed = std::function<void(SmartFolderEvaluation, const SmartFolderFactsList&)>;
    void preview(const SmartFolderDefinition& definition, Previewed previewed);
    void endPreview();

    /// The facts of the last round, in the order of the applications.
    const SmartFolderFactsList& facts() const { return _facts; }
    /// Calls `done` once the facts are those of now and these inspections have been made for them,
    /// beside those that the definitions need.
    void gatherFacts(const QSet<SmartFolderInspection>& inspections, std::function<void()> done);

    // What evaluations depend on.
    void setApps(const QList<AppEntry>& apps);
    /// Names that the user gave, by app key: those of the mode that is shown.
    void setCustomNames(const QHash<QString, QString>& names);
    void recordLaunch(const QString& appKey);
    /// Changes what the launcher knows besides: update statuses, channels, custom icons.
    void setRuntimeFacts(SmartFolderRuntimeFacts facts);
    const SmartFolderRuntimeFacts& runtimeFacts() const { return _runtime; }
    /// To be called after the machine's locale was changed.
    void localeChanged();

    quint64 inspectionCount() const { return _catalog.inspectionCount(); }

    Signal<> changed; ///< definitions, or what folders show

private:
    using Index = std::shared_ptr<SmartFolderFactsIndex>;

    void accept(const SmartFolderStore::LoadResult& result);
    void startRound();
    void evaluateRound(SmartFolderFactsList facts);
    void finishRound(Evaluations evaluations, Index index);
    void startPreview();
    void scheduleNextDay();
    SmartFolderFactsCatalog::Request request(const QSet<SmartFolderInspection>& inspections) const;
    QList<AppEntry> namedApps() const;
    SmartFolderRuntimeFacts runtimeFactsNow() const;

    Machine& _machine;
    SmartFolderStore _store;
    AppUsageStore _usage;
    SmartFolderFactsCatalog _catalog;
    Calendar _calendar;
    std::optional<LauncherError> _failure;
    QList<SmartFolderDefinition> _definitions;
    QList<AppEntry> _apps; ///< as the scan names them
    QHash<QString, QString> _customNames;
    SmartFolderRuntimeFacts _runtime;
    SmartFolderFactsList _facts;
    Evaluations _evaluations;
    Index _index; ///< of the last round, ready for the next one if the facts are the same
    QSet<SmartFolderInspection> _extraInspections;
    Task _factsTask;
    Task _evaluationTask;
    struct Preview {
        SmartFolderDefinition definition;
        Previewed previewed;
        Task task; ///< its facts, then its evaluation
    };
    std::optional<Preview> _preview;
    Timer _nextDay;
    std::vector<std::function<void()>> _settledCallbacks;
};

/// The smart folders that show each application, by app key. Good for any thread.
QHash<QString, QStringList> namesByAppKey(const QList<SmartFolderDefinition>& definitions,
                                          const SmartFolderLibrary::Evaluations& evaluations);

} // namespace tessellar
