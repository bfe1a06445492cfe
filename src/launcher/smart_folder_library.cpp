#include "launcher/smart_folder_library.h"

#include "smartfolders/smart_folder_facts_index.h"
#include "updates/app_update_settings.h"
#include "updates/app_update_texts.h"

#include <algorithm>

namespace tessellar {

static const QString unavailableTitle = QStringLiteral("Smart Folders are unavailable");

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
    , _usage(machine, machine.places.applicationFolder())
    , _catalog(machine)
    , _calendar(Calendar::system(machine.locale)) {}

// ---- definitions

void SmartFolderLibrary::load() {
    _usage.load();
    accept(_store.load());
    if (_failure)
        _machine.log.warning(_failure->message);
}

void SmartFolderLibrary::accept(const SmartFolderStore::LoadResult& result) {
    const auto* loaded = std::get_if<SmartFolderStore::Loaded>(&result);
    const auto* failed = std::get_if<SmartFolderStore::Failed>(&result);
    _definitions = loaded ? loaded->definitions : QList<SmartFolderDefinition>();
    _failure = failed ? std::optional(launcherError(failed->error, unavailableTitle)) : std::nullopt;
}

SmartFolderLibrary::Outcome SmartFolderLibrary::recover(SmartFolderRecovery how) {
    accept(_store.recover(how));
    changed.notify();
    startRound();
    return _failure ? Outcome(std::unexpected(*_failure)) : Outcome();
}

QString SmartFolderLibrary::unavailableNotice() {
    return QStringLiteral("The Smart Folder registry could not be read. Its original file was "
                          "preserved, so no rules can be changed until the registry is repaired.");
}

const SmartFolderDefinition* SmartFolderLibrary::definition(const QUuid& id) const {
    const auto found = std::ranges::find(_definitions, id, &SmartFolderDefinition::id);
    return found == _definitions.end() ? nullptr : &*found;
}

SmartFolderLibrary::Outcome
SmartFolderLibrary::setDefinitions(const QList<SmartFolderDefinition>& definitions) {
    if (definitions == _definitions)
        return {};
    if (const auto saved = _store.save(definitions); !saved)
        return std::unexpected(
            launcherError(saved.error(), QStringLiteral("Could not save Smart Folders")));
    _definitions = definitions;
    changed.notify();
    startRound();
    return {};
}

QString SmartFolderLibrary::name(const QUuid& id) const {
    const SmartFolderDefinition* found = definition(id);
    return found ? found->name : QStringLiteral("Unavailable Smart Folder");
}

QString SmartFolderLibrary::notice(const QUuid& id) const {
    const SmartFolderDefinition* found = definition(id);
    if (!found)
        return QStringLiteral("This Smart Folder’s definition is unavailable.");
    const SmartFolderEvaluation* shown = evaluation(id);
    return shown ? notice(*found, *shown) : QString();
}

QString SmartFolderLibrary::notice(const SmartFolderDefinition& definition,
                                   const SmartFolderEvaluation& evaluation) const {
    if (evaluation.unknownRuleIDs.isEmpty())
        return {};
    const bool isForWantOfChecks =
        !readAppUpdateSettings(_machine.settings).enabled &&
        std::ranges::any_of(definition.rules, [](const SmartFolderRule& rule) {
            return rule.fieldName() == u"updateStatus";
        });
    return isForWantOfChecks
               ? update_texts::checkingDisabled
               : QStringLiteral(
                     "Some app details are unavailable, so those rules cannot be evaluated yet.");
}

// ---- what folders show

const SmartFolderEvaluation* SmartFolderLibrary::evaluation(const QUuid& id) const {
    const auto found = _evaluations.find(id);
    return found == _evaluations.end() ? nullptr : &*found;
}

QStringList SmartFolderLibrary::appKeys(const QUuid& id) const {
    const SmartFolderEvaluation* shown = evaluation(id);
    return shown ? shown->appKeys() : QStringList();
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
                                                   const Locale& locale, Instant now) const {
    return SmartFolderEvaluator(_machine.files)
        .evaluate(definition, _facts, locale, now, Calendar(locale, _calendar.timeZone()));
}

// ---- rounds

void SmartFolderLibrary::setApps(const QList<AppEntry>& apps) {
    _apps = apps;
    QStringList keys;
    for (const AppEntry& app : apps)
        keys.append(appKey(app));
    if (_usage.recordSeen(keys))
        _usage.save();
    startRound();
}

void SmartFolderLibrary::setCustomNames(const QHash<QString, QString>& names) {
    if (names == _customNames)
        return;
    _customNames = names;
    if (!_apps.isEmpty())
        startRound();
}

void SmartFolderLibrary::recordLaunch(const QString& key) {
    _usage.recordLaunch(key);
    _usage.save();
    startRound();
}

void SmartFolderLibrary::setRuntimeFacts(SmartFolderRuntimeFacts facts) {
    if (facts == _runtime)
        return;
    _runtime = std::move(facts);
    startRound();
}

void SmartFolderLibrary::localeChanged() {
    _calendar = Calendar::system(_machine.locale);
    startRound();
}

QList<AppEntry> SmartFolderLibrary::namedApps() const {
    QList<AppEntry> apps = _apps;
    if (!_customNames.isEmpty())
        for (AppEntry& app : apps)
            app.name = _customNames.value(appKey(app), app.name);
    return apps;
}

SmartFolderRuntimeFacts SmartFolderLibrary::runtimeFactsNow() const {
    SmartFolderRuntimeFacts facts = _runtime;
    _usage.fill(facts);
    return facts;
}

void SmartFolderLibrary::startRound() {
    // What is under way is of an older generation: its tasks end and reach nobody.
    _factsTask.cancel();
    _evaluationTask.cancel();
    scheduleNextDay();
    startPreview();
    if (_definitions.isEmpty() && _settledCallbacks.empty())
        return finishRound({}, nullptr);
    _factsTask =
        _catalog.facts(request(inspectionsNeeded(_definitions) + _extraInspections),
                       [this](SmartFolderFactsList facts) { evaluateRound(std::move(facts)); });
}

SmartFolderFactsCatalog::Request
SmartFolderLibrary::request(const QSet<SmartFolderInspection>& inspections) const {
    return {.apps = namedApps(), .runtime = runtimeFactsNow(), .inspections = inspections};
}

void SmartFolderLibrary::evaluateRound(SmartFolderFactsList facts) {
    _facts = facts;
    _evaluationTask = _machine.workers.run(
        Lane::computing,
        // The worker has the index for itself; one that is still at work on an older round keeps it.
        [definitions = _definitions, facts = std::move(facts), index = std::move(_index),
         locale = _machine.locale, calendar = _calendar, now = _machine.clock.now(),
         &files = _machine.files](std::stop_token stop) mutable {
            Evaluations evaluations;
            if (!index || !index->isGoodFor(facts, locale))
                index = std::make_shared<SmartFolderFactsIndex>(std::move(facts), locale, files);
            auto all = SmartFolderEvaluator::evaluateAll(definitions, *index, now, calendar, stop);
            for (qsizetype i = 0; i < all.size(); ++i)
                evaluations.insert(definitions.at(i).id, std::move(all[i]));
            return std::pair(std::move(evaluations), std::move(index));
        },
        [this](std::pair<Evaluations, Index> result) {
            finishRound(std::move(result.first), std::move(result.second));
        });
}

void SmartFolderLibrary::finishRound(Evaluations evaluations, Index index) {
    _index = std::move(index);
    _extraInspections.clear();
    if (evaluations != _evaluations) {
        _evaluations = std::move(evaluations);
        changed.notify();
    }
    for (const auto& callback : std::exchange(_settledCallbacks, {}))
        callback();
}

// ---- what is not saved

void SmartFolderLibrary::preview(const SmartFolderDefinition& definition, Previewed previewed) {
    _preview = Preview{definition, std::move(previewed), {}};
    startPreview();
}

void SmartFolderLibrary::endPreview() { _preview.reset(); }

void SmartFolderLibrary::startPreview() {
    if (!_preview)
        return;
    const auto evaluate = [this](SmartFolderFactsList facts) {
        _preview->task = _machine.workers.run(
            Lane::computing,
            [definition = _preview->definition, facts, locale = _machine.locale, calendar = _calendar,
             now = _machine.clock.now(), &files = _machine.files](std::stop_token) {
                return SmartFolderEvaluator(files).evaluate(definition, facts, locale, now, calendar);
            },
            [this, facts](SmartFolderEvaluation evaluation) {
                // A copy: what is told may ask for another preview.
                const Previewed previewed = _preview->previewed;
                previewed(std::move(evaluation), facts);
            });
    };
    _preview->task = _catalog.facts(request(inspectionsNeeded({_preview->definition})), evaluate);
}

void SmartFolderLibrary::scheduleNextDay() {
    const Instant now = _machine.clock.now();
    const auto day = _calendar.interval(CalendarUnit::day, now);
    if (!day || _definitions.isEmpty())
        return _nextDay.cancel();
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(day->end - now);
    // A clock that was set, a machine that slept or came into another time zone is noticed within the
    // hour.
    _nextDay = _machine.scheduler.after(std::clamp<std::chrono::milliseconds>(
                                            wait, std::chrono::milliseconds(1), std::chrono::hours(1)),
                                        [this, end = day->end, start = day->start] {
                                            const Instant later = _machine.clock.now();
                                            const Calendar current = Calendar::system(_machine.locale);
                                            if (current.timeZone() != _calendar.timeZone())
                                                localeChanged();
                                            else if (later >= end || later < start)
                                                startRound();
                                            else
                                                scheduleNextDay();
                                        });
}

void SmartFolderLibrary::gatherFacts(const QSet<SmartFolderInspection>& inspections,
                                     std::function<void()> done) {
    _extraInspections += inspections;
    _settledCallbacks.push_back(std::move(done));
    startRound();
}

} // namespace tessellar
