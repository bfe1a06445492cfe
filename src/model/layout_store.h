#pragma once

#include "model/launcher_window_mode.h"
#include "model/layout_document.h"
#include "platform/background_file.h"
#include "platform/machine.h"
#include "platform/signal.h"

#include <array>
#include <expected>
#include <functional>
#include <memory>
#include <variant>

namespace tessellar {

class OverwriteGuard;
class SavedArrangements;

/// Keeps the arrangement on disk: a working file for each display mode, backups, saved arrangements.
///
///     layout.json, layout-windowed.json          the working layouts
///     Backups/layout-STAMP-TAG.json              layouts that were replaced wholesale, or that another
///                                                program wrote
///     Backups/unreadable-layout-STAMP-TAG.json   working files that could not be read whole
///     Arrangements[-Windowed]/ID.json            arrangements that the user saved
///
/// A working file that exists but cannot be used blocks its mode: nothing is written for it until a
/// reset, or a later load that finds a usable file or none. Edits are saved 300 ms after the last of a
/// burst, encoded and written on a worker. What a failing disk kept from being saved stays here and is
/// tried again at the next edit, at `flush` and at `hurry`.
///
/// Main thread only. The two modes have nothing in common but the folder.
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
        QString detail;       ///< for the log: what was wrong, and where
        bool mayPass = false; ///< it could not be read now, which says nothing of what it holds
    };
    using LoadResult = std::variant<Document, Missing, Failed>;

    static constexpr std::chrono::milliseconds saveDelay{300};

    /// The user's Application Support, and in it a folder named by the application's identifier, or by
    /// "com.quillane.app" where the application has none.
    static QString defaultDirectory(const Places& places,
                                    const std::optional<QString>& identifier = applicationIdentifier);

    static QString workingPath(const QString& directory, LauncherWindowMode mode);

    /// Creates the folder; a failure to do so shows at the first read or write.
    LayoutStore(const Machine& machine, QString directory);

    const QString& directory() const { return _directory; }

    // The working layouts. Documents are written with the current version.
    LoadResult load(LauncherWindowMode mode);
    /// The same with reading and decoding on a worker; `done` is called on the main thread. Nothing is
    /// saved until then. A blocked mode that is reset meanwhile stays as the reset left it.
    [[nodiscard]] Task loadBehind(LauncherWindowMode mode, std::function<void(LoadResult)> done);
    void scheduleSave(LauncherWindowMode mode, const Document& document);
    /// Hands over what is scheduled, or could not be saved earlier, without blocking and at once.
    void hurry(LauncherWindowMode mode) { handOver(mode); }
    /// As `saveNow`, but without blocking: `done` is called on the main thread, unless the store goes
    /// before. Nothing in a blocked mode.
    void saveBehind(LauncherWindowMode mode, const Document& document, BackgroundFile::Done done);
    /// Blocks until the document is on the disk.
    std::expected<void, Error> saveNow(LauncherWindowMode mode, const Document& document);
    std::expected<void, FileError> reset(LauncherWindowMode mode);
    bool isWriteBlocked(LauncherWindowMode mode) const { return working(mode).isBlocked; }
    /// Where the file is kept as it was, when the last load had to leave out contents of a folder.
    const std::optional<QString>& lossyCopy(LauncherWindowMode mode) const {
        return working(mode).lossyCopy;
    }
    /// Writes what is scheduled, or could not be saved earlier, for either mode, and blocks until it is
    /// on the disk. The first error where both fail.
    std::expected<void, Error> flush();
    /// Numbers the states of a mode that were to be saved, in their order: that of the last one.
    using Revision = std::uint64_t;
    Revision revision(LauncherWindowMode mode) const { return working(mode).revision; }
    /// A save has ended: the state of that number is on the disk with all before it; or it has failed,
    /// and no later one is under way.
    Signal<LauncherWindowMode, Revision, BackgroundFile::Result> saveEnded;
    /// True while the state of a scheduled save is not on the disk. What `saveNow` could not write does
    /// not count: its caller was told.
    bool hasUnsavedEdits() const;
    /// Why the last save failed; empty once one has succeeded. Shown at the next edit.
    std::optional<Error> lastSaveError(LauncherWindowMode mode) const;

    /// Another program changed a working file since it was read or written here: its version was kept
    /// there before it was written over.
    Signal<LauncherWindowMode, QString> foreignVersionKept;

    /// What is to be on the disk before a mode's working file. Called on the main thread when a save is
    /// handed over; what it gives is called before the file is written, on the lane for saving. Where
    /// that fails the save has failed.
    using Precondition = std::function<std::function<BackgroundFile::Result()>(LauncherWindowMode)>;
    void setPrecondition(Precondition precondition) { _precondition = std::move(precondition); }

    /// The path of the backup.
    std::expected<QString, FileError> makeBackup(const QString& reason,
                                                 const std::optional<QString>& sourceDatabasePath,
                                                 const Document& document);

    SavedArrangements arrangements(LauncherWindowMode mode) const;

private:
    struct Unsaved {
        Document document;
        bool isEdit = false;
        std::optional<BackgroundFile::Ticket> ticket; ///< once handed over
    };
    struct Read;
    static Read read(BackgroundFile& file);
    LoadResult accept(LauncherWindowMode mode, Read read);
    /// One mode's working file.
    struct Working {
        Working(const Machine& machine, const QString& directory, LauncherWindowMode mode);
        /// What became of the state that was to be saved; absent while it is not on the disk.
        std::optional<BackgroundFile::Result> outcome() const;
        bool isSaved() const { return outcome() == BackgroundFile::Result(); }

        std::shared_ptr<BackgroundFile> file;  ///< shared with a load under way
        std::shared_ptr<OverwriteGuard> guard; ///< shared with the work under way
        bool isBlocked = false;
        std::optional<QString> lossyCopy;
        std::optional<Unsaved> unsaved;
        Revision revision = 0;
        BackgroundFile::Ticket handedOver = 0; ///< the last of them
        Timer pendingSave;
    };

    Working& working(LauncherWindowMode mode) { return _working[static_cast<std::size_t>(mode)]; }
    const Working& working(LauncherWindowMode mode) const {
        return _working[static_cast<std::size_t>(mode)];
    }
    QString stampedName(const QString& prefix);
    void setUnsaved(LauncherWindowMode mode, const Document& document, bool isEdit);
    void handOver(LauncherWindowMode mode);
    template <typename Kept>
    std::expected<void, FileError> write(const QString& path, const Kept& kept,
                                         const Document& document) const;

    const Machine& _machine;
    QString _directory;
    std::array<Working, 2> _working;
    Precondition _precondition;
};

/// The user-facing sentence.
QString message(const LayoutStore::StorageError& error);
QString message(const LayoutStore::Error& error);

} // namespace tessellar
