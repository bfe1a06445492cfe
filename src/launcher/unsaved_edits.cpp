#include "launcher/unsaved_edits.h"

#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

static constexpr std::array modes{LauncherWindowMode::fullScreen, LauncherWindowMode::windowed};

UnsavedEdits::UnsavedEdits(LayoutStore& store, RollBack rollBack, Tell tellUser)
    : _store(store)
    , _rollBack(std::move(rollBack))
    , _tellUser(std::move(tellUser))
    , _saveEnded(store.saveEnded.connect(
          [this](LauncherWindowMode mode, LayoutStore::Revision revision,
                 const BackgroundFile::Result& saved) { saveEnded(mode, revision, saved); })) {}

void UnsavedEdits::editAs(const Editor& editor, const std::function<void()>& call) {
    const Editor before = std::exchange(_editor, editor);
    call();
    _editor = before;
}

void UnsavedEdits::add(UnsavedEdit edit) {
    // A command waits for its steps as for its edits.
    edit.isStepOfHistory = edit.isStepOfHistory && !_editor;
    const bool isSavedAtOnce = edit.isStepOfHistory;
    const LauncherWindowMode mode = edit.mode;
    auto& edits = _edits[std::size_t(edit.mode)];
    const LayoutStore::Revision revision = _store.revision(edit.mode);
    // Edits that are not rolled back on failure can share an entry.
    const auto isKept = [](const Editor& editor, const UnsavedEdit& made) {
        return !editor && !made.isStepOfHistory;
    };
    if (!edits.isEmpty() && isKept(_editor, edit) && isKept(edits.last().editor, edits.last().edit))
        edits.last().revision = revision;
    else
        edits.append({std::move(edit), _editor, revision});
    if (isSavedAtOnce)
        _store.startPendingSave(mode);
}

void UnsavedEdits::whenSaved(const Editor& editor, Whose whose, Done done) {
    Waiting waiting{.editor = editor, .done = std::move(done), .outcome = {}};
    for (const LauncherWindowMode mode : modes)
        for (const Unsaved& unsaved : std::as_const(_edits[std::size_t(mode)]))
            if (whose == Whose::all || (whose == Whose::own && unsaved.editor == editor))
                waiting.until[std::size_t(mode)] = unsaved.revision;
    waiting.isForStep = _step && (whose == Whose::all || *_step == editor);
    _failedSteps.removeIf([&](const auto& failed) {
        const bool isOwn = editor && failed.first.lock() == editor;
        if (isOwn)
            waiting.outcome = std::unexpected(failed.second);
        return isOwn || failed.first.expired();
    });
    const auto until = waiting.until;
    _waiting.push_back(std::move(waiting));
    for (const LauncherWindowMode mode : modes)
        if (until[std::size_t(mode)] != 0)
            _store.startPendingSave(mode);
    tell();
}

void UnsavedEdits::beginStep() { _step = _editor; }

bool UnsavedEdits::endStep(const Outcome& outcome) {
    const Editor editor = *std::exchange(_step, {});
    bool isTold = false;
    for (Waiting& waiting : _waiting) {
        if (!std::exchange(waiting.isForStep, false))
            continue;
        if (waiting.outcome)
            waiting.outcome = outcome;
        isTold = isTold || waiting.editor == editor;
    }
    if (editor && !outcome && !isTold)
        _failedSteps.append({editor, outcome.error()});
    return editor != nullptr;
}

void UnsavedEdits::saveEnded(LauncherWindowMode mode, LayoutStore::Revision revision,
                             const BackgroundFile::Result& saved) {
    if (saved) {
        _edits[std::size_t(mode)].removeIf(
            [revision](const Unsaved& unsaved) { return unsaved.revision <= revision; });
        for (Waiting& waiting : _waiting)
            if (auto& until = waiting.until[std::size_t(mode)]; until <= revision)
                until = 0;
    } else {
        fail(mode, revision, launcherError(saved.error(), couldNotSaveLayout()));
    }
    tell();
}

void UnsavedEdits::fail(LauncherWindowMode mode, LayoutStore::Revision revision,
                        const LauncherError& error) {
    const auto isAwaited = [&](const Unsaved& unsaved) {
        return unsaved.editor && std::ranges::any_of(_waiting, [&](const Waiting& waiting) {
                   return waiting.editor == unsaved.editor && waiting.until[std::size_t(mode)] != 0;
               });
    };
    auto& edits = _edits[std::size_t(mode)];
    QList<UnsavedEdit> takenBack;
    bool concernsUser = false;
    while (!edits.isEmpty() && (edits.last().edit.isStepOfHistory || isAwaited(edits.last()))) {
        concernsUser = concernsUser || !edits.last().editor;
        takenBack.append(edits.takeLast().edit);
    }
    for (Waiting& waiting : _waiting) {
        if (std::exchange(waiting.until[std::size_t(mode)], 0) == 0 || !waiting.outcome)
            continue;
        const bool isKept = waiting.editor && std::ranges::find(std::as_const(edits), waiting.editor,
                                                                &Unsaved::editor) != edits.cend();
        waiting.outcome = std::unexpected(
            isKept ? LauncherError{QStringLiteral("keptUnsaved"),
                                   error.message + u' ' +
                                       Texts::tr("The edit stays in the window, below later ones, "
                                                 "and is saved with them."),
                                   error.title}
                   : error);
    }
    auto& rolledBackTo = _rolledBackTo[std::size_t(mode)];
    const bool isTold = revision == rolledBackTo;
    if (!takenBack.isEmpty()) {
        _rollBack(takenBack, !edits.isEmpty());
        rolledBackTo = _store.revision(mode);
    }
    const bool areLeft =
        std::ranges::any_of(edits, [](const Unsaved& unsaved) { return !unsaved.editor; });
    if (!isTold && (areLeft || concernsUser))
        _tellUser(error, areLeft ? Told::editsKept : Told::undoTakenBack);
}

void UnsavedEdits::tell() {
    std::list<Waiting> told;
    for (auto it = _waiting.begin(); it != _waiting.end();) {
        const auto next = std::next(it);
        if (!it->isForStep && it->until == std::array<LayoutStore::Revision, 2>{})
            told.splice(told.end(), _waiting, it);
        it = next;
    }
    for (const Waiting& waiting : told)
        waiting.done(waiting.outcome);
}

} // namespace tessellar
