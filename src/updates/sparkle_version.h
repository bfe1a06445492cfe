#pragma once

#include <QStringView>

#include <compare>

namespace tessellar {

/// Compares versions by Sparkle's documented standard comparison, which feeds rely on. A version is
/// split into runs of digits, runs of letters, and single separators. Numbers compare by value, letters
/// as text; between different kinds, letters sort first: 1.0b3 is older than 1.0 and than 1.0.1. A dash
/// starts a pre-release, like letters: 3.0-rc1 is older than 3.0. Any other extra part makes a version
/// newer, except zeros: 2.0.0 equals 2.0. A "v" before the first digit is ignored.
std::strong_ordering compareSparkle(QStringView a, QStringView b);

} // namespace tessellar
