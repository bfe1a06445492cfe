#pragma once

#include "platform/file_system.h"

#include <QByteArrayView>

#include <expected>
#include <memory>
#include <span>
#include <vector>

namespace tessellar {

/// Lists an open folder in large reads, with entry types and no stat per entry (except where the file
/// system stores no types). Reuse it: its buffer is expensive to allocate. Not thread-safe.
class DirectoryReader {
public:
    struct Entry {
        const char* name = nullptr; ///< null-terminated
        std::size_t size = 0;
        FileType type = FileType::other;

        QByteArrayView view() const { return {name, static_cast<qsizetype>(size)}; }
    };

    DirectoryReader();
    ~DirectoryReader();
    DirectoryReader(const DirectoryReader&) = delete;
    DirectoryReader& operator=(const DirectoryReader&) = delete;

    /// Starts listing a folder opened for reading, from its start. The caller keeps the descriptor and
    /// must keep it open while reading.
    void begin(int directory);
    /// The next batch, without "." and ".."; empty at the end. Valid until the next call. The error is
    /// an errno.
    std::expected<std::span<const Entry>, int> next();

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace tessellar
