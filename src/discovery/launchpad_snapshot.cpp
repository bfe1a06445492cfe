#include "discovery/launchpad_snapshot.h"

#include "platform/descriptor.h"
#include "platform/texts.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace tessellar {

using namespace Qt::Literals::StringLiterals;

namespace {

using Code = LaunchpadImportError::Code;
using Failure = std::unexpected<LaunchpadImportError>;

constexpr std::size_t databaseHeaderSize = 100;
constexpr std::size_t logHeaderSize = 32;
constexpr std::size_t readVersionOffset = 19; ///< 2 if the file uses a write-ahead log
constexpr auto retryDelay = std::chrono::milliseconds(5);

Failure cannotOpen(const QString& detail) { return Failure({Code::unableToOpenDatabase, detail}); }

/// Opens a regular file, without following links; an invalid descriptor if there is none.
std::expected<Descriptor, LaunchpadImportError> openRegular(const FileSystem& files,
                                                            const QString& path) {
    const auto status = files.linkStatus(path);
    if (!status && status.error().code == FileError::Code::notFound)
        return Descriptor();
    if (!status)
        return cannotOpen(message(status.error()));
    if (status->type != FileType::regular)
        return cannotOpen(message(FileError{FileError::Code::notARegularFile, path}));
    if (status->size > LaunchpadSnapshot::maximumBytes)
        return cannotOpen(message(FileError{FileError::Code::tooLarge, path}));
    auto opened = files.open(path);
    if (!opened && opened.error().code == FileError::Code::notFound)
        return Descriptor();
    if (!opened)
        return cannotOpen(message(opened.error()));
    return std::move(*opened);
}

QByteArray beginning(const Descriptor& file, std::size_t size) {
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    if (!file)
        return {};
    const auto got = retrying([&] { return ::pread(file.get(), bytes.data(), size, 0); });
    bytes.truncate(std::max<qsizetype>(got, 0));
    return bytes;
}

std::expected<void, LaunchpadImportError> copy(const Descriptor& from, const QString& to,
                                               const std::stop_token& stop) {
    const Descriptor target(
        ::open(to.toUtf8().constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    std::vector<char> buffer(1u << 20);
    std::uint64_t total = 0;
    while (target) {
        if (stop.stop_requested())
            return Failure(LaunchpadImportError{Code::cancelled});
        const auto got = retrying([&] {
            return ::pread(from.get(), buffer.data(), buffer.size(), static_cast<off_t>(total));
        });
        if (got == 0)
            return {};
        if (got < 0)
            break;
        total += static_cast<std::uint64_t>(got);
        if (total > LaunchpadSnapshot::maximumBytes)
            return cannotOpen(message(FileError{FileError::Code::tooLarge, to}));
        for (ssize_t done = 0; done < got;) {
            const auto wrote = retrying([&] {
                return ::write(target.get(), buffer.data() + done,
                               static_cast<std::size_t>(got - done));
            });
            if (wrote <= 0)
                return cannotOpen(message(fileError(errno, to)));
            done += wrote;
        }
    }
    return cannotOpen(message(fileError(errno, to)));
}

/// True while a transaction with a rollback journal is in progress.
bool hasRollbackJournal(const FileSystem& files, const QString& database) {
    const QString path = database + u"-journal"_s;
    const auto status = files.linkStatus(path);
    if (!status || status->type != FileType::regular || status->size == 0)
        return false;
    const auto file = files.open(path);
    const QByteArray first = file ? beginning(*file, 1) : QByteArray();
    return !first.isEmpty() && first.front() != '\0';
}

/// What must be the same before and after copying.
struct Moment {
    std::optional<FileStatus> status; ///< unless a log is in use
    std::uint64_t inode = 0;
    QByteArray header;    ///< likewise; contains the change counter
    QByteArray logHeader; ///< empty unless a log is in use
    bool isBeingWritten = false;

    bool operator==(const Moment&) const = default;
};

Moment momentOf(const FileSystem& files, const QString& path, const Descriptor& database,
                const Descriptor& log) {
    Moment moment;
    const auto status = files.linkStatus(path);
    moment.inode = status ? status->inode : 0;
    moment.header = beginning(database, databaseHeaderSize);
    if (moment.header.size() > qsizetype(readVersionOffset) && moment.header[readVersionOffset] == 2)
        moment.logHeader = beginning(log, logHeaderSize);
    if (moment.logHeader.isEmpty()) {
        if (status)
            moment.status = *status;
        moment.isBeingWritten = hasRollbackJournal(files, path);
    } else {
        moment.header.clear();
    }
    return moment;
}

} // namespace

QString LaunchpadSnapshot::hostPath() const { return _folder->filePath(u"db"_s); }

std::expected<LaunchpadSnapshot, LaunchpadImportError>
LaunchpadSnapshot::take(const FileSystem& files, const QString& path, const QString& temporaryFolder,
                        std::stop_token stop) {
    LaunchpadSnapshot snapshot;
    snapshot._folder =
        std::make_unique<QTemporaryDir>(temporaryFolder + u"/tessellar-launchpad-XXXXXX"_s);
    if (!snapshot._folder->isValid())
        return cannotOpen(snapshot._folder->errorString());
    const QString copyPath = snapshot.hostPath();
    const QString logPath = path + u"-wal"_s;
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        if (attempt > 0)
            std::this_thread::sleep_for(retryDelay);
        if (stop.stop_requested())
            return Failure(LaunchpadImportError{Code::cancelled});
        const auto database = openRegular(files, path);
        if (!database)
            return Failure(database.error());
        if (!*database)
            return cannotOpen(message(FileError{FileError::Code::notFound, path}));
        const auto log = openRegular(files, logPath);
        if (!log)
            return Failure(log.error());
        const Moment before = momentOf(files, path, *database, *log);
        if (const auto copied = copy(*database, copyPath, stop); !copied)
            return Failure(copied.error());
        QFile::remove(copyPath + u"-wal"_s);
        if (!before.logHeader.isEmpty())
            if (const auto copied = copy(*log, copyPath + u"-wal"_s, stop); !copied)
                return Failure(copied.error());
        // Opened again by name: either file may have been replaced.
        const auto databaseAfter = openRegular(files, path);
        const auto logAfter = openRegular(files, logPath);
        if (databaseAfter && logAfter && !before.isBeingWritten &&
            momentOf(files, path, *databaseAfter, *logAfter) == before)
            return snapshot;
    }
    return cannotOpen(Texts::tr("The database kept changing while it was copied."));
}

} // namespace tessellar
