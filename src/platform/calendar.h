#pragma once

#include "platform/instant.h"
#include "platform/text.h"

#include <memory>
#include <optional>

namespace tessellar {

enum class CalendarUnit { day, week, month, year };

/// Half-open: `end` is the start of the next interval.
struct CalendarInterval {
    Instant start;
    Instant end;

    bool operator==(const CalendarInterval&) const = default;
};

/// The user's calendar: divides time into days, weeks and months by the locale (first weekday, and the
/// usual calendar where it is not Gregorian) and a time zone with all its clock changes. Cheap to copy;
/// any thread may use a copy. Instants beyond the calendar's range (some hundred thousand years) have
/// no day.
class Calendar {
public:
    /// `timeZone` is an IANA name ("Europe/Oslo"); an unknown one acts as UTC.
    Calendar(const Locale& locale, const QString& timeZone);
    /// In this machine's time zone.
    static Calendar system(const Locale& locale);

    QString timeZone() const;

    /// The day, week, month or year that contains an instant. A day whose midnight is skipped by a
    /// clock change begins at its first instant; one whose midnight occurs twice, at the first.
    std::optional<CalendarInterval> interval(CalendarUnit unit, Instant containing) const;
    std::optional<Instant> startOfDay(Instant instant) const;
    /// The start of the day `amount` units after (or, if negative, before) the day of `instant`. A day
    /// past the end of the month becomes its last.
    std::optional<Instant> startOfDay(Instant instant, CalendarUnit unit, qint64 amount) const;

private:
    struct Data;
    std::shared_ptr<const Data> _data;
};

} // namespace tessellar
