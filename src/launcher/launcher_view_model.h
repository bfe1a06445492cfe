#pragma once

#include "model/launcher_window_mode.h"
#include "platform/signal.h"

#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace tessellar {

struct ActionTarget;
enum class ActionRequest;
class LauncherArrangements;
class InstalledApplications;
class LauncherCleanup;
class LauncherClipboard;
class LauncherEditor;
class LauncherHistory;
class LauncherIcons;
class LauncherImport;
class LauncherMessages;
class LauncherSearch;
class LauncherSettings;
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
class TileOpener;
struct LauncherError;
class Locale;
struct Machine;

/// Owns all state that the user sees and edits. Creates and starts the parts, each documented in its
/// own header, and passes changes between them. Main thread only; scans and other disk work run on
/// workers and return through the mailbox.
///
/// Start-up:
/// 1. both working layouts are loaded on a worker;
/// 2. meanwhile another worker scans the application folders;
/// 3. each mode's layout, or the default one if there is no file, is merged with the scan and saved,
///    unless the mode is blocked because its file is unreadable;
/// 4. edits pass the guard of `history()`.
class LauncherViewModel {
public:
    using Outcome = std::expected<void, LauncherError>;

    /// Without a desktop pasteboard, tiles are cut and copied within this program only.
    explicit LauncherViewModel(Machine& machine,
                               LauncherWindowMode shown = LauncherWindowMode::fullScreen,
                               Pasteboard* pasteboard = nullptr);
    /// Does not save; see `quit`.
    ~LauncherViewModel();
    LauncherViewModel(const LauncherViewModel&) = delete;
    LauncherViewModel& operator=(const LauncherViewModel&) = delete;

    void start();
    /// Completes start-up, including its save, on the calling (main) thread; for programs without an
    /// event loop.
    void startAndWait();
    bool isBootstrapped() const { return _isBootstrapped; }
    /// Saves pending changes; call before exiting.
    Outcome quit();
    /// True while an edit is not on the disk.
    bool hasUnsavedEdits() const;

    // The parts.
    LiveLayouts& layouts() const;
    LiveLayout& layout(LauncherWindowMode mode) const;
    /// The layout of the mode that the user sees.
    LiveLayout& shown() const;
    InstalledApplications& applications() const;
    LauncherMessages& messages() const;
    LauncherHistory& history() const;
    LauncherSettings& settings() const;
    LauncherEditor& editor() const;
    LauncherClipboard& clipboard() const;
    LauncherArrangements& arrangements() const;
    LayoutArchive& archive() const;
    TileOpener& opener() const;
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

    /// The locale changed: updates comparison and search; tiles keep their places.
    void setLocale(const Locale& locale);
    /// Controls the window while the launcher runs.
    struct Presenter {
        std::function<void()> show;
        std::function<void()> dismiss; ///< hides it, as the user would
        std::function<bool()> isShown;
        std::function<bool()> isBusy; ///< with something that the user must finish first
        /// Does what an action requests of the window. False if it is about a hidden tile, or the
        /// layout of the mode that is not shown.
        std::function<bool(const ActionTarget&, ActionRequest)> perform;
        std::function<void()> quit; ///< quits the launcher soon
    };
    void setPresenter(Presenter presenter) { _presenter = std::move(presenter); }
    /// nullopt without a window.
    const std::optional<Presenter>& presenter() const { return _presenter; }

    Signal<> bootstrapped; ///< the first load is complete
    Signal<> settingsChanged;

private:
    struct Parts;

    void applySettings();

    Machine& _machine;
    std::unique_ptr<Parts> _parts;
    std::optional<Presenter> _presenter;
    bool _isBootstrapped = false;
};

} // namespace tessellar
