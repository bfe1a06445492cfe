#pragma once

#include "platform/background_file.h"
#include "platform/machine.h"
#include "smartfolders/smart_folder_app_facts.h"

namespace tessellar {

/// What the launcher recorded of one application.
struct AppUsage {
    Instant firstSeen;
    std::optional<Instant> lastUsed;
    qint64 count = 0; ///< of launches

    bool operator==(const AppUsage&) const = default;
};

/// The launcher's record of what it saw and launched, by app key, in "app-usage.json" (dates as seconds
/// since 2001). A damaged record is left out, a damaged file moved aside
/// ("app-usage.damaged-STAMP-TAG.json"); the records are no longer complete then: nothing may be called
/// never used on their account. While the file cannot be read, or not be moved, nothing is written.
/// Holds at most `maximumRecords`; those used longest ago go first.
///
/// Main thread only.
class AppUsageStore {
public:
    static constexpr qint64 supportedVersion = 1;
    /// How long launches have to be recorded before it can be said that there was none.
    static constexpr std::chrono::days completeAfter{30};
    static constexpr qsizetype maximumRecords = 20'000;
    static constexpr qsizetype maximumKeyLength = 1'024;
    static constexpr std::uint64_t maximumBytes = 32u << 20;

    AppUsageStore(const Machine& machine, const QString& directory);
    /// What could not be saved is logged.
    ~AppUsageStore();

    void load();
    /// Applications that are there; true when one of them is new.
    bool recordSeen(const QStringList& appKeys);
    void recordLaunch(const QString& appKey);
    /// All of it, for good. What is there counts as seen just now.
    void forget();
    /// Applications that go by another key now; true when one of them was recorded.
    bool follow(const QHash<QString, QString>& changedKeys);
    /// Hands over what has changed since the last save. What goes wrong is logged, and tried again with
    /// the next.
    void save();
    /// Blocks until it is on the disk.
    std::expected<void, FileError> flush();

    const QMap<QString, AppUsage>& records() const { return _records; }
    /// No record was lost, or so long ago that it no longer matters.
    bool isComplete() const { return _isComplete || isOld(); }
    /// Fills in what usage tells.
    void fill(SmartFolderRuntimeFacts& facts) const;

private:
    bool isOld() const;
    void lose();
    AppUsage* record(const QString& appKey, Instant now);
    void makeRoom();

    const Machine& _machine;
    BackgroundFile _file;
    QMap<QString, AppUsage> _records;
    bool _isComplete = true;
    Instant _since; ///< launches have been recorded, without a loss
    bool _isChanged = false;
};

} // namespace tessellar
