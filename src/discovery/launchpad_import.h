#pragma once

#include "discovery/app_resolver.h"
#include "discovery/launchpad_import_error.h"
#include "discovery/launchpad_reader.h"
#include "platform/machine.h"

#include <QStringList>

#include <expected>
#include <stop_token>

namespace tessellar {

/// The record of an import, stored beside the layout.
struct LegacyLaunchpadImportMetadata {
    static inline const QString fileName = QStringLiteral("legacy-launchpad-import.json");

    QString sourceDatabasePath;
    Instant importedAt;
    int appCount = 0;    ///< applications that got a tile
    int folderCount = 0; ///< folders containing one of them
    int itemCount = 0;   ///< rows of the old arrangement, of any type
    int unresolvedAppCount = 0;
    int schemaUserVersion = 0;
    std::optional<QString> backupPath; ///< set by the caller that makes the backup

    bool operator==(const LegacyLaunchpadImportMetadata&) const = default;
};

/// An application of the old arrangement, with the installed one that it resolved to.
struct ImportedAppTile {
    NativeLaunchpadApp app;
    AppEntry entry;

    bool operator==(const ImportedAppTile&) const = default;
};

/// The old arrangement with installed applications; apply it by reconciliation, as a restore.
struct NativeLaunchpadImportResult {
    /// The original pages and folder pages, without those that have no installed application. One may
    /// exceed a page of the grid.
    Pages pages;
    QList<ImportedAppTile> importedApps; ///< in tile order
    LegacyLaunchpadImportMetadata metadata;
    /// The names of skipped applications, in their original order.
    QStringList skippedApps;
    /// Further tiles of applications that already have one; not counted as skipped, as nothing is lost.
    int repeatedAppCount = 0;
    /// Rows that are not tiles: downloads, widgets and the like.
    int otherItemCount = 0;

    bool operator==(const NativeLaunchpadImportResult&) const = default;
};

/// Everything that an import depends on apart from the database.
struct LaunchpadImportContext {
    const FileSystem& files;
    CommandRunner& commands;
    std::map<QByteArray, QByteArray> environment;
    QString library; ///< the user's Library folder
    Locale locale;
    UuidSource& uuids;
    Instant now;
    QString temporaryFolder;       ///< host path, for a private copy
    QList<AppEntry> installedApps; ///< of the last scan
    LaunchpadReadLimits limits = {};

    static LaunchpadImportContext of(const Machine& machine, QList<AppEntry> installedApps) {
        return of(machine, std::move(installedApps), machine.files);
    }
    /// For a database outside the machine's file system.
    static LaunchpadImportContext of(const Machine& machine, QList<AppEntry> installedApps,
                                     const FileSystem& files);
};

/// Imports the old Launchpad's arrangement. Read-only: returns a value for the main thread to apply.
/// Blocks; any thread.
class NativeLaunchpadImporter {
public:
    explicit NativeLaunchpadImporter(LaunchpadImportContext context) : _context(std::move(context)) {}

    /// Imports from `databasePath`, or from the system's own database.
    std::expected<NativeLaunchpadImportResult, LaunchpadImportError>
    run(const std::optional<QString>& databasePath = {}, std::stop_token stop = {}) const;

    /// Candidates for the system's database, in order of preference; at least one.
    std::expected<QStringList, LaunchpadImportError> locate(std::stop_token stop = {}) const;

private:
    std::expected<LaunchpadRows, LaunchpadImportError> read(const QString& path,
                                                            std::stop_token stop) const;
    QStringList fallbackDatabases() const;

    LaunchpadImportContext _context;
};

/// Converts rows to an arrangement of these applications; `importConversionFailed` if no tile remains.
std::expected<NativeLaunchpadImportResult, LaunchpadImportError>
convertLaunchpadRows(const LaunchpadRows& rows, const AppResolver& resolver, UuidSource& uuids);

/// The contents of the metadata's file.
QByteArray encodedImportMetadata(const LegacyLaunchpadImportMetadata& metadata);
/// Writes it into the application's folder.
std::expected<void, FileError> writeImportMetadata(const FileSystem& files,
                                                   const QString& applicationFolder,
                                                   const LegacyLaunchpadImportMetadata& metadata);

/// Texts for the user.
struct LaunchpadImportTexts {
    static QString question();
    static QString explanation();
    static QString doneTitle();
    /// The report, one sentence per line.
    static QString report(const LegacyLaunchpadImportMetadata& metadata);
    static QString failureTitle();
};

namespace json {

template <>
struct Fields<LegacyLaunchpadImportMetadata> {
    using M = LegacyLaunchpadImportMetadata;
    static constexpr auto list = fields(
        required("sourceDatabasePath", &M::sourceDatabasePath),
        required<Iso8601>("importedAt", &M::importedAt), required("appCount", &M::appCount),
        required("folderCount", &M::folderCount), required("itemCount", &M::itemCount),
        required("unresolvedAppCount", &M::unresolvedAppCount),
        required("schemaUserVersion", &M::schemaUserVersion), optional("backupPath", &M::backupPath));
};

} // namespace json
} // namespace tessellar
