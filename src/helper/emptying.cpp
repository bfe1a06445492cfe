#include "helper/emptying.h"

#include "helper/confined_files.h"
#include "platform/directory_reader.h"
#include "platform/rooted_path.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <vector>

namespace tessellar {
namespace {

constexpr int forFolder = O_RDONLY | O_DIRECTORY | O_NONBLOCK;
constexpr std::size_t deepest = 200'000;

/// Deletes the contents of a folder with one descriptor, however deep it is: it goes back up through
/// "..", provided that this is the very folder that it came from.
class Emptying {
public:
    Emptying(int folder, std::stop_token stop)
        : _stop(std::move(stop)), _current(::openat(folder, ".", forFolder | O_CLOEXEC)) {}

    /// Returns 0 or an errno.
    int run() {
        if (!_current)
            return errno;
        while (true) {
            if (_stop.stop_requested())
                return ECANCELED;
            const auto subfolder = emptyOfFiles();
            if (!subfolder)
                return subfolder.error();
            const int error = subfolder->isEmpty() ? leave() : enter(*subfolder);
            if (error != 0 || _isDone)
                return error;
        }
    }

private:
    struct Left {
        FileIdentity folder;
        QByteArray child;
    };

    /// Deletes everything but folders; returns the name of the first folder, or an empty one.
    std::expected<QByteArray, int> emptyOfFiles() {
        if (::lseek(_current.get(), 0, SEEK_SET) < 0)
            return std::unexpected(errno);
        _reader.begin(_current.get());
        while (true) {
            const auto entries = _reader.next();
            if (!entries)
                return std::unexpected(entries.error());
            if (entries->empty())
                return QByteArray();
            for (const DirectoryReader::Entry& entry : *entries) {
                if (entry.type == FileType::directory)
                    return entry.view().toByteArray();
                if (::unlinkat(_current.get(), entry.name, 0) != 0 && errno != ENOENT)
                    return std::unexpected(errno);
            }
        }
    }

    int enter(const QByteArray& name) {
        auto next = openBelow(_current.get(), name, forFolder, false);
        struct stat status {};
        if (!next)
            return next.error();
        if (::fstat(_current.get(), &status) != 0)
            return errno;
        if (_left.size() >= deepest)
            return ELOOP;
        _left.push_back({itemStatus(status).identity, name});
        _current = *std::move(next);
        return 0;
    }

    int leave() {
        if (_left.empty()) {
            _isDone = true;
            return 0;
        }
        Descriptor above(::openat(_current.get(), "..", forFolder | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        if (!above || ::fstat(above.get(), &status) != 0)
            return errno;
        if (itemStatus(status).identity != _left.back().folder)
            return ELOOP;
        if (::unlinkat(above.get(), _left.back().child.constData(), AT_REMOVEDIR) != 0 &&
            errno != ENOENT)
            return errno;
        _left.pop_back();
        _current = std::move(above);
        return 0;
    }

    const std::stop_token _stop;
    Descriptor _current;
    DirectoryReader _reader;
    std::vector<Left> _left;
    bool _isDone = false;
};

} // namespace

int emptyFolder(int folder, std::stop_token stop) { return Emptying(folder, std::move(stop)).run(); }

} // namespace tessellar
