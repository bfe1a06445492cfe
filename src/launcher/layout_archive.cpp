#include "launcher/layout_archive.h"

#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/layout_merge.h"

namespace tessellar {

using StorageError = LayoutStore::StorageError;

LayoutArchive::LayoutArchive(Machine& machine, LayoutStore& store, LiveLayouts& layouts,
                             InstalledApplications& applications, LauncherHistory& history,
                             LauncherMessages& messages)
    : _machine(machine)
    , _store(store)
    , _layouts(layouts)
    , _applications(applications)
    , _history(history)
    , _messages(messages) {}

std::expected<ArrangementSummary, LauncherError> LayoutArchive::save(Mode mode, const QString& name) {
    const QString title = QStringLiteral("Could not save arrangement");
    if (const auto guarded = _history.guard(mode); !guarded)
        return std::unexpected(guarded.error());
    if (trimmed(name).isEmpty())
        return std::unexpected(
            LauncherError{QStringLiteral("emptyName"),
                          QStringLiteral("Name this arrangement so it can be restored later."), title});
    const LiveLayout& layout = _layouts[mode];
    const auto saved =
        _store.saveArrangement(mode, trimmed(name), layout.document(), layout.settings());
    if (!saved)
        return std::unexpected(launcherError(saved.error(), title));
    return *saved;
}

LayoutArchive::Outcome LayoutArchive::restore(Mode mode, const QUuid& id) {
    const QString title = QStringLiteral("Could not restore arrangement");
    if (const auto guarded = _history.guard(mode); !guarded)
        return guarded;
    const auto arrangement = _store.arrangement(mode, id);
    if (!arrangement)
        return std::unexpected(launcherError(arrangement.error(), title));
    const MergeResult merged =
        mergeWithInstalled(arrangement->document, _layouts[mode], _applications, _machine.locale, true);
    const auto made = _history.make(
        {.name = editName(EditKind::restoreArrangement),
         .mode = mode,
         .document = LayoutDocument{.pages = merged.pages, .hiddenKeys = merged.hiddenKeys},
         .settings = arrangement->layout,
         .replacement = {{.reason = QStringLiteral("arrangement-restore"), .title = title}}});
    if (!made)
        return std::unexpected(made.error());
    _applications.keysChanged.notify(merged.changedKeys);
    return {};
}

LayoutArchive::Outcome LayoutArchive::remove(Mode mode, const QUuid& id) {
    if (const auto deleted = _store.deleteArrangement(mode, id); !deleted)
        return std::unexpected(
            launcherError(deleted.error(), QStringLiteral("Could not delete arrangement")));
    return {};
}

LayoutArchive::Outcome LayoutArchive::reset(Mode mode) {
    const QString title = QStringLiteral("Could not reset layout");
    if (!_applications.isKnown())
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
    _messages.showNotice(QStringLiteral("Layout reset to the default alphabetical arrangement."));
    return {};
}

} // namespace tessellar
