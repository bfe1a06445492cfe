#include "model/application_match.h"

#include <algorithm>

namespace tessellar {
namespace {

class Matcher {
public:
    Matcher(const WovenPages& woven, const MergeContext& context) : _woven(woven), _context(context) {
        indexScan();
        collectTiles();
        claimApplications();
        leaveOthers();
        changeKeys();
        settleAliases();
        for (std::size_t i = 0; i < _claims.size(); ++i)
            if (_claims[i].kind == Claim::none)
                _match.unclaimed.append(_context.scannedApps[static_cast<qsizetype>(i)]);
    }

    ApplicationMatch take() { return std::move(_match); }

private:
    void indexScan() {
        const qsizetype count = _context.scannedApps.size();
        _byPath.reserve(count);
        for (qsizetype i = 0; i < count; ++i)
            _byPath.insert(_context.scannedApps[i].path, i);
        _claims.resize(static_cast<std::size_t>(count));
        _match.tiles.reserve(static_cast<std::size_t>(count));
    }

    /// What is needed to find applications that have moved.
    void indexMoves() {
        const qsizetype count = _context.scannedApps.size();
        _byIdentifier.reserve(count);
        for (qsizetype i = 0; i < count; ++i)
            if (const auto& identifier = _context.scannedApps[i].bundleIdentifier)
                _byIdentifier[*identifier].append(i);
        _livePaths.reserve(count);
        _onlyCopies.reserve(count);
        for (std::size_t i = 0; i < _match.tiles.size(); ++i) {
            const MatchedTile& tile = _match.tiles[i];
            const AppEntry& entry = *tile.entry;
            if (entry.alias)
                continue;
            if (!tile.wasAbsent && entry.bundleIdentifier && !entry.isDuplicateBundleIdentifier &&
                !_onlyCopies.contains(*entry.bundleIdentifier))
                _onlyCopies.insert(*entry.bundleIdentifier, i);
            if (tile.stays)
                (tile.wasAbsent ? _absentPaths : _livePaths).insert(entry.path);
        }
    }
    void indexKeys() {
        _byKey.reserve(_context.scannedApps.size());
        for (qsizetype i = 0; i < _context.scannedApps.size(); ++i)
            _byKey.insert(appKey(_context.scannedApps[i]), i);
    }

    void collectTiles() {
        QHash<QUuid, RememberedHome> homes;
        for (const RememberedHome& home : _context.places.homes)
            if (home.leftAt >= _context.now - RememberedPlaces::duration)
                homes.insert(home.id, home);
        forEachItem(_woven.pages, [&](const LaunchpadItem& item) {
            const AppEntry* entry = item.app();
            if (!entry)
                return true;
            const auto absent = _woven.absent.constFind(entry->id);
            const bool isAbsent = absent != _woven.absent.constEnd();
            MatchedTile& tile = _match.tiles.emplace_back(
                MatchedTile{entry, isAbsent, !isAbsent || !absent->isRemoved});
            if (entry->alias)
                return true;
            if (const auto home = homes.constFind(entry->id); home != homes.constEnd())
                tile.home = *home;
            if (!isAbsent && !homes.isEmpty())
                _tilesInPlace.insert(placeOf(entry->path, entry->bundleIdentifier));
            return true;
        });
    }

    /// Assigns scanned applications to tiles before anything is rewritten. Tiles whose application has
    /// not moved come first, whatever the order of the tiles; mostly that is all of them.
    void claimApplications() {
        claimBy(&Matcher::atHome);
        claimBy(&Matcher::inPlace);
        if (std::ranges::none_of(_match.tiles, &isSought))
            return;
        indexMoves();
        for (const Find find : {&Matcher::backInPlace, &Matcher::moved, &Matcher::renamed,
                                &Matcher::backRenamed, &Matcher::backElsewhere})
            claimBy(find);
    }

    using Find = qsizetype (Matcher::*)(const MatchedTile&) const;
    void claimBy(Find find) {
        for (MatchedTile& tile : _match.tiles)
            if (isSought(tile))
                if (const qsizetype index = (this->*find)(tile); index >= 0)
                    claim(tile, index, find == &Matcher::atHome);
    }
    static bool isMatched(const MatchedTile& tile) { return tile.index >= 0; }
    static bool isSought(const MatchedTile& tile) {
        return !isMatched(tile) && tile.stays && !tile.entry->alias;
    }

    using Place = std::pair<QString, QString>;
    static Place placeOf(const QString& path, const std::optional<QString>& bundleIdentifier) {
        return {path, bundleIdentifier.value_or(QString())};
    }

    /// The application at the tile's home, from before the tile stood for another copy.
    qsizetype atHome(const MatchedTile& tile) const {
        if (!tile.home || _tilesInPlace.contains(placeOf(tile.home->path, tile.home->bundleIdentifier)))
            return -1;
        return unclaimed(at(tile.home->path, tile.home->bundleIdentifier));
    }
    qsizetype inPlace(const MatchedTile& tile) const {
        const qsizetype index =
            tile.wasAbsent ? -1 : at(tile.entry->path, tile.entry->bundleIdentifier);
        // Two tiles of one application are the user's choice, unless one of them has just got it back.
        return index >= 0 && claimOf(index).kind == Claim::byReturn ? -1 : index;
    }
    /// Live tiles with this path take precedence, even if only their identifier differs; so does the
    /// tile of an application that moved here, to where a later copy of it was.
    qsizetype backInPlace(const MatchedTile& tile) const {
        return tile.wasAbsent && !_livePaths.contains(tile.entry->path) && !isMovedTo(tile)
                   ? unclaimed(at(tile.entry->path, tile.entry->bundleIdentifier))
                   : -1;
    }
    /// The only copy is gone from its path, and there is only one again. Of two tiles, the first is the
    /// application's: tiles of new copies are added at the end.
    bool isMovedTo(const MatchedTile& tile) const {
        const QString identifier = tile.entry->bundleIdentifier.value_or(QString());
        const auto only = _onlyCopies.constFind(identifier);
        return only != _onlyCopies.constEnd() && &_match.tiles[*only] < &tile &&
               _byIdentifier.value(identifier).size() == 1 && _context.isGone &&
               _context.isGone(_match.tiles[*only].entry->path);
    }
    /// Where the application of a tile is now if it is no longer in its place.
    qsizetype moved(const MatchedTile& tile) const {
        if (tile.wasAbsent || !tile.entry->bundleIdentifier)
            return -1;
        const QList<qsizetype> copies = _byIdentifier.value(*tile.entry->bundleIdentifier);
        // One of several copies does not move to a place that is another tile's.
        const auto free = std::ranges::find_if(copies, [&](qsizetype i) {
            const QString& path = _context.scannedApps[i].path;
            return claimOf(i).kind == Claim::none &&
                   !(tile.entry->isDuplicateBundleIdentifier &&
                     (_livePaths.contains(path) || _absentPaths.contains(path)));
        });
        if (free != copies.end())
            return *free;
        if (copies.size() != 1)
            return -1;
        // The only copy has its tile. A second tile of the same application is the user's; one of a
        // copy of its own goes with that copy.
        const Claim& first = claimOf(copies.first());
        return first.kind == Claim::byTile && appKey(*first.by) == appKey(*tile.entry) ? copies.first()
                                                                                       : -1;
    }
    qsizetype backElsewhere(const MatchedTile& tile) const {
        if (!tile.wasAbsent || !tile.entry->bundleIdentifier)
            return -1;
        const QList<qsizetype> copies = _byIdentifier.value(*tile.entry->bundleIdentifier);
        if (tile.entry->isDuplicateBundleIdentifier && copies.size() > 1)
            return -1;
        const auto free =
            std::ranges::find_if(copies, [&](qsizetype i) { return claimOf(i).kind == Claim::none; });
        return free == copies.end() ? -1 : *free;
    }
    /// The application in the tile's place, with another identifier.
    qsizetype renamed(const MatchedTile& tile) const {
        return tile.wasAbsent ? -1 : unclaimed(_byPath.value(tile.entry->path, -1));
    }
    qsizetype backRenamed(const MatchedTile& tile) const {
        const qsizetype index = unclaimed(_byPath.value(tile.entry->path, -1));
        return index < 0 && tile.home ? unclaimed(_byPath.value(tile.home->path, -1)) : index;
    }

    qsizetype at(const QString& path, const std::optional<QString>& bundleIdentifier) const {
        const qsizetype index = _byPath.value(path, -1);
        return index >= 0 && _context.scannedApps[index].bundleIdentifier == bundleIdentifier ? index
                                                                                              : -1;
    }
    qsizetype unclaimed(qsizetype index) const {
        return index >= 0 && claimOf(index).kind == Claim::none ? index : -1;
    }

    struct Claim {
        enum Kind { none, byTile, byReturn } kind = none;
        const AppEntry* by = nullptr; ///< the latest claim
    };
    const Claim& claimOf(qsizetype index) const { return _claims[static_cast<std::size_t>(index)]; }

    void claim(MatchedTile& tile, qsizetype index, bool isHome) {
        const AppEntry& entry = *tile.entry;
        const AppEntry& app = _context.scannedApps[index];
        const bool isReturn = isHome || tile.wasAbsent;
        _claims[static_cast<std::size_t>(index)] = {isReturn ? Claim::byReturn : Claim::byTile, &entry};
        tile.index = index;
        if (app.bundleIdentifier != entry.bundleIdentifier)
            tile.id = app.id;
        if (const QString before = appKey(entry), now = appKey(app); before != now)
            _keyChanges.append({before, now});

        if (tile.home && tile.home->path == app.path)
            tile.home.reset();
        else if (tile.home)
            tile.home->id = tile.id;
        else if (app.path != entry.path)
            tile.home = {tile.id, entry.path, entry.bundleIdentifier, _context.now};
    }

    /// Decides which of the other tiles are merely out of sight. If a present application now has their
    /// key, they are keyed by their paths: one application's data never passes to another.
    void leaveOthers() {
        if (std::ranges::all_of(_match.tiles, &isMatched))
            return;
        indexKeys();
        for (std::size_t i = 0; i < _match.tiles.size(); ++i) {
            MatchedTile& tile = _match.tiles[i];
            if (isMatched(tile) || tile.entry->alias)
                continue;
            tile.isAbsent = !isOnlyAway(tile);
            if (tile.stays && tile.entry->bundleIdentifier &&
                _byKey.contains(appKey(tile.unscanned()))) {
                if (!tile.changed)
                    tile.changed = *tile.entry;
                tile.changed->isDuplicateBundleIdentifier = true;
            }
            const QString key = appKey(tile.unscanned());
            if (const QString before = appKey(*tile.entry); before != key)
                _keyChanges.append({before, key});
            if (!_others.contains(key))
                _others.insert(key, i);
        }
    }

    /// True if the tile's application may still be there, out of sight: in its place, or at its home if
    /// the copy that it stood for is gone.
    bool isOnlyAway(MatchedTile& tile) {
        // Its path may now hold another application, which another tile stands for.
        const auto mayBeAt = [&](const QString& path) {
            return !_byPath.contains(path) && !(_context.isGone && _context.isGone(path));
        };
        if (tile.wasAbsent || mayBeAt(tile.entry->path))
            return !tile.wasAbsent;
        if (!tile.home || !mayBeAt(tile.home->path))
            return false;
        tile.changed = *tile.entry;
        tile.changed->path = tile.home->path;
        tile.changed->bundleIdentifier = tile.home->bundleIdentifier;
        tile.changed->isDuplicateBundleIdentifier = false;
        tile.home.reset();
        return true;
    }

    // ---- keys

    void changeKeys() {
        if (_keyChanges.isEmpty())
            return;
        QSet<QString> kept; // by other tiles with a scanned application
        for (const MatchedTile& tile : _match.tiles)
            if (isMatched(tile))
                if (const QString key = appKey(*tile.entry);
                    key == appKey(_context.scannedApps[tile.index]))
                    kept.insert(key);
        for (const auto& [before, now] : std::as_const(_keyChanges))
            if (!kept.contains(before) && !_match.changedKeys.contains(before))
                _match.changedKeys.insert(before, now);
    }

    /// Aliases follow their applications' tiles.
    void settleAliases() {
        for (MatchedTile& tile : _match.tiles) {
            if (!tile.entry->alias)
                continue;
            const QString key = currentKey(tile.entry->alias->appKey);
            tile.index = tile.stays ? _byKey.value(key, -1) : -1;
            if (tile.index >= 0)
                continue;
            const auto other = _others.constFind(key);
            if (other == _others.constEnd()) {
                tile.isAbsent = !isOnlyAway(tile);
            } else {
                const MatchedTile& application = _match.tiles[*other];
                tile.isAbsent = tile.wasAbsent || application.isAbsent;
                tile.changed = *tile.entry;
                tile.changed->path = application.unscanned().path;
            }
            if (key != tile.entry->alias->appKey) {
                if (!tile.changed)
                    tile.changed = *tile.entry;
                tile.changed->alias->appKey = key;
            }
        }
    }

    QString currentKey(const QString& key) const { return _match.changedKeys.value(key, key); }

    const WovenPages& _woven;
    const MergeContext& _context;
    QHash<QString, qsizetype> _byPath;
    QHash<QString, qsizetype> _byKey;
    QHash<QString, QList<qsizetype>> _byIdentifier;
    std::vector<Claim> _claims; ///< by index of the scanned application
    QSet<Place> _tilesInPlace;
    QSet<QString> _livePaths; ///< of live tiles
    QSet<QString> _absentPaths;
    QHash<QString, std::size_t> _onlyCopies;        ///< by identifier: the first tile of each
    QHash<QString, std::size_t> _others;            ///< by key: the tiles without a scanned application
    QList<std::pair<QString, QString>> _keyChanges; ///< in order of precedence
    ApplicationMatch _match;
};

} // namespace

ApplicationMatch matchApplications(const WovenPages& woven, const MergeContext& context) {
    return Matcher(woven, context).take();
}

} // namespace tessellar
