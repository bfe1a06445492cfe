#include "updates/app_update_store.h"

namespace tessellar {

/// Thousands of records have some hundred kilobytes.
constexpr std::uint64_t maximumCacheBytes = 16u << 20;

QString AppUpdateStore::defaultPath(const Places& places, const std::optional<QString>& identifier) {
    const QString folder = FileSystem::joined(places.applicationSupport,
                                              identifier.value_or(QStringLiteral("com.quillane.app")));
    return FileSystem::joined(folder, QStringLiteral("app-updates.json"));
}

AppUpdateStore::AppUpdateStore(const Machine& machine)
    : _machine(machine), _path(defaultPath(machine.places)) {
    (void)_machine.files.createDirectories(FileSystem::parent(_path));
}

AppUpdateCache AppUpdateStore::load() {
    _mayWrite = true;
    const auto bytes = _machine.files.read(_path, maximumCacheBytes);
    if (!bytes && bytes.error().code == FileError::Code::notFound)
        return {};
    auto cache =
        bytes ? json::decodeDocument<AppUpdateCache>(*bytes) : json::fail(message(bytes.error()));
    if (cache)
        return *std::move(cache);
    const QString stamp = _machine.clock.now().toIso8601().replace(u':', u'-');
    const QString aside = FileSystem::joined(FileSystem::parent(_path),
                                             QStringLiteral("app-updates.damaged-%1-%2.json")
                                                 .arg(stamp, toText(_machine.uuids.next()).first(8)));
    const auto moved = _machine.files.move(_path, aside);
    _mayWrite = moved.has_value();
    _machine.log.warning(QStringLiteral("The cache of updates could not be read (%1). %2")
                             .arg(json::message(cache.error()),
                                  moved ? QStringLiteral("It is kept as %1.").arg(aside)
                                        : QStringLiteral("It could not be set aside and stays: %1")
                                              .arg(message(moved.error()))));
    return {};
}

std::expected<void, FileError> AppUpdateStore::save(const AppUpdateCache& cache) {
    if (!_mayWrite)
        return std::unexpected(FileError{FileError::Code::damaged, _path});
    if (const auto made = _machine.files.createDirectories(FileSystem::parent(_path)); !made)
        return made;
    return _machine.files.writeAtomically(_path, json::write(json::encode(cache)));
}

} // namespace tessellar
