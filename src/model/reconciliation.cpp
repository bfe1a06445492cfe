#include "model/reconciliation.h"

#include <algorithm>

namespace tessellar {
namespace {

class Merger {
public:
    Merger(const Pages& pages, const QSet<QString>& hiddenKeys, const MergeContext& context,
           const Locale& locale)
        : _context(context), _locale(locale) {
        indexScan();
        claimApplications(pages);
        _result.hiddenKeys = currentKeys(hiddenKeys);
        _result.pages = rewritten(pages);
        addNewApplications();
    }

    MergeResult take() { return std::move(_result); }

private:
    void indexScan() {
        const qsizetype count = _context.scannedApps.size();
        _byPath.reserve(count);
        _byKey.reserve(count);
        _byIdentifier.reserve(count);
        _applicationOfTile.reserve(count);
        for (qsizetype i = 0; i < count; ++i) {
            const AppEntry& app = _context.scannedApps[i];
            _byPath.insert(app.path, i);
            _byKey.insert(appKey(app), i);
            if (app.bundleIdentifier)
                _byIdentifier[*app.bundleIdentifier].append(i);
        }
        _claimed.resize(static_cast<std::size_t>(_context.scannedApps.size()));
    }

    /// Finds out, before anything is rewritten, which scanned application each tile stands for: one
    /// that lies where it lay has the first claim, whatever the order of the tiles.
    void claimApplications(const Pages& pages) {
        QList<std::pair<qsizetype, AppEntry>> moved;
        forEachItem(pages, [&](const LaunchpadItem& item) {
            const AppEntry* tile = item.app();
            if (!tile || tile->alias)
                return true;
            const qsizetype number = _applicationOfTile.size();
            _applicationOfTile.append(-1);
            const qsizetype index = _byPath.value(tile->path, -1);
            if (index >= 0 && _context.scannedApps[index].bundleIdentifier == tile->bundleIdentifier)
                claim(number, *tile, index);
            else
                moved.append({number, *tile});
            return true;
        });
        for (const auto& [number, tile] : std::as_const(moved))
            if (const qsizetype index = movedApplication(tile); index >= 0)
                claim(number, tile, index);
    }

    /// Where the application of a tile is now that it does not lie where it lay.
    qsizetype movedApplication(const AppEntry& tile) const {
        if (!tile.bundleIdentifier)
            return _byKey.value(tile.path, -1);
        const QList<qsizetype> copies = _byIdentifier.value(*tile.bundleIdentifier);
        if (copies.isEmpty())
            return -1;
        const auto free = std::ranges::find_if(copies, [&](qsizetype i) { return !isClaimed(i); });
        if (free != copies.end())
            return *free;
        // All copies have their tiles. One that stood for a copy of its own is gone with it; a second
        // tile for the only copy is the user's.
        return tile.isDuplicateBundleIdentifier || copies.size() > 1 ? -1 : copies.first();
    }

    void claim(qsizetype number, const AppEntry& tile, qsizetype index) {
        _claimed[static_cast<std::size_t>(index)] = true;
        _applicationOfTile[number] = index;
        const QString before = appKey(tile);
        const QString now = appKey(_context.scannedApps[index]);
        if (before != now)
            _result.changedKeys.insert(before, now);
    }

    bool isClaimed(qsizetype index) const { return _claimed[static_cast<std::size_t>(index)]; }

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
        if (const AppEntry* tile = item.app())
            return rewritten(*tile);
        if (const FolderEntry* folder = item.folder())
            return rewritten(*folder);
        return item;
    }

    std::optional<LaunchpadItem> rewritten(const FolderEntry& folder) {
        Pages pages = rewritten(folder.pages);
        if (pages.isEmpty())
            return std::nullopt;
        if (pages.size() == 1 && pages.first().size() == 1)
            return pages.first().first();
        FolderEntry result = folder;
        result.pages = std::move(pages);
        return result;
    }

    std::optional<LaunchpadItem> rewritten(const AppEntry& tile) {
        qsizetype index = -1;
        std::optional<AppAliasReference> alias;
        if (tile.alias) {
            alias = AppAliasReference{currentKey(tile.alias->appKey)};
            index = _byKey.value(alias->appKey, -1);
        } else {
            index = _applicationOfTile[_nextTile++];
        }
        if (index < 0) {
            if (_context.isGone && _context.isGone(tile.path))
                return std::nullopt;
            _result.unavailableAppKeys.insert(appKey(tile));
            return tile;
        }
        AppEntry fresh = _context.scannedApps[index];
        fresh.id = tile.id;
        fresh.alias = std::move(alias);
        if (tile.name != tile.originalName)
            fresh.name = tile.name;
        return fresh;
    }

    void addNewApplications() {
        QList<AppEntry> fresh;
        for (qsizetype i = 0; i < _context.scannedApps.size(); ++i)
            if (!isClaimed(i))
                fresh.append(_context.scannedApps[i]);
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
    QHash<QString, qsizetype> _byPath;
    QHash<QString, qsizetype> _byKey;
    QHash<QString, QList<qsizetype>> _byIdentifier;
    std::vector<bool> _claimed;
    /// By the number of the tile in the order of both passes: a file may give one identifier to
    /// several.
    QList<qsizetype> _applicationOfTile;
    qsizetype _nextTile = 0;
    MergeResult _result;
};

} // namespace

MergeResult mergeLayout(const Pages& pages, const QSet<QString>& hiddenKeys,
                        const MergeContext& context, const Locale& locale) {
    return Merger(pages, hiddenKeys, context, locale).take();
}

Pages defaultLayout(const QList<AppEntry>& apps, qsizetype pageCapacity, const Locale& locale) {
    return Merger::split(Merger::sortedTiles(apps, locale), pageCapacity);
}

} // namespace tessellar
