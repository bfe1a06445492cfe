#pragma once

#include <QString>

#include <chrono>
#include <compare>
#include <optional>

namespace tessellar {

/// A point in time as a Mac's files have it: seconds since 1 January 2001 00:00:00 UTC, with a
/// fraction. Kept as the very number that is stored, so that a date that was read is written back
/// unchanged to the last bit.
struct Instant {
    double secondsSince2001 = 0;

    /// Seconds between 1 January 1970 and 1 January 2001.
    static constexpr double unixEpochOffset = 978'307'200;

    static constexpr Instant fromUnixSeconds(double seconds) { return {seconds - unixEpochOffset}; }
    constexpr double unixSeconds() const { return secondsSince2001 + unixEpochOffset; }

    /// Internet date-time form: "2026-11-14T21:05:40Z". Reading takes a fraction and a numeric zone
    /// too; writing is in UTC, cut to the second. Years outside 1 to 9999 do not read.
    static std::optional<Instant> fromIso8601(QStringView text);
    QString toIso8601() const;

    friend constexpr auto operator<=>(const Instant&, const Instant&) = default;
    friend constexpr Instant operator+(Instant t, std::chrono::duration<double> d) {
        return {t.secondsSince2001 + d.count()};
    }
    friend constexpr Instant operator-(Instant t, std::chrono::duration<double> d) {
        return {t.secondsSince2001 - d.count()};
    }
    friend constexpr std::chrono::duration<double> operator-(Instant a, Instant b) {
        return std::chrono::duration<double>(a.secondsSince2001 - b.secondsSince2001);
    }
};

} // namespace tessellar
