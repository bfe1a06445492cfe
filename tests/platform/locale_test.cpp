#include "platform/calendar.h"
#include "platform/text.h"

#include "tests/support/printers.h"

#include <QList>
#include <QTimeZone>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

QString text(const char16_t* units) { return QString::fromUtf16(units); }

// ---- folding

TEST(Folding, IsWhatPeopleExpect) {
    const Locale english(text(u"en_US"));
    const auto folds = [&](const char16_t* from, const char16_t* to) {
        EXPECT_EQ(english.folded(text(from)), text(to)) << QString(text(from)).toStdString();
    };
    folds(u"Café", u"cafe");
    folds(u"CAFE\u0301", u"cafe");
    folds(u"ＡＢＣ １２", u"abc 12");
    folds(u"Straße", u"strasse");
    folds(u"ﬁnder", u"finder");
    folds(u"Tiếng Việt", u"tieng viet");
    folds(u"Ёлка Άλφα", u"елка αλφα");
    folds(u"Smørrebrød Łódź Æon", u"smørrebrød łodz æon");
    folds(u"İI", u"ii");
    folds(u"がｶﾞ한שָׁ", u"がガ한שָׁ");
    folds(u"  spaces stay ", u"  spaces stay ");

    const Locale turkish(text(u"tr-TR"));
    EXPECT_EQ(turkish.folded(u"İIıi"), text(u"ıııi"));
    EXPECT_EQ(Locale(text(u"az")).folded(u"I"), text(u"ı"));
    EXPECT_EQ(turkish.lowercased(u"I"), text(u"ı"));
    EXPECT_EQ(english.lowercased(u"ICNS.É"), text(u"icns.é"));
}

// ---- comparing

TEST(Collation, NamesIgnoreCaseButNotAccentsAndLooselyThoseAndWidthAndDigits) {
    const Locale english(text(u"en_US"));
    const auto equal = std::strong_ordering::equal;
    const auto less = std::strong_ordering::less;
    const auto greater = std::strong_ordering::greater;
    struct Row {
        QStringView one, other;
        std::strong_ordering names, loosely;
    };
    for (const Row& row :
         {Row{u"finder", u"FINDER", equal, equal}, Row{u"cote", u"coté", less, equal},
          Row{u"e\u0301", u"É", equal, equal}, Row{u"ab", u"B", less, less},
          Row{u"a b", u"ab", less, less}, Row{u"App 10", u"App 9", less, greater},
          Row{u"", u"a", less, less}, Row{u"öl", u"zoo", less, less},
          Row{u"ＡＢＣ", u"abc", equal, equal}, Row{u"App 007", u"App 7", less, equal}}) {
        EXPECT_EQ(english.compareNames(row.one, row.other), row.names)
            << row.one.toUtf8().toStdString();
        EXPECT_EQ(english.compareLoosely(row.one, row.other), row.loosely)
            << row.one.toUtf8().toStdString();
        // Sort keys have the order of the comparison.
        const auto keys = [&](auto key) {
            return (english.*key)(row.one.toString()).compare((english.*key)(row.other.toString())) <=>
                   0;
        };
        EXPECT_EQ(keys(&Locale::nameSortKey), row.names) << row.one.toUtf8().toStdString();
        EXPECT_EQ(keys(&Locale::looseSortKey), row.loosely) << row.one.toUtf8().toStdString();
    }
    EXPECT_EQ(Locale(text(u"sv_SE")).compareNames(u"öl", u"zoo"), greater);
}

TEST(Locale, UnderstandsTheWaysToNameOne) {
    const auto is = [](const char16_t* given, const char16_t* identifier, const char16_t* language,
                       const char16_t* region) {
        const Locale locale(text(given));
        EXPECT_EQ(locale.identifier(), text(identifier));
        EXPECT_EQ(locale.languageCode(), text(language));
        EXPECT_EQ(locale.region(), text(region));
    };
    is(u"en_US", u"en_US", u"en", u"US");
    is(u"tr-TR", u"tr_TR", u"tr", u"TR");
    is(u"de_DE.UTF-8", u"de_DE", u"de", u"DE");
    is(u"zh-Hans-CN", u"zh_Hans_CN", u"zh", u"CN");
    is(u"ja", u"ja", u"ja", u"");
    EXPECT_EQ(Locale(text(u"zh_Hant_HK@collation=stroke")).languages(),
              QStringList(text(u"zh-Hant-HK")));
    EXPECT_FALSE(Locale::system().languages().contains(text(u"C")));
    for (const char16_t* none :
         {u"", u"C", u"C.UTF-8", u"POSIX", u"en-", u"Ünsinn", u"12", u"not a locale"})
        is(none, u"", u"", u"");
    is(QString(5'000, u'a').toStdU16String().c_str(), u"", u"", u"");
}

TEST(CompareNumeric, ComparesDigitRunsByValueAndTheRestByCharacter) {
    const auto ordered = [](QStringView smaller, QStringView larger) {
        EXPECT_EQ(compareNumeric(smaller, larger), std::strong_ordering::less)
            << smaller.toUtf8().toStdString() << ' ' << larger.toUtf8().toStdString();
        EXPECT_EQ(compareNumeric(larger, smaller), std::strong_ordering::greater);
    };
    ordered(u"1.9", u"1.10");
    ordered(u"9.5", u"10.0");
    ordered(u"1.0", u"1.0.1");
    ordered(u"", u"0");
    ordered(u"1.2b3", u"1.2b12");
    ordered(u"1.2", u"1.2b");
    ordered(u"1.B", u"1.a");
    ordered(u"0012", u"13");
    ordered(u"1", u"a");
    ordered(u"1.18446744073709551615", u"1.18446744073709551617");
    ordered(u"99999999999999999999999", u"100000000000000000000000");
    EXPECT_EQ(compareNumeric(u"1.01", u"1.1"), std::strong_ordering::equal);
    EXPECT_EQ(compareNumeric(u"1.000", u"1.0"), std::strong_ordering::equal);
    ordered(u"1.01", u"1.1.0");
    EXPECT_EQ(compareNumeric(u"", u""), std::strong_ordering::equal);
}

// ---- counting and trimming

TEST(Text, CountsUserPerceivedCharacters) {
    for (const auto& [counted, count] :
         {std::pair(u"", 0), std::pair(u"Café", 4), std::pair(u"Cafe\u0301", 4),
          std::pair(u"a\r\nb", 3), std::pair(u"日本", 2), std::pair(u"한", 1),
          std::pair(u"👩‍👩‍👧‍👦!", 2), std::pair(u"🇩🇪🇫🇷", 2),
          std::pair(u"👍🏽", 1)})
        EXPECT_EQ(characterCount(counted), count) << text(counted).toStdString();
}

TEST(Text, TrimsWhiteSpaceAndLineBreaks) {
    EXPECT_EQ(trimmed(u" \t\r\n\u00A0\u3000\u2028a b\u0085 "), text(u"a b"));
    EXPECT_EQ(trimmed(u" \n"), QString());
}

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

TEST(Calendar, WeeksBeginAsTheLocaleHasItAndMonthsAndYearsAreWhole) {
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
