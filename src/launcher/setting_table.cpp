#include "launcher/setting_table.h"

#include "discovery/app_discovery_settings.h"
#include "model/json_unions.h"
#include "model/layout_settings.h"
#include "updates/app_update_settings.h"

#include <QJsonArray>

#include <algorithm>

namespace tessellar {
namespace {

using Kind = Setting::Kind;

struct GridRow {
    const char* key;
    const char* sentence;
    double step = 1;
};
constexpr std::array gridRows{
    GridRow{"gridRows", "Rows of tiles on a page"},
    GridRow{"gridColumns", "Columns of tiles on a page"},
    GridRow{"iconScale", "Size of the icons, of what their cells hold", 0.05},
    GridRow{"windowedIconSize", "Size of the icons in a window, in points", 4},
    GridRow{"windowedHorizontalSpacing", "Space between columns in a window, in points", 2},
    GridRow{"windowedVerticalSpacing", "Space between rows in a window, in points", 2},
    GridRow{"tileLabelFontSize", "Size of the names; as it fits the icons, where it is not set"},
    GridRow{"folderRows", "Rows of tiles in a folder"},
    GridRow{"folderColumns", "Columns of tiles in a folder"},
    GridRow{"folderIconScale", "Size of the icons in a folder, of those of the grid", 0.05},
    GridRow{"folderIconSpacing", "Space between the icons in a folder, in points", 2},
    GridRow{"windowSize.width", "Width of the window, in points"},
    GridRow{"windowSize.height", "Height of the window, in points"},
};

QList<Setting> gridSettings(LauncherWindowMode mode) {
    QList<Setting> all;
    const QList<LayoutRange> ranges = layoutRanges(mode);
    for (const GridRow& row : gridRows) {
        const auto range = std::ranges::find(ranges, QLatin1StringView(row.key), &LayoutRange::key);
        all.append({.key = settingKey(mode, range->key),
                    .kind = range->isInteger ? Kind::integer : Kind::number,
                    .usual = range->usual,
                    .sentence = QLatin1StringView(row.sentence),
                    .low = range->low,
                    .high = range->high,
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
                .usual = QStringLiteral("system"),
                .sentence = QStringLiteral("Whether sheets, menus and alerts are light or dark"),
                .choices = choices(
                    {QStringLiteral("system"), QStringLiteral("light"), QStringLiteral("dark")}),
                .titles = {QStringLiteral("As the system"), QStringLiteral("Light"),
                           QStringLiteral("Dark")}},
               {.key = QStringLiteral("background"),
                .kind = Kind::choice,
                .usual = QStringLiteral("desktopPicture"),
                .sentence =
                    QStringLiteral("What lies behind the tiles: the desktop's picture, blurred, "
                                   "or the launcher's own"),
                .choices = choices({QStringLiteral("desktopPicture"), QStringLiteral("own")}),
                .titles = {QStringLiteral("Desktop picture"), QStringLiteral("Plain")}},
               {.key = QStringLiteral("reducesMotion"),
                .kind = Kind::boolean,
                .usual = false,
                .sentence = QStringLiteral("Tiles and pages jump to their places instead of sliding")},
               {.key = QStringLiteral("window.mode"),
                .kind = Kind::choice,
                .usual = json::rawValue(LauncherWindowMode::fullScreen),
                .sentence = QStringLiteral("The display mode that the launcher opens in"),
                .choices = choices({json::rawValue(LauncherWindowMode::fullScreen),
                                    json::rawValue(LauncherWindowMode::windowed)}),
                .titles = {QStringLiteral("Full screen"), QStringLiteral("Window")}},
               {.key = QStringLiteral("window.left"),
                .kind = Kind::integer,
                .sentence = QStringLiteral("Where the window lies, in points from the left"),
                .low = -100'000,
                .high = 100'000},
               {.key = QStringLiteral("window.top"),
                .kind = Kind::integer,
                .sentence = QStringLiteral("Where the window lies, in points from the top"),
                .low = -100'000,
                .high = 100'000},
               {.key = QStringLiteral("summon.hotKey"),
                .sentence = QStringLiteral("The keys that show the launcher from anywhere, such as "
                                           "option+space")},
               {.key = QStringLiteral("summon.hotCorner"),
                .kind = Kind::choice,
                .usual = QString(),
                .sentence = QStringLiteral("The corner of the screen that shows the launcher when the "
                                           "pointer is pushed into it"),
                .choices = choices({QString(), QStringLiteral("topLeft"), QStringLiteral("topRight"),
                                    QStringLiteral("bottomLeft"), QStringLiteral("bottomRight")}),
                .titles = {QStringLiteral("None"), QStringLiteral("Top left"),
                           QStringLiteral("Top right"), QStringLiteral("Bottom left"),
                           QStringLiteral("Bottom right")}},
               {.key = Discovery::searchPathsKey,
                .kind = Kind::folders,
                .sentence =
                    QStringLiteral("The folders that applications are looked for in, instead of "
                                   "the usual ones")},
               {.key = Discovery::additionalSearchPathsKey,
                .kind = Kind::folders,
                .usual = QJsonArray(),
                .sentence = QStringLiteral("Folders that applications are looked for in besides")},
               {.key = Discovery::scanDepthKey,
                .kind = Kind::integer,
                .usual = Discovery::defaultScanDepth,
                .sentence = QStringLiteral("How many folders deep applications are looked for"),
                .low = Discovery::minimumScanDepth,
                .high = Discovery::maximumScanDepth},
               {.key = Updates::enabledKey,
                .kind = Kind::boolean,
                .usual = true,
                .sentence = QStringLiteral("Whether applications are checked for newer versions")},
               {.key = Updates::intervalKey,
                .kind = Kind::choice,
                .usual = qToUnderlying(AppUpdateInterval::daily),
                .sentence = QStringLiteral("How often they are checked, in seconds"),
                .choices = intervals(),
                .titles = {QStringLiteral("Every six hours"), QStringLiteral("Every day"),
                           QStringLiteral("Every three days"), QStringLiteral("Every week")}},
               {.key = Updates::storeLookupKey,
                .sentence = QStringLiteral("Where the store is asked for versions, instead of its own "
                                           "address")},
               {.key = Updates::storePageKey,
                .sentence = QStringLiteral("Where the store's pages are, instead of its own address")},
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
        return QStringLiteral("%1 to %2").arg(setting.low).arg(setting.high);
    case Kind::boolean:
        return QStringLiteral("true or false");
    case Kind::choice:
        return withCommas(setting.choices, QStringLiteral(" or "));
    case Kind::folders:
        return QStringLiteral("a list of folders");
    case Kind::text:
        break;
    }
    return QStringLiteral("a text");
}

std::optional<LauncherError> refusal(const Setting& setting, const QJsonValue& value) {
    const auto isRight = [&] {
        switch (setting.kind) {
        case Kind::integer:
        case Kind::number: {
            const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
            return number >= setting.low && number <= setting.high &&
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
            break;
        }
        return value.isString();
    };
    if (isRight())
        return std::nullopt;
    return LauncherError{QStringLiteral("outOfRange"),
                         QStringLiteral("“%1” is to be %2.").arg(setting.key, rangeText(setting)),
                         {}};
}

QJsonValue settingNow(const Settings& settings, const Setting& setting) {
    const QString prefix = settingKey(LauncherWindowMode::windowed, {});
    if (const auto value = settings.value(setting.key))
        return refusal(setting, *value) ? setting.usual : *value;
    const Setting* general =
        setting.key.startsWith(prefix) ? settingNamed(setting.key.sliced(prefix.size())) : nullptr;
    if (const auto value = general ? settings.value(general->key) : std::nullopt)
        return refusal(setting, *value) ? setting.usual : *value;
    return setting.usual;
}

std::expected<void, LauncherError> storeSetting(Settings& settings, const QString& key,
                                                const QJsonValue& value) {
    if (!value.isNull()) {
        const Setting* setting = settingNamed(key);
        if (!setting)
            return std::unexpected(
                LauncherError{QStringLiteral("unknownSetting"),
                              QStringLiteral("There is no setting “%1”.").arg(key.left(200)),
                              {}});
        if (const auto refused = refusal(*setting, value))
            return std::unexpected(*refused);
    }
    if (const auto stored = settings.set(key, value); !stored)
        return std::unexpected(launcherError(stored.error(), QStringLiteral("Could not save setting")));
    return {};
}

} // namespace tessellar
