#pragma once

#include "cleanup/launch_agents.h"
#include "cleanup/privileged/admin_mover.h"
#include "cleanup/related_file.h"
#include "cleanup/running_applications.h"
#include "cleanup/trash.h"
#include "cleanup/waiting.h"

#include <functional>

namespace tessellar {

/// One line of what the user is told of a removal; every item has its own.
struct CleanupLogLine {
    enum class Kind { moved, failed, noted };
    Kind kind = Kind::moved;
    QString path;
    QString text; ///< begins with the item's name

    bool operator==(const CleanupLogLine&) const = default;
};

struct CleanupRemovalProgress {
    qsizetype done = 0;
    qsizetype total = 0;
    QString name;                  ///< of what is being worked on; empty at the end
    bool isWaitingForQuit = false; ///< of the application of this name

    /// What people are told meanwhile.
    QString text() const;

    bool operator==(const CleanupRemovalProgress&) const = default;
};

/// What became of one item; what restores it.
struct CleanupItemResult {
    RelatedFile item;
    std::optional<QString> trashedPath; ///< where it lies in the Trash, when that is known
    bool isByHelper = false;            ///< the helper took it, and only the helper puts it back
    std::optional<QString> failure;     ///< one sentence
    /// It was not put back, and will never be: its Trash was looked through, and it is not there.
    bool isGone = false;

    bool isMoved() const { return !failure; }
    bool isBundle() const { return item.match == RelatedFileMatch::appBundle; }
    bool operator==(const CleanupItemResult&) const = default;
};

struct CleanupRemovalResult {
    QList<CleanupItemResult> items; ///< in the order of removal: the bundle last
    QList<CleanupLogLine> log;
    QStringList stillRunning; ///< names; when there are any, nothing was moved

    bool operator==(const CleanupRemovalResult&) const = default;
};

/// Moves chosen items to the Trash and brings them back.
///
/// Each item is looked at before anything moves, and again right before its turn: what has another
/// device, inode or type than was reviewed stays, and so does what is protected, shallow or a mount
/// point. One failure stops nothing else.
///
/// What a Trash or the helper says of an item is compared with where the item is: one that was cut
/// short, or whose answer was lost, may have moved it all the same.
class AppCleanupRemover {
public:
    using Progress = std::function<void(const CleanupRemovalProgress&)>;
    /// Writes down what is about to move, without where to. Nothing moves after an error.
    using Note = std::function<std::expected<void, QString>(const QList<CleanupItemResult>&)>;

    struct Parts {
        const FileSystem& files;
        QString home;
        Trash& trash;
        RunningApplications& running;
        AdminMover& administrator;
        LaunchAgents* agents = nullptr; ///< none where there are no agents to end
        /// Where items are looked for that nobody saw arrive, the likelier first.
        QStringList trashFolders = {};
        Wait wait = waitForReal;
    };

    explicit AppCleanupRemover(Parts parts) : _parts(std::move(parts)) {}

    /// Blocks; for a worker. When stopped, what was not moved by then fails.
    CleanupRemovalResult remove(const CleanupApplication& application, const QList<RelatedFile>& items,
                                std::stop_token stop, const Progress& progress = {},
                                const Note& note = {});

    /// Puts back what a removal moved, the bundle first; what was written down without its place in the
    /// Trash is looked for there. The results say of each item why it did not come back; only one that
    /// is called gone need not be tried again.
    QList<CleanupItemResult> restore(const CleanupApplication& application,
                                     const QList<CleanupItemResult>& removed, std::stop_token stop);

    /// Why an item may not be moved now, or nothing.
    std::optional<QString> objection(const CleanupApplication& application,
                                     const RelatedFile& item) const;

private:
    bool isWithoutLinks(const QString& path) const;
    /// Why the application is not closed, or nothing.
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
    enum class Sighting { there, gone, unseen };
    /// Looks for an item in the Trash, and says where it is now. Gone only where all places that it may
    /// be in were seen whole: a Trash that cannot be opened or lies on a volume that is not there says
    /// nothing.
    Sighting lookInTrash(std::optional<QString>& trashedPath, const RelatedFile& item) const;
    bool isStagingBeside(const QString& path) const;
    std::optional<QString> placeInTrash(const RelatedFile& item) const;
    /// The first of the Trash folders that is there; the likeliest is made where none is.
    QString trashFolder() const;

    Parts _parts;
};

} // namespace tessellar
