// Bringing back what a removal took, for undo and for people, and taking it again for redo.

#include "launcher/cleanup_tools.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"

#include <algorithm>

namespace tessellar {
namespace {

/// What became of the items of a record that was to come back.
struct BroughtBack {
    CleanupRecord record;           ///< with the items that came back
    CleanupRecord rest;             ///< with those that still lie in the Trash
    QList<CleanupLogLine> log;      ///< of all of them
    std::optional<QString> failure; ///< why the whole is to count as not brought back
};

bool isThere(const FileSystem& files, const QString& path, const FileIdentity& identity) {
    const auto status = files.linkStatus(path);
    return status && isSameOnItsVolume(identityOf(*status), identity);
}

/// Blocks. With `asOne`, nothing else comes back when the bundle does not.
BroughtBack bringBack(CleanupTools& tools, const CleanupRecord& record, bool asOne,
                      std::stop_token stop) {
    const FileSystem& files = tools.machine.files;
    BroughtBack result{.record = record, .rest = record, .log = {}, .failure = {}};
    result.record.items.clear();
    result.rest.items.clear();
    AppCleanupRemover remover = tools.remover(false);
    QList<CleanupItemResult> bundles;
    QList<CleanupItemResult> others;
    for (const CleanupItemResult& item : record.items)
        // What a killed removal did not come to has never left.
        if (item.trashedPath || !isThere(files, item.item.path, item.item.identity))
            (item.item.match == RelatedFileMatch::appBundle ? bundles : others).append(item);

    const auto settle = [&](const QList<CleanupItemResult>& outcomes) {
        for (CleanupItemResult outcome : outcomes) {
            const QString name = FileSystem::fileName(outcome.item.path);
            if (outcome.failure && isThere(files, outcome.item.path, outcome.item.identity))
                outcome.failure.reset(); // put back by other means
            if (!outcome.failure) {
                result.record.items.append(outcome);
                result.log.append({CleanupLogLine::Kind::moved, outcome.item.path,
                                   QStringLiteral("%1: put back.").arg(name)});
                continue;
            }
            result.log.append({CleanupLogLine::Kind::failed, outcome.item.path,
                               name + QStringLiteral(": ") + *outcome.failure});
            if (!std::exchange(outcome.isGone, false)) {
                CleanupItemResult kept = outcome;
                kept.failure.reset();
                result.rest.items.append(kept);
            }
            if (!result.failure && (outcome.item.match == RelatedFileMatch::appBundle))
                result.failure = outcome.failure;
        }
    };
    settle(remover.restore(bundles, stop));
    if (asOne && result.failure) {
        result.rest = record;
        return result;
    }
    settle(remover.restore(others, stop));
    if (result.record.items.isEmpty() && !result.failure && !result.log.isEmpty())
        result.failure = result.log.first().text;
    // In the order of removal, the bundle last, as another removal has them.
    std::ranges::reverse(result.record.items);
    return result;
}

void warnOf(const Machine& machine, const std::expected<void, FileError>& written) {
    if (!written)
        machine.log.warning(message(written.error()));
}

} // namespace

static void refuseTrash(const QList<TrashedAppRecord>& records,
                        const LayoutUndoActions::TrashDone& done) {
    QList<TrashOutcome> outcomes;
    for (const TrashedAppRecord& record : records)
        outcomes.append({record, QStringLiteral("A removal is still in progress.")});
    done(outcomes);
}

void LauncherCleanup::tellOfFailures(const QString& title) {
    QStringList lines;
    for (const CleanupLogLine& line : std::as_const(_log))
        if (line.kind == CleanupLogLine::Kind::failed)
            lines.append(line.text);
    constexpr qsizetype mostLines = 5;
    if (!lines.isEmpty())
        _messages.alert({QStringLiteral("notAll"),
                         lines.first(std::min(mostLines, lines.size())).join(u'\n'), title});
}

bool LauncherCleanup::canRestore() const {
    return _phase == Phase::done && !_isMoving &&
           std::ranges::find(_taken, _lastRemoval, &CleanupRecord::id) != _taken.end();
}

void LauncherCleanup::restore(std::function<void(Restored)> done) {
    const auto refused = [&](LauncherError error) {
        _error = error;
        changed.notify();
        if (done)
            done(std::unexpected(std::move(error)));
    };
    if (_isMoving || (_phase != Phase::idle && _phase != Phase::done))
        return refused({QStringLiteral("removalInProgress"),
                        QStringLiteral("A removal is still in progress."),
                        {}});
    if (const auto guard = _history.guard(_layouts.shownMode()); !guard)
        return refused(guard.error());
    _error.reset();

    // The last step of history has the tiles as they were, to the folder.
    const LauncherWindowMode mode = _layouts.shownMode();
    const LayoutUndoEntry* next = _history.steps().nextUndo(mode).entry;
    const bool isLastStep =
        next && !_taken.isEmpty() && _history.steps().canUndo(mode) &&
        std::ranges::find(next->trashedApps, _taken.last().path, &TrashedAppRecord::originalURL) !=
            next->trashedApps.end();
    if (isLastStep) {
        _history.undo(mode, [this, done = std::move(done)](const Outcome& undone) {
            if (!undone)
                _error = undone.error();
            else
                _phase = Phase::idle;
            changed.notify();
            if (done)
                done(undone ? Restored(_log) : Restored(std::unexpected(undone.error())));
        });
        return;
    }

    beginMoving();
    _moving = _machine.workers.run(
        Lane::actions,
        [tools = _tools, source = _stopMoving, tag = _machine.uuids.next()](
            std::stop_token stop) -> std::expected<std::optional<BroughtBack>, QString> {
            const std::stop_callback ended(stop, [source]() mutable { source.request_stop(); });
            const CleanupRecordStore store(tools->machine, tag);
            auto records = store.read();
            if (!records)
                return std::unexpected(records.error());
            while (!records->isEmpty()) {
                BroughtBack result = bringBack(*tools, records->takeLast(), false, source.get_token());
                warnOf(tools->machine, store.put(result.rest));
                if (!result.log.isEmpty())
                    return result;
            }
            return std::nullopt;
        },
        [this,
         done = std::move(done)](const std::expected<std::optional<BroughtBack>, QString>& tried) {
            const std::optional<BroughtBack> result = tried.value_or(std::nullopt);
            Restored restored;
            if (!tried) {
                restored =
                    std::unexpected(LauncherError{QStringLiteral("recordUnreadable"), tried.error(),
                                                  QStringLiteral("Could not put everything back")});
            } else if (!result) {
                restored =
                    std::unexpected(LauncherError{QStringLiteral("nothingToRestore"),
                                                  QStringLiteral("There is no removal to bring back."),
                                                  {}});
            } else {
                _taken.removeIf([&](const CleanupRecord& r) { return r.id == result->record.id; });
                if (!result->record.items.isEmpty())
                    _broughtBack.append(result->record);
                _phase = Phase::idle;
                _log = result->log;
                if (result->record.bundle())
                    putTilesBack(result->record);
                restored = _log;
                if (result->record.items.isEmpty())
                    restored = std::unexpected(LauncherError{
                        QStringLiteral("notRestored"), result->failure.value_or(QString()),
                        QStringLiteral("Could not put everything back")});
            }
            if (!restored)
                _error = restored.error();
            // The tiles are to be there before anyone hears of it.
            endMoving([this, restored, done] {
                changed.notify();
                if (done)
                    done(restored);
            });
        });
    changed.notify();
}

void LauncherCleanup::putTilesBack(const CleanupRecord& record) {
    const LauncherWindowMode shown = _layouts.shownMode();
    LayoutDocument documents[]{_layouts[shown].document(), _layouts[otherMode(shown)].document()};
    _places.putBack(record.path);
    for (const RemovedTile& tile : record.tiles) {
        LayoutDocument& document = documents[tile.mode == shown ? 0 : 1];
        if (locate(document.pages, tile.entry.id))
            continue;
        recall(document, tile);
        if (!locate(document.pages, tile.entry.id))
            insert(document, tile);
        if (tile.isHidden)
            document.hiddenKeys.insert(appKey(tile.entry));
    }
    const auto made = _history.make({.name = editName(EditKind::putBack),
                                     .mode = shown,
                                     .document = documents[0],
                                     .otherDocument = documents[1]});
    if (!made)
        _messages.report(made.error());
}

/// Where its place is remembered the tile is put there, into a folder that closed when it went too.
void LauncherCleanup::recall(LayoutDocument& document, const RemovedTile& tile) const {
    const RememberedPlaces& places = _places[tile.mode];
    if (tile.entry.alias ||
        std::ranges::find(places.places, tile.entry.id, &RememberedPlace::id) == places.places.end())
        return;
    AppEntry back = tile.entry;
    back.name = back.originalName;
    const MergeContext context{.scannedApps = _applications.all() + QList{back},
                               .places = places,
                               .now = _machine.clock.now()};
    document.pages = mergeLayout(document.pages, document.hiddenKeys, context, _machine.locale).pages;
}

void LauncherCleanup::insert(LayoutDocument& document, const RemovedTile& tile) const {
    const Pages* pages = pagesOf(document.pages, tile.folder);
    // A folder that has gone has no place: then it comes after all the others.
    LayoutPlace place{.folder = tile.folder, .page = tile.page, .index = tile.index};
    if (!pages || pages->isEmpty()) {
        pages = &document.pages;
        place = {.folder = {}, .page = pages->size() - 1, .index = LayoutPlace::end};
    }
    place.page = std::clamp<qsizetype>(place.page, 0, std::max<qsizetype>(0, pages->size() - 1));
    if (!pages->isEmpty() && place.index > pages->at(place.page).size())
        place.index = LayoutPlace::end;
    const auto capacities = _layouts[tile.mode].capacities();
    if (auto inserted = insertTiles(document, {tile.entry}, place, capacities))
        document = *std::move(inserted);
}

// ---- for history

void LauncherCleanup::restoreApps(QList<TrashedAppRecord> records, LayoutUndoActions::TrashDone done) {
    QList<CleanupRecord> wanted;
    for (const TrashedAppRecord& app : std::as_const(records)) {
        const auto found = std::ranges::find_if(_taken.rbegin(), _taken.rend(), [&](const auto& r) {
            const CleanupItemResult* bundle = r.bundle();
            return r.path == app.originalURL &&
                   (bundle ? bundle->trashedPath : std::nullopt) == app.trashedURL;
        });
        wanted.append(found == _taken.rend() ? CleanupRecord{.name = app.name, .path = app.originalURL}
                                             : *found);
    }
    if (_isMoving)
        return refuseTrash(records, done);
    beginMoving();
    _moving = _machine.workers.run(
        Lane::actions,
        [tools = _tools, source = _stopMoving, wanted,
         tag = _machine.uuids.next()](std::stop_token stop) {
            const std::stop_callback ended(stop, [source]() mutable { source.request_stop(); });
            QList<BroughtBack> results;
            for (const CleanupRecord& record : wanted) {
                results.append(bringBack(*tools, record, true, source.get_token()));
                warnOf(tools->machine,
                       CleanupRecordStore(tools->machine, tag).put(results.last().rest));
                // Nothing is known to be taken: there is nothing to bring, and it may be there.
                if (record.items.isEmpty() && !tools->machine.files.exists(record.path))
                    results.last().failure = QStringLiteral("It is not known where it lies.");
            }
            return results;
        },
        [this, records, done = std::move(done)](const QList<BroughtBack>& results) {
            QList<TrashOutcome> outcomes;
            _log.clear();
            for (qsizetype i = 0; i < results.size(); ++i) {
                const BroughtBack& result = results[i];
                _log += result.log;
                outcomes.append({records[i], result.failure});
                if (result.failure)
                    continue;
                _taken.removeIf([&](const CleanupRecord& r) { return r.id == result.record.id; });
                if (!result.record.items.isEmpty())
                    _broughtBack.append(result.record);
                outcomes.last().record.trashedURL.reset();
            }
            tellOfFailures(QStringLiteral("Could not put everything back"));
            endMoving();
            changed.notify();
            done(outcomes);
        });
    changed.notify();
}

void LauncherCleanup::trashApps(QList<TrashedAppRecord> records, LayoutUndoActions::TrashDone done) {
    if (_isMoving)
        return refuseTrash(records, done);
    struct Again {
        CleanupRecord record;
        QList<CleanupLogLine> log;
        std::optional<QString> failure;
    };
    QList<CleanupRecord> wanted;
    for (const TrashedAppRecord& app : std::as_const(records)) {
        const auto found = std::ranges::find(_broughtBack.rbegin(), _broughtBack.rend(),
                                             app.originalURL, &CleanupRecord::path);
        wanted.append(found == _broughtBack.rend() ? CleanupRecord{.path = app.originalURL} : *found);
        wanted.last().id = _machine.uuids.next();
    }
    beginMoving();
    _moving = _machine.workers.run(
        Lane::actions,
        [tools = _tools, source = _stopMoving, wanted](std::stop_token stop) {
            const std::stop_callback ended(stop, [source]() mutable { source.request_stop(); });
            QList<Again> results;
            for (const CleanupRecord& record : wanted) {
                QList<RelatedFile> items;
                for (const CleanupItemResult& item : record.items)
                    items.append(item.item);
                Again again{.record = record, .log = {}, .failure = {}};
                again.record.items.clear();
                const CleanupRecordStore store(tools->machine, record.id);
                // Nobody is asked here: an application that is open stays.
                const CleanupRemovalResult result =
                    tools->remover(false).remove(record.application(), items, source.get_token(), {},
                                                 [&](const QList<CleanupItemResult>& planned) {
                                                     again.record.items = planned;
                                                     return store.put(again.record);
                                                 });
                again.record.items.clear();
                again.log = result.log;
                for (const CleanupItemResult& item : result.items) {
                    if (item.isMoved())
                        again.record.items.append(item);
                    else if (item.item.match == RelatedFileMatch::appBundle)
                        again.failure = item.failure;
                }
                if (again.record.items.isEmpty() && !items.isEmpty() && !again.failure)
                    again.failure = result.items.first().failure;
                if (items.isEmpty() && tools->machine.files.exists(record.path))
                    again.failure = QStringLiteral("It is not known what to remove.");
                // A step that fails leaves everything as it was.
                if (again.failure && !again.record.items.isEmpty())
                    again.record = bringBack(*tools, again.record, false, source.get_token()).rest;
                warnOf(tools->machine, store.put(again.record));
                results.append(again);
            }
            return results;
        },
        [this, records, done = std::move(done)](const QList<Again>& results) {
            QList<TrashOutcome> outcomes;
            _log.clear();
            for (qsizetype i = 0; i < results.size(); ++i) {
                const Again& again = results[i];
                _log += again.log;
                outcomes.append({records[i], again.failure});
                if (!again.record.items.isEmpty())
                    _taken.append(again.record);
                if (again.failure)
                    continue;
                const CleanupItemResult* bundle = again.record.bundle();
                outcomes.last().record.trashedURL = bundle ? bundle->trashedPath : std::nullopt;
                if (const auto undone =
                        std::ranges::find(_broughtBack, records[i].originalURL, &CleanupRecord::path);
                    undone != _broughtBack.end())
                    _broughtBack.erase(undone);
            }
            tellOfFailures(QStringLiteral("Could not delete everything again"));
            endMoving();
            changed.notify();
            done(outcomes);
        });
    changed.notify();
}

} // namespace tessellar
