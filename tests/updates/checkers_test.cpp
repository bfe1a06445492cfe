// What the checkers make of what they are told: listings, the store's answers, feeds.

#include "updates/app_store_update_checker.h"
#include "updates/homebrew_casks.h"
#include "updates/sparkle_feed.h"

#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;

// ---- the store

AppUpdateCandidate storeApp(const QString& version, bool isNative = true) {
    return {.appKey = u"fern"_s,
            .bundleIdentifier = u"org.example.Fern"_s,
            .version = version,
            .isNativeMacApp = isNative};
}

TEST(AppStoreVerdict, FollowsTheFiveRulesInTheirOrder) {
    const auto verdict = [](const std::optional<CatalogItem>& item, const AppUpdateCandidate& app) {
        return AppStoreUpdateChecker::verdict(item, app);
    };
    const QStringList shared{u"iPhone5s-iPhone5s"_s, u"macdesktop-MacDesktop"_s};
    const QStringList phones{u"iPhone5s-iPhone5s"_s};
    const AppUpdateCandidate old = storeApp(u"2.9"_s);
    const AppUpdateStatus update = UpdateAvailable{u"2.10"_s};
    const AppUpdateStatus failed = UpdateCheckFailed();
    const AppUpdateStatus unsupported = UpdateUnsupported();
    const AppUpdateStatus current = UpToDate();
    const QString newer = u"2.10"_s;

    EXPECT_EQ(verdict(std::nullopt, old), failed);
    EXPECT_EQ(
        verdict(CatalogItem{.version = newer, .bundleId = u"x.y"_s, .supportedDevices = shared}, old),
        failed);
    EXPECT_EQ(verdict(CatalogItem{.version = newer, .bundleId = u"ORG.example.fern"_s}, old), update);
    EXPECT_EQ(verdict(CatalogItem{.version = newer, .supportedDevices = shared}, old), unsupported);
    EXPECT_EQ(verdict(CatalogItem{.version = newer, .supportedDevices = phones}, old), unsupported);
    EXPECT_EQ(verdict(CatalogItem{.version = newer, .supportedDevices = QStringList()}, old), update);
    EXPECT_EQ(
        verdict(CatalogItem{.version = newer, .supportedDevices = phones}, storeApp(u"2.9"_s, false)),
        update);
    EXPECT_EQ(verdict(CatalogItem{.version = u"2.9"_s}, storeApp(newer)), current);
    EXPECT_EQ(verdict(CatalogItem{}, old), current);
    EXPECT_EQ(verdict(CatalogItem{.version = u"3"_s}, storeApp(u" \n"_s)), current);
}

TEST(AppStoreLookup, ReadsAnswersAndWritesTheRequestExactly) {
    const auto decoded = json::decodeDocument<LookupResponse>(
        R"({"results":[{"trackId":7,"version":" \n2.1\t","bundleId":"a.b"},{"version":" "}]})");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->results[0].version, u"2.1"_s);
    EXPECT_EQ(decoded->results[1].version, std::nullopt);
    EXPECT_FALSE(json::decodeDocument<LookupResponse>("<html>"));
    EXPECT_FALSE(json::decodeDocument<LookupResponse>(R"({"results":[{"version":2}]})"));

    EXPECT_EQ(AppStoreUpdateChecker::lookupUrl(u"https://x.test"_s, 904280696, u"NO"_s).toEncoded(),
              "https://x.test/lookup?id=904280696&entity=macSoftware&country=NO");
    EXPECT_TRUE(AppStoreUpdateChecker::lookupUrl(u"https://x.test"_s, 1, {}).query().endsWith(u"=US"));
    EXPECT_EQ(AppStoreUpdateChecker::storePageUrl(u"https://x.test/y"_s, 12).toString(),
              u"https://x.test/y/app/id12"_s);
}

TEST(StoreItemIdentifier, IsAPositiveIntegerAndNothingElse) {
    EXPECT_EQ(storeItemIdentifier("904280696"), 904280696);
    EXPECT_EQ(storeItemIdentifier("\"+12\"\n"), 12);
    for (const char* none :
         {"(null)", "", "0", "-5", "+", "+-5", "1.5", "0x10", "99999999999999999999"})
        EXPECT_EQ(storeItemIdentifier(none), std::nullopt) << none;
}

// ---- Homebrew

DecodedCask cask(const QByteArray& artifacts) {
    const auto info = decodeInfo(R"({"formulae":[],"casks":[{"token":"fern","full_token":"a/b/fern",)"
                                 R"("version":"1","auto_updates":null,"artifacts":)" +
                                 artifacts + "}]}");
    return info && info->casks.size() == 1 ? decodedCask(info->casks[0]) : DecodedCask();
}

TEST(CaskArtifact, IsReadInAllItsShapes) {
    EXPECT_EQ(cask(R"([{"app":["Fern.app"]}])").appTargets, QStringList{u"Fern.app"_s});
    EXPECT_EQ(cask(R"([{"app":["Box 2/Fern.app"]}])").appTargets, QStringList{u"Fern.app"_s});
    EXPECT_EQ(cask(R"([{"app":["Fern.app",{"target":"Green/Fern.app"}]}])").appTargets,
              QStringList{u"Green/Fern.app"_s});
    EXPECT_EQ(
        cask(R"([{"app":["a.app",{"target":"b.app"}],"target":"/Applications/c.app"}])").appTargets,
        QStringList{u"/Applications/c.app"_s});
    EXPECT_EQ(cask(R"([{"app":[{"target":"~/x.app"}]},{"app":["y.app"]}])").appTargets,
              (QStringList{u"~/x.app"_s, u"y.app"_s}));
    EXPECT_EQ(cask(R"([{"suite":["Draw"]},{"suite":["d",{"target":"/opt/D"}]}])").suiteTargets,
              (QStringList{u"Draw"_s, u"/opt/D"_s}));

    const DecodedCask odd =
        cask(R"([{"zap":null},{"app":null},{"app":"a.app"},{"app":[1,null,[],"",{}]},7,null,"x"])");
    EXPECT_EQ(odd.token, u"fern"_s);
    EXPECT_EQ(odd.appTargets, QStringList());
    EXPECT_EQ(cask("{}").token, u"fern"_s);
}

TEST(CaskListing, IsTakenBehindABannerAndRefusedWhenItIsNone) {
    const QByteArray outdated = R"({"casks":[{"name":"fern","current_version":"2"}]})";
    EXPECT_EQ(decodeOutdated("==> Analytics\nSome {words}\n" + outdated)->casks[0].currentVersion,
              u"2"_s);
    EXPECT_FALSE(decodeOutdated(R"({"casks":[{"name":"fern"}]})"));
    for (const char* garbage :
         {"", "garbage", "{}", "[]", R"({"casks":{}})", R"({"casks":[)", "banner\n{"}) {
        EXPECT_FALSE(decodeInfo(garbage)) << garbage;
        EXPECT_FALSE(decodeOutdated(garbage)) << garbage;
    }
    // One cask that makes no sense does not cost the others.
    EXPECT_EQ(decodeInfo(R"({"casks":[{"token":1},{"token":"a","version":"1"}]})")->casks.size(), 1);
}

TEST(HomebrewOwnership, PrefersExactMatchesThenTheFirstBrewAndTheFirstCask) {
    test::TestMachine mac;
    mac.makeFolder(u"/Applications/Suite/Inner.app"_s);
    mac.makeFolder(u"/Applications/Suite Two.app"_s);
    mac.makeFolder(u"/opt/real/Linked.app"_s);
    mac.link(u"/Applications/Linked.app"_s, u"/opt/real/Linked.app"_s);
    const auto snapshot = [&](const QString& brew, const QList<DecodedCask>& casks) {
        HomebrewCaskSnapshot result{.brewExecutablePath = brew, .casks = casks};
        buildMatches(mac.files, u"/Users/ada"_s, result);
        return result;
    };
    const HomebrewCaskCheckResult result{
        .snapshots = {snapshot(u"/a/brew"_s, {{.token = u"suite"_s, .suiteTargets = {u"Suite"_s}},
                                              {.token = u"home"_s, .appTargets = {u"~/H.app"_s}},
                                              {.token = u"one"_s, .appTargets = {u"X.app"_s}},
                                              {.token = u"two"_s, .appTargets = {u"X.app"_s}},
                                              {.token = u"wild"_s, .suiteTargets = {u"."_s, u"/"_s}}}),
                      snapshot(u"/b/brew"_s,
                               {{.token = u"inner"_s, .appTargets = {u"Suite/Inner.app"_s, u"X.app"_s}},
                                {.token = u"linked"_s, .appTargets = {u"Linked.app"_s}}})}};
    const auto owner = [&](const QString& path) {
        const auto found = result.owner(mac.files.resolved(path).value_or(path));
        return found ? found->token : QString();
    };
    EXPECT_EQ(owner(u"/Applications/Suite/Inner.app"_s), u"inner"_s);
    EXPECT_EQ(owner(u"/Applications/Suite/Deep/Other.app"_s), u"suite"_s);
    EXPECT_EQ(owner(u"/Applications/Suite Two.app"_s), QString());
    EXPECT_EQ(owner(u"/Applications/X.app"_s), u"one"_s);
    EXPECT_EQ(owner(u"/Users/ada/H.app"_s), u"home"_s);
    EXPECT_EQ(owner(u"/Applications/Linked.app"_s), u"linked"_s);
}

TEST(HomebrewStatus, IsUnsupportedWhereHomebrewCannotTell) {
    const HomebrewCaskSnapshot snapshot{.outdated = {{u"fern"_s, u"1.1,7"_s}}};
    EXPECT_EQ(snapshot.status({.token = u"fern"_s, .version = u"1"_s}),
              AppUpdateStatus(UpdateAvailable{u"1.1,7"_s}));
    EXPECT_EQ(snapshot.status({.token = u"fern"_s, .version = u"LATEST"_s}),
              AppUpdateStatus(UpdateUnsupported()));
    EXPECT_EQ(snapshot.status({.token = u"fern"_s, .version = u"1"_s, .autoUpdates = true}),
              AppUpdateStatus(UpdateUnsupported()));
    EXPECT_EQ(snapshot.status({.token = u"moss"_s, .version = u"1"_s}), AppUpdateStatus(UpToDate()));
}

TEST(FindBrews, GoesThroughThePlacesInOrderAndTakesEachBrewOnce) {
    test::TestMachine mac;
    for (const auto& path :
         {u"/opt/homebrew/bin/brew"_s, u"/usr/local/Homebrew/bin/brew"_s, u"/own/bin/brew"_s})
        mac.tool(path, test::exited(0));
    mac.link(u"/usr/local/bin/brew"_s, u"../Homebrew/bin/brew"_s);
    mac.link(u"/shim/brew"_s, u"/opt/homebrew/bin/brew"_s);
    mac.write(u"/plain/brew"_s, "not executable");
    mac.makeFolder(u"/folder/brew"_s);
    EXPECT_EQ(findBrews(mac.files, {{"PATH", "/plain:relative:/folder::/shim:/usr/local/bin"},
                                    {"HOMEBREW_PREFIX", "/own"}}),
              (QStringList{u"/own/bin/brew"_s, u"/shim/brew"_s, u"/usr/local/bin/brew"_s}));
    EXPECT_EQ(findBrews(mac.files, {{"HOMEBREW_PREFIX", ""}}),
              (QStringList{u"/opt/homebrew/bin/brew"_s, u"/usr/local/bin/brew"_s}));

    EXPECT_TRUE(isHomebrewFingerprint(u"homebrew:/a/brew:1:2"_s, {u"/b/brew"_s, u"/a/brew"_s}));
    EXPECT_FALSE(isHomebrewFingerprint(u"homebrew:/a/brew2:1"_s, {u"/a/brew"_s}));
    EXPECT_TRUE(isHomebrewFingerprint(u"homebrew:/gone/brew:1"_s, {}));
    EXPECT_FALSE(isHomebrewFingerprint(u"sparkle-v1"_s, {}));
}

// ---- feeds

QByteArray feed(const QByteArray& items, const QByteArray& prefix = "sparkle") {
    return "<rss xmlns:" + prefix +
           "=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" + items +
           "</channel></rss>";
}

QString best(const QByteArray& document) {
    const auto found = bestSparkleItem(document, u"14.0"_s);
    if (!found)
        return found.error() == SparkleFeedError::noItems ? u"no items"_s : u"damaged"_s;
    return *found ? (*found)->version + u'|' + (*found)->shownVersion : u"none"_s;
}

TEST(SparkleFeed, FindsVersionsWhereverTheyStand) {
    EXPECT_EQ(best(feed(R"(<item><enclosure url="x" sparkle:version="9"/></item><item>
        <sparkle:version> 10 </sparkle:version><sparkle:shortVersionString>1.0</sparkle:shortVersionString>
        <enclosure url="x"/></item><item><enclosure url="https://x/Fern_8.zip"/></item>)")),
              u"10|1.0"_s);
    EXPECT_EQ(best(feed(R"(<item><enclosure url="https://x/My_Fern_1.2.3.tar.gz?a=b_c"/></item>)")),
              u"1.2.3|1.2.3"_s);
    EXPECT_EQ(best(feed(R"(<item><enclosure url="x" s:version="3" sparkle:version="9"/></item>)", "s")),
              u"3|3"_s);
    EXPECT_EQ(best(feed(R"(<item xmlns:sparkle="urn:x"><sparkle:version>9</sparkle:version></item>)")),
              u"none"_s);
    EXPECT_EQ(best(feed(R"(<item><sparkle:version>1</sparkle:version>
        <sparkle:deltas><enclosure sparkle:version="7"/></sparkle:deltas></item>)")),
              u"1|1"_s);
}

TEST(SparkleFeed, LeavesOutWhatIsNotForEverybodyHere) {
    const auto with = [](const QByteArray& other) {
        return best(feed("<item><sparkle:version>1</sparkle:version></item>"
                         "<item><sparkle:version>2</sparkle:version>" +
                         other + "</item>"));
    };
    for (const char* other :
         {"<sparkle:channel>beta</sparkle:channel>", "<enclosure sparkle:os=\"windows\"/>",
          "<sparkle:minimumSystemVersion>14.1</sparkle:minimumSystemVersion>",
          "<sparkle:maximumSystemVersion>13.9.9</sparkle:maximumSystemVersion>"})
        EXPECT_EQ(with(other), u"1|1"_s) << other;
    for (const char* other :
         {"<sparkle:channel> </sparkle:channel>", "<enclosure sparkle:os=\"macos\"/>",
          "<sparkle:minimumSystemVersion>14.0.0</sparkle:minimumSystemVersion>",
          "<sparkle:maximumSystemVersion>14</sparkle:maximumSystemVersion>",
          "<pubDate>yesterday</pubDate>"})
        EXPECT_EQ(with(other), u"2|2"_s) << other;
}

TEST(SparkleFeed, IsNotTrusted) {
    for (const char* damaged : {"", "{}", "<html><body/></html>", "<rss><channel><item>", "<rss/>"})
        EXPECT_EQ(best(damaged), u"damaged"_s) << damaged;
    EXPECT_EQ(best(feed({})), u"no items"_s);
    EXPECT_EQ(best(feed("<item/>")), u"none"_s);
    // Entities stay the words they are: neither files nor bombs come of them.
    const QByteArray entities =
        R"(<!DOCTYPE rss [<!ENTITY a SYSTEM "file:///etc/passwd"><!ENTITY b "&a;&a;">]>)";
    EXPECT_EQ(best(entities + feed("<item><sparkle:version>&b;</sparkle:version></item>")),
              u"&b;|&b;"_s);
    EXPECT_EQ(
        best(feed("<item><sparkle:version>" + QByteArray(5'000, '9') + "</sparkle:version></item>")),
        u"none"_s);
    EXPECT_EQ(best(QByteArray("<rss><channel>") + QByteArray("<item>").repeated(200'000)),
              u"damaged"_s);
}

} // namespace
} // namespace tessellar
