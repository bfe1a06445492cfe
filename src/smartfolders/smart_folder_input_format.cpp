#include "smartfolders/smart_folder_input_format.h"

#include <QDateTime>

#include <cmath>

namespace tessellar {

using namespace std::chrono_literals;

SmartFolderInputFormat::SmartFolderInputFormat(const Locale& locale, Calendar calendar)
    : _locale(locale.identifier())
    , _calendar(std::move(calendar))
    , _zone(_calendar.timeZone().toUtf8()) {
    _locale.setNumberOptions(QLocale::OmitGroupSeparator);
    if (!_zone.isValid())
        _zone = QTimeZone::utc();
}

// ---- numbers

QString SmartFolderInputFormat::text(double number) const {
    return _locale.toString(number, std::abs(number) < 1e15 ? 'f' : 'g',
                            QLocale::FloatingPointShortest);
}

std::optional<double> SmartFolderInputFormat::number(const QString& text) const {
    bool isNumber = false;
    const double number = _locale.toDouble(text.trimmed(), &isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<qint64> SmartFolderInputFormat::integer(const QString& text) const {
    bool isNumber = false;
    const qint64 number = _locale.toLongLong(text.trimmed(), &isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

// ---- dates

std::optional<Instant> SmartFolderInputFormat::edgeOfDay(Instant within, Edge edge) const {
    if (edge == Edge::start)
        return _calendar.startOfDay(within);
    const auto next = _calendar.startOfDay(within, CalendarUnit::day, 1);
    return next ? std::optional(*next - 1ms) : std::nullopt;
}

Instant SmartFolderInputFormat::onEdge(Instant instant, Edge edge) const {
    const bool isEdge =
        edgeOfDay(instant, Edge::start) == instant || edgeOfDay(instant, Edge::end) == instant;
    return isEdge ? edgeOfDay(instant, edge).value_or(instant) : instant;
}

QDate SmartFolderInputFormat::day(Instant instant) const {
    return QDateTime::fromMSecsSinceEpoch(
               static_cast<qint64>(std::floor(instant.unixSeconds() * 1000 + 0.5)), _zone)
        .date();
}

std::optional<Instant> SmartFolderInputFormat::instant(QDate day, Edge edge) const {
    const QDateTime noon(day, QTime(12, 0), _zone);
    if (!noon.isValid())
        return std::nullopt;
    return edgeOfDay(Instant::fromUnixSeconds(static_cast<double>(noon.toMSecsSinceEpoch()) / 1000),
                     edge);
}

QString SmartFolderInputFormat::dayFormat() const {
    // With four digits of the year: two are ambiguous.
    QString format = _locale.dateFormat(QLocale::ShortFormat);
    return format.contains(u"yyyy") ? format : format.replace(u"yy"_qs, u"yyyy"_qs);
}

QString SmartFolderInputFormat::text(Instant instant, Edge edge) const {
    const QString written = _locale.toString(day(instant), dayFormat());
    if (edgeOfDay(instant, edge) == instant)
        return written;
    const QDateTime local =
        QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(instant.unixSeconds() * 1000), _zone);
    return written + u' ' + _locale.toString(local.time(), QLocale::ShortFormat);
}

std::optional<Instant> SmartFolderInputFormat::instant(const QString& text, Edge edge) const {
    const QString typed = text.simplified();
    const QString iso = QStringLiteral("yyyy-M-d");
    // Leading zeros are optional.
    QString own = dayFormat();
    if (!own.contains(u"MMM") && !own.contains(u"ddd"))
        own.replace(u"dd"_qs, u"d"_qs).replace(u"MM"_qs, u"M"_qs);
    for (const QString& format : {own, iso})
        if (const QDate day = _locale.toDate(typed, format); day.isValid() && day.year() >= 1000)
            return instant(day, edge);
    // In the locale's format with a two-digit year.
    if (QDate day = _locale.toDate(typed, QString(own).replace(u"yyyy"_qs, u"yy"_qs)); day.isValid())
        return instant(day.year() < 1970 ? day.addYears(100) : day, edge);
    const QString clock = _locale.timeFormat(QLocale::ShortFormat);
    for (const QString& format : {own, iso})
        for (const QString& time : {clock, QStringLiteral("H:mm"), QStringLiteral("H:mm:ss")}) {
            QDateTime local = _locale.toDateTime(typed, format + u' ' + time);
            local = QDateTime(local.date(), local.time(), _zone);
            if (local.isValid())
                return Instant::fromUnixSeconds(static_cast<double>(local.toMSecsSinceEpoch()) / 1000);
        }
    return std::nullopt;
}

SmartFolderMonth SmartFolderInputFormat::month(QDate within, QDate today, QDate chosen) const {
    constexpr int weekLength = 7;
    constexpr int weeks = 6;
    const int firstWeekday = _locale.firstDayOfWeek();
    const QDate first(within.year(), within.month(), 1);
    SmartFolderMonth result{.title = _locale.standaloneMonthName(within.month()) + u' ' +
                                     _locale.toString(first, QStringLiteral("yyyy")),
                            .today = today};
    for (int i = 0; i < weekLength; ++i)
        result.weekdays.append(
            _locale.standaloneDayName((firstWeekday - 1 + i) % weekLength + 1, QLocale::NarrowFormat));
    QDate day = first.addDays(-((first.dayOfWeek() - firstWeekday + weekLength) % weekLength));
    for (int i = 0; i < weeks * weekLength; ++i, day = day.addDays(1))
        result.days.append({.date = day,
                            .text = _locale.toString(day.day()),
                            .isInMonth = day.month() == within.month(),
                            .isToday = day == today,
                            .isChosen = day == chosen});
    return result;
}

} // namespace tessellar
