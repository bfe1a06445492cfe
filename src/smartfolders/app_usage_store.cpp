#include "smartfolders/app_usage_store.h"

#include "model/json_file.h"

#include <algorithm>
#include <limits>

namespace tessellar {

namespace {

struct UsageRecords {
    QMap<QString, AppUsage> byKey;
    bool isWhole = true; ///< no damaged record was left out
};

struct UsageDocument {
    static constexpr qint64 supportedVersion = AppUsageStore::supportedVersion;
    qint64 version = supportedVersion;
    bool isComplete = true;
    UsageRecords records;
};

} // namespace

namespace json {
template <>
struct Fields<AppUsage> {
    static constexpr auto list =
        fields(required("firstSeen", &AppUsage::firstSeen), optional("lastUsed", &AppUsage::lastUsed),
               defaulted("count", &AppUsage::count));
};
template <>
struct Codec<UsageRecords> {
    static Decoded<UsageRecords> decode(const QJsonValue& value) {
        if (!value.isObject())
            return expected("an object");
        const QJsonObject object = value.toObject();
        UsageRecords records;
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (auto usage = json::decode<AppUsage>(it.value()))
                records.byKey.insert(it.key(), *std::move(usage));
            else
                records.isWhole = false;
        }
        return records;
    }
    static QJsonValue encode(const UsageRecords& records) { return json::encode(records.byKey); }
};
template <>
struct Fields<UsageDocument> {
    static constexpr auto list = fields(required("version", &UsageDocument::version),
                                        defaulted("isComplete", &UsageDocument::isComplete),
                                        required("records", &UsageDocument::records));
};
} // namespace json

AppUsageStore::AppUsageStore(const Machine& machine, const QString& directory)
    : _machine(machine)
    , _file(machine.workers,
            StoredFile(machine.files, FileSystem::joined(directory, QStringLiteral("app-usage.json")),
                       maximumBytes)) {}

AppUsageStore::~AppUsageStore() {
    if (const auto saved = flush(); !saved)
        _machine.log.warning(message(saved.error()));
}

void AppUsageStore::load() {
    _records.clear();
    _isComplete = true;
    _isChanged = false;
    auto document = loadJsonOrSetAside<UsageDocument>(_file, _machine.clock, _machine.uuids);
    if (!document) {
        _machine.log.warning(document.error().text);
        _isComplete = false;
        _isChanged = true; // so that the loss is remembered
    } else if (*document) {
        _records = std::move((*document)->records.byKey);
        _isComplete = (*document)->isComplete && (*document)->records.isWhole;
        makeRoom();
    }
}

AppUsage* AppUsageStore::record(const QString& appKey, Instant now) {
    if (appKey.size() > maximumKeyLength)
        return nullptr;
    auto found = _records.find(appKey);
    if (found == _records.end()) {
        found = _records.insert(appKey, AppUsage{.firstSeen = now});
        _isChanged = true;
    }
    return &*found;
}

bool AppUsageStore::recordSeen(const QStringList& appKeys) {
    const qsizetype before = _records.size();
    const Instant now = _machine.clock.now(); // one for all: what was seen together sorts by name
    for (const QString& key : appKeys)
        record(key, now);
    const bool isNew = _records.size() > before;
    makeRoom();
    return isNew;
}

void AppUsageStore::recordLaunch(const QString& appKey) {
    const Instant now = _machine.clock.now();
    if (AppUsage* usage = record(appKey, now)) {
        usage->lastUsed = now;
        if (usage->count < std::numeric_limits<qint64>::max())
            ++usage->count;
        _isChanged = true;
        makeRoom();
    }
}

void AppUsageStore::changeKeys(const QHash<QString, QString>& changedKeys) {
    // All are taken out before any is put in: two may change places.
    QMap<QString, AppUsage> moved;
    for (auto it = changedKeys.cbegin(); it != changedKeys.cend(); ++it)
        if (const auto found = _records.constFind(it.key()); found != _records.constEnd()) {
            moved.insert(it.value(), *found);
            _records.erase(found);
        }
    for (auto it = moved.cbegin(); it != moved.cend(); ++it) {
        AppUsage usage = *it;
        if (const auto there = _records.constFind(it.key()); there != _records.constEnd()) {
            usage.firstSeen = std::min(usage.firstSeen, there->firstSeen);
            usage.lastUsed = std::max(usage.lastUsed, there->lastUsed);
            usage.count = std::max(usage.count, there->count);
        }
        _records.insert(it.key(), usage);
        _isChanged = true;
    }
}

void AppUsageStore::makeRoom() {
    if (_records.size() <= maximumRecords)
        return;
    // A tenth at once, so that the next ones do not sort again.
    std::vector<std::pair<Instant, QString>> byUse;
    for (auto it = _records.cbegin(); it != _records.cend(); ++it)
        byUse.emplace_back(it->lastUsed.value_or(it->firstSeen), it.key());
    std::ranges::sort(byUse);
    byUse.resize(byUse.size() - maximumRecords * 9 / 10);
    for (const auto& [used, key] : byUse) {
        _isComplete = _isComplete && _records.value(key).count == 0;
        _records.remove(key);
    }
    _isChanged = true;
}

void AppUsageStore::save() {
    if (!std::exchange(_isChanged, false))
        return;
    saveJson(_file, UsageDocument{.isComplete = _isComplete, .records = {_records}});
    _file.whenWritten([this](const BackgroundFile::Result& written) {
        if (written)
            return;
        _isChanged = true;
        _machine.log.warning(message(written.error()));
    });
}

std::expected<void, FileError> AppUsageStore::flush() {
    save();
    return _file.wait();
}

void AppUsageStore::fill(SmartFolderRuntimeFacts& facts) const {
    for (auto it = _records.cbegin(); it != _records.cend(); ++it) {
        facts.firstSeenDates.insert(it.key(), it->firstSeen);
        if (it->count > 0 || _isComplete)
            facts.launchCounts.insert(it.key(), it->count);
        if (it->lastUsed)
            facts.lastUsedDates.insert(it.key(), *it->lastUsed);
    }
    facts.usageDataIsComplete = _isComplete;
}

} // namespace tessellar
