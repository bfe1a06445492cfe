#include "platform/calendar.h"

#include "tests/support/printers.h"

#include <gtest/gtest.h>

#include <QTimeZone>

namespace tessellar {
namespace {

Instant at(const char* text) { return *Instant::fromIso8601(QString::fromLatin1(text)); }

std::string day(const Calendar& calendar, const char* instant, CalendarUnit unit = CalendarUnit::day) {
    const auto interval = calendar.interval(unit, at(instant));
    return interval ? (interval->start.toIso8601() + u' ' + interval->end.toIso8601()).toStdString()
                    : "none";
}

Calendar calendar(const char* locale, const char* zone) {
    return {Locale(QString::fromLatin1(locale)), QString::fromLatin1(zone)};
}

TEST(Calendar, DaysAreAsLongAsTheClocksMakeThem) {
    const Calendar oslo = calendar("nb_NO", "Europe/Oslo");
    EXPECT_EQ(day(oslo, "2026-11-14T22:59:59Z"), "2026-11-13T23:00:00Z 2026-11-14T23:00:00Z");
    EXPECT_EQ(day(oslo, "2026-11-14T23:00:00Z"), "2026-11-14T23:00:00Z 2026-11-15T23:00:00Z");
    EXPECT_EQ(day(oslo, "2026-03-29T12:00:00Z"),
              "2026-03-28T23:00:00Z 2026-03-29T22:00:00Z"); // 23 hours
    EXPECT_EQ(day(oslo, "2026-10-25T12:00:00Z"),
              "2026-10-24T22:00:00Z 2026-10-25T23:00:00Z"); // 25 hours

    // The clocks of these places change at midnight: once it is skipped, once it comes twice.
    const Calendar beirut = calendar("ar_LB", "Asia/Beirut");
    EXPECT_EQ(day(beirut, "2022-03-27T12:00:00Z"), "2022-03-26T22:00:00Z 2022-03-27T21:00:00Z");
    EXPECT_EQ(day(beirut, "2022-03-26T12:00:00Z"), "2022-03-25T22:00:00Z 2022-03-26T22:00:00Z");
    const Calendar havana = calendar("es_CU", "America/Havana");
    EXPECT_EQ(day(havana, "2022-11-06T18:00:00Z"), "2022-11-06T04:00:00Z 2022-11-07T05:00:00Z");
    EXPECT_EQ(day(havana, "2022-11-06T05:30:00Z"), "2022-11-06T04:00:00Z 2022-11-07T05:00:00Z");
}

TEST(Calendar, KnowsTheClocksThatTheRestOfTheSystemKnows) {
    // Since 2023 Egypt has summer time again. Older data than the system's does not know it, and a rule
    // would mean another day than its editor shows.
    const QTimeZone zone("Africa/Cairo");
    const QDateTime midnight(QDate(2026, 7, 15), QTime(0, 0), zone);
    const Calendar cairo = calendar("ar_EG", "Africa/Cairo");
    const Instant noon = at("2026-07-15T12:00:00Z");
    EXPECT_EQ(cairo.startOfDay(noon)->unixSeconds(), static_cast<double>(midnight.toSecsSinceEpoch()));
    EXPECT_EQ(day(cairo, "2026-04-24T12:00:00Z"), "2026-04-23T22:00:00Z 2026-04-24T21:00:00Z");
}

TEST(Calendar, WeeksBeginAsTheLocaleHasIt) {
    // 14 November 2026 is a Saturday.
    const char* saturday = "2026-11-14T12:00:00Z";
    const auto week = CalendarUnit::week;
    EXPECT_EQ(day(calendar("en_US", "UTC"), saturday, week),
              "2026-11-08T00:00:00Z 2026-11-15T00:00:00Z");
    EXPECT_EQ(day(calendar("de_DE", "UTC"), saturday, week),
              "2026-11-09T00:00:00Z 2026-11-16T00:00:00Z");
    EXPECT_EQ(day(calendar("ar_EG", "UTC"), saturday, week),
              "2026-11-14T00:00:00Z 2026-11-21T00:00:00Z");
    // A week across the end of daylight-saving time, and one across a year.
    EXPECT_EQ(day(calendar("de_DE", "Europe/Berlin"), "2026-10-25T22:59:00Z", week),
              "2026-10-18T22:00:00Z 2026-10-25T23:00:00Z");
    EXPECT_EQ(day(calendar("en_US", "UTC"), "2027-01-01T00:00:00Z", week),
              "2026-12-27T00:00:00Z 2027-01-03T00:00:00Z");
}

TEST(Calendar, MonthsAndYearsAreWhole) {
    const Calendar utc = calendar("en_US", "UTC");
    EXPECT_EQ(day(utc, "2024-02-29T12:00:00Z", CalendarUnit::month),
              "2024-02-01T00:00:00Z 2024-03-01T00:00:00Z");
    EXPECT_EQ(day(utc, "2024-12-31T23:59:59Z", CalendarUnit::year),
              "2024-01-01T00:00:00Z 2025-01-01T00:00:00Z");
    // A locale may count its years otherwise; the days are the same.
    EXPECT_EQ(day(calendar("th_TH", "UTC"), "2024-12-31T23:59:59Z", CalendarUnit::year),
              "2024-01-01T00:00:00Z 2025-01-01T00:00:00Z");
}

TEST(Calendar, MovesByDaysNotByHours) {
    const auto moved = [](const Calendar& c, const char* from, CalendarUnit unit, qint64 amount) {
        const auto start = c.startOfDay(at(from), unit, amount);
        return start ? start->toIso8601().toStdString() : "none";
    };
    const Calendar oslo = calendar("nb_NO", "Europe/Oslo");
    EXPECT_EQ(moved(oslo, "2026-03-30T10:00:00Z", CalendarUnit::day, -2), "2026-03-27T23:00:00Z");
    EXPECT_EQ(moved(oslo, "2026-10-25T00:30:00Z", CalendarUnit::day, 1), "2026-10-25T23:00:00Z");
    EXPECT_EQ(moved(oslo, "2026-03-31T10:00:00Z", CalendarUnit::month, -1), "2026-02-27T23:00:00Z");
    EXPECT_EQ(moved(oslo, "2026-11-04T10:00:00Z", CalendarUnit::week, -2), "2026-10-20T22:00:00Z");
    // From a day without a midnight to one that has it.
    EXPECT_EQ(moved(calendar("ar_LB", "Asia/Beirut"), "2022-03-27T12:00:00Z", CalendarUnit::day, -1),
              "2022-03-25T22:00:00Z");
    EXPECT_EQ(moved(oslo, "2026-01-01T00:00:00Z", CalendarUnit::day, -5'000'000'000), "none");
    EXPECT_EQ(moved(oslo, "2026-01-01T00:00:00Z", CalendarUnit::month, -2'000'000'000), "none");
}

TEST(Calendar, KnowsNoDayBeyondItsReach) {
    const Calendar utc = calendar("en_US", "Nowhere/Land");
    EXPECT_EQ(day(utc, "2026-11-14T12:00:00Z"), "2026-11-14T00:00:00Z 2026-11-15T00:00:00Z");
    for (const double far : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(utc.interval(CalendarUnit::year, Instant{far}));
        EXPECT_FALSE(utc.startOfDay(Instant{far}));
    }
}

} // namespace
} // namespace tessellar
