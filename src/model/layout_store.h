#pragma once

#include "model/launcher_window_mode.h"
#include "model/layout_document.h"
#include "platform/file_system.h"
#include "platform/machine.h"

#include <array>
#include <expected>
#include <set>
#include <variant>

namespace tessellar {

/// Keeps the arrangement on disk: a working file for each display mode, backups, saved arrangements.
///
///     layout.json, layout-windowed.json          the working layouts
///     Backups/layout-STAMP-TAG.json              layouts that were replaced wholesale, never pruned
///     Backups/unreadable-layout-STAMP-TAG.json   working files that could not be read, since reset
///     Arrangements[-Windowed]/ID.json            arrangements that the user saved
///
/// A working file that exists but cannot be used blocks its mode: nothing is written for it until a
/// reset, or a later load that finds a usable file or none. Edits are saved 300 ms after the last of a
/// burst. What a failing disk kept from being saved stays here and is tried again at the next edit and
/// at `flush`.
///
/// Main thread only.
class LayoutStore {
public:
    using Document = LayoutDocument;

    struct StorageError {
        enum class Code {
            unsupportedWorkingDocumentVersion,
            layoutNotReady,
            workingDocumentUnreadable
        };
        Code code = Code::workingDocumentUnreadable;
        int version = 0; ///< found, with an unsupported version

        bool operator==(const StorageError&) const = default;
    };
    using Error = std::variant<StorageError, FileError>;

    struct Missing {
        bool operator==(const Missing&) const = default;
    };
    struct Failed {
        Error error;
        QString detail; ///< for the log: what was wrong, and where
    };
    using LoadResult = std::variant<Document, Missing, Failed>;

    static constexpr std::chrono::milliseconds saveDelay{300};

    /// The user's Application Support, and in it a folder named by the application's identifier, or by
    /// "com.quillane.app" where the application has none.
    static QString defaultDirectory(const Places& places,
                                    const std::optional<QString>& identifier = applicationIdentifier);

    /// Creates the folder; a failure to do so shows at the first read or write.
    LayoutStore(const Machine& machine, QString directory);

    const QString& directory() const { return _directory; }
    LauncherWindowMode activeMode() const { return _activeMode; }
    /// Writes what is unsaved, then turns to the other mode's files, whatever the writing gave.
    std::expected<void, Error> setActiveMode(LauncherWindowMode mode);
    bool isWriteBlocked(LauncherWindowMode mode) const { return _writeBlockedModes.contains(mode); }

    // The working layout of the active mode.
    LoadResult load();
    void scheduleSave(const Pages& pages, const QSet<QString>& hiddenKeys);
    std::expected<void, Error> saveNow(const Pages& pages, const QSet<QString>& hiddenKeys);
    std::expected<void, FileError> reset();
    /// Writes at once what is scheduled, or could not be saved earlier, for either mode.
    std::expected<void, Error> flush();
    /// True while the state of a scheduled save is not on the disk. What `saveNow` could not write does
    /// not count: its caller was told.
    bool hasUnsavedEdits() const;
    /// Why the last scheduled save failed; empty once a save has succeeded. Shown at the next edit.
    const std::optional<Error>& lastSaveError() const { return _lastSaveError; }

    /// The path of the backup.
    std::expected<QString, FileError> makeBackup(const QString& reason,
                                                 const std::optional<QString>& sourceDatabasePath,
                                                 const Pages& pages, const QSet<QString>& hiddenKeys);

    // The saved arrangements of the active mode.
    std::expected<ArrangementSummary, FileError>
    saveArrangement(const QString& name, const Document& document,
                    const std::optional<ArrangementLayout>& layout);
    /// Newest first. A file that cannot be decoded is left out and named in the log.
    QList<ArrangementSummary> arrangements() const;
    QString arrangementPath(const QUuid& id) const;
    std::expected<Arrangement, Error> arrangement(const QUuid& id) const;
    std::expected<void, FileError> deleteArrangement(const QUuid& id);

private:
    struct Unsaved {
        Pages pages;
        QSet<QString> hiddenKeys;
        bool isEdit = false;
    };

    QString workingPath(LauncherWindowMode mode) const;
    QString arrangementsDirectory() const;
    QString stampedName(const QString& prefix);
    std::optional<Unsaved>& unsaved(LauncherWindowMode mode) {
        return _unsaved[static_cast<std::size_t>(mode)];
    }
    std::expected<void, FileError> writeUnsaved(LauncherWindowMode mode);
    std::expected<void, FileError> write(const QString& path, const QJsonValue& value,
                                         const Document& document) const;

    const Machine& _machine;
    QString _directory;
    LauncherWindowMode _activeMode = LauncherWindowMode::fullScreen;
    std::set<LauncherWindowMode> _writeBlockedModes;
    std::array<std::optional<Unsaved>, 2> _unsaved;
    Timer _pendingSave;
    std::optional<Error> _lastSaveError;
};

/// The user-facing sentence.
QString message(const LayoutStore::StorageError& error);
QString message(const LayoutStore::Error& error);

} // namespace tessellar
