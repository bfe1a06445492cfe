#pragma once

#include "editing/grid_geometry.h"
#include "editing/layout_edits.h"
#include "editing/navigation.h"
#include "model/launcher_window_mode.h"
#include "platform/signal.h"

#include <QHash>

#include <array>
#include <memory>
#include <optional>

namespace tessellar {

class Settings;
class SmartFolderLibrary;

/// The arrangement of one display mode as it is shown and edited, and where the user is in it. What
/// changes a document is a step of `LauncherHistory` or the merge with a scan; this only holds it.
///
/// Look-ups cost one walk of the tiles after each change. Pointers to tiles are good until then. Main
/// thread only.
class LiveLayout {
public:
    LiveLayout(LauncherWindowMode mode, const Settings& settings,
               const SmartFolderLibrary& smartFolders);
    ~LiveLayout();

    LauncherWindowMode mode() const { return _mode; }
    const LayoutDocument& document() const { return _document; }
    const Pages& pages() const { return _document.pages; }
    const QSet<QString>& hiddenKeys() const { return _document.hiddenKeys; }
    /// App keys of tiles whose application is known but cannot be used now.
    const QSet<QString>& unavailableAppKeys() const { return _unavailableAppKeys; }
    /// What an unavailable tile says of itself.
    static QString unavailableNotice();
    /// The grid's settings.
    const ArrangementLayout& settings() const { return _settings; }
    GridCapacities capacities() const { return GridCapacities::of(_settings); }

    // Tiles, at any depth.
    const LaunchpadItem* item(const QUuid& id) const;
    const FolderEntry* folder(const QUuid& id) const;
    /// The application's own tile, not an alias.
    const AppEntry* tileOf(const QString& appKey) const;
    /// In the order of the arrangement.
    QList<QUuid> inOrder(const QSet<QUuid>& tiles) const;
    /// The names that the user gave to applications, by app key.
    QHash<QString, QString> customNames() const;

    /// The pages of the grid, or of an open folder, as the grid's settings show them.
    const ShownPages& shownPages() const;
    ShownPages shownPages(const FolderEntry& folder) const;
    /// What opens with a tile: a folder, or a smart folder as a folder of what it shows (as many of it
    /// as are asked for). Nothing for others.
    std::optional<FolderEntry> openable(const LaunchpadItem& item, qsizetype most = -1) const;

    // Where the user is. Pages out of range go to the nearest.
    const Navigation& navigation() const { return _navigation; }
    int currentPage() const { return _navigation.currentPage; }
    void setCurrentPage(int page);
    const QList<OpenFolderLevel>& folderStack() const { return _navigation.folderStack; }
    /// The innermost open folder.
    std::optional<FolderEntry> openFolder() const;
    /// True while a smart folder is open: its rules decide what is in it.
    bool isOpenFolderComputed() const;
    /// Opens a folder or smart folder over the innermost open one; false when there is no such in it.
    bool openFolder(const QUuid& id);
    void setFolderPage(int page);
    void closeFolder();
    const std::optional<QUuid>& selectedItemID() const { return _navigation.selectedItemID; }
    /// All that are selected; the one above is the last of them.
    const QSet<QUuid>& selectedItemIDs() const { return _navigation.selectedItemIDs; }
    void select(const std::optional<QUuid>& id);
    void select(const QList<QUuid>& ids);
    /// Selects a tile of the innermost open folder, or of the grid, and turns to its page.
    void reveal(const QUuid& id);
    /// As far as its pages, folders and tiles still exist.
    void setNavigation(const Navigation& navigation);

    // For those who change it.
    void setDocument(LayoutDocument document);
    /// Another arrangement: the user begins at its start.
    void setArrangement(LayoutDocument document);
    void setUnavailable(QSet<QString> appKeys);
    /// The grid's settings, or what smart folders show, have changed.
    void refresh();
    /// Shows the grid with other settings, which are not stored, until the next `refresh`.
    void tryOut(const ArrangementLayout& settings);

    Signal<> replaced; ///< by another arrangement; `changed` follows
    Signal<> changed;  ///< tiles, hidden or unavailable applications, settings
    Signal<> navigationChanged;
    Signal<> selectionChanged;

private:
    struct Lookups;

    const Lookups& lookups() const;
    void documentChanged();
    void tidyNavigation();

    const LauncherWindowMode _mode;
    const Settings& _store;
    const SmartFolderLibrary& _smartFolders;
    LayoutDocument _document;
    QSet<QString> _unavailableAppKeys;
    ArrangementLayout _settings;
    Navigation _navigation;
    mutable std::unique_ptr<Lookups> _lookups; ///< of the present document and settings
};

/// The live layouts of both display modes. Operations name the one that they act on; which of them the
/// user sees matters to the window alone.
class LiveLayouts {
public:
    static constexpr std::array modes{LauncherWindowMode::fullScreen, LauncherWindowMode::windowed};

    LiveLayouts(LauncherWindowMode shown, const Settings& settings,
                const SmartFolderLibrary& smartFolders);

    LiveLayout& operator[](LauncherWindowMode mode) { return _layouts[std::size_t(mode)]; }
    const LiveLayout& operator[](LauncherWindowMode mode) const { return _layouts[std::size_t(mode)]; }

    LauncherWindowMode shownMode() const { return _shownMode; }
    LiveLayout& shown() { return (*this)[_shownMode]; }
    const LiveLayout& shown() const { return (*this)[_shownMode]; }
    void show(LauncherWindowMode mode);

    /// Every application tile of both modes, aliases too.
    void forEachApplication(const std::function<void(LauncherWindowMode, const AppEntry&)>& call) const;
    /// The application is not there now: its tiles say so until the next scan.
    void markUnavailable(const QString& appKey);

    Signal<> shownModeChanged;
    Signal<LauncherWindowMode> changed;

private:
    std::array<LiveLayout, 2> _layouts;
    LauncherWindowMode _shownMode;
    std::array<Subscription, 2> _subscriptions;
};

} // namespace tessellar
