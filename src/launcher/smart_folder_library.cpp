#include "launcher/smart_folder_library.h"

#include "platform/texts.h"
#include "smartfolders/smart_folder_evaluator.h"
#include "smartfolders/smart_folder_facts_index.h"
#include "smartfolders/smart_folder_notice.h"
#include "updates/app_update_settings.h"
#include "updates/app_update_texts.h"

#include <algorithm>

namespace tessellar {

/// The longest time between two checks of the clock.
static constexpr std::chrono::minutes longestWait(10);

static const char* const unavailableTitle = Texts::noop("Smart Folders are unavailable");

static LauncherError launcherError(const SmartFolderStore::Error& error, const QString& title) {
    if (const auto* file = std::get_if<FileError>(&error))
        return launcherError(*file, title);
    static constexpr std::array names{"unsupportedVersion",    "invalidDefinition",
                                      "duplicateDefinitionID", "duplicateRuleID",
                                      "writeBlocked",          "recoveryRequired"};
    const auto* store = std::get_if<SmartFolderStore::StoreError>(&error);
    return {store ? QString::fromLatin1(names[store->index()]) : QStringLiteral("damaged"),
            message(error), title};
}

SmartFolderLibrary::SmartFolderLibrary(Machine& machine)
    : _machine(machine)
    , _store(machine.files, machine.places.applicationFolder(), machine.clock, machine.uuids)
    , _usageStore(machine, machine.places.applicationFolder())
    , _catalog(machine, FileSystem::joined(machine.places.applicationFolder(),
                                           QStringLiteral("bundle-answers.json")))
    , _calendar(Calendar::system(machine.locale)) {}

SmartFolderLibrary::~SmartFolderLibrary() {
    if (_usageRead.valid())
        _usageRead.wait();
}

/// The applications' facts, with a mode's custom names.
static SmartFolderFactsList named(const SmartFolderFactsList& facts,
                                  const SmartFolderContext& context) {
    if (context.customNames.isEmpty())
        return facts;
    SmartFolderFactsList result;
    result.reserve(facts.size());
    for (const auto& record : facts) {
        const auto name = context.customNames.constFind(appKey(record->entry));
        if (name == context.customNames.constEnd() || *name == record->entry.name) {
            result.append(record);
            continue;
        }
        SmartFolderAppFacts renamed = *record;
        renamed.entry.name = *name;
        result.append(std::make_shared<const SmartFolderAppFacts>(std::move(renamed)));
    }
    return result;
}

/// Those of applications that folders may show.
static SmartFolderFactsList visible(const SmartFolderFactsList& facts,
                                    const SmartFolderContext& context) {
    SmartFolderFactsList result = named(facts, context);
    if (!context.hiddenKeys.isEmpty())
        result.removeIf(
            [&](const auto& record) { return context.hiddenKeys.contains(appKey(record->entry)); });
    return result;
}

// ---- definitions

void SmartFolderLibrary::load() {
    // Shared: the worker may still be leaving `set_value` when a wait ends.
    const auto read = std::make_shared<std::promise<MoveOnlyFunction<void()>>>();
    _usageRead = read->get_future();
    _machine.workers.submit(
        {}, [&store = _usageStore, read](std::stop_token) { read->set_value(store.read()); });
    accept(_store.load());
    if (_failure)
        _machine.log.warning(_failure->message);
}

AppUsageStore& SmartFolderLibrary::usage() {
    if (_usageRead.valid())
        _usageRead.get()();
    return _usageStore;
}

void SmartFolderLibrary::accept(const SmartFolderStore::LoadResult& result) {
    const auto* loaded = std::get_if<SmartFolderStore::Loaded>(&result);
    const auto* failed = std::get_if<SmartFolderStore::Failed>(&result);
    _definitions = loaded ? loaded->definitions : QList<SmartFolderDefinition>();
    _failure = failed ? std::optional(launcherError(failed->error, Texts::tr(unavailableTitle)))
                      : std::nullopt;
}

SmartFolderLibrary::Outcome SmartFolderLibrary::recover(SmartFolderRecovery how) {
    if (!_failure)
        return {}; // definitions may be being saved
    accept(_store.recover(how));
    changed.notify();
    startRound();
    return _failure ? Outcome(std::unexpected(*_failure)) : Outcome();
}

QString SmartFolderLibrary::unavailableNotice() {
    return Texts::tr("The Smart Folder registry could not be read. Its original file was "
                     "preserved, so no rules can be changed until the registry is repaired.");
}

const SmartFolderDefinition* SmartFolderLibrary::definition(const QUuid& id) const {
    const auto found = std::ranges::find(_definitions, id, &SmartFolderDefinition::id);
    return found == _definitions.end() ? nullptr : &*found;
}

std::expected<SmartFolderLibrary::Save, LauncherError>
SmartFolderLibrary::saving(const QList<SmartFolderDefinition>& definitions) {
    const auto failure = [](const SmartFolderStore::Error& error) {
        return std::unexpected(launcherError(error, Texts::tr("Could not save Smart Folders")));
    };
    const auto save = _store.saving(definitions);
    if (!save)
        return failure(save.error());
    return [save = *save, failure]() -> Outcome {
        const auto saved = save();
        return saved ? Outcome() : failure(saved.error());
    };
}

bool SmartFolderLibrary::rollBack(const QList<SmartFolderDefinition>& definitions) {
    const bool isSaved = _store.save(definitions).has_value();
    show(definitions);
    return isSaved;
}

void SmartFolderLibrary::show(const QList<SmartFolderDefinition>& definitions) {
    _definitions = definitions;
    changed.notify();
    startRound();
}

QString SmartFolderLibrary::name(const QUuid& id) const {
    const SmartFolderDefinition* found = definition(id);
    return found ? found->name : Texts::tr("Unavailable Smart Folder");
}

QString SmartFolderLibrary::notice(const QUuid& id, LauncherWindowMode mode) const {
    const SmartFolderDefinition* found = definition(id);
    if (!found)
        return Texts::tr("This Smart Folder’s definition is unavailable.");
    const SmartFolderEvaluation* shown = evaluation(id, mode);
    return shown ? notice(*found, *shown) : QString();
}

QString SmartFolderLibrary::notice(const SmartFolderDefinition& definition,
                                   const SmartFolderEvaluation& evaluation) const {
    return smartFolderNotice(definition, evaluation,
                             readAppUpdateSettings(_machine.settings).enabled
                                 ? QString()
                                 : update_texts::checkingDisabled());
}

// ---- evaluations

const SmartFolderEvaluation* SmartFolderLibrary::evaluation(const QUuid& id,
                                                            LauncherWindowMode mode) const {
    const auto found = evaluations(mode).constFind(id);
    return found == evaluations(mode).constEnd() ? nullptr : &*found;
}

QHash<QString, QStringList> namesByAppKey(const QList<SmartFolderDefinition>& definitions,
                                          const SmartFolderLibrary::Evaluations& evaluations) {
    QHash<QString, QStringList> names;
    for (const SmartFolderDefinition& definition : definitions)
        if (const auto shown = evaluations.constFind(definition.id); shown != evaluations.constEnd())
            for (const QString& key : shown->appKeys())
                names[key].append(definition.name);
    return names;
}

SmartFolderEvaluation SmartFolderLibrary::evaluate(const SmartFolderDefinition& definition,
                                                   LauncherWindowMode mode, const Locale& locale,
                                                   Instant now) const {
    return SmartFolderEvaluator(_machine.files)
        .evaluate(definition, visible(_facts, _contexts[at(mode)]), locale, now,
                  Calendar(locale, _calendar.timeZone()));
}

SmartFolderFactsList SmartFolderLibrary::facts(LauncherWindowMode mode) const {
    return named(_facts, _contexts[at(mode)]);
}

// ---- inputs

void SmartFolderLibrary::setApps(const QList<AppEntry>& apps) {
    _apps = apps;
    QStringList keys;
    for (const AppEntry& app : apps)
        keys.append(appKey(app));
    if (usage().recordSeen(keys)) {
        _runtimeWithUsage.reset();
        usage().save();
    }
    startRound();
}

void SmartFolderLibrary::setContext(LauncherWindowMode mode, SmartFolderContext context) {
    if (context == _contexts[at(mode)])
        return;
    _contexts[at(mode)] = std::move(context);
    if (!_apps.isEmpty())
        startRound();
}

void SmartFolderLibrary::recordLaunch(const QString& key) {
    usage().recordLaunch(key);
    _runtimeWithUsage.reset();
    usage().save();
    startRoundFor(SmartFolderNeed::usage);
}

void SmartFolderLibrary::forgetUsage() {
    usage().forget();
    _runtimeWithUsage.reset();
    usage().save();
    startRoundFor(SmartFolderNeed::usage);
}

void SmartFolderLibrary::changeKeys(const QHash<QString, QString>& changedKeys) {
    if (!usage().changeKeys(changedKeys))
        return;
    _runtimeWithUsage.reset();
    usage().save();
}

void SmartFolderLibrary::setRuntimeFacts(SmartFolderRuntimeFacts facts) {
    SmartFolderNeeds others = facts.pending ^ _runtime.pending;
    others.setFlag(SmartFolderNeed::updates,
                   others.testFlag(SmartFolderNeed::updates) ||
                       facts.updateStatuses != _runtime.updateStatuses ||
                       facts.updateCheckingEnabled != _runtime.updateCheckingEnabled);
    others.setFlag(SmartFolderNeed::channels,
                   others.testFlag(SmartFolderNeed::channels) ||
                       facts.distributionChannels != _runtime.distributionChannels);
    others.setFlag(SmartFolderNeed::icons, facts.customIconKeys != _runtime.customIconKeys);
    if (!others)
        return;
    _runtime = std::move(facts);
    _runtimeWithUsage.reset();
    startRoundFor(others);
}

void SmartFolderLibrary::localeChanged() {
    _calendar = Calendar::system(_machine.locale);
    startRound();
}

SmartFolderFactsCatalog::Request SmartFolderLibrary::request(QList<AppEntry> apps,
                                                             SmartFolderNeeds needs) {
    if (!_runtimeWithUsage) {
        _runtimeWithUsage = _runtime;
        usage().fill(*_runtimeWithUsage);
    }
    return {.apps = std::move(apps), .runtime = *_runtimeWithUsage, .needs = needs};
}

// ---- rounds

void SmartFolderLibrary::startRoundFor(SmartFolderNeeds others) {
    const SmartFolderNeeds all =
        needsOf(_definitions) | _extraNeeds | (_preview ? _preview->needs : SmartFolderNeeds());
    if (all & others)
        startRound();
}

void SmartFolderLibrary::startRound() {
    // A round in progress is outdated and is cancelled.
    _factsTask.cancel();
    _evaluationTask.cancel();
    scheduleNextDay();
    if (_preview)
        gatherForPreview();
    if (_definitions.isEmpty() && _waiting.empty()) {
        const bool wasShown =
            std::ranges::any_of(_evaluations, [](const Evaluations& each) { return !each.isEmpty(); });
        return finishRound({.evaluations = {}, .prepared = {}, .isChanged = wasShown}, true);
    }
    _factsTask = _catalog.facts(request(_apps, needsOf(_definitions) | _extraNeeds),
                                [this](const SmartFolderFactsList& facts, bool isComplete) {
                                    evaluateRound(facts, isComplete);
                                });
}

SmartFolderLibrary::PreparedPointer SmartFolderLibrary::prepare(const SmartFolderFactsList& facts,
                                                                const SmartFolderContext& context,
                                                                const PerMode<PreparedPointer>& before,
                                                                const Locale& locale,
                                                                const FileSystem& files) {
    for (const PreparedPointer& known : before)
        if (known && known->facts == facts && known->context == context &&
            known->index->isGoodFor(known->index->facts(), locale))
            return known;
    return std::make_shared<const Prepared>(
        facts, context,
        std::make_shared<const SmartFolderFactsIndex>(visible(facts, context), locale, files));
}

void SmartFolderLibrary::evaluateRound(const SmartFolderFactsList& facts, bool isComplete) {
    _facts = facts;
    _evaluationTask = _machine.workers.run(
        Lane::computing,
        [definitions = _definitions, facts, contexts = _contexts, prepared = _prepared,
         before = _evaluations, locale = _machine.locale, calendar = _calendar,
         now = _machine.clock.now(), &files = _machine.files](const std::stop_token& stop) {
            Evaluated result;
            for (std::size_t mode = 0; mode < contexts.size(); ++mode) {
                if (mode > 0 && contexts[mode] == contexts[0]) {
                    result.prepared[mode] = result.prepared[0];
                    result.evaluations[mode] = result.evaluations[0];
                    continue;
                }
                result.prepared[mode] = prepare(facts, contexts[mode], prepared, locale, files);
                const auto all = SmartFolderEvaluator::evaluateAll(
                    definitions, *result.prepared[mode]->index, now, calendar, stop);
                for (qsizetype i = 0; i < all.size(); ++i)
                    result.evaluations[mode].insert(definitions.at(i).id, all.at(i));
            }
            result.isChanged = result.evaluations != before;
            return result;
        },
        [this, isComplete](Evaluated evaluated) { finishRound(std::move(evaluated), isComplete); });
}

void SmartFolderLibrary::finishRound(Evaluated evaluated, bool isComplete) {
    _prepared = std::move(evaluated.prepared);
    if (evaluated.isChanged) {
        _evaluations = std::move(evaluated.evaluations);
        changed.notify();
    }
    SmartFolderNeeds pending;
    if (isComplete)
        _extraNeeds = {};
    else
        for (const auto& record : std::as_const(_facts))
            pending |= record->pending & toolNeeds;
    const auto first = std::ranges::stable_partition(
        _waiting, [&](const Waiting& waiting) { return static_cast<bool>(waiting.needs & pending); });
    const std::vector<Waiting> served(std::make_move_iterator(first.begin()),
                                      std::make_move_iterator(first.end()));
    _waiting.erase(first.begin(), first.end());
    for (const Waiting& waiting : served)
        waiting.done();
}

void SmartFolderLibrary::gatherFacts(SmartFolderNeeds needs, std::function<void()> done) {
    _extraNeeds |= needs;
    _waiting.push_back({needs, std::move(done)});
    startRound();
}

void SmartFolderLibrary::gatherFactsOf(
    const AppEntry& app, LauncherWindowMode mode,
    std::function<void(const SmartFolderAppFacts&, bool isComplete)> told) {
    const auto task = _singleTasks.emplace(_singleTasks.end());
    *task = _catalog.facts(
        request({app}, allNeeds()),
        [this, task, mode, told = std::move(told)](const SmartFolderFactsList& facts, bool isComplete) {
            if (isComplete)
                _singleTasks.erase(task);
            told(*named(facts, _contexts[at(mode)]).first(), isComplete);
        });
}

// ---- preview

void SmartFolderLibrary::preview(const SmartFolderDefinition& definition, LauncherWindowMode mode,
                                 Previewed previewed) {
    const SmartFolderNeeds needs = needsOf({definition});
    const bool isNew = !_preview || (needs & ~_preview->needs);
    if (!_preview)
        _preview.emplace();
    _preview->definition = definition;
    _preview->mode = mode;
    _preview->previewed = std::move(previewed);
    _preview->needs |= needs;
    if (isNew)
        gatherForPreview();
    else if (_preview->facts)
        evaluatePreview();
}

void SmartFolderLibrary::endPreview() { _preview.reset(); }

void SmartFolderLibrary::gatherForPreview() {
    _preview->factsTask = _catalog.facts(request(_apps, _preview->needs),
                                         [this](const SmartFolderFactsList& facts, bool) {
                                             _preview->facts = facts;
                                             evaluatePreview();
                                         });
}

void SmartFolderLibrary::evaluatePreview() {
    const std::size_t mode = at(_preview->mode);
    _preview->evaluationTask = _machine.workers.run(
        Lane::computing,
        [definition = _preview->definition, facts = *_preview->facts, context = _contexts[mode],
         before = PerMode<PreparedPointer>{_preview->prepared, _prepared[mode]},
         locale = _machine.locale, calendar = _calendar, now = _machine.clock.now(),
         &files = _machine.files](const std::stop_token& stop) {
            auto prepared = prepare(facts, context, before, locale, files);
            auto evaluations =
                SmartFolderEvaluator::evaluateAll({definition}, *prepared->index, now, calendar, stop);
            return std::pair(std::move(prepared), std::move(evaluations.first()));
        },
        [this](std::pair<PreparedPointer, SmartFolderEvaluation> result) {
            _preview->prepared = std::move(result.first);
            // Copies, because the callback may replace or end the preview.
            const Previewed previewed = _preview->previewed;
            const PreparedPointer prepared = _preview->prepared;
            previewed(std::move(result.second), prepared->index->facts());
        });
}

// ---- date changes

void SmartFolderLibrary::reevaluate() {
    // The bundles tell which applications were opened outside the launcher meanwhile.
    if (!reevaluateOnNewDay() && !_apps.isEmpty())
        startRoundFor(SmartFolderNeed::usage);
}

/// False if the day and the zone are still the same.
bool SmartFolderLibrary::reevaluateOnNewDay() {
    const Instant now = _machine.clock.now();
    if (Calendar::system(_machine.locale).timeZone() != _calendar.timeZone()) {
        _runtimeWithUsage.reset();
        localeChanged();
        return true;
    }
    if (!_today || (_today->start <= now && now < _today->end)) {
        scheduleNextDay();
        return false;
    }
    _runtimeWithUsage.reset();
    startRound();
    return true;
}

void SmartFolderLibrary::scheduleNextDay() {
    const Instant now = _machine.clock.now();
    const auto today = _calendar.interval(CalendarUnit::day, now);
    if (today != std::exchange(_today, today))
        _runtimeWithUsage.reset(); // whether an application counts as unused depends on the day
    if (!_today || _definitions.isEmpty())
        return _nextDay.cancel();
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(_today->end - now);
    // Polled, so that a clock change, a sleep or another time zone is noticed even without a
    // notification.
    _nextDay = _machine.scheduler.after(
        std::clamp<std::chrono::milliseconds>(wait, std::chrono::milliseconds(1), longestWait),
        [this] { (void)reevaluateOnNewDay(); });
}

} // namespace tessellar
