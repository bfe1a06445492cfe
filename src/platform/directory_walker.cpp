#include "platform/directory_walker.h"

#include "platform/directory_reader.h"
#include "platform/rooted_path.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <list>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace tessellar {
namespace {

/// Folders kept open because some of their subfolders have yet to be entered.
constexpr std::size_t maximumHeld = 96;
constexpr qsizetype maximumErrors = 1000;
/// Bytes of a path opened in one call; systems take at least 1,024.
constexpr qsizetype longestStep = 1000;
constexpr int forListing = O_RDONLY | O_DIRECTORY | O_NONBLOCK;

struct OpenFolder {
    Descriptor descriptor;
    QString path;
};
using OpenFolderPointer = std::shared_ptr<const OpenFolder>;

/// A folder to enter, or one with unfinished subfolders. It has a name and a parent but no path: in a
/// deep tree the paths would take more memory than everything else.
struct Folder {
    Folder* parent = nullptr;
    QByteArray name;
    int depth = 0;
    std::size_t references = 1; ///< one until it is listed, and one for each subfolder
    OpenFolderPointer open;     ///< closed while too many are open
    std::list<Folder*>::iterator held;
};

class Walk {
public:
    Walk(const WalkOptions& options, std::stop_token stop,
         const std::function<WalkStep(const WalkEntry&)>& visit)
        : _options(options)
        , _stop(std::move(stop))
        , _visit(visit)
        , _threads(std::clamp(options.threads, 1u, 64u)) {}
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ~Walk() {
        for (Folder* folder : _pending)
            release(folder);
    }

    WalkResult run(Descriptor descriptor, const QString& path) {
        _start = std::make_shared<const OpenFolder>(std::move(descriptor), path);
        _pending.push_back(new Folder{.open = _start, .held = _held.end()});
        {
            std::vector<std::jthread> others;
            try {
                for (unsigned i = 1; i < _threads; ++i)
                    others.emplace_back([this] { work(); });
            } catch (const std::system_error&) {
                // No more threads can be started: the existing ones do all the work.
            }
            work();
        }
        _result.complete = !_incomplete.load();
        return _result;
    }

private:
    /// One thread's buffers, reused from folder to folder.
    struct Listing {
        DirectoryReader reader;
        std::vector<Folder*> subfolders;
        std::vector<OpenFolderPointer> dropped; ///< to be closed after the lock is released
        std::uint64_t entries = 0;
    };

    void work() {
        Listing listing;
        std::unique_lock lock(_mutex);
        while (true) {
            _changed.wait(lock, [this] { return !_pending.empty() || _busy == 0 || _over.load(); });
            if (_pending.empty() || _over.load())
                break;
            Folder* folder = _pending.back();
            _pending.pop_back();
            ++_busy;
            OpenFolderPointer above = folder->parent ? folder->parent->open : nullptr;
            lock.unlock();

            listing.dropped.clear();
            OpenFolderPointer open = openFolder(*folder, std::move(above));
            if (open)
                list(*folder, *open, listing);
            if (listing.subfolders.empty())
                open.reset(); // closes it, outside the lock

            lock.lock();
            --_busy;
            if (!listing.subfolders.empty()) {
                folder->references += listing.subfolders.size();
                _pending.insert(_pending.end(), listing.subfolders.begin(), listing.subfolders.end());
                hold(*folder, std::move(open), listing.dropped);
            }
            listing.subfolders.clear();
            release(folder, &listing.dropped);
            if (_threads > 1 && (_pending.size() > 1 || _busy == 0 || _over.load()))
                _changed.notify_all();
        }
        _result.entries += listing.entries;
        _changed.notify_all();
    }

    bool over() {
        if (_stop.stop_requested()) {
            _incomplete.store(true, std::memory_order_relaxed);
            _over.store(true, std::memory_order_relaxed);
        }
        return _over.load(std::memory_order_relaxed);
    }

    void list(Folder& folder, const OpenFolder& open, Listing& listing) {
        listing.reader.begin(open.descriptor.get());
        while (!over()) {
            const auto entries = listing.reader.next();
            if (!entries)
                report(entries.error(), open.path);
            if (!entries || entries->empty())
                return;
            const std::uint64_t before = _taken.fetch_add(entries->size(), std::memory_order_relaxed);
            const std::uint64_t left =
                _options.maximumEntries - std::min(before, _options.maximumEntries);
            for (const DirectoryReader::Entry& entry :
                 entries->first(std::min<std::uint64_t>(left, entries->size()))) {
                if (over())
                    return;
                ++listing.entries;
                const WalkEntry visited{open.path, entry.view(), entry.type, folder.depth + 1,
                                        open.descriptor.get()};
                if (_visit(visited) == WalkStep::descend && entry.type == FileType::directory)
                    enter(folder, entry, listing);
            }
            if (left < entries->size()) {
                _incomplete.store(true);
                _over.store(true);
            }
        }
    }

    void enter(Folder& folder, const DirectoryReader::Entry& entry, Listing& listing) {
        if (folder.depth + 1 >= _options.maximumDepth) {
            _incomplete.store(true, std::memory_order_relaxed);
            return;
        }
        listing.subfolders.push_back(new Folder{.parent = &folder,
                                                .name = entry.view().toByteArray(),
                                                .depth = folder.depth + 1,
                                                .held = _held.end()});
    }

    /// Opens a folder to be listed; null if it cannot be opened or is to be skipped.
    OpenFolderPointer openFolder(Folder& folder, OpenFolderPointer above) {
        if (!folder.parent)
            return folder.open;
        if (!above)
            above = reopen(*folder.parent);
        if (!above)
            return nullptr;
        auto opened = openIn(*above, folder.name);
        QString path = FileSystem::joined(above->path, FileSystem::fromHostBytes(folder.name));
        if (!opened) {
            report(opened.error(), path);
            return nullptr;
        }
        return std::make_shared<const OpenFolder>(*std::move(opened), std::move(path));
    }

    std::expected<Descriptor, int> openIn(const OpenFolder& above, const QByteArray& names) {
        auto opened = openBelow(above.descriptor.get(), names, forListing, _options.crossMounts);
        if (!opened && (opened.error() == EMFILE || opened.error() == ENFILE)) {
            letGoOfAll();
            opened = openBelow(above.descriptor.get(), names, forListing, _options.crossMounts);
        }
        return opened;
    }

    /// Reopens a folder that had to be closed, from its nearest open ancestor. Its nearest ancestors
    /// are kept open, because they will be needed soon, and so are some of the others, evenly spaced:
    /// otherwise every few levels of a deep tree would repeat the whole descent.
    OpenFolderPointer reopen(Folder& folder) {
        std::vector<Folder*> way;
        std::unique_lock lock(_mutex);
        Folder* from = &folder;
        for (; from->parent && !from->open; from = from->parent)
            way.push_back(from);
        OpenFolderPointer open = from->parent ? from->open : _start;
        lock.unlock();

        const std::size_t kept = std::max<std::size_t>(maximumHeld / (2 * _threads), 2);
        const std::size_t distance = way.size() / kept + 1;
        std::vector<OpenFolderPointer> dropped;
        QByteArray names;
        for (std::size_t left = way.size(); left > 0; --left) {
            if (over())
                return nullptr;
            Folder& next = *way[left - 1];
            names += (names.isEmpty() ? "" : "/") + next.name;
            const bool keep = left <= kept || left % distance == 0;
            if (!keep && names.size() + way[left - 2]->name.size() < longestStep)
                continue;
            QString path = FileSystem::joined(open->path, FileSystem::fromHostBytes(names));
            auto opened = openIn(*open, names);
            if (!opened) {
                report(opened.error(), path);
                return nullptr;
            }
            open = std::make_shared<const OpenFolder>(*std::move(opened), std::move(path));
            names.clear();
            if (keep) {
                dropped.clear();
                const std::scoped_lock keeping(_mutex);
                hold(next, open, dropped);
            }
        }
        return open;
    }

    void letGoOfAll() {
        std::vector<OpenFolderPointer> dropped;
        const std::scoped_lock lock(_mutex);
        while (!_held.empty())
            letGo(*_held.front(), dropped);
    }

    // The next three require the lock.

    void hold(Folder& folder, OpenFolderPointer open, std::vector<OpenFolderPointer>& dropped) {
        if (!folder.parent || folder.open)
            return;
        folder.open = std::move(open);
        folder.held = _held.insert(_held.end(), &folder);
        while (_held.size() > maximumHeld)
            letGo(*_held.front(), dropped);
    }

    void letGo(Folder& folder, std::vector<OpenFolderPointer>& dropped) {
        if (folder.held == _held.end())
            return;
        _held.erase(folder.held);
        folder.held = _held.end();
        dropped.push_back(std::move(folder.open));
        folder.open = nullptr;
    }

    /// Iterative: a tree may be deeper than the stack.
    void release(Folder* folder, std::vector<OpenFolderPointer>* dropped = nullptr) {
        std::vector<OpenFolderPointer> unused;
        while (folder && --folder->references == 0) {
            Folder* parent = folder->parent;
            letGo(*folder, dropped ? *dropped : unused);
            delete folder;
            folder = parent;
        }
    }

    void report(int error, const QString& path) {
        // Removed or replaced since it was listed, or on another volume.
        if (error == ENOENT || error == ENOTDIR || error == ELOOP ||
            (error == EXDEV && !_options.crossMounts))
            return;
        const std::scoped_lock lock(_errorMutex);
        if (_result.unreadable.size() < maximumErrors)
            _result.unreadable.append(fileError(error, path));
    }

    const WalkOptions& _options;
    const std::stop_token _stop;
    const std::function<WalkStep(const WalkEntry&)>& _visit;
    const unsigned _threads;

    OpenFolderPointer _start;
    std::atomic<std::uint64_t> _taken = 0;
    std::atomic<bool> _over = false;
    std::atomic<bool> _incomplete = false;

    std::mutex _mutex;
    std::condition_variable _changed;
    std::vector<Folder*> _pending; ///< last in, first out: depth first keeps it short
    std::list<Folder*> _held;      ///< oldest first
    unsigned _busy = 0;

    std::mutex _errorMutex;
    WalkResult _result;
};

} // namespace

std::expected<WalkEntry::Space, int> WalkEntry::spaceAt(int folder, const char* name) {
    struct stat status {};
    if (::fstatat(folder < 0 ? AT_FDCWD : folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::unexpected(errno);
    return Space{.allocated = static_cast<std::uint64_t>(status.st_blocks) * 512,
                 .links = static_cast<std::uint64_t>(status.st_nlink),
                 .device = static_cast<std::uint64_t>(status.st_dev),
                 .inode = static_cast<std::uint64_t>(status.st_ino)};
}

WalkResult walkDirectory(const FileSystem& files, const QString& path, const WalkOptions& options,
                         std::stop_token stop, const std::function<WalkStep(const WalkEntry&)>& visit) {
    auto descriptor = files.openFolder(path);
    if (!descriptor)
        return {.unreadable = {descriptor.error()}};
    QString start = path;
    while (start.size() > 1 && start.endsWith(u'/'))
        start.chop(1);
    return Walk(options, std::move(stop), visit).run(*std::move(descriptor), start);
}

} // namespace tessellar
