#include "app/backdrop.h"

#include "app/backdrop_art.h"
#include "platform/desktop_picture.h"

#include <QBuffer>

namespace tessellar {

static const QString sourceKey = QStringLiteral("source");

QString Backdrop::path() const {
    return FileSystem::joined(_machine.places.applicationFolder(), QStringLiteral("Backdrop.png"));
}

bool Backdrop::isWanted() const {
    return _machine.settings.text(QStringLiteral("background")).value_or(QString()) != u"own";
}

// ---- choosing the picture

Backdrop::Picture Backdrop::keptPicture(const FileSystem& files, const QString& path) {
    constexpr std::uint64_t maximumBytes = 2u << 20;
    const auto bytes = files.read(path, maximumBytes);
    const QImage image = bytes ? QImage::fromData(*bytes, "png") : QImage();
    return {image, image.text(sourceKey)};
}

/// Identifies a file by path, size and date; empty if there is none.
static QString sourceOf(const FileSystem& files, const std::optional<QString>& path) {
    const auto status = path ? files.status(*path) : std::unexpected(FileError{});
    return status ? QStringLiteral("%1|%2|%3")
                        .arg(*path)
                        .arg(status->size)
                        .arg(status->modified.secondsSince2001, 0, 'f', 6)
                  : QString();
}

static void keep(const FileSystem& files, const QString& path, QImage image, const QString& source) {
    image.setText(sourceKey, source);
    QBuffer buffer;
    if (buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "png") &&
        files.createDirectories(FileSystem::parent(path)))
        (void)files.writeAtomically(path, buffer.data()); // otherwise it is made again next time
}

void Backdrop::applySettings() {
    if (_hadWanted != isWanted())
        reload();
}

void Backdrop::reload() {
    _hadWanted = isWanted();
    _loading = {};
    if (!_hadWanted)
        return show({});
    constexpr std::uint64_t maximumBytes = 128u << 20;
    _loading = _machine.workers.run(
        Lane::tools,
        [context = DesktopPictureContext{_machine.files, _machine.places.home, _machine.commands,
                                         _machine.environment},
         keptAt = path(), former = _picture](std::stop_token stop) {
            const auto found = desktopPicture(context, stop);
            Picture picture{.image = {}, .source = sourceOf(context.files, found)};
            if (stop.stop_requested() || picture.source == former.source)
                return former;
            const auto bytes = picture.source.isEmpty() ? std::unexpected(FileError{})
                                                        : context.files.read(*found, maximumBytes);
            if (bytes)
                picture.image = blurredPicture(*bytes);
            if (!picture.image.isNull())
                keep(context.files, keptAt, picture.image, picture.source);
            else if (!former.image.isNull())
                (void)context.files.remove(keptAt);
            return picture;
        },
        [this](const Picture& picture) { show(picture); });
}

void Backdrop::show(const Picture& picture) {
    if (picture.source == _picture.source && picture.isOwn() == _picture.isOwn())
        return;
    _picture = picture;
    _drawing = {};
    _drawingSize = {};
    Q_EMIT changed();
}

// ---- drawing it

Backdrop::Drawn Backdrop::drawn(const Picture& picture, QSize size, bool isDark) {
    return picture.isOwn()
               ? Drawn{backdropArt(size), isDark}
               : Drawn{pictureBackdrop(picture.image, size, isDark), isDark, picture.source};
}

void Backdrop::prepare(QSize size) {
    _drawing = _machine.workers.run(
        Lane::computing,
        [&files = _machine.files, keptAt = path(), size, isWanted = isWanted()](std::stop_token) {
            const Picture kept = isWanted ? keptPicture(files, keptAt) : Picture();
            return std::pair(kept, drawn(kept, size, true));
        },
        [this](const std::pair<Picture, Drawn>& made) {
            std::tie(_picture, _drawn) = made;
            Q_EMIT changed();
            reload();
        });
}

void Backdrop::draw(QSize size, bool isDark) {
    if (_drawingSize == size && _isDrawingDark == isDark)
        return;
    _drawingSize = size;
    _isDrawingDark = isDark;
    _drawing = _machine.workers.run(
        Lane::computing,
        [picture = _picture, size, isDark](std::stop_token) { return drawn(picture, size, isDark); },
        [this](const Drawn& made) {
            _drawn = made;
            _drawingSize = {};
            Q_EMIT changed();
        });
}

QImage Backdrop::image(QSize size, bool isDark) {
    const QString source = _picture.isOwn() ? QString() : _picture.source;
    const bool isCurrent = _drawn.image.size() == size && _drawn.source == source &&
                           (_picture.isOwn() || _drawn.isDark == isDark);
    if (isCurrent)
        return _drawn.image;
    if (_picture.isOwn() && _drawn.source.isEmpty()) // quick to make, and never stretched
        _drawn = drawn({}, size, isDark);
    else
        draw(size, isDark);
    return _drawn.image;
}

} // namespace tessellar
