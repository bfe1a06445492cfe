#pragma once

#include "editing/grid_geometry.h"
#include "editing/layout_edits.h"
#include "launcher/layout_navigation.h"
#include "model/launcher_window_mode.h"
#include "platform/signal.h"

#include <QHash>

#include <array>
#include <memory>
#include <optional>

namespace tessellar {

class Settings;
class SmartFolderLibrary;

/// The arrangement of one display mode as shown and edited. Only holds it: documents are changed by
/// steps of `LauncherHistory` or by merging a scan.
///
/// Look-up tables are made at most once after each change, when asked for. Pointers to tiles are valid
/// until the next change. Main thread only.
class LiveLayout {
public:
    LiveLayout(LauncherWindowMode mode, const Settings& settings,
               const SmartFolderLibrary& smartFolders);
    ~LiveLayout();

    LauncherWindowMode mode() const { return _mode; }
    const LayoutDocument& document() const { return _document; }
    const Pages& pages() const { return _document.pages; }
    const QSet<QString>& hiddenKeys() const { return _document.hiddenKeys; }
    /// App keys of tiles whose application is currently unavailable.
    const QSet<QString>& unavailableAppKeys() const { return _unavailableAppKeys; }
    /// The text shown for an unavailable tile.
    static QString unavailableNotice();
    /// The grid's settings.
    const ArrangementLayout& settings() const { return _settings; }
    GridCapacities capacities() const { return GridCapacities::of(_settings); }

    // Tiles at any depth.
    const LaunchpadItem* item(const QUuid& id) const;
    const FolderEntry* folder(const QUuid& id) const;
    /// The application's own tile, never an alias.
    const AppEntry* tileOf(const QString& appKey) const;
    /// Sorted by arrangement order.
    QList<QUuid> inOrder(const QSet<QUuid>& tiles) const;
    /// The user's names of applications, by app key.
    QHash<QString, QString> customNames() const;

    /// The pages of the grid, or of a folder, as displayed.
    const ShownPages& shownPages() const;
    ShownPages shownPages(const FolderEntry& folder) const;
    /// The contents of a tile that opens: a folder, or a smart folder as a folder of its matches (at
    /// most `most`, -1 for all). nullopt for other tiles.
    std::optional<FolderEntry> openable(const LaunchpadItem& item, qsizetype most = -1) const;

    /// The user's position.
    LayoutNavigation& navigation() { return _navigation; }
    const LayoutNavigation& navigation() const { return _navigation; }
    /// Opens the folders that contain a tile, and selects it there.
    void reveal(const QUuid& tile);

    // For code that changes the layout.
    void setDocument(LayoutDocument document);
    /// Replaces the arrangement; navigation returns to the start.
    void setArrangement(LayoutDocument document);
    void setUnavailable(QSet<QString> appKeys);
    /// Call when settings may have changed.
    void settingsChanged();
    /// Previews other grid settings, without storing them, until the next `settingsChanged`.
    void tryOut(const ArrangementLayout& settings);

    Signal<> replaced; ///< with another arrangement; `changed` follows
    Signal<> changed;  ///< tiles, hidden or unavailable applications, or settings

private:
    struct Lookups;

    Lookups& lookups() const;
    void documentChanged();

    const LauncherWindowMode _mode;
    const Settings& _store;
    const SmartFolderLibrary& _smartFolders;
    LayoutDocument _document;
    QSet<QString> _unavailableAppKeys;
    ArrangementLayout _settings;
    LayoutNavigation _navigation;
    mutable std::unique_ptr<Lookups> _lookups; ///< of the current document and settings
};

/// The live layouts of both display modes. Operations name the mode they act on; which one the user
/// sees matters only to the window.
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

    /// Visits every application tile of both modes, including aliases.
    void forEachApplication(const std::function<void(LauncherWindowMode, const AppEntry&)>& call) const;
    /// Marks an application's tiles as unavailable until the next scan.
    void markUnavailable(const QString& appKey);

    Signal<> shownModeChanged;

private:
    std::array<LiveLayout, 2> _layouts;
    LauncherWindowMode _shownMode;
};

} // namespace tessellar
