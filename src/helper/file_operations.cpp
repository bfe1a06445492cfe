#include "helper/file_operations.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace tessellar {
namespace {

using Status = PrivilegedFileOutcomeStatus;

const QString notAllowed = QStringLiteral("The administrator helper does not touch this place.");
const QString notApproved = QStringLiteral("It was not said which item was approved.");
const QString notRecorded = QStringLiteral("The administrator helper could not record the move.");
const QString noTrash = QStringLiteral("Your Trash could not be opened.");
const QString stopped = QStringLiteral("The removal was stopped.");
const QString notTaken = QStringLiteral("The administrator helper did not take this item.");

constexpr int mostNames = 1'000;
constexpr qsizetype longestStem = 200;

PrivilegedFileOperationOutcome failed(const QString& sentence) {
    return {.status = Status::failed, .message = sentence};
}

/// "Agent.plist", "Agent 2.plist", …
QByteArray numbered(const QByteArray& name, int number) {
    if (number == 1)
        return name;
    const qsizetype dot = name.lastIndexOf('.');
    const QByteArray stem = dot > 0 ? name.first(dot) : name;
    const QByteArray end = dot > 0 && name.size() - dot < 32 ? name.sliced(dot) : QByteArray();
    return stem.left(longestStem) + ' ' + QByteArray::number(number) + end;
}

bool isFree(int folder, const QByteArray& name) {
    struct stat status {};
    return ::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
}

} // namespace

std::expected<HeldItem, QString> FileOperations::hold(const PrivilegedFileOperationItem& item) const {
    const auto place = namedPlace(item.source);
    if (!place || !isAllowed(*place))
        return std::unexpected(notAllowed);
    if (!item.approved)
        return std::unexpected(notApproved);
    return _files.hold(*place, *item.approved);
}

QList<PrivilegedFileOperationOutcome>
FileOperations::perform(const PrivilegedFileOperationRequest& request, const HelperClient& client,
                        std::stop_token stop) {
    const std::scoped_lock lock(_mutex);
    switch (request.operation) {
    case PrivilegedFileOperationKind::healthCheck:
        break;
    case PrivilegedFileOperationKind::moveToTrash:
        return moveToTrash(request.items, client, stop);
    case PrivilegedFileOperationKind::restoreFromTrash:
        return restore(request.items, client, stop);
    case PrivilegedFileOperationKind::remove: {
        QList<Outcome> outcomes;
        for (const PrivilegedFileOperationItem& item : request.items) {
            const auto held = stop.stop_requested()
                                  ? std::expected<HeldItem, QString>(std::unexpected(stopped))
                                  : hold(item);
            const auto removed = held ? ConfinedFiles::remove(*held, stop)
                                      : std::expected<void, QString>(std::unexpected(held.error()));
            outcomes.append(removed ? Outcome{.status = Status::removed} : failed(removed.error()));
        }
        return outcomes;
    }
    }
    return {};
}

QList<PrivilegedFileOperationOutcome>
FileOperations::moveToTrash(const QList<PrivilegedFileOperationItem>& items, const HelperClient& client,
                            std::stop_token stop) {
    Descriptor trash;
    QString trashPath;
    for (const QString& folder : client.trashFolders) {
        const auto place = namedPlace(folder);
        auto opened = place ? _files.folder(place->folderPath() + '/' + place->name, client.user)
                            : std::unexpected(noTrash);
        if (opened) {
            trash = *std::move(opened);
            trashPath = folder;
            break;
        }
    }
    auto records = _journal.read();
    QList<Outcome> outcomes;
    for (const PrivilegedFileOperationItem& item : items) {
        if (!trash || !records || stop.stop_requested()) {
            outcomes.append(failed(!trash ? noTrash : !records ? notRecorded : stopped));
            continue;
        }
        const auto held = hold(item);
        if (!held) {
            outcomes.append(failed(held.error()));
            continue;
        }
        Outcome outcome = failed(noTrash);
        for (int number = 1; number <= mostNames; ++number) {
            const QByteArray name = numbered(held->name, number);
            if (!isFree(trash.get(), name))
                continue;
            const QString destination = trashPath + u'/' + QString::fromUtf8(name);
            records->append({.user = client.user,
                             .original = item.source,
                             .trashed = destination,
                             .identity = held->taken.identity,
                             .owner = held->taken.owner,
                             .mode = held->taken.mode});
            if (!_journal.write(*records)) {
                records->removeLast();
                outcome = failed(notRecorded);
                break;
            }
            const auto moved = ConfinedFiles::move(*held, trash.get(), name);
            if (moved) {
                outcome = {.status = Status::moved, .destination = destination};
                break;
            }
            records->removeLast();
            outcome = failed(moved.error().sentence);
            if (!moved.error().nameTaken)
                break;
        }
        outcomes.append(outcome);
    }
    if (records &&
        std::ranges::any_of(outcomes, [](const Outcome& o) { return o.status == Status::failed; }))
        (void)_journal.write(*records); // without what was not moved after all
    return outcomes;
}

QList<PrivilegedFileOperationOutcome>
FileOperations::restore(const QList<PrivilegedFileOperationItem>& items, const HelperClient& client,
                        std::stop_token stop) {
    auto records = _journal.read();
    QList<Outcome> outcomes;
    for (const PrivilegedFileOperationItem& item : items)
        outcomes.append(!records                ? failed(notRecorded)
                        : stop.stop_requested() ? failed(stopped)
                                                : restoreOne(item, client, *records));
    if (records)
        (void)_journal.write(*records);
    return outcomes;
}

PrivilegedFileOperationOutcome FileOperations::restoreOne(const PrivilegedFileOperationItem& item,
                                                          const HelperClient& client,
                                                          QList<MoveRecord>& records) {
    const auto record = std::ranges::find_if(records, [&](const MoveRecord& r) {
        return r.user == client.user && r.trashed == item.source && r.original == item.destination;
    });
    if (record == records.end())
        return failed(notTaken);
    const auto from = namedPlace(record->trashed);
    const auto to = namedPlace(record->original);
    if (!from || !to || !isAllowed(*to))
        return failed(notAllowed);
    // By the number that the volume has now: it may have been another when the item was taken.
    const auto around = _files.folder(from->folderPath());
    struct stat status {};
    if (!around || ::fstat(around->get(), &status) != 0)
        return failed(around ? noTrash : around.error());
    TakenItem taken = record->taken();
    taken.identity.device = static_cast<std::uint64_t>(status.st_dev);
    const auto held = _files.hold(*from, taken.identity);
    if (!held)
        return failed(held.error());
    // Who may write to the Trash could put a file of their own under the same number: not one of the
    // same owner, though.
    if (held->taken != taken)
        return failed(notTaken);
    const auto folder = _files.folder(to->folderPath());
    if (!folder)
        return failed(folder.error());
    if (const auto moved = ConfinedFiles::move(*held, folder->get(), to->name); !moved)
        return failed(moved.error().sentence);
    const QString original = record->original;
    records.erase(record);
    return {.status = Status::moved, .destination = original};
}

} // namespace tessellar
