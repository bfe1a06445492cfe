#include "platform/instant.h"

#include <QDateTime>
#include <QTimeZone>

#include <cmath>

namespace tessellar {

std::optional<Instant> Instant::fromIso8601(QStringView text) {
    const QDateTime date = QDateTime::fromString(text.toString(), Qt::ISODateWithMs);
    // A text without a zone would be taken as local time.
    if (!date.isValid() || date.timeSpec() == Qt::LocalTime || date.date().year() < 1 ||
        date.date().year() > 9999)
        return std::nullopt;
    return fromUnixSeconds(static_cast<double>(date.toMSecsSinceEpoch()) / 1000);
}

QString Instant::toIso8601() const {
    const double seconds = std::floor(unixSeconds());
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds), QTimeZone::utc())
        .toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"));
}

} // namespace tessellar
