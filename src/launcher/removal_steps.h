#pragma once

#include "launcher/cleanup_record.h"
#include "launcher/cleanup_tools.h"

namespace tessellar {

/// The result of moving a removal's items to or from the Trash.
struct RemovalStep {
    CleanupRecord record; ///< as saved
    QList<CleanupLogLine> log;
    QString stillOpen; ///< the name of a running application, because of which nothing was moved
    std::optional<QString> failure; ///< why the whole step failed
};

/// Moves a removal's items together with its record, on a worker. The record is on the disk before
/// anything moves, and updated afterwards, so a killed launcher loses nothing.
class RemovalSteps {
public:
    /// `tag` makes the name of a damaged record file that is set aside unique.
    RemovalSteps(CleanupTools& tools, const QUuid& tag) : _tools(tools), _store(tools.machine, tag) {}

    /// Moves items to the Trash. With `mayQuit`, a running application is asked to quit.
    RemovalStep take(CleanupRecord record, const QList<RelatedFile>& items, bool mayQuit,
                     std::stop_token stop, const AppCleanupRemover::Progress& progress = {}) const;
    /// Redoes an undone removal, all or nothing.
    RemovalStep takeAgain(const QUuid& removal, std::stop_token stop) const;
    /// Restores what is still in the Trash. With `onlyWithBundle`, nothing is restored unless the
    /// bundle is. Items that fail may be retried later, unless they are certainly gone.
    RemovalStep bringBack(CleanupRecord record, bool onlyWithBundle, std::stop_token stop) const;
    /// Restores a removal, `onlyWithBundle`; `path` is the bundle's original path.
    RemovalStep bringBack(const QUuid& removal, const QString& path, std::stop_token stop) const;

    /// The given removal, or the last one with items in the Trash.
    std::expected<std::optional<CleanupRecord>, QString>
    find(const std::optional<QUuid>& removal) const;
    /// Latest first.
    std::expected<QList<CleanupRecord>, QString> all() const;

private:
    void write(const CleanupRecord& record) const;

    CleanupTools& _tools;
    CleanupRecordStore _store;
};

} // namespace tessellar
