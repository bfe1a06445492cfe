#include "launcher/cleanup_record.h"

#include <algorithm>

namespace tessellar {

namespace {

struct RecordDocument {
    qint64 version = CleanupRecordStore::supportedVersion;
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
    const auto found = std::ranges::find_if(items, [](const CleanupItemResult& result) {
        return result.item.match == RelatedFileMatch::appBundle;
    });
    return found == items.end() ? nullptr : &*found;
}

CleanupRecordStore::CleanupRecordStore(const Machine& machine, QString tag)
    : _files(machine.files)
    , _clock(machine.clock)
    , _folder(machine.places.applicationFolder())
    , _path(FileSystem::joined(_folder, QStringLiteral("removals.json")))
    , _tag(std::move(tag)) {}

QList<CleanupRecord> CleanupRecordStore::read() const { return load().records; }

CleanupRecordStore::Loaded CleanupRecordStore::load() const {
    const auto bytes = _files.read(_path, maximumBytes);
    if (!bytes && bytes.error().code == FileError::Code::notFound)
        return {};
    auto document = bytes ? json::decodeDocument<RecordDocument>(*bytes)
                          : json::Decoded<RecordDocument>(json::fail(message(bytes.error())));
    if (document && document->version == supportedVersion)
        return {std::move(document->records)};
    const QString name = QStringLiteral("removals.damaged-%1-%2.json")
                             .arg(_clock.now().toIso8601().replace(u':', u'-'),
                                  _tag.first(std::min<qsizetype>(8, _tag.size())));
    return {{}, _files.move(_path, FileSystem::joined(_folder, name)).has_value()};
}

std::expected<void, FileError> CleanupRecordStore::put(const CleanupRecord& record) const {
    Loaded loaded = load();
    if (!loaded.isWritable)
        return std::unexpected(FileError{FileError::Code::alreadyExists, _path});
    QList<CleanupRecord>& records = loaded.records;
    const auto known = std::ranges::find(records, record.id, &CleanupRecord::id);
    if (known == records.end() && record.items.isEmpty())
        return {};
    if (known != records.end() && !record.items.isEmpty())
        *known = record;
    else if (known != records.end())
        records.erase(known);
    else
        records.append(record);
    if (records.size() > maximumRecords)
        records.remove(0, records.size() - maximumRecords);
    if (const auto made = _files.createDirectories(_folder); !made)
        return made;
    for (;; records.removeFirst()) {
        const QByteArray bytes = json::write(json::encode(RecordDocument{.records = records}));
        if (static_cast<std::uint64_t>(bytes.size()) <= maximumBytes)
            return _files.writeAtomically(_path, bytes);
        if (records.size() <= 1)
            return std::unexpected(FileError{FileError::Code::tooLarge, _path});
    }
}

} // namespace tessellar
