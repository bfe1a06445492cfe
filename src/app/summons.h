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

/// A corner of the screens that the pointer is pushed into.
class HotCorner {
public:
    explicit HotCorner(Qt::Corner corner) : _corner(corner) {}

    /// "topLeft", "topRight", "bottomLeft" or "bottomRight".
    static std::optional<HotCorner> named(const QString& name);

    /// Whether the pointer has come into the corner with this movement: true once, until it has left.
    bool isEntered(QPoint pointer, const QList<QRect>& screens);

private:
    Qt::Corner _corner;
    bool _isInside = false;
};

/// What brings a launcher without a window before the user: the settings "summon.hotKey", such as
/// "option+space", and "summon.hotCorner".
class Summons {
public:
    Summons(const Settings& settings, Log& log, std::function<void()> summoned);

    /// Does as the settings say now.
    void apply();
    /// Whether keys are set and are another program's, or cannot be had here.
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
