#include "model/layout_settings.h"

namespace tessellar {
namespace {

template <typename Value>
struct Ranged {
    const char* key;
    Value ArrangementLayout::*member;
    Value low;
    Value high;
};

constexpr std::array integers{
    Ranged<int>{"gridRows", &ArrangementLayout::rows, 3, 9},
    Ranged<int>{"gridColumns", &ArrangementLayout::columns, 4, 10},
    Ranged<int>{"folderRows", &ArrangementLayout::folderRows, 2, 9},
    Ranged<int>{"folderColumns", &ArrangementLayout::folderColumns, 2, 10},
};
constexpr std::array reals{
    Ranged<double>{"iconScale", &ArrangementLayout::iconScale, 0.8, 1.2},
    Ranged<double>{"windowedIconSize", &ArrangementLayout::windowedIconSize, 32, 128},
    Ranged<double>{"windowedHorizontalSpacing", &ArrangementLayout::windowedHorizontalSpacing, 0, 120},
    Ranged<double>{"windowedVerticalSpacing", &ArrangementLayout::windowedVerticalSpacing, 0, 120},
    Ranged<double>{"folderIconSpacing", &ArrangementLayout::folderIconSpacing, 0, 120},
    Ranged<double>{"folderIconScale", &ArrangementLayout::folderIconScale, 0.5, 1.5},
};
struct Column {
    const char* key;
    SpecialColumn ArrangementLayout::*member;
};
constexpr std::array columns{Column{"recents", &ArrangementLayout::recents},
                             Column{"mostUsed", &ArrangementLayout::mostUsed}};

constexpr double minimumFontSize = 8, maximumFontSize = 24;
constexpr double minimumWindowSide = 200, maximumWindowSide = 20'000;
constexpr int maximumSpecialColumns = 4;

QString prefixed(LauncherWindowMode mode, const QString& key) {
    return mode == LauncherWindowMode::windowed ? QStringLiteral("windowed.") + key : key;
}

template <typename T>
std::optional<T> within(std::optional<T> value, T low, T high) {
    return value && *value >= low && *value <= high ? value : std::nullopt;
}

/// Looks up a key with the mode's prefix, then without.
template <typename Read>
auto lookUp(LauncherWindowMode mode, const QString& key, Read read) {
    if (const auto value = read(prefixed(mode, key)); value || mode == LauncherWindowMode::fullScreen)
        return value;
    return read(key);
}

bool isPlacement(const QString& text) { return text == u"fixed" || text == u"firstPage"; }

} // namespace

static ArrangementLayout defaultsOf(LauncherWindowMode mode) {
    ArrangementLayout layout;
    layout.columns = mode == LauncherWindowMode::windowed ? 7 : 8;
    return layout;
}

ArrangementLayout readLayoutSettings(const Settings& settings, LauncherWindowMode mode) {
    ArrangementLayout layout = defaultsOf(mode);
    const auto integer = [&](const QString& key, qint64 low, qint64 high) {
        return within(lookUp(mode, key, [&](const QString& k) { return settings.integer(k); }), low,
                      high);
    };
    const auto real = [&](const QString& key, double low, double high) {
        return within(lookUp(mode, key, [&](const QString& k) { return settings.number(k); }), low,
                      high);
    };
    for (const auto& field : integers)
        if (const auto value = integer(QLatin1StringView(field.key), field.low, field.high))
            layout.*field.member = static_cast<int>(*value);
    for (const auto& field : reals)
        if (const auto value = real(QLatin1StringView(field.key), field.low, field.high))
            layout.*field.member = *value;
    layout.tileLabelFontSize =
        real(QStringLiteral("tileLabelFontSize"), minimumFontSize, maximumFontSize);

    for (const Column& column : columns) {
        SpecialColumn& special = layout.*column.member;
        const QString key = QLatin1StringView(column.key);
        if (const auto visible = lookUp(mode, key + QLatin1StringView(".isVisible"),
                                        [&](const QString& k) { return settings.boolean(k); }))
            special.isVisible = *visible;
        if (const auto count = integer(key + QLatin1StringView(".columns"), 1, maximumSpecialColumns))
            special.columns = static_cast<int>(*count);
        if (const auto placement = lookUp(mode, key + QLatin1StringView(".placement"),
                                          [&](const QString& k) { return settings.text(k); });
            placement && isPlacement(*placement))
            special.placement = *placement;
    }

    const auto width = real(QStringLiteral("windowSize.width"), minimumWindowSide, maximumWindowSide);
    const auto height = real(QStringLiteral("windowSize.height"), minimumWindowSide, maximumWindowSide);
    if (width && height)
        layout.windowSize = WindowSize{*width, *height};
    return layout;
}

QList<LayoutRange> layoutRanges(LauncherWindowMode mode) {
    const ArrangementLayout usual = defaultsOf(mode);
    QList<LayoutRange> all;
    for (const auto& field : integers)
        all.append({QLatin1StringView(field.key), double(field.low), double(field.high), true,
                    usual.*field.member});
    for (const auto& field : reals)
        all.append({QLatin1StringView(field.key), field.low, field.high, false, usual.*field.member});
    all.append({QStringLiteral("tileLabelFontSize"), minimumFontSize, maximumFontSize, false, {}});
    for (const auto& key : {QStringLiteral("windowSize.width"), QStringLiteral("windowSize.height")})
        all.append({key, minimumWindowSide, maximumWindowSide, false, {}});
    return all;
}

/// As `storedLayoutSettings`, but without the mode's prefix, and undefined instead of null.
static QList<std::pair<QString, QJsonValue>> settingsOf(const ArrangementLayout& layout,
                                                        LauncherWindowMode mode) {
    const ArrangementLayout defaults = defaultsOf(mode);
    const auto ranged = [](double value, double low, double high,
                           QJsonValue otherwise = QJsonValue::Undefined) {
        return value >= low && value <= high ? QJsonValue(value) : otherwise;
    };
    QList<std::pair<QString, QJsonValue>> result;
    for (const auto& field : integers)
        result.append({QLatin1StringView(field.key),
                       ranged(layout.*field.member, field.low, field.high, defaults.*field.member)});
    for (const auto& field : reals)
        result.append({QLatin1StringView(field.key),
                       ranged(layout.*field.member, field.low, field.high, defaults.*field.member)});
    result.append({QStringLiteral("tileLabelFontSize"),
                   ranged(layout.tileLabelFontSize.value_or(0), minimumFontSize, maximumFontSize)});
    for (const Column& column : columns) {
        const SpecialColumn& special = layout.*column.member;
        const SpecialColumn& usual = defaults.*column.member;
        const QString key = QLatin1StringView(column.key);
        result.append({key + QLatin1StringView(".isVisible"), special.isVisible});
        result.append({key + QLatin1StringView(".columns"),
                       ranged(special.columns, 1, maximumSpecialColumns, usual.columns)});
        result.append({key + QLatin1StringView(".placement"),
                       isPlacement(special.placement) ? special.placement : usual.placement});
    }
    const WindowSize size = layout.windowSize.value_or(WindowSize());
    result.append(
        {QStringLiteral("windowSize.width"), ranged(size.width, minimumWindowSide, maximumWindowSide)});
    result.append({QStringLiteral("windowSize.height"),
                   ranged(size.height, minimumWindowSide, maximumWindowSide)});
    return result;
}

QMap<QString, QJsonValue> storedLayoutSettings(LauncherWindowMode mode,
                                               const ArrangementLayout& layout) {
    QMap<QString, QJsonValue> stored;
    for (const auto& [key, value] : settingsOf(layout, mode))
        stored.insert(prefixed(mode, key), value.isUndefined() ? QJsonValue() : value);
    return stored;
}

} // namespace tessellar
