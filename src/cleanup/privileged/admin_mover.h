#pragma once

#include "privileged/records.h"

#include <stop_token>

namespace tessellar {

/// One item that an administrator's rights are to move.
struct AdminMove {
    QString path;
    FileIdentity identity;
    std::optional<QString> destination = {}; ///< to restore to
    std::optional<QString> application = {}; ///< its name, for the administrator's prompt

    bool operator==(const AdminMove&) const = default;
};

/// What became of it.
struct AdminMoveOutcome {
    QString path;
    PrivilegedFileOutcomeStatus status = PrivilegedFileOutcomeStatus::failed;
    std::optional<QString> message;
    std::optional<QString> destination; ///< where it is now

    bool operator==(const AdminMoveOutcome&) const = default;
};

/// Moves what the user's own rights cannot. One outcome for each item, in order. Blocks.
class AdminMover {
public:
    virtual ~AdminMover() = default;
    virtual QList<AdminMoveOutcome> moveToTrash(const QList<AdminMove>& items,
                                                std::stop_token stop) = 0;
    virtual QList<AdminMoveOutcome> restoreFromTrash(const QList<AdminMove>& items,
                                                     std::stop_token stop) = 0;
    /// Whether it answers. What an earlier run of it left on the way has arrived by then.
    virtual bool isThere(std::stop_token stop) = 0;
};

} // namespace tessellar
