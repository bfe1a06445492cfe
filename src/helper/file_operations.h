#pragma once

#include "helper/move_journal.h"
#include "helper/staging.h"

#include <mutex>
#include <span>
#include <stop_token>

namespace tessellar {

/// The user on whose behalf the helper works.
struct HelperClient {
    std::uint32_t user = 0;
    /// Candidates for the user's Trash, likeliest first, as paths under the root.
    QStringList trashFolders;
};

/// The helper's operations. Items are processed independently, each with its own outcome, until a stop
/// is requested. Thread-safe; requests are serialized.
///
/// Every item passes through the helper's own staging folder on its way. Interrupted moves are
/// completed before any new one starts.
class FileOperations {
public:
    FileOperations(const QByteArray& hostRoot, const QByteArray& journalFolder)
        : _files(hostRoot), _journalFolder(journalFolder) {}

    QList<PrivilegedFileOperationOutcome> perform(const PrivilegedFileOperationRequest& request,
                                                  const HelperClient& client,
                                                  std::stop_token stop = {});
    /// Completes the moves that a killed helper left unfinished.
    void settle();

private:
    using Kind = PrivilegedFileOperationKind;
    using Outcome = PrivilegedFileOperationOutcome;
    using Item = PrivilegedFileOperationItem;
    struct Move {
        HeldItem item;
        MoveRecord record;
        Outcome outcome;
    };

    void settle(MoveJournal& journal) const;
    QList<Outcome> performSome(Kind kind, std::span<const Item> items, const HelperClient& client,
                               MoveJournal& journal, std::stop_token stop) const;
    std::expected<Move, QString> planRemoval(Kind kind, const Item& item,
                                             const HelperClient& client) const;
    std::expected<Move, QString> planReturn(const Item& item, const HelperClient& client,
                                            const QList<MoveRecord>& records) const;
    void carryOut(Move& move, MoveJournal& journal, std::stop_token stop) const;
    /// Moves from staging to the record's destination; if that fails, back, provided that it is just as
    /// safe.
    std::expected<void, QString> deliver(const Staging& staging, MoveRecord& record,
                                         std::stop_token stop) const;
    std::expected<void, QString> toTrash(const Staging& staging, MoveRecord& record) const;
    std::expected<void, QString> toPlace(const Staging& staging, MoveRecord& record,
                                         bool onlyIfOurs) const;
    std::expected<ItemStatus, int> statusAt(const QString& path) const;

    const ConfinedFiles _files;
    const QByteArray _journalFolder;
    std::mutex _mutex;
};

} // namespace tessellar
