#include "platform/rooted_path.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cstdio>

#ifdef __linux__
#include <linux/openat2.h>
#include <sys/syscall.h>
#endif

namespace tessellar {
namespace {

#ifdef O_PATH
constexpr int passThrough = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#else
constexpr int passThrough = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
#endif

constexpr int maximumLinks = 40;
/// Folders opened for one path. Only a malicious path comes near it.
constexpr int maximumSteps = 20'000;

/// Resolves a path by opening its folders one by one.
class Resolution {
public:
    explicit Resolution(int root) : _root(root) {}

    std::expected<Place, int> run(const QByteArray& path, LastLink last) {
        push(path);
        while (!_pending.isEmpty()) {
            const QByteArray name = _pending.takeLast();
            if (name == ".")
                continue;
            if (name == "..") {
                if (const int error = leave())
                    return std::unexpected(error);
                continue;
            }
            const bool isLast = _pending.isEmpty();
            if (isLast && last == LastLink::keep)
                return place(name);
            const auto target = readLink(current(), name);
            if (target) {
                if (++_links > maximumLinks)
                    return std::unexpected(ELOOP);
                if (target->startsWith('/')) {
                    _trail.clear();
                    _directory = Descriptor();
                }
                push(*target);
                continue;
            }
            if (isLast && (target.error() == EINVAL || target.error() == ENOENT))
                return place(name);
            if (target.error() != EINVAL)
                return std::unexpected(target.error());
            if (const int error = enter(name))
                return std::unexpected(error);
            _trail.append(name);
        }
        return place(".");
    }

private:
    int current() const { return _directory ? _directory.get() : _root; }

    /// A trailing "." or slash means that what precedes it is a folder, and is followed.
    void push(const QByteArray& path) {
        if (path.endsWith('/'))
            _pending.append(".");
        const QList<QByteArray> names = path.split('/');
        for (auto name = names.crbegin(); name != names.crend(); ++name) {
            if (!name->isEmpty())
                _pending.append(*name);
        }
    }

    int enter(const QByteArray& name) {
        if (++_steps > maximumSteps)
            return ELOOP;
        Descriptor next(::openat(current(), name.constData(), passThrough));
        if (!next)
            return errno;
        _directory = std::move(next);
        return 0;
    }

    /// Goes back to the previous folder of the trail: the ".." of a folder that is being moved could be
    /// outside the root.
    int leave() {
        if (_trail.isEmpty())
            return 0;
        _trail.removeLast();
        _directory = Descriptor();
        for (const QByteArray& name : std::as_const(_trail)) {
            if (const int error = enter(name))
                return error;
        }
        return 0;
    }

    std::expected<Place, int> place(const QByteArray& name) {
        if (!_directory)
            _directory = Descriptor(::fcntl(_root, F_DUPFD_CLOEXEC, 0));
        if (!_directory)
            return std::unexpected(errno);
        return Place{std::move(_directory), name, std::move(_trail)};
    }

    int _root;
    Descriptor _directory; ///< invalid while at the root
    QList<QByteArray> _trail;
    QList<QByteArray> _pending; ///< last first
    int _links = 0;
    int _steps = 0;
};

/// Opens one name without following it, with POSIX calls only.
std::expected<Descriptor, int> openName(int directory, const QByteArray& name, int flags,
                                        bool crossMounts) {
    Descriptor opened(retrying(
        [&] { return ::openat(directory, name.constData(), flags | O_NOFOLLOW | O_CLOEXEC); }));
    if (!opened)
        return std::unexpected(errno);
    struct stat above {};
    struct stat here {};
    if (!crossMounts && (::fstat(directory, &above) != 0 || ::fstat(opened.get(), &here) != 0))
        return std::unexpected(errno);
    if (above.st_dev != here.st_dev)
        return std::unexpected(EXDEV);
    return opened;
}

#ifdef __linux__
/// False once the kernel turned out not to support the call, or a sandbox to forbid it.
std::atomic<bool> kernelResolves{true};

std::expected<Descriptor, int> openByKernel(int directory, const char* path, int flags,
                                            std::uint64_t resolve) {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags);
    how.resolve = resolve;
    Descriptor opened(static_cast<int>(
        retrying([&] { return ::syscall(SYS_openat2, directory, path, &how, sizeof how); })));
    if (!opened)
        return std::unexpected(errno);
    return opened;
}

/// True if the call is missing or forbidden, rather than failed for this path.
bool kernelRefused(int error) {
    if (error == ENOSYS)
        kernelResolves.store(false, std::memory_order_relaxed);
    // EAGAIN: a concurrent rename kept the kernel from verifying "..".
    return error == ENOSYS || error == EPERM || error == E2BIG || error == EAGAIN;
}
#endif

} // namespace

std::expected<QByteArray, int> readLink(int directory, const QByteArray& name) {
    std::array<char, 4096> target;
    const ssize_t size = ::readlinkat(directory, name.constData(), target.data(), target.size());
    if (size < 0)
        return std::unexpected(errno);
    if (size == static_cast<ssize_t>(target.size()))
        return std::unexpected(ENAMETOOLONG);
    return QByteArray(target.data(), size);
}

std::expected<Place, int> locate(int root, const QByteArray& path, LastLink last) {
    return Resolution(root).run(path, last);
}

std::expected<Descriptor, int> openInRootByComponent(int root, const QByteArray& path, int flags) {
    const auto place = locate(root, path, flags & O_NOFOLLOW ? LastLink::keep : LastLink::follow);
    if (!place)
        return std::unexpected(place.error());
    return openName(place->directory.get(), place->name, flags, true);
}

std::expected<Descriptor, int> openInRoot(int root, const QByteArray& path, int flags) {
#ifdef __linux__
    if (kernelResolves.load(std::memory_order_relaxed)) {
        auto opened = openByKernel(root, path.isEmpty() ? "." : path.constData(), flags | O_CLOEXEC,
                                   RESOLVE_IN_ROOT);
        if (opened || !kernelRefused(opened.error()))
            return opened;
    }
#endif
    return openInRootByComponent(root, path, flags);
}

std::expected<Descriptor, int> openBelow(int directory, const QByteArray& path, int flags,
                                         bool crossMounts) {
#ifdef __linux__
    if (kernelResolves.load(std::memory_order_relaxed)) {
        auto opened =
            openByKernel(directory, path.constData(), flags | O_NOFOLLOW | O_CLOEXEC,
                         RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | (crossMounts ? 0 : RESOLVE_NO_XDEV));
        if (opened || !kernelRefused(opened.error()))
            return opened;
    }
#endif
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return openName(directory, path, flags, crossMounts);
    Descriptor folder;
    for (const QByteArray& name : path.first(slash).split('/')) {
        auto next = openName(folder ? folder.get() : directory, name, passThrough, crossMounts);
        if (!next)
            return next;
        folder = *std::move(next);
    }
    return openName(folder.get(), path.sliced(slash + 1), flags, crossMounts);
}

int renameExclusively(int fromDirectory, const QByteArray& from, int toDirectory,
                      const QByteArray& to) {
#ifdef __linux__
    const int done =
        ::renameat2(fromDirectory, from.constData(), toDirectory, to.constData(), RENAME_NOREPLACE);
#else
    const int done =
        ::renameatx_np(fromDirectory, from.constData(), toDirectory, to.constData(), RENAME_EXCL);
#endif
    return done == 0 ? 0 : errno;
}

} // namespace tessellar
