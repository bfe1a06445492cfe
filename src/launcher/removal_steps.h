#pragma once

#include "launcher/cleanup_record.h"
#include "launcher/cleanup_tools.h"

namespace tessellar {

/// What one step did to a removal: took its items, or brought them back.
struct RemovalStep {
    CleanupRecord record; ///< as it is written down now
    QList<CleanupLogLine> log;
    QString stillOpen;              ///< the name of an application because of which nothing moved
    std::optional<QString> failure; ///< why the whole counts as not done
};

/// Moves a removal's items together with its record, for a worker. The record is on the disk before
/// anything moves, and again when all has moved: a launcher that is killed meanwhile loses nothing.
class RemovalSteps {
public:
    /// `tag` tells a damaged file that is moved aside from others.
    RemovalSteps(CleanupTools& tools, const QUuid& tag) : _tools(tools), _store(tools.machine, tag) {}

    /// Moves items to the Trash. With `mayAsk` an application that is open is asked to quit.
    RemovalStep take(CleanupRecord record, const QList<RelatedFile>& items, bool mayAsk,
                     std::stop_token stop, const AppCleanupRemover::Progress& progress = {}) const;
    /// The same again with what was brought back: all of it, or nothing.
    RemovalStep takeAgain(const QUuid& removal, std::stop_token stop) const;
    /// Brings back what still lies in the Trash. With `asOne`, nothing else comes back when the bundle
    /// does not. What does not come back now may do so later, unless it is certainly gone.
    RemovalStep bringBack(CleanupRecord record, bool asOne, std::stop_token stop) const;
    /// As one, what the removal of this identifier took; the bundle was at `path`.
    RemovalStep bringBack(const QUuid& removal, const QString& path, std::stop_token stop) const;

    /// The removal of this identifier, or the last one of which something lies in the Trash.
    std::expected<std::optional<CleanupRecord>, QString>
    find(const std::optional<QUuid>& removal) const;
    /// All of them, the last first.
    std::expected<QList<CleanupRecord>, QString> all() const;

private:
    void write(const CleanupRecord& record) const;

    CleanupTools& _tools;
    CleanupRecordStore _store;
};

} // namespace tessellar
