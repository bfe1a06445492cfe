#pragma once

#include "icons/icon_decoder.h"
#include "platform/file_system.h"
#include "platform/worker_pool.h"

#include <QCache>
#include <QHash>
#include <QImage>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

namespace tessellar {

/// An application whose icon is to be shown.
struct IconWish {
    QString appKey;
    QString bundlePath;

    bool operator==(const IconWish&) const = default;
};

/// Decodes the icons of application tiles on workers, at the size in which they are shown, and keeps
/// them in a cache that is bounded in bytes. Main thread only.
///
/// The caller states everything it wants whenever the user moves: the visible page, its neighbours and
/// the rest. Work for pages that are no longer near is cancelled. The first two may push out what was
/// shown longest ago; the rest is asked for one by one, and loaded only while there is room.
class IconLoader {
public:
    static constexpr qsizetype defaultMaximumBytes = qsizetype(40) << 20;

    struct Wishes {
        QList<IconWish> visible;
        QList<IconWish> neighbours;
        /// The next one of the rest; nothing at its end. Thousands need not be listed at each move.
        std::function<std::optional<IconWish>()> rest;
    };
    /// The file of a user's own icon for an app key, where there is one; asked on the main thread.
    using CustomIcons = std::function<std::optional<QString>(const QString& appKey)>;

    IconLoader(const FileSystem& files, WorkerPool& workers,
               std::shared_ptr<const IconDecoder> decoder = std::make_shared<QtIconDecoder>(),
               qsizetype maximumBytes = defaultMaximumBytes);

    void setCustomIcons(CustomIcons customIcons) { _customIcons = std::move(customIcons); }
    /// Called when the icon of an app key has come, or is known to be the generic one.
    void setReady(std::function<void(const QString& appKey)> ready) { _ready = std::move(ready); }

    /// What is wanted from now on, `side` pixels a side. Icons that are there in this size are kept;
    /// those of another size serve until their successors have come.
    void want(Wishes wishes, int side);
    /// Nothing is wanted any more; what has been decoded stays.
    void cancel();

    /// What to show for an app key now: its icon, else the generic one.
    QImage icon(const QString& appKey);
    bool isLoaded(const QString& appKey) const { return _cache.contains(appKey); }
    QImage genericIcon();

    /// The icon of an app key has changed: it is read anew if it is wanted, and the old one shown until
    /// then.
    void reload(const QString& appKey);

    /// True when nothing of the visible page is awaited any more.
    bool hasVisible() const;
    bool isIdle() const { return _running.empty() && !_wishes.rest; }
    qsizetype cachedBytes() const { return _cache.totalCost(); }
    qsizetype maximumBytes() const { return _cache.maxCost(); }

private:
    struct Cached {
        QImage image; ///< null for an application that has none
        QString bundlePath;
        int side = 0;
        bool isStale = false;
    };
    struct Running {
        Task task;
        IconWish wish;
        int side = 0;
        bool isOfRest = false;
    };

    bool isFresh(const IconWish& wish) const;
    void start(const IconWish& wish, bool isOfRest = false);
    void startRest();
    void finish(const IconWish& wish, int side, QImage image);

    const FileSystem& _files;
    WorkerPool& _workers;
    std::shared_ptr<const IconDecoder> _decoder;
    CustomIcons _customIcons;
    std::function<void(const QString&)> _ready;

    int _side = 128;
    Wishes _wishes;
    std::unordered_map<QString, Running> _running;
    QCache<QString, Cached> _cache;
    QImage _generic;
};

} // namespace tessellar
