#pragma once

#include "helper/confined_files.h"
#include "helper/move_journal.h"

#include <mutex>
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
class FileOperations {
public:
    FileOperations(const QByteArray& hostRoot, const QByteArray& journalFolder)
        : _files(hostRoot), _journal(journalFolder) {}

    QList<PrivilegedFileOperationOutcome> perform(const PrivilegedFileOperationRequest& request,
                                                  const HelperClient& client,
                                                  std::stop_token stop = {});

private:
    using Outcome = PrivilegedFileOperationOutcome;

    QList<Outcome> moveToTrash(const QList<PrivilegedFileOperationItem>& items,
                               const HelperClient& client, std::stop_token stop);
    QList<Outcome> restore(const QList<PrivilegedFileOperationItem>& items, const HelperClient& client,
                           std::stop_token stop);
    Outcome restoreOne(const PrivilegedFileOperationItem& item, const HelperClient& client,
                       QList<MoveRecord>& records);
    std::expected<HeldItem, QString> hold(const PrivilegedFileOperationItem& item) const;

    const ConfinedFiles _files;
    const MoveJournal _journal;
    std::mutex _mutex;
};

} // namespace tessellar
