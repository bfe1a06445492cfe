#pragma once

#include "platform/background_file.h"
#include "platform/machine.h"
#include "updates/app_update_records.h"
#include "updates/app_update_runner.h"

namespace tessellar {

/// Keeps the update cache in "app-updates.json" in the application's folder. A damaged file gives an
/// empty cache and is set aside beside the new one; while that fails, and while the file cannot be
/// read, nothing is written. One thread at a time, the main thread once something is saved.
class AppUpdateStore {
public:
    /// Makes the folder; a failure shows when something is saved.
    explicit AppUpdateStore(const Machine& machine);

    /// Application Support, then a folder named by the application's identifier.
    static QString defaultPath(const Places& places,
                               const std::optional<QString>& identifier = applicationIdentifier);
    const QString& path() const { return _file.path(); }

    AppUpdateCache load();
    /// Hands the cache over; `done` is called on the main thread when it is on the disk, or is not.
    void save(const AppUpdateCache& cache, BackgroundFile::Done done = {});
    /// Blocks until what was handed over is on the disk.
    std::expected<void, FileError> wait() const { return _file.wait(); }

    /// Applications are known by other keys now, and nobody has the cache in memory: what is kept of
    /// them goes along. To be called on the lane for saving, where it comes before what is handed over
    /// later.
    static void changeKeys(const Machine& machine, const QHash<QString, QString>& changedKeys);

private:
    const Machine& _machine;
    BackgroundFile _file;
};

/// All that is kept between runs, with the store that read it.
struct StoredUpdates {
    AppUpdateStore store;
    AppUpdateCache cache;
    std::optional<AppUpdateRun> run; ///< an update that was begun

    static StoredUpdates read(const Machine& machine) {
        StoredUpdates stored{AppUpdateStore(machine), {}, AppUpdateRunner::left(machine)};
        stored.cache = stored.store.load();
        return stored;
    }
};

} // namespace tessellar
