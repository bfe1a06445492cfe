#pragma once

#include "platform/file_system.h"

#include <expected>

namespace tessellar {

/// An advisory lock between processes of one user. Held while this object lives; the system releases it
/// however the process ends. The empty file stays.
class FileLock {
public:
    FileLock() = default;
    FileLock(FileLock&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    FileLock& operator=(FileLock&& other) noexcept {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }
    ~FileLock();

    /// The lock, or nothing when somebody else holds it. Creates the file; does not wait.
    static std::expected<std::optional<FileLock>, FileError> tryLock(const FileSystem& files,
                                                                     const QString& path);

private:
    explicit FileLock(int descriptor) : _descriptor(descriptor) {}

    int _descriptor = -1;
};

} // namespace tessellar
