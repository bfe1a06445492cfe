#pragma once

#include "platform/calendar.h"

#include <QDate>
#include <QLocale>
#include <QTimeZone>

namespace tessellar {

/// A month for a day picker: whole weeks, in the user's language.
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
    QList<Day> days; ///< always six weeks, for a constant height

    bool operator==(const SmartFolderMonth&) const = default;
};

/// Formats and parses numbers and dates in the user's language and time zone.
///
/// Users think of days, while rules compare instants: a day starts at its first and ends at its last
/// millisecond, so that "after" a day excludes all of it. An instant that is neither is formatted with
/// its time.
class SmartFolderInputFormat {
public:
    /// Which end of a day represents it.
    enum class Edge { start, end };

    SmartFolderInputFormat(const Locale& locale, Calendar calendar);

    QString text(double number) const;
    std::optional<double> number(const QString& text) const;
    std::optional<qint64> integer(const QString& text) const;

    QString text(Instant instant, Edge edge) const;
    /// Accepts days in the language's format or as "2026-11-21", with or without a time.
    std::optional<Instant> instant(const QString& text, Edge edge) const;
    /// Moves an instant from one edge of its day to the other; leaves any other instant unchanged.
    Instant onEdge(Instant instant, Edge edge) const;
    /// The day containing an instant.
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
