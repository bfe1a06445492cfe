#include "cleanup/app_cleanup_remover.h"

#include "cleanup/cleanup_locations.h"
#include "platform/mount_points.h"

#include <algorithm>

namespace tessellar {
namespace {

const QString protectedItem =
    QStringLiteral("macOS protects this item, and it couldn’t be moved to the Trash.");
const QString deniedContainer = QStringLiteral(
    "macOS denied access to this app’s protected data. Grant Tessellar Full Disk Access in "
    "System Settings > Privacy & Security, then try again.");
const QString changedItem = QStringLiteral("It has changed since it was reviewed, and was left alone.");
const QString missingItem = QStringLiteral("It is no longer there.");
const QString volumeInside = QStringLiteral("A volume is mounted in it. Eject it, then try again.");
const QString stoppedRemoval = QStringLiteral("The removal was stopped.");
const QString notRestorable = QStringLiteral("Nobody knows where it lies in the Trash.");
const QString notNoted =
    QStringLiteral("It stayed, because what is removed could not be written down: %1");

constexpr int quitTries = 40;
constexpr std::chrono::milliseconds quitPause{250};
/// As many as one prompt or script takes together; between them the removal can be stopped.
constexpr qsizetype itemsTogether = 100;
/// As much of a name as every Trash keeps when it tells two of one name apart.
constexpr qsizetype keptStem = 200;

QString nameOf(const RelatedFile& item) { return FileSystem::fileName(item.path); }

CleanupLogLine lineOf(const CleanupItemResult& result) {
    if (result.isMoved())
        return {CleanupLogLine::Kind::moved, result.item.path,
                nameOf(result.item) +
                    (result.trashedPath
                         ? QStringLiteral(": moved to the Trash.")
                         : QStringLiteral(": it has left its place, and was not found in the Trash."))};
    const QString& failure = *result.failure;
    return {CleanupLogLine::Kind::failed, result.item.path,
            nameOf(result.item) + QStringLiteral(": ") +
                (failure == administratorApprovalCanceled
                     ? QStringLiteral("administrator approval was canceled.")
                     : failure)};
}

} // namespace

std::optional<QString> AppCleanupRemover::objection(const CleanupApplication& application,
                                                    const RelatedFile& item) const {
    const FileSystem& files = _parts.files;
    const bool isBundle = item.match == RelatedFileMatch::appBundle;
    const auto status = files.linkStatus(item.path);
    if (!status)
        return status.error().code == FileError::Code::notFound ? missingItem : message(status.error());
    if (identityOf(*status) != item.identity)
        return changedItem;
    const ProtectionClass place = protectionClass(files, item.path);
    const bool isWhereItMayBe =
        isBundle ? item.path == FileSystem::standardized(application.path) &&
                       item.path.endsWith(u".app", Qt::CaseInsensitive) && item.path.count(u'/') >= 2 &&
                       status->type == FileType::directory
                 : place == ProtectionClass::ordinary && cleanupLocationOf(item.path, _parts.home);
    if (place == ProtectionClass::systemProtected || !isWhereItMayBe ||
        FileSystem::standardized(item.path) != item.path)
        return protectedItem;
    const auto around = files.linkStatus(FileSystem::parent(item.path));
    if (!around || around->type != FileType::directory || (!isBundle && !isWithoutLinks(item.path)))
        return changedItem;
    if (around->device != status->device)
        return protectedItem; // a volume is mounted there
    // What is thrown out of the Trash later would be the volume's.
    if (const auto real = files.resolved(item.path);
        status->type == FileType::directory && real && holdsMountPoint(files.hostPath(*real)))
        return volumeInside;
    return std::nullopt;
}

/// Whether no link leads to the folder of an item, from its Library on.
bool AppCleanupRemover::isWithoutLinks(const QString& path) const {
    const QString folder = FileSystem::parent(path);
    const auto real = _parts.files.resolved(folder);
    if (real == folder)
        return true;
    const auto home = _parts.files.resolved(_parts.home);
    return real && home && FileSystem::isWithin(folder, _parts.home) &&
           *real == *home + folder.sliced(_parts.home.size());
}

bool AppCleanupRemover::quit(const CleanupApplication& application, std::stop_token stop) {
    if (!_parts.running.isRunning(application))
        return true;
    _parts.running.askToQuit(application, stop);
    for (int i = 0; i < quitTries && _parts.running.isRunning(application); ++i)
        if (!_parts.wait(quitPause, stop))
            break;
    return !_parts.running.isRunning(application);
}

void AppCleanupRemover::settle(CleanupItemResult& result, const TrashResult& outcome) const {
    const FileSystem& files = _parts.files;
    const auto still = files.linkStatus(result.item.path);
    const bool stays = still && identityOf(*still) == result.item.identity;
    if (!stays)
        result.trashedPath =
            isItem(outcome.trashedPath, result.item) ? outcome.trashedPath : placeInTrash(result.item);
    if (outcome.failure && !result.trashedPath) {
        result.failure = outcome.failure;
        const bool isContainer =
            result.item.location == u"Containers" || result.item.location == u"Group Containers";
        if (const auto inside = files.entries(result.item.path);
            isContainer && !inside && inside.error().code == FileError::Code::permissionDenied)
            result.failure = deniedContainer;
        return;
    }
    // Believed only when it has gone.
    result.failure = stays ? std::optional(QStringLiteral("Finder did not move the item to the Trash."))
                           : std::nullopt;
}

bool AppCleanupRemover::isItem(const std::optional<QString>& path, const RelatedFile& item) const {
    const auto status = path ? _parts.files.linkStatus(*path) : std::unexpected(FileError{});
    return status && isSameOnItsVolume(identityOf(*status), item.identity);
}

std::optional<QString> AppCleanupRemover::placeInTrash(const RelatedFile& item) const {
    const auto composed = [](const QString& name) {
        return name.normalized(QString::NormalizationForm_C);
    };
    const QString name = nameOf(item);
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString stem = composed((dot > 0 ? name.first(dot) : name).left(keptStem));
    for (const QString& folder : _parts.trashFolders) {
        const auto entries = _parts.files.entries(folder);
        if (!entries)
            continue;
        for (const DirectoryEntry& entry : *entries) {
            // By the name too: the number of a file that is no more may have become another's.
            const QString found = FileSystem::fromHostBytes(entry.name);
            const QString path = FileSystem::joined(folder, found);
            if (composed(found).startsWith(stem) && isItem(path, item))
                return path;
        }
    }
    return std::nullopt;
}

void AppCleanupRemover::moveByTrash(const CleanupApplication& application,
                                    QList<CleanupItemResult*> items, std::stop_token stop) {
    items.removeIf([&](CleanupItemResult* item) {
        item->failure = stop.stop_requested() ? stoppedRemoval : objection(application, item->item);
        return item->failure.has_value();
    });
    QStringList paths;
    for (const CleanupItemResult* item : std::as_const(items))
        paths.append(item->item.path);
    if (paths.isEmpty())
        return;
    const QList<TrashResult> outcomes = _parts.trash.moveToTrash(paths, stop);
    for (qsizetype i = 0; i < items.size(); ++i)
        settle(*items[i], outcomes.value(i, TrashResult{.failure = stoppedRemoval}));
}

void AppCleanupRemover::moveByHelper(const CleanupApplication& application,
                                     QList<CleanupItemResult*> items, std::stop_token stop) {
    items.removeIf([&](CleanupItemResult* item) {
        item->failure = stop.stop_requested() ? stoppedRemoval : objection(application, item->item);
        return item->failure.has_value();
    });
    QList<AdminMove> moves;
    for (const CleanupItemResult* item : std::as_const(items))
        moves.append({.path = item->item.path, .identity = item->item.identity});
    if (moves.isEmpty())
        return;
    const QList<AdminMoveOutcome> outcomes = _parts.administrator.moveToTrash(moves, stop);
    for (qsizetype i = 0; i < items.size(); ++i) {
        const AdminMoveOutcome outcome = outcomes.value(i);
        settle(*items[i], outcome.status == PrivilegedFileOutcomeStatus::moved
                              ? TrashResult{.trashedPath = outcome.destination}
                              : TrashResult{.failure = outcome.message.value_or(protectedItem)});
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

    if (!quit(application, stop)) {
        const QString name = application.names.value(0, FileSystem::fileName(application.path));
        result.stillRunning.append(name);
        for (CleanupItemResult& item : result.items)
            item.failure = QStringLiteral("%1 is still open. Quit it, then try again.").arg(name);
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
                    item.failure = notNoted.arg(message(noted.error()));

    // The helper's first, in one piece, for each piece may ask for a password; the bundle by itself.
    QList<CleanupItemResult*> helpers;
    QList<QList<CleanupItemResult*>> runs;
    for (CleanupItemResult& item : result.items) {
        if (item.failure)
            continue;
        const bool isBundle = item.item.match == RelatedFileMatch::appBundle;
        if (item.isByHelper) {
            helpers.append(&item);
        } else {
            if (runs.isEmpty() || isBundle || runs.last().size() == itemsTogether)
                runs.append(QList<CleanupItemResult*>());
            runs.last().append(&item);
        }
    }
    CleanupRemovalProgress state{.total = result.items.size()};
    state.done = static_cast<qsizetype>(
        std::ranges::count_if(result.items, [](const auto& item) { return item.failure.has_value(); }));
    const auto tell = [&](const QString& name) {
        state.name = name;
        if (progress)
            progress(state);
    };
    if (!helpers.isEmpty()) {
        tell(nameOf(helpers.first()->item));
        moveByHelper(application, helpers, stop);
        state.done += helpers.size();
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

QList<CleanupItemResult> AppCleanupRemover::restore(const QList<CleanupItemResult>& removed,
                                                    std::stop_token stop) {
    QList<CleanupItemResult> results = removed;
    std::ranges::reverse(results);
    QList<AdminMove> moves;
    QList<CleanupItemResult*> byHelper;
    for (CleanupItemResult& result : results) {
        if (!result.isMoved())
            continue;
        if (!isItem(result.trashedPath, result.item))
            if (const auto found = placeInTrash(result.item))
                result.trashedPath = found;
        if (!result.trashedPath) {
            result.failure = notRestorable;
        } else if (result.isByHelper) {
            moves.append({.path = *result.trashedPath,
                          .identity = result.item.identity,
                          .destination = result.item.path});
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
                byHelper[i]->failure = outcome.message.value_or(stoppedRemoval);
    }
    return results;
}

} // namespace tessellar
