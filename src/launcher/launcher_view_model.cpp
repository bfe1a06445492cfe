#include "launcher/launcher_view_model.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_arrangements.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_clipboard.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_icons.h"
#include "launcher/launcher_import.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_search.h"
#include "launcher/launcher_settings.h"
#include "launcher/launcher_updates.h"
#include "launcher/layout_archive.h"
#include "launcher/layout_merger.h"
#include "launcher/layout_proposals.h"
#include "launcher/library_watch.h"
#include "launcher/smart_folder_editing.h"
#include "launcher/smart_folder_library.h"
#include "launcher/tile_opener.h"
#include "platform/texts.h"

#include <vector>

namespace tessellar {

/// In order of dependency.
struct LauncherViewModel::Parts {
    Parts(Machine& machine, LauncherWindowMode shown, Pasteboard* pasteboard)
        : store(machine, machine.places.applicationFolder())
        , messages(machine.scheduler)
        , applications(machine)
        , smartFolders(machine)
        , layouts(shown, machine.settings, smartFolders)
        , places(machine)
        , merger(machine, store, layouts, applications, places, messages)
        , history(machine, store, layouts, smartFolders, applications, messages)
        , settings(machine, history)
        , editor(machine, history, layouts, smartFolders)
        , clipboard(machine, pasteboard, history, layouts, smartFolders, messages)
        , arrangements(machine, store, layouts, history)
        , archive(machine, store, layouts, applications, places, history, messages)
        , search(machine, layouts, applications, smartFolders)
        , opener(machine, layouts, applications, smartFolders, messages) {}

    /// Connected to scans after the merge.
    struct Listening {
        Listening(Machine& machine, Parts& parts)
            : updates(machine, parts.applications, parts.smartFolders, parts.messages)
            , icons(machine, parts.layouts, parts.applications, parts.smartFolders)
            , launchpadImport(machine, parts.layouts, parts.applications, parts.places, parts.history,
                              parts.messages)
            , libraryWatch(machine, parts.applications, parts.layouts, parts.messages)
            , cleanup(machine, parts.layouts, parts.applications, parts.places, parts.history,
                      parts.messages)
            , smartFolderEditing(machine, parts.smartFolders, parts.editor)
            , proposals(machine, parts.layouts, parts.applications, launchpadImport, parts.archive) {}

        LauncherUpdates updates;
        LauncherIcons icons;
        LauncherImport launchpadImport;
        LibraryWatch libraryWatch;
        LauncherCleanup cleanup;
        SmartFolderEditing smartFolderEditing;
        LayoutProposals proposals;
    };

    LayoutStore store;
    LauncherMessages messages;
    InstalledApplications applications;
    SmartFolderLibrary smartFolders;
    LiveLayouts layouts;
    PlaceMemory places;
    LayoutMerger merger;
    LauncherHistory history;
    LauncherSettings settings;
    LauncherEditor editor;
    LauncherClipboard clipboard;
    LauncherArrangements arrangements;
    LayoutArchive archive;
    LauncherSearch search;
    TileOpener opener;
    std::vector<Subscription> subscriptions;
    std::optional<Listening> listening;
};

LauncherViewModel::LauncherViewModel(Machine& machine, LauncherWindowMode shown, Pasteboard* pasteboard)
    : _machine(machine), _parts(std::make_unique<Parts>(machine, shown, pasteboard)) {
    Parts& parts = *_parts;
    const auto follow = [&](auto& signal, auto call) {
        parts.subscriptions.push_back(signal.connect(std::move(call)));
    };
    follow(parts.applications.scanned, [this] {
        if (!std::exchange(_isBootstrapped, true))
            bootstrapped.notify();
    });
    follow(parts.store.foreignVersionKept, [this](LauncherWindowMode, const QString& path) {
        messages().alert({QStringLiteral("changedByAnotherProgram"),
                          Texts::tr("The arrangement that is shown here took its place. The other "
                                    "version is kept as “%1”.")
                              .arg(path),
                          Texts::tr("Another program changed the layout")});
    });
    follow(parts.applications.keysChanged, [&parts](const QHash<QString, QString>& changedKeys) {
        parts.smartFolders.changeKeys(changedKeys);
    });
    parts.listening.emplace(machine, parts);
    // Last, because visible icons must be decoded before facts are gathered.
    follow(parts.applications.scanned,
           [&parts] { parts.smartFolders.setApps(parts.applications.all()); });
    follow(parts.applications.scanned, [&parts] { parts.search.invalidate(); });
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        follow(parts.layouts[mode].changed, [&parts, mode] {
            parts.search.invalidate(mode);
            const LiveLayout& layout = parts.layouts[mode];
            parts.smartFolders.setContext(mode, {layout.customNames(), layout.hiddenKeys()});
        });
    follow(parts.layouts.shownModeChanged,
           [&parts] { parts.search.invalidate(parts.layouts.shownMode()); });
    follow(parts.smartFolders.changed, [&parts] { parts.search.invalidate(); });
    follow(parts.settings.stored, [this] { applySettings(); });
}

LauncherViewModel::~LauncherViewModel() = default;

LiveLayouts& LauncherViewModel::layouts() const { return _parts->layouts; }
LiveLayout& LauncherViewModel::layout(LauncherWindowMode mode) const { return _parts->layouts[mode]; }
LiveLayout& LauncherViewModel::shown() const { return _parts->layouts.shown(); }
InstalledApplications& LauncherViewModel::applications() const { return _parts->applications; }
LauncherMessages& LauncherViewModel::messages() const { return _parts->messages; }
LauncherHistory& LauncherViewModel::history() const { return _parts->history; }
LauncherSettings& LauncherViewModel::settings() const { return _parts->settings; }
LauncherEditor& LauncherViewModel::editor() const { return _parts->editor; }
LauncherClipboard& LauncherViewModel::clipboard() const { return _parts->clipboard; }
LauncherArrangements& LauncherViewModel::arrangements() const { return _parts->arrangements; }
LayoutArchive& LauncherViewModel::archive() const { return _parts->archive; }
PlaceMemory& LauncherViewModel::places() const { return _parts->places; }
TileOpener& LauncherViewModel::opener() const { return _parts->opener; }
LayoutProposals& LauncherViewModel::proposals() const { return _parts->listening->proposals; }
LauncherSearch& LauncherViewModel::search() const { return _parts->search; }
SmartFolderLibrary& LauncherViewModel::smartFolders() const { return _parts->smartFolders; }
SmartFolderEditing& LauncherViewModel::smartFolderEditing() const {
    return _parts->listening->smartFolderEditing;
}
LauncherIcons& LauncherViewModel::icons() const { return _parts->listening->icons; }
LauncherImport& LauncherViewModel::launchpadImport() const {
    return _parts->listening->launchpadImport;
}
LibraryWatch& LauncherViewModel::libraryWatch() const { return _parts->listening->libraryWatch; }
LauncherUpdates& LauncherViewModel::updates() const { return _parts->listening->updates; }
LauncherCleanup& LauncherViewModel::cleanup() const { return _parts->listening->cleanup; }

// ---- start and end

void LauncherViewModel::start() {
    smartFolders().load();
    _parts->merger.load([this] {
        history().undoInterrupted(_parts->merger.loaded());
        if (const auto& failure = smartFolders().failure())
            messages().alert({failure->code, SmartFolderLibrary::unavailableNotice(), failure->title});
    });
    if (!_machine.settings.isReadable())
        messages().alert(
            {QStringLiteral("settingsUnreadable"),
             Texts::tr(
                 "The defaults are used meanwhile. Applications in search folders of your own keep "
                 "their places. The first change starts a new file; the old one is kept beside it."),
             Texts::tr("The settings could not be read")});
    applications().rescan();
}

void LauncherViewModel::startAndWait() {
    start();
    while (!_isBootstrapped || _parts->merger.isSaving())
        _machine.workers.mailbox().waitAndDrain();
}

LauncherViewModel::Outcome LauncherViewModel::quit() {
    const auto settled = history().settle();
    if (const auto flushed = _parts->store.flush(); !flushed)
        return std::unexpected(launcherError(flushed.error(), couldNotSaveLayout()));
    return settled;
}

bool LauncherViewModel::hasUnsavedEdits() const { return _parts->store.hasUnsavedEdits(); }

void LauncherViewModel::applySettings() {
    for (const LauncherWindowMode mode : LiveLayouts::modes)
        layout(mode).settingsChanged();
    applications().settingsChanged();
    updates().settingsChanged();
    settingsChanged.notify();
}

void LauncherViewModel::setLocale(const Locale& locale) {
    if (locale.identifier() == _machine.locale.identifier() &&
        locale.languages() == _machine.locale.languages())
        return;
    _machine.locale = locale;
    search().invalidate();
    smartFolders().localeChanged();
    applications().rescan(); // applications may have other names in this language
}

} // namespace tessellar
