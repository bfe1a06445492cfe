#pragma once

#include "launcher/launcher_error.h"
#include "model/launcher_window_mode.h"
#include "platform/settings.h"

#include <QStringList>

#include <expected>

namespace tessellar {

/// One setting that users may change.
struct Setting {
    enum class Kind { integer, number, boolean, choice, text, folders, keys, address };

    QString key;
    Kind kind = Kind::text;
    QJsonValue defaultValue;      ///< the default; null if there is none
    const char* description = ""; ///< describes the setting, for `Texts::tr`
    double minimum = 0;           ///< range of a number
    double maximum = 0;
    double step = 1; ///< the smallest noticeable difference
    QJsonArray choices = {};
    QList<const char*> titles = {}; ///< of the choices, in the same order
    bool isClamped = false;         ///< stored numbers out of range are clamped
};

/// All settings, one row each: what `tessellarctl settings` and the window offer. Grid settings have a
/// row per display mode.
const QList<Setting>& settingTable();
/// Null if there is none.
const Setting* settingNamed(const QString& key);
/// For example "windowed.gridRows" for "gridRows".
QString settingKey(LauncherWindowMode mode, const QString& key);

/// The allowed values, for users: "3 to 9", "system, light or dark".
QString rangeText(const Setting& setting);
/// Why a value is not allowed; nullopt if it is.
std::optional<LauncherError> refusal(const Setting& setting, const QJsonValue& value);
/// The same by key; null, which removes a value, is allowed for keys that are not in the table too.
std::optional<LauncherError> refusal(const QString& key, const QJsonValue& value);
/// The effective value: the stored one or, if that is missing or invalid, the default. Windowed grid
/// settings fall back to the full-screen ones first.
QJsonValue settingNow(const Settings& settings, const Setting& setting);

} // namespace tessellar
