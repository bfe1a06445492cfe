#pragma once

#include <QDir>
#include <QTemporaryDir>

#ifdef __linux__
#include <sys/mount.h>
#endif
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tessellar::test {

inline void writeFile(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline std::ptrdiff_t entryCount(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

/// A temporary folder in memory where there is such a place: for tests of many files, which would
/// wait for a disk.
class MemoryFolder {
public:
    MemoryFolder() { _folder.setAutoRemove(false); }
    /// Qt's own removal leaves names that are not UTF-8.
    ~MemoryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path(), ignored);
    }
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;

    std::filesystem::path path() const { return _folder.path().toStdString(); }

private:
    QTemporaryDir _folder{::access("/dev/shm", W_OK) == 0
                              ? QStringLiteral("/dev/shm/tessellar-XXXXXX")
                              : QDir::temp().filePath(QStringLiteral("tessellar-XXXXXX"))};
};

/// A small disk of its own, where the process may mount one: never on a Mac.
class SmallDisk {
public:
    SmallDisk(std::filesystem::path folder, const char* options)
        : _folder(std::move(folder)), _mounted(mount(0, options)) {}
    ~SmallDisk() {
#ifdef __linux__
        if (_mounted)
            ::umount2(_folder.c_str(), MNT_DETACH);
#endif
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    explicit operator bool() const { return _mounted; }
    bool makeReadOnly() const {
#ifdef __linux__
        return mount(MS_REMOUNT | MS_RDONLY, nullptr);
#else
        return false;
#endif
    }

private:
    bool mount([[maybe_unused]] unsigned long flags, [[maybe_unused]] const char* options) const {
#ifdef __linux__
        return ::mount("none", _folder.c_str(), "tmpfs", flags, options) == 0;
#else
        return false;
#endif
    }

    std::filesystem::path _folder;
    bool _mounted;
};

/// While it lives, an administrator acts as a user without rights; any other user stays what he is.
class WithoutRights {
public:
    WithoutRights() : _changed(::geteuid() == 0 && ::seteuid(65534) == 0) {}
    ~WithoutRights() {
        if (_changed && ::seteuid(0) != 0)
            std::abort();
    }
    WithoutRights(const WithoutRights&) = delete;
    WithoutRights& operator=(const WithoutRights&) = delete;

    explicit operator bool() const { return ::geteuid() != 0; }

private:
    bool _changed;
};

} // namespace tessellar::test
