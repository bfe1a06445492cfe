#pragma once

#include "cleanup/app_cleanup_remover.h"
#include "model/items.h"
#include "model/launcher_window_mode.h"
#include "platform/machine.h"
#include "platform/stored_file.h"

namespace tessellar {

/// A tile that left with its application, and where it stood.
struct RemovedTile {
    LauncherWindowMode mode = LauncherWindowMode::fullScreen;
    AppEntry entry;
    std::optional<QUuid> folder; ///< the innermost that it lay in
    qint64 page = 0;             ///< of that folder, or of the arrangement
    qint64 index = 0;
    bool isHidden = false;

    bool operator==(const RemovedTile&) const = default;
};

/// What one removal took, with all that is needed to bring it back.
struct CleanupRecord {
    QUuid id;
    QString name; ///< of the application
    QString path; ///< of its bundle
    std::optional<QString> bundleIdentifier;
    Instant removedAt;
    /// Those that were moved; while a removal works, or where it was killed, all that it was to move.
    QList<CleanupItemResult> items;
    QList<CleanupItemResult> restored; ///< those that came back, for a redo
    QList<RemovedTile> tiles;

    CleanupApplication application() const;
    /// The bundle, when it was moved too, wherever it is now.
    const CleanupItemResult* bundle() const;

    bool operator==(const CleanupRecord&) const = default;
};

/// The past removals, oldest first, in "removals.json" in the application's folder. A damaged file is
/// moved aside ("removals.damaged-STAMP-TAG.json"); while the file cannot be read, or not be moved, or
/// is from a later version, nothing is written. Holds `maximumRecords` at most, and no more than fit
/// into `maximumBytes`: the oldest go first, and before them those of which nothing lies in the Trash.
///
/// Has no state: every call reads the file. One thread at a time.
class CleanupRecordStore {
public:
    static constexpr qint64 supportedVersion = 1;
    static constexpr qsizetype maximumRecords = 200;
    static constexpr std::uint64_t maximumBytes = 16u << 20;

    /// `tag` tells a file that is moved aside from others.
    CleanupRecordStore(const Machine& machine, const QUuid& tag);

    /// An error while the file cannot be read: it says nothing of what there is to bring back.
    std::expected<QList<CleanupRecord>, QString> read() const;
    /// Adds a record, or puts it in place of the one with its identifier; one of which nothing was ever
    /// taken is taken out.
    std::expected<void, QString> put(const CleanupRecord& record) const;

private:
    StoredFile file() const;
    std::expected<QList<CleanupRecord>, QString> read(StoredFile& file) const;

    const Machine& _machine;
    QUuid _tag;
};

namespace json {

/// Named as a field's codec: a path as its text, or, where its bytes are no text, as an object with
/// them in base 64.
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
