#include "discovery/launchpad_import.h"

#include "discovery/launchpad_snapshot.h"
#include "discovery/launchpad_tree.h"
#include "platform/texts.h"

#include <QHash>

#include <algorithm>

namespace tessellar {

using namespace Qt::Literals::StringLiterals;

namespace {

using Code = LaunchpadImportError::Code;
using Failure = std::unexpected<LaunchpadImportError>;

/// At most this many databases are examined; there has never been more than one.
constexpr qsizetype maximumFallbackDatabases = 20;

class Converter {
public:
    Converter(const LaunchpadRows& rows, const AppResolver& resolver, UuidSource& uuids)
        : _rows(rows), _resolver(resolver), _uuids(uuids) {}

    std::expected<NativeLaunchpadImportResult, LaunchpadImportError> convert() {
        const QList<ImportedNode> tree = launchpadTree(_rows);
        for (const NativeLaunchpadApp& app : _rows.apps)
            if (!_appRows.contains(app.item_id))
                _appRows.insert(app.item_id, &app);
        collectApps(tree);
        _resolved = _resolver.resolve(_apps);
        _result.pages = pagesOf(tree);
        auto& metadata = _result.metadata;
        metadata.appCount = static_cast<int>(_result.importedApps.size());
        metadata.itemCount = static_cast<int>(_rows.items.size());
        metadata.unresolvedAppCount = static_cast<int>(_result.skippedApps.size());
        metadata.schemaUserVersion = _rows.schemaUserVersion;
        _result.otherItemCount =
            static_cast<int>(std::ranges::count_if(_rows.items, [](const NativeLaunchpadItem& item) {
                return item.type < NativeLaunchpadItem::rootType ||
                       item.type > NativeLaunchpadItem::appType;
            }));
        if (_result.pages.isEmpty())
            return Failure(LaunchpadImportError{Code::importConversionFailed});
        return std::move(_result);
    }

private:
    /// Depth first, in the same order as `pagesOf`.
    void collectApps(const QList<ImportedNode>& nodes) {
        for (const ImportedNode& node : nodes) {
            if (node.kind == ImportedNode::Kind::app) {
                const auto row = _appRows.constFind(node.item);
                _apps.append(row == _appRows.cend() ? NativeLaunchpadApp{.item_id = node.item} : **row);
            }
            collectApps(node.children);
        }
    }

    Pages pagesOf(const QList<ImportedNode>& nodes) {
        Pages pages;
        for (const ImportedNode& node : nodes)
            if (Page page = tilesOf(node.children); !page.isEmpty())
                pages.append(std::move(page));
        return pages;
    }

    Page tilesOf(const QList<ImportedNode>& nodes) {
        Page page;
        for (const ImportedNode& node : nodes) {
            if (node.kind == ImportedNode::Kind::app) {
                addApp(page);
            } else if (Pages inner = pagesOf(node.children); !inner.isEmpty()) {
                page.append(
                    FolderEntry{.id = _uuids.next(), .name = node.title, .pages = std::move(inner)});
                ++_result.metadata.folderCount;
            }
        }
        return page;
    }

    void addApp(Page& page) {
        const qsizetype index = _next++;
        const NativeLaunchpadApp& app = _apps.at(index);
        if (const auto& entry = _resolved.at(index)) {
            page.append(*entry);
            _result.importedApps.append({app, *entry});
        } else if (_resolver.knows(app)) {
            ++_result.repeatedAppCount;
        } else {
            const QString name = app.title.trimmed();
            _result.skippedApps += !name.isEmpty()           ? name
                                   : !app.bundleid.isEmpty() ? app.bundleid
                                                             : Texts::tr("Item %1").arg(app.item_id);
        }
    }

    const LaunchpadRows& _rows;
    const AppResolver& _resolver;
    UuidSource& _uuids;
    QHash<std::int64_t, const NativeLaunchpadApp*> _appRows;
    QList<NativeLaunchpadApp> _apps;
    QList<std::optional<AppEntry>> _resolved;
    qsizetype _next = 0;
    NativeLaunchpadImportResult _result;
};

} // namespace

LaunchpadImportContext LaunchpadImportContext::of(const Machine& machine, QList<AppEntry> installedApps,
                                                  const FileSystem& files) {
    const auto temporary = machine.environment.find("TMPDIR");
    return {.files = files,
            .commands = machine.commands,
            .environment = machine.environment,
            .library = machine.places.library(),
            .locale = machine.locale,
            .uuids = machine.uuids,
            .now = machine.clock.now(),
            .temporaryFolder = temporary != machine.environment.end() && !temporary->second.isEmpty()
                                   ? QString::fromUtf8(temporary->second)
                                   : u"/tmp"_s,
            .installedApps = std::move(installedApps)};
}

std::expected<NativeLaunchpadImportResult, LaunchpadImportError>
NativeLaunchpadImporter::run(const std::optional<QString>& databasePath, std::stop_token stop) const {
    QStringList candidates;
    if (databasePath) {
        candidates += FileSystem::standardized(*databasePath);
    } else {
        auto located = locate(stop);
        if (!located)
            return Failure(located.error());
        candidates = *std::move(located);
    }
    std::optional<LaunchpadImportError> firstError;
    for (const QString& path : std::as_const(candidates)) {
        const auto rows = read(path, stop);
        if (!rows) {
            if (!firstError)
                firstError = rows.error();
            // Try the next database: it may have the right schema.
            if (rows.error().code == Code::unsupportedSchema ||
                rows.error().code == Code::unableToOpenDatabase)
                continue;
            return Failure(rows.error());
        }
        auto result = convertLaunchpadRows(*rows, AppResolver(_context.installedApps, _context.locale),
                                           _context.uuids);
        if (result) {
            result->metadata.sourceDatabasePath = path;
            result->metadata.importedAt = _context.now;
        }
        return result;
    }
    return Failure(firstError.value_or(LaunchpadImportError{Code::databaseNotFound}));
}

std::expected<QStringList, LaunchpadImportError>
NativeLaunchpadImporter::locate(std::stop_token stop) const {
    const CommandResult answer =
        _context.commands.run({.executable = _context.files.hostPath(u"/usr/bin/getconf"_s),
                               .arguments = {"DARWIN_USER_DIR"},
                               .environment = _context.environment,
                               .timeout = std::chrono::seconds(5),
                               .maximumOutput = 64u << 10},
                              stop);
    if (stop.stop_requested())
        return Failure(LaunchpadImportError{Code::cancelled});
    const QString folder = FileSystem::fromHostBytes(answer.standardOutput.trimmed());
    if (!answer.succeeded() || !folder.startsWith(u'/'))
        return Failure({Code::cannotResolveDarwinUserDirectory,
                        QString::fromUtf8(answer.standardError).trimmed()});
    const QString primary = FileSystem::joined(folder, u"com.apple.dock.launchpad/db/db"_s);
    const auto status = _context.files.linkStatus(primary);
    if (status || (status.error().code != FileError::Code::notFound &&
                   status.error().code != FileError::Code::notADirectory))
        return QStringList{primary};
    QStringList others = fallbackDatabases();
    if (others.isEmpty())
        return Failure(LaunchpadImportError{Code::databaseNotFound});
    return others;
}

QStringList NativeLaunchpadImporter::fallbackDatabases() const {
    const QString folder = FileSystem::joined(_context.library, u"Application Support/Dock"_s);
    const auto entries = _context.files.entries(folder);
    if (!entries)
        return {};
    QList<std::pair<Instant, QString>> found;
    for (const DirectoryEntry& entry : *entries) {
        const QString path = FileSystem::joined(folder, FileSystem::fromHostBytes(entry.name));
        if (FileSystem::extension(path).compare(u"db"_s, Qt::CaseInsensitive) != 0)
            continue;
        const auto status = _context.files.linkStatus(path);
        if (!status || status->type != FileType::regular)
            continue;
        // The latest changes may only be in the write-ahead log.
        const auto log = _context.files.linkStatus(path + u"-wal"_s);
        found.append({log ? std::max(log->modified, status->modified) : status->modified, path});
    }
    std::ranges::stable_sort(found, std::ranges::greater(), &std::pair<Instant, QString>::first);
    QStringList paths;
    for (const auto& [date, path] : std::as_const(found))
        if (paths.size() < maximumFallbackDatabases)
            paths += path;
    return paths;
}

std::expected<LaunchpadRows, LaunchpadImportError>
NativeLaunchpadImporter::read(const QString& path, std::stop_token stop) const {
    const auto snapshot = LaunchpadSnapshot::take(_context.files, path, _context.temporaryFolder, stop);
    if (!snapshot)
        return Failure(snapshot.error());
    return readLaunchpadRows(snapshot->hostPath(), stop, _context.limits);
}

std::expected<NativeLaunchpadImportResult, LaunchpadImportError>
convertLaunchpadRows(const LaunchpadRows& rows, const AppResolver& resolver, UuidSource& uuids) {
    return Converter(rows, resolver, uuids).convert();
}

QByteArray encodedImportMetadata(const LegacyLaunchpadImportMetadata& metadata) {
    return json::write(json::encode(metadata));
}

std::expected<void, FileError> writeImportMetadata(const FileSystem& files,
                                                   const QString& applicationFolder,
                                                   const LegacyLaunchpadImportMetadata& metadata) {
    if (const auto made = files.createDirectories(applicationFolder); !made)
        return made;
    return files.writeAtomically(
        FileSystem::joined(applicationFolder, LegacyLaunchpadImportMetadata::fileName),
        encodedImportMetadata(metadata));
}

QString LaunchpadImportTexts::question() { return Texts::tr("Import old Launchpad configuration?"); }

QString LaunchpadImportTexts::explanation() {
    return Texts::tr("Tessellar will replace the current arrangement with the legacy Launchpad layout "
                     "and save a backup first. The system Launchpad database is opened read-only.");
}

QString LaunchpadImportTexts::doneTitle() { return Texts::tr("Imported old Launchpad configuration"); }

QString LaunchpadImportTexts::report(const LegacyLaunchpadImportMetadata& metadata) {
    QStringList lines{Texts::tr("Found %1 apps, %2 folders, and %3 layout items.")
                          .arg(metadata.appCount)
                          .arg(metadata.folderCount)
                          .arg(metadata.itemCount)};
    if (metadata.unresolvedAppCount > 0)
        lines += Texts::tr("%n apps were skipped because they could not be resolved to installed apps.",
                           nullptr, static_cast<int>(metadata.unresolvedAppCount));
    if (metadata.backupPath)
        lines += Texts::tr("A backup of the previous Tessellar layout was saved.");
    return lines.join(u'\n');
}

QString LaunchpadImportTexts::failureTitle() {
    return Texts::tr("Could not import old Launchpad configuration");
}

} // namespace tessellar
