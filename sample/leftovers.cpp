#include "sample/leftovers.h"

#include <array>

namespace tessellar::sample {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Shape {
    Leftover leftover;
    /// {home}, {id}, {name}, {vendor} and {team} stand for the application's.
    const char* path;
    /// What is in it; a folder's file. Empty where the path itself is a file.
    const char* inside;
};

constexpr std::array shapes{
    Shape{Leftover::savedState, "{home}/Library/Saved Application State/{id}.savedState",
          "/windows.plist"},
    Shape{Leftover::httpStorage, "{home}/Library/HTTPStorages/{id}", "/httpstorages.sqlite"},
    Shape{Leftover::httpStorage, "{home}/Library/HTTPStorages/{id}.binarycookies", ""},
    Shape{Leftover::webKit, "{home}/Library/WebKit/{id}", "/WebsiteData/Default/salt"},
    Shape{Leftover::container, "{home}/Library/Containers/{id}",
          "/Data/Library/Preferences/{id}.plist"},
    Shape{Leftover::preferences, "{home}/Library/Preferences/{id}.plist", ""},
    Shape{Leftover::byHostPreferences,
          "{home}/Library/Preferences/ByHost/{id}.3F0B1B52-6C1D-5E7A-9B54-8C2D6A7F1E90.plist", ""},
    Shape{Leftover::cache, "{home}/Library/Caches/{id}", "/Cache.db"},
    Shape{Leftover::updaterCache, "{home}/Library/Caches/{id}.ShipIt", "/ShipItState.plist"},
    Shape{Leftover::support, "{home}/Library/Application Support/{name}", "/Documents/library.db"},
    Shape{Leftover::supportById, "{home}/Library/Application Support/{id}", "/state.db"},
    Shape{Leftover::vendorSupport, "{home}/Library/Application Support/{vendor}/{name}",
          "/licence.dat"},
    Shape{Leftover::logs, "{home}/Library/Logs/{name}", "/{name}.log"},
    Shape{Leftover::groupContainer, "{home}/Library/Group Containers/{team}.{id}", "/shared.db"},
    Shape{Leftover::launchAgent, "{home}/Library/LaunchAgents/{id}.agent.plist", ""},
    Shape{Leftover::systemSupport, "/Library/Application Support/{name}", "/common.db"},
    Shape{Leftover::systemPreferences, "/Library/Preferences/{id}.plist", ""},
    Shape{Leftover::systemAgent, "/Library/LaunchAgents/{id}.agent.plist", ""},
    Shape{Leftover::daemon, "/Library/LaunchDaemons/{id}.helper.plist", ""},
    Shape{Leftover::helperTool, "/Library/PrivilegedHelperTools/{id}.helper", ""},
};

} // namespace

QStringList addLeftovers(MacBuilder& mac, const Application& application,
                         const QList<Leftover>& leftovers, const QString& vendor, const QString& home) {
    QStringList paths;
    for (const Leftover leftover : leftovers) {
        for (const Shape& shape : shapes) {
            const QString pattern = QString::fromLatin1(shape.path);
            if (shape.leftover != leftover || (pattern.contains(u"{id}") && !application.identifier))
                continue;
            const auto filled = [&](QString text) {
                return text.replace(u"{home}"_s, home)
                    .replace(u"{id}"_s, application.identifier.value_or(QString()))
                    .replace(u"{name}"_s, application.name)
                    .replace(u"{vendor}"_s, vendor)
                    .replace(u"{team}"_s, application.signature.team);
            };
            const QString path = filled(pattern);
            paths.append(path);
            const QString file = path + filled(QString::fromLatin1(shape.inside));
            if (file.endsWith(u".plist"_s))
                mac.addPropertyList(file, Plist::Dictionary{{u"Label"_s, application.name}});
            else
                mac.addFile(file, application.name.toUtf8() + " was here.\n");
        }
    }
    return paths;
}

} // namespace tessellar::sample
