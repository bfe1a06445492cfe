#include "icons/icon_loader.h"

#include "icons/app_icon.h"

#include <QSet>

#include <algorithm>

namespace tessellar {

namespace {
/// What an entry without an image counts, so that their number is bounded as well.
constexpr qsizetype emptyCost = 256;
qsizetype costOf(const QImage& image) { return image.isNull() ? emptyCost : image.sizeInBytes(); }
} // namespace

IconLoader::IconLoader(const FileSystem& files, WorkerPool& workers,
                       std::shared_ptr<const IconDecoder> decoder, qsizetype maximumBytes)
    : _files(files), _workers(workers), _decoder(std::move(decoder)), _cache(maximumBytes) {}

bool IconLoader::isFresh(const IconWish& wish) const {
    const Cached* cached = _cache.object(wish.appKey);
    return cached && !cached->isStale && cached->side == _side && cached->bundlePath == wish.bundlePath;
}

void IconLoader::want(Wishes wishes, int side) {
    _wishes = std::move(wishes);
    _side = side;

    QSet<QString> near;
    for (const auto* list : {&_wishes.visible, &_wishes.neighbours})
        for (const IconWish& wish : *list)
            near.insert(wish.appKey);
    std::erase_if(_running, [&](const auto& entry) {
        return entry.second.side != _side || !(entry.second.isOfRest || near.contains(entry.first));
    });

    // What is looked up last is pushed out last: the visible page goes to the front of the cache after
    // its neighbours.
    for (const auto* list : {&_wishes.neighbours, &_wishes.visible})
        for (const IconWish& wish : *list)
            (void)_cache.object(wish.appKey);
    for (const auto* list : {&_wishes.visible, &_wishes.neighbours})
        for (const IconWish& wish : *list)
            if (!isFresh(wish))
                start(wish);
    startRest();
}

bool IconLoader::hasVisible() const {
    return std::ranges::none_of(
        _wishes.visible, [this](const IconWish& wish) { return _running.contains(wish.appKey); });
}

void IconLoader::cancel() {
    _wishes = {};
    _running.clear();
}

void IconLoader::start(const IconWish& wish, bool isOfRest) {
    const auto found = _running.find(wish.appKey);
    if (found != _running.end() && found->second.wish == wish)
        return;
    std::optional<QString> custom = _customIcons ? _customIcons(wish.appKey) : std::nullopt;
    Running running{.task = {}, .wish = wish, .side = _side, .isOfRest = isOfRest};
    running.task = _workers.run(
        Lane::decoding,
        [&files = _files, decoder = _decoder, path = wish.bundlePath, custom = std::move(custom),
         side = _side](std::stop_token) { return loadAppIcon(files, *decoder, path, custom, side); },
        [this, wish, side = _side](QImage image) { finish(wish, side, std::move(image)); });
    _running.insert_or_assign(wish.appKey, std::move(running));
}

void IconLoader::startRest() {
    // Few at a time: what the user turns to next is not to wait behind a long queue.
    const std::size_t few = std::size_t(2) * _workers.threadCount(Lane::decoding);
    const qsizetype bytes = qsizetype(4) * _side * _side;
    while (_wishes.rest && _running.size() < few) {
        const qsizetype promised = static_cast<qsizetype>(_running.size() + 1) * bytes;
        const bool hasRoom = _cache.totalCost() + promised <= _cache.maxCost();
        const auto next = hasRoom ? _wishes.rest() : std::nullopt;
        if (!next)
            _wishes.rest = nullptr;
        else if (!isFresh(*next))
            start(*next, true);
    }
}

void IconLoader::finish(const IconWish& wish, int side, QImage image) {
    _running.erase(wish.appKey);
    const qsizetype cost = costOf(image);
    _cache.insert(wish.appKey,
                  new Cached{.image = std::move(image), .bundlePath = wish.bundlePath, .side = side},
                  cost);
    startRest();
    if (_ready)
        _ready(wish.appKey);
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
    for (const auto* list : {&_wishes.visible, &_wishes.neighbours})
        for (const IconWish& wish : *list)
            if (wish.appKey == appKey)
                return start(wish);
}

} // namespace tessellar
