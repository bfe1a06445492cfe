#pragma once

#include "platform/instant.h"
#include "platform/text.h"

#include <memory>
#include <optional>

namespace tessellar {

enum class CalendarUnit { day, week, month, year };

/// From `start` to `end`, which is the start of the next interval.
struct CalendarInterval {
    Instant start;
    Instant end;

    bool operator==(const CalendarInterval&) const = default;
};

/// The user's calendar: which instants make up a day, a week, a month. It follows the locale (first
/// weekday, and the calendar itself where another than the Gregorian is usual) and a time zone with all
/// its changes of the clock. A cheap value; any thread may use a copy. Instants that no calendar
/// reaches (some hundred thousand years away) have no day.
class Calendar {
public:
    /// `timeZone` as the zone database names it ("Europe/Oslo"); an unknown one acts as UTC.
    Calendar(const Locale& locale, const QString& timeZone);
    /// In the zone of this machine.
    static Calendar system(const Locale& locale);

    QString timeZone() const;

    /// The day, week, month or year that contains an instant. A day whose midnight the clocks skip
    /// begins when it first exists; one whose midnight comes twice, at the first.
    std::optional<CalendarInterval> interval(CalendarUnit unit, Instant containing) const;
    std::optional<Instant> startOfDay(Instant instant) const;
    /// The start of the day that lies `amount` units from the day of `instant`, back when negative. A
    /// day that the month does not have becomes its last.
    std::optional<Instant> startOfDay(Instant instant, CalendarUnit unit, qint64 amount) const;

private:
    struct Data;
    std::shared_ptr<const Data> _data;
};

} // namespace tessellar
