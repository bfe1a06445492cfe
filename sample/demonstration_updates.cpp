#include "sample/demonstration_updates.h"

#include "sample/demonstration_mac.h"
#include "sample/tools.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tessellar::sample {

using namespace Qt::Literals::StringLiterals;

namespace {

QString slug(const QString& name) { return name.toLower().replace(u' ', u'-'); }

/// The next version after an application's own, for its updater to bring.
QString newer(const Application& application) {
    return QString::number(application.version->section(u'.', 0, 0).toInt() + 1) + u".0.1"_s;
}

PendingUpdate pending(const Application& application, const QString& name, const QString& version) {
    const Plist::Dictionary info{
        {u"CFBundleIdentifier"_s, *application.identifier},
        {u"CFBundleName"_s, application.name},
        {u"CFBundleExecutable"_s, application.name},
        {u"CFBundlePackageType"_s, u"APPL"_s},
        {u"CFBundleIconFile"_s, application.iconFile},
        {u"DTPlatformName"_s, u"macosx"_s},
        {u"CFBundleShortVersionString"_s, version.section(u',', 0, 0)},
        {u"CFBundleVersion"_s, QString::number(application.build->toInt() + 50)}};
    return {name, version, application.folder + u'/' + application.name + u".app/Contents/Info.plist"_s,
            plistBytes(info)};
}

QJsonObject artifact(const QString& kind, const QJsonArray& values, const QString& target = {}) {
    QJsonObject object{{kind, values}};
    if (!target.isEmpty())
        object[u"target"_s] = target;
    return object;
}

QJsonArray artifactsOf(const QString& name) {
    const QString app = name + u".app"_s;
    const QString place = u"/Applications/"_s + app;
    const auto to = [](const QString& target) { return QJsonObject{{u"target"_s, target}}; };
    if (name == u"Portcullis") // what else a cask can hold, in all the shapes of its values
        return {QJsonObject{
                    {u"uninstall"_s,
                     QJsonArray{QJsonObject{{u"launchctl"_s, u"de.lindenkraft.portcullis.helper"_s}}}}},
                QJsonObject{{u"preflight"_s, QJsonValue()}},
                QJsonObject{{u"binary"_s, u"portcullisctl"_s}},
                QJsonObject{{u"zap"_s,
                             QJsonObject{{u"trash"_s, u"~/Library/Application Support/Portcullis"_s}}}},
                artifact(u"app"_s, {app}, place)};
    if (name == u"Kilnworks")
        return {artifact(u"app"_s, {u"kilnworks.app"_s, to(app)})};
    if (name == u"Gantry Desktop")
        return {artifact(u"app"_s, {u"Gantry.app"_s, to(app)}, place)};
    if (name == u"Hexfield")
        return {artifact(u"app"_s, {u"Hexfield 5.localized/Hexfield.app"_s})};
    if (name == u"Burrow")
        return {artifact(u"app"_s, {u"Burrow-universal.app"_s, to(place)})};
    if (name == u"Draughtsman")
        return {artifact(u"suite"_s, {u"Draughtsman Suite"_s}, u"/Applications/Draughtsman Suite"_s)};
    if (name == u"Tinkerbot")
        return {artifact(u"app"_s, {app, to(u"~/Applications/Tinkerbot.app"_s)})};
    return {artifact(u"app"_s, {app}, place)};
}

Cask caskOf(const Application& application) {
    static const QMap<QString, QString> unusualVersions{{u"Mosaic Bench"_s, u"latest"_s},
                                                        {u"Saltmarsh"_s, u"latest"_s}};
    static const QStringList outdated{u"Ferrule"_s,  u"Kilnworks"_s,   u"Rookery"_s,
                                      u"Hexfield"_s, u"Draughtsman"_s, u"Tinkerbot"_s};
    static const QStringList updatesItself{u"Portcullis"_s, u"Coppervine"_s};
    const QString& name = application.name;
    Cask cask{.token = slug(name)};
    cask.installedVersion = unusualVersions.value(name, *application.version);
    if (name == u"Kilnworks")
        cask.installedVersion += u",417"_s;
    cask.version = cask.installedVersion;
    cask.artifacts = artifactsOf(name);
    if (updatesItself.contains(name))
        cask.autoUpdates = true;
    if (name == u"Rookery") {
        cask.tap = u"oldgames/board"_s;
        cask.installedVersionsAsText = true;
    }
    if (outdated.contains(name)) {
        cask.version = newer(application) + (name == u"Kilnworks" ? u",431"_s : QString());
        cask.update = pending(application, cask.token, cask.version);
    }
    return cask;
}

QByteArray feedOf(const Application& application, bool hasUpdate) {
    const int build = application.build->toInt();
    const auto item = [&](const QString& title, int number, const QString& further,
                          const QString& attributes) {
        return u"    <item>\n      <title>%1</title>\n      <pubDate>Mon, 13 Apr 2026 08:00:00 "
               u"+0000</pubDate>\n%2"
               "      <enclosure url=\"https://example.com/%3-%4.zip\" length=\"1048576\" "
               "type=\"application/octet-stream\"%5/>\n    </item>\n"_s
                   .arg(title, further, slug(application.name))
                   .arg(number)
                   .arg(attributes);
    };
    const auto versions = [](int number, const QString& shown) {
        return u" sparkle:version=\"%1\" sparkle:shortVersionString=\"%2\""_s.arg(number).arg(shown);
    };
    const auto elements = [](int number, const QString& shown) {
        return u"      <sparkle:version>%1</sparkle:version>\n"
               "      <sparkle:shortVersionString>%2</sparkle:shortVersionString>\n"_s.arg(number)
                   .arg(shown);
    };
    QString items = item(*application.version, build, {}, versions(build, *application.version));
    if (hasUpdate)
        items +=
            item(newer(application), build + 50,
                 elements(build + 50, newer(application)) +
                     u"      <sparkle:minimumSystemVersion>11.0</sparkle:minimumSystemVersion>\n"_s,
                 {});
    items += item(u"Preview"_s, build + 90, u"      <sparkle:channel>beta</sparkle:channel>\n"_s,
                  versions(build + 90, u"99.0b1"_s));
    items += item(u"For the next system"_s, build + 95,
                  u"      <sparkle:minimumSystemVersion>99.0</sparkle:minimumSystemVersion>\n"_s,
                  versions(build + 95, u"99.1"_s));
    return (u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<rss version=\"2.0\" "
            "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">\n"
            "  <channel>\n    <title>%1</title>\n%2  </channel>\n</rss>\n"_s.arg(
                application.name.toHtmlEscaped(), items))
        .toUtf8();
}

/// The store's answers in turn: a newer version, the same one, a listing shared with other devices,
/// none.
QByteArray lookupOf(const Application& application, int turn) {
    QJsonArray results;
    if (turn % 5 != 4) {
        QJsonObject item{{u"trackId"_s, *application.storeIdentifier},
                         {u"version"_s, turn % 2 == 0 ? newer(application) : *application.version},
                         {u"bundleId"_s, *application.identifier},
                         {u"trackName"_s, application.name},
                         {u"trackViewUrl"_s,
                          u"https://store.example.com/app/id%1"_s.arg(*application.storeIdentifier)},
                         {u"sellerName"_s, application.signature.team}};
        if (turn % 5 == 3)
            item[u"supportedDevices"_s] =
                QJsonArray{u"MacDesktop-MacDesktop"_s, u"iPhone15-iPhone15"_s};
        else if (application.wrapped)
            item[u"supportedDevices"_s] = QJsonArray{u"iPhone15-iPhone15"_s, u"iPadAir5-iPadAir5"_s};
        results.append(item);
    }
    return QJsonDocument(QJsonObject{{u"resultCount"_s, results.size()}, {u"results"_s, results}})
        .toJson();
}

} // namespace

QString feedAddress(const Application& application) {
    return demonstrationServer + u"/feeds/"_s + slug(application.name) + u".xml"_s;
}

void addUpdates(MacBuilder& mac, const QList<Application>& applications, const QList<Kind>& kinds) {
    static const QMap<QString, QString> codes{{u"com.microsoft.word"_s, u"MSWD2019"_s},
                                              {u"com.microsoft.excel"_s, u"XCEL2019"_s}};
    const QString http = MacBuilder::toolData() + u"/http/"_s;
    QList<Cask> casks;
    QList<PendingUpdate> updates;
    int turn = 0;
    for (qsizetype i = 0; i < applications.size(); ++i) {
        const Application& application = applications[i];
        const bool inSuite = application.folder == u"/Applications/Draughtsman Suite";
        if (kinds[i] == Kind::homebrew ? !inSuite || application.name == u"Draughtsman"
                                       : application.name == u"Tinkerbot")
            casks.append(caskOf(application));
        if (application.sparkleFeed)
            mac.addFile(http + u"feeds/"_s + slug(application.name) + u".xml"_s,
                        feedOf(application, turn++ % 2 == 0));
        if (application.storeIdentifier)
            mac.addFile(http + u"lookup/%1.json"_s.arg(*application.storeIdentifier),
                        lookupOf(application, turn++));
        if (codes.contains(*application.identifier))
            updates.append(pending(application, codes[*application.identifier], newer(application)));
    }
    // The launcher asks the server on the loopback where it would ask the store.
    mac.addFile(u"/Users/ada/Library/Preferences/com.tessellar.app.json"_s,
                QJsonDocument(QJsonObject{{u"appUpdates.storeLookupURL"_s, demonstrationServer},
                                          {u"appUpdates.storePageURL"_s, demonstrationServer}})
                    .toJson());
    mac.addPropertyList(
        u"/System/Library/CoreServices/SystemVersion.plist"_s,
        Plist::Dictionary{{u"ProductName"_s, u"macOS"_s}, {u"ProductVersion"_s, u"15.4"_s}});
    addHomebrew(mac, casks);
    addMicrosoftUpdater(mac, updates);
}

} // namespace tessellar::sample
