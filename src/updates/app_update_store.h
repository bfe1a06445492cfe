#pragma once

#include "platform/machine.h"
#include "updates/app_update_records.h"

namespace tessellar {

/// Keeps the update cache in "app-updates.json" in the application's folder. A file that cannot be read
/// gives an empty cache and is set aside beside the new one; while even that fails, nothing is written.
/// One thread at a time.
class AppUpdateStore {
public:
    /// Makes the folder; a failure shows when something is saved.
    explicit AppUpdateStore(const Machine& machine);

    /// Application Support, then a folder named by the application's identifier.
    static QString defaultPath(const Places& places,
                               const std::optional<QString>& identifier = applicationIdentifier);
    QString path() const { return _path; }

    AppUpdateCache load();
    std::expected<void, FileError> save(const AppUpdateCache& cache);

private:
    const Machine& _machine;
    QString _path;
    bool _mayWrite = true;
};

/// The cache, with the store that read it.
struct StoredUpdates {
    AppUpdateStore store;
    AppUpdateCache cache;

    static StoredUpdates read(const Machine& machine) {
        StoredUpdates stored{AppUpdateStore(machine), {}};
        stored.cache = stored.store.load();
        return stored;
    }
};

} // namespace tessellar
