#include "app/appearance.h"

#include "launcher/setting_table.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace tessellar {

QString Appearance::theme() const {
    return _settings.text(QStringLiteral("appearance")).value_or(QStringLiteral("system"));
}

double Appearance::textScale() const {
    const Setting& setting = *settingNamed(QStringLiteral("textScale"));
    const QJsonValue set = settingNow(_settings, setting);
    if (set.isDouble())
        return set.toDouble();
    // Desktops' default fonts differ by some points; users who want large text have set theirs larger
    // than that. QFontInfo would load the font, which the window may not need.
    const QFont font = QGuiApplication::font();
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double pixels = font.pixelSize() > 0 || !screen
                              ? font.pixelSize()
                              : font.pointSizeF() * screen->logicalDotsPerInchY() / 72;
    return pixels <= 16 ? 1 : std::min(pixels / 14.0, setting.maximum);
}

bool Appearance::reducesMotion() const {
    return _settings.boolean(QStringLiteral("reducesMotion")).value_or(false);
}

} // namespace tessellar
