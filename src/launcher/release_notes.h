#pragma once

#include <QString>

namespace tessellar {

class Settings;

/// The sections ("## 1.2.0") of a changelog for the versions after `last` up to `current`, newest
/// first. Empty if there are none, for example after a downgrade. Pure.
QString releaseNotes(const QString& changelog, const QString& last, const QString& current);

/// What is new since the version last run here, until the user has seen it.
struct ReleaseNotes {
    static inline const QString lastVersionKey = QStringLiteral("lastVersion");

    /// Empty on the first start.
    static QString unseen(const Settings& settings, const QString& changelog, const QString& version);

    /// What greets the user at a start: news, or how to begin for somebody new, or neither. Offered
    /// again until `lastVersionKey` holds this version.
    struct Welcome {
        QString news;
        bool asksHowToBegin = false;
    };
    static Welcome welcome(const Settings& settings, bool isUnarranged, const QString& changelog,
                           const QString& version);
};

} // namespace tessellar
