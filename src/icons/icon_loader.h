#pragma once

#include "icons/icon_decoder.h"
#include "platform/file_system.h"
#include "platform/worker_pool.h"

#include <QCache>
#include <QHash>
#include <QImage>
#include <QList>
#include <QString>

#include <array>
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
/// What is wanted is said as a whole, in phases, whenever the user moves: the visible page, its
/// neighbours, the rest. Work for what is no longer wanted is cancelled. The first two phases may push
/// out what was shown longest ago; the rest is loaded only while there is room.
class IconLoader {
public:
    static constexpr qsizetype defaultMaximumBytes = qsizetype(40) << 20;

    enum Phase { visible, neighbours, rest };
    using Wishes = std::array<QList<IconWish>, 3>;
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
    void want(const Wishes& wishes, int side);
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
    bool isIdle() const { return _running.empty() && _waiting.isEmpty(); }
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
    };

    bool isFresh(const IconWish& wish) const;
    void start(const IconWish& wish);
    void startWaiting();
    void finish(const IconWish& wish, int side, QImage image);

    const FileSystem& _files;
    WorkerPool& _workers;
    std::shared_ptr<const IconDecoder> _decoder;
    CustomIcons _customIcons;
    std::function<void(const QString&)> _ready;

    int _side = 128;
    Wishes _wishes;
    QList<IconWish> _waiting; ///< of the rest; the two earlier phases are begun at once
    std::unordered_map<QString, Running> _running;
    QCache<QString, Cached> _cache;
    QImage _generic;
};

} // namespace tessellar
