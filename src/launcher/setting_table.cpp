#include "launcher/setting_table.h"

#include "discovery/app_discovery_settings.h"
#include "launcher/language.h"
#include "launcher/release_notes.h"
#include "model/json_unions.h"
#include "model/layout_settings.h"
#include "platform/key_chord.h"
#include "platform/texts.h"
#include "updates/app_update_settings.h"

#include <QJsonArray>

#include <algorithm>

namespace tessellar {
namespace {

using Kind = Setting::Kind;

struct GridRow {
    const char* key;
    const char* description;
    double step = 1;
};
constexpr std::array gridRows{
    GridRow{"gridRows", Texts::noop("Rows of tiles on a page")},
    GridRow{"gridColumns", Texts::noop("Columns of tiles on a page")},
    GridRow{"iconScale", Texts::noop("Size of the icons, of what their cells hold"), 0.05},
    GridRow{"windowedIconSize", Texts::noop("Size of the icons in a window, in points"), 4},
    GridRow{"windowedHorizontalSpacing", Texts::noop("Space between columns in a window, in points"),
            2},
    GridRow{"windowedVerticalSpacing", Texts::noop("Space between rows in a window, in points"), 2},
    GridRow{"tileLabelFontSize",
            Texts::noop("Size of the names; as it fits the icons, where it is not set")},
    GridRow{"folderRows", Texts::noop("Rows of tiles in a folder")},
    GridRow{"folderColumns", Texts::noop("Columns of tiles in a folder")},
    GridRow{"folderIconScale", Texts::noop("Size of the icons in a folder, of those of the grid"),
            0.05},
    GridRow{"folderIconSpacing", Texts::noop("Space between the icons in a folder, in points"), 2},
    GridRow{"windowSize.width", Texts::noop("Width of the window, in points")},
    GridRow{"windowSize.height", Texts::noop("Height of the window, in points")},
};

QList<Setting> gridSettings(LauncherWindowMode mode) {
    QList<Setting> all;
    const QList<LayoutRange> ranges = layoutRanges(mode);
    for (const GridRow& row : gridRows) {
        const auto range = std::ranges::find(ranges, QLatin1StringView(row.key), &LayoutRange::key);
        all.append({.key = settingKey(mode, range->key),
                    .kind = range->isInteger ? Kind::integer : Kind::number,
                    .defaultValue = range->defaultValue,
                    .description = row.description,
                    .minimum = range->minimum,
                    .maximum = range->maximum,
                    .step = row.step});
    }
    return all;
}

QJsonArray intervals() {
    using Interval = AppUpdateInterval;
    QJsonArray all;
    for (const Interval interval :
         {Interval::sixHours, Interval::daily, Interval::threeDays, Interval::weekly})
        all.append(qToUnderlying(interval));
    return all;
}

QList<Setting> makeTable() {
    using Discovery = AppDiscoverySettings;
    using Updates = AppUpdateSettings;
    const auto choices = [](const QStringList& values) { return QJsonArray::fromStringList(values); };
    return gridSettings(LauncherWindowMode::fullScreen) + gridSettings(LauncherWindowMode::windowed) +
           QList<Setting>{
               {.key = QStringLiteral("appearance"),
                .kind = Kind::choice,
                .defaultValue = QStringLiteral("system"),
                .description = Texts::noop("Whether sheets, menus and alerts are light or dark"),
                .choices = choices(
                    {QStringLiteral("system"), QStringLiteral("light"), QStringLiteral("dark")}),
                .titles = {Texts::noop("As the system"), Texts::noop("Light"), Texts::noop("Dark")}},
               {.key = QStringLiteral("background"),
                .kind = Kind::choice,
                .defaultValue = QStringLiteral("desktopPicture"),
                .description =
                    Texts::noop("What lies behind the tiles: the desktop's picture, blurred, "
                                "or the launcher's own"),
                .choices = choices({QStringLiteral("desktopPicture"), QStringLiteral("own")}),
                .titles = {Texts::noop("Desktop picture"), Texts::noop("Plain")}},
               {.key = Language::settingKey,
                .kind = Kind::choice,
                .defaultValue = Language::asSystem,
                .description = Texts::noop("The language of menus, sheets and messages"),
                .choices = choices({Language::asSystem, QStringLiteral("en"), QStringLiteral("de")}),
                .titles = {Texts::noop("As the system"), "English", "Deutsch"}},
               {.key = QStringLiteral("textScale"),
                .kind = Kind::number,
                .description =
                    Texts::noop("Size of text in sheets and menus, of the usual; as large as the "
                                "system's, where it is not set"),
                .minimum = 0.8,
                .maximum = 1.4,
                .step = 0.1},
               {.key = QStringLiteral("reducesMotion"),
                .kind = Kind::boolean,
                .defaultValue = false,
                .description = Texts::noop("Tiles and pages jump to their places instead of sliding")},
               {.key = QStringLiteral("window.mode"),
                .kind = Kind::choice,
                .defaultValue = json::rawValue(LauncherWindowMode::fullScreen),
                .description = Texts::noop("The display mode that the launcher opens in"),
                .choices = choices({json::rawValue(LauncherWindowMode::fullScreen),
                                    json::rawValue(LauncherWindowMode::windowed)}),
                .titles = {Texts::noop("Full screen"), Texts::noop("Window")}},
               {.key = QStringLiteral("window.left"),
                .kind = Kind::integer,
                .description = Texts::noop("Where the window lies, in points from the left"),
                .minimum = -100'000,
                .maximum = 100'000},
               {.key = QStringLiteral("window.top"),
                .kind = Kind::integer,
                .description = Texts::noop("Where the window lies, in points from the top"),
                .minimum = -100'000,
                .maximum = 100'000},
               {.key = QStringLiteral("summon.hotKey"),
                .kind = Kind::keys,
                .description = Texts::noop("The keys that show the launcher from anywhere, such as "
                                           "option+space")},
               {.key = QStringLiteral("summon.hotCorner"),
                .kind = Kind::choice,
                .defaultValue = QString(),
                .description = Texts::noop("The corner of the screen that shows the launcher when the "
                                           "pointer is pushed into it"),
                .choices = choices({QString(), QStringLiteral("topLeft"), QStringLiteral("topRight"),
                                    QStringLiteral("bottomLeft"), QStringLiteral("bottomRight")}),
                .titles = {Texts::noop("None"), Texts::noop("Top left"), Texts::noop("Top right"),
                           Texts::noop("Bottom left"), Texts::noop("Bottom right")}},
               {.key = Discovery::searchPathsKey,
                .kind = Kind::folders,
                .description = Texts::noop(
                    "The folders in which to look for applications, instead of the usual ones")},
               {.key = Discovery::additionalSearchPathsKey,
                .kind = Kind::folders,
                .defaultValue = QJsonArray(),
                .description = Texts::noop("Additional folders in which to look for applications")},
               {.key = Discovery::scanDepthKey,
                .kind = Kind::integer,
                .defaultValue = Discovery::defaultScanDepth,
                .description = Texts::noop("How many folders deep to look for applications"),
                .minimum = Discovery::minimumScanDepth,
                .maximum = Discovery::maximumScanDepth,
                .isClamped = true},
               {.key = Updates::enabledKey,
                .kind = Kind::boolean,
                .defaultValue = true,
                .description = Texts::noop("Whether applications are checked for newer versions")},
               {.key = Updates::intervalKey,
                .kind = Kind::choice,
                .defaultValue = qToUnderlying(AppUpdateInterval::daily),
                .description = Texts::noop("How often they are checked, in seconds"),
                .choices = intervals(),
                .titles = {Texts::noop("Every six hours"), Texts::noop("Every day"),
                           Texts::noop("Every three days"), Texts::noop("Every week")}},
               {.key = Updates::storeLookupKey,
                .kind = Kind::address,
                .description =
                    Texts::noop("The address for looking up versions, instead of the store's own")},
               {.key = Updates::storePageKey,
                .kind = Kind::address,
                .description = Texts::noop("The address of the store's pages, instead of its own")},
               {.key = ReleaseNotes::lastVersionKey,
                .description = Texts::noop("The version whose news was shown last")},
           };
}

QString withCommas(const QJsonArray& values, const QString& last) {
    QString text;
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (i > 0)
            text += i + 1 == values.size() ? last : QStringLiteral(", ");
        const QString word = values[i].toVariant().toString();
        text += word.isEmpty() ? QStringLiteral("\"\"") : word;
    }
    return text;
}

bool isText(const QJsonValue& value) { return value.isString(); }

LauncherError outOfRange(const QString& sentence) {
    return {QStringLiteral("outOfRange"), sentence, {}};
}

/// True for the type that the grid's settings are read as; anything else counts as missing.
bool isNumber(const Setting& setting, const QJsonValue& value) {
    return value.isDouble() &&
           (setting.kind == Kind::number || std::trunc(value.toDouble()) == value.toDouble());
}

/// True if the value has the right type and is within the range.
bool isInRange(const Setting& setting, const QJsonValue& value) {
    switch (setting.kind) {
    case Kind::integer:
    case Kind::number: {
        const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
        return number >= setting.minimum && number <= setting.maximum &&
               (setting.kind == Kind::number || std::trunc(number) == number);
    }
    case Kind::boolean:
        return value.isBool();
    case Kind::choice:
        return setting.choices.contains(value);
    case Kind::folders:
        return value.isArray() && std::ranges::all_of(value.toArray(), isText) &&
               value.toArray().size() <= AppDiscoverySettings::maximumSearchPaths;
    case Kind::text:
    case Kind::keys:
    case Kind::address:
        break;
    }
    return value.isString();
}

/// Why a text is invalid for its setting; empty if it is valid.
QString misspelling(const Setting& setting, const QJsonValue& value) {
    const QString text = value.toString();
    if (setting.kind == Kind::keys && !text.isEmpty() && !keyChord(text))
        return Texts::tr("“%1” cannot be a shortcut. “option+space” can.").arg(text.left(200));
    if (setting.kind == Kind::address && !isStoreAddress(text))
        return Texts::tr(
                   "“%1” is not a usable address: it must begin with “https://” and have no query.")
            .arg(text.left(200));
    if (setting.kind == Kind::folders)
        for (const QJsonValue& folder : value.toArray())
            if (AppDiscoverySettings::normalized({folder.toString()}, QStringLiteral("/")).isEmpty())
                return Texts::tr("“%1” is not the path of a folder: it must begin with “/” or “~/”.")
                    .arg(folder.toString().left(200));
    return {};
}

/// The effective value of a stored one.
QJsonValue inForce(const Setting& setting, const QJsonValue& value) {
    if (setting.isClamped && value.isDouble() && std::trunc(value.toDouble()) == value.toDouble())
        return std::clamp(value.toDouble(), setting.minimum, setting.maximum);
    // Invalid folders in a list do not invalidate the others.
    const bool isRight = isInRange(setting, value) &&
                         (setting.kind == Kind::folders || misspelling(setting, value).isEmpty());
    return isRight ? value : setting.defaultValue;
}

} // namespace

const QList<Setting>& settingTable() {
    static const QList<Setting> table = makeTable();
    return table;
}

const Setting* settingNamed(const QString& key) {
    const auto found = std::ranges::find(settingTable(), key, &Setting::key);
    return found == settingTable().end() ? nullptr : &*found;
}

QString settingKey(LauncherWindowMode mode, const QString& key) {
    return mode == LauncherWindowMode::windowed ? QStringLiteral("windowed.") + key : key;
}

QString rangeText(const Setting& setting) {
    switch (setting.kind) {
    case Kind::integer:
    case Kind::number:
        return Texts::tr("%1 to %2").arg(setting.minimum).arg(setting.maximum);
    case Kind::boolean:
        return Texts::tr("true or false");
    case Kind::choice:
        return withCommas(setting.choices, Texts::tr(" or "));
    case Kind::folders:
        return Texts::tr("a list of folders");
    case Kind::keys:
        return Texts::tr("keys such as option+space");
    case Kind::address:
        return Texts::tr("an address");
    case Kind::text:
        break;
    }
    return Texts::tr("a text");
}

std::optional<LauncherError> refusal(const Setting& setting, const QJsonValue& value) {
    if (!isInRange(setting, value))
        return outOfRange(Texts::tr("“%1” must be %2.").arg(setting.key, rangeText(setting)));
    if (const QString misspelt = misspelling(setting, value); !misspelt.isEmpty())
        return outOfRange(misspelt);
    return std::nullopt;
}

std::optional<LauncherError> refusal(const QString& key, const QJsonValue& value) {
    if (value.isNull())
        return std::nullopt;
    if (const Setting* setting = settingNamed(key))
        return refusal(*setting, value);
    return LauncherError{QStringLiteral("unknownSetting"),
                         Texts::tr("There is no setting “%1”.").arg(key.left(200)),
                         {}};
}

QJsonValue settingNow(const Settings& settings, const Setting& setting) {
    const QString prefix = settingKey(LauncherWindowMode::windowed, {});
    const Setting* general =
        setting.key.startsWith(prefix) ? settingNamed(setting.key.sliced(prefix.size())) : nullptr;
    if (const auto value = settings.value(setting.key);
        value && (!general || isNumber(setting, *value)))
        return inForce(setting, *value);
    if (const auto value = general ? settings.value(general->key) : std::nullopt)
        return inForce(setting, *value);
    return setting.defaultValue;
}

} // namespace tessellar
