#pragma once

#include "model/launcher_window_mode.h"
#include "platform/signal.h"

#include <expected>
#include <functional>
#include <memory>
#include <optional>

class QString;

namespace tessellar {

class ArrangementShelf;
class InstalledApplications;
class LauncherCleanup;
class LauncherClipboard;
class LauncherEditor;
class LauncherHistory;
class LauncherIcons;
class LauncherImport;
class LauncherMessages;
class LauncherSearch;
class LauncherUpdates;
class LayoutArchive;
class LayoutProposals;
class LayoutStore;
class LibraryWatch;
class LiveLayout;
class LiveLayouts;
class Pasteboard;
class PlaceMemory;
class SmartFolderEditing;
class SmartFolderLibrary;
struct LauncherError;
class LaunchpadItem;
class Locale;
struct Machine;

/// Owns all state that the user sees and edits. It holds the parts, each of which says in its header
/// what it does, starts them, and brings what one of them finds to the others. Everything is on the
/// main thread; scans and other work on disks run on workers and come back through the mailbox.
///
/// Start-up, each step after the one before:
/// 1. both working layouts are loaded, on a worker;
/// 2. meanwhile the application folders are scanned on another;
/// 3. each mode's layout is merged with the scan, or the default one is built where there is no
///    file; what comes of it is saved, unless the mode is blocked because its file cannot be read;
/// 4. edits pass the guard of `history()`.
class LauncherViewModel {
public:
    using Outcome = std::expected<void, LauncherError>;

    /// Without a pasteboard of the desktop, tiles are cut and copied within this program alone.
    explicit LauncherViewModel(Machine& machine,
                               LauncherWindowMode shown = LauncherWindowMode::fullScreen,
                               Pasteboard* pasteboard = nullptr);
    /// Saves nothing any more; see `quit`.
    ~LauncherViewModel();
    LauncherViewModel(const LauncherViewModel&) = delete;
    LauncherViewModel& operator=(const LauncherViewModel&) = delete;

    void start();
    /// Runs the start-up, with its save, to its end on the calling (main) thread; for programs without
    /// an event loop.
    void startAndWait();
    bool isBootstrapped() const { return _isBootstrapped; }
    /// Nobody has arranged anything yet in either mode: a new user may be asked how to begin.
    bool isUnarranged() const;
    /// Saves what is unsaved; the way out of the program.
    Outcome quit();
    /// True while an edit is not on the disk.
    bool hasUnsavedEdits() const;

    // The parts.
    LiveLayouts& layouts() const;
    LiveLayout& layout(LauncherWindowMode mode) const;
    /// The layout that the user sees.
    LiveLayout& shown() const;
    InstalledApplications& applications() const;
    LauncherMessages& messages() const;
    LauncherHistory& history() const;
    LauncherEditor& editor() const;
    LauncherClipboard& clipboard() const;
    ArrangementShelf& arrangements() const;
    LayoutArchive& archive() const;
    LayoutProposals& proposals() const;
    PlaceMemory& places() const;
    LauncherSearch& search() const;
    SmartFolderLibrary& smartFolders() const;
    SmartFolderEditing& smartFolderEditing() const;
    LauncherIcons& icons() const;
    LauncherImport& launchpadImport() const;
    LibraryWatch& libraryWatch() const;
    LauncherUpdates& updates() const;
    LauncherCleanup& cleanup() const;

    /// What a tile does when it is opened: starts its application, or opens its folder.
    void open(LauncherWindowMode mode, const LaunchpadItem& item);
    /// Starts an application; one that is not known or not available is refused, with a notice. `done`
    /// is called when the system has taken it, or with the refusal.
    void launch(const QString& appKey, std::function<void(Outcome)> done = {});
    /// To be called after a setting was changed.
    void applySettings();
    /// The locale changed: what is compared and searched follows; tiles stay where they are.
    void setLocale(const Locale& locale);
    /// How the window comes and goes, while the launcher runs.
    struct Presenter {
        std::function<void()> show;
        std::function<void()> dismiss; ///< puts it away, as the user does
        std::function<bool()> isShown;
        std::function<void()> quit; ///< ends the launcher, soon
    };
    void setPresenter(Presenter presenter) { _presenter = std::move(presenter); }
    /// Nothing without a window.
    const std::optional<Presenter>& presenter() const { return _presenter; }

    Signal<> bootstrapped; ///< the first load is complete
    Signal<> settingsChanged;
    Signal<> launched; ///< something was opened: the window goes

private:
    struct Parts;

    Machine& _machine;
    std::unique_ptr<Parts> _parts;
    std::optional<Presenter> _presenter;
    bool _isBootstrapped = false;
};

} // namespace tessellar
