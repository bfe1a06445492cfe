#pragma once

#include "helper/confined_files.h"
#include "privileged/records.h"

#include <map>

namespace tessellar {

/// How far an item has come.
enum class MovePhase {
    leaving,   ///< on its way to the Trash
    trashed,   ///< it lies there
    returning, ///< on its way back to its place
    deleting,  ///< about to be deleted for good
    kept,      ///< what was taken was another item; it stays where it was looked at
    closed,    ///< back in its place, or gone: of no more concern
};

/// One item that the helper took, or was about to take when it was killed.
struct MoveRecord {
    std::uint64_t id = 0;
    MovePhase phase = MovePhase::leaving;
    std::uint64_t user = 0; ///< for whom
    QString original;
    std::optional<QString>
        trashed;    ///< where it was put, or was to be put; the user may rename it there
    QString staged; ///< where it is looked at on its way
    FileIdentity identity;
    std::uint64_t owner = 0;
    std::uint64_t mode = 0;

    TakenItem taken() const {
        return {identity, static_cast<std::uint32_t>(owner), static_cast<std::uint32_t>(mode)};
    }
    /// Whether this is the item; its volume may have another number by now.
    bool isOf(const TakenItem& item) const {
        return isSameOnItsVolume(item.identity, identity) && item.owner == owner && item.mode == mode;
    }
    bool operator==(const MoveRecord&) const = default;
};

/// What the helper took, in a file of its own that nobody else may write: a line for each step, the
/// last one on an item holds. A step is on the disk before its item moves. Nothing is forgotten that
/// may still lie in a Trash; a line that cannot be read is kept as it stands.
///
/// One process and one thread at a time: the file is locked while this lives.
class MoveJournal {
public:
    /// `folder` exists and is the helper's own. The error is errno's; then nothing may be moved.
    static std::expected<MoveJournal, int> open(const QByteArray& folder);

    /// All but the closed, oldest first.
    QList<MoveRecord> records() const;
    std::uint64_t freshId() { return ++_lastId; }
    /// All of them or none; true when they are on the disk.
    bool append(const QList<MoveRecord>& steps);
    /// Above a size that is worth it, writes the file anew without what is closed, or gone from its
    /// Trash for certain.
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
    static constexpr auto list = fields(
        required<Whole>("id", &T::id), required("phase", &T::phase), required<Whole>("user", &T::user),
        required("original", &T::original), optional("trashed", &T::trashed),
        required("staged", &T::staged), required("identity", &T::identity),
        required<Whole>("owner", &T::owner), required<Whole>("mode", &T::mode));
};
} // namespace json
} // namespace tessellar
