#pragma once

#include "platform/file_system.h"

#include <QByteArrayView>

#include <expected>
#include <memory>
#include <span>
#include <vector>

namespace tessellar {

/// Lists an open folder in large pieces, with types and without a stat call for each entry; where the
/// file system keeps no types, they are asked for one by one. Reuse it: its buffer is expensive to
/// make. One thread at a time.
class DirectoryReader {
public:
    struct Entry {
        const char* name = nullptr; ///< ends in a zero byte
        std::size_t size = 0;
        FileType type = FileType::other;

        QByteArrayView view() const { return {name, static_cast<qsizetype>(size)}; }
    };

    DirectoryReader();
    ~DirectoryReader();
    DirectoryReader(const DirectoryReader&) = delete;
    DirectoryReader& operator=(const DirectoryReader&) = delete;

    /// Begins with a folder that was opened for reading, at its start. The descriptor stays the
    /// caller's and must outlive the reading.
    void begin(int directory);
    /// The next entries, without "." and ".."; none at the end. They hold until the next call. The
    /// error is errno's.
    std::expected<std::span<const Entry>, int> next();

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
