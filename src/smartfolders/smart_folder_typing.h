#pragma once

#include "platform/calendar.h"

#include <QDate>
#include <QLocale>
#include <QTimeZone>

namespace tessellar {

/// A month to pick a day from: whole weeks, in the user's language.
struct SmartFolderMonth {
    struct Day {
        QDate date;
        QString text;
        bool isInMonth = false;
        bool isToday = false;
        bool isChosen = false;

        bool operator==(const Day&) const = default;
    };
    QString title; ///< "November 2026"
    QDate today;
    QStringList weekdays;
    QList<Day> days; ///< six weeks, so that no month is higher than another

    bool operator==(const SmartFolderMonth&) const = default;
};

/// How numbers and dates are written for people and read as they type them: in their language and time
/// zone.
///
/// A date is mostly meant as a day, and a rule compares with an instant: a day begins with its first
/// and ends with its last millisecond, so that "after" a day leaves the whole day out. An instant that
/// is no such edge of a day is written with its time.
class SmartFolderTyping {
public:
    /// Which instant of a day stands for it.
    enum class Edge { start, end };

    SmartFolderTyping(const Locale& locale, Calendar calendar);

    QString text(double number) const;
    std::optional<double> number(const QString& text) const;
    std::optional<qint64> integer(const QString& text) const;

    QString text(Instant instant, Edge edge) const;
    /// Days as the language writes them or as "2026-11-21", with a time of day or without.
    std::optional<Instant> instant(const QString& text, Edge edge) const;
    /// An edge of a day becomes the one that is asked for; other instants stay.
    Instant onEdge(Instant instant, Edge edge) const;
    /// The day that an instant lies in.
    QDate day(Instant instant) const;
    std::optional<Instant> instant(QDate day, Edge edge) const;
    SmartFolderMonth month(QDate within, QDate today, QDate chosen) const;

private:
    QString dayFormat() const;
    std::optional<Instant> edgeOfDay(Instant within, Edge edge) const;

    QLocale _locale;
    Calendar _calendar;
    QTimeZone _zone;
};

} // namespace tessellar
