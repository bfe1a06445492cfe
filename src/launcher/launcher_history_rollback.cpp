// Rolling back steps that failed, were interrupted, or could not be saved, and whether an old state
// still fits what is installed.

#include "launcher/installed_applications.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_settings.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"

#include <algorithm>
#include <vector>

namespace tessellar {

/// As an undo that cannot be redone, but the user's navigation is kept.
void LauncherHistory::rollBack(const QList<UnsavedEdit>& edits, bool areLeft) {
    (void)_writer.finish(); // a step on top of them is rolled back first
    for (const UnsavedEdit& edit : edits)
        edit.rollBack();
    const UnsavedEdit& first = edits.last();
    show(first.mode, first.before, false);
    // The failed save may be on the disk all the same.
    (void)_store.saveNow(first.mode, first.before, areLeft);
    if (differsFromInstalled(_layouts[first.mode]))
        _applications.rescan();
}

void LauncherHistory::showBefore(const EditStep& step, const LayoutUndoState& before) {
    if (step.definitions)
        _smartFolders.show(before.smartFolderDefinitions);
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        if (step.documentOf(mode) && *before.documentOf(mode) != _layouts[mode].document())
            show(mode, *before.documentOf(mode), false);
    _layouts[step.mode].navigation().setPosition(before.navigation);
}

void LauncherHistory::undoInterrupted(std::array<LayoutStore::LoadResult, 2>& loaded) {
    const auto before = _journal.interruptedStep(loaded, _smartFolders);
    if (!before)
        return;
    _machine.log.warning(QStringLiteral("Rolling back an interrupted step."));
    if (!putBack(*before) || !_journal.end())
        _unsettled = {*before,
                      settingsNow(*before),
                      true,
                      {QStringLiteral("notTakenBack"), Texts::tr("The arrangement could not be saved."),
                       couldNotSaveLayout()}};
    // Further edits start from the rolled-back state.
    if (before->fullScreen)
        loaded[0] = *before->fullScreen;
    if (before->windowed)
        loaded[1] = *before->windowed;
}

LauncherHistory::Outcome LauncherHistory::settle() {
    if (auto ended = _writer.finish(); !ended)
        return ended;
    if (!_unsettled)
        return {};
    if (!_applications.hasScanned())
        return std::unexpected(_unsettled->error); // nothing is shown yet
    if (_unsettled->before.settings)
        LauncherSettings::flush(_machine);
    // The documents may have been merged with a scan since, so the shown ones are saved.
    StepJournal::Files files = _unsettled->before;
    for (auto [mode, document] : {std::pair(LauncherWindowMode::fullScreen, &files.fullScreen),
                                  {LauncherWindowMode::windowed, &files.windowed}})
        if (*document)
            *document = _layouts[mode].document();
    // Settings that the user has changed since are kept.
    if (files.settings)
        files.settings->removeIf([&](const auto& setting) {
            return _machine.settings.value(setting.key()).value_or(QJsonValue()) !=
                   _unsettled->settings.value(setting.key());
        });
    if (!putBack(files) || (_unsettled->isNoted && !_journal.end()))
        return std::unexpected(_unsettled->error);
    _unsettled.reset();
    return {};
}

QMap<QString, QJsonValue> LauncherHistory::settingsNow(const StepJournal::Files& files) const {
    QMap<QString, QJsonValue> now;
    if (files.settings)
        for (const QString& key : files.settings->keys())
            now.insert(key, _machine.settings.value(key).value_or(QJsonValue()));
    return now;
}

/// In reverse order, so that each file is written into the space that the later ones release.
bool LauncherHistory::putBack(const StepJournal::Files& files) {
    bool isWritten = true;
    const auto holdsNothing = [&](LauncherWindowMode mode) {
        const auto there = _machine.files.status(LayoutStore::workingPath(_store.directory(), mode));
        return !there && there.error().code == FileError::Code::notFound;
    };
    if (files.importRecord && _journal.importRecord() != files.importRecord &&
        !_journal.putImportRecordBack(*files.importRecord))
        isWritten = false;
    for (const auto& [mode, document] : {std::pair(LauncherWindowMode::windowed, &files.windowed),
                                         {LauncherWindowMode::fullScreen, &files.fullScreen}})
        if (*document && !_store.saveNow(mode, **document) && !holdsNothing(mode))
            isWritten = false;
    if (files.definitions && !_smartFolders.rollBack(*files.definitions))
        isWritten = false;
    if (files.settings) {
        isWritten = LauncherSettings::storeNow(_machine, *files.settings).has_value() && isWritten;
        for (const LauncherWindowMode mode : LiveLayouts::modes)
            _layouts[mode].settingsChanged();
    }
    return isWritten;
}

/// A step restores an old state: its tiles may be of applications that were removed or moved since, and
/// new applications have none.
bool LauncherHistory::differsFromInstalled(const LiveLayout& layout) const {
    if (!layout.unavailableAppKeys().isEmpty())
        return true;
    const QList<AppEntry>& installed = _applications.all();
    std::vector<bool> hasTile(static_cast<std::size_t>(installed.size()));
    const bool areAllThere = forEachItem(layout.pages(), [&](const LaunchpadItem& item) {
        const AppEntry* tile = item.app();
        if (!tile || tile->alias)
            return true;
        const AppEntry* app = _applications.withKey(appKey(*tile));
        if (!app)
            return false;
        auto isKnown = hasTile[static_cast<std::size_t>(app - installed.constData())];
        const bool isThere = isKnown || tile->path == app->path;
        isKnown = true;
        return isThere;
    });
    return !areAllThere || std::ranges::find(hasTile, false) != hasTile.end();
}

} // namespace tessellar
