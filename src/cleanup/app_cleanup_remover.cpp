#include "cleanup/app_cleanup_remover.h"

#include "cleanup/cleanup_locations.h"
#include "platform/mount_points.h"
#include "platform/texts.h"
#include "privileged/numbered_name.h"
#include "privileged/records.h"

#include <algorithm>

namespace tessellar {
namespace {

const char* const protectedItem =
    Texts::noop("macOS protects this item, and it couldn’t be moved to the Trash.");
const char* const deniedContainer =
    Texts::noop("macOS denied access to this app’s protected data. Grant Tessellar Full Disk Access in "
                "System Settings > Privacy & Security, then try again.");
const char* const changedItem =
    Texts::noop("It has changed since it was reviewed, and was left alone.");
const char* const missingItem = Texts::noop("It is no longer there.");
const char* const volumeInside = Texts::noop("A volume is mounted in it. Eject it, then try again.");
const char* const stoppedRemoval = Texts::noop("The removal was stopped.");
const char* const notInTrash = Texts::noop("It is no longer in the Trash.");
const char* const trashNotSeen = Texts::noop("Its Trash could not be searched. Try again later.");
const char* const helperNotSeen =
    Texts::noop("It may be with the administrator helper, which does not answer. Try again later.");
const char* const notNoted =
    Texts::noop("It was not moved, because the removal could not be recorded: %1");

constexpr int quitTries = 40;
constexpr std::chrono::milliseconds quitPause{250};
/// The size of a batch for one prompt or script; the removal can be stopped between batches.
constexpr qsizetype itemsTogether = 100;
/// The number of leading characters of a name that every Trash keeps when it makes names unique or
/// shortens long ones, in any script: names are limited in bytes, and a Mac's may be decomposed.
constexpr qsizetype keptStem = 20;

QString nameOf(const CleanupApplication& application) {
    return application.names.value(0, FileSystem::fileName(application.path));
}
QString nameOf(const RelatedFile& item) { return FileSystem::fileName(item.path); }

bool isLink(const RelatedFile& item) { return item.identity.type == FileType::symbolicLink; }

CleanupLogLine lineOf(const CleanupItemResult& result) {
    if (result.isMoved())
        return {CleanupLogLine::Kind::moved, result.item.path,
                (result.trashedPath
                     ? Texts::tr("%1: moved to the Trash.")
                     : Texts::tr("%1: it is no longer in its place, but was not found in the Trash."))
                    .arg(nameOf(result.item))};
    const QString& failure = *result.failure;
    return {CleanupLogLine::Kind::failed, result.item.path,
            nameOf(result.item) + QStringLiteral(": ") +
                (failure == administratorApprovalCanceled()
                     ? Texts::tr("administrator approval was canceled.")
                     : failure)};
}

} // namespace

QString CleanupRemovalProgress::text() const {
    return isWaitingForQuit ? Texts::tr("Waiting for %1 to quit…").arg(name) : name;
}

std::optional<QString> AppCleanupRemover::objection(const CleanupApplication& application,
                                                    const RelatedFile& item) const {
    const FileSystem& files = _parts.files;
    const bool isBundle = item.match == RelatedFileMatch::appBundle;
    const auto status = files.linkStatus(item.path);
    if (!status)
        return status.error().code == FileError::Code::notFound ? Texts::tr(missingItem)
                                                                : message(status.error());
    if (identityOf(*status) != item.identity)
        return Texts::tr(changedItem);
    if (isLink(item)) {
        const auto bundle = files.resolved(application.path);
        const bool isOfBundle =
            bundle && applicationFolders(_parts.home).contains(FileSystem::parent(item.path)) &&
            FileSystem::standardized(item.path) == item.path &&
            files.resolved(item.path).value_or(QString()) == *bundle;
        return isOfBundle ? std::nullopt : std::optional(Texts::tr(changedItem));
    }
    const ProtectionClass place = protectionClass(files, item.path);
    const bool isWhereItMayBe =
        isBundle ? item.path == FileSystem::standardized(application.path) &&
                       item.path.endsWith(u".app", Qt::CaseInsensitive) && item.path.count(u'/') >= 2 &&
                       status->type == FileType::directory
                 : place == ProtectionClass::ordinary && cleanupLocationOf(item.path, _parts.home);
    if (place == ProtectionClass::systemProtected || !isWhereItMayBe ||
        FileSystem::standardized(item.path) != item.path)
        return Texts::tr(protectedItem);
    const auto around = files.linkStatus(FileSystem::parent(item.path));
    if (!around || around->type != FileType::directory || (!isBundle && !isWithoutLinks(item.path)))
        return Texts::tr(changedItem);
    if (around->device != status->device)
        return Texts::tr(protectedItem); // a mount point
    // Emptying the Trash later would delete the volume's contents.
    if (const auto real = files.resolved(item.path);
        status->type == FileType::directory && real && holdsMountPoint(files.hostPath(*real)))
        return Texts::tr(volumeInside);
    return std::nullopt;
}

/// True if no link leads to the item's folder, from its Library on.
bool AppCleanupRemover::isWithoutLinks(const QString& path) const {
    const QString folder = FileSystem::parent(path);
    const auto real = _parts.files.resolved(folder);
    if (real == folder)
        return true;
    const auto home = _parts.files.resolved(_parts.home);
    return real && home && FileSystem::isWithin(folder, _parts.home) &&
           *real == *home + folder.sliced(_parts.home.size());
}

std::optional<QString> AppCleanupRemover::quit(const CleanupApplication& application,
                                               std::stop_token stop,
                                               const std::function<void()>& waits) {
    using State = RunningApplications::State;
    State seen = _parts.running.state(application);
    if (seen == State::open) {
        waits();
        _parts.running.askToQuit(application, stop);
    }
    for (int i = 0; i < quitTries && seen == State::open; ++i) {
        if (!_parts.wait(quitPause, stop))
            i = quitTries;
        seen = _parts.running.state(application);
    }
    switch (seen) {
    case State::closed:
        break;
    case State::open:
        return Texts::tr("%1 is still open. Quit it, then try again.").arg(nameOf(application));
    case State::unknown:
        return Texts::tr("Tessellar could not find out whether %1 is open. Try again.")
            .arg(nameOf(application));
    }
    return std::nullopt;
}

/// Finder would follow them.
void AppCleanupRemover::moveLinks(const QList<CleanupItemResult*>& items,
                                  const CleanupApplication& application, std::stop_token stop) {
    constexpr int mostNames = 1'000;
    const FileSystem& files = _parts.files;
    const QString trash = trashFolder();
    for (CleanupItemResult* item : items) {
        item->failure =
            stop.stop_requested() ? Texts::tr(stoppedRemoval) : objection(application, item->item);
        if (item->failure)
            continue;
        const QByteArray name = FileSystem::toHostBytes(nameOf(item->item)).value_or(QByteArray());
        auto moved = std::expected<void, FileError>(std::unexpected(FileError{}));
        for (int number = 1; number <= mostNames && !item->trashedPath; ++number) {
            const QString trashed =
                FileSystem::joined(trash, FileSystem::fromHostBytes(numberedName(name, number)));
            moved = files.move(item->item.path, trashed);
            if (moved)
                item->trashedPath = trashed;
            else if (moved.error().code != FileError::Code::alreadyExists)
                break;
        }
        if (!moved)
            item->failure = message(moved.error());
    }
}

void AppCleanupRemover::settle(CleanupItemResult& result, const TrashResult& outcome) const {
    const FileSystem& files = _parts.files;
    const auto still = files.linkStatus(result.item.path);
    const bool stays = still && identityOf(*still) == result.item.identity;
    const bool hasDisconnected = still ? !stays : still.error().code == FileError::Code::notFound;
    if (!stays)
        result.trashedPath =
            isItem(outcome.trashedPath, result.item) ? outcome.trashedPath : placeInTrash(result.item);
    // What has left is on its way, whatever became of the program that took it: a helper that was
    // killed moves it to the Trash when it starts again.
    if (outcome.failure && !result.trashedPath && !hasDisconnected) {
        result.failure = outcome.failure;
        const bool isContainer =
            result.item.location == u"Containers" || result.item.location == u"Group Containers";
        if (const auto inside = files.entries(result.item.path);
            isContainer && !inside && inside.error().code == FileError::Code::permissionDenied)
            result.failure = Texts::tr(deniedContainer);
        return;
    }
    // A success is only believed if the item is gone.
    result.failure =
        stays ? std::optional(Texts::tr("Finder did not move the item to the Trash.")) : std::nullopt;
}

bool AppCleanupRemover::isItem(const std::optional<QString>& path, const RelatedFile& item) const {
    const auto status = path ? _parts.files.linkStatus(*path) : std::unexpected(FileError{});
    return status && isSameOnItsVolume(identityOf(*status), item.identity);
}

AppCleanupRemover::Presence AppCleanupRemover::findInTrash(std::optional<QString>& trashedPath,
                                                           const RelatedFile& item) const {
    if (isItem(trashedPath, item))
        return Presence::present;
    const auto composed = [](const QString& name) {
        return name.normalized(QString::NormalizationForm_C);
    };
    const QString name = nameOf(item);
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString stem = composed(dot > 0 ? name.first(dot) : name).left(keptStem);
    QStringList folders = _parts.trashFolders;
    // If its place in the Trash is not known, it may be in another volume's Trash.
    bool isOnSeenVolume = trashedPath.has_value();
    const QString known = trashedPath ? FileSystem::parent(*trashedPath) : QString();
    if (trashedPath && !folders.contains(known))
        folders.prepend(known);
    bool isSeen = false;
    bool isUncertain = false;
    for (const QString& folder : std::as_const(folders)) {
        const auto entries = _parts.files.entries(folder);
        isSeen = isSeen || entries.has_value();
        // A Trash that never existed does not prevent a certain answer.
        isUncertain =
            isUncertain ||
            (!entries && (folder == known || entries.error().code != FileError::Code::notFound));
        if (!entries)
            continue;
        const auto volume = _parts.files.status(folder);
        isOnSeenVolume = isOnSeenVolume || (volume && volume->device == item.identity.device);
        for (const DirectoryEntry& entry : *entries) {
            const QString found = FileSystem::fromHostBytes(entry.name);
            const QString path = FileSystem::joined(folder, found);
            const auto status = _parts.files.linkStatus(path);
            if (status && isSameOnItsVolume(identityOf(*status), item.identity)) {
                // The name must match, too: the inode of a deleted file may have been reused. But it
                // may also be the item, renamed.
                if (!composed(found).startsWith(stem)) {
                    isUncertain = true;
                    continue;
                }
                trashedPath = path;
                return Presence::present;
            }
            isUncertain = isUncertain || (!status && status.error().code != FileError::Code::notFound);
        }
    }
    return isSeen && isOnSeenVolume && !isUncertain ? Presence::gone : Presence::unknown;
}

/// The helper's staging folder exists as long as something is in it.
bool AppCleanupRemover::isStagingBeside(const QString& path) const {
    const QString top = path.first(std::max<qsizetype>(path.indexOf(u'/', 1), 1));
    return _parts.files.linkStatus(FileSystem::joined(top, u'.' + removalHelperService)).has_value();
}

std::optional<QString> AppCleanupRemover::placeInTrash(const RelatedFile& item) const {
    std::optional<QString> path;
    (void)findInTrash(path, item);
    return path;
}

QString AppCleanupRemover::trashFolder() const {
    const FileSystem& files = _parts.files;
    for (const QString& folder : _parts.trashFolders)
        if (files.linkStatus(folder))
            return folder;
    const QString likeliest = _parts.trashFolders.value(0);
    if (!likeliest.isEmpty())
        (void)files.createDirectories(likeliest);
    return likeliest;
}

void AppCleanupRemover::moveByTrash(const CleanupApplication& application,
                                    QList<CleanupItemResult*> items, std::stop_token stop) {
    items.removeIf([&](CleanupItemResult* item) {
        item->failure =
            stop.stop_requested() ? Texts::tr(stoppedRemoval) : objection(application, item->item);
        return item->failure.has_value();
    });
    QStringList paths;
    for (const CleanupItemResult* item : std::as_const(items))
        paths.append(item->item.path);
    if (paths.isEmpty())
        return;
    const QList<TrashResult> outcomes = _parts.trash.moveToTrash(paths, stop);
    for (qsizetype i = 0; i < items.size(); ++i)
        settle(*items[i], outcomes.value(i, TrashResult{.failure = Texts::tr(stoppedRemoval)}));
}

void AppCleanupRemover::moveByHelper(const CleanupApplication& application,
                                     QList<CleanupItemResult*> items, std::stop_token stop) {
    items.removeIf([&](CleanupItemResult* item) {
        item->failure =
            stop.stop_requested() ? Texts::tr(stoppedRemoval) : objection(application, item->item);
        return item->failure.has_value();
    });
    if (!items.isEmpty())
        (void)trashFolder(); // the helper creates none
    QList<AdminMove> moves;
    for (const CleanupItemResult* item : std::as_const(items))
        moves.append({.path = item->item.path,
                      .identity = item->item.identity,
                      .application = nameOf(application)});
    if (moves.isEmpty())
        return;
    const QList<AdminMoveOutcome> outcomes = _parts.administrator.moveToTrash(moves, stop);
    for (qsizetype i = 0; i < items.size(); ++i) {
        const AdminMoveOutcome outcome = outcomes.value(i);
        settle(*items[i],
               outcome.status == PrivilegedFileOutcomeStatus::moved
                   ? TrashResult{.trashedPath = outcome.destination}
                   : TrashResult{.failure = outcome.message.value_or(Texts::tr(protectedItem))});
    }
}

CleanupRemovalResult AppCleanupRemover::remove(const CleanupApplication& application,
                                               const QList<RelatedFile>& items, std::stop_token stop,
                                               const Progress& progress, const Note& note) {
    CleanupRemovalResult result;
    for (const RelatedFile& item : items)
        result.items.append({.item = item, .failure = objection(application, item)});
    std::ranges::stable_sort(result.items, {}, [](const CleanupItemResult& r) {
        return r.item.match == RelatedFileMatch::appBundle;
    });

    CleanupRemovalProgress state{.total = result.items.size()};
    const auto tell = [&](const QString& name) {
        state.name = name;
        if (progress)
            progress(state);
    };
    const auto notClosed = quit(application, stop, [&] {
        state.isWaitingForQuit = true;
        tell(nameOf(application));
        state.isWaitingForQuit = false;
    });
    if (notClosed) {
        result.stillRunning.append(nameOf(application));
        for (CleanupItemResult& item : result.items)
            item.failure = notClosed;
    }

    QList<CleanupItemResult> planned;
    for (CleanupItemResult& item : result.items) {
        item.isByHelper =
            item.item.needsAdministrator && item.item.match != RelatedFileMatch::appBundle;
        if (!item.failure)
            planned.append(item);
    }
    if (note && !planned.isEmpty())
        if (const auto noted = note(planned); !noted)
            for (CleanupItemResult& item : result.items)
                if (!item.failure)
                    item.failure = Texts::tr(notNoted).arg(noted.error());

    // Those for the helper come first and in one batch, because each batch may ask for a password; the
    // bundle is a batch of its own.
    QList<CleanupItemResult*> helpers;
    QList<CleanupItemResult*> links;
    QList<QList<CleanupItemResult*>> runs;
    for (CleanupItemResult& item : result.items) {
        if (item.failure)
            continue;
        const bool isBundle = item.item.match == RelatedFileMatch::appBundle;
        if (item.isByHelper) {
            helpers.append(&item);
        } else if (isLink(item.item)) {
            links.append(&item);
        } else {
            if (runs.isEmpty() || isBundle || runs.last().size() == itemsTogether)
                runs.append(QList<CleanupItemResult*>());
            runs.last().append(&item);
        }
    }
    state.done = static_cast<qsizetype>(
        std::ranges::count_if(result.items, [](const auto& item) { return item.failure.has_value(); }));
    for (const CleanupItemResult& item : std::as_const(result.items))
        if (!item.failure && item.item.location == u"Launch Agents" &&
            item.item.domain == CleanupDomain::user && _parts.agents &&
            _parts.agents->unload(item.item.path, stop))
            result.log.append({CleanupLogLine::Kind::noted, item.item.path,
                               Texts::tr("%1: its agent was ended.").arg(nameOf(item.item))});
    if (!helpers.isEmpty()) {
        tell(nameOf(helpers.first()->item));
        moveByHelper(application, helpers, stop);
        state.done += helpers.size();
    }
    if (!links.isEmpty()) {
        moveLinks(links, application, stop); // while they still lead to the bundle
        state.done += links.size();
    }
    for (const QList<CleanupItemResult*>& run : std::as_const(runs)) {
        tell(nameOf(run.first()->item));
        moveByTrash(application, run, stop);
        state.done += run.size();
    }
    tell({});
    for (const CleanupItemResult& item : std::as_const(result.items))
        result.log.append(lineOf(item));
    return result;
}

QList<CleanupItemResult> AppCleanupRemover::restore(const CleanupApplication& application,
                                                    const QList<CleanupItemResult>& removed,
                                                    std::stop_token stop) {
    QList<CleanupItemResult> results = removed;
    std::ranges::reverse(results);
    QList<AdminMove> moves;
    QList<CleanupItemResult*> byHelper;
    std::optional<bool> isHelperAvailable;
    for (CleanupItemResult& result : results) {
        if (!result.isMoved())
            continue;
        Presence presence = findInTrash(result.trashedPath, result.item);
        if (presence == Presence::gone && result.isByHelper) {
            // A helper that was killed may be holding it; once the helper answers, it has been
            // delivered.
            if (!isHelperAvailable)
                isHelperAvailable = _parts.administrator.isAvailable(stop);
            presence =
                *isHelperAvailable ? findInTrash(result.trashedPath, result.item) : Presence::unknown;
            if (presence == Presence::gone &&
                (isStagingBeside(result.item.path) ||
                 (result.trashedPath && isStagingBeside(*result.trashedPath))))
                presence = Presence::unknown;
        }
        result.isGone = presence == Presence::gone;
        if (presence != Presence::present) {
            result.failure = result.isGone                ? Texts::tr(notInTrash)
                             : isHelperAvailable == false ? Texts::tr(helperNotSeen)
                                                          : Texts::tr(trashNotSeen);
        } else if (result.isByHelper) {
            moves.append({.path = *result.trashedPath,
                          .identity = result.item.identity,
                          .destination = result.item.path,
                          .application = nameOf(application)});
            byHelper.append(&result);
        } else if (const auto restored = restoreFromTrash(_parts.files, *result.trashedPath,
                                                          result.item.path, result.item.identity);
                   !restored) {
            result.failure = message(restored.error());
        }
    }
    if (!moves.isEmpty()) {
        const QList<AdminMoveOutcome> outcomes = _parts.administrator.restoreFromTrash(moves, stop);
        for (qsizetype i = 0; i < byHelper.size(); ++i)
            if (const auto outcome = outcomes.value(i);
                outcome.status == PrivilegedFileOutcomeStatus::failed)
                byHelper[i]->failure = outcome.message.value_or(Texts::tr(stoppedRemoval));
    }
    return results;
}

} // namespace tessellar
