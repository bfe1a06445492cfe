#include "model/reconciliation.h"

#include "model/application_match.h"

#include <algorithm>

namespace tessellar {
namespace {

class Merger {
public:
    Merger(const Pages& pages, const QSet<QString>& hiddenKeys, const MergeContext& context,
           const Locale& locale)
        : _context(context)
        , _locale(locale)
        , _woven(wovenWithin(pages, context))
        , _match(matchApplications(_woven, context)) {
        _result.changedKeys = _match.changedKeys;
        _result.hiddenKeys = currentKeys(hiddenKeys);
        _result.pages = rewritten(_woven.pages);
        remember(pages);
        addNewApplications();
    }

    MergeResult take() { return std::move(_result); }

private:
    /// Folders that are recreated may contain folders that the user moved there since. If that nests
    /// too deeply, nothing is woven in.
    static WovenPages wovenWithin(const Pages& pages, const MergeContext& context) {
        WovenPages woven = weave(pages, context.places, context.now - RememberedPlaces::duration);
        if (!woven.absent.isEmpty() && folderDepth(woven.pages) > maximumFolderDepth)
            return {pages, {}};
        return woven;
    }

    QString currentKey(const QString& key) const { return _match.changedKeys.value(key, key); }

    QSet<QString> currentKeys(const QSet<QString>& keys) const {
        QSet<QString> result;
        for (const QString& key : keys)
            result.insert(currentKey(key));
        return result;
    }

    Pages rewritten(const Pages& pages) {
        Pages result;
        for (const Page& page : pages) {
            Page kept;
            kept.reserve(page.size());
            for (const LaunchpadItem& item : page)
                if (auto rewrittenItem = rewritten(item))
                    kept.append(*std::move(rewrittenItem));
            if (!kept.isEmpty())
                result.append(std::move(kept));
        }
        return result;
    }

    std::optional<LaunchpadItem> rewritten(const LaunchpadItem& item) {
        if (item.app())
            return rewritten(_match.tiles[_nextTile++]);
        if (const FolderEntry* folder = item.folder())
            return rewritten(*folder);
        return item;
    }

    std::optional<LaunchpadItem> rewritten(const FolderEntry& folder) {
        Pages pages = rewritten(folder.pages);
        const bool hasOne = pages.size() == 1 && pages.first().size() == 1;
        if (pages.isEmpty() || hasOne)
            _closed.insert(folder.id);
        if (pages.isEmpty())
            return std::nullopt;
        if (hasOne)
            return pages.first().first();
        FolderEntry result = folder;
        result.pages = std::move(pages);
        return result;
    }

    std::optional<LaunchpadItem> rewritten(const MatchedTile& tile) {
        const AppEntry& entry = *tile.entry;
        if (tile.isAbsent) {
            if (!tile.wasAbsent)
                _result.dropped.append(entry);
            return std::nullopt;
        }
        if (tile.index < 0) {
            _result.unavailableAppKeys.insert(appKey(tile.unscanned()));
            return tile.unscanned();
        }
        AppEntry fresh = _context.scannedApps[tile.index];
        fresh.id = tile.id;
        if (entry.alias)
            fresh.alias = AppAliasReference{currentKey(entry.alias->appKey)};
        if (entry.name != entry.originalName)
            fresh.name = entry.name;
        if (tile.wasAbsent)
            _result.returned.append(fresh);
        return fresh;
    }

    // ---- remembered places

    void remember(const Pages& before) {
        if (!_result.dropped.isEmpty() || !_closed.isEmpty())
            noteWhatClosed(before);
        RememberedPlaces& places = _result.places;
        for (const MatchedTile& tile : std::as_const(_match.tiles)) {
            if (tile.isAbsent || tile.wasAbsent)
                places.places.append(_woven.absent.value(
                    tile.entry->id, RememberedPlace{tile.entry->id, _context.now, false}));
            if (tile.home)
                places.homes.append(*tile.home);
        }
        keepLatest(places.places, &RememberedPlace::goneAt);
        keepLatest(places.homes, &RememberedHome::leftAt);
        if (places.places.isEmpty())
            return;
        QSet<QUuid> remembered;
        for (const RememberedPlace& place : std::as_const(places.places))
            remembered.insert(place.id);
        _nextTile = 0;
        places.pages = skeleton(_woven.pages, remembered);
        places.closedFolders = QList<QUuid>(_closed.begin(), _closed.end());
        std::ranges::sort(places.closedFolders);
    }

    void noteWhatClosed(const Pages& before) {
        forEachItem(before, [&](const LaunchpadItem& item) {
            if (item.folder() && _closed.contains(item.id()))
                _result.closedFolders.append(item.id());
            return true;
        });
        const auto isUsed = [](const Page& page) { return !page.isEmpty(); };
        const qsizetype back = std::ranges::count_if(_result.pages, [&](const Page& page) {
            return std::ranges::all_of(page, [&](const LaunchpadItem& item) {
                return std::ranges::any_of(_result.returned,
                                           [&](const AppEntry& app) { return app.id == item.id(); });
            });
        });
        _result.closedPages = std::max<qsizetype>(0, std::ranges::count_if(before, isUsed) -
                                                         (_result.pages.size() - back));
    }

    template <typename Remembered>
    static void keepLatest(QList<Remembered>& all, Instant Remembered::*date) {
        std::ranges::sort(all, [&](const Remembered& a, const Remembered& b) {
            return a.*date != b.*date ? a.*date > b.*date : a.id < b.id;
        });
        if (all.size() > RememberedPlaces::maximumPlaces)
            all.resize(RememberedPlaces::maximumPlaces);
    }

    /// The entry from before it disappeared, but with its current key.
    AppEntry rememberedEntry(const MatchedTile& tile) const {
        if (tile.index < 0)
            return tile.unscanned();
        AppEntry entry = *tile.entry;
        if (entry.alias)
            entry.alias->appKey = currentKey(entry.alias->appKey);
        return entry;
    }

    /// The remembered tiles in full, and the identifiers of the others, in the same order.
    Pages skeleton(const Pages& pages, const QSet<QUuid>& remembered) {
        Pages result;
        for (const Page& page : pages) {
            Page kept;
            kept.reserve(page.size());
            for (const LaunchpadItem& item : page) {
                if (const FolderEntry* folder = item.folder()) {
                    if (Pages inner = skeleton(folder->pages, remembered); !inner.isEmpty())
                        kept.append(FolderEntry{folder->id, folder->name, folder->customSymbolName,
                                                std::move(inner)});
                } else if (!item.app()) {
                    kept.append(item);
                } else {
                    const MatchedTile& tile = _match.tiles[_nextTile++];
                    if ((tile.isAbsent || tile.wasAbsent) && remembered.contains(tile.entry->id) &&
                        tile.id == tile.entry->id)
                        kept.append(rememberedEntry(tile));
                    else
                        kept.append(SmartFolderReference{tile.id});
                }
            }
            if (!kept.isEmpty())
                result.append(std::move(kept));
        }
        return result;
    }

    void addNewApplications() {
        QList<AppEntry> fresh = _match.unclaimed;
        for (const AppEntry& app : _context.unseenApps) {
            const auto isIt = [&](const MatchedTile& tile) {
                return !tile.isAbsent && tile.entry->path == app.path;
            };
            const bool isScanned = std::ranges::find(_context.scannedApps, app.path, &AppEntry::path) !=
                                   _context.scannedApps.end();
            if (isScanned || std::ranges::any_of(_match.tiles, isIt))
                continue;
            _result.unavailableAppKeys.insert(appKey(app));
            fresh.append(app);
        }
        Page sorted = sortedTiles(fresh, _locale);
        Pages& pages = _result.pages;
        if (!_context.isRestore && !pages.isEmpty()) {
            const qsizetype room = std::max<qsizetype>(0, _context.pageCapacity - pages.last().size());
            const qsizetype taken = std::min(room, sorted.size());
            if (taken > 0) {
                pages.last() += sorted.first(taken);
                sorted = sorted.sliced(taken);
            }
        }
        pages += split(sorted, _context.pageCapacity);
    }

public:
    static Page sortedTiles(const QList<AppEntry>& apps, const Locale& locale) {
        struct Keyed {
            QByteArray key;
            const AppEntry* app;
        };
        QList<Keyed> keyed;
        keyed.reserve(apps.size());
        for (const AppEntry& app : apps)
            keyed.append({locale.nameSortKey(app.name), &app});
        std::ranges::stable_sort(keyed, [](const Keyed& a, const Keyed& b) {
            return a.key != b.key ? a.key < b.key : a.app->path < b.app->path;
        });
        Page result;
        result.reserve(apps.size());
        for (const Keyed& entry : std::as_const(keyed))
            result.append(*entry.app);
        return result;
    }

    static Pages split(const Page& tiles, qsizetype capacity) {
        Pages result;
        for (qsizetype at = 0; at < tiles.size(); at += capacity)
            result.append(tiles.sliced(at, std::min(capacity, tiles.size() - at)));
        return result;
    }

private:
    const MergeContext& _context;
    const Locale& _locale;
    WovenPages _woven;
    ApplicationMatch _match;
    std::size_t _nextTile = 0;
    QSet<QUuid> _closed;
    MergeResult _result;
};

} // namespace

MergeResult mergeLayout(const Pages& pages, const QSet<QString>& hiddenKeys,
                        const MergeContext& context, const Locale& locale) {
    return Merger(pages, hiddenKeys, context, locale).take();
}

RememberedPlaces placesAfterRemoval(const Pages& pages, const RememberedPlaces& places,
                                    const QString& path, Instant now, const Locale& locale) {
    // This merge scans nothing; `isGone` makes all others count as merely out of sight.
    const MergeContext context{
        .isGone = [&](const QString& other) { return other == path; }, .places = places, .now = now};
    RememberedPlaces result = mergeLayout(pages, {}, context, locale).places;
    result.setRemoved(path, true);
    return result;
}

Pages defaultLayout(const QList<AppEntry>& apps, qsizetype pageCapacity, const Locale& locale) {
    return Merger::split(Merger::sortedTiles(apps, locale), pageCapacity);
}

} // namespace tessellar
