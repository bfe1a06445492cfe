#include "updates/app_update_store.h"

#include "model/json_file.h"

namespace tessellar {

/// Thousands of records take some hundred kilobytes; five thousand with versions, reasons and notes of
/// maximum length still fit.
constexpr std::uint64_t maximumCacheBytes = 64u << 20;

/// All at once: a new key may be another entry's old key.
template <typename Map>
static bool follow(Map& map, const QHash<QString, QString>& changedKeys) {
    Map moved;
    for (auto it = changedKeys.cbegin(); it != changedKeys.cend(); ++it)
        if (map.contains(it.key()))
            moved.insert(it.value(), map.take(it.key()));
    map.insert(moved);
    return !moved.isEmpty();
}

bool AppUpdateCache::changeKeys(const QHash<QString, QString>& changedKeys) {
    bool isChanged = follow(records, changedKeys);
    isChanged = follow(storeItems, changedKeys) || isChanged;
    isChanged = follow(skipped, changedKeys) || isChanged;
    return (owners && follow(*owners, changedKeys)) || isChanged;
}

namespace json {

using C = AppUpdateCache;
static constexpr auto cacheFields =
    fields(defaulted("records", &C::records), optional("lastCheck", &C::lastCheck),
           defaulted("problems", &C::problems), optional("owners", &C::owners),
           defaulted("storeItems", &C::storeItems), defaulted("skipped", &C::skipped),
           optional("rolloutGroup", &C::rolloutGroup));

Decoded<AppUpdateCache> Codec<AppUpdateCache>::decode(const QJsonValue& value) {
    return decodeRecord<AppUpdateCache>(value, cacheFields);
}

QJsonValue Codec<AppUpdateCache>::encode(const AppUpdateCache& cache) {
    QJsonObject object = encodeRecord(cache, cacheFields).toObject();
    for (const char* table : {"problems", "storeItems", "skipped"})
        if (const QJsonValue value = object.value(QLatin1StringView(table));
            value.toObject().isEmpty() && value.toArray().isEmpty())
            object.remove(QLatin1StringView(table));
    return object;
}

} // namespace json

QString AppUpdateStore::defaultPath(const Places& places, const std::optional<QString>& identifier) {
    const QString folder = FileSystem::joined(places.applicationSupport,
                                              identifier.value_or(QStringLiteral("com.quillane.app")));
    return FileSystem::joined(folder, QStringLiteral("app-updates.json"));
}

AppUpdateStore::AppUpdateStore(const Machine& machine)
    : _machine(machine)
    , _file(machine.workers,
            StoredFile(machine.files, defaultPath(machine.places), maximumCacheBytes)) {
    (void)_machine.files.createDirectories(FileSystem::parent(path()));
}

AppUpdateCache AppUpdateStore::load() {
    auto cache = loadJsonOrSetAside<AppUpdateCache>(_file, _machine.clock, _machine.uuids);
    if (!cache)
        _machine.log.warning(
            QStringLiteral("The cache of updates could not be read: %1").arg(cache.error().text));
    return cache ? std::move(*cache).value_or(AppUpdateCache()) : AppUpdateCache();
}

void AppUpdateStore::changeKeys(const Machine& machine, const QHash<QString, QString>& changedKeys) {
    StoredFile file(machine.files, defaultPath(machine.places), maximumCacheBytes);
    auto cache = loadJson<AppUpdateCache>(file);
    if (!cache || !*cache || !(*cache)->changeKeys(changedKeys))
        return; // `load` will quarantine the damaged file
    if (const auto saved = saveJson(file, **cache); !saved)
        machine.log.warning(QStringLiteral("Could not change the keys in the cache of updates: %1")
                                .arg(message(saved.error())));
}

void AppUpdateStore::save(const AppUpdateCache& cache, BackgroundFile::Done done) {
    saveJson(_file, cache);
    if (done)
        _file.whenWritten(std::move(done));
}

} // namespace tessellar
