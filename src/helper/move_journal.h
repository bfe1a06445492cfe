#pragma once

#include "helper/confined_files.h"
#include "privileged/records.h"

#include <map>

namespace tessellar {

/// The state of an item.
enum class MovePhase {
    leaving,   ///< being moved to the Trash
    trashed,   ///< in the Trash
    returning, ///< being restored
    deleting,  ///< about to be deleted permanently
    kept,      ///< not the approved item; kept in the staging folder
    closed,    ///< restored or deleted; needs no further attention
};

/// An item that the helper took, or was about to take when it was killed.
struct MoveRecord {
    std::uint64_t id = 0;
    MovePhase phase = MovePhase::leaving;
    std::uint64_t user = 0; ///< who requested it
    QString original;
    std::optional<QString> trashed; ///< its path in the Trash, intended or actual
    QString staged;                 ///< where it is verified on its way
    FileIdentity identity;
    std::uint64_t owner = 0;
    std::uint64_t mode = 0;

    ItemStatus taken() const {
        return {identity, static_cast<std::uint32_t>(owner), static_cast<std::uint32_t>(mode)};
    }
    /// Whether `item` is the recorded one; its volume's device number may have changed.
    bool isOf(const ItemStatus& item) const {
        return isSameOnItsVolume(item.identity, identity) && item.owner == owner && item.mode == mode;
    }
    bool operator==(const MoveRecord&) const = default;
};

/// The log of what the helper took, in a file that only the helper may write: one line per step, the
/// latest for an item wins. A step is on the disk before its item moves. Keeps every item that may
/// still be in a Trash, and unreadable lines verbatim.
///
/// One process and one thread at a time: the file stays locked while this object lives.
class MoveJournal {
public:
    /// `folder` must exist and belong to the helper. The error is an errno; nothing may be moved then.
    static std::expected<MoveJournal, int> open(const QByteArray& folder);

    /// All records that are not closed, oldest first.
    QList<MoveRecord> records() const;
    std::uint64_t freshId() { return ++_lastId; }
    /// Appends all steps or none; true once they are on the disk.
    bool append(const QList<MoveRecord>& steps);
    /// If the file is large enough, rewrites it without records that are closed or certainly gone from
    /// their Trash.
    void compact(const std::function<bool(const MoveRecord&)>& isGone);

private:
    MoveJournal(QByteArray folder, Descriptor file)
        : _folder(std::move(folder)), _file(std::move(file)) {}
    int read();
    void keep(const MoveRecord& step);

    QByteArray _folder;
    Descriptor _file;
    qint64 _size = 0;
    std::uint64_t _lastId = 0;
    std::map<std::uint64_t, MoveRecord> _records;
    QByteArray _unreadable;
};

namespace json {
template <>
struct RawValues<MovePhase> : EnumeratorNames<MovePhase::closed> {};
template <>
struct Fields<MoveRecord> {
    using T = MoveRecord;
    static constexpr auto list =
        fields(required<DecimalU64>("id", &T::id), required("phase", &T::phase),
               required<DecimalU64>("user", &T::user), required("original", &T::original),
               optional("trashed", &T::trashed), required("staged", &T::staged),
               required("identity", &T::identity), required<DecimalU64>("owner", &T::owner),
               required<DecimalU64>("mode", &T::mode));
};
} // namespace json
} // namespace tessellar
