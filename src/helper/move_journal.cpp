#include "helper/move_journal.h"

#include "platform/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>

namespace tessellar {
namespace {

const QByteArray fileName = "moves.journal";
constexpr qint64 mostBytes = 64 << 20;
constexpr qint64 worthCompacting = 1 << 20;

QByteArray lineOf(const MoveRecord& record) {
    const QByteArray text = json::writeCompact(json::encode(record));
    return text.endsWith('\n') ? text : text + '\n';
}

int writeAll(int file, const QByteArray& bytes) {
    for (qsizetype done = 0; done < bytes.size();) {
        const auto written = retrying([&] {
            return ::write(file, bytes.constData() + done,
                           static_cast<std::size_t>(bytes.size() - done));
        });
        if (written <= 0)
            return written < 0 ? errno : EIO;
        done += written;
    }
    return 0;
}

} // namespace

std::expected<MoveJournal, int> MoveJournal::open(const QByteArray& folder) {
    const Descriptor around(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!around)
        return std::unexpected(errno);
    Descriptor file(retrying([&] {
        return ::openat(around.get(), fileName.constData(),
                        O_RDWR | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    }));
    if (!file)
        return std::unexpected(errno);
    struct stat status {};
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0 || ::fstat(file.get(), &status) != 0)
        return std::unexpected(errno);
    if (!S_ISREG(status.st_mode) || status.st_size > mostBytes)
        return std::unexpected(EFBIG);
    // The file itself must be on the disk before its first line is relied on.
    if (status.st_size == 0)
        if (const int error = flushToDisk(around.get()); error != 0 && error != EINVAL)
            return std::unexpected(error);
    MoveJournal journal(folder, std::move(file));
    if (const int error = journal.read())
        return std::unexpected(error);
    return journal;
}

int MoveJournal::read() {
    QByteArray bytes;
    QByteArray piece(256 << 10, Qt::Uninitialized);
    while (true) {
        const auto count = retrying([&] {
            return ::pread(_file.get(), piece.data(), static_cast<std::size_t>(piece.size()),
                           bytes.size());
        });
        if (count < 0)
            return errno;
        if (count == 0)
            break;
        bytes += piece.first(count);
    }
    // A truncated step was never acted on.
    _size = bytes.lastIndexOf('\n') + 1;
    if (_size != bytes.size() && ::ftruncate(_file.get(), _size) != 0)
        return errno;
    for (qsizetype at = 0; at < _size;) {
        const qsizetype end = bytes.indexOf('\n', at) + 1;
        const QByteArray line = bytes.sliced(at, end - at);
        if (const auto step = json::decodeDocument<MoveRecord>(line))
            keep(*step);
        else
            _unreadable += line;
        at = end;
    }
    return 0;
}

void MoveJournal::keep(const MoveRecord& step) {
    _lastId = std::max(_lastId, step.id);
    _records.insert_or_assign(step.id, step);
}

QList<MoveRecord> MoveJournal::records() const {
    QList<MoveRecord> open;
    for (const auto& [id, record] : _records)
        if (record.phase != MovePhase::closed)
            open.append(record);
    return open;
}

bool MoveJournal::append(const QList<MoveRecord>& steps) {
    QByteArray lines;
    for (const MoveRecord& step : steps)
        lines += lineOf(step);
    if (_size < 0 || _size + lines.size() > mostBytes)
        return false;
    if (writeAll(_file.get(), lines) != 0 || flushToDisk(_file.get()) != 0) {
        // A partial line must not run into the next one.
        if (::ftruncate(_file.get(), _size) != 0)
            _size = -1;
        return false;
    }
    _size += lines.size();
    for (const MoveRecord& step : steps)
        keep(step);
    return true;
}

void MoveJournal::compact(const std::function<bool(const MoveRecord&)>& isGone) {
    if (_size < worthCompacting)
        return;
    QByteArray lines = _unreadable;
    for (const auto& [id, record] : _records) {
        const bool isOver =
            record.phase == MovePhase::closed || (record.phase == MovePhase::trashed && isGone(record));
        if (!isOver) {
            lines += lineOf(record);
        } else if (id == _lastId) {
            // The highest number must not be reused: something else may be kept under it.
            MoveRecord last = record;
            last.phase = MovePhase::closed;
            lines += lineOf(last);
        }
    }
    if (lines.size() > _size / 2 || !replaceFile(_folder + '/' + fileName, lines))
        return;
    if (auto renewed = open(_folder))
        *this = *std::move(renewed);
    else
        _size = -1;
}

} // namespace tessellar
