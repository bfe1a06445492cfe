#pragma once

#include "discovery/app_scanner.h"
#include "editing/grid_geometry.h"
#include "editing/navigation.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_error.h"
#include "launcher/launcher_question.h"
#include "launcher/launcher_updates.h"
#include "launcher/smart_folder_library.h"
#include "model/layout_settings.h"
#include "model/layout_store.h"
#include "model/reconciliation.h"
#include "platform/machine.h"
#include "platform/opener.h"
#include "platform/pasteboard.h"

#include <functional>
#include <list>
#include <memory>

namespace tessellar {

class LauncherIcons;
class LauncherImport;
class LibraryWatch;
class SmartFolderEditing;

/// What of the view model has changed, for those who show it.
enum class LauncherChange {
    layout,     ///< tiles, hidden or unavailable applications of the mode shown
    navigation, ///< page, open folders
    selection,
    smartFolders, ///< definitions, or what they show
    history,      ///< what can be undone or redone, its notice, the grid's reflow
    mode,
    settings,
    notice,
    alert,
    launched,         ///< an application was started: the window goes
    bootstrapped,     ///< the first load is complete
    scanned,          ///< a scan has ended, and the layouts are merged with it
    question,         ///< what the user is asked
    updates,          ///< what is known of updates, and what runs of them
    cleanup,          ///< the removal under way
    icons,            ///< icons of the user's own
    smartFolderDraft, ///< the smart folder that is edited, or what it would show
    watching,         ///< how the application folders are watched
};

/// A short message over the grid that goes by itself. A later one has a higher revision.
struct LauncherNotice {
    QString text;
    QString symbolName;
    int revision = 0;
};

/// Owns all state that the user sees and edits: the arrangements of both display modes, where the user
/// is in them, and what the machine holds. Everything is on the main thread; scans and other work on
/// disks run on workers and come back through the mailbox.
///
/// Start-up, each step after the one before:
/// 1. both working layouts are loaded;
/// 2. the application folders are scanned on a worker;
/// 3. each mode's layout is merged with the scan, or the default one is built where there is no
///    file; what comes of it is saved at once, unless the mode is blocked because its file cannot
///    be read;
/// 4. the layout counts as bootstrapped, and edits pass the guard.
class LauncherViewModel {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Listener = std::function<void(LauncherChange)>;
    /// Ends the listening when it goes.
    using Subscription = std::shared_ptr<void>;

    /// Without a pasteboard of the desktop, tiles are cut and copied within this program alone.
    explicit LauncherViewModel(Machine& machine,
                               LauncherWindowMode mode = LauncherWindowMode::fullScreen,
                               Pasteboard* pasteboard = nullptr);
    /// Saves what is unsaved.
    ~LauncherViewModel();
    LauncherViewModel(const LauncherViewModel&) = delete;
    LauncherViewModel& operator=(const LauncherViewModel&) = delete;

    [[nodiscard]] Subscription subscribe(Listener listener);

    // Start and end.
    void start();
    /// Runs the start-up to its end on the calling (main) thread; for programs without an event loop.
    void startAndWait();
    bool isBootstrapped() const { return _isBootstrapped; }
    /// Looks at the application folders again and merges what it finds; `done` is called after the
    /// merge.
    void rescan(std::function<void()> done = {});
    /// Saves what is unsaved; the way out of the program.
    Outcome quit();
    /// True while an edit is not on the disk.
    bool hasUnsavedEdits() const { return _store.hasUnsavedEdits(); }

    // What is shown.
    LauncherWindowMode mode() const { return _mode; }
    void setMode(LauncherWindowMode mode);
    const Pages& pages() const { return live().pages; }
    const QSet<QString>& hiddenKeys() const { return live().hiddenKeys; }
    LayoutDocument document() const { return {.pages = pages(), .hiddenKeys = hiddenKeys()}; }
    const QSet<QString>& unavailableAppKeys() const { return live().unavailableAppKeys; }
    /// What an unavailable tile says of itself.
    static QString unavailableNotice();
    bool isWriteBlocked() const { return _store.isWriteBlocked(mode()); }
    const AppScanner::LibraryScan& lastScan() const { return _lastScan; }
    const QList<AppEntry>& lastScannedApps() const { return _lastScan.apps; }
    /// Just before the last scan began to look.
    Instant lastScanStart() const { return _lastScanStart; }
    /// Bundles that the last scan found to be others than before, or updated, where they lay.
    const QStringList& replacedBundles() const { return _replacedBundles; }
    /// The application that a key stands for, as the last scan found it.
    const AppEntry* application(const QString& appKey) const;
    ArrangementLayout layoutSettings() const { return readLayoutSettings(_machine.settings, mode()); }
    /// To be called after a setting was changed.
    void settingsChanged();
    /// The user speaks another language now, or lives elsewhere: what is compared and searched follows;
    /// tiles stay where they are.
    void setLocale(const Locale& locale);

    /// What a scan of this machine depends on; good for any thread.
    static ScanContext scanContext(const Machine& machine);

    SmartFolderLibrary& smartFolders() { return _smartFolders; }
    const SmartFolderLibrary& smartFolders() const { return _smartFolders; }

    // Rooms of their own: what they can do stands in their headers.
    LauncherIcons& icons() { return *_icons; }
    const LauncherIcons& icons() const { return *_icons; }
    LauncherImport& launchpadImport() { return *_launchpadImport; }
    LibraryWatch& libraryWatch() { return *_libraryWatch; }
    SmartFolderEditing& smartFolderEditing() { return *_smartFolderEditing; }

    /// The pages of the grid, or of an open folder, as the grid's settings show them.
    ShownPages shownPages() const;
    ShownPages shownPages(const FolderEntry& folder) const;
    const FolderEntry* folder(const QUuid& id) const;
    const LaunchpadItem* item(const QUuid& id) const;
    /// What opens with a tile: a folder, or a smart folder as a folder of what it shows. Nothing for
    /// others.
    std::optional<FolderEntry> openable(const LaunchpadItem& item) const;
    /// The innermost open folder.
    std::optional<FolderEntry> openFolder() const;

    // Where the user is. Pages out of range go to the nearest.
    int currentPage() const { return live().navigation.currentPage; }
    void setCurrentPage(int page);
    const QList<OpenFolderLevel>& folderStack() const { return live().navigation.folderStack; }
    /// Opens a folder or smart folder over the innermost open one; false when there is no such in it.
    bool openFolder(const QUuid& id);
    void setFolderPage(int page);
    void closeFolder();
    const std::optional<QUuid>& selectedItemID() const { return live().navigation.selectedItemID; }
    /// All that are selected; the one above is the last of them.
    const QSet<QUuid>& selectedItemIDs() const { return live().navigation.selectedItemIDs; }
    void select(const std::optional<QUuid>& id);

    // What the user does. Edits of the arrangement, their history and search are the editor's.
    LauncherEditor& editor() { return *_editor; }
    const LauncherEditor& editor() const { return *_editor; }
    LauncherUpdates& updates() { return *_updates; }
    const LauncherUpdates& updates() const { return *_updates; }
    /// Applications are removed, with what they left, and brought back there.
    LauncherCleanup& cleanup() { return *_cleanup; }
    const LauncherCleanup& cleanup() const { return *_cleanup; }
    /// Starts an application; one that is not known or not available is refused, with a notice. `done`
    /// is called when the system has taken it, or at once with a refusal.
    void launch(const QString& appKey, std::function<void(Outcome)> done = {});
    static LauncherError unknownApplication(const QString& appKey);
    /// `layoutNotReady` before the first load is complete, `workingDocumentUnreadable` in a blocked
    /// mode.
    Outcome editGuard() const;
    Outcome resetLayout();

    QList<ArrangementSummary> arrangements() const { return _store.arrangements(mode()); }
    std::expected<ArrangementSummary, LauncherError> saveArrangement(const QString& name);
    Outcome restoreArrangement(const QUuid& id);
    Outcome deleteArrangement(const QUuid& id);

    // What the user is told.
    const std::optional<LauncherNotice>& notice() const { return _notice; }
    void showNotice(const QString& text, const QString& symbolName = {},
                    std::chrono::milliseconds duration = std::chrono::seconds(3));
    /// Alerts not shown yet, oldest first; taking them empties the list.
    QList<LauncherError> takeAlerts();
    /// How the launcher comes before the user again while it runs in the background.
    void setPresenter(std::function<void()> present) { _present = std::move(present); }
    /// False when there is no window to show.
    bool present();
    /// Tells of something that was not done: as an alert where it has a title, else as a notice.
    void report(const LauncherError& error);
    /// Puts a question to those who watch; one is shown at a time, in their order.
    void ask(const LauncherQuestion& question, std::function<void(bool accepted)> answer);
    LauncherAsker asker();
    /// The question that waits for its answer.
    const LauncherQuestion* question() const;
    void answer(bool accepted);

private:
    friend class LauncherEditor;
    friend class LauncherIcons;
    friend class LauncherImport;
    friend class LibraryWatch;
    friend class LauncherUpdates;
    friend class LauncherCleanup;
    friend class SmartFolderEditing;

    /// The arrangement of one mode.
    struct LiveLayout {
        Pages pages;
        QSet<QString> hiddenKeys;
        QSet<QString> unavailableAppKeys;
        Navigation navigation;
    };
    enum class ApplyKind { startUp, rescan, restore };

    LiveLayout& live() { return _layouts[static_cast<std::size_t>(mode())]; }
    const LiveLayout& live() const { return _layouts[static_cast<std::size_t>(mode())]; }

    void scan(std::function<void(std::optional<AppScanner::LibraryScan>)> done);
    void finishStartUp();
    void finishRescan(AppScanner::LibraryScan scan);
    /// Calls `step` with each mode active in turn, the mode shown first; nobody sees the change.
    void inEachMode(const std::function<void()>& step);
    /// The layout of the active mode becomes the merge of these pages with the last scan. True when
    /// that differs from the pages given.
    bool applyLayout(const Pages& pages, const QSet<QString>& hiddenKeys, ApplyKind kind) {
        return applyLayout(pages, hiddenKeys, kind, _lastScan.apps);
    }
    /// The same with the scan's applications named or identified otherwise.
    bool applyLayout(const Pages& pages, const QSet<QString>& hiddenKeys, ApplyKind kind,
                     const QList<AppEntry>& apps);
    /// The application at a path is not there now: its tiles say so until the next scan.
    void markGone(const QString& path);
    Pages defaultPages() const;
    Outcome saveNow(const QString& title);
    void tidyNavigation();

    // For the editor.
    LayoutDocument otherDocument() const;
    /// An edit's result becomes the layout of the mode shown, and its save is asked for.
    void replaceDocument(LayoutDocument document);
    /// Puts the documents that a state of history has in place of the live ones and saves them; false,
    /// and nothing changed, when that fails.
    bool restoreDocuments(const LayoutUndoState& state);
    void replaceOtherDocument(LayoutDocument document);
    void restoreNavigation(LauncherWindowMode mode, const Navigation& navigation);
    /// After a step of history the arrangement may hold what is no longer installed, or lack what is.
    void lookAgainAfterStep();
    void markUnavailable();
    /// The names that the user gave to applications in the mode shown, by app key.
    QHash<QString, QString> customNames() const;

    // For the removal of applications.
    /// An application that has gone is no longer known, before a scan says so.
    void forgetApplication(const QString& path);
    /// What was seen while bundles came and went does not count: the machine is scanned again.
    void scanAfterMoving(std::function<void()> done = {});
    void changed(LauncherChange change);
    void alert(LauncherError error);

    Machine& _machine;
    LayoutStore _store;
    LauncherWindowMode _mode;
    std::array<LiveLayout, 2> _layouts;
    std::array<LayoutStore::LoadResult, 2> _loaded;
    SmartFolderLibrary _smartFolders;
    AppScanner::LibraryScan _lastScan;
    ScanCache _scanCache;
    Instant _lastScanStart;
    QStringList _replacedBundles;
    bool _isBootstrapped = false;

    std::list<std::weak_ptr<Listener>> _listeners;
    std::optional<LauncherNotice> _notice;
    int _noticeRevision = 0;
    Timer _noticeTimer;
    QList<LauncherError> _alerts;
    struct Asked {
        LauncherQuestion question;
        std::function<void(bool)> answer;
    };
    std::list<Asked> _questions; ///< the first one is shown
    std::function<void()> _present;
    Task _scanTask;
    bool _isRescanning = false;
    bool _rescanAgain = false;
    quint64 _movements = 0; ///< of bundles, by this launcher
    QList<std::function<void()>> _rescanCallbacks;
    Opener _opener;
    MemoryPasteboard _ownPasteboard;
    Task _launch;
    // Last: they ask all the others.
    std::unique_ptr<LauncherEditor> _editor;
    std::unique_ptr<LauncherUpdates> _updates;
    std::unique_ptr<LauncherIcons> _icons;
    std::unique_ptr<LauncherImport> _launchpadImport;
    std::unique_ptr<LibraryWatch> _libraryWatch;
    std::unique_ptr<LauncherCleanup> _cleanup;
    std::unique_ptr<SmartFolderEditing> _smartFolderEditing;
};

} // namespace tessellar
