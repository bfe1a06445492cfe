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
    /// Where the user's Trash may be, the likelier first, as paths under the root.
    QStringList trashFolders;
};

/// The four operations. Each item has its own outcome; whatever happens to one, the others are worked
/// on, until a stop is requested. Any thread; one request at a time is carried out.
///
/// An item goes from its place into the helper's own folder and from there to where it is to be. What
/// was cut short on the way is brought to its end before anything else is done.
class FileOperations {
public:
    FileOperations(const QByteArray& hostRoot, const QByteArray& journalFolder)
        : _files(hostRoot), _journalFolder(journalFolder) {}

    QList<PrivilegedFileOperationOutcome> perform(const PrivilegedFileOperationRequest& request,
                                                  const HelperClient& client,
                                                  std::stop_token stop = {});
    /// Brings to its end what a killed helper left on the way.
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
    /// From the helper's folder to where the record says; else back, as long as that is as safe.
    std::expected<void, QString> deliver(const Staging& staging, MoveRecord& record,
                                         std::stop_token stop) const;
    std::expected<void, QString> toTrash(const Staging& staging, MoveRecord& record) const;
    std::expected<void, QString> toPlace(const Staging& staging, MoveRecord& record,
                                         bool onlyIfOurs) const;
    std::expected<TakenItem, int> lookAt(const QString& path) const;

    const ConfinedFiles _files;
    const QByteArray _journalFolder;
    std::mutex _mutex;
};

} // namespace tessellar
