#pragma once

#include "app/arrangements_panel.h"
#include "app/arranging_panel.h"
#include "app/backups_panel.h"
#include "app/information_panel.h"
#include "app/past_removals_panel.h"
#include "app/removal_panel.h"
#include "app/settings_panel.h"
#include "app/sheets.h"
#include "app/smart_folder_panel.h"
#include "app/unplaced_panel.h"
#include "app/updates_panel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tessellar {

/// What the sheets show, one panel each, kept up to date with the launcher. Opens the sheets
/// that have to be prepared.
class Panels final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(tessellar::UpdatesPanel* updates READ updates CONSTANT FINAL)
    Q_PROPERTY(tessellar::ArrangementsPanel* arrangements READ arrangements CONSTANT FINAL)
    Q_PROPERTY(tessellar::ArrangingPanel* arranging READ arranging CONSTANT FINAL)
    Q_PROPERTY(tessellar::BackupsPanel* backups READ backups CONSTANT FINAL)
    Q_PROPERTY(tessellar::InformationPanel* information READ information CONSTANT FINAL)
    Q_PROPERTY(tessellar::RemovalPanel* removal READ removal CONSTANT FINAL)
    Q_PROPERTY(tessellar::PastRemovalsPanel* pastRemovals READ pastRemovals CONSTANT FINAL)
    Q_PROPERTY(tessellar::SettingsPanel* settings READ settings CONSTANT FINAL)
    Q_PROPERTY(tessellar::SmartFolderPanel* smartFolder READ smartFolder CONSTANT FINAL)
    Q_PROPERTY(tessellar::UnplacedPanel* unplaced READ unplaced CONSTANT FINAL)

public:
    Panels(LauncherViewModel& viewModel, Sheets& sheets, Machine& machine);

    UpdatesPanel* updates() { return &_updates; }
    ArrangementsPanel* arrangements() { return &_arrangements; }
    ArrangingPanel* arranging() { return &_arranging; }
    const ArrangingPanel* arranging() const { return &_arranging; }
    BackupsPanel* backups() { return &_backups; }
    InformationPanel* information() { return &_information; }
    RemovalPanel* removal() { return &_removal; }
    const RemovalPanel* removal() const { return &_removal; }
    PastRemovalsPanel* pastRemovals() { return &_pastRemovals; }
    SettingsPanel* settings() { return &_settings; }
    SmartFolderPanel* smartFolder() { return &_smartFolder; }
    UnplacedPanel* unplaced() { return &_unplaced; }

    Q_INVOKABLE void openArrangements();
    Q_INVOKABLE void openBackups();
    /// Opens the ways to rearrange all applications; on the first run, with a welcome.
    void openArranging(bool isFirstRun);
    /// True while a welcome or release notes are shown.
    bool isWelcoming() const;

private:
    void followSheets();

    Sheets& _sheets;
    UpdatesPanel _updates;
    ArrangementsPanel _arrangements;
    ArrangingPanel _arranging;
    BackupsPanel _backups;
    InformationPanel _information;
    RemovalPanel _removal;
    PastRemovalsPanel _pastRemovals;
    SettingsPanel _settings;
    SmartFolderPanel _smartFolder;
    UnplacedPanel _unplaced;
    std::vector<Subscription> _subscriptions;
};

} // namespace tessellar
