#include "app/activation_triggers.h"

#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace tessellar {

namespace {

constexpr int cornerSide = 3; ///< pixels: too small to be entered by accident

QPoint cornerOf(const QRect& screen, Qt::Corner corner) {
    switch (corner) {
    case Qt::TopLeftCorner:
        return screen.topLeft();
    case Qt::TopRightCorner:
        return screen.topRight();
    case Qt::BottomLeftCorner:
        return screen.bottomLeft();
    case Qt::BottomRightCorner:
        return screen.bottomRight();
    }
    Q_UNREACHABLE();
}

QList<QRect> screens() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->geometry());
    return areas;
}

} // namespace

std::optional<HotCorner> HotCorner::named(const QString& name) {
    for (const auto& [known, corner] : {std::pair{"topLeft", Qt::TopLeftCorner},
                                        {"topRight", Qt::TopRightCorner},
                                        {"bottomLeft", Qt::BottomLeftCorner},
                                        {"bottomRight", Qt::BottomRightCorner}})
        if (name == QLatin1String(known))
            return HotCorner(corner);
    return std::nullopt;
}

bool HotCorner::isEntered(QPoint pointer, const QList<QRect>& screens) {
    bool isInside = false;
    for (const QRect& screen : screens) {
        const QPoint away = pointer - cornerOf(screen, _corner);
        isInside = isInside || (std::abs(away.x()) < cornerSide && std::abs(away.y()) < cornerSide);
    }
    return !std::exchange(_isInside, isInside) && isInside;
}

ActivationTriggers::ActivationTriggers(const Settings& settings, Log& log,
                                       std::function<void()> summoned)
    : _settings(settings), _log(log), _summoned(std::move(summoned)) {
    apply();
}

void ActivationTriggers::apply() {
    takeKey();
    takeCorner();
}

void ActivationTriggers::takeKey() {
    const QString text = _settings.text(QStringLiteral("summon.hotKey")).value_or(QString());
    const auto chord = keyChord(text);
    if (chord == std::exchange(_chord, chord) && (_key || !chord))
        return;
    _key.reset(); // released first, because the new key may be the same
    if (chord)
        _key = HotKey::make(*chord, _summoned);
    _isKeyRefused = !_key && !text.isEmpty();
    if (_isKeyRefused)
        _log.warning(QStringLiteral("The hot key “%1” is not available.").arg(text));
}

void ActivationTriggers::takeCorner() {
    _corner = HotCorner::named(_settings.text(QStringLiteral("summon.hotCorner")).value_or(QString()));
    if (!_corner)
        return _pointer.reset();
    if (!_pointer)
        _pointer = PointerWatch::make([this](QPoint pointer) {
            if (_corner && _corner->isEntered(pointer, screens()))
                _summoned();
        });
}

} // namespace tessellar
