#include "helper/file_operations.h"

#include "platform/directory_reader.h"
#include "platform/texts.h"
#include "privileged/numbered_name.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace tessellar {
namespace {

using Status = PrivilegedFileOutcomeStatus;

const QString notAllowed =
    QLatin1StringView(Texts::noop("The administrator helper does not touch this place."));
const QString notApproved = QLatin1StringView(Texts::noop("It was not said which item was approved."));
const QString notRecorded =
    QLatin1StringView(Texts::noop("The administrator helper could not record the move."));
const QString noTrash = QLatin1StringView(Texts::noop("Your Trash could not be opened."));
const QString stopped = QLatin1StringView(Texts::noop("The removal was stopped."));
const QString notTaken =
    QLatin1StringView(Texts::noop("The administrator helper did not take this item."));

constexpr int mostNames = 1'000;
/// The size of a batch that is journaled together, because flushing is slow; each item holds two
/// descriptors.
constexpr std::size_t itemsTogether = 32;

PrivilegedFileOperationOutcome failed(const QString& sentence) {
    return {.status = Status::failed, .message = sentence};
}

QByteArray nameOf(const MoveRecord& record) { return QByteArray::number(quint64(record.id)); }

QByteArray pathOf(const NamedPlace& place) { return place.folderPath() + '/' + place.name; }

/// True if nobody else can change what is in a folder.
bool isOursAlone(int folder) {
    struct stat status {};
    return ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() && (status.st_mode & 022) == 0;
}

/// The contents of the users' Trashes, each listed once.
class TrashContents {
public:
    explicit TrashContents(const ConfinedFiles& files) : _files(files) {}

    /// False if the Trash could not be listed completely.
    bool areWithout(const MoveRecord& record) {
        const auto place = namedPlace(record.trashed.value_or(QString()));
        if (!place)
            return false;
        const auto [known, isNew] = _items.try_emplace(place->folderPath());
        if (isNew)
            known->second = list(place->folderPath());
        return known->second && std::ranges::none_of(*known->second, [&](const ItemStatus& item) {
                   return record.isOf(item);
               });
    }

private:
    std::optional<std::vector<ItemStatus>> list(const QByteArray& path) const {
        const auto folder = _files.folder(path);
        if (!folder)
            return std::nullopt;
        std::vector<ItemStatus> items;
        DirectoryReader reader;
        reader.begin(folder->get());
        while (true) {
            const auto entries = reader.next();
            if (!entries)
                return std::nullopt;
            if (entries->empty())
                return items;
            for (const DirectoryReader::Entry& entry : *entries) {
                const auto item = itemStatusAt(folder->get(), entry.name);
                if (item)
                    items.push_back(*item);
                else if (item.error() != ENOENT)
                    return std::nullopt;
            }
        }
    }

    const ConfinedFiles& _files;
    std::map<QByteArray, std::optional<std::vector<ItemStatus>>> _items;
};

} // namespace

void FileOperations::settle() {
    const std::unique_lock lock(_mutex, std::try_to_lock);
    if (!lock)
        return; // whoever holds the lock has already settled
    if (auto journal = MoveJournal::open(_journalFolder))
        settle(*journal);
}

QList<PrivilegedFileOperationOutcome>
FileOperations::perform(const PrivilegedFileOperationRequest& request, const HelperClient& client,
                        std::stop_token stop) {
    if (request.operation == Kind::healthCheck)
        return {};
    const std::scoped_lock lock(_mutex);
    auto journal = MoveJournal::open(_journalFolder);
    if (!journal)
        return QList<Outcome>(request.items.size(), failed(notRecorded));
    settle(*journal);
    QList<Outcome> outcomes;
    for (std::span<const Item> left = request.items; !left.empty();) {
        const auto some = left.first(std::min(left.size(), itemsTogether));
        outcomes += performSome(request.operation, some, client, *journal, stop);
        left = left.subspan(some.size());
    }
    return outcomes;
}

QList<PrivilegedFileOperationOutcome>
FileOperations::performSome(Kind kind, std::span<const Item> items, const HelperClient& client,
                            MoveJournal& journal, std::stop_token stop) const {
    std::vector<std::expected<Move, QString>> moves;
    QList<MoveRecord> steps;
    for (const Item& item : items) {
        auto move = stop.stop_requested()            ? std::unexpected(stopped)
                    : kind == Kind::restoreFromTrash ? planReturn(item, client, journal.records())
                                                     : planRemoval(kind, item, client);
        if (move) {
            if (kind != Kind::restoreFromTrash)
                move->record.id = journal.freshId();
            move->record.staged =
                Staging::path(*namedPlace(move->record.original), nameOf(move->record));
            steps.append(move->record);
        }
        moves.push_back(std::move(move));
    }
    // On the disk before the first item moves.
    const bool isRecorded = steps.isEmpty() || journal.append(steps);
    steps.clear();
    QList<Outcome> outcomes;
    for (auto& move : moves) {
        if (!move || !isRecorded) {
            outcomes.append(failed(move ? notRecorded : move.error()));
            continue;
        }
        carryOut(*move, journal, stop);
        steps.append(move->record);
        outcomes.append(move->outcome);
    }
    // If this fails, the next start finds the items by looking.
    (void)journal.append(steps);
    return outcomes;
}

std::expected<FileOperations::Move, QString>
FileOperations::planRemoval(Kind kind, const Item& item, const HelperClient& client) const {
    const auto place = namedPlace(item.source);
    if (!place || !isAllowed(*place))
        return std::unexpected(notAllowed);
    if (!item.approved)
        return std::unexpected(notApproved);
    MoveRecord record{.phase = kind == Kind::remove ? MovePhase::deleting : MovePhase::leaving,
                      .user = client.user,
                      .original = item.source};
    if (kind == Kind::moveToTrash) {
        const auto trash = std::ranges::find_if(client.trashFolders, [&](const QString& folder) {
            const auto named = namedPlace(folder);
            return named && _files.folder(pathOf(*named), client.user);
        });
        if (trash == client.trashFolders.end())
            return std::unexpected(noTrash);
        record.trashed = *trash + u'/' + FileSystem::fromHostBytes(place->name);
    }
    auto held = _files.hold(*place, *item.approved);
    if (!held)
        return std::unexpected(held.error());
    record.identity = held->taken.identity;
    record.owner = held->taken.owner;
    record.mode = held->taken.mode;
    return Move{*std::move(held), std::move(record), {}};
}

std::expected<FileOperations::Move, QString>
FileOperations::planReturn(const Item& item, const HelperClient& client,
                           const QList<MoveRecord>& records) const {
    const auto from = namedPlace(item.source);
    const auto to = namedPlace(item.destination.value_or(QString()));
    if (!from || !to || !isAllowed(*to))
        return std::unexpected(notAllowed);
    const bool isInTrash = std::ranges::any_of(client.trashFolders, [&](const QString& folder) {
        const auto trash = namedPlace(folder);
        return trash && pathOf(*trash) == from->folderPath();
    });
    if (!isInTrash)
        return std::unexpected(notTaken);
    const auto around = _files.folder(from->folderPath());
    if (!around)
        return std::unexpected(noTrash);
    const auto there = itemStatusAt(around->get(), from->name);
    if (!there)
        return std::unexpected(fileSentence(there.error()));
    // By identity, not by its name there. Whoever can write to the Trash could put another file with
    // the same inode there, but not one with the same owner.
    const auto record = std::ranges::find_if(records, [&](const MoveRecord& r) {
        return r.phase != MovePhase::kept && r.user == client.user && r.original == item.destination &&
               r.isOf(*there);
    });
    if (record == records.end())
        return std::unexpected(notTaken);
    const auto folder = _files.folder(to->folderPath());
    if (!folder)
        return std::unexpected(fileSentence(folder.error()));
    if (itemStatusAt(folder->get(), to->name))
        return std::unexpected(fileSentence(EEXIST));
    auto held = _files.hold(*from, there->identity);
    if (!held)
        return std::unexpected(held.error());
    if (held->taken != *there)
        return std::unexpected(notTaken);
    Move move{*std::move(held), *record, {}};
    move.record.phase = MovePhase::returning;
    move.record.trashed = item.source;
    return move;
}

void FileOperations::carryOut(Move& move, MoveJournal& journal, std::stop_token stop) const {
    MoveRecord& record = move.record;
    const MovePhase untouched =
        record.phase == MovePhase::returning ? MovePhase::trashed : MovePhase::closed;
    const auto refuse = [&](const QString& sentence) {
        record.phase = untouched;
        move.outcome = failed(sentence);
    };
    if (stop.stop_requested())
        return refuse(stopped);
    const auto place = namedPlace(record.original);
    const auto staging = Staging::open(_files, *place);
    if (!staging)
        return refuse(staging.error());
    const bool isReturning = record.phase == MovePhase::returning;
    if (const auto taken = staging->take(move.item, nameOf(record)); !taken) {
        refuse(taken.error().sentence);
        if (taken.error().isKept) {
            // The item itself is elsewhere, and the number now belongs to what is kept under it.
            MoveRecord item = record;
            item.id = journal.freshId();
            if (!isReturning || journal.append({item}))
                record.phase = MovePhase::kept;
            else
                record.phase = MovePhase::returning;
        }
        staging->tidy();
        return;
    }
    const auto delivered = deliver(*staging, record, stop);
    staging->tidy();
    if (!delivered)
        move.outcome = failed(delivered.error());
    else if (isReturning)
        move.outcome = {.status = Status::moved, .destination = record.original};
    else if (record.phase == MovePhase::trashed)
        move.outcome = {.status = Status::moved, .destination = record.trashed};
    else
        move.outcome = {.status = Status::removed};
}

std::expected<void, QString> FileOperations::deliver(const Staging& staging, MoveRecord& record,
                                                     std::stop_token stop) const {
    // Only items that were verified in the staging folder get here: moving one back does no more harm
    // than moving it on. If neither works it stays, and the next start tries again.
    const auto undone = [&](const QString& sentence, const std::expected<void, QString>& back) {
        return std::unexpected(
            back ? sentence : sentence + QStringLiteral(" It is kept at “%1”.").arg(record.staged));
    };
    switch (record.phase) {
    case MovePhase::leaving:
        if (const auto done = toTrash(staging, record); !done)
            return undone(done.error(), toPlace(staging, record, true));
        break;
    case MovePhase::returning:
        if (const auto done = toPlace(staging, record, false); !done)
            return undone(done.error(), toTrash(staging, record));
        break;
    case MovePhase::deleting:
        if (const auto done = staging.destroy(nameOf(record), record.taken(), stop); !done)
            return undone(done.error(), toPlace(staging, record, true));
        record.phase = MovePhase::closed;
        break;
    case MovePhase::trashed:
    case MovePhase::kept:
    case MovePhase::closed:
        break;
    }
    return {};
}

std::expected<void, QString> FileOperations::toTrash(const Staging& staging, MoveRecord& record) const {
    const auto place = namedPlace(record.trashed.value_or(QString()));
    const auto trash = place
                           ? _files.folder(place->folderPath(), static_cast<std::uint32_t>(record.user))
                           : std::unexpected(EINVAL);
    if (!trash)
        return std::unexpected(noTrash);
    const QByteArray original = namedPlace(record.original)->name;
    for (int number = 1; number <= mostNames; ++number) {
        const QByteArray name = numberedName(original, number);
        const int error = staging.give(nameOf(record), trash->get(), name);
        if (error == EEXIST)
            continue;
        if (error != 0)
            return std::unexpected(fileSentence(error));
        record.phase = MovePhase::trashed;
        record.trashed = FileSystem::fromHostBytes('/' + place->folderPath() + '/' + name);
        return {};
    }
    return std::unexpected(noTrash);
}

std::expected<void, QString> FileOperations::toPlace(const Staging& staging, MoveRecord& record,
                                                     bool onlyIfOurs) const {
    const auto place = namedPlace(record.original);
    const auto folder = _files.folder(place->folderPath());
    if (!folder)
        return std::unexpected(fileSentence(folder.error()));
    if (onlyIfOurs && !isOursAlone(folder->get()))
        return std::unexpected(fileSentence(EPERM));
    if (const int error = staging.give(nameOf(record), folder->get(), place->name))
        return std::unexpected(fileSentence(error));
    record.phase = MovePhase::closed;
    return {};
}

void FileOperations::settle(MoveJournal& journal) const {
    TrashContents trashes(_files);
    journal.compact([&](const MoveRecord& record) { return trashes.areWithout(record); });
    QList<MoveRecord> steps;
    for (MoveRecord record : journal.records()) {
        const MovePhase before = record.phase;
        const auto place = namedPlace(record.original);
        if (before == MovePhase::trashed || before == MovePhase::kept || !place)
            continue;
        const auto staged = statusAt(record.staged);
        const auto around = _files.folder(place->folderPath());
        if (staged && !record.isOf(*staged)) {
            // Staged by a helper that was killed before it verified the item.
            if (before == MovePhase::returning) {
                steps.append(record);
                steps.last().id = journal.freshId();
                steps.last().phase = MovePhase::trashed;
            }
            record.phase = MovePhase::kept;
        } else if (staged) {
            if (const auto staging = Staging::open(_files, *place)) {
                (void)deliver(*staging, record, {});
                staging->tidy();
            }
        } else if (staged.error() == ENOENT && around) {
            // It has not left yet, or has arrived. If its folder cannot be opened, that is unknown.
            const auto original = itemStatusAt(around->get(), place->name);
            if ((original && record.isOf(*original)) || before == MovePhase::deleting)
                record.phase = MovePhase::closed;
            else if (original || original.error() == ENOENT)
                record.phase = MovePhase::trashed;
        }
        if (record.phase != before)
            steps.append(record);
    }
    if (!steps.isEmpty())
        (void)journal.append(steps);
}

std::expected<ItemStatus, int> FileOperations::statusAt(const QString& path) const {
    const auto place = namedPlace(path);
    const auto around = place ? _files.folder(place->folderPath()) : std::unexpected(EINVAL);
    if (!around)
        return std::unexpected(around.error());
    return itemStatusAt(around->get(), place->name);
}

} // namespace tessellar
