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

/// An icon to load.
struct IconRequest {
    QString appKey;
    QString bundlePath;

    bool operator==(const IconRequest&) const = default;
};

/// Decodes application icons on workers at their display size, into a cache limited in bytes. Main
/// thread only.
///
/// After each navigation the caller states everything it wants: the visible page, its neighbours and
/// the rest. Work for pages no longer near is cancelled. The first two may evict the least recently
/// shown; the rest is requested one by one, and only loaded while there is room.
class IconLoader {
public:
    static constexpr qsizetype defaultMaximumBytes = qsizetype(40) << 20;

    struct Requests {
        QList<IconRequest> visible;
        QList<IconRequest> neighbours;
        /// Returns the next of the rest, nullopt at the end: saves listing thousands on each
        /// navigation.
        std::function<std::optional<IconRequest>()> rest;
    };
    /// The path of an app key's custom icon, if any; called on the main thread.
    using CustomIcons = std::function<std::optional<QString>(const QString& appKey)>;

    IconLoader(const FileSystem& files, WorkerPool& workers,
               std::shared_ptr<const IconDecoder> decoder = std::make_shared<QtIconDecoder>(),
               qsizetype maximumBytes = defaultMaximumBytes);

    void setCustomIcons(CustomIcons customIcons) { _customIcons = std::move(customIcons); }
    /// Called when an icon has been loaded, or turned out to be the generic one.
    void setReady(std::function<void(const QString& appKey)> ready) { _ready = std::move(ready); }

    /// Replaces the set of wanted icons; `side` in pixels. Cached icons of that size are kept; those of
    /// another are shown until replaced.
    void request(Requests requests, int side);
    /// Cancels all loading; keeps the cache.
    void cancel();

    /// The icon to show now: the cached one, else the generic one.
    QImage icon(const QString& appKey);
    bool isLoaded(const QString& appKey) const { return _cache.contains(appKey); }
    QImage genericIcon();

    /// The icon changed: reloads it if wanted, showing the old one until then.
    void reload(const QString& appKey);

    /// True once every icon of the visible page is loaded.
    bool hasVisible() const;
    bool isIdle() const { return _running.empty() && !_requests.rest; }
    qsizetype cachedBytes() const { return _cache.totalCost(); }
    qsizetype maximumBytes() const { return _cache.maxCost(); }

private:
    struct Cached {
        QImage image; ///< null if the application has no icon
        QString bundlePath;
        int side = 0;
        bool isStale = false;
    };
    struct Running {
        Task task;
        IconRequest request;
        int side = 0;
        bool isOfRest = false;
    };

    bool isFresh(const IconRequest& request) const;
    void start(const IconRequest& request, bool isOfRest = false);
    void startRest();
    void finish(const IconRequest& request, int side, QImage image);

    const FileSystem& _files;
    WorkerPool& _workers;
    std::shared_ptr<const IconDecoder> _decoder;
    CustomIcons _customIcons;
    std::function<void(const QString&)> _ready;

    int _side = 128;
    Requests _requests;
    std::unordered_map<QString, Running> _running;
    QCache<QString, Cached> _cache;
    QImage _generic;
};

} // namespace tessellar
