#pragma once

#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/uuid_source.h"
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
/// since 2001). A file that cannot be read is moved aside ("app-usage.damaged-STAMP-TAG.json") and the
/// record begins anew, but is no longer complete: nothing may be called never used on its account.
/// Where it cannot be moved nothing is written. Holds at most `maximumRecords`; those used longest ago
/// go first.
///
/// One thread at a time.
class AppUsageStore {
public:
    static constexpr qint64 supportedVersion = 1;
    static constexpr qsizetype maximumRecords = 20'000;
    static constexpr qsizetype maximumKeyLength = 1'024;
    static constexpr std::uint64_t maximumBytes = 32u << 20;

    AppUsageStore(const FileSystem& files, const QString& directory, const Clock& clock,
                  UuidSource& uuids);

    void load();
    /// Applications that are there; true when one of them is new.
    bool recordSeen(const QStringList& appKeys);
    void recordLaunch(const QString& appKey);
    /// Writes what has changed since the last save.
    std::expected<void, FileError> save();

    const QMap<QString, AppUsage>& records() const { return _records; }
    bool isComplete() const { return _isComplete; }
    /// Fills in what usage tells.
    void fill(SmartFolderRuntimeFacts& facts) const;

private:
    void setAside();
    AppUsage* record(const QString& appKey, Instant now);
    void makeRoom();

    const FileSystem& _files;
    QString _directory;
    QString _path;
    const Clock& _clock;
    UuidSource& _uuids;
    QMap<QString, AppUsage> _records;
    bool _isComplete = true;
    bool _isBlocked = true; ///< until loaded, and while an unreadable file is in the way
    bool _isChanged = false;
};

} // namespace tessellar
