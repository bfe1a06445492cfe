#pragma once

#include <QStringView>

#include <compare>

namespace tessellar {

/// Compares versions by Sparkle's documented standard comparison, which feeds are written for. A
/// version falls into runs of digits, runs of letters, and single separators. Numbers compare by value,
/// letters as text; where the kinds differ, letters are oldest: 1.0b3 is older than 1.0 and older
/// than 1.0.1. A dash begins a pre-release, as letters do: 3.0-rc1 is older than 3.0. Any other part
/// more is newer than its absence, but for zeros: 2.0.0 is 2.0. A "v" before the first digit says
/// nothing.
std::strong_ordering compareSparkle(QStringView a, QStringView b);

} // namespace tessellar
