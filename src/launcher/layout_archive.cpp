#include "launcher/layout_archive.h"

#include "launcher/launcher_arrangements.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "platform/texts.h"

#include <array>

namespace tessellar {

QString backupReasonText(const QString& reason) {
    struct Row {
        const char* reason;
        const char* text;
    };
    static constexpr std::array rows{
        Row{"reset", Texts::noop("Before the layout was reset")},
        Row{"arrange", Texts::noop("Before the applications were arranged")},
        Row{"arrangement-restore", Texts::noop("Before an arrangement was restored")},
        Row{"backup-restore", Texts::noop("Before a backup was restored")},
        Row{"legacy-launchpad-import", Texts::noop("Before the old Launchpad was imported")},
        Row{"changed-by-another-program", Texts::noop("Written by another program")}};
    for (const Row& row : rows)
        if (reason == QLatin1StringView(row.reason))
            return Texts::tr(row.text);
    return reason.left(100);
}

using StorageError = LayoutStore::StorageError;

LayoutArchive::LayoutArchive(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                             InstalledApplications& applications, PlaceMemory& places,
                             LauncherHistory& history, LauncherMessages& messages)
    : _machine(machine)
    , _store(store)
    , _layouts(layouts)
    , _applications(applications)
    , _places(places)
    , _history(history)
    , _messages(messages)
    , _merger(machine, layouts, applications, places) {}

/// Reads what is being saved as well, such as a backup, but lets no save wait for the reading.
template <typename Work, typename Done>
void LayoutArchive::read(Work work, Done done) {
    const auto task = _reading.insert(_reading.end(), Task());
    *task = _machine.workers.run(
        Lane::saving, [](std::stop_token) {},
        [this, task, work = std::move(work), done = std::move(done)] {
            const Task saved = std::move(*task);
            *task = _machine.workers.run(work, [this, task, done](const auto& result) {
                const Task ended = std::move(*task);
                _reading.erase(task);
                done(result);
            });
        });
}

static ReplacementMerger::Wanted wanted(const LayoutDocument& document) {
    return {.document = [document] { return document; }};
}

void LayoutArchive::restore(Mode mode, const QUuid& id, std::function<void(Restored)> done) {
    const QString title = Texts::tr("Could not restore arrangement");
    if (const auto guarded = _history.guard(mode); !guarded)
        return done(std::unexpected(guarded.error()));
    read([saved = _store.arrangements(mode), id](std::stop_token) { return saved.read(id); },
         [this, mode, title, done = std::move(done)](const auto& arrangement) {
             if (!arrangement)
                 return done(std::unexpected(arrangementError(arrangement.error(), title)));
             const Arrangement& saved = arrangement->value;
             replace(
                 mode, [document = saved.document] { return wanted(document); },
                 {.name = editName(EditKind::restoreArrangement),
                  .reason = QStringLiteral("arrangement-restore"),
                  .title = title,
                  .settings = saved.layout,
                  .isLossy = arrangement->isLossy},
                 [name = saved.name, done](const Outcome& replaced) {
                     done(replaced ? Restored(name) : std::unexpected(replaced.error()));
                 });
         });
}

void LayoutArchive::replace(Mode mode, std::function<ReplacementMerger::Wanted()> wanted,
                            const Replacement& replacement, std::function<void(Outcome)> done) {
    _merger.merge(mode, std::move(wanted),
                  [this, mode, replacement, done = std::move(done)](const MergeResult& merged) {
                      apply(mode, merged, replacement, done);
                  });
}

void LayoutArchive::apply(Mode mode, const MergeResult& merged, const Replacement& replacement,
                          std::function<void(Outcome)> done) {
    // A step that is being saved may put its own places back.
    if (const auto settled = _history.settle(); !settled)
        return done(settled);
    // Places first: the layout is saved without their tiles.
    const RememberedPlaces before = _places[mode];
    _places.set(mode, merged.places);
    const auto ended = [this, mode, before, places = merged.places, isLossy = replacement.isLossy,
                        done = std::move(done)](const Outcome& saved) {
        if (!saved && _places[mode] == places)
            _places.set(mode, before);
        if (saved && isLossy)
            _messages.alert({QStringLiteral("lossyRestore"),
                             Texts::tr("The contents of a folder could not be read, and its "
                                       "applications come at the end. What was restored is kept as it "
                                       "is, and “Undo” brings the former layout back."),
                             Texts::tr("Part of what was restored could not be read")});
        done(saved);
    };
    const auto made = _history.make(
        {.name = replacement.name,
         .mode = mode,
         .document = LayoutDocument{.pages = merged.pages, .hiddenKeys = merged.hiddenKeys},
         .settings = replacement.settings,
         .replacement = {{.reason = replacement.reason, .title = replacement.title}}},
        ended);
    if (!made)
        ended(std::unexpected(made.error()));
}

// ---- backups

void LayoutArchive::listBackups(Listed done) {
    read(
        [backups = LayoutBackups(_machine.files, _store.directory()),
         now = _machine.clock.now()](std::stop_token) {
            backups.prune(now);
            return backups.list();
        },
        std::move(done));
}

void LayoutArchive::restoreBackup(Mode mode, const QString& name, std::function<void(Outcome)> done) {
    const QString title = Texts::tr("Could not restore backup");
    if (const auto guarded = _history.guard(mode); !guarded)
        return done(guarded);
    read([backups = LayoutBackups(_machine.files, _store.directory()),
          name](std::stop_token) { return backups.read(name); },
         [this, mode, title, done = std::move(done)](const auto& backup) {
             if (!backup)
                 return done(std::unexpected(launcherError(backup.error(), title)));
             replace(
                 mode, [document = backup->value.document] { return wanted(document); },
                 {.name = Texts::tr("Restore Backup"),
                  .reason = QStringLiteral("backup-restore"),
                  .title = title,
                  .isLossy = backup->isLossy},
                 done);
         });
}

// ---- rearranging

void LayoutArchive::arrange(Mode mode, Arranged arranged, const QString& name,
                            std::function<void(Outcome)> done) {
    if (const auto guarded = _history.guard(mode); !guarded)
        return done(guarded);
    replace(
        mode,
        [this, mode, arranged = std::move(arranged)]() -> ReplacementMerger::Wanted {
            return {.document = [pages = arranged(), hiddenKeys = _layouts[mode].hiddenKeys()] {
                return LayoutDocument{.pages = pages(), .hiddenKeys = hiddenKeys};
            }};
        },
        {.name = name,
         .reason = QStringLiteral("arrange"),
         .title = Texts::tr("Could not arrange the applications")},
        std::move(done));
}

LayoutArchive::Outcome LayoutArchive::reset(Mode mode) {
    const QString title = Texts::tr("Could not reset layout");
    if (!_applications.hasScanned())
        return std::unexpected(launcherError(StorageError{StorageError::Code::layoutNotReady}, title));
    LiveLayout& layout = _layouts[mode];
    const LayoutDocument fresh{
        .pages = defaultLayout(_applications.all(), layout.capacities().page, _machine.locale)};
    if (_store.isWriteBlocked(mode)) {
        if (const auto reset = _store.reset(mode); !reset)
            return std::unexpected(launcherError(reset.error(), title));
        layout.setArrangement(fresh);
        layout.setUnavailable({});
        if (const auto saved = _store.saveNow(mode, fresh); !saved)
            return std::unexpected(launcherError(saved.error(), title));
    } else {
        const auto made =
            _history.make({.name = editName(EditKind::resetLayout),
                           .mode = mode,
                           .document = fresh,
                           .replacement = {{.reason = QStringLiteral("reset"), .title = title}}});
        if (!made)
            return std::unexpected(made.error());
    }
    _messages.showNotice(Texts::tr("Layout reset to the default alphabetical arrangement."));
    return {};
}

} // namespace tessellar
