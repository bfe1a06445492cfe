#pragma once

#include "platform/file_system.h"

#include <expected>

namespace tessellar {

/// An advisory lock between processes of one user. Held while this object lives; the system releases it
/// however the process ends. The file stays, with the name of whoever held it last.
class FileLock {
public:
    FileLock() = default;
    FileLock(FileLock&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    FileLock& operator=(FileLock&& other) noexcept {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }
    ~FileLock();

    /// The lock, or nothing when somebody else holds it. Creates the file; does not wait. `name` is
    /// what others are told of the holder, as far as the disk has room for it.
    static std::expected<std::optional<FileLock>, FileError>
    tryLock(const FileSystem& files, const QString& path, const QString& name = {});
    /// Who holds the lock by its own account; empty where that is not known.
    static QString holder(const FileSystem& files, const QString& path);

private:
    static constexpr qsizetype maximumName = 200; ///< bytes

    explicit FileLock(int descriptor) : _descriptor(descriptor) {}

    int _descriptor = -1;
};

} // namespace tessellar
