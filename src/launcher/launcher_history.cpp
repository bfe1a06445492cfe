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
    , _steps(machine.scheduler, machine.uuids, actions())
    , _unsaved(
          store, [this](const QList<UnsavedEdit>& edits) { rollBack(edits); },
          [&messages](const LauncherError& error, UnsavedEdits::Left left) {
              if (left == UnsavedEdits::Left::unsaved)
                  return messages.alert(offering(LauncherError::Remedy::saveAgain, error));
              messages.alert({error.code,
                              error.message + u' ' +
                                  Texts::tr("The tiles are as they were before you undid or redid it."),
                              error.title});
          }) {}

LauncherHistory::Outcome LauncherHistory::guard(LauncherWindowMode mode) const {
    if (!_applications.hasScanned())
        return std::unexpected(launcherError(StorageError{StorageError::Code::layoutNotReady}));
    if (_store.isWriteBlocked(mode))
        return std::unexpected(
            launcherError(StorageError{StorageError::Code::workingDocumentUnreadable}));
    if (_steps.isInProgress())
        return std::unexpected(LauncherError{
            QStringLiteral("stepInProgress"), Texts::tr("An undo or redo is still in progress."), {}});
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

LauncherHistory::Made LauncherHistory::make(EditStep step) {
    auto& replacement = step.replacement;
    const auto fail = [&](const LauncherError& error) {
        return std::unexpected(replacement && !replacement->title.isEmpty()
                                   ? LauncherError{error.code, error.message, replacement->title}
                                   : error);
    };
    if (const auto guarded = guard(step.mode); !guarded)
        return std::unexpected(guarded.error());
    if (step.settings)
        catchUpWithSettings();
    LayoutUndoState before = snapshot(step.mode);
    before.navigation = step.initialNavigation.value_or(before.navigation);
    if (_store.isWriteBlocked(otherMode(step.mode)))
        step.otherDocument.reset();
    std::optional<QString> backup;
    if (replacement) {
        auto& record = replacement->importRecord;
        const auto kept = _store.makeBackup(
            replacement->reason, record ? std::optional(record->sourceDatabasePath) : std::nullopt,
            before.document);
        if (!kept)
            return fail(launcherError(kept.error()));
        backup = *kept;
        if (record)
            record->backupPath = backup;
        _machine.workers.submit({}, [backups = LayoutBackups(_machine.files, _store.directory()),
                                     now = _machine.clock.now()](std::stop_token) {
            backups.prune(now); // so that they stay bounded even if nobody ever lists them
        });
    }
    const std::optional<LayoutDocument> arrangement = step.document;
    dropUnchanged(step, before);
    if (replacement)
        step.document = arrangement; // saved even if it equals the current one
    const Saved saved =
        replacement || step.isSavedAtOnce || filesOf(step) > 1 ? Saved::now : Saved::soon;
    if (const auto made = carryOut(step, before, saved); !made)
        return fail(made.error());
    const QList<LayoutUndoEntry> redoStack = _steps.redoStack();
    const bool isRecorded = _steps.record(step.name, before, step.trashedApps);
    if (saved == Saved::soon && isRecorded && (step.document || step.otherDocument)) {
        const LauncherWindowMode edited = step.document ? step.mode : otherMode(step.mode);
        _unsaved.add({.mode = edited,
                      .before = *before.documentOf(edited),
                      .rollBack = [this, number = _steps.undoStack().last().number, redoStack] {
                          _steps.withdraw(number, redoStack);
                      }});
    }
    return backup;
}

int LauncherHistory::filesOf(const EditStep& step) {
    return int(step.document.has_value()) + int(step.otherDocument.has_value()) +
           int(step.definitions.has_value()) + int(step.settings.has_value()) +
           int(step.replacement && step.replacement->importRecord);
}

StepJournal::Files LauncherHistory::filesBefore(const EditStep& step,
                                                const LayoutUndoState& before) const {
    StepJournal::Files files;
    const auto documentOf = [&](LauncherWindowMode mode) {
        return step.documentOf(mode) ? std::optional(*before.documentOf(mode)) : std::nullopt;
    };
    files.fullScreen = documentOf(LauncherWindowMode::fullScreen);
    files.windowed = documentOf(LauncherWindowMode::windowed);
    if (step.definitions)
        files.definitions = before.smartFolderDefinitions;
    if (step.settings) {
        // As stored: absent settings become absent again.
        files.settings.emplace();
        for (const QString& key : storedLayoutSettings(step.mode, *step.settings).keys())
            files.settings->insert(key, _machine.settings.value(key).value_or(QJsonValue()));
    }
    if (step.replacement && step.replacement->importRecord)
        files.importRecord = _journal.importRecord();
    return files;
}

LauncherHistory::Outcome LauncherHistory::carryOut(const EditStep& step, const LayoutUndoState& state,
                                                   Saved saved) {
    if (auto settled = settle(); !settled)
        return settled;
    if (step.settings)
        LauncherSettings::flush(_machine); // what was set before it is part of what it replaces
    const bool isWhole = filesOf(step) > 1;
    const StepJournal::Files before = filesBefore(step, state);
    if (isWhole)
        if (auto begun = beginWhole(step, before); !begun)
            return begun;
    Outcome made;
    if (step.settings)
        made = storeSettings(step.mode, *step.settings);
    if (made && step.definitions)
        made = _smartFolders.setDefinitions(*step.definitions);
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        if (const auto& document = step.documentOf(mode); made && document) {
            show(mode, *document, mode == step.mode && step.replacement);
            made = save(mode, saved);
        }
    if (made && step.replacement && step.replacement->importRecord)
        made = storeImportRecord(*step.replacement->importRecord);
    if (made && isWhole)
        if (const auto ended = _journal.end(); !ended)
            made = std::unexpected(launcherError(ended.error(), couldNotSaveLayout()));
    if (made)
        return {};
    // If the process is killed now, a step of several files is rolled back at the next start.
    showBefore(step, state);
    _unsettled = {before, settingsNow(before), isWhole, made.error()};
    (void)settle();
    return made;
}

/// Flushes pending saves first: the journal describes the state on the disk.
LauncherHistory::Outcome LauncherHistory::beginWhole(const EditStep& step,
                                                     const StepJournal::Files& before) {
    if (const auto flushed = _store.flush(); !flushed)
        return std::unexpected(launcherError(flushed.error(), couldNotSaveLayout()));
    StepJournal::Files after{.fullScreen = step.documentOf(LauncherWindowMode::fullScreen),
                             .windowed = step.documentOf(LauncherWindowMode::windowed),
                             .definitions = step.definitions};
    if (step.settings)
        after.settings = storedLayoutSettings(step.mode, *step.settings);
    if (step.replacement && step.replacement->importRecord)
        after.importRecord =
            QString::fromLatin1(encodedImportMetadata(*step.replacement->importRecord));
    if (const auto begun = _journal.begin(before, after); !begun) {
        // The journal may have been written all the same; it describes files that have not changed.
        (void)_journal.end();
        return std::unexpected(launcherError(begun.error(), couldNotSaveLayout()));
    }
    return {};
}

void LauncherHistory::catchUpWithSettings() {
    LauncherSettings::flush(_machine);
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        _layouts[mode].settingsChanged();
}

LauncherHistory::Outcome LauncherHistory::storeSettings(LauncherWindowMode mode,
                                                        const ArrangementLayout& settings) {
    const auto stored = LauncherSettings::storeNow(_machine, storedLayoutSettings(mode, settings));
    if (!stored)
        return std::unexpected(launcherError(stored.error()));
    _layouts[mode].settingsChanged();
    return {};
}

LauncherHistory::Outcome
LauncherHistory::storeImportRecord(const LegacyLaunchpadImportMetadata& record) {
    const auto written = writeImportMetadata(_machine.files, _store.directory(), record);
    return written ? Outcome() : std::unexpected(launcherError(written.error()));
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

LauncherHistory::Outcome LauncherHistory::save(LauncherWindowMode mode, Saved saved) {
    const LayoutDocument& document = _layouts[mode].document();
    if (saved == Saved::now) {
        if (const auto written = _store.saveNow(mode, document); !written)
            return std::unexpected(launcherError(written.error(), couldNotSaveLayout()));
        return {};
    }
    _store.scheduleSave(mode, document);
    return {};
}

// ---- undo and redo

LayoutUndoState LauncherHistory::snapshot(LauncherWindowMode mode) const {
    const LiveLayout& layout = _layouts[mode];
    return {.mode = mode,
            .document = layout.document(),
            .otherDocument = _layouts[otherMode(mode)].document(),
            .smartFolderDefinitions = _smartFolders.definitions(),
            .settings = layout.settings(),
            .navigation = layout.navigation()};
}

LayoutUndoActions LauncherHistory::actions() {
    using Records = QList<TrashedAppRecord>;
    using TrashDone = LayoutUndoActions::TrashDone;
    return {
        .snapshot = [this](LauncherWindowMode mode) { return snapshot(mode); },
        .apply = [this](const LayoutUndoEntry& entry,
                        const LayoutUndoState& state) { return apply(entry, state); },
        .applyNavigation =
            [this](const LayoutUndoState& state) {
                _layouts[state.mode].setNavigation(state.navigation);
            },
        .restoreFromTrash = [this](Records records,
                                   TrashDone done) { _restoreFromTrash(records, std::move(done)); },
        .moveToTrash = [this](Records records,
                              TrashDone done) { _moveToTrash(records, std::move(done)); },
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

bool LauncherHistory::apply(const LayoutUndoEntry& entry, const LayoutUndoState& state) {
    if (entry.before.settings != entry.after.settings)
        catchUpWithSettings();
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
    const bool isDocumentAlone = filesOf(step) == 1 && !step.definitions && !step.settings;
    if (!isDocumentAlone || !entry.trashedApps.isEmpty())
        return carryOut(step, before, Saved::now).has_value();
    if (!carryOut(step, before, Saved::soon))
        return false;
    const LauncherWindowMode mode = step.document ? step.mode : otherMode(step.mode);
    _unsaved.add({.mode = mode,
                  .before = *before.documentOf(mode),
                  .rollBack = [this, entry] { _steps.giveBack(entry); },
                  .isStepOfHistory = true});
    return true;
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

/// A step restores an old state: its tiles may be of applications that were removed or moved since, and
/// new applications have none.
bool LauncherHistory::differsFromInstalled(const LiveLayout& layout) const {
    bool differs = !layout.unavailableAppKeys().isEmpty();
    for (const AppEntry& app : _applications.all()) {
        const AppEntry* tile = layout.tileOf(appKey(app));
        differs = differs || !tile || tile->path != app.path;
    }
    return differs;
}

void LauncherHistory::undo(LauncherWindowMode mode, Done done) { step(true, mode, std::move(done)); }

void LauncherHistory::redo(LauncherWindowMode mode, Done done) { step(false, mode, std::move(done)); }

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
                      Texts::tr("“%1” in the other display mode comes first: it changed the same.")
                          .arg(blockedBy));
    case Result::trashFailed:
        return failed(QStringLiteral("trashFailed"), Texts::tr("An application could not be moved."));
    case Result::notApplied:
        break;
    }
    return failed(QStringLiteral("notApplied"), Texts::tr("The arrangement could not be saved."));
}

void LauncherHistory::step(bool isUndo, LauncherWindowMode mode, Done done) {
    const LayoutUndoHistory::Next next = isUndo ? _steps.nextUndo(mode) : _steps.nextRedo(mode);
    if (const auto guarded = guard(mode); !guarded && (_steps.isInProgress() || next.entry))
        return done ? done(guarded) : void();
    // If that save failed, the step would be rolled back and be the next one again.
    if (next.entry && !next.entry->trashedApps.isEmpty())
        if (const auto flushed = _store.flush(); !flushed)
            return done ? done(std::unexpected(launcherError(flushed.error(), couldNotSaveLayout())))
                        : void();
    const QString blockedBy = next.blockedBy ? next.blockedBy->name : QString();
    auto ended = [this, isUndo, mode, blockedBy,
                  done = std::move(done)](LayoutUndoHistory::Result result) {
        if (result == LayoutUndoHistory::Result::done && differsFromInstalled(_layouts[mode]))
            _applications.rescan();
        if (done)
            done(outcomeOf(result, isUndo, blockedBy));
    };
    isUndo ? _steps.undo(mode, std::move(ended)) : _steps.redo(mode, std::move(ended));
}

} // namespace tessellar
