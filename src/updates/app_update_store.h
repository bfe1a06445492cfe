#pragma once

#include "platform/background_file.h"
#include "platform/machine.h"
#include "updates/app_update_records.h"
#include "updates/app_update_runner.h"

namespace tessellar {

/// Stores the update cache in "app-updates.json" in the application's folder. A damaged file is set
/// aside and gives an empty cache; while that fails, or the file is unreadable, nothing is written. Not
/// thread-safe; main thread only once something has been saved.
class AppUpdateStore {
public:
    /// Creates the folder; if that fails, saving reports it.
    explicit AppUpdateStore(const Machine& machine);

    /// In Application Support, in the folder named by the application's identifier.
    static QString defaultPath(const Places& places,
                               const std::optional<QString>& identifier = applicationIdentifier);
    const QString& path() const { return _file.path(); }

    AppUpdateCache load();
    /// Saves on a worker; `done` is called on the main thread with the result.
    void save(const AppUpdateCache& cache, BackgroundFile::Done done = {});
    /// Blocks until all saves have finished.
    std::expected<void, FileError> wait() const { return _file.wait(); }

    /// Applies changed app keys directly to the file, for when no cache is loaded. Call on the saving
    /// lane, so that it comes before later saves.
    static void changeKeys(const Machine& machine, const QHash<QString, QString>& changedKeys);

private:
    const Machine& _machine;
    BackgroundFile _file;
};

/// All persistent update data, with the store that read it.
struct StoredUpdates {
    AppUpdateStore store;
    AppUpdateCache cache;
    std::optional<AppUpdateRun> run; ///< an update left running

    static StoredUpdates read(const Machine& machine) {
        StoredUpdates stored{AppUpdateStore(machine), {}, AppUpdateRunner::interruptedRun(machine)};
        stored.cache = stored.store.load();
        return stored;
    }
};

} // namespace tessellar
