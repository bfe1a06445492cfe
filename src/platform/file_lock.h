#pragma once

#include "platform/file_system.h"

#include <expected>

namespace tessellar {

/// A lock that programs of one user agree on: held while this lives, given up by the system when the
/// process ends in any way. The file stays, empty.
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
