#pragma once

#include <QString>

namespace tessellar {

class Settings;

/// What a changelog says of the versions after `last` up to `current`, newest first: its sections
/// "## 1.2.0", as they stand. Empty where there are none, as after a step back. Pure.
QString releaseNotes(const QString& changelog, const QString& last, const QString& current);

/// What is new since the version that ran here before, told until it was seen.
struct ReleaseNotes {
    static inline const QString lastVersionKey = QStringLiteral("lastVersion");

    /// Empty at the first start.
    static QString unseen(const Settings& settings, const QString& changelog, const QString& version);
    /// What cannot be stored is told once more.
    static void setSeen(Settings& settings, const QString& version);
};

} // namespace tessellar
