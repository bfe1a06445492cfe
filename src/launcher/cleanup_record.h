#pragma once

#include "cleanup/app_cleanup_remover.h"
#include "model/items.h"
#include "model/launcher_window_mode.h"
#include "platform/machine.h"
#include "platform/stored_file.h"

namespace tessellar {

/// A tile removed with its application, and its former place.
struct RemovedTile {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen;
    AppEntry entry;
    std::optional<QUuid> folder; ///< the innermost folder
    qint64 page = 0;             ///< of that folder, or of the arrangement
    qint64 index = 0;
    bool isHidden = false;

    bool operator==(const RemovedTile&) const = default;
};

/// The record of one removal, with everything needed to undo it.
struct CleanupRecord {
    QUuid id;
    QString name; ///< of the application
    QString path; ///< of its bundle
    std::optional<QString> bundleIdentifier;
    Instant removedAt;
    /// The moved items; during a removal, or if it was killed, all the items to be moved.
    QList<CleanupItemResult> items;
    QList<CleanupItemResult> restored; ///< those restored, for a redo
    QList<RemovedTile> tiles;

    CleanupApplication application() const;
    /// The bundle, wherever it is now; null if it was not moved.
    const CleanupItemResult* bundle() const;

    bool operator==(const CleanupRecord&) const = default;
};

/// Past removals, oldest first, in "removals.json" in the application's folder. A damaged file is set
/// aside ("removals.damaged-STAMP-TAG.json"); while the file is unreadable, cannot be set aside or is
/// of a later version, nothing is written. Beyond `maximumRecords` or `maximumBytes` records are
/// dropped, oldest first, starting with those that have nothing left in the Trash.
///
/// Stateless: every call reads the file. Not thread-safe.
class CleanupRecordStore {
public:
    static constexpr qint64 supportedVersion = 1;
    static constexpr qsizetype maximumRecords = 200;
    static constexpr std::uint64_t maximumBytes = 16u << 20;

    /// `tag` makes the name of a file that is set aside unique.
    CleanupRecordStore(const Machine& machine, const QUuid& tag);

    /// An error means that the file is unreadable, not that there is nothing to restore.
    std::expected<QList<CleanupRecord>, QString> read() const;
    /// Adds or replaces a record by identifier; removes it if none of its items was ever moved.
    std::expected<void, QString> put(const CleanupRecord& record) const;

private:
    StoredFile file() const;
    std::expected<QList<CleanupRecord>, QString> read(StoredFile& file) const;

    const Machine& _machine;
    QUuid _tag;
};

namespace json {

/// Field codec: a path as text or, if its bytes are not UTF-8, as an object with the bytes in Base64.
struct DiskPath {
    static Decoded<QString> decode(const QJsonValue& value);
    static QJsonValue encode(const QString& path);
};

template <>
struct Fields<RelatedFile> {
    using T = RelatedFile;
    static constexpr auto list = fields(
        required<DiskPath>("path", &T::path), required("location", &T::location),
        required("domain", &T::domain), required("match", &T::match),
        required("needsAdministrator", &T::needsAdministrator), required("identity", &T::identity));
};
template <>
struct Fields<CleanupItemResult> {
    using T = CleanupItemResult;
    static constexpr auto list =
        fields(required("item", &T::item), optional<DiskPath>("trashedPath", &T::trashedPath),
               required("isByHelper", &T::isByHelper));
};
template <>
struct Fields<RemovedTile> {
    using T = RemovedTile;
    static constexpr auto list = fields(
        required("mode", &T::mode), required("entry", &T::entry), optional("folder", &T::folder),
        required("page", &T::page), required("index", &T::index), defaulted("isHidden", &T::isHidden));
};
template <>
struct Fields<CleanupRecord> {
    using T = CleanupRecord;
    static constexpr auto list =
        fields(required("id", &T::id), required("name", &T::name), required<DiskPath>("path", &T::path),
               optional("bundleIdentifier", &T::bundleIdentifier), required("removedAt", &T::removedAt),
               required("items", &T::items), defaulted("restored", &T::restored),
               required("tiles", &T::tiles));
};

} // namespace json
} // namespace tessellar
