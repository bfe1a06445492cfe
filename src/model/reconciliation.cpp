#include "model/reconciliation.h"

#include <algorithm>
#include <vector>

namespace tessellar {
namespace {

class Merger {
public:
    Merger(const Pages& pages, const QSet<QString>& hiddenKeys, const MergeContext& context,
           const Locale& locale)
        : _context(context)
        , _locale(locale)
        , _woven(weave(pages, context.places, context.now - RememberedPlaces::duration)) {
        // Folders that are made again may hold the user's own, moved there since.
        if (!_woven.absent.isEmpty() && folderDepth(_woven.pages) > maximumFolderDepth)
            _woven = {pages, {}};
        indexScan();
        collectTiles();
        claimApplications();
        _result.hiddenKeys = currentKeys(hiddenKeys);
        _result.pages = rewritten(_woven.pages);
        remember(pages);
        addNewApplications();
    }

    MergeResult take() { return std::move(_result); }

private:
    /// An application tile, in the order in which they lie: a file may give one identifier to several.
    struct Tile {
        const AppEntry* entry;
        bool wasAbsent;
        bool stays = true;     ///< what was removed by the user is not looked for
        qsizetype index = -1;  ///< of the scanned application
        bool isAbsent = false; ///< after the merge
        QUuid id;              ///< after the merge
    };

    void indexScan() {
        const qsizetype count = _context.scannedApps.size();
        _byPath.reserve(count);
        _byKey.reserve(count);
        _byIdentifier.reserve(count);
        for (qsizetype i = 0; i < count; ++i) {
            const AppEntry& app = _context.scannedApps[i];
            _byPath.insert(app.path, i);
            _byKey.insert(appKey(app), i);
            if (app.bundleIdentifier)
                _byIdentifier[*app.bundleIdentifier].append(i);
        }
        _claims.resize(static_cast<std::size_t>(count));
    }

    void collectTiles() {
        for (const RememberedHome& home : _context.places.homes)
            if (home.leftAt >= _context.now - RememberedPlaces::duration)
                _homes.insert(home.id, home);
        forEachItem(_woven.pages, [&](const LaunchpadItem& item) {
            const AppEntry* entry = item.app();
            if (!entry)
                return true;
            const auto absent = _woven.absent.constFind(entry->id);
            const bool isAbsent = absent != _woven.absent.constEnd();
            _tiles.push_back({entry, isAbsent, !isAbsent || !absent->isRemoved, -1, false, entry->id});
            if (!isAbsent && !_homes.isEmpty())
                _tilesInPlace.insert(placeOf(entry->path, *entry));
            return true;
        });
    }

    /// Finds out, before anything is rewritten, which scanned application each tile stands for: one
    /// that lies where it lay has the first claim, whatever the order of the tiles.
    void claimApplications() {
        using Find = qsizetype (Merger::*)(const Tile&) const;
        static constexpr Find ways[] = {&Merger::atHome, &Merger::inPlace,       &Merger::backInPlace,
                                        &Merger::moved,  &Merger::backElsewhere, &Merger::renamed};
        for (const Find find : ways)
            for (Tile& tile : _tiles)
                if (tile.index < 0 && tile.stays && !tile.entry->alias)
                    if (const qsizetype index = (this->*find)(tile); index >= 0)
                        claim(tile, index, find == &Merger::atHome);
        for (Tile& tile : _tiles)
            if (tile.stays && tile.entry->alias)
                tile.index = _byKey.value(currentKey(tile.entry->alias->appKey), -1);
    }

    static std::pair<QString, QString> placeOf(const QString& path, const AppEntry& entry) {
        return {path, entry.bundleIdentifier.value_or(QString())};
    }

    /// The application where the tile's lay before the tile stood for another copy.
    qsizetype atHome(const Tile& tile) const {
        const auto home = _homes.constFind(tile.entry->id);
        if (home == _homes.constEnd() || _tilesInPlace.contains(placeOf(home->path, *tile.entry)))
            return -1;
        return unclaimed(sameAt(home->path, tile));
    }
    qsizetype inPlace(const Tile& tile) const {
        const qsizetype index = tile.wasAbsent ? -1 : sameAt(tile.entry->path, tile);
        // Two tiles for one application are the user's, unless one of them has just got it back.
        return index >= 0 && claimOf(index) == Claim::byReturn ? -1 : index;
    }
    qsizetype backInPlace(const Tile& tile) const {
        return tile.wasAbsent ? unclaimed(sameAt(tile.entry->path, tile)) : -1;
    }
    /// Where the application of a tile is now that it does not lie where it lay.
    qsizetype moved(const Tile& tile) const {
        if (tile.wasAbsent)
            return -1;
        if (!tile.entry->bundleIdentifier)
            return _byKey.value(tile.entry->path, -1);
        const QList<qsizetype> copies = _byIdentifier.value(*tile.entry->bundleIdentifier);
        if (const qsizetype free = firstUnclaimed(copies); free >= 0 || copies.size() != 1)
            return free;
        // All copies have their tiles. One that stood for a copy of its own is gone with it; a second
        // tile for the only copy is the user's.
        return tile.entry->isDuplicateBundleIdentifier || claimOf(copies.first()) == Claim::byReturn
                   ? -1
                   : copies.first();
    }
    qsizetype backElsewhere(const Tile& tile) const {
        if (!tile.wasAbsent || !tile.entry->bundleIdentifier)
            return -1;
        const QList<qsizetype> copies = _byIdentifier.value(*tile.entry->bundleIdentifier);
        return tile.entry->isDuplicateBundleIdentifier && copies.size() > 1 ? -1
                                                                            : firstUnclaimed(copies);
    }
    /// What lies at the tile's path under another identifier.
    qsizetype renamed(const Tile& tile) const { return unclaimed(_byPath.value(tile.entry->path, -1)); }

    qsizetype sameAt(const QString& path, const Tile& tile) const {
        const qsizetype index = _byPath.value(path, -1);
        return index >= 0 &&
                       _context.scannedApps[index].bundleIdentifier == tile.entry->bundleIdentifier
                   ? index
                   : -1;
    }
    qsizetype firstUnclaimed(const QList<qsizetype>& copies) const {
        const auto free =
            std::ranges::find_if(copies, [&](qsizetype i) { return claimOf(i) == Claim::none; });
        return free == copies.end() ? -1 : *free;
    }
    qsizetype unclaimed(qsizetype index) const {
        return index >= 0 && claimOf(index) == Claim::none ? index : -1;
    }

    enum class Claim { none, byTile, byReturn };
    Claim claimOf(qsizetype index) const { return _claims[static_cast<std::size_t>(index)]; }

    void claim(Tile& tile, qsizetype index, bool isHome) {
        const AppEntry& app = _context.scannedApps[index];
        const bool isReturn = isHome || tile.wasAbsent;
        _claims[static_cast<std::size_t>(index)] = isReturn ? Claim::byReturn : Claim::byTile;
        tile.index = index;
        if (app.bundleIdentifier != tile.entry->bundleIdentifier)
            tile.id = app.id;
        const QString before = appKey(*tile.entry);
        const QString now = appKey(app);
        if (before != now && !_byKey.contains(before) && !_result.changedKeys.contains(before))
            _result.changedKeys.insert(before, now);

        if (isHome || app.path == tile.entry->path) {
            if (isHome)
                _homes.remove(tile.entry->id);
        } else if (!_homes.contains(tile.entry->id)) {
            _homes.insert(tile.entry->id, {tile.entry->id, tile.entry->path, _context.now});
        }
    }

    QString currentKey(const QString& key) const { return _result.changedKeys.value(key, key); }

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
            return rewritten(_tiles[_nextTile++]);
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

    std::optional<LaunchpadItem> rewritten(Tile& tile) {
        const AppEntry& entry = *tile.entry;
        if (tile.index < 0) {
            AppEntry away = entry;
            if (isOnlyAway(tile, away)) {
                _result.unavailableAppKeys.insert(appKey(away));
                return away;
            }
            tile.isAbsent = true;
            if (!tile.wasAbsent)
                _result.dropped.append(entry);
            return std::nullopt;
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

    /// True for the tile of an application that may be there, out of sight: where it lay, or where it
    /// lay before the tile stood for another copy, which is gone. That is then where `away` lies.
    bool isOnlyAway(const Tile& tile, AppEntry& away) {
        // At its path there may be another application, which another tile stands for.
        const auto mayBeAt = [&](const QString& path) {
            return !_byPath.contains(path) && !(_context.isGone && _context.isGone(path));
        };
        if (tile.wasAbsent || mayBeAt(away.path))
            return !tile.wasAbsent;
        const auto home = _homes.constFind(away.id);
        if (home == _homes.constEnd() || !mayBeAt(home->path))
            return false;
        away.path = home->path;
        away.isDuplicateBundleIdentifier = false;
        _homes.erase(home);
        return true;
    }

    // ---- what is remembered

    void remember(const Pages& before) {
        if (!_result.dropped.isEmpty() || !_closed.isEmpty())
            sayWhatClosed(before);
        if (_result.dropped.isEmpty() && _woven.absent.isEmpty() && _homes.isEmpty())
            return;
        RememberedPlaces& places = _result.places;
        QSet<QUuid> ids;
        for (const Tile& tile : std::as_const(_tiles)) {
            ids.insert(tile.id);
            if (tile.isAbsent || tile.wasAbsent)
                places.places.append(_woven.absent.value(
                    tile.entry->id, RememberedPlace{tile.entry->id, _context.now, false}));
        }
        for (const RememberedHome& home : std::as_const(_homes))
            if (ids.contains(home.id))
                places.homes.append(home);
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

    void sayWhatClosed(const Pages& before) {
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

    /// The tiles that are remembered in full, of the others the identifiers, in the same order.
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
                    const Tile& tile = _tiles[_nextTile++];
                    AppEntry entry = *tile.entry;
                    if (entry.alias)
                        entry.alias->appKey = currentKey(entry.alias->appKey);
                    if ((tile.isAbsent || tile.wasAbsent) && remembered.contains(entry.id) &&
                        tile.id == entry.id)
                        kept.append(entry);
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
        QList<AppEntry> fresh;
        for (qsizetype i = 0; i < _context.scannedApps.size(); ++i)
            if (claimOf(i) == Claim::none)
                fresh.append(_context.scannedApps[i]);
        for (const AppEntry& app : _context.unseenApps) {
            const auto isIt = [&](const Tile& tile) {
                return !tile.isAbsent && tile.entry->path == app.path;
            };
            if (_byPath.contains(app.path) || std::ranges::any_of(_tiles, isIt))
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
    QHash<QString, qsizetype> _byPath;
    QHash<QString, qsizetype> _byKey;
    QHash<QString, QList<qsizetype>> _byIdentifier;
    std::vector<Claim> _claims; ///< on the scanned applications
    std::vector<Tile> _tiles;
    std::size_t _nextTile = 0;
    QSet<std::pair<QString, QString>> _tilesInPlace;
    QHash<QUuid, RememberedHome> _homes;
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
    // To a merge that sees nothing, all others are only out of sight.
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
