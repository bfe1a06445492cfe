#include "discovery/small_library.h"
#include "sample/alias_writer.h"
#include "support/memory_settings.h"

#include <QJsonArray>

#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using sample::Missing;
using sample::Plist;
using testing::ElementsAre;
using testing::IsEmpty;
using InstallState = AppScanner::InstallState;

class AppScannerTest : public test::SmallLibrary {};

TEST_F(AppScannerTest, DescribesWhatItFinds) {
    mac.addApplication({.name = u"zebra"_s,
                        .identifier = u"org.example.zebra"_s,
                        .category = u"public.app-category.games"_s});
    mac.addApplication(
        {.name = u"Äpfel"_s, .folder = u"/System/Applications"_s, .identifier = std::nullopt});
    mac.addApplication({.name = u"Birne"_s,
                        .folder = u"/Users/ada/Applications"_s,
                        .identifier = u""_s,
                        .category = u"x"_s.repeated(5'000),
                        .isAgent = true});
    mac.addApplication({.name = u"apple"_s, .info = {{u"CFBundleIdentifier"_s, 7}}});

    const auto scan = this->scan();
    EXPECT_EQ(names(scan), u"Äpfel|apple|Birne|zebra");
    ASSERT_EQ(scan.apps.size(), 4);
    EXPECT_EQ(scan.apps[0].source, AppSource::system);
    EXPECT_EQ(scan.apps[1].source, AppSource::local);
    EXPECT_EQ(scan.apps[2].source, AppSource::user);
    EXPECT_EQ(scan.apps[2].category, std::nullopt);
    for (int i : {0, 1, 2})
        EXPECT_EQ(scan.apps[i].bundleIdentifier, std::nullopt) << i;

    AppEntry zebra;
    zebra.id = QUuid(4, 0, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0);
    zebra.bundleIdentifier = u"org.example.zebra"_s;
    zebra.name = zebra.originalName = u"zebra"_s;
    zebra.path = u"/Applications/zebra.app"_s;
    zebra.category = u"public.app-category.games"_s;
    EXPECT_EQ(scan.apps[3], zebra);
    EXPECT_EQ(scan.watchableDirectories, QStringList({u"/Applications"_s, u"/System/Applications"_s,
                                                      u"/Users/ada/Applications"_s}));
}

TEST_F(AppScannerTest, ListsFoldersDownToTheScanDepth) {
    QString folder = u"/Applications"_s;
    for (int depth = 0; depth <= 5; ++depth, folder += u"/Sub"_s)
        add(folder, u"Depth%1"_s.arg(depth));
    // At its own depth below another search path.
    add(u"/Applications/Sub/Sub/Sub/Sub/Sub/Sub"_s, u"Search"_s);
    settings.searchPaths = QStringList{u"/Applications"_s, u"/Applications/Sub/Sub/Sub/Sub/Sub/Sub"_s};

    EXPECT_EQ(names(scan()), u"Depth0|Depth1|Depth2|Depth3|Depth4|Search");
    settings.scanDepth = 1;
    EXPECT_EQ(names(scan()), u"Depth0|Depth1|Search");
}

TEST_F(AppScannerTest, TellsApplicationsFromOtherEntries) {
    mac.addApplication({.name = u"LOUD"_s, .extension = u"APP"_s});
    mac.addApplication({.name = u".Hidden"_s});
    mac.addApplication({.name = u"Tool"_s, .folder = u"/Applications/Games.localized"_s});
    mac.addApplication({.name = u"Tool"_s, .folder = u"/Applications/.staging"_s});
    mac.addFile(u"/Applications/File.app"_s, "no bundle");
    mac.addDirectory(u"/Applications/Bare.app"_s);
    ASSERT_EQ(::mkfifo(host(u"/Applications/Pipe.app"_s).c_str(), 0600), 0);

    const auto scan = this->scan();
    EXPECT_EQ(paths(scan),
              QStringList({u"/Applications/LOUD.APP"_s, u"/Applications/Games.localized/Tool.app"_s}));
    EXPECT_EQ(names(scan), u"LOUD|Tool");
    EXPECT_EQ(incomplete(scan), u"Bare.app");
}

TEST_F(AppScannerTest, SeesABundleOnceWhateverRoadsLeadToIt) {
    add(u"/opt/tools"_s, u"Fern"_s);
    mac.addAlias(u"/Applications/Fern alias"_s, u"/opt/tools/Fern.app"_s);
    mac.addLink(u"/Applications/Fern.app"_s, u"../opt/tools/Fern.app"_s);
    mac.addAlias(u"/Applications/Tools alias"_s, u"/opt/tools"_s);
    mac.addLink(u"/Applications/Tools"_s, u"/opt/tools"_s);
    mac.addLink(u"/opt/hop"_s, u"/Applications/Fern alias"_s);
    mac.addAlias(u"/Applications/Far"_s, u"/opt/hop"_s);
    settings.searchPaths += u"/opt/tools"_s;

    const auto scan = this->scan();
    EXPECT_EQ(paths(scan), QStringList(u"/opt/tools/Fern.app"_s));
    EXPECT_FALSE(scan.apps.value(0).isDuplicateBundleIdentifier);
    EXPECT_EQ(scan.watchableDirectories.count(u"/opt/tools"_s), 1);

    settings.searchPaths = QStringList{u"/Applications/Tools alias"_s};
    EXPECT_EQ(paths(this->scan()), QStringList(u"/opt/tools/Fern.app"_s))
        << "a search path may be an alias";
    settings.searchPaths = QStringList{u"/opt/tools/Fern.app"_s};
    EXPECT_EQ(paths(this->scan()), QStringList(u"/opt/tools/Fern.app"_s)) << "or a bundle";
}

TEST_F(AppScannerTest, ComesBackFromLoops) {
    add(u"/Applications/Suite"_s, u"Fern"_s);
    mac.addLink(u"/Applications/Suite/up"_s, u".."_s);
    mac.addLink(u"/Applications/Suite/root"_s, u"/"_s);
    mac.addLink(u"/Applications/self"_s, u"self"_s);
    mac.addLink(u"/Applications/ping"_s, u"pong"_s);
    mac.addLink(u"/Applications/pong"_s, u"ping"_s);
    mac.addLink(u"/Applications/nowhere.app"_s, u"/missing"_s);
    mac.addAlias(u"/Applications/one"_s, u"/Applications/two"_s);
    mac.addAlias(u"/Applications/two"_s, u"/Applications/one"_s);
    mac.addFile(u"/Applications/torn alias"_s, sample::aliasFileBytes(u"/opt"_s).first(70));

    EXPECT_EQ(paths(scan()), QStringList(u"/Applications/Suite/Fern.app"_s));
}

TEST_F(AppScannerTest, NestedApplicationsAreThoseInContentsApplications) {
    mac.addApplication({.name = u"Suite"_s,
                        .nested = {{.name = u"Tool"_s, .folder = u"Contents/Applications"_s},
                                   {.name = u"Helper"_s, .folder = u"Contents/Library"_s},
                                   {.name = u"Simulator"_s, .folder = u"Contents/Developer"_s},
                                   {.name = u"Deep"_s, .folder = u"Contents/Applications/More"_s}}});
    mac.addApplication({.name = u"Linked"_s});
    mac.addLink(u"/Applications/Linked.app/Contents/Applications"_s, u"/opt"_s);
    add(u"/opt"_s, u"Elsewhere"_s);
    EXPECT_EQ(names(scan()), u"Deep|Linked|Suite|Tool");

    mac.addAlias(u"/Applications/Simulator"_s,
                 u"/Applications/Suite.app/Contents/Developer/Simulator.app"_s);
    EXPECT_EQ(names(scan()), u"Deep|Linked|Simulator|Suite|Tool") << "an alias is someone's wish";
    settings.scanDepth = 2;
    EXPECT_EQ(names(scan()), u"Linked|Simulator|Suite");
}

TEST_F(AppScannerTest, ABundleIsReadyWithItsInfoAndItsExecutable) {
    const auto state = [&](const QString& path) { return AppScanner::installState(files, path); };
    const auto path = [](const QString& name) { return u"/Applications/%1.app"_s.arg(name); };
    mac.addApplication({.name = u"Whole"_s});
    mac.addApplication({.name = u"NoInfo"_s, .missing = Missing::info});
    mac.addApplication({.name = u"NoExecutable"_s, .missing = Missing::executable});
    mac.addApplication({.name = u"NoContents"_s, .missing = Missing::contents});
    mac.addApplication({.name = u"Escapes"_s, .executable = u"../../../../bin/x"_s});
    mac.addApplication({.name = u"Damaged"_s});
    mac.addFile(path(u"Damaged"_s) + u"/Contents/Info.plist"_s, "<plist><dict><key>");
    mac.addApplication({.name = u"Folder"_s, .executable = u"deep"_s, .missing = Missing::executable});
    mac.addDirectory(path(u"Folder"_s) + u"/Contents/MacOS/deep"_s);
    mac.addExecutable(u"/bin/x"_s, "x");
    // The executable of a bundle that declares none bears the bundle's name.
    mac.addApplication({.name = u"Silent"_s, .info = {{u"CFBundleExecutable"_s, 1}}});

    const auto scan = this->scan();
    EXPECT_EQ(names(scan), u"Silent|Whole");
    EXPECT_EQ(incomplete(scan),
              u"Damaged.app|Escapes.app|Folder.app|NoContents.app|NoExecutable.app|NoInfo.app");
    for (const AppEntry& entry : scan.apps)
        EXPECT_EQ(state(entry.path), InstallState::ready) << entry.path.toStdString();
    for (const auto& bundle : scan.incompleteBundles) {
        EXPECT_EQ(state(bundle.path), InstallState::incomplete) << bundle.path.toStdString();
        EXPECT_EQ(bundle.fileIdentifier, files.status(bundle.path)->inode);
    }
    mac.addFile(path(u"File"_s), "x");
    mac.addLink(path(u"Dangling"_s), u"/missing.app"_s);
    for (const auto& name : {u"File"_s, u"Dangling"_s, u"Absent"_s})
        EXPECT_EQ(state(path(name)), InstallState::missing) << name.toStdString();
}

TEST_F(AppScannerTest, WrappedApplicationsAreWhatTheStoreSays) {
    const auto wrapped = [&](const QString& name, sample::WrappedMetadata metadata) {
        metadata.realName = u"Real"_s;
        return mac.addApplication(
            {.name = name, .identifier = u"org.example."_s + name, .wrapped = metadata});
    };
    wrapped(u"fish"_s, {.itemName = u"Goldfish: Watch them"_s,
                        .categories = {u"public.app-category.games"_s, u"x"_s}});
    wrapped(u"Unlinked"_s, {.itemName = u"Unlinked"_s, .withLink = false});
    wrapped(u"Prohibited"_s, {.itemName = u"Prohibited"_s, .launchProhibited = true});
    const QString nameless = wrapped(u"Nameless"_s, {});
    mac.addPropertyList(nameless + u"/Wrapper/iTunesMetadata.plist"_s,
                        Plist::Dictionary{{u"itemName"_s, 3},
                                          {u"categories"_s, u"none"_s},
                                          {u"softwareVersionBundleId"_s, true},
                                          {u"sourceApp"_s, u"org.example.store"_s}});

    const auto scan = this->scan();
    EXPECT_EQ(names(scan), u"Goldfish: Watch them|Nameless|Unlinked");
    EXPECT_THAT(scan.incompleteBundles, IsEmpty());
    ASSERT_EQ(scan.apps.size(), 3);
    EXPECT_EQ(scan.apps[0].path, u"/Applications/fish.app");
    EXPECT_EQ(scan.apps[0].bundleIdentifier, u"org.example.fish");
    EXPECT_EQ(scan.apps[0].category, u"public.app-category.games");
    EXPECT_EQ(scan.apps[1].bundleIdentifier, u"org.example.Nameless") << "from the bundle inside";
    EXPECT_EQ(scan.apps[1].category, std::nullopt);

    EXPECT_EQ(AppScanner::wrappedMetadata(readBundle(files, nameless)),
              (AppScanner::WrappedIOSAppMetadata{.sourceApp = u"org.example.store"_s}));
    EXPECT_EQ(AppScanner::wrappedMetadata(readBundle(files, add(u"/opt"_s, u"Mac"_s))), std::nullopt);
}

TEST_F(AppScannerTest, CopiesThatShareAnIdentifierAreDuplicates) {
    const auto same = u"org.example.same"_s;
    mac.addApplication({.name = u"One"_s, .identifier = same});
    mac.addApplication({.name = u"Two"_s, .folder = u"/Users/ada/Applications"_s, .identifier = same});
    mac.addApplication({.name = u"Upper"_s, .identifier = u"org.Example.same"_s});
    mac.addApplication(
        {.name = u"Half"_s, .identifier = u"org.Example.same"_s, .missing = Missing::executable});
    mac.addApplication({.name = u"None"_s, .identifier = std::nullopt});
    mac.addApplication({.name = u"Nil"_s, .identifier = std::nullopt});

    QStringList duplicates;
    for (const AppEntry& entry : scan().apps)
        if (entry.isDuplicateBundleIdentifier)
            duplicates += entry.name;
    EXPECT_EQ(duplicates, QStringList({u"One"_s, u"Two"_s}));
}

TEST_F(AppScannerTest, NamesAreLocalisedAndNeverEmptyOrEndless) {
    languages = QStringList{u"de"_s, u"en"_s};
    addLocalized(u"Fern"_s, u"Farn"_s);
    addLocalized(u"Void"_s, u""_s);
    addLocalized(u"Long"_s, u"x"_s.repeated(100'000));
    addLocalized(u"Line"_s, u"Zei\nle\u202Etxt"_s);
    mac.addApplication({.name = u"Double.app"_s, .displayName = u"Other"_s});
    mac.addApplication({.name = u"Either:Or"_s});
    EXPECT_EQ(names(scan()), u"Double|Either/Or|Farn|Long|Void|Zei letxt");
}

TEST_F(AppScannerTest, HostileMachinesOnlyLoseApplications) {
    add(u"/Applications"_s, u"Good"_s);
    // Names that are not UTF-8, of a bundle and of a folder around one.
    for (const char* name : {"Bad\xFF.app", "Folder\xC3/Inside.app"}) {
        const std::string bundle = (host(u"/Applications"_s) / name).string();
        std::filesystem::create_directories(bundle + "/Contents");
        std::filesystem::copy(host(u"/Applications/Good.app/Contents"_s), bundle + "/Contents",
                              std::filesystem::copy_options::recursive);
    }
    mac.addApplication({.name = u"Pipe"_s, .missing = Missing::info});
    ASSERT_EQ(::mkfifo(host(u"/Applications/Pipe.app/Contents/Info.plist"_s).c_str(), 0600), 0);

    const auto scan = this->scan();
    EXPECT_TRUE(paths(scan).contains(u"/Applications/Good.app"_s));
    EXPECT_TRUE(incomplete(scan).split(u'|').contains(u"Pipe.app"));
    EXPECT_EQ(scan.apps.size() + scan.incompleteBundles.size(), 2);
    // Qt does not see what its names cannot say.
    std::filesystem::remove_all(host(u"/Applications"_s));
}

TEST_F(AppScannerTest, StopsWhenAsked) {
    add(u"/Applications"_s, u"Fern"_s);
    ScanCache cache;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(scanner().scan(cache, stop.get_token()), std::nullopt);

    const auto whole = scan(cache);
    add(u"/Applications"_s, u"Moss"_s);
    EXPECT_EQ(scanner().scan(cache, stop.get_token()), std::nullopt);
    EXPECT_EQ(scan(cache).apps.value(0), whole.apps.value(0)) << "the cache is still good";
}

// ---- of settings

const QString home = u"/Users/ada"_s;

AppDiscoverySettings read(const QMap<QString, QJsonValue>& values) {
    test::MemorySettings settings;
    for (auto value = values.begin(); value != values.end(); ++value)
        EXPECT_TRUE(settings.set(u"appDiscovery."_s + value.key(), value.value()));
    return AppDiscoverySettings::read(settings, home);
}

TEST(AppDiscoverySettings, ScanDepthIsAnIntegralNumberWithinItsRange) {
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    constexpr auto none = std::numeric_limits<double>::quiet_NaN();
    const std::pair<int, QList<QJsonValue>> cases[] = {
        {4, {true, false, 2.5, u"3"_s, QJsonArray{3}, infinity, none}},
        {1, {0, -7, 1, -1e300}},
        {3, {3.0}},
        {7, {7}},
        {10, {10, 11, 1e300}}};
    for (const auto& [depth, values] : cases)
        for (const QJsonValue& stored : values)
            EXPECT_EQ(read({{u"scanDepth"_s, stored}}).scanDepth, depth) << stored.toDouble();
    EXPECT_EQ(read({}).scanDepth, 4);
}

TEST(AppDiscoverySettings, SearchPathsReplaceTheDefaultsAndAdditionalOnesFollow) {
    const QStringList standard{u"/Applications"_s, u"/System/Applications"_s,
                               u"/System/Cryptexes/App/System/Applications"_s,
                               u"/Users/ada/Applications"_s};
    EXPECT_EQ(read({}).searchPaths, standard);
    EXPECT_TRUE(read({}).isCertain);
    EXPECT_FALSE(read({{u"additionalSearchPaths"_s, 5}}).isCertain);
    EXPECT_EQ(read({{u"searchPaths"_s, QJsonArray{u"/opt"_s}}}).searchPaths, QStringList(u"/opt"_s));
    EXPECT_EQ(read({{u"searchPaths"_s, QJsonArray()}}).searchPaths, QStringList());
    EXPECT_EQ(
        read({{u"additionalSearchPaths"_s, QJsonArray{u"/opt"_s, u"/Applications"_s}}}).searchPaths,
        standard + QStringList(u"/opt"_s));
    EXPECT_EQ(read({{u"searchPaths"_s, QJsonArray{u"/a"_s}},
                    {u"additionalSearchPaths"_s, QJsonArray{u"/b"_s}}})
                  .searchPaths,
              QStringList({u"/a"_s, u"/b"_s}));
    for (const QJsonValue& wrong : {QJsonValue(u"/opt"_s), QJsonValue(QJsonArray{u"/opt"_s, 1})})
        EXPECT_EQ(read({{u"searchPaths"_s, wrong}, {u"additionalSearchPaths"_s, wrong}}).searchPaths,
                  standard);
}

TEST(AppDiscoverySettings, PathsAreNormalised) {
    QStringList given =
        u"/opt//apps/./x/..|/opt/apps/|relative||~/Apps|~|~other/Apps|/Opt/apps|/../.."_s.split(u'|');
    given.insert(4, u"/a"_s + QChar(u'\0'));
    EXPECT_EQ(
        AppDiscoverySettings::normalized(given, home),
        QStringList({u"/opt/apps"_s, u"/Users/ada/Apps"_s, u"/Users/ada"_s, u"/Opt/apps"_s, u"/"_s}));
}

} // namespace
} // namespace tessellar
