#include "app/panels.h"

#include "launcher/launcher_arrangements.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_updates.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_editing.h"

namespace tessellar {

Panels::Panels(LauncherViewModel& viewModel, Sheets& sheets, Machine& machine)
    : _sheets(sheets)
    , _updates(viewModel)
    , _arrangements(viewModel, machine)
    , _arranging(viewModel)
    , _backups(viewModel)
    , _information(viewModel, machine)
    , _removal(viewModel)
    , _pastRemovals(viewModel)
    , _settings(viewModel, machine)
    , _smartFolder(viewModel)
    , _unplaced(viewModel, machine) {
    const auto on = [this](auto& signal, auto call) {
        _subscriptions.push_back(signal.connect(std::move(call)));
    };
    on(viewModel.updates().changed, [this] { _updates.refresh(); });
    on(viewModel.layouts().shownModeChanged, [this] { _updates.refresh(); });
    on(viewModel.settingsChanged, [this] { _updates.refresh(); });
    on(viewModel.arrangements().changed, [this] {
        if (_sheets.current() == Sheets::arrangements)
            _arrangements.refresh();
    });
    on(viewModel.cleanup().changed, [this] {
        _removal.refresh();
        _pastRemovals.refresh();
    });
    on(viewModel.smartFolderEditing().changed, [this] {
        _smartFolder.refresh();
        if (!_smartFolder.isOpen() && _sheets.current() == Sheets::smartFolder)
            _sheets.close();
    });
    on(viewModel.smartFolderEditing().reopened, [this] { _sheets.open(Sheets::smartFolder); });
    connect(&_sheets, &Sheets::changed, this, &Panels::followSheets);
    connect(&_settings, &SettingsPanel::updatesRequested, this,
            [this] { _sheets.open(Sheets::updates); });
}

void Panels::openArrangements() {
    _arrangements.open();
    _sheets.open(Sheets::arrangements);
}

void Panels::openBackups() {
    _backups.refresh();
    _sheets.open(Sheets::backups);
}

void Panels::openArranging(bool isFirstRun) {
    _arranging.open(isFirstRun);
    _sheets.open(Sheets::arranging);
}

bool Panels::isWelcoming() const {
    return _sheets.current() == Sheets::whatIsNew ||
           (_sheets.current() == Sheets::arranging && _arranging.isFirstRun());
}

void Panels::followSheets() {
    _updates.setShown(_sheets.current() == Sheets::updates);
    _settings.setShown(_sheets.current() == Sheets::settings);
    if (_sheets.current() != Sheets::smartFolder && _smartFolder.isOpen())
        _smartFolder.cancel();
}

} // namespace tessellar
