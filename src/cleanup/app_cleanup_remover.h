#pragma once

#include "cleanup/launch_agents.h"
#include "cleanup/privileged/admin_mover.h"
#include "cleanup/related_file.h"
#include "cleanup/running_applications.h"
#include "cleanup/trash.h"
#include "cleanup/waiting.h"

#include <functional>

namespace tessellar {

/// One line of the report on a removal; one per item.
struct CleanupLogLine {
    enum class Kind { moved, failed, noted };
    Kind kind = Kind::moved;
    QString path;
    QString text; ///< starts with the item's name

    bool operator==(const CleanupLogLine&) const = default;
};

struct CleanupRemovalProgress {
    qsizetype done = 0;
    qsizetype total = 0;
    QString name;                  ///< of the current item; empty at the end
    bool isWaitingForQuit = false; ///< of the application named `name`

    /// One sentence for the user.
    QString text() const;

    bool operator==(const CleanupRemovalProgress&) const = default;
};

/// The outcome for one item; also what is needed to restore it.
struct CleanupItemResult {
    RelatedFile item;
    std::optional<QString> trashedPath; ///< its path in the Trash, if known
    bool isByHelper = false;            ///< moved by the helper, which must also restore it
    std::optional<QString> failure;     ///< one sentence
    /// Can never be restored: the Trash was searched completely and lacks it.
    bool isGone = false;

    bool isMoved() const { return !failure; }
    bool isBundle() const { return item.match == RelatedFileMatch::appBundle; }
    bool operator==(const CleanupItemResult&) const = default;
};

struct CleanupRemovalResult {
    QList<CleanupItemResult> items; ///< in order of removal, the bundle last
    QList<CleanupLogLine> log;
    QStringList stillRunning; ///< names; if not empty, nothing was moved

    bool operator==(const CleanupRemovalResult&) const = default;
};

/// Moves the chosen items to the Trash and restores them.
///
/// Every item is checked before anything moves, and again just before its turn: items whose device,
/// inode or type differ from what was reviewed are left alone, as are protected paths, shallow paths
/// and mount points. One failure does not stop the others.
///
/// Reports of the Trash and the helper are verified against the actual locations, as an interrupted
/// operation, or one whose reply was lost, may still have moved the item.
class AppCleanupRemover {
public:
    using Progress = std::function<void(const CleanupRemovalProgress&)>;
    /// Records what is about to move, before the destinations are known. On an error, nothing moves.
    using Note = std::function<std::expected<void, QString>(const QList<CleanupItemResult>&)>;

    struct Parts {
        const FileSystem& files;
        QString home;
        Trash& trash;
        RunningApplications& running;
        AdminMover& administrator;
        LaunchAgents* agents = nullptr; ///< null where there are no launch agents to stop
        /// Where to search for items with unknown location, likeliest first.
        QStringList trashFolders = {};
        Wait wait = interruptibleSleep;
    };

    explicit AppCleanupRemover(Parts parts) : _parts(std::move(parts)) {}

    /// Blocks; call on a worker. If stopped, items not yet moved fail.
    CleanupRemovalResult remove(const CleanupApplication& application, const QList<RelatedFile>& items,
                                std::stop_token stop, const Progress& progress = {},
                                const Note& note = {});

    /// Restores the items of a removal, the bundle first; searches the Trash for those recorded without
    /// a location. Items that could not be restored have a failure; retrying is pointless only if
    /// `isGone`.
    QList<CleanupItemResult> restore(const CleanupApplication& application,
                                     const QList<CleanupItemResult>& removed, std::stop_token stop);

    /// Why an item must not be moved now; nullopt if it may.
    std::optional<QString> objection(const CleanupApplication& application,
                                     const RelatedFile& item) const;

private:
    bool isWithoutLinks(const QString& path) const;
    /// Why the application could not be quit; nullopt once it has.
    std::optional<QString> quit(const CleanupApplication& application, std::stop_token stop,
                                const std::function<void()>& waits);
    void moveLinks(const QList<CleanupItemResult*>& items, const CleanupApplication& application,
                   std::stop_token stop);
    void moveByTrash(const CleanupApplication& application, QList<CleanupItemResult*> items,
                     std::stop_token stop);
    void moveByHelper(const CleanupApplication& application, QList<CleanupItemResult*> items,
                      std::stop_token stop);
    void settle(CleanupItemResult& result, const TrashResult& outcome) const;
    bool isItem(const std::optional<QString>& path, const RelatedFile& item) const;
    enum class Presence { present, gone, unknown };
    /// Searches the Trash for an item and updates its location. `gone` only if every possible place was
    /// read completely: a Trash that is unreadable or on an unmounted volume proves nothing.
    Presence findInTrash(std::optional<QString>& trashedPath, const RelatedFile& item) const;
    bool isStagingBeside(const QString& path) const;
    std::optional<QString> placeInTrash(const RelatedFile& item) const;
    /// The first existing Trash folder; creates the likeliest if there is none.
    QString trashFolder() const;

    Parts _parts;
};

} // namespace tessellar
