#include "smartfolders/app_usage_store.h"

#include <limits>

namespace tessellar {

namespace {

struct UsageDocument {
    qint64 version = AppUsageStore::supportedVersion;
    bool isComplete = true;
    QMap<QString, AppUsage> records;
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
struct Fields<UsageDocument> {
    static constexpr auto list = fields(required("version", &UsageDocument::version),
                                        defaulted("isComplete", &UsageDocument::isComplete),
                                        required("records", &UsageDocument::records));
};
} // namespace json

AppUsageStore::AppUsageStore(const FileSystem& files, const QString& directory, const Clock& clock,
                             UuidSource& uuids)
    : _files(files)
    , _directory(directory)
    , _path(FileSystem::joined(directory, QStringLiteral("app-usage.json")))
    , _clock(clock)
    , _uuids(uuids) {}

void AppUsageStore::load() {
    _records.clear();
    _isComplete = true;
    _isBlocked = _isChanged = false;
    const auto bytes = _files.read(_path, maximumBytes);
    if (!bytes && bytes.error().code == FileError::Code::notFound)
        return;
    auto document = bytes ? json::decodeDocument<UsageDocument>(*bytes)
                          : json::Decoded<UsageDocument>(json::fail(message(bytes.error())));
    if (!document || document->version != supportedVersion) {
        setAside();
        return;
    }
    _records = std::move(document->records);
    _isComplete = document->isComplete;
    makeRoom();
}

void AppUsageStore::setAside() {
    _isComplete = false;
    _isChanged = true; // so that the loss is remembered
    const QString name =
        QStringLiteral("app-usage.damaged-%1-%2.json")
            .arg(_clock.now().toIso8601().replace(u':', u'-'), toText(_uuids.next()).first(8));
    _isBlocked = !_files.move(_path, FileSystem::joined(_directory, name));
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
    const Instant now = _clock.now(); // one for all: what was seen together sorts by name
    for (const QString& key : appKeys)
        record(key, now);
    const bool isNew = _records.size() > before;
    makeRoom();
    return isNew;
}

void AppUsageStore::recordLaunch(const QString& appKey) {
    const Instant now = _clock.now();
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

std::expected<void, FileError> AppUsageStore::save() {
    if (!_isChanged)
        return {};
    if (_isBlocked)
        return std::unexpected(FileError{FileError::Code::alreadyExists, _path});
    if (const auto made = _files.createDirectories(_directory); !made)
        return made;
    const UsageDocument document{.isComplete = _isComplete, .records = _records};
    const QByteArray bytes = json::write(json::encode(document));
    if (static_cast<std::uint64_t>(bytes.size()) > maximumBytes)
        return std::unexpected(FileError{FileError::Code::tooLarge, _path});
    const auto written = _files.writeAtomically(_path, bytes);
    _isChanged = !written;
    return written;
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
