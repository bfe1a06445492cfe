#include "launcher/date_text.h"

#include "platform/calendar.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

namespace tessellar {

QString dateText(Instant instant, const Locale& locale) {
    const QTimeZone zone(Calendar::system(locale).timeZone().toUtf8());
    const auto milliseconds = static_cast<qint64>(instant.unixSeconds() * 1'000);
    return QLocale(locale.identifier())
        .toString(QDateTime::fromMSecsSinceEpoch(milliseconds, zone), QLocale::ShortFormat);
}

} // namespace tessellar
