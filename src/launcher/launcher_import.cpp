#include "launcher/launcher_import.h"

#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "platform/texts.h"

#include <array>

namespace tessellar {

LauncherError launcherError(const LaunchpadImportError& error) {
    static constexpr std::array names{"cannotResolveDarwinUserDirectory",
                                      "databaseNotFound",
                                      "unableToOpenDatabase",
                                      "unsupportedSchema",
                                      "queryFailed",
                                      "importConversionFailed",
                                      "cancelled"};
    return {QLatin1StringView(names.at(static_cast<std::size_t>(error.code))), message(error),
            LaunchpadImportTexts::failureTitle()};
}

static LauncherError underImportTitle(LauncherError error) {
    error.title = LaunchpadImportTexts::failureTitle();
    return error;
}

LauncherImport::LauncherImport(Machine& machine, LiveLayouts& layouts,
                               InstalledApplications& applications, PlaceMemory& places,
                               LauncherHistory& history, LauncherMessages& messages)
    : _machine(machine)
    , _layouts(layouts)
    , _applications(applications)
    , _places(places)
    , _history(history)
    , _messages(messages)
    , _merger(machine, layouts, applications, places) {}

// ---- reading

void LauncherImport::preview(Mode mode, const std::optional<Database>& database,
                             Done<NativeLaunchpadImportResult> done) {
    const auto refuse = [&](const LauncherError& error) {
        done(std::unexpected(underImportTitle(error)));
    };
    if (isRunning())
        return refuse(
            {QStringLiteral("importInProgress"), Texts::tr("An import is already in progress."), {}});
    if (!_applications.hasScanned())
        return refuse(_history.guard(mode).error());
    _done = std::move(done);
    const FileSystem* files = database ? database->files : nullptr;
    _task = _machine.workers.run(
        [importer = NativeLaunchpadImporter(
             LaunchpadImportContext::of(_machine, candidates(mode), files ? *files : _machine.files)),
         path = database ? std::optional(database->path) : std::nullopt](std::stop_token stop) {
            return importer.run(path, stop);
        },
        [this](std::expected<NativeLaunchpadImportResult, LaunchpadImportError> result) {
            finish(std::move(result));
        });
}

void LauncherImport::finish(std::expected<NativeLaunchpadImportResult, LaunchpadImportError> result) {
    const auto done = std::exchange(_done, nullptr);
    if (result)
        return done(*std::move(result));
    if (!result.error().detail.isEmpty())
        _machine.log.warning(result.error().detail);
    done(std::unexpected(launcherError(result.error())));
}

// ---- applying

void LauncherImport::run(Mode mode, const std::optional<Database>& database,
                         Done<LegacyLaunchpadImportMetadata> done) {
    if (const auto guarded = _history.guard(mode); !guarded)
        return done(std::unexpected(underImportTitle(guarded.error())));
    preview(mode, database, [this, mode, done = std::move(done)](const auto& imported) {
        if (!imported)
            return done(std::unexpected(imported.error()));
        apply(mode, *imported, done);
    });
}

/// The installed applications, and those out of sight, so that their old places are found, too.
QList<AppEntry> LauncherImport::candidates(Mode mode) const {
    const LiveLayout& layout = _layouts[mode];
    QList<AppEntry> apps = installedAsArranged(layout, _applications, false);
    forEachItem(layout.pages(), [&](const LaunchpadItem& item) {
        const AppEntry* tile = item.app();
        if (tile && !tile->alias && layout.unavailableAppKeys().contains(appKey(*tile)))
            apps.append(*tile);
        return true;
    });
    return apps;
}

void LauncherImport::apply(Mode mode, const NativeLaunchpadImportResult& imported,
                           Done<LegacyLaunchpadImportMetadata> done) {
    const auto wanted = [this, mode, pages = imported.pages]() -> ReplacementMerger::Wanted {
        const LiveLayout& layout = _layouts[mode];
        LayoutDocument document{.pages = pages, .hiddenKeys = layout.hiddenKeys()};
        return {.document = [document] { return document; },
                .apps = installedAsArranged(layout, _applications, true)};
    };
    _merger.merge(mode, wanted,
                  [this, mode, metadata = imported.metadata, done = std::move(done)](
                      const MergeResult& merged) { apply(mode, merged, metadata, done); });
}

void LauncherImport::apply(Mode mode, const MergeResult& merged, LegacyLaunchpadImportMetadata metadata,
                           Done<LegacyLaunchpadImportMetadata> done) {
    // A step that is being saved may put its own places back.
    if (const auto settled = _history.settle(); !settled)
        return done(std::unexpected(underImportTitle(settled.error())));
    const RememberedPlaces before = _places[mode];
    _places.set(mode, merged.places); // before the layout is saved without their tiles
    const auto backup = std::make_shared<std::optional<QString>>();
    auto ended = [this, mode, before, places = merged.places, metadata, backup,
                  done = std::move(done)](const LauncherHistory::Outcome& saved) mutable {
        if (!saved) {
            if (_places[mode] == places)
                _places.set(mode, before);
            return done(std::unexpected(underImportTitle(saved.error())));
        }
        metadata.backupPath = *backup;
        done(std::move(metadata));
    };
    const auto made = _history.make(
        {.name = editName(EditKind::importLaunchpad),
         .mode = mode,
         .document = LayoutDocument{.pages = merged.pages, .hiddenKeys = merged.hiddenKeys},
         .replacement = {{.reason = QStringLiteral("legacy-launchpad-import"),
                          .title = LaunchpadImportTexts::failureTitle(),
                          .importRecord = metadata}}},
        ended);
    if (made)
        *backup = *made;
    else
        ended(std::unexpected(made.error()));
}

void LauncherImport::tell(const Imported& imported) {
    if (imported)
        _messages.alert(
            {{}, LaunchpadImportTexts::report(*imported), LaunchpadImportTexts::doneTitle()});
    else if (imported.error().code != u"cancelled")
        _messages.alert(imported.error());
}

void LauncherImport::offer(Mode mode) {
    _messages.ask({.title = LaunchpadImportTexts::question(),
                   .text = LaunchpadImportTexts::explanation(),
                   .accept = Texts::tr("Import")},
                  [this, mode](bool accepted) {
                      if (!accepted)
                          return;
                      run(mode, {}, [this](const auto& metadata) { tell(metadata); });
                  });
}

} // namespace tessellar
