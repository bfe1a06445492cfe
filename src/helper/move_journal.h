#pragma once

#include "cleanup/privileged/records.h"
#include "helper/confined_files.h"

namespace tessellar {

/// One item that the helper took, or was about to take when it was killed.
struct MoveRecord {
    std::uint64_t user = 0; ///< for whom
    QString original;
    QString trashed;
    FileIdentity identity;
    std::uint64_t owner = 0;
    std::uint64_t mode = 0;

    TakenItem taken() const {
        return {identity, static_cast<std::uint32_t>(owner), static_cast<std::uint32_t>(mode)};
    }
    bool operator==(const MoveRecord&) const = default;
};

/// What the helper took, in a file of its own that nobody else may write. An entry is on the disk
/// before its item moves. One thread at a time.
class MoveJournal {
public:
    static constexpr qsizetype mostRecords = 2'000;

    /// `folder` exists and is the helper's own.
    explicit MoveJournal(QByteArray hostFolder) : _folder(std::move(hostFolder)) {}

    /// Nothing where the file cannot be read: then nothing is moved, and the file stays as it is.
    std::optional<QList<MoveRecord>> read() const;
    /// Forgets the oldest beyond the bound.
    bool write(QList<MoveRecord> records) const;

private:
    QByteArray _folder;
};

namespace json {
template <>
struct Fields<MoveRecord> {
    using T = MoveRecord;
    static constexpr auto list =
        fields(required<Whole>("user", &T::user), required("original", &T::original),
               required("trashed", &T::trashed), required("identity", &T::identity),
               required<Whole>("owner", &T::owner), required<Whole>("mode", &T::mode));
};
} // namespace json
} // namespace tessellar
