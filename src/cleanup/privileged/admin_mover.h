#pragma once

#include "privileged/records.h"

#include <stop_token>

namespace tessellar {

/// An item to move with administrator's rights.
struct AdminMove {
    QString path;
    FileIdentity identity;
    std::optional<QString> destination = {}; ///< where to restore it to
    std::optional<QString> application = {}; ///< its name, for the authorization prompt

    bool operator==(const AdminMove&) const = default;
};

/// The outcome for one item.
struct AdminMoveOutcome {
    QString path;
    PrivilegedFileOutcomeStatus status = PrivilegedFileOutcomeStatus::failed;
    std::optional<QString> message;
    std::optional<QString> destination; ///< its current path

    bool operator==(const AdminMoveOutcome&) const = default;
};

/// Moves items that need administrator's rights. One outcome per item, in order. Blocks.
class AdminMover {
public:
    virtual ~AdminMover() = default;
    virtual QList<AdminMoveOutcome> moveToTrash(const QList<AdminMove>& items,
                                                std::stop_token stop) = 0;
    virtual QList<AdminMoveOutcome> restoreFromTrash(const QList<AdminMove>& items,
                                                     std::stop_token stop) = 0;
    /// Whether it responds. If so, moves interrupted in an earlier run have been completed.
    virtual bool isAvailable(std::stop_token stop) = 0;
};

} // namespace tessellar
