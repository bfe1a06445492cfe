#include "icons/icon_loader.h"

#include "icons/app_icon.h"

#include <QSet>

#include <algorithm>

namespace tessellar {

namespace {
/// The cost of an entry without an image, so that their number is bounded, too.
constexpr qsizetype emptyCost = 256;
qsizetype costOf(const QImage& image) { return image.isNull() ? emptyCost : image.sizeInBytes(); }
} // namespace

IconLoader::IconLoader(const FileSystem& files, WorkerPool& workers,
                       std::shared_ptr<const IconDecoder> decoder, qsizetype maximumBytes)
    : _files(files), _workers(workers), _decoder(std::move(decoder)), _cache(maximumBytes) {}

bool IconLoader::isFresh(const IconRequest& request) const {
    const Cached* cached = _cache.object(request.appKey);
    return cached && !cached->isStale && cached->side == _side &&
           cached->bundlePath == request.bundlePath;
}

void IconLoader::request(Requests requests, int side) {
    _requests = std::move(requests);
    _side = side;

    QSet<QString> near;
    for (const auto* list : {&_requests.visible, &_requests.neighbours})
        for (const IconRequest& request : *list)
            near.insert(request.appKey);
    std::erase_if(_running, [&](const auto& entry) {
        return entry.second.side != _side || !(entry.second.isOfRest || near.contains(entry.first));
    });

    // Refreshes the cache's order: the visible page is evicted last, its neighbours just before it.
    for (const auto* list : {&_requests.neighbours, &_requests.visible})
        for (const IconRequest& request : *list)
            (void)_cache.object(request.appKey);
    for (const auto* list : {&_requests.visible, &_requests.neighbours})
        for (const IconRequest& request : *list)
            if (!isFresh(request))
                start(request);
    startRest();
}

bool IconLoader::hasVisible() const {
    return std::ranges::none_of(_requests.visible, [this](const IconRequest& request) {
        return _running.contains(request.appKey);
    });
}

void IconLoader::cancel() {
    _requests = {};
    _running.clear();
}

void IconLoader::start(const IconRequest& request, bool isOfRest) {
    const auto found = _running.find(request.appKey);
    if (found != _running.end() && found->second.request == request)
        return;
    std::optional<QString> custom = _customIcons ? _customIcons(request.appKey) : std::nullopt;
    Running running{.task = {}, .request = request, .side = _side, .isOfRest = isOfRest};
    running.task = _workers.run(
        Lane::decoding,
        [&files = _files, decoder = _decoder, path = request.bundlePath, custom = std::move(custom),
         side = _side](std::stop_token) { return loadAppIcon(files, *decoder, path, custom, side); },
        [this, request, side = _side](QImage image) { finish(request, side, std::move(image)); });
    _running.insert_or_assign(request.appKey, std::move(running));
}

void IconLoader::startRest() {
    // Few at a time, so that the page that the user turns to next does not queue behind them.
    const std::size_t few = std::size_t(2) * _workers.threadCount(Lane::decoding);
    const qsizetype bytes = qsizetype(4) * _side * _side;
    while (_requests.rest && _running.size() < few) {
        const qsizetype promised = static_cast<qsizetype>(_running.size() + 1) * bytes;
        const bool hasRoom = _cache.totalCost() + promised <= _cache.maxCost();
        const auto next = hasRoom ? _requests.rest() : std::nullopt;
        if (!next)
            _requests.rest = nullptr;
        else if (!isFresh(*next))
            start(*next, true);
    }
}

void IconLoader::finish(const IconRequest& request, int side, QImage image) {
    _running.erase(request.appKey);
    const qsizetype cost = costOf(image);
    _cache.insert(request.appKey,
                  new Cached{.image = std::move(image), .bundlePath = request.bundlePath, .side = side},
                  cost);
    startRest();
    if (_ready)
        _ready(request.appKey);
}

QImage IconLoader::icon(const QString& appKey) {
    const Cached* cached = _cache.object(appKey);
    return cached && !cached->image.isNull() ? cached->image : genericIcon();
}

QImage IconLoader::genericIcon() {
    if (_generic.width() != _side)
        _generic = genericAppIcon(_side);
    return _generic;
}

void IconLoader::reload(const QString& appKey) {
    if (Cached* cached = _cache.object(appKey))
        cached->isStale = true;
    _running.erase(appKey);
    for (const auto* list : {&_requests.visible, &_requests.neighbours})
        for (const IconRequest& request : *list)
            if (request.appKey == appKey)
                return start(request);
}

} // namespace tessellar
