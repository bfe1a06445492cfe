#pragma once

#include <QString>

#include <chrono>
#include <compare>
#include <optional>

namespace tessellar {

/// A point in time as macOS stores it: fractional seconds since 1 January 2001 00:00:00 UTC. Kept as
/// the stored number, so dates round-trip exactly.
struct Instant {
    double secondsSince2001 = 0;

    /// Seconds between 1 January 1970 and 1 January 2001.
    static constexpr double unixEpochOffset = 978'307'200;

    static constexpr Instant fromUnixSeconds(double seconds) { return {seconds - unixEpochOffset}; }
    constexpr double unixSeconds() const { return secondsSince2001 + unixEpochOffset; }

    /// ISO 8601 date and time: "2026-11-14T21:05:40Z". Reading accepts fractions and numeric zones;
    /// writing is in UTC, truncated to seconds. Years outside 1 to 9999 are rejected.
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
