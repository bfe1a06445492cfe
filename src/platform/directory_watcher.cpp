#include "platform/directory_watcher.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <system_error>

namespace tessellar {

using namespace Qt::Literals::StringLiterals;

/// Shared by the main thread and the watching thread.
struct DirectoryWatcher::Shared {
    struct Request {
        QStringList directories;
        Instant since;
        std::function<void()> done;
    };

    DirectoryWatcher* watcher = nullptr; ///< main thread only; null once it is destroyed
    std::unique_ptr<DirectoryEvents> events;

    std::mutex mutex;
    std::optional<Request> request;
    bool pollNow = false;
    bool stop = false;
    QSet<QString> changed;
    bool changesPosted = false;
};

class DirectoryWatcher::Thread {
public:
    Thread(const FileSystem& files, Mailbox& mailbox, std::shared_ptr<Shared> shared)
        : _files(files), _mailbox(mailbox), _shared(std::move(shared)) {}

    void run() {
        while (true) {
            const auto events = _shared->events->wait();
            std::optional<Shared::Request> request;
            bool pollNow = false;
            {
                const std::lock_guard lock(_shared->mutex);
                if (_shared->stop)
                    return;
                request = std::exchange(_shared->request, std::nullopt);
                pollNow = std::exchange(_shared->pollNow, false);
            }
            for (const auto& event : events)
                take(event);
            if (request)
                _wanted = {request->directories.begin(), request->directories.end()};
            if (request || std::exchange(_isOutdated, false))
                bringUpToDate(request ? std::optional(request->since) : std::nullopt);
            if (pollNow)
                poll();
            post();
            if (request && request->done)
                _mailbox.post([done = std::move(request->done), shared = _shared] {
                    if (shared->watcher)
                        done();
                });
        }
    }

private:
    using Kind = DirectoryEvents::Event::Kind;

    struct Watch {
        int number = -1;
        /// Taken just before the watch was set: if a volume was mounted in between, the next comparison
        /// notices.
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
    };

    void take(const DirectoryEvents::Event& event) {
        if (event.kind == Kind::mounted) {
            dropMisled();
            _isOutdated = true;
            return;
        }
        if (event.kind == Kind::lost) {
            _changed = _wanted;
            _isOutdated = true;
            return;
        }
        const auto found = _paths.constFind(event.watch);
        if (found == _paths.cend())
            return;
        const QString path = *found;
        const bool isGone = event.kind == Kind::gone;
        if (isGone) {
            _watches.remove(path);
            _paths.erase(found);
            _isOutdated = true;
        }
        if (_wanted.contains(path))
            _changed.insert(path);
        // Of a folder on the way to a wanted one, only a single name matters.
        const auto awaited = _awaited.constFind(path);
        if (awaited != _awaited.cend() && (event.name.isEmpty() || awaited->contains(event.name)))
            _isOutdated = true;
    }

    /// Mounting a volume on a folder, or unmounting it, sends no event to a watch of that folder.
    void dropMisled() {
        _watches.removeIf([this](const std::pair<const QString&, Watch&>& entry) {
            const Watch& watch = entry.second;
            const auto status = _files.status(entry.first);
            if (status && status->device == watch.device && status->inode == watch.inode)
                return false;
            _shared->events->remove(watch.number);
            _paths.remove(watch.number);
            if (_wanted.contains(entry.first))
                _changed.insert(entry.first);
            return true;
        });
    }

    /// Watches the wanted folders that exist and, for the others, the nearest existing ancestor.
    void bringUpToDate(std::optional<Instant> since) {
        _awaited.clear();
        QSet<QString> needed;
        QHash<QString, FileStatus> polled;
        QSet<QString> missing;
        for (const QString& path : std::as_const(_wanted)) {
            const bool wasWatched = _watches.contains(path) || _polled.contains(path);
            if (watchOrPoll(path, needed, polled)) {
                if (!wasWatched && isNews(path, since))
                    _changed.insert(path);
                continue;
            }
            missing.insert(path);
            QString child = path;
            while (child != u"/"_s) {
                const QString parent = FileSystem::parent(child);
                if (watchOrPoll(parent, needed, polled)) {
                    _awaited[parent].insert(
                        FileSystem::toHostBytes(FileSystem::fileName(child)).value_or(QByteArray()));
                    break;
                }
                child = parent;
            }
            // It may have been created just before that watch was set.
            if (_files.isDirectory(path) && watchOrPoll(path, needed, polled))
                _changed.insert(path);
        }
        for (auto watch = _watches.begin(); watch != _watches.end();) {
            if (needed.contains(watch.key())) {
                ++watch;
                continue;
            }
            _shared->events->remove(watch->number);
            _paths.remove(watch->number);
            watch = _watches.erase(watch);
        }
        _missing = std::move(missing);
        _polled = std::move(polled);
        if (_polled.isEmpty() == _isPolling) {
            _isPolling = !_polled.isEmpty();
            _mailbox.post([polling = _isPolling, shared = _shared] {
                if (shared->watcher)
                    shared->watcher->setPolling(polling);
            });
        }
    }

    /// False if there is no such folder.
    bool watchOrPoll(const QString& path, QSet<QString>& needed, QHash<QString, FileStatus>& polled) {
        if (_watches.contains(path) || polled.contains(path)) {
            needed.insert(path);
            return true;
        }
        const auto resolved = _files.resolved(path);
        if (!resolved)
            return false;
        const auto before = _files.linkStatus(*resolved);
        const auto watch = _shared->events->add(_files.hostPath(*resolved));
        if (watch) {
            // Two paths to one folder share a watch; the later path is reported.
            if (const auto other = _paths.constFind(*watch); other != _paths.cend())
                _watches.remove(*other);
            _paths.insert(*watch, path);
            _watches.insert(path, {*watch, before ? before->device : 0, before ? before->inode : 0});
            needed.insert(path);
            return true;
        }
        if (watch.error() == ENOENT || watch.error() == ENOTDIR)
            return false;
        constexpr std::array limits{ENOSPC, EMFILE, ENFILE, ENOMEM};
        if (std::ranges::find(limits, watch.error()) == limits.end())
            return true; // exists, but must not be read
        const auto status = _files.linkStatus(path);
        if (!status || status->type != FileType::directory)
            return false;
        polled.insert(path, _polled.value(path, *status));
        return true;
    }

    bool isNews(const QString& path, std::optional<Instant> since) const {
        if (!since || _missing.contains(path))
            return true;
        const auto status = _files.linkStatus(path);
        // Some file systems round times to two seconds.
        return status &&
               std::max(status->modified, status->changed) >= *since - std::chrono::seconds(2);
    }

    void poll() {
        bool outdated = false;
        for (auto [path, before] : _polled.asKeyValueRange()) {
            const auto status = _files.linkStatus(path);
            if (status && *status == before)
                continue;
            outdated = outdated || !status || _awaited.contains(path);
            if (_wanted.contains(path))
                _changed.insert(path);
            if (status)
                before = *status;
        }
        if (outdated)
            bringUpToDate(std::nullopt);
    }

    void post() {
        if (_changed.isEmpty())
            return;
        const std::lock_guard lock(_shared->mutex);
        _shared->changed.unite(std::exchange(_changed, {}));
        if (std::exchange(_shared->changesPosted, true))
            return;
        _mailbox.post([shared = _shared] {
            QStringList changed;
            {
                const std::lock_guard guard(shared->mutex);
                changed = shared->changed.values();
                shared->changed.clear();
                shared->changesPosted = false;
            }
            changed.sort();
            if (shared->watcher)
                shared->watcher->_listener(changed);
        });
    }

    const FileSystem& _files;
    Mailbox& _mailbox;
    std::shared_ptr<Shared> _shared;

    QSet<QString> _wanted;
    QSet<QString> _missing;
    QHash<QString, Watch> _watches;
    QHash<int, QString> _paths;
    QHash<QString, FileStatus> _polled;
    QHash<QString, QSet<QByteArray>> _awaited; ///< by folder, the names of interest
    QSet<QString> _changed;
    bool _isOutdated = false;
    bool _isPolling = false;
};

DirectoryWatcher::DirectoryWatcher(const Machine& machine, Listener listener,
                                   std::unique_ptr<DirectoryEvents> events)
    : _machine(machine), _listener(std::move(listener)), _shared(std::make_shared<Shared>()) {
    _shared->watcher = this;
    _shared->events = std::move(events);
    begin();
}

void DirectoryWatcher::begin() {
    try {
        _thread = std::thread([&files = _machine.files, &mailbox = _machine.workers.mailbox(),
                               shared = _shared] { Thread(files, mailbox, shared).run(); });
    } catch (const std::system_error& error) {
        _machine.log.warning(u"Cannot start watching folders; will retry: %1"_s.arg(
            QString::fromLocal8Bit(error.what())));
        _poll = _machine.scheduler.after(pollInterval, [this] { begin(); });
    }
}

DirectoryWatcher::~DirectoryWatcher() {
    {
        const std::lock_guard lock(_shared->mutex);
        _shared->stop = true;
    }
    _shared->watcher = nullptr;
    _shared->events->wake();
    if (_thread.joinable())
        _thread.join();
}

void DirectoryWatcher::watch(const QStringList& directories, Instant since,
                             std::function<void()> done) {
    {
        const std::lock_guard lock(_shared->mutex);
        // A pending request is superseded, but what it would have reported is kept.
        if (_shared->request) {
            since = std::min(since, _shared->request->since);
            if (auto earlier = std::move(_shared->request->done))
                done = [earlier = std::move(earlier), done = std::move(done)] {
                    earlier();
                    if (done)
                        done();
                };
        }
        _shared->request = Shared::Request{directories, since, std::move(done)};
    }
    _shared->events->wake();
}

void DirectoryWatcher::setPolling(bool polling) {
    if (polling == _isPolling)
        return;
    _isPolling = polling;
    if (polling)
        _machine.log.warning(u"Out of folder watches; polling some folders every %1 seconds."_s.arg(
            pollInterval.count()));
    schedulePoll();
}

void DirectoryWatcher::schedulePoll() {
    _poll.cancel();
    if (!_isPolling)
        return;
    _poll = _machine.scheduler.after(pollInterval, [this] {
        {
            const std::lock_guard lock(_shared->mutex);
            _shared->pollNow = true;
        }
        _shared->events->wake();
        schedulePoll();
    });
}

} // namespace tessellar
