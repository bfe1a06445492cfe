#include "smartfolders/app_usage_store.h"

#include "model/json_file.h"

#include <algorithm>
#include <limits>

namespace tessellar {

namespace {

struct UsageRecords {
    QHash<QString, AppUsage> byKey;
    bool isWhole = true; ///< no damaged record was dropped
};

struct UsageDocument {
    static constexpr qint64 supportedVersion = AppUsageStore::supportedVersion;
    qint64 version = supportedVersion;
    bool isComplete = true;
    std::optional<Instant> since; ///< absent in older files
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
        records.byKey.reserve(object.size());
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (auto usage = json::decode<AppUsage>(it.value()))
                records.byKey.insert(it.key(), *std::move(usage));
            else
                records.isWhole = false;
        }
        return records;
    }
    static QJsonValue encode(const UsageRecords& records) {
        // Sorted by key, because a JSON object is slow to insert into in any other order.
        QMap<QString, AppUsage> sorted;
        for (auto it = records.byKey.cbegin(); it != records.byKey.cend(); ++it)
            sorted.insert(it.key(), *it);
        return json::encode(sorted);
    }
};
template <>
struct Fields<UsageDocument> {
    static constexpr auto list =
        fields(required("version", &UsageDocument::version),
               defaulted("isComplete", &UsageDocument::isComplete),
               optional("since", &UsageDocument::since), required("records", &UsageDocument::records));
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

MoveOnlyFunction<void()> AppUsageStore::read() {
    return [this, read = loadJson<UsageDocument>(_file)]() mutable {
        _records.clear();
        _isComplete = true;
        _isChanged = false;
        _since = _machine.clock.now();
        auto document = setAsideIfDamaged(std::move(read), _file, _machine.clock, _machine.uuids);
        if (!document) {
            _machine.log.warning(document.error().text);
            lose();
        } else if (*document) {
            _records = std::move((*document)->records.byKey);
            _isComplete = (*document)->isComplete;
            for (const AppUsage& usage : std::as_const(_records))
                if (_isComplete && !(*document)->since)
                    _since = std::min(_since, usage.firstSeen);
            _since = (*document)->since.value_or(_since);
            if (!(*document)->records.isWhole)
                lose();
            makeRoom();
        }
    };
}

/// Records the loss of data: the history is complete only from now on.
void AppUsageStore::lose() {
    _isComplete = false;
    _since = _machine.clock.now();
    _isChanged = true; // so that the loss is saved
}

void AppUsageStore::forget() {
    const QStringList seen = _records.keys();
    _records.clear();
    lose();
    recordSeen(seen);
}

bool AppUsageStore::isOld() const { return _machine.clock.now() - _since >= completeAfter; }

bool AppUsageStore::changeKeys(const QHash<QString, QString>& changedKeys) {
    // Remove all before inserting any: a new key may be another record's old key.
    QList<std::pair<QString, AppUsage>> moved;
    for (auto it = changedKeys.cbegin(); it != changedKeys.cend(); ++it)
        if (const auto found = _records.constFind(it.key());
            found != _records.constEnd() && it.value().size() <= maximumKeyLength) {
            moved.append({it.value(), *found});
            _records.erase(found);
        }
    for (const auto& [key, old] : std::as_const(moved)) {
        const bool isKnown = _records.contains(key);
        AppUsage& usage = _records[key];
        if (!isKnown) {
            usage = old;
            continue;
        }
        usage.firstSeen = std::min(usage.firstSeen, old.firstSeen);
        usage.lastUsed = std::max(usage.lastUsed, old.lastUsed);
        usage.count += std::min(old.count, std::numeric_limits<qint64>::max() - usage.count);
    }
    _isChanged = _isChanged || !moved.isEmpty();
    return !moved.isEmpty();
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
    const Instant now = _machine.clock.now(); // one time for all: applications seen together sort by
                                              // name
    _records.reserve(std::max(_records.size(), appKeys.size()));
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

void AppUsageStore::makeRoom() {
    if (_records.size() <= maximumRecords)
        return;
    // Drops a tenth at once, so that the next calls need not sort again.
    std::vector<std::pair<Instant, QString>> byUse;
    for (auto it = _records.cbegin(); it != _records.cend(); ++it)
        byUse.emplace_back(it->lastUsed.value_or(it->firstSeen), it.key());
    std::ranges::sort(byUse);
    byUse.resize(byUse.size() - maximumRecords * 9 / 10);
    for (const auto& [used, key] : byUse) {
        if (_records.take(key).count > 0)
            lose();
    }
    _isChanged = true;
}

void AppUsageStore::save() {
    if (!std::exchange(_isChanged, false))
        return;
    saveJson(_file, UsageDocument{.isComplete = isComplete(), .since = _since, .records = {_records}});
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
    facts.firstSeenDates.reserve(_records.size());
    facts.launchCounts.reserve(_records.size());
    for (auto it = _records.cbegin(); it != _records.cend(); ++it) {
        facts.firstSeenDates.insert(it.key(), it->firstSeen);
        if (it->count > 0 || isComplete())
            facts.launchCounts.insert(it.key(), it->count);
        if (it->lastUsed)
            facts.lastUsedDates.insert(it.key(), *it->lastUsed);
    }
    facts.usageDataIsComplete = isOld();
}

} // namespace tessellar
