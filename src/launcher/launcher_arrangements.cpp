#include "launcher/launcher_arrangements.h"

#include "editing/layout_edits.h"
#include "launcher/launcher_history.h"
#include "launcher/live_layout.h"
#include "platform/texts.h"

#include <QVariantMap>

namespace tessellar {

namespace {

const char* const couldNotSave = Texts::noop("Could not save arrangement");
const QString changedMeanwhile = QStringLiteral("changedMeanwhile");

/// The name to be stored, or why it is invalid.
std::expected<QString, LauncherError> nameToKeep(const QString& name, const QString& title) {
    const auto usable = usableName(name);
    if (usable)
        return *usable;
    return std::unexpected(
        LauncherError{code(usable.error()),
                      usable.error() == EditRefusal::emptyName
                          ? Texts::tr("Name this arrangement so it can be restored later.")
                          : message(usable.error()),
                      title});
}

/// Replaces values in a file; everything else is kept, even if unknown.
std::optional<QByteArray> withValues(const QByteArray& bytes, const QVariantMap& values) {
    const auto value = json::parse(bytes);
    if (!value || !value->isObject())
        return std::nullopt;
    QJsonObject object = value->toObject();
    for (const auto& [key, text] : values.asKeyValueRange())
        object.insert(key, text.toString());
    return json::write(object);
}

} // namespace

LauncherError arrangementError(const LayoutStore::Error& error, const QString& title) {
    LauncherError result = launcherError(error, title);
    // The original message is about the working file, and would make the user reset a good one.
    if (std::holds_alternative<LayoutStore::StorageError>(error))
        result.message = Texts::tr(
            "This arrangement was saved by another version of Tessellar and cannot be restored.");
    return result;
}

LauncherArrangements::LauncherArrangements(Machine& machine, const LayoutStore& store,
                                           const LiveLayouts& layouts, const LauncherHistory& history)
    : _machine(machine), _store(store), _layouts(layouts), _history(history) {}

/// On the saving lane, which runs its work in order.
template <typename Work, typename Then>
void LauncherArrangements::run(Work work, Then then) {
    const auto task = _running.emplace(_running.end());
    *task = _machine.workers.run(
        Lane::saving, [work = std::move(work)](std::stop_token) { return work(); },
        [this, task, then = std::move(then)](const auto& result) {
            const Task ended = std::move(*task);
            _running.erase(task);
            then(result);
        });
}

void LauncherArrangements::list(Mode mode, std::function<void(const QList<ListedArrangement>&)> done) {
    run([saved = _store.arrangements(mode)] { return saved.list(); }, std::move(done));
}

// ---- changes

/// Applies a step to its file, provided that the file is still in the step's initial state.
LauncherArrangements::Made LauncherArrangements::apply(const SavedArrangements& saved, Step step,
                                                       const QString& title) {
    const auto bytes = saved.bytes(step.id);
    const bool isThere = bytes || bytes.error().code != FileError::Code::notFound;
    if (isThere != step.before.has_value() || (bytes && *bytes != *step.before))
        return std::unexpected(LauncherError{
            changedMeanwhile, Texts::tr("The arrangement was changed meanwhile, and is left as it is."),
            title});
    const auto done = step.after ? saved.writeBytes(step.id, *step.after) : saved.remove(step.id);
    if (!done)
        return std::unexpected(launcherError(done.error(), title));
    return step;
}

LauncherArrangements::Saved LauncherArrangements::summary(const SavedArrangements& saved,
                                                          const Step& step) {
    const auto arrangement = saved.decode(step.after ? *step.after : step.before.value_or(QByteArray()),
                                          saved.path(step.id));
    ArrangementSummary result = arrangement ? summaryOf(arrangement->value) : ArrangementSummary();
    result.id = step.id;
    return result;
}

/// `make` is called on the worker with the folder, and returns the step.
template <typename Make>
void LauncherArrangements::change(Mode mode, const QString& title, Make make, Done done) {
    using Result = std::pair<Made, Saved>;
    run(
        [saved = _store.arrangements(mode), mode, title, make = std::move(make)]() -> Result {
            Made made = make(saved);
            if (made) {
                made->mode = mode;
                made = apply(saved, *std::move(made), title);
            }
            const Saved known = made ? summary(saved, *made) : Saved(std::unexpected(made.error()));
            return {std::move(made), known};
        },
        [this, done = std::move(done)](const Result& result) {
            if (result.first) {
                auto& [undo, redo] = steps(result.first->mode);
                redo.clear();
                undo.push_back(*result.first);
                if (undo.size() > maximumSteps)
                    undo.pop_front();
            }
            changed.notify();
            done(result.second);
        });
}

/// If the settings cannot be read, the defaults in their place must not be saved as the user's.
LauncherHistory::Outcome LauncherArrangements::guard(Mode mode, const QString& title) const {
    if (!_machine.settings.isReadable())
        return std::unexpected(LauncherError{QStringLiteral("settingsUnreadable"),
                                             Texts::tr("The settings could not be read") + u'.',
                                             title});
    return _history.guard(mode);
}

void LauncherArrangements::save(Mode mode, const QString& name, Done done) {
    if (const auto guarded = guard(mode, Texts::tr(couldNotSave)); !guarded)
        return done(std::unexpected(guarded.error()));
    const auto kept = nameToKeep(name, Texts::tr(couldNotSave));
    if (!kept)
        return done(std::unexpected(kept.error()));
    const LiveLayout& layout = _layouts[mode];
    change(
        mode, Texts::tr(couldNotSave),
        [name = *kept, id = _machine.uuids.next(), now = _machine.clock.now(),
         document = layout.document(),
         settings = layout.settings()](const SavedArrangements& saved) -> Made {
            const auto bytes = saved.encoded(makeArrangement(id, name, now, document, settings));
            if (!bytes)
                return std::unexpected(launcherError(bytes.error(), Texts::tr(couldNotSave)));
            return Step{.name = Texts::tr("Save “%1”").arg(name),
                        .mode = {},
                        .id = id,
                        .before = {},
                        .after = *bytes};
        },
        std::move(done));
}

void LauncherArrangements::replace(Mode mode, const QUuid& id, Done done) {
    const QString title = Texts::tr("Could not replace arrangement");
    if (const auto guarded = guard(mode, title); !guarded)
        return done(std::unexpected(guarded.error()));
    const LiveLayout& layout = _layouts[mode];
    change(
        mode, title,
        [title, id, now = _machine.clock.now(), document = layout.document(),
         settings = layout.settings()](const SavedArrangements& saved) -> Made {
            const auto before = saved.bytes(id);
            if (!before)
                return std::unexpected(arrangementError(before.error(), title));
            const auto old = saved.decode(*before, saved.path(id));
            if (!old)
                return std::unexpected(arrangementError(old.error(), title));
            const QString& name = old->value.name;
            const auto bytes = saved.encoded(makeArrangement(id, name, now, document, settings));
            if (!bytes)
                return std::unexpected(launcherError(bytes.error(), title));
            return Step{.name = Texts::tr("Replace “%1”").arg(name),
                        .mode = {},
                        .id = id,
                        .before = *before,
                        .after = *bytes};
        },
        std::move(done));
}

void LauncherArrangements::rename(Mode mode, const QUuid& id, const QString& name, Done done) {
    const QString title = Texts::tr("Could not rename arrangement");
    const auto kept = nameToKeep(name, title);
    if (!kept)
        return done(std::unexpected(kept.error()));
    change(
        mode, title,
        [title, id, name = *kept](const SavedArrangements& saved) -> Made {
            const auto before = saved.bytes(id);
            if (!before)
                return std::unexpected(launcherError(before.error(), title));
            const auto after = withValues(*before, {{QStringLiteral("name"), name}});
            if (!after)
                return std::unexpected(
                    launcherError(FileError{FileError::Code::damaged, saved.path(id)}, title));
            return Step{.name = Texts::tr("Rename to “%1”").arg(name),
                        .mode = {},
                        .id = id,
                        .before = *before,
                        .after = *after};
        },
        std::move(done));
}

void LauncherArrangements::remove(Mode mode, const QUuid& id, Done done) {
    const QString title = Texts::tr("Could not delete arrangement");
    change(
        mode, title,
        [title, id](const SavedArrangements& saved) -> Made {
            const auto before = saved.bytes(id);
            if (!before)
                return std::unexpected(launcherError(before.error(), title));
            const auto old = saved.decode(*before, saved.path(id));
            return Step{.name = Texts::tr("Delete “%1”").arg(old ? old->value.name : toText(id)),
                        .mode = {},
                        .id = id,
                        .before = *before,
                        .after = {}};
        },
        std::move(done));
}

// ---- import and export

void LauncherArrangements::exportTo(Mode mode, const QUuid& id, const FileSystem& files,
                                    const QString& path, Done done) {
    run(
        [saved = _store.arrangements(mode), id, &files, path]() -> Saved {
            const QString title = Texts::tr("Could not export arrangement");
            const auto bytes = saved.bytes(id);
            if (!bytes)
                return std::unexpected(launcherError(bytes.error(), title));
            const auto arrangement = saved.decode(*bytes, saved.path(id));
            if (!arrangement)
                return std::unexpected(arrangementError(arrangement.error(), title));
            auto written = files.linkStatus(path)
                               ? std::unexpected(FileError{FileError::Code::alreadyExists, path})
                               : files.writeAtomically(path, *bytes);
            if (!written)
                return std::unexpected(launcherError(written.error(), title));
            ArrangementSummary result = summaryOf(arrangement->value);
            result.id = id;
            return result;
        },
        std::move(done));
}

void LauncherArrangements::importFrom(Mode mode, const FileSystem& files, const QString& path,
                                      Done done) {
    const QString title = Texts::tr("Could not import arrangement");
    change(
        mode, title,
        [title, &files, path, id = _machine.uuids.next()](const SavedArrangements& saved) -> Made {
            const auto bytes = files.read(path, maximumLayoutBytes);
            if (!bytes)
                return std::unexpected(launcherError(bytes.error(), title));
            const auto arrangement = saved.decode(*bytes, path);
            if (!arrangement)
                return std::unexpected(arrangementError(arrangement.error(), title));
            // An imported name is normalized like a typed one; an invalid one is replaced by the file's
            // name.
            const QString given = arrangement->value.name.left(maximumNameLength);
            const QString name = usableName(given).value_or(
                usableName(FileSystem::fileName(path).left(maximumNameLength)).value_or(toText(id)));
            const auto file = withValues(
                *bytes, {{QStringLiteral("id"), toText(id)}, {QStringLiteral("name"), name}});
            if (!file)
                return std::unexpected(launcherError(FileError{FileError::Code::damaged, path}, title));
            return Step{.name = Texts::tr("Import “%1”").arg(name),
                        .mode = {},
                        .id = id,
                        .before = {},
                        .after = *file};
        },
        std::move(done));
}

// ---- undo and redo

static QString nameOfLast(const auto& steps) { return steps.empty() ? QString() : steps.back().name; }

QString LauncherArrangements::undoName(Mode mode) const { return nameOfLast(steps(mode).undo); }
QString LauncherArrangements::redoName(Mode mode) const { return nameOfLast(steps(mode).redo); }

void LauncherArrangements::undo(Mode mode, Done done) {
    step(steps(mode).undo, steps(mode).redo, true, std::move(done));
}

void LauncherArrangements::redo(Mode mode, Done done) {
    step(steps(mode).redo, steps(mode).undo, false, std::move(done));
}

void LauncherArrangements::step(Steps& from, Steps& to, bool isBack, Done done) {
    const QString title = isBack ? Texts::tr("Could not undo") : Texts::tr("Could not redo");
    if (from.empty())
        return done(std::unexpected(LauncherError{
            isBack ? QStringLiteral("nothingToUndo") : QStringLiteral("nothingToRedo"),
            isBack ? Texts::tr("There is nothing to undo.") : Texts::tr("There is nothing to redo."),
            {}}));
    // Removed at once, so that no other request gets the same one.
    const Step step = from.back();
    from.pop_back();
    run(
        [saved = _store.arrangements(step.mode), step, isBack, title]() -> Saved {
            Step taken = step;
            if (isBack)
                std::swap(taken.before, taken.after);
            const Made made = apply(saved, taken, title);
            return made ? summary(saved, *made) : Saved(std::unexpected(made.error()));
        },
        [this, step, &from, &to, done = std::move(done)](const Saved& result) {
            if (result)
                to.push_back(step);
            else if (result.error().code != changedMeanwhile) // may succeed later, for example on a
                                                              // full disk
                from.push_back(step);
            changed.notify();
            done(result);
        });
}

} // namespace tessellar
