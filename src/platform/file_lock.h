#pragma once

#include "platform/file_system.h"

#include <expected>

namespace tessellar {

/// An advisory lock between processes of one user, held for this object's lifetime; the system releases
/// it however the process ends. The file is left behind, with the last holder's name in it.
class FileLock {
public:
    FileLock() = default;
    FileLock(FileLock&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    FileLock& operator=(FileLock&& other) noexcept {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }
    ~FileLock();

    /// nullopt if another process holds the lock. Creates the file; does not block. `name` is shown to
    /// others as the holder, truncated if the disk is full.
    static std::expected<std::optional<FileLock>, FileError>
    tryLock(const FileSystem& files, const QString& path, const QString& name = {});
    /// The name that the holder gave; empty if unknown.
    static QString holder(const FileSystem& files, const QString& path);

private:
    static constexpr qsizetype maximumName = 200; ///< bytes

    explicit FileLock(int descriptor) : _descriptor(descriptor) {}

    int _descriptor = -1;
};

} // namespace tessellar
