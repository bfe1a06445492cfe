// Restores what a removal moved, for undo and for users, and moves it again for redo.

#include "launcher/date_text.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_cleanup_moving.h"
#include "launcher/launcher_error.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/place_memory.h"
#include "platform/texts.h"

#include <algorithm>

namespace tessellar {

namespace {

const char* const notAllBack = Texts::noop("Could not put everything back");

QStringList failedLines(const QList<CleanupLogLine>& log) {
    QStringList lines;
    for (const CleanupLogLine& line : log)
        if (line.kind == CleanupLogLine::Kind::failed)
            lines.append(line.text);
    return lines;
}

} // namespace

void LauncherCleanup::reportFailures(const QStringList& lines, const QString& title) {
    constexpr qsizetype mostLines = 5;
    if (!lines.isEmpty())
        _messages.alert({QStringLiteral("notAll"),
                         lines.first(std::min(mostLines, lines.size())).join(u'\n'), title});
}

bool LauncherCleanup::canRestore() const {
    return _phase == Phase::done && !_isMoving && !_lastRemoval.isNull();
}

void LauncherCleanup::listPast(std::function<void(Past)> done) {
    _askedForPast.append(std::move(done));
    _listing = _machine.workers.run(
        Lane::actions,
        [tools = _tools, tag = _machine.uuids.next()](std::stop_token) {
            return RemovalSteps(*tools, tag).all();
        },
        [this](const std::expected<QList<CleanupRecord>, QString>& records) {
            const Past past = records ? Past(*records)
                                      : Past(std::unexpected(LauncherError{
                                            QStringLiteral("recordUnreadable"), records.error(), {}}));
            for (const auto& tell : std::exchange(_askedForPast, {}))
                tell(past);
        });
}

QString LauncherCleanup::dateText(const CleanupRecord& removal) const {
    return tessellar::dateText(removal.removedAt, _machine.locale);
}

void LauncherCleanup::restore(const std::optional<QUuid>& removal,
                              const std::function<void(Restored)>& done) {
    const auto refuse = [this, done](const LauncherError& error) {
        _error = error;
        changed.notify();
        if (done)
            done(std::unexpected(error));
    };
    if (_isMoving || (_phase != Phase::idle && _phase != Phase::done))
        return refuse(
            {QStringLiteral("removalInProgress"), Texts::tr("A removal is still in progress."), {}});
    if (const auto guard = _history.guard(_layouts.shownMode()); !guard)
        return refuse(guard.error());
    _error.reset();
    using Found = std::expected<std::optional<CleanupRecord>, QString>;
    move<Found>([removal](const RemovalSteps& steps, std::stop_token) { return steps.find(removal); },
                [this, refuse, done](const Found& found) {
                    endMoving();
                    if (!found)
                        return refuse(
                            {QStringLiteral("recordUnreadable"), found.error(), Texts::tr(notAllBack)});
                    if (!*found || (*found)->items.isEmpty())
                        return refuse({QStringLiteral("nothingToRestore"),
                                       Texts::tr("There is no removal to bring back."),
                                       {}});
                    restore(**found, done);
                });
}

void LauncherCleanup::restore(const CleanupRecord& record, const std::function<void(Restored)>& done) {
    // The newest undo step has the tiles as they were.
    const LauncherWindowMode mode = _layouts.shownMode();
    const LayoutUndoEntry* next = _history.steps().nextUndo(mode).entry;
    if (next && _history.steps().canUndo(mode) &&
        std::ranges::find(next->trashedApps, record.id, &TrashedAppRecord::removal) !=
            next->trashedApps.end())
        return _history.undo(mode, [this, done](const Outcome& undone) {
            if (!undone)
                _error = undone.error();
            else
                _phase = Phase::idle;
            changed.notify();
            if (done)
                done(undone ? Restored(_log) : Restored(std::unexpected(undone.error())));
        });
    // The remembered places first: if the program ends before the tiles are saved, the next start has
    // them. If they cannot be saved, neither can the layout, and everything stays in the Trash.
    _isMoving = true;
    _hold = _applications.hold();
    _places.putBack(record.path);
    using Written = BackgroundFile::Result;
    _places.whenWritten(LauncherWindowMode::fullScreen, [this, record, done](const Written& first) {
        _places.whenWritten(
            LauncherWindowMode::windowed, [this, record, done, first](const Written& second) {
                if (first && second)
                    return bringBack(record, done);
                _places.putBack(record.path, false);
                endMoving();
                _error = launcherError((first ? second : first).error(), Texts::tr(notAllBack));
                changed.notify();
                if (done)
                    done(std::unexpected(*_error));
            });
    });
}

void LauncherCleanup::bringBack(const CleanupRecord& record,
                                const std::function<void(Restored)>& done) {
    move<RemovalStep>([record](const RemovalSteps& steps,
                               std::stop_token stop) { return steps.bringBack(record, false, stop); },
                      [this, done, before = record](const RemovalStep& step) {
                          const auto hasBundle = [](const CleanupRecord& past) {
                              return std::ranges::any_of(past.restored, &CleanupItemResult::isBundle);
                          };
                          const bool isAnyBack = step.record.restored.size() > before.restored.size();
                          if (_lastRemoval == step.record.id && step.record.items.isEmpty())
                              _lastRemoval = {};
                          _phase = Phase::idle;
                          _log = step.log;
                          const auto ended = [this, isAnyBack, failure = step.failure, done] {
                              Restored restored = _log;
                              if (!isAnyBack && !_log.isEmpty())
                                  restored = std::unexpected(LauncherError{
                                      QStringLiteral("notRestored"), failure.value_or(QString()),
                                      Texts::tr(notAllBack)});
                              else
                                  reportFailures(failedLines(_log), Texts::tr(notAllBack));
                              if (!restored)
                                  _error = restored.error();
                              // The tiles must be back before anyone is told.
                              endMoving([this, restored, done] {
                                  changed.notify();
                                  if (done)
                                      done(restored);
                              });
                          };
                          if (hasBundle(step.record) && !hasBundle(before))
                              return putTilesBack(step.record, ended);
                          if (!hasBundle(step.record))
                              _places.putBack(step.record.path, false);
                          ended();
                      });
}

void LauncherCleanup::putTilesBack(const CleanupRecord& record, std::function<void()> done) {
    const LauncherWindowMode shown = _layouts.shownMode();
    LayoutDocument documents[]{_layouts[shown].document(), _layouts[otherMode(shown)].document()};
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
    makeStep({.name = editName(EditKind::putBack),
              .mode = shown,
              .document = documents[0],
              .otherDocument = documents[1],
              .isSavedAtOnce = true},
             record, std::move(done));
}

/// Puts a tile back in its remembered place, recreating a folder that closed when the tile was removed.
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
    // If its folder is gone, the tile comes last.
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

void LauncherCleanup::moveForHistory(bool intoTrash, const QList<TrashedAppRecord>& records,
                                     const LayoutUndoActions::TrashDone& done) {
    if (_isMoving) {
        QList<TrashOutcome> outcomes;
        for (const TrashedAppRecord& record : records)
            outcomes.append({record, Texts::tr("A removal is still in progress.")});
        return done(outcomes);
    }
    move<QList<RemovalStep>>(
        [intoTrash, records](const RemovalSteps& steps, std::stop_token stop) {
            QList<RemovalStep> results;
            for (const TrashedAppRecord& app : records)
                results.append(intoTrash ? steps.takeAgain(app.removal, stop)
                                         : steps.bringBack(app.removal, app.originalURL, stop));
            return results;
        },
        [this, intoTrash, records, done](const QList<RemovalStep>& results) {
            QList<TrashOutcome> outcomes;
            QStringList failures;
            _log.clear();
            for (qsizetype i = 0; i < results.size(); ++i) {
                const RemovalStep& step = results[i];
                _log += step.log;
                outcomes.append({records[i], step.failure});
                if (step.failure)
                    continue; // reported by history
                failures += failedLines(step.log);
                const CleanupItemResult* bundle = intoTrash ? step.record.bundle() : nullptr;
                outcomes.last().record.trashedURL = bundle ? bundle->trashedPath : std::nullopt;
                _lastRemoval = intoTrash ? step.record.id : QUuid();
            }
            reportFailures(failures, intoTrash ? Texts::tr("Could not delete everything again")
                                               : Texts::tr(notAllBack));
            endMoving();
            changed.notify();
            done(outcomes);
        });
}

} // namespace tessellar
