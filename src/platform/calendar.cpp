#include "platform/calendar.h"

#include <QDateTime>
#include <QTimeZone>

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <cmath>
#include <limits>

namespace tessellar {

namespace {

/// Some three hundred thousand years either way, well within ICU's range.
constexpr double farthestSeconds = 1e13;

constexpr UCalendarDateFields field(CalendarUnit unit) {
    switch (unit) {
    case CalendarUnit::day:
        return UCAL_DATE;
    case CalendarUnit::week:
        return UCAL_WEEK_OF_YEAR;
    case CalendarUnit::month:
        return UCAL_MONTH;
    case CalendarUnit::year:
        break;
    }
    return UCAL_YEAR;
}

} // namespace

/// ICU's calendar counts days, weeks and months on wall-clock time, as if that were UTC. The offset
/// comes from the system's zone data, which Qt uses everywhere else: ICU's own data is as old as the
/// ICU.
struct Calendar::Data {
    std::unique_ptr<const icu::Calendar> prototype;
    QTimeZone zone;

    Data(const Locale& locale, QTimeZone where) : zone(std::move(where)) {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(
            *icu::TimeZone::getGMT(),
            icu::Locale::createFromName(locale.identifier().toLatin1().constData()), status));
        if (U_FAILURE(status))
            qFatal("The calendar data of ICU is missing: %s", u_errorName(status));
        prototype = std::move(calendar);
    }

    double offsetAt(double milliseconds) const {
        const auto utc = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds), Qt::UTC);
        return zone.offsetFromUtc(utc) * 1000.0;
    }

    /// A new calendar set to an instant; ICU's cannot be shared while they compute.
    std::unique_ptr<icu::Calendar> at(Instant instant) const {
        if (!(std::abs(instant.secondsSince2001) < farthestSeconds))
            return nullptr;
        std::unique_ptr<icu::Calendar> calendar(prototype->clone());
        UErrorCode status = U_ZERO_ERROR;
        const double milliseconds = std::floor(instant.unixSeconds() * 1000);
        calendar->setTime(milliseconds + offsetAt(milliseconds), status);
        return U_SUCCESS(status) ? std::move(calendar) : nullptr;
    }

    /// When clocks show a time: the first time if they show it twice, the end of the gap if they skip
    /// it.
    double whenClocksShow(double wall) const {
        constexpr double day = 24 * 3'600'000.0;
        const double before = offsetAt(wall - day);
        const double after = offsetAt(wall + day);
        const double first = wall - std::max(before, after);
        const double second = wall - std::min(before, after);
        for (const double time : {first, second})
            if (time + offsetAt(time) == wall)
                return time;
        // The change of offset lies between the two.
        double low = first;
        double high = second;
        while (high - low > 1) {
            const double middle = std::floor((low + high) / 2);
            (offsetAt(middle) == before ? low : high) = middle;
        }
        return high;
    }

    std::optional<Instant> startOfDay(icu::Calendar& calendar) const {
        for (const auto part : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND})
            calendar.set(part, 0);
        UErrorCode status = U_ZERO_ERROR;
        const double wall = calendar.getTime(status);
        const Instant start = Instant::fromUnixSeconds(whenClocksShow(wall) / 1000);
        if (U_FAILURE(status) || !(std::abs(start.secondsSince2001) < farthestSeconds))
            return std::nullopt;
        return start;
    }

    std::optional<Instant> startOfDayAfter(icu::Calendar& calendar, CalendarUnit unit,
                                           qint64 amount) const {
        if (!std::in_range<int32_t>(amount))
            return std::nullopt;
        UErrorCode status = U_ZERO_ERROR;
        calendar.add(field(unit), static_cast<int32_t>(amount), status);
        return U_SUCCESS(status) ? startOfDay(calendar) : std::nullopt;
    }
};

Calendar::Calendar(const Locale& locale, const QString& timeZone) {
    QTimeZone zone(timeZone.toUtf8());
    _data = std::make_shared<const Data>(locale, zone.isValid() ? zone : QTimeZone::utc());
}

Calendar Calendar::system(const Locale& locale) {
    return {locale, QString::fromUtf8(QTimeZone::systemTimeZoneId())};
}

QString Calendar::timeZone() const { return QString::fromUtf8(_data->zone.id()); }

std::optional<CalendarInterval> Calendar::interval(CalendarUnit unit, Instant containing) const {
    const auto calendar = _data->at(containing);
    if (!calendar)
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    switch (unit) {
    case CalendarUnit::day:
        break;
    case CalendarUnit::week: {
        const int32_t first = calendar->getFirstDayOfWeek(status);
        const int32_t today = calendar->get(UCAL_DAY_OF_WEEK, status);
        calendar->add(UCAL_DATE, -((today - first + 7) % 7), status);
        break;
    }
    case CalendarUnit::month:
        calendar->set(UCAL_DATE, 1);
        break;
    case CalendarUnit::year:
        calendar->set(UCAL_DAY_OF_YEAR, 1);
        break;
    }
    if (U_FAILURE(status))
        return std::nullopt;
    const auto start = _data->startOfDay(*calendar);
    const auto end = start ? _data->startOfDayAfter(*calendar, unit, 1) : std::nullopt;
    return end ? std::optional(CalendarInterval{*start, *end}) : std::nullopt;
}

std::optional<Instant> Calendar::startOfDay(Instant instant) const {
    const auto calendar = _data->at(instant);
    return calendar ? _data->startOfDay(*calendar) : std::nullopt;
}

std::optional<Instant> Calendar::startOfDay(Instant instant, CalendarUnit unit, qint64 amount) const {
    const auto calendar = _data->at(instant);
    return calendar ? _data->startOfDayAfter(*calendar, unit, amount) : std::nullopt;
}

} // namespace tessellar
