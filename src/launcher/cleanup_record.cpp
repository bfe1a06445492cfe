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
    const auto bytes = Data::decode(value.toObject().value(bytesKey));
    if (!bytes)
        return std::unexpected(bytes.error());
    return FileSystem::fromHostBytes(*bytes);
}

QJsonValue DiskPath::encode(const QString& path) {
    if (path.isValidUtf16())
        return path;
    return QJsonObject{{bytesKey, Data::encode(FileSystem::toHostBytes(path).value_or(QByteArray()))}};
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
    if (document.error().kind == JsonFileError::Kind::unreadable)
        return std::unexpected(document.error().text);
    _machine.log.warning(document.error().text);
    (void)file.setAside(_machine.clock, _tag);
    return QList<CleanupRecord>();
}

std::expected<void, FileError> CleanupRecordStore::put(const CleanupRecord& record) const {
    StoredFile removals = file();
    QList<CleanupRecord> records = read(removals).value_or(QList<CleanupRecord>());
    if (const auto& error = removals.blocked())
        return std::unexpected(*error);
    const auto known = std::ranges::find(records, record.id, &CleanupRecord::id);
    const bool isEmpty = record.items.isEmpty() && record.restored.isEmpty();
    if (known == records.end() && isEmpty)
        return {};
    if (known != records.end() && !isEmpty)
        *known = record;
    else if (known != records.end())
        records.erase(known);
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
    // What still lies in the Trash is not forgotten for their number.
    while (records.size() > maximumRecords && nextDone() != records.end())
        forgetOne();
    for (;; forgetOne()) {
        const auto written = saveJson(removals, RecordDocument{.records = records});
        if (written || written.error().code != FileError::Code::tooLarge || records.size() <= 1)
            return written;
    }
}

} // namespace tessellar
