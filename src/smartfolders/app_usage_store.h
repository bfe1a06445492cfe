#pragma once

#include "platform/background_file.h"
#include "platform/machine.h"
#include "smartfolders/smart_folder_app_facts.h"

namespace tessellar {

/// The launcher's usage record of one application.
struct AppUsage {
    Instant firstSeen;
    std::optional<Instant> lastUsed;
    qint64 count = 0; ///< of launches

    bool operator==(const AppUsage&) const = default;
};

/// Records which applications were seen and launched, by app key, in "app-usage.json" (dates in seconds
/// since 2001). Damaged records are dropped, and a damaged file is set aside
/// ("app-usage.damaged-STAMP-TAG.json"); the data is then incomplete and must not be used to call an
/// application never used. While the file is unreadable or cannot be set aside, nothing is written.
/// Keeps at most `maximumRecords`, dropping the least recently used.
///
/// Main thread only, but for `read`.
class AppUsageStore {
public:
    static constexpr qint64 supportedVersion = 1;
    /// How long launches must be recorded before "never used" can be claimed.
    static constexpr std::chrono::days completeAfter{30};
    static constexpr qsizetype maximumRecords = 20'000;
    static constexpr qsizetype maximumKeyLength = 1'024;
    static constexpr std::uint64_t maximumBytes = 32u << 20;

    AppUsageStore(const Machine& machine, const QString& directory);
    /// Failed saves are logged.
    ~AppUsageStore();

    void load() { read()(); }
    /// Reads the file, on any thread, before anything else is asked of the store. Call what it returns
    /// on the main thread: it takes over what was read.
    [[nodiscard]] MoveOnlyFunction<void()> read();
    /// Records that applications are present; true if one of them is new.
    bool recordSeen(const QStringList& appKeys);
    void recordLaunch(const QString& appKey);
    /// Deletes all records permanently. Present applications count as first seen now.
    void forget();
    /// Applies changed app keys; true if one of them had a record.
    bool changeKeys(const QHash<QString, QString>& changedKeys);
    /// Starts saving the changes, if any. Failures are logged and retried at the next save.
    void save();
    /// Blocks until the changes are on the disk.
    std::expected<void, FileError> flush();

    const QHash<QString, AppUsage>& records() const { return _records; }
    /// True if no record was lost, or so long ago that it no longer matters.
    bool isComplete() const { return _isComplete || isOld(); }
    /// Adds the usage facts.
    void fill(SmartFolderRuntimeFacts& facts) const;

private:
    bool isOld() const;
    void lose();
    AppUsage* record(const QString& appKey, Instant now);
    void makeRoom();

    const Machine& _machine;
    BackgroundFile _file;
    QHash<QString, AppUsage> _records; ///< by app key
    bool _isComplete = true;
    Instant _since; ///< start of recording without loss
    bool _isChanged = false;
};

} // namespace tessellar
