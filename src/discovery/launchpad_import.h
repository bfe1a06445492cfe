#pragma once

#include "discovery/app_resolver.h"
#include "discovery/launchpad_import_error.h"
#include "discovery/launchpad_reader.h"
#include "platform/machine.h"

#include <QStringList>

#include <expected>
#include <stop_token>

namespace tessellar {

/// What is kept of an import, beside the layout.
struct LegacyLaunchpadImportMetadata {
    static inline const QString fileName = QStringLiteral("legacy-launchpad-import.json");

    QString sourceDatabasePath;
    Instant importedAt;
    int appCount = 0;    ///< applications that have a tile now
    int folderCount = 0; ///< folders that have one of them
    int itemCount = 0;   ///< rows of the old arrangement, of every kind
    int unresolvedAppCount = 0;
    int schemaUserVersion = 0;
    std::optional<QString> backupPath; ///< set by whoever makes the backup

    bool operator==(const LegacyLaunchpadImportMetadata&) const = default;
};

/// An application of the old arrangement and the installed one that it stands for.
struct ImportedAppTile {
    NativeLaunchpadApp app;
    AppEntry entry;

    bool operator==(const ImportedAppTile&) const = default;
};

/// The old arrangement with installed applications; to be applied through reconciliation, as a restore.
struct NativeLaunchpadImportResult {
    /// Pages and folder pages as they were; those without an installed application are left out. One
    /// may hold more than a page of the grid.
    Pages pages;
    QList<ImportedAppTile> importedApps; ///< in the order of their tiles
    LegacyLaunchpadImportMetadata metadata;
    /// The names of the applications that were skipped, in the order in which they stood.
    QStringList skippedApps;
    /// Second tiles of applications that had their place already: not skipped, for nothing is lost.
    int repeatedAppCount = 0;
    /// Rows that are not tiles here: downloads, widgets and what else the database may hold.
    int otherItemCount = 0;

    bool operator==(const NativeLaunchpadImportResult&) const = default;
};

/// All that an import depends on besides the database.
struct LaunchpadImportContext {
    const FileSystem& files;
    CommandRunner& commands;
    std::map<QByteArray, QByteArray> environment;
    QString library; ///< the user's
    Locale locale;
    UuidSource& uuids;
    Instant now;
    QString temporaryFolder;       ///< host path, for a private copy
    QList<AppEntry> installedApps; ///< of the last scan
    LaunchpadReadLimits limits = {};

    static LaunchpadImportContext of(const Machine& machine, QList<AppEntry> installedApps) {
        return of(machine, std::move(installedApps), machine.files);
    }
    /// For a database that lies elsewhere than on the machine.
    static LaunchpadImportContext of(const Machine& machine, QList<AppEntry> installedApps,
                                     const FileSystem& files);
};

/// Takes over the arrangement of the old Launchpad. Reads; what comes of it is a value, for the main
/// thread to apply. Blocks; runs on whatever thread calls it.
class NativeLaunchpadImporter {
public:
    explicit NativeLaunchpadImporter(LaunchpadImportContext context) : _context(std::move(context)) {}

    /// From the database at `databasePath`, or from the one that the system has.
    std::expected<NativeLaunchpadImportResult, LaunchpadImportError>
    run(const std::optional<QString>& databasePath = {}, std::stop_token stop = {}) const;

    /// The databases that the system may have, to be tried in this order; at least one.
    std::expected<QStringList, LaunchpadImportError> locate(std::stop_token stop = {}) const;

private:
    std::expected<LaunchpadRows, LaunchpadImportError> read(const QString& path,
                                                            std::stop_token stop) const;
    QStringList fallbackDatabases() const;

    LaunchpadImportContext _context;
};

/// The arrangement that rows give with these applications; `importConversionFailed` without any tile.
std::expected<NativeLaunchpadImportResult, LaunchpadImportError>
convertLaunchpadRows(const LaunchpadRows& rows, const AppResolver& resolver, UuidSource& uuids);

/// Writes the metadata's file into the application's folder.
std::expected<void, FileError> writeImportMetadata(const FileSystem& files,
                                                   const QString& applicationFolder,
                                                   const LegacyLaunchpadImportMetadata& metadata);

/// What the user is asked, and told.
struct LaunchpadImportTexts {
    static QString question();
    static QString explanation();
    static QString doneTitle();
    /// The sentences of the report, one a line.
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
