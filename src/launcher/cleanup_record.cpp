#include "launcher/cleanup_record.h"

#include "model/json_file.h"

#include <algorithm>

namespace tessellar {

namespace {

struct RecordDocument {
    static constexpr qint64 supportedVersion = CleanupRecordStore::supportedVersion;
    qint64 version = supportedVersion;
    QList<CleanupRecord> records;
};

const QString bytesKey = QStringLiteral("bytes");

} // namespace

namespace json {
template <>
struct Fields<RecordDocument> {
    static constexpr auto list = fields(required("version", &RecordDocument::version),
                                        required("records", &RecordDocument::records));
};

Decoded<QString> DiskPath::decode(const QJsonValue& value) {
    if (value.isString())
        return value.toString();
    const auto bytes = Base64::decode(value.toObject().value(bytesKey));
    if (!bytes)
        return std::unexpected(bytes.error());
    return FileSystem::fromHostBytes(*bytes);
}

QJsonValue DiskPath::encode(const QString& path) {
    if (path.isValidUtf16())
        return path;
    return QJsonObject{
        {bytesKey, Base64::encode(FileSystem::toHostBytes(path).value_or(QByteArray()))}};
}
} // namespace json

CleanupApplication CleanupRecord::application() const {
    return {.names = {name}, .bundleIdentifier = bundleIdentifier, .path = path, .team = {}};
}

const CleanupItemResult* CleanupRecord::bundle() const {
    for (const auto* list : {&items, &restored}) {
        const auto found = std::ranges::find_if(*list, &CleanupItemResult::isBundle);
        if (found != list->end())
            return &*found;
    }
    return nullptr;
}

CleanupRecordStore::CleanupRecordStore(const Machine& machine, const QUuid& tag)
    : _machine(machine), _tag(tag) {}

StoredFile CleanupRecordStore::file() const {
    return {_machine.files,
            FileSystem::joined(_machine.places.applicationFolder(), QStringLiteral("removals.json")),
            maximumBytes};
}

std::expected<QList<CleanupRecord>, QString> CleanupRecordStore::read() const {
    StoredFile removals = file();
    return read(removals);
}

std::expected<QList<CleanupRecord>, QString> CleanupRecordStore::read(StoredFile& file) const {
    auto document = loadJson<RecordDocument>(file);
    if (document)
        return *document ? std::move((*document)->records) : QList<CleanupRecord>();
    if (document.error().kind != JsonFileError::Kind::damaged)
        return std::unexpected(document.error().text);
    _machine.log.warning(document.error().text);
    (void)file.setAside(_machine.clock, _tag);
    return QList<CleanupRecord>();
}

std::expected<void, QString> CleanupRecordStore::put(const CleanupRecord& record) const {
    StoredFile removals = file();
    auto known = read(removals);
    if (!known)
        return std::unexpected(known.error());
    if (const auto& error = removals.blocked())
        return std::unexpected(message(*error));
    QList<CleanupRecord>& records = *known;
    const auto place = std::ranges::find(records, record.id, &CleanupRecord::id);
    const bool isEmpty = record.items.isEmpty() && record.restored.isEmpty();
    if (place == records.end() && isEmpty)
        return {};
    if (place != records.end() && !isEmpty)
        *place = record;
    else if (place != records.end())
        records.erase(place);
    else
        records.append(record);
    const auto nextDone = [&records] {
        return std::ranges::find_if(records,
                                    [](const CleanupRecord& past) { return past.items.isEmpty(); });
    };
    const auto forgetOne = [&] {
        const auto done = nextDone();
        records.erase(done == records.end() ? records.begin() : done);
    };
    // Records with items still in the Trash are kept beyond the limit.
    while (records.size() > maximumRecords && nextDone() != records.end())
        forgetOne();
    const auto encoded = [&records] {
        return json::write(json::encode(RecordDocument{.records = records}));
    };
    QByteArray bytes = encoded();
    for (; static_cast<std::uint64_t>(bytes.size()) > maximumBytes && records.size() > 1;
         bytes = encoded())
        forgetOne();
    // A full disk is no reason to drop any.
    if (const auto written = removals.write(bytes); !written)
        return std::unexpected(message(written.error()));
    return {};
}

} // namespace tessellar
