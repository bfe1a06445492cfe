#pragma once

#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "platform/calendar.h"
#include "platform/machine.h"
#include "platform/signal.h"
#include "smartfolders/app_usage_store.h"
#include "smartfolders/smart_folder_evaluation.h"
#include "smartfolders/smart_folder_facts_catalog.h"
#include "smartfolders/smart_folder_store.h"

#include <array>
#include <functional>
#include <future>
#include <list>

namespace tessellar {

class SmartFolderFactsIndex;

/// A display mode's own names and hidden applications. Its smart folders leave hidden ones out.
struct SmartFolderContext {
    QHash<QString, QString> customNames; ///< by app key
    QSet<QString> hiddenKeys;

    bool operator==(const SmartFolderContext&) const = default;
};

/// The smart folders: their definitions, the facts of all applications, and the contents of each folder
/// in each display mode.
///
/// Evaluations are kept current off the main thread, in rounds:
///
///     1. the facts that the definitions need are gathered: first from bundles, then from tools as
///        these complete;
///     2. a worker evaluates all definitions each time more facts are known;
///     3. the results are applied, or dropped if their inputs have changed meanwhile. Listeners are
///        notified only of differences.
///
/// A round starts when applications, their names, hidden applications, definitions or the locale
/// change, when usage, update statuses, channels or custom icons that a definition needs change, and at
/// the start of each day.
class SmartFolderLibrary {
public:
    using Outcome = std::expected<void, LauncherError>;
    explicit SmartFolderLibrary(Machine& machine);
    ~SmartFolderLibrary();

    /// Loads the registry, and on a worker the usage records.
    void load();
    /// True if definitions can be changed; otherwise see `failure`.
    bool isWritable() const { return !_store.isWriteBlocked(); }
    const std::optional<LauncherError>& failure() const { return _failure; }
    Outcome recover(SmartFolderRecovery how);
    /// Shown below the title of `failure` while definitions cannot be changed.
    static QString unavailableNotice();

    const QList<SmartFolderDefinition>& definitions() const { return _definitions; }
    const SmartFolderDefinition* definition(const QUuid& id) const;
    /// Validates these definitions. The returned function saves them: call it on the saving lane, and
    /// nothing else that saves before it has returned.
    using Save = std::function<Outcome()>;
    std::expected<Save, LauncherError> saving(const QList<SmartFolderDefinition>& definitions);
    /// Shows these definitions, which are or will be in the registry.
    void show(const QList<SmartFolderDefinition>& definitions);
    /// Saves and shows these; they are shown even if saving fails.
    bool rollBack(const QList<SmartFolderDefinition>& definitions);

    /// The definition's name, or "Unavailable Smart Folder".
    QString name(const QUuid& id) const;
    /// Explains incomplete contents: the definition is missing, or rules could not be decided, or not
    /// yet. Empty if complete.
    QString notice(const QUuid& id, LauncherWindowMode mode) const;
    /// The same for an evaluation.
    QString notice(const SmartFolderDefinition& definition,
                   const SmartFolderEvaluation& evaluation) const;
    /// A folder's contents; null before the first round.
    const SmartFolderEvaluation* evaluation(const QUuid& id, LauncherWindowMode mode) const;
    using Evaluations = QHash<QUuid, SmartFolderEvaluation>;
    const Evaluations& evaluations(LauncherWindowMode mode) const { return _evaluations[at(mode)]; }
    /// Evaluates synchronously over the facts known now.
    SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition, LauncherWindowMode mode,
                                   const Locale& locale, Instant now) const;

    /// Evaluates an unsaved definition as a round would. `previewed` gets the result and the facts it
    /// is based on, now and after every change, until the next `preview` or `endPreview`. Consecutive
    /// previews share the facts gathered.
    using Previewed = std::function<void(SmartFolderEvaluation, const SmartFolderFactsList&)>;
    void preview(const SmartFolderDefinition& definition, LauncherWindowMode mode, Previewed previewed);
    void endPreview();

    /// The facts of the last round, in the order of the applications, including hidden ones.
    SmartFolderFactsList facts(LauncherWindowMode mode) const;
    /// Calls `done` once the facts for `needs` are up to date. Does not wait for facts that only
    /// definitions need.
    void gatherFacts(SmartFolderNeeds needs, std::function<void()> done);
    /// Gathers all facts of one application alone: first those known at once, then all of them.
    void gatherFactsOf(const AppEntry& app, LauncherWindowMode mode,
                       std::function<void(const SmartFolderAppFacts&, bool isComplete)> told);

    // Inputs of evaluations.
    void setApps(const QList<AppEntry>& apps);
    void setContext(LauncherWindowMode mode, SmartFolderContext context);
    void recordLaunch(const QString& appKey);
    /// Deletes the usage records.
    void forgetUsage();
    /// Moves usage records to the applications' new keys.
    void changeKeys(const QHash<QString, QString>& changedKeys);
    /// Sets the facts known to the launcher: update statuses, channels, custom icons.
    void setRuntimeFacts(SmartFolderRuntimeFacts facts);
    const SmartFolderRuntimeFacts& runtimeFacts() const { return _runtime; }
    /// Call after changing the machine's locale.
    void localeChanged();
    /// Checks for a new day, a new time zone and applications used meanwhile. Call when the user may
    /// have been away; timers do not advance during sleep.
    void reevaluate();

    quint64 inspectionCount() const { return _catalog.inspectionCount(); }

    Signal<> changed; ///< definitions or folder contents

private:
    template <typename T>
    using PerMode = std::array<T, 2>;
    /// The facts of one mode, indexed for evaluation. Immutable; usable on any thread.
    struct Prepared {
        SmartFolderFactsList facts; ///< from the catalog
        SmartFolderContext context;
        std::shared_ptr<const SmartFolderFactsIndex> index;
    };
    using PreparedPointer = std::shared_ptr<const Prepared>;
    struct Evaluated {
        PerMode<Evaluations> evaluations;
        PerMode<PreparedPointer> prepared;
        bool isChanged = false;
    };
    struct Preview {
        SmartFolderDefinition definition;
        LauncherWindowMode mode;
        Previewed previewed;
        SmartFolderNeeds needs; ///< of this preview and earlier ones
        std::optional<SmartFolderFactsList> facts;
        PreparedPointer prepared;
        Task factsTask;
        Task evaluationTask;
    };

    static std::size_t at(LauncherWindowMode mode) { return static_cast<std::size_t>(mode); }
    static PreparedPointer prepare(const SmartFolderFactsList& facts, const SmartFolderContext& context,
                                   const PerMode<PreparedPointer>& before, const Locale& locale,
                                   const FileSystem& files);
    void accept(const SmartFolderStore::LoadResult& result);
    /// Waits until the records are loaded.
    AppUsageStore& usage();
    /// Starts a round if any definition needs one of these.
    void startRoundFor(SmartFolderNeeds others);
    void startRound();
    void evaluateRound(const SmartFolderFactsList& facts, bool isComplete);
    void finishRound(Evaluated evaluated, bool isComplete);
    void gatherForPreview();
    void evaluatePreview();
    bool reevaluateOnNewDay();
    void scheduleNextDay();
    SmartFolderFactsCatalog::Request request(QList<AppEntry> apps, SmartFolderNeeds needs);

    Machine& _machine;
    SmartFolderStore _store;
    AppUsageStore _usageStore; ///< see `usage`
    /// Of the usage records, until they are first asked for.
    std::future<MoveOnlyFunction<void()>> _usageRead;
    SmartFolderFactsCatalog _catalog;
    Calendar _calendar;
    std::optional<LauncherError> _failure;
    QList<SmartFolderDefinition> _definitions;
    QList<AppEntry> _apps; ///< as the scan names them
    PerMode<SmartFolderContext> _contexts;
    /// Without usage. Update facts are pending until they are set.
    SmartFolderRuntimeFacts _runtime{.pending = SmartFolderNeed::updates | SmartFolderNeed::channels};
    std::optional<SmartFolderRuntimeFacts> _runtimeWithUsage;
    SmartFolderFactsList _facts;
    PerMode<Evaluations> _evaluations;
    PerMode<PreparedPointer> _prepared; ///< by the last round, reused while the facts are the same
    SmartFolderNeeds _extraNeeds;
    Task _factsTask;
    Task _evaluationTask;
    std::optional<Preview> _preview;
    std::list<Task> _singleTasks;
    std::optional<CalendarInterval> _today;
    Timer _nextDay;
    struct Waiting {
        SmartFolderNeeds needs;
        std::function<void()> done;
    };
    std::vector<Waiting> _waiting; ///< callers of `gatherFacts`
};

/// The names of the smart folders that contain each application, by app key. Thread-safe.
QHash<QString, QStringList> namesByAppKey(const QList<SmartFolderDefinition>& definitions,
                                          const SmartFolderLibrary::Evaluations& evaluations);

} // namespace tessellar
