#include "launcher/launcher_history.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_settings.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "model/layout_backups.h"
#include "model/layout_settings.h"
#include "platform/texts.h"

namespace tessellar {

using StorageError = LayoutStore::StorageError;

LauncherError launcherError(EditRefusal refusal) { return {code(refusal), message(refusal), {}}; }

static LauncherError stepInProgress() {
    return {QStringLiteral("stepInProgress"), Texts::tr("An undo or redo is still in progress."), {}};
}

/// Without a Trash all moves fail.
static void refuseTrash(const QList<TrashedAppRecord>& records,
                        const LayoutUndoActions::TrashDone& done) {
    QList<TrashOutcome> outcomes;
    for (const TrashedAppRecord& record : records)
        outcomes.append({record, Texts::tr("There is no Trash here.")});
    done(std::move(outcomes));
}

LauncherHistory::LauncherHistory(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                                 SmartFolderLibrary& smartFolders, InstalledApplications& applications,
                                 LauncherMessages& messages)
    : _machine(machine)
    , _store(store)
    , _layouts(layouts)
    , _smartFolders(smartFolders)
    , _applications(applications)
    , _messages(messages)
    , _restoreFromTrash(refuseTrash)
    , _moveToTrash(refuseTrash)
    , _journal(machine, store.directory())
    , _expectedSettings(&machine.settings)
    , _steps(machine.scheduler, machine.uuids, actions())
    , _unsaved(
          store, [this](const QList<UnsavedEdit>& edits, bool areLeft) { rollBack(edits, areLeft); },
          [this](const LauncherError& error, UnsavedEdits::Told told) {
              if (told == UnsavedEdits::Told::editsKept)
                  _messages.alert(offering(LauncherError::Remedy::saveAgain, error));
              else
                  tellUser(error, true);
          })
    , _writer(machine, _journal) {}

void LauncherHistory::tellUser(const LauncherError& error, bool isUndoOrRedo) {
    if (!isUndoOrRedo)
        return _messages.report(error);
    _messages.alert(
        {error.code,
         error.message + u' ' + Texts::tr("The tiles are as they were before you undid or redid it."),
         error.title});
}

LauncherHistory::Outcome LauncherHistory::guard(LauncherWindowMode mode) const {
    if (!_applications.hasScanned())
        return std::unexpected(launcherError(StorageError{StorageError::Code::layoutNotReady}));
    if (_store.isWriteBlocked(mode))
        return std::unexpected(
            launcherError(StorageError{StorageError::Code::workingDocumentUnreadable}));
    if (_steps.isInProgress())
        return std::unexpected(stepInProgress());
    return {};
}

// ---- making steps

LauncherHistory::Outcome
LauncherHistory::edit(LauncherWindowMode mode, const QString& name,
                      const std::function<EditResult(const LayoutDocument&)>& change,
                      const std::optional<Navigation>& initialNavigation) {
    // Checked first: in a mode that cannot be edited, that is the reason to report.
    if (auto guarded = guard(mode); !guarded)
        return guarded;
    auto document = change(_layouts[mode].document());
    if (!document)
        return std::unexpected(launcherError(document.error()));
    const auto made = make({.name = name,
                            .mode = mode,
                            .document = *std::move(document),
                            .initialNavigation = initialNavigation});
    return made ? Outcome() : std::unexpected(made.error());
}

/// Drops the parts of a step that change nothing.
static void dropUnchanged(EditStep& step, const LayoutUndoState& before) {
    const auto drop = [](auto& wanted, const auto& present) {
        if (wanted && *wanted == present)
            wanted.reset();
    };
    drop(step.document, before.document);
    drop(step.otherDocument, *before.otherDocument);
    drop(step.definitions, before.smartFolderDefinitions);
    drop(step.settings, before.settings);
}

static int filesOf(const EditStep& step) {
    return int(step.document.has_value()) + int(step.otherDocument.has_value()) +
           int(step.definitions.has_value()) + int(step.settings.has_value()) +
           int(step.replacement && step.replacement->importRecord);
}

/// The mode of the document that is all that a step changes.
static std::optional<LauncherWindowMode> modeOfOnlyDocument(const EditStep& step) {
    if (filesOf(step) != 1 || (!step.document && !step.otherDocument))
        return std::nullopt;
    return step.document ? step.mode : otherMode(step.mode);
}

static LauncherError titled(const EditStep& step, const LauncherError& error) {
    const QString title = step.replacement ? step.replacement->title : QString();
    return {error.code, error.message, title.isEmpty() ? error.title : title};
}

LauncherHistory::Made LauncherHistory::make(EditStep step, Done saved) {
    if (const auto guarded = guard(step.mode); !guarded)
        return std::unexpected(guarded.error());
    // This step was planned on top of the one that is being saved.
    if (const auto settled = settle(); !settled)
        return std::unexpected(titled(step, settled.error()));
    LayoutUndoState before = snapshot(step.mode);
    before.navigation = step.initialNavigation.value_or(before.navigation);
    if (_store.isWriteBlocked(otherMode(step.mode)))
        step.otherDocument.reset();
    std::optional<LayoutStore::Backup> backup;
    if (auto& replacement = step.replacement) {
        auto& record = replacement->importRecord;
        backup = _store.backup(replacement->reason,
                               record ? std::optional(record->sourceDatabasePath) : std::nullopt,
                               before.document);
        if (record)
            record->backupPath = backup->path;
    }
    const std::optional<LayoutDocument> arrangement = step.document;
    dropUnchanged(step, before);
    if (step.replacement)
        step.document = arrangement; // saved even if it equals the current one

    const auto record = [&] {
        const QList<LayoutUndoEntry> redoStack = _steps.redoStack();
        const bool isRecorded = _steps.record(step.name, before, step.trashedApps);
        return
            [this, redoStack, isRecorded, number = isRecorded ? _steps.undoStack().last().number : 0] {
                if (isRecorded)
                    _steps.withdraw(number, redoStack);
            };
    };
    if (filesOf(step) == 0 && !saved) {
        (void)record();
        return std::nullopt;
    }
    const auto only = modeOfOnlyDocument(step);
    if (only && !step.replacement && !step.isSavedAtOnce) {
        show(*only, *step.documentOf(*only), false);
        _store.scheduleSave(*only, _layouts[*only].document());
        _unsaved.add({.mode = *only,
                      .before = *before.documentOf(*only),
                      .rollBack = [leaveHistory = record(), takenBack = step.takenBack] {
                          leaveHistory();
                          if (takenBack)
                              takenBack();
                      }});
        return std::nullopt;
    }
    if (const auto begun =
            begin({.step = step, .before = before, .saved = std::move(saved)}, record, backup);
        !begun)
        return std::unexpected(titled(step, begun.error()));
    return backup ? std::optional(backup->path) : std::nullopt;
}

/// The job of a step, without its calls.
static StepWriter::Job jobOf(const EditStep& step, const LayoutUndoState& before) {
    StepWriter::Job job{.first = {},
                        .before = {},
                        .after = {.fullScreen = step.documentOf(LauncherWindowMode::fullScreen),
                                  .windowed = step.documentOf(LauncherWindowMode::windowed),
                                  .definitions = step.definitions},
                        .isNoted = filesOf(step) > 1,
                        .files = {}};
    if (job.after.fullScreen)
        job.before.fullScreen = *before.documentOf(LauncherWindowMode::fullScreen);
    if (job.after.windowed)
        job.before.windowed = *before.documentOf(LauncherWindowMode::windowed);
    if (job.after.definitions)
        job.before.definitions = before.smartFolderDefinitions;
    if (step.settings)
        job.before.settings = job.after.settings = storedLayoutSettings(step.mode, *step.settings);
    if (step.replacement && step.replacement->importRecord) {
        job.before.importRecord.emplace();
        job.after.importRecord =
            QString::fromLatin1(encodedImportMetadata(*step.replacement->importRecord));
    }
    return job;
}

/// A call of the writer's, with its error as the launcher's.
template <typename Call>
static StepWriter::Call reporting(Call call, const QString& title = {}) {
    return [call = std::move(call), title]() -> StepWriter::Outcome {
        const auto outcome = call();
        return outcome ? StepWriter::Outcome() : std::unexpected(launcherError(outcome.error(), title));
    };
}

/// Shows a step and hands it to the writer. Nothing has been changed if it is refused.
LauncherHistory::Outcome
LauncherHistory::begin(Underway underway, const std::function<std::function<void()>()>& enterHistory,
                       const std::optional<LayoutStore::Backup>& backup) {
    std::optional<SmartFolderLibrary::Save> definitions;
    if (underway.step.definitions) {
        auto saving = _smartFolders.saving(*underway.step.definitions);
        if (!saving)
            return std::unexpected(saving.error());
        definitions = *std::move(saving);
    }
    _underway = std::move(underway);
    const EditStep& step = _underway->step;
    StepWriter::Job job = jobOf(step, _underway->before);
    if (backup)
        job.first.push_back(reporting(backup->write));
    if (step.settings)
        job.files.push_back(reporting([&settings = _machine.settings, values = *job.after.settings] {
            return settings.set(values);
        }));
    if (definitions)
        job.files.push_back(*std::move(definitions));
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        if (const auto& document = step.documentOf(mode)) {
            LayoutStore::Part part = _store.beginPart(mode, *document);
            job.first.push_back(reporting(std::move(part.earlier), couldNotSaveLayout()));
            job.files.push_back(reporting(std::move(part.write), couldNotSaveLayout()));
        }
    if (job.after.importRecord)
        job.files.push_back(reporting([&files = _machine.files, directory = _store.directory(),
                                       record = *step.replacement->importRecord] {
            return writeImportMetadata(files, directory, record);
        }));

    if (step.settings)
        _layouts[step.mode].tryOut(*step.settings);
    if (step.definitions)
        _smartFolders.show(*step.definitions);
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        if (const auto& document = step.documentOf(mode))
            show(mode, *document, mode == step.mode && step.replacement);
    _underway->leaveHistory = enterHistory();
    _unsaved.beginStep();
    _writer.write(std::move(job), [this](const StepWriter::Ended& ended) { end(ended); });
    return {};
}

void LauncherHistory::end(const StepWriter::Ended& ended) {
    const Underway underway = *std::exchange(_underway, {});
    const EditStep& step = underway.step;
    const Outcome outcome =
        ended.outcome ? Outcome() : std::unexpected(titled(step, ended.outcome.error()));
    // First: whoever hears of the files below may begin another step.
    const bool isTold = _unsaved.endStep(outcome);
    std::map<LauncherWindowMode, LayoutDocument> parts;
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        if (step.documentOf(mode))
            parts[mode] = *underway.before.documentOf(mode);
    _store.endParts(parts, outcome.has_value());
    if (step.settings)
        for (const LauncherWindowMode mode : LiveLayouts::modes)
            _layouts[mode].settingsChanged();
    if (!outcome) {
        underway.leaveHistory();
        showBefore(step, underway.before);
        if (ended.isBegun) {
            // If the process is killed now, a step of several files is rolled back at the next start.
            _unsettled = {ended.before, settingsNow(ended.before), filesOf(step) > 1, outcome.error()};
            (void)settle();
        }
        if (step.takenBack)
            step.takenBack();
        if (differsFromInstalled(_layouts[step.mode]))
            _applications.rescan();
    }
    if (step.replacement)
        // So that backups stay bounded even if nobody ever lists them.
        _machine.workers.submit({},
                                [backups = LayoutBackups(_machine.files, _store.directory()),
                                 now = _machine.clock.now()](std::stop_token) { backups.prune(now); });
    _unsaved.tell();
    if (underway.saved)
        underway.saved(outcome);
    else if (!outcome && !isTold)
        tellUser(outcome.error(), underway.isUndoOrRedo);
}

void LauncherHistory::show(LauncherWindowMode mode, const LayoutDocument& document,
                           bool isReplacement) {
    LiveLayout& layout = _layouts[mode];
    if (isReplacement)
        layout.setArrangement(document);
    else
        layout.setDocument(document);
    markUnavailable(layout);
}

// ---- undo and redo

LayoutUndoState LauncherHistory::snapshot(LauncherWindowMode mode) const {
    const LiveLayout& layout = _layouts[mode];
    return {.mode = mode,
            .document = layout.document(),
            .otherDocument = _layouts[otherMode(mode)].document(),
            .smartFolderDefinitions = _smartFolders.definitions(),
            .settings = _underway && _underway->step.settings && _underway->step.mode == mode
                            ? *_underway->step.settings
                            : readLayoutSettings(*_expectedSettings, mode),
            .navigation = layout.navigation().position()};
}

LayoutUndoActions LauncherHistory::actions() {
    return {
        .snapshot = [this](LauncherWindowMode mode) { return snapshot(mode); },
        .apply =
            [this](Direction direction, const LayoutUndoEntry& entry, const LayoutUndoState& state,
                   const std::function<void(bool)>& saved) {
                return apply(direction, entry, state, saved);
            },
        .applyNavigation =
            [this](const LayoutUndoState& state) {
                _layouts[state.mode].navigation().setPosition(state.navigation);
            },
        .restoreFromTrash = [this](const auto& records,
                                   const auto& done) { _restoreFromTrash(records, done); },
        .moveToTrash = [this](const auto& records, const auto& done) { _moveToTrash(records, done); },
        .alert =
            [this](const QString& title, const QString& message) {
                _messages.alert({QStringLiteral("trashFailed"), message, title});
            },
        .capacities = [this](LauncherWindowMode mode) { return _layouts[mode].capacities(); },
        .changed = [this] { changed.notify(); },
    };
}

void LauncherHistory::setTrash(LayoutUndoActions::TrashMove restore,
                               LayoutUndoActions::TrashMove trash) {
    _restoreFromTrash = std::move(restore);
    _moveToTrash = std::move(trash);
}

bool LauncherHistory::apply(Direction direction, const LayoutUndoEntry& entry,
                            const LayoutUndoState& state, const std::function<void(bool)>& saved) {
    if (!settle())
        return false;
    const LayoutUndoState before = snapshot(state.mode);
    EditStep step{.name = {},
                  .mode = state.mode,
                  .document = state.document,
                  .otherDocument = state.otherDocument,
                  .definitions = state.smartFolderDefinitions,
                  .settings = state.settings};
    dropUnchanged(step, before);
    // A blocked mode's file must not be changed, and neither must what is shown instead.
    if (_store.isWriteBlocked(state.mode))
        step.document.reset();
    if (_store.isWriteBlocked(otherMode(state.mode)))
        step.otherDocument.reset();
    if (saved)
        return begin({.step = step,
                      .before = before,
                      .saved = [saved](const Outcome& outcome) { saved(outcome.has_value()); }},
                     [] { return [] {}; })
            .has_value();
    auto giveBack = [this, direction, entry] { _steps.giveBack(direction, entry); };
    if (const auto only = modeOfOnlyDocument(step)) {
        show(*only, *step.documentOf(*only), false);
        _store.scheduleSave(*only, _layouts[*only].document());
        _unsaved.add({.mode = *only,
                      .before = *before.documentOf(*only),
                      .rollBack = giveBack,
                      .isStepOfHistory = true});
        return true;
    }
    return filesOf(step) == 0 ||
           begin({.step = step, .before = before, .isUndoOrRedo = true}, [giveBack] {
               return giveBack;
           }).has_value();
}

void LauncherHistory::markUnavailable(LiveLayout& layout) const {
    QSet<QString> unavailable;
    forEachItem(layout.pages(), [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app(); app && !_applications.withKey(appKey(*app)))
            unavailable.insert(appKey(*app));
        return true;
    });
    layout.setUnavailable(std::move(unavailable));
}

void LauncherHistory::undo(LauncherWindowMode mode, Done done) {
    step(Direction::undo, mode, std::move(done));
}

void LauncherHistory::redo(LauncherWindowMode mode, Done done) {
    step(Direction::redo, mode, std::move(done));
}

LayoutUndoHistory::Next LauncherHistory::next(Direction direction, LauncherWindowMode mode) const {
    return direction == Direction::undo ? _steps.nextUndo(mode) : _steps.nextRedo(mode);
}

static std::expected<void, LauncherError> outcomeOf(LayoutUndoHistory::Result result, bool isUndo,
                                                    const QString& blockedBy) {
    using Result = LayoutUndoHistory::Result;
    const auto failed = [](const QString& code, const QString& text) {
        return std::unexpected(LauncherError{code, text, {}});
    };
    switch (result) {
    case Result::done:
        return {};
    case Result::refused:
        return isUndo ? failed(QStringLiteral("nothingToUndo"), Texts::tr("There is nothing to undo."))
                      : failed(QStringLiteral("nothingToRedo"), Texts::tr("There is nothing to redo."));
    case Result::blocked:
        return failed(QStringLiteral("stepInTheWay"),
                      Texts::tr("“%1” in the other display mode must be undone or redone first: it "
                                "changed the same tiles or Smart Folder.")
                          .arg(blockedBy));
    case Result::trashFailed:
        return failed(QStringLiteral("trashFailed"), Texts::tr("An application could not be moved."));
    case Result::notApplied:
        break;
    }
    return failed(QStringLiteral("notApplied"), Texts::tr("The arrangement could not be saved."));
}

void LauncherHistory::step(Direction direction, LauncherWindowMode mode, Done done) {
    const auto refuse = [&done](const LauncherError& error) {
        if (done)
            done(std::unexpected(error));
    };
    // The step that is being saved may be the one that is meant.
    if (const auto settled = settle(); !settled)
        return refuse(settled.error());
    const LayoutUndoEntry* entry = next(direction, mode).entry;
    if (const auto guarded = guard(mode); !guarded && (_steps.isInProgress() || entry))
        return refuse(guarded.error());
    if (!entry || entry->trashedApps.isEmpty())
        return take(direction, mode, std::move(done));
    // If an earlier step could not be saved, that would be rolled back and be the next one again.
    _unsaved.whenSaved(
        {}, UnsavedEdits::Whose::all,
        [this, direction, mode, number = entry->number, done = std::move(done)](const Outcome& saved) {
            const auto* now = next(direction, mode).entry;
            if (saved && now && now->number == number)
                return take(direction, mode, done);
            if (done)
                done(std::unexpected(saved ? stepInProgress() : saved.error()));
        });
}

void LauncherHistory::take(Direction direction, LauncherWindowMode mode, Done done) {
    const bool isUndo = direction == Direction::undo;
    const LayoutUndoEntry* blocking = next(direction, mode).blockedBy;
    auto ended = [this, isUndo, mode, blockedBy = blocking ? blocking->name : QString(),
                  done = std::move(done)](LayoutUndoHistory::Result result) {
        if (result == LayoutUndoHistory::Result::done && differsFromInstalled(_layouts[mode]))
            _applications.rescan();
        if (done)
            done(outcomeOf(result, isUndo, blockedBy));
    };
    isUndo ? _steps.undo(mode, std::move(ended)) : _steps.redo(mode, std::move(ended));
}

} // namespace tessellar
