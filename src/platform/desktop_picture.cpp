#include "platform/desktop_picture.h"

#include "platform/file_system.h"
#include "platform/property_list.h"

#include <QUrl>

namespace tessellar {
namespace {

constexpr std::uint64_t maximumBytes = 4u << 20;

std::optional<QString> pathOf(const QString& url) {
    const QUrl file(url.trimmed());
    return file.isLocalFile() ? std::optional(file.path()) : std::nullopt;
}

// ---- the Mac

/// A choice names its file in a list, or in an embedded property list.
std::optional<QString> chosenFile(const PropertyValue& choice) {
    for (const PropertyValue& file : choice[QStringLiteral("Files")].array())
        if (const auto url = file[QStringLiteral("relative")].text())
            return pathOf(*url);
    const auto bytes = choice[QStringLiteral("Configuration")].data();
    const auto configuration = bytes ? parsePropertyList(*bytes) : PropertyValue();
    if (!configuration)
        return std::nullopt;
    const auto url = (*configuration)[QStringLiteral("url")][QStringLiteral("relative")].text();
    return url ? pathOf(*url) : std::nullopt;
}

std::optional<QString> chosenFor(const PropertyValue& place) {
    const PropertyValue content = place[QStringLiteral("Desktop")][QStringLiteral("Content")];
    for (const PropertyValue& choice : content[QStringLiteral("Choices")].array())
        if (const auto file = chosenFile(choice))
            return file;
    return std::nullopt;
}

std::optional<QString> ofMac(const DesktopPictureContext& context, std::stop_token) {
    const auto bytes = context.files.read(
        context.home +
            QStringLiteral("/Library/Application Support/com.apple.wallpaper/Store/Index.plist"),
        maximumBytes);
    const auto index = bytes ? parsePropertyList(*bytes) : PropertyValue();
    if (!index)
        return std::nullopt;
    for (const char* place : {"AllSpacesAndDisplays", "SystemDefault"})
        if (const auto file = chosenFor((*index)[QLatin1StringView(place)]))
            return file;
    for (const PropertyValue& display : (*index)[QStringLiteral("Displays")].dictionary())
        if (const auto file = chosenFor(display))
            return file;
    return std::nullopt;
}

// ---- other desktops

std::optional<QString> ofGnome(const DesktopPictureContext& context, std::stop_token stop) {
    const QString tool = QStringLiteral("/usr/bin/gsettings");
    const auto desktop = context.environment.find("XDG_CURRENT_DESKTOP");
    if (desktop == context.environment.end() || !desktop->second.contains("GNOME") ||
        !context.files.isExecutableFile(tool))
        return std::nullopt;
    const auto ask = [&](const char* schema, const char* key) {
        const CommandResult result = context.commands.run({.executable = context.files.hostPath(tool),
                                                           .arguments = {"get", schema, key},
                                                           .environment = context.environment,
                                                           .timeout = std::chrono::seconds(3),
                                                           .maximumOutput = 64u << 10,
                                                           .input = {}},
                                                          stop);
        return QString::fromUtf8(result.standardOutput).remove(u'\'');
    };
    const bool isDark = ask("org.gnome.desktop.interface", "color-scheme").contains(u"prefer-dark");
    if (const auto dark =
            isDark ? pathOf(ask("org.gnome.desktop.background", "picture-uri-dark")) : std::nullopt)
        return dark;
    return pathOf(ask("org.gnome.desktop.background", "picture-uri"));
}

std::optional<QString> ofPlasma(const DesktopPictureContext& context, std::stop_token) {
    const auto bytes = context.files.read(
        context.home + QStringLiteral("/.config/plasma-org.kde.plasma.desktop-appletsrc"),
        maximumBytes);
    for (const QByteArray& line : bytes.value_or(QByteArray()).split('\n')) {
        if (!line.startsWith("Image="))
            continue;
        const QString value = QString::fromUtf8(line.sliced(6)).trimmed();
        return value.startsWith(u'/') ? std::optional(value) : pathOf(value);
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> desktopPicture(const DesktopPictureContext& context, std::stop_token stop) {
    for (const auto source : {ofMac, ofGnome, ofPlasma})
        if (const auto path = source(context, stop); path && context.files.isRegularFile(*path))
            return path;
    return std::nullopt;
}

} // namespace tessellar
