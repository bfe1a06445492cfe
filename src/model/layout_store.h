#pragma once

#include "model/launcher_window_mode.h"
#include "model/layout_document.h"
#include "platform/background_file.h"
#include "platform/machine.h"
#include "platform/signal.h"

#include <array>
#include <expected>
#include <functional>
#include <map>
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
/// A working file that exists but cannot be used blocks its mode: nothing is written until a reset, or
/// until a later load finds a usable file or none. Edits are saved 300 ms after the last one, encoded
/// and written on a worker. Failed saves are kept in memory and retried at the next edit, `flush` or
/// `startPendingSave`.
///
/// Main thread only. The two modes share nothing but the folder.
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
        int version = 0; ///< the unsupported version

        bool operator==(const StorageError&) const = default;
    };
    using Error = std::variant<StorageError, FileError>;

    struct Missing {
        bool operator==(const Missing&) const = default;
    };
    struct Failed {
        Error error;
        QString detail;           ///< for the log: what was wrong, and where
        bool isTransient = false; ///< a read error, perhaps temporary; the contents are unknown
    };
    using LoadResult = std::variant<Document, Missing, Failed>;

    static constexpr std::chrono::milliseconds saveDelay{300};

    /// In the user's Application Support: the folder named by the application's identifier, or
    /// "com.quillane.app" if there is none.
    static QString defaultDirectory(const Places& places,
                                    const std::optional<QString>& identifier = applicationIdentifier);

    static QString workingPath(const QString& directory, LauncherWindowMode mode);

    /// Creates the folder; if that fails, the first read or write reports it.
    LayoutStore(const Machine& machine, QString directory);

    const QString& directory() const { return _directory; }

    // The working layouts. Written in the current version.
    LoadResult load(LauncherWindowMode mode);
    /// As `load`, on a worker; `done` is called on the main thread. Nothing is saved until then. If a
    /// blocked mode is reset meanwhile, the reset wins.
    [[nodiscard]] Task loadInBackground(LauncherWindowMode mode, std::function<void(LoadResult)> done);
    void scheduleSave(LauncherWindowMode mode, const Document& document);
    /// Starts scheduled and failed saves at once, without blocking.
    void startPendingSave(LauncherWindowMode mode) { handOver(mode); }
    /// As `saveNow`, without blocking: `done` is called on the main thread, unless the store is
    /// destroyed first. If the mode is blocked, does nothing and never calls `done`.
    void saveInBackground(LauncherWindowMode mode, const Document& document, BackgroundFile::Done done);
    /// A mode's save as one part of a longer job on the saving lane.
    struct Part {
        using Call = std::function<BackgroundFile::Result()>;
        Call earlier; ///< to be called first: completes what was to be saved before
        Call write;
    };
    /// Nothing else is saved in the mode until `endParts`; the functions must be called before that.
    /// The mode must not be blocked.
    Part beginPart(LauncherWindowMode mode, const Document& document);
    /// Ends all parts of a job. After a failure, the documents are what is shown instead; they replace
    /// anything scheduled meanwhile.
    void endParts(const std::map<LauncherWindowMode, Document>& parts, bool areWritten);
    /// Blocks until the document is on the disk. `isEdit` as for `hasUnsavedEdits`.
    std::expected<void, Error> saveNow(LauncherWindowMode mode, const Document& document,
                                       bool isEdit = false);
    /// Moves the working file to the backups and unblocks the mode.
    std::expected<void, FileError> reset(LauncherWindowMode mode);
    bool isWriteBlocked(LauncherWindowMode mode) const { return working(mode).isBlocked; }
    /// The path of the backup made when the last load had to drop a folder's contents.
    const std::optional<QString>& lossyCopy(LauncherWindowMode mode) const {
        return working(mode).lossyCopy;
    }
    /// Writes scheduled and failed saves of both modes and blocks until they are on the disk. Returns
    /// the first error.
    std::expected<void, Error> flush();
    /// Numbers a mode's states in the order in which they were to be saved; `revision` is the latest.
    using Revision = std::uint64_t;
    Revision revision(LauncherWindowMode mode) const { return working(mode).revision; }
    /// A save ended. Success covers this and all earlier revisions; a failure is reported only if no
    /// later save is under way.
    Signal<LauncherWindowMode, Revision, BackgroundFile::Result> saveEnded;
    /// True while a scheduled save is not on the disk. Failures of `saveNow` count only if it was told
    /// that the document holds edits: otherwise its caller has been told.
    bool hasUnsavedEdits() const;

    /// Another program changed a working file since the store read or wrote it. That version was backed
    /// up at this path before being overwritten.
    Signal<LauncherWindowMode, QString> foreignVersionKept;

    /// What must be on the disk before a mode's working file. Called on the main thread when a save
    /// starts; the function it returns is called on the saving lane before the file is written, and if
    /// it fails, so does the save.
    using Precondition = std::function<std::function<BackgroundFile::Result()>(LauncherWindowMode)>;
    void setPrecondition(Precondition precondition) { _precondition = std::move(precondition); }

    struct Backup {
        QString path;
        std::function<BackgroundFile::Result()> write; ///< callable from any thread
    };
    Backup backup(const QString& reason, const std::optional<QString>& sourceDatabasePath,
                  const Document& document);

    SavedArrangements arrangements(LauncherWindowMode mode) const;

private:
    struct Unsaved {
        Document document;
        bool isEdit = false;
        std::optional<BackgroundFile::Ticket> ticket; ///< set once the save has started
    };
    struct Read;
    static Read read(BackgroundFile& file);
    LoadResult accept(LauncherWindowMode mode, Read read);
    /// One mode's working file.
    struct Working {
        Working(const Machine& machine, const QString& directory, LauncherWindowMode mode);
        /// The outcome of the pending state's save; nullopt until it has finished.
        std::optional<BackgroundFile::Result> outcome() const;
        bool isSaved() const { return outcome() == BackgroundFile::Result(); }

        std::shared_ptr<BackgroundFile> file;  ///< shared with a running load
        std::shared_ptr<OverwriteGuard> guard; ///< shared with running work
        bool isBlocked = false;
        std::optional<QString> lossyCopy;
        std::optional<Unsaved> unsaved;
        Revision revision = 0;
        BackgroundFile::Ticket handedOver = 0; ///< the last ticket
        std::optional<Revision> part;          ///< being written by a longer job
        bool isDue = false;                    ///< handing over has to wait for that
        Timer pendingSave;
    };

    Working& working(LauncherWindowMode mode) { return _working[static_cast<std::size_t>(mode)]; }
    const Working& working(LauncherWindowMode mode) const {
        return _working[static_cast<std::size_t>(mode)];
    }
    QString stampedName(const QString& prefix);
    void setUnsaved(LauncherWindowMode mode, const Document& document, bool isEdit);
    void handOver(LauncherWindowMode mode);
    /// To be called on the saving lane.
    BackgroundFile::Encode encoding(LauncherWindowMode mode, const Document& document);
    void tellForeignVersion(LauncherWindowMode mode);

    const Machine& _machine;
    QString _directory;
    std::array<Working, 2> _working;
    Precondition _precondition;
};

/// One sentence for the user.
QString message(const LayoutStore::StorageError& error);
QString message(const LayoutStore::Error& error);

} // namespace tessellar
