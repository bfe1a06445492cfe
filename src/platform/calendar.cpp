#include "platform/calendar.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <cmath>
#include <limits>

namespace tessellar {

namespace {

/// Some three hundred thousand years each way, well within what ICU computes with.
constexpr double farthestSeconds = 1e13;

icu::UnicodeString toIcu(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<int32_t>(text.size())};
}

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

struct Calendar::Data {
    std::unique_ptr<const icu::Calendar> prototype;

    explicit Data(const Locale& locale, const icu::TimeZone& zone) {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(
            zone, icu::Locale::createFromName(locale.identifier().toLatin1().constData()), status));
        if (U_FAILURE(status))
            qFatal("The calendar data of ICU is missing: %s", u_errorName(status));
        calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
        calendar->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
        prototype = std::move(calendar);
    }

    /// A calendar of its own that stands at an instant; ICU's cannot be shared while they compute.
    std::unique_ptr<icu::Calendar> at(Instant instant) const {
        if (!(std::abs(instant.secondsSince2001) < farthestSeconds))
            return nullptr;
        std::unique_ptr<icu::Calendar> calendar(prototype->clone());
        UErrorCode status = U_ZERO_ERROR;
        calendar->setTime(std::floor(instant.unixSeconds() * 1000), status);
        return U_SUCCESS(status) ? std::move(calendar) : nullptr;
    }
};

namespace {

std::optional<Instant> moveToStartOfDay(icu::Calendar& calendar) {
    for (const auto part : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND})
        calendar.set(part, 0);
    UErrorCode status = U_ZERO_ERROR;
    const Instant start = Instant::fromUnixSeconds(calendar.getTime(status) / 1000);
    if (U_FAILURE(status) || !(std::abs(start.secondsSince2001) < farthestSeconds))
        return std::nullopt;
    return start;
}

std::optional<Instant> startOfDayAfter(icu::Calendar& calendar, CalendarUnit unit, qint64 amount) {
    if (!std::in_range<int32_t>(amount))
        return std::nullopt;
    // From noon, which no change of the clock touches, to a noon: so it is days that are counted.
    calendar.set(UCAL_HOUR_OF_DAY, 12);
    UErrorCode status = U_ZERO_ERROR;
    calendar.add(field(unit), static_cast<int32_t>(amount), status);
    return U_SUCCESS(status) ? moveToStartOfDay(calendar) : std::nullopt;
}

} // namespace

Calendar::Calendar(const Locale& locale, const QString& timeZone) {
    const std::unique_ptr<const icu::TimeZone> zone(icu::TimeZone::createTimeZone(toIcu(timeZone)));
    _data = std::make_shared<const Data>(locale, *zone);
}

Calendar Calendar::system(const Locale& locale) {
    const std::unique_ptr<const icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString identifier;
    zone->getID(identifier);
    return {locale,
            QString(reinterpret_cast<const QChar*>(identifier.getBuffer()), identifier.length())};
}

QString Calendar::timeZone() const {
    icu::UnicodeString identifier;
    _data->prototype->getTimeZone().getID(identifier);
    return QString(reinterpret_cast<const QChar*>(identifier.getBuffer()), identifier.length());
}

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
        calendar->set(UCAL_HOUR_OF_DAY, 12);
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
    const auto start = moveToStartOfDay(*calendar);
    const auto end = start ? startOfDayAfter(*calendar, unit, 1) : std::nullopt;
    return end ? std::optional(CalendarInterval{*start, *end}) : std::nullopt;
}

std::optional<Instant> Calendar::startOfDay(Instant instant) const {
    const auto calendar = _data->at(instant);
    return calendar ? moveToStartOfDay(*calendar) : std::nullopt;
}

std::optional<Instant> Calendar::startOfDay(Instant instant, CalendarUnit unit, qint64 amount) const {
    const auto calendar = _data->at(instant);
    return calendar ? startOfDayAfter(*calendar, unit, amount) : std::nullopt;
}

} // namespace tessellar
