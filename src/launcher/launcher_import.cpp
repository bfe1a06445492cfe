#include "launcher/launcher_import.h"

#include "launcher/launcher_view_model.h"

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

LauncherImport::LauncherImport(LauncherViewModel& launcher, Machine& machine)
    : _launcher(launcher), _machine(machine) {}

LauncherImport::~LauncherImport() = default;

// ---- reading

void LauncherImport::preview(const std::optional<Database>& database,
                             Done<NativeLaunchpadImportResult> done) {
    const auto refuse = [&](const LauncherError& error) {
        done(std::unexpected(underImportTitle(error)));
    };
    if (isRunning())
        return refuse({QStringLiteral("importInProgress"),
                       QStringLiteral("An import is already in progress."),
                       {}});
    if (!_launcher.isBootstrapped()) // what is installed is not known yet
        return refuse(_launcher.editGuard().error());
    _done = std::move(done);
    const FileSystem* files = database ? database->files : nullptr;
    _task = _machine.workers.run(
        [importer = NativeLaunchpadImporter(LaunchpadImportContext::of(
             _machine, installedAsArranged(false), files ? *files : _machine.files)),
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

void LauncherImport::cancel() {
    _task.cancel();
    if (isRunning())
        finish(std::unexpected(LaunchpadImportError{LaunchpadImportError::Code::cancelled}));
}

// ---- applying

void LauncherImport::run(const std::optional<Database>& database,
                         Done<LegacyLaunchpadImportMetadata> done) {
    if (const auto guard = _launcher.editGuard(); !guard)
        return done(std::unexpected(underImportTitle(guard.error())));
    preview(database, [this, mode = _launcher.mode(), done = std::move(done)](const auto& imported) {
        if (!imported)
            return done(std::unexpected(imported.error()));
        // Nobody asked for it in the mode that the user has turned to meanwhile.
        if (_launcher.mode() != mode)
            return done(std::unexpected(
                launcherError(LaunchpadImportError{LaunchpadImportError::Code::cancelled})));
        done(apply(*imported));
    });
}

QList<AppEntry> LauncherImport::installedAsArranged(bool withNames) const {
    QHash<QString, const AppEntry*> tiles;
    forEachItem(_launcher.pages(), [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app(); app && !app->alias && !tiles.contains(appKey(*app)))
            tiles.insert(appKey(*app), app);
        return true;
    });
    QList<AppEntry> apps = _launcher.lastScannedApps();
    for (AppEntry& app : apps) {
        const AppEntry* tile = tiles.value(appKey(app));
        if (!tile)
            continue;
        app.id = tile->id; // so that selections hold, and undo finds every tile again
        if (withNames && tile->name != tile->originalName)
            app.name = tile->name;
    }
    return apps;
}

std::expected<LegacyLaunchpadImportMetadata, LauncherError>
LauncherImport::apply(const NativeLaunchpadImportResult& imported) {
    LauncherViewModel& launcher = _launcher;
    if (const auto guard = launcher.editGuard(); !guard)
        return std::unexpected(underImportTitle(guard.error()));
    LegacyLaunchpadImportMetadata metadata = imported.metadata;
    const auto backup = launcher._store.makeBackup(QStringLiteral("legacy-launchpad-import"),
                                                   metadata.sourceDatabasePath, launcher.document());
    if (!backup)
        return std::unexpected(launcherError(backup.error(), LaunchpadImportTexts::failureTitle()));
    metadata.backupPath = *backup;

    LayoutUndoState before = launcher.editor().snapshot();
    const auto liveBefore = launcher.live();
    launcher.applyLayout(imported.pages, launcher.hiddenKeys(), LauncherViewModel::ApplyKind::restore,
                         installedAsArranged(true));
    if (const auto saved = launcher.saveNow(LaunchpadImportTexts::failureTitle()); !saved) {
        launcher.live() = liveBefore;
        // What could not be written would be tried again: the arrangement as it was takes its place.
        launcher._store.scheduleSave(launcher.mode(), launcher.document());
        return std::unexpected(saved.error());
    }
    launcher.changed(LauncherChange::layout);
    launcher.changed(LauncherChange::navigation);
    launcher.editor().record(EditKind::importLaunchpad, 1, std::move(before));
    // The arrangement is on the disk; that the record of it is not is no reason to take it back.
    if (const auto written = writeImportMetadata(_machine.files, launcher._store.directory(), metadata);
        !written)
        _machine.log.warning(message(written.error()));
    return metadata;
}

void LauncherImport::offer() {
    _launcher.ask({.title = LaunchpadImportTexts::question(),
                   .text = LaunchpadImportTexts::explanation(),
                   .accept = QStringLiteral("Import")},
                  [this](bool accepted) {
                      if (!accepted)
                          return;
                      run({}, [this](const auto& metadata) {
                          if (metadata)
                              _launcher.alert({{},
                                               LaunchpadImportTexts::report(*metadata),
                                               LaunchpadImportTexts::doneTitle()});
                          else if (metadata.error().code != u"cancelled")
                              _launcher.alert(metadata.error());
                      });
                  });
}

} // namespace tessellar
