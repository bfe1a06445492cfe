#include "updates/app_update_store.h"

#include "model/json_file.h"

namespace tessellar {

/// Thousands of records have some hundred kilobytes.
constexpr std::uint64_t maximumCacheBytes = 16u << 20;

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

void AppUpdateStore::save(const AppUpdateCache& cache, BackgroundFile::Done done) {
    saveJson(_file, cache);
    if (done)
        _file.whenWritten(std::move(done));
}

} // namespace tessellar
