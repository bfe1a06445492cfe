#pragma once

#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "platform/settings.h"

#include <QStringList>

#include <expected>

namespace tessellar {

/// One setting that people may change.
struct Setting {
    enum class Kind { integer, number, boolean, choice, text, folders, keys, address };

    QString key;
    Kind kind = Kind::text;
    QJsonValue usual;          ///< what holds where nothing is set; null for nothing
    const char* sentence = ""; ///< what it decides, for `Texts::tr`
    double low = 0;            ///< of a number, as `high`
    double high = 0;
    double step = 1; ///< that a person notices
    QJsonArray choices = {};
    QList<const char*> titles = {}; ///< of the choices, the same
    bool isClamped = false;         ///< a stored number out of range counts as the nearest within it
};

/// All of them, one row each: what `tessellarctl settings` lists and takes, and what the window offers.
/// Those of the grid are there for each display mode.
const QList<Setting>& settingTable();
/// Null where there is none.
const Setting* settingNamed(const QString& key);
/// "windowed.gridRows" of "gridRows".
QString settingKey(LauncherWindowMode mode, const QString& key);

/// What it may be, for people: "3 to 9", "system, light or dark".
QString rangeText(const Setting& setting);
/// Why the setting cannot have the value; nothing where it can.
std::optional<LauncherError> refusal(const Setting& setting, const QJsonValue& value);
/// What holds now: what is stored, or in its absence, or where it cannot be, what is usual. Of the
/// grid's in a window, that of the full screen comes before.
QJsonValue settingNow(const Settings& settings, const Setting& setting);

/// Stores it after a look at the table; null takes away what is stored, also under a key that no row
/// has.
std::expected<void, LauncherError> storeSetting(Settings& settings, const QString& key,
                                                const QJsonValue& value);

} // namespace tessellar
