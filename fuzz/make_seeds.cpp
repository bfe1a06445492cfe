#include "model/layout_document.h"
#include "model/remembered_places.h"
#include "privileged/records.h"
#include "sample/alias_writer.h"
#include "sample/launchpad_database.h"
#include "sample/plist.h"
#include "smartfolders/smart_folder_raw_values.h"
#include "smartfolders/smart_folder_store.h"
#include "smartfolders/smart_folder_vocabulary.h"
#include "tests/icons/icns_bytes.h"
#include "tests/support/binary_list_builder.h"
#include "updates/app_update_records.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;
using namespace tessellar;

namespace {

using Seeds = QMap<QString, QByteArray>;

bool write(const QString& folder, const Seeds& seeds) {
    bool written = QDir().mkpath(folder);
    for (auto seed = seeds.begin(); seed != seeds.end(); ++seed) {
        QFile file(folder + u'/' + seed.key());
        written = written && file.open(QIODevice::WriteOnly) &&
                  file.write(seed.value()) == seed.value().size();
    }
    return written;
}

template <typename Document>
QByteArray documentBytes(const Document& document) {
    return json::write(json::encode(document));
}

AppEntry application(const QString& name) {
    return {.id = QUuid::createUuidV5(QUuid(), name),
            .bundleIdentifier = QStringLiteral("org.example.") + name,
            .name = name,
            .originalName = name,
            .path = QStringLiteral("/Applications/%1.app").arg(name),
            .category = u"public.app-category.games"_s};
}

LayoutDocument layout() {
    AppEntry alias = application(u"Alias"_s);
    alias.alias = AppAliasReference{u"org.example.Fern"_s};
    const FolderEntry folder{.id = QUuid::createUuidV5(QUuid(), u"folder"_s),
                             .name = u"Ferns é"_s,
                             .customSymbolName = u"leaf"_s,
                             .pages = {{LaunchpadItem(application(u"Fir"_s))}, {LaunchpadItem(alias)}}};
    return {.pages = {{LaunchpadItem(application(u"Fern"_s)), LaunchpadItem(folder)},
                      {LaunchpadItem(SmartFolderReference{QUuid::createUuidV5(QUuid(), u"smart"_s)})}},
            .hiddenKeys = {u"org.example.Fir"_s}};
}

QByteArray registry() {
    RandomUuidSource uuids;
    QJsonArray definitions;
    for (const auto& [value, raw] : json::RawValues<SmartFolderTemplate>::values)
        definitions.append(
            json::encode(templateDefinition(value, uuids.next(), Instant{800'000'000}, uuids)));
    return json::write(QJsonObject{{u"version"_s, 1}, {u"definitions"_s, definitions}});
}

AppUpdateCache updates() {
    return {.records = {{u"org.example.Fern"_s,
                         {.status = UpdateAvailable{u"2.0"_s},
                          .checkedAt = Instant{800'000'000},
                          .installedVersion = u"1.0"_s,
                          .sourceFingerprint = u"mac-app-store-v2"_s,
                          .notes = AppUpdateNotes{u"Greener"_s, u"https://example.org/fern"_s}}},
                        {u"org.example.Fir"_s,
                         {.status = UpdateCheckFailed{},
                          .checkedAt = Instant{800'000'000},
                          .lastKnownStatus = AppUpdateStatus(UpToDate{})}}},
            .lastCheck = Instant{800'000'000},
            .storeItems = {{u"org.example.Fern"_s, {u"bundle"_s, 497'799'835, Instant{800'000'000}}}},
            .skipped = {{u"org.example.Fir"_s, AppUpdateCache::everyVersion}}};
}

/// A database whose rows all stand in the file; empty where it cannot be made.
QByteArray launchpadDatabase(bool olderForm) {
    const QTemporaryDir folder;
    sample::MacBuilder mac(folder.path());
    const sample::OldLaunchpad launchpad{
        .pages = {{sample::OldTile{u"Fern"_s, u"org.example.Fern"_s},
                   sample::OldFolder{u"Trees"_s, {{{u"Fir"_s, u"org.example.Fir"_s}}}}}},
        .olderForm = olderForm,
        .inUse = false};
    QFile file(mac.hostPath(sample::addOldLaunchpad(mac, launchpad, u"/db"_s)));
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray helperFrame(PrivilegedFileOperationKind operation) {
    PrivilegedFileOperationRequest request{
        .id = QUuid::createUuidV5(QUuid(), u"request"_s),
        .operation = operation,
        .items = {{.source = u"/Applications/Fern.app"_s,
                   .destination = u"/Applications/Fir.app"_s,
                   .approved = FileIdentity{.device = 1, .inode = 2}}}};
    request.authorization = json::writeCompact(
        json::encode(AdministratorApproval{.nonce = "nonce", .digest = requestDigest(request)}));
    const QByteArray message = json::writeCompact(json::encode(request));
    QByteArray length(4, '\0');
    qToBigEndian(static_cast<quint32>(message.size()), length.data());
    return length + message;
}

Seeds withoutLengths(const Seeds& frames) {
    Seeds all = frames;
    for (auto frame = frames.begin(); frame != frames.end(); ++frame)
        all.insert(frame.key() + u"-bare"_s, frame->sliced(4));
    return all;
}

constexpr auto feed = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>
<item><title>2.1</title><sparkle:version>210</sparkle:version>
<sparkle:shortVersionString>2.1</sparkle:shortVersionString>
<sparkle:minimumSystemVersion>12.0</sparkle:minimumSystemVersion>
<sparkle:phasedRolloutInterval>86400</sparkle:phasedRolloutInterval>
<pubDate>Sat, 14 Nov 2026 21:05:40 +0000</pubDate><description><![CDATA[<b>Greener</b>]]></description>
<enclosure url="https://example.org/Fern.zip" sparkle:version="210" sparkle:os="macos"/></item>
</channel></rss>)";

constexpr auto storeAnswer = R"({"resultCount":1,"results":[{"trackId":497799835,"version":" 2.0 ",
"bundleId":"org.example.Fern","supportedDevices":["MacDesktop-MacDesktop","iPhone5s-iPhone5s"],
"releaseNotes":"Greener","trackViewUrl":"https://example.org/fern"}]})";

constexpr auto installedCasks = R"(1Warning: old
{"formulae":[],"casks":[{"token":"fern","full_token":"fern","version":"1.0,2","auto_updates":true,
"artifacts":[{"app":["Fern/Fern.app",{"target":"Fir.app"}],"target":"/Applications/Fir.app"},
{"suite":["Trees"]},{"zap":null}]}]})";

constexpr auto outdatedCasks = R"(0{"casks":[{"name":"fern","installed_versions":["1.0"],
"current_version":"1.1","pinned":false}]})";

} // namespace

/// Writes seeds for each fuzz target into a folder of its own below the one given.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_seeds FOLDER\n", stderr);
        return 2;
    }
    const sample::Plist list = sample::Plist::Dictionary{
        {u"CFBundleName"_s, u"Farn é"_s},
        {u"LSUIElement"_s, true},
        {u"Numbers"_s,
         sample::Plist::Array{1, -70'000, 2.5, QByteArray("data"), QDateTime::fromSecsSinceEpoch(0)}}};
    const QMap<QString, QString> names{{u"CFBundleName"_s, u"Fern \"é\"\n"_s}, {u"b"_s, u"c"_s}};
    test::BinaryListBuilder shared;
    shared.dictionary({1, 2}, {3, 4});
    shared.text("a");
    shared.add(std::string("\x62\0\xE9\0a", 5));
    shared.array({1, 1});
    shared.add("\x80\x07");

    const QByteArray xml = sample::plistBytes(list, sample::PlistForm::xml);
    const QByteArray binary = sample::plistBytes(list, sample::PlistForm::binary);
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const bool written =
        write(folder + u"/property_list"_s,
              {{u"xml"_s, xml}, {u"binary"_s, binary}, {u"shared"_s, shared.bytes()}}) &&
        write(folder + u"/strings_file"_s,
              {{u"utf8"_s, sample::stringsFileBytes(names, false)},
               {u"utf16"_s, sample::stringsFileBytes(names, true)},
               {u"comments"_s, "/* a */ a = b; // c\n'd' = \"\\U00e9\\101\";"},
               {u"binary"_s, binary}}) &&
        write(folder + u"/alias_file"_s,
              {{u"alias"_s, sample::aliasFileBytes(u"/Applications/Foo Bar.app"_s)}}) &&
        write(folder + u"/layout"_s, {{u"layout"_s, documentBytes(layout())}}) &&
        write(folder + u"/arrangement"_s,
              {{u"arrangement"_s, documentBytes(Arrangement{.name = u"First"_s,
                                                            .document = layout(),
                                                            .pageCount = 2,
                                                            .layout = ArrangementLayout()})}}) &&
        write(folder + u"/remembered_places"_s,
              {{u"places"_s,
                documentBytes(RememberedPlaces{
                    .pages = layout().pages,
                    .places = {{.id = application(u"Fir"_s).id, .goneAt = Instant{800'000'000}}}})}}) &&
        write(folder + u"/smart_folder_registry"_s, {{u"templates"_s, registry()}}) &&
        write(folder + u"/update_cache"_s, {{u"cache"_s, documentBytes(updates())}}) &&
        write(folder + u"/casks"_s, {{u"info"_s, installedCasks}, {u"outdated"_s, outdatedCasks}}) &&
        write(folder + u"/store_answer"_s, {{u"lookup"_s, storeAnswer}, {u"spotlight"_s, "+42"}}) &&
        write(folder + u"/feed"_s, {{u"feed"_s, feed}}) &&
        write(folder + u"/icns"_s,
              {{u"png"_s, test::icnsFile(test::icnsEntry("ic07", test::png(16, Qt::green)))},
               {u"runs"_s, test::icnsFile(test::icnsEntry("is32", test::repeated(256, 'a') +
                                                                      test::repeated(256, 'b') +
                                                                      test::repeated(256, 'c')) +
                                          test::icnsEntry("s8mk", QByteArray(256, 'd')))}}) &&
        write(folder + u"/launchpad_database"_s,
              {{u"newer"_s, launchpadDatabase(false)}, {u"older"_s, launchpadDatabase(true)}}) &&
        write(folder + u"/control_socket"_s,
              {{u"list"_s, "{\"words\":[\"list\"],\"json\":true,\"mode\":\"windowed\"}\n"},
               {u"stopped"_s, "{\"words\":[\"a\",\"b\"],\"directory\":\"/\"}\n{\"stop\":true}\n"
                              "{\"ping\":true}\n"}}) &&
        write(folder + u"/helper_frame"_s,
              withoutLengths({{u"health"_s, helperFrame(PrivilegedFileOperationKind::healthCheck)},
                              {u"trash"_s, helperFrame(PrivilegedFileOperationKind::moveToTrash)}}));
    if (!written)
        std::perror("make_seeds");
    return written ? 0 : 1;
}
