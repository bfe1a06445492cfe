#include "editing/layout_undo.h"

#include "platform/texts.h"

#include <algorithm>

namespace tessellar {
namespace {

/// The definitions that differ between two states, by identifier.
QSet<QUuid> changedDefinitions(const LayoutUndoEntry& entry) {
    const auto& before = entry.before.smartFolderDefinitions;
    const auto& after = entry.after.smartFolderDefinitions;
    QSet<QUuid> changed;
    if (before == after)
        return changed;
    for (const auto& [some, others] : {std::pair(&before, &after), std::pair(&after, &before)})
        for (const SmartFolderDefinition& definition : *some)
            if (!others->contains(definition))
                changed.insert(definition.id);
    return changed;
}

/// True for a step that was made in a mode, or changed its document from the other.
bool concerns(const LayoutUndoEntry& entry, LauncherWindowMode mode) {
    return entry.before.documentOf(mode) != nullptr;
}

bool changesTiles(const LayoutUndoEntry& entry, LauncherWindowMode mode) {
    return concerns(entry, mode) && *entry.before.documentOf(mode) != *entry.after.documentOf(mode);
}

QSet<QUuid> onlyInOne(const QSet<QUuid>& some, const QSet<QUuid>& others) {
    return (some - others) + (others - some);
}

/// The definitions that a step creates or deletes.
QSet<QUuid> createdOrDeleted(const LayoutUndoEntry& entry) {
    const auto ids = [](const QList<SmartFolderDefinition>& definitions) {
        QSet<QUuid> result;
        for (const SmartFolderDefinition& definition : definitions)
            result.insert(definition.id);
        return result;
    };
    return onlyInOne(ids(entry.before.smartFolderDefinitions), ids(entry.after.smartFolderDefinitions));
}

/// The definitions whose tiles a step adds or removes.
QSet<QUuid> placedOrTakenAway(const LayoutUndoEntry& entry) {
    const auto placed = [](const LayoutDocument& document) {
        QSet<QUuid> ids;
        forEachItem(document.pages, [&](const LaunchpadItem& item) {
            if (const SmartFolderReference* reference = item.smartFolder())
                ids.insert(reference->definitionID);
            return true;
        });
        return ids;
    };
    QSet<QUuid> result;
    for (const LauncherWindowMode mode : {entry.before.mode, otherMode(entry.before.mode)})
        if (changesTiles(entry, mode))
            result += onlyInOne(placed(*entry.before.documentOf(mode)),
                                placed(*entry.after.documentOf(mode)));
    return result;
}

/// True if the second step needs a definition that the first creates or deletes.
bool createsOrDeletesFor(const LayoutUndoEntry& one, const LayoutUndoEntry& another) {
    const auto made = createdOrDeleted(one);
    return !made.isEmpty() && made.intersects(placedOrTakenAway(another));
}

bool changesTheSame(const LayoutUndoEntry& one, const LayoutUndoEntry& another) {
    for (const LauncherWindowMode mode : {one.before.mode, otherMode(one.before.mode)})
        if (changesTiles(one, mode) && changesTiles(another, mode))
            return true;
    return changedDefinitions(one).intersects(changedDefinitions(another)) ||
           createsOrDeletesFor(one, another) || createsOrDeletesFor(another, one);
}

/// The newest step that concerns a mode. Some concern both, such as the deletion of a smart folder.
LayoutUndoHistory::Next nextStep(const QList<LayoutUndoEntry>& stack, LauncherWindowMode mode) {
    for (qsizetype i = stack.size() - 1; i >= 0; --i) {
        if (!concerns(stack.at(i), mode))
            continue;
        for (qsizetype later = stack.size() - 1; later > i; --later)
            if (changesTheSame(stack.at(i), stack.at(later)))
                return {&stack.at(i), &stack.at(later)};
        return {&stack.at(i), nullptr};
    }
    return {};
}

/// The tiles on the page that a state shows, by slot, and the page's folder and number.
struct ShownLevel {
    std::optional<QUuid> folder;
    qsizetype page = 0;
    Page tiles;
};

ShownLevel shownLevel(const LayoutUndoState& state, const GridCapacities& capacities) {
    ShownLevel level{std::nullopt, state.navigation.currentPage, {}};
    if (!state.navigation.folderStack.isEmpty()) {
        const OpenFolderLevel& innermost = state.navigation.folderStack.last();
        level.folder = innermost.id;
        level.page = innermost.page;
    }
    if (const Pages* pages = pagesOf(state.document.pages, level.folder)) {
        const auto capacity = static_cast<int>(capacities.of(level.folder));
        level.tiles = ShownPages(*pages, state.document.hiddenKeys, capacity).tiles(level.page);
    }
    return level;
}

} // namespace

const LayoutDocument* LayoutUndoState::documentOf(LauncherWindowMode which) const {
    if (which == mode)
        return &document;
    return otherDocument ? &*otherDocument : nullptr;
}

QString UndoRedoFeedback::text() const {
    return (direction == Direction::undo ? Texts::tr("Undo %1") : Texts::tr("Redo %1")).arg(name);
}

QString UndoRedoFeedback::symbolName() const {
    return direction == Direction::undo ? QStringLiteral("arrow.uturn.backward")
                                        : QStringLiteral("arrow.uturn.forward");
}

UndoRedoReflow reflowBetween(const LayoutUndoState& before, const LayoutUndoState& after,
                             const GridCapacities& capacities, const QUuid& id) {
    UndoRedoReflow reflow;
    reflow.id = id;
    const ShownLevel from = shownLevel(before, capacities);
    const ShownLevel to = shownLevel(after, capacities);
    const bool isSamePage =
        before.mode == after.mode && from.folder == to.folder && from.page == to.page;
    QHash<QUuid, int> slotsBefore;
    for (int slot = 0; isSamePage && slot < from.tiles.size(); ++slot)
        slotsBefore.insert(from.tiles.at(slot).id(), slot);
    QSet<QUuid> present;
    if (const LayoutDocument* document = before.documentOf(after.mode))
        forEachItem(document->pages, [&](const LaunchpadItem& item) {
            present.insert(item.id());
            return true;
        });

    for (int slot = 0; slot < to.tiles.size(); ++slot) {
        const QUuid tile = to.tiles.at(slot).id();
        const auto held = slotsBefore.constFind(tile);
        if (!present.contains(tile)) {
            reflow.appearing.insert(tile);
        } else if (held == slotsBefore.constEnd() || *held != slot) {
            reflow.movedOrder.insert(tile, static_cast<int>(reflow.movedOrder.size()));
            if (held != slotsBefore.constEnd())
                reflow.heldSlots.insert(tile, *held);
        }
    }
    return reflow;
}

LayoutUndoHistory::LayoutUndoHistory(Scheduler& scheduler, UuidSource& uuids, LayoutUndoActions actions)
    : _scheduler(scheduler), _uuids(uuids), _actions(std::move(actions)) {}

bool LayoutUndoHistory::record(const QString& name, LayoutUndoState before,
                               const QList<TrashedAppRecord>& trashedApps) {
    LayoutUndoState after = _actions.snapshot(before.mode);
    if (before.otherDocument == after.otherDocument) {
        before.otherDocument.reset();
        after.otherDocument.reset();
    }
    if (trashedApps.isEmpty() && before.document == after.document &&
        before.otherDocument == after.otherDocument &&
        before.smartFolderDefinitions == after.smartFolderDefinitions)
        return false;
    push({name, std::move(before), std::move(after), trashedApps, ++_lastNumber}, _undoStack.size());
    _redoStack.clear();
    changed();
    return true;
}

void LayoutUndoHistory::withdraw(std::uint64_t number, const QList<LayoutUndoEntry>& redoStack) {
    const auto found = std::ranges::find(_undoStack, number, &LayoutUndoEntry::number);
    if (found == _undoStack.end())
        return;
    const bool isNewest = found + 1 == _undoStack.end() && _redoStack.isEmpty();
    _undoStack.erase(found);
    if (isNewest)
        _redoStack = redoStack;
    changed();
}

void LayoutUndoHistory::giveBack(Direction direction, const LayoutUndoEntry& step) {
    // It may be on neither stack: an edit of the other mode clears the redo stack, and the undo stack
    // drops its oldest steps.
    for (QList<LayoutUndoEntry>* stack : {&_undoStack, &_redoStack})
        stack->removeIf([&](const LayoutUndoEntry& entry) { return entry.number == step.number; });
    if (direction == Direction::undo)
        push(step, _undoStack.size());
    else
        _redoStack.append(step);
    _undoFeedbackTask.cancel();
    _undoFeedback.reset();
    changed();
}

LayoutUndoHistory::Next LayoutUndoHistory::nextUndo(LauncherWindowMode mode) const {
    return nextStep(_undoStack, mode);
}

LayoutUndoHistory::Next LayoutUndoHistory::nextRedo(LauncherWindowMode mode) const {
    return nextStep(_redoStack, mode);
}

bool LayoutUndoHistory::canUndo(LauncherWindowMode mode) const { return can(nextUndo(mode)); }

bool LayoutUndoHistory::canRedo(LauncherWindowMode mode) const { return can(nextRedo(mode)); }

void LayoutUndoHistory::undo(LauncherWindowMode mode, const Done& done) {
    step(Direction::undo, mode, done);
}

void LayoutUndoHistory::redo(LauncherWindowMode mode, const Done& done) {
    step(Direction::redo, mode, done);
}

void LayoutUndoHistory::step(Direction direction, LauncherWindowMode mode, const Done& done) {
    QList<LayoutUndoEntry>& stack = direction == Direction::undo ? _undoStack : _redoStack;
    const Next next = nextStep(stack, mode);
    if (!can(next)) {
        if (done)
            done(next.blockedBy && !isInProgress() ? Result::blocked : Result::refused);
        return;
    }
    _isUndoRedoOperationInProgress = true;
    _undoFeedbackTask.cancel();
    _undoFeedback.reset();
    _undoReflowTask.cancel();
    _undoReflow.reset();
    _placeOfStep = next.entry - stack.constData();
    LayoutUndoEntry entry = stack.takeAt(_placeOfStep);
    const QList<TrashedAppRecord> records = entry.trashedApps;
    moveApps(direction == Direction::redo, records,
             [this, direction, entry = std::move(entry), done](const QList<TrashOutcome>& outcomes) {
                 afterTrash(direction, entry, outcomes, done);
             });
}

void LayoutUndoHistory::moveApps(bool intoTrash, const QList<TrashedAppRecord>& records,
                                 std::function<void(QList<TrashOutcome>)> then) {
    if (records.isEmpty()) {
        then({});
        return;
    }
    auto isWaiting = std::make_shared<bool>(true);
    const auto& operation = intoTrash ? _actions.moveToTrash : _actions.restoreFromTrash;
    operation(records, _lifetime.guard([isWaiting, records,
                                        then = std::move(then)](QList<TrashOutcome> outcomes) {
        if (!std::exchange(*isWaiting, false))
            return;
        // Missing outcomes count as failures.
        while (outcomes.size() < records.size())
            outcomes.append({records.at(outcomes.size()), Texts::tr("The Trash did not answer.")});
        then(outcomes);
    }));
}

void LayoutUndoHistory::afterTrash(Direction direction, LayoutUndoEntry entry,
                                   const QList<TrashOutcome>& outcomes, const Done& done) {
    QList<bool> moved;
    QStringList failures;
    for (qsizetype i = 0; i < entry.trashedApps.size(); ++i) {
        const TrashOutcome& outcome = outcomes.at(i);
        moved.append(!outcome.failure);
        if (outcome.failure)
            failures += entry.trashedApps.at(i).name + QStringLiteral(": ") + *outcome.failure;
        else
            entry.trashedApps[i] = outcome.record;
    }
    if (!failures.isEmpty()) {
        if (_actions.alert)
            _actions.alert(direction == Direction::undo ? Texts::tr("Could not put apps back")
                                                        : Texts::tr("Could not delete apps again"),
                           failures.join(u'\n'));
        moveBack(direction, std::move(entry), moved, Result::trashFailed, done);
        return;
    }
    std::function<void(bool)> saved;
    if (!entry.trashedApps.isEmpty())
        saved = _lifetime.guard([this, direction, entry, moved, done](bool isSaved) {
            if (isSaved)
                finish(direction, entry, Result::done, done);
            else
                moveBack(direction, entry, moved, Result::notApplied, done);
        });
    if (!apply(direction, entry, saved))
        moveBack(direction, std::move(entry), moved, Result::notApplied, done);
    else if (!saved)
        finish(direction, std::move(entry), Result::done, done);
}

void LayoutUndoHistory::moveBack(Direction direction, LayoutUndoEntry entry, const QList<bool>& moved,
                                 Result result, const Done& done) {
    QList<TrashedAppRecord> records;
    QList<qsizetype> indices;
    for (qsizetype i = 0; i < moved.size(); ++i) {
        if (!moved.at(i))
            continue;
        records.append(entry.trashedApps.at(i));
        indices.append(i);
    }
    moveApps(direction == Direction::undo, records,
             [this, direction, entry = std::move(entry), indices, result,
              done](const QList<TrashOutcome>& outcomes) mutable {
                 for (qsizetype i = 0; i < outcomes.size() && i < indices.size(); ++i)
                     if (!outcomes.at(i).failure)
                         entry.trashedApps[indices.at(i)] = outcomes.at(i).record;
                 finish(direction, std::move(entry), result, done);
             });
}

void LayoutUndoHistory::finish(Direction direction, LayoutUndoEntry entry, Result result,
                               const Done& done) {
    const QString name = entry.name;
    const bool goesToUndo = (direction == Direction::undo) != (result == Result::done);
    QList<LayoutUndoEntry>& stack = goesToUndo ? _undoStack : _redoStack;
    // A step that was given back meanwhile may have left the stack.
    const qsizetype place =
        result == Result::done ? stack.size() : std::min(_placeOfStep, stack.size());
    if (goesToUndo)
        push(std::move(entry), place);
    else
        stack.insert(place, std::move(entry));
    _isUndoRedoOperationInProgress = false;
    if (result == Result::done)
        showNotice(direction, name);
    changed();
    if (done)
        done(result);
}

QList<SmartFolderDefinition> withDefinitionsOf(const LayoutUndoState& from,
                                               const LayoutUndoState& target,
                                               const QList<SmartFolderDefinition>& now) {
    // If nothing has changed since, the old list is restored, order and all. Otherwise only the
    // definitions that the step changed: others may come from a registry that was recovered since.
    if (now == from.smartFolderDefinitions)
        return target.smartFolderDefinitions;
    const QSet<QUuid> changed = changedDefinitions({.before = from, .after = target});
    QList<SmartFolderDefinition> result = now;
    result.removeIf([&](const SmartFolderDefinition& d) { return changed.contains(d.id); });
    for (qsizetype i = 0; i < target.smartFolderDefinitions.size(); ++i)
        if (const auto& definition = target.smartFolderDefinitions.at(i);
            changed.contains(definition.id))
            result.insert(std::min(i, result.size()), definition);
    return result;
}

/// `now`, with the settings that the step changed as in `target`.
static ArrangementLayout withSettingsOf(const LayoutUndoState& from, const LayoutUndoState& target,
                                        ArrangementLayout now) {
    json::Fields<ArrangementLayout>::list([&](const auto&... field) {
        const auto take = [&](auto member) {
            if (from.settings.*member != target.settings.*member)
                now.*member = target.settings.*member;
        };
        (take(field.member), ...);
    });
    return now;
}

bool LayoutUndoHistory::apply(Direction direction, const LayoutUndoEntry& entry,
                              std::function<void(bool)> saved) {
    const bool isUndo = direction == Direction::undo;
    const LayoutUndoState& from = isUndo ? entry.after : entry.before;
    const LayoutUndoState& state = isUndo ? entry.before : entry.after;
    const LayoutUndoState present = _actions.snapshot(state.mode);
    LayoutUndoState wanted = state;
    wanted.smartFolderDefinitions = withDefinitionsOf(from, state, present.smartFolderDefinitions);
    wanted.settings = withSettingsOf(from, state, present.settings);
    // What the step did not change stays as it is now.
    if (from.document == state.document)
        wanted.document = present.document;
    if (from.otherDocument == state.otherDocument)
        wanted.otherDocument = present.otherDocument;
    if (!_actions.apply(direction, entry, wanted, std::move(saved)))
        return false;
    _actions.applyNavigation(state);
    const GridCapacities capacities =
        _actions.capacities ? _actions.capacities(state.mode) : GridCapacities();
    showReflow(reflowBetween(present, _actions.snapshot(state.mode), capacities, _uuids.next()));
    return true;
}

void LayoutUndoHistory::push(LayoutUndoEntry entry, qsizetype place) {
    _undoStack.insert(place, std::move(entry));
    while (_undoStack.size() > undoLimit)
        _undoStack.removeFirst();
}

void LayoutUndoHistory::showNotice(Direction direction, const QString& name) {
    const int revision = ++_undoFeedbackRevision;
    _undoFeedback = UndoRedoFeedback{direction, name, revision};
    _undoFeedbackTask = _scheduler.after(noticeDuration, [this, revision] {
        if (!_undoFeedback || _undoFeedback->revision != revision)
            return;
        _undoFeedback.reset();
        changed();
    });
}

void LayoutUndoHistory::showReflow(UndoRedoReflow reflow) {
    _undoReflow = std::move(reflow);
    _undoReflowTask = _scheduler.after(reflowHold, [this] {
        _undoReflow->released = true;
        changed();
        _undoReflowTask = _scheduler.after(reflowDuration, [this] {
            _undoReflow.reset();
            changed();
        });
    });
}

void LayoutUndoHistory::changed() const {
    if (_actions.changed)
        _actions.changed();
}

} // namespace tessellar
