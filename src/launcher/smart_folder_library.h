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
#include <list>

namespace tessellar {

class SmartFolderFactsIndex;

/// What a display mode makes of the applications. Those that it hides are in no smart folder there.
struct SmartFolderView {
    QHash<QString, QString> customNames; ///< that the user gave, by app key
    QSet<QString> hiddenKeys;

    bool operator==(const SmartFolderView&) const = default;
};

/// The smart folders of the launcher: their definitions, the facts of all applications, and what each
/// folder shows in each display mode.
///
/// Evaluations follow whatever they depend on, off the main thread, in rounds:
///
///     1. the facts are gathered that the definitions need: first those that bundles tell, then, as
///        they come, those for which tools have to be run;
///     2. all definitions are evaluated over them on a worker, each time that more is known;
///     3. the results come back; where something has changed meanwhile they are dropped, and the next
///        round's count. What equals what was shown is not redrawn.
///
/// A round begins when applications, their names, hidden applications, definitions or the locale
/// change, when usage, update statuses, channels or custom icons do that a definition needs, and at the
/// start of each day.
class SmartFolderLibrary {
public:
    using Outcome = std::expected<void, LauncherError>;
    explicit SmartFolderLibrary(Machine& machine);
    ~SmartFolderLibrary();

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
    /// Shows these again, in any case; false while the registry may hold others.
    bool takeBack(const QList<SmartFolderDefinition>& definitions);
    /// What the definitions need to be decided: who knows such facts has reason to find them out.
    SmartFolderNeeds needs() const;

    /// The definition's name, or "Unavailable Smart Folder".
    QString name(const QUuid& id) const;
    /// What stands beside a folder that is not all there: a definition that is missing, rules that
    /// could not be decided, or not yet. Empty when all is well.
    QString notice(const QUuid& id, LauncherWindowMode mode) const;
    /// The same of an evaluation.
    QString notice(const SmartFolderDefinition& definition,
                   const SmartFolderEvaluation& evaluation) const;
    /// What a folder shows; empty before the first round.
    QStringList appKeys(const QUuid& id, LauncherWindowMode mode) const;
    const SmartFolderEvaluation* evaluation(const QUuid& id, LauncherWindowMode mode) const;
    using Evaluations = QHash<QUuid, SmartFolderEvaluation>;
    const Evaluations& evaluations(LauncherWindowMode mode) const { return _evaluations[at(mode)]; }
    /// One evaluation at once, on the calling thread, over the facts at hand.
    SmartFolderEvaluation evaluate(const SmartFolderDefinition& definition, LauncherWindowMode mode,
                                   const Locale& locale, Instant now) const;

    /// What a definition would show that is not saved, with the facts that this was worked out over:
    /// found as in a round, and told again whenever it may have changed, until another is previewed or
    /// none. What another preview has gathered serves this one, too.
    using Previewed = std::function<void(SmartFolderEvaluation, const SmartFolderFactsList&)>;
    void preview(const SmartFolderDefinition& definition, LauncherWindowMode mode, Previewed previewed);
    void endPreview();

    /// The facts of the last round, of hidden applications too, in the order of the applications.
    SmartFolderFactsList facts(LauncherWindowMode mode) const;
    /// Calls `done` once the facts are those of now, with these needs beside those of the definitions;
    /// for what only definitions need it does not wait.
    void gatherFacts(SmartFolderNeeds needs, std::function<void()> done);
    /// All facts of one application, without a look at any other: what is known at first, and all at
    /// the end.
    void gatherFactsOf(const AppEntry& app, LauncherWindowMode mode,
                       std::function<void(const SmartFolderAppFacts&, bool isComplete)> told);

    // What evaluations depend on.
    void setApps(const QList<AppEntry>& apps);
    void setView(LauncherWindowMode mode, SmartFolderView view);
    void recordLaunch(const QString& appKey);
    /// What was recorded of use, at the user's wish.
    void forgetUsage();
    /// Applications that go by another key now: what was recorded of them goes with them.
    void followKeys(const QHash<QString, QString>& changedKeys);
    /// Changes what the launcher knows besides: update statuses, channels, custom icons.
    void setRuntimeFacts(SmartFolderRuntimeFacts facts);
    const SmartFolderRuntimeFacts& runtimeFacts() const { return _runtime; }
    /// To be called after the machine's locale was changed.
    void localeChanged();
    /// Looks whether it is another day, or another time zone, and what was used meanwhile: to be called
    /// when the user may come back after a while, as after a sleep, which timers do not notice.
    void lookAgain();

    quint64 inspectionCount() const { return _catalog.inspectionCount(); }

    Signal<> changed; ///< definitions, or what folders show

private:
    template <typename T>
    using ForModes = std::array<T, 2>;
    /// The facts as a mode sees them, ready for definitions. Never changes; any thread may use it.
    struct Prepared {
        SmartFolderFactsList facts; ///< of the catalog
        SmartFolderView view;
        std::shared_ptr<const SmartFolderFactsIndex> index;
    };
    using PreparedPointer = std::shared_ptr<const Prepared>;
    struct Evaluated {
        ForModes<Evaluations> evaluations;
        ForModes<PreparedPointer> prepared;
        bool isAnother = false;
    };
    struct Preview {
        SmartFolderDefinition definition;
        LauncherWindowMode mode;
        Previewed previewed;
        SmartFolderNeeds needs; ///< of this one and those before it
        std::optional<SmartFolderFactsList> facts;
        PreparedPointer prepared;
        Task factsTask;
        Task evaluationTask;
    };

    static std::size_t at(LauncherWindowMode mode) { return static_cast<std::size_t>(mode); }
    static PreparedPointer prepare(const SmartFolderFactsList& facts, const SmartFolderView& view,
                                   const ForModes<PreparedPointer>& before, const Locale& locale,
                                   const FileSystem& files);
    void accept(const SmartFolderStore::LoadResult& result);
    void show(const QList<SmartFolderDefinition>& definitions);
    /// Begins a round when anything shown needs one of these.
    void startRoundFor(SmartFolderNeeds others);
    void startRound();
    void evaluateRound(const SmartFolderFactsList& facts, bool isComplete);
    void finishRound(Evaluated evaluated, bool isComplete);
    void gatherForPreview();
    void evaluatePreview();
    bool lookAtDay();
    void scheduleNextLook();
    SmartFolderFactsCatalog::Request request(QList<AppEntry> apps, SmartFolderNeeds needs);

    Machine& _machine;
    SmartFolderStore _store;
    AppUsageStore _usage;
    SmartFolderFactsCatalog _catalog;
    Calendar _calendar;
    std::optional<LauncherError> _failure;
    QList<SmartFolderDefinition> _definitions;
    bool _isUnsure = false; ///< whether the registry holds them: a save failed, and so did the way back
    QList<AppEntry> _apps;  ///< as the scan names them
    ForModes<SmartFolderView> _views;
    /// Without usage. Of updates nothing is known before somebody says so.
    SmartFolderRuntimeFacts _runtime{.pending = SmartFolderNeed::updates | SmartFolderNeed::channels};
    std::optional<SmartFolderRuntimeFacts> _runtimeWithUsage;
    SmartFolderFactsList _facts;
    ForModes<Evaluations> _evaluations;
    ForModes<PreparedPointer> _prepared; ///< of the last round, for the next one with the same facts
    SmartFolderNeeds _extraNeeds;
    Task _factsTask;
    Task _evaluationTask;
    std::optional<Preview> _preview;
    std::list<Task> _singleTasks;
    std::optional<CalendarInterval> _today;
    Timer _nextLook;
    struct Waiting {
        SmartFolderNeeds needs;
        std::function<void()> done;
    };
    std::vector<Waiting> _waiting; ///< for facts
};

/// The smart folders that show each application, by app key. Good for any thread.
QHash<QString, QStringList> namesByAppKey(const QList<SmartFolderDefinition>& definitions,
                                          const SmartFolderLibrary::Evaluations& evaluations);

} // namespace tessellar
