#pragma once

#include "platform/desktop/hot_key.h"
#include "platform/desktop/pointer_watch.h"
#include "platform/log.h"
#include "platform/settings.h"

#include <QRect>

#include <functional>
#include <memory>
#include <optional>

namespace tessellar {

/// A corner of the screens, which the pointer triggers by moving into it.
class HotCorner {
public:
    explicit HotCorner(Qt::Corner corner) : _corner(corner) {}

    /// "topLeft", "topRight", "bottomLeft" or "bottomRight".
    static std::optional<HotCorner> named(const QString& name);

    /// True if this movement entered the corner; not again until the pointer has left.
    bool isEntered(QPoint pointer, const QList<QRect>& screens);

private:
    Qt::Corner _corner;
    bool _isInside = false;
};

/// Shows a hidden launcher by hot key or hot corner: the settings "summon.hotKey", such as
/// "option+space", and "summon.hotCorner".
class ActivationTriggers {
public:
    ActivationTriggers(const Settings& settings, Log& log, std::function<void()> summoned);

    /// Applies the current settings.
    void apply();
    /// True if a hot key is set but taken by another program, or unavailable.
    bool isKeyRefused() const { return _isKeyRefused; }

private:
    void takeKey();
    void takeCorner();

    const Settings& _settings;
    Log& _log;
    std::function<void()> _summoned;
    std::optional<KeyChord> _chord;
    std::unique_ptr<HotKey> _key;
    bool _isKeyRefused = false;
    std::optional<HotCorner> _corner;
    std::unique_ptr<PointerWatch> _pointer;
};

} // namespace tessellar
