// What the checkers make of what they are told: listings, the store's answers, feeds.

#include "updates/app_store_update_checker.h"
#include "updates/homebrew_casks.h"
#include "updates/sparkle_update_checker.h"
#include "updates/sparkle_version.h"
#include "updates/untrusted_text.h"

#include "updates_fixture.h"

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;

// ---- the store

TEST(AppStoreVerdict, FollowsTheFiveRulesInTheirOrder) {
    const auto verdict = [](const std::optional<CatalogItem>& item, const QString& installed,
                            bool isNative = true) {
        const AppUpdateCandidate app{.appKey = u"fern"_s,
                                     .bundleIdentifier = u"org.example.Fern"_s,
                                     .version = installed,
                                     .isNativeMacApp = isNative};
        return test::sketch(
            AppUpdateRecord{.status = AppStoreUpdateChecker::verdict(item, app).status});
    };
    const QStringList shared{u"iPhone5s-iPhone5s"_s, u"macdesktop-MacDesktop"_s};
    const QStringList phones{u"iPhone5s-iPhone5s"_s};
    const auto onDevices = [](const QStringList& devices) {
        return CatalogItem{.version = u"2.10"_s, .supportedDevices = devices};
    };
    CatalogItem other = onDevices(shared);
    other.bundleId = u"x.y"_s;
    EXPECT_EQ(verdict(std::nullopt, u"2.9"_s), u"failed");
    EXPECT_EQ(verdict(other, u"2.9"_s), u"failed");
    EXPECT_EQ(verdict(CatalogItem{.version = u"2.10"_s, .bundleId = u"ORG.example.fern"_s}, u"2.9"_s),
              u"2.10");
    EXPECT_EQ(verdict(onDevices(shared), u"2.9"_s), u"unsupported");
    EXPECT_EQ(verdict(onDevices(phones), u"2.9"_s), u"unsupported");
    EXPECT_EQ(verdict(onDevices({}), u"2.9"_s), u"2.10");
    EXPECT_EQ(verdict(onDevices(phones), u"2.9"_s, false), u"2.10");
    EXPECT_EQ(verdict(CatalogItem{.version = u"2.9"_s}, u"2.10"_s), u"upToDate");
    EXPECT_EQ(verdict(CatalogItem{}, u"2.9"_s), u"upToDate");
    EXPECT_EQ(verdict(CatalogItem{.version = u"3"_s}, u" \n"_s), u"upToDate");
}

TEST(AppStoreLookup, ReadsAnswersAndWritesTheRequestExactly) {
    const auto first = firstCatalogItem(
        R"({"results":[{"trackId":7,"version":" \n2.1\t","bundleId":"a.b","artistName":5,)"
        R"("supportedDevices":[1,"MacDesktop-MacDesktop"],"releaseNotes":"- new\n- and \u202E fixed"},)"
        R"({"version":2},null]})");
    ASSERT_TRUE(first && *first);
    EXPECT_EQ(**first, (CatalogItem{.version = u"2.1"_s,
                                    .bundleId = u"a.b"_s,
                                    .supportedDevices = QStringList{u"MacDesktop-MacDesktop"_s},
                                    .releaseNotes = u"- new - and fixed"_s}));
    EXPECT_EQ(firstCatalogItem(R"({"results":[]})").value(), std::nullopt);
    EXPECT_EQ(firstCatalogItem(R"({"results":[{"version":" "}]})").value(), CatalogItem());
    // Nothing newer is not said of what could not be read.
    for (const QByteArray& answer :
         {"<html>"_ba, R"({"results":{}})"_ba, R"({"results":[{"version":"2\n3"}]})"_ba,
          R"({"results":[{"version":")" + QByteArray(1 << 20, '9') + R"("}]})"})
        EXPECT_FALSE(firstCatalogItem(answer)) << answer.left(50).toStdString();

    EXPECT_EQ(AppStoreUpdateChecker::lookupUrl(u"https://x.test"_s, 904280696, u"NO"_s).toEncoded(),
              "https://x.test/lookup?id=904280696&entity=macSoftware&country=NO");
    EXPECT_TRUE(AppStoreUpdateChecker::lookupUrl(u"https://x.test"_s, 1, {}).query().endsWith(u"=US"));
    EXPECT_EQ(AppStoreUpdateChecker::storePageUrl(u"https://x.test/y"_s, 12).toString(),
              u"https://x.test/y/app/id12"_s);
}

TEST(OutsideWords, AreFitToBeShownAndRun) {
    EXPECT_EQ(toSingleLine(u" a\n\tb\u2028c\u202Ed\u200B\x1b[31m\u0000e "_s, 100), u"a b cd[31me"_s);
    EXPECT_EQ(toSingleLine(u"𝒜bc"_s, 2), u"𝒜"_s);
    EXPECT_EQ(plausibleVersion(u" 1.2 (3) β "_s), u"1.2 (3) β"_s);
    for (const QString& none : {QString(), u" "_s, u"1\n2"_s, u"1\u202E2"_s, QString(101, u'1')})
        EXPECT_EQ(plausibleVersion(none), std::nullopt);
    for (const auto& token : {u"visual-studio-code@insiders"_s, u"0-ad"_s, u"font.x_y+z"_s})
        EXPECT_TRUE(isCaskToken(token));
    for (const auto& word :
         {u""_s, u"--force"_s, u"-x"_s, u"a b"_s, u"a\n"_s, u"a/b/c"_s, u"é"_s, QString(129, u'a')})
        EXPECT_FALSE(isCaskToken(word)) << word.toStdString();
}

TEST(StoreItemIdentifier, IsAPositiveIntegerAndNothingElse) {
    EXPECT_EQ(storeItemIdentifier("904280696"), 904280696);
    EXPECT_EQ(storeItemIdentifier("\"+12\"\n"), 12);
    for (const char* none :
         {"(null)", "", "0", "-5", "+", "+-5", "1.5", "0x10", "99999999999999999999"})
        EXPECT_EQ(storeItemIdentifier(none), std::nullopt) << none;
}

// ---- Homebrew

InstalledCask cask(const QByteArray& artifacts) {
    const auto info = decodeInfo(R"({"formulae":[],"casks":[{"token":"fern","full_token":"a/b/fern",)"
                                 R"("version":"1","auto_updates":null,"artifacts":)" +
                                 artifacts + "}]}");
    return info && info->casks.size() == 1 ? info->casks[0] : InstalledCask();
}

TEST(CaskArtifact, IsReadInAllItsShapes) {
    const auto apps = [](const QByteArray& artifacts) { return cask(artifacts).appTargets.join(u' '); };
    EXPECT_EQ(apps(R"([{"app":["Fern.app"]}])"), u"Fern.app");
    EXPECT_EQ(apps(R"([{"app":["Box 2/Fern.app"]}])"), u"Fern.app");
    EXPECT_EQ(apps(R"([{"app":["Fern.app",{"target":"Green/Fern.app"}]}])"), u"Green/Fern.app");
    EXPECT_EQ(apps(R"([{"app":["a.app",{"target":"b.app"}],"target":"/Applications/c.app"}])"),
              u"/Applications/c.app");
    EXPECT_EQ(apps(R"([{"app":[{"target":"~/x.app"}]},{"app":["y.app"]}])"), u"~/x.app y.app");
    EXPECT_EQ(cask(R"([{"suite":["Draw/"]},{"suite":["d",{"target":"/opt/D"}]}])").suiteTargets,
              (QStringList{u"Draw"_s, u"/opt/D"_s}));

    const InstalledCask odd =
        cask(R"([{"zap":null},{"app":null},{"app":"a.app"},{"app":[1,null,[],"",{}]},7,null,"x"])");
    EXPECT_EQ(odd.token, u"fern"_s);
    EXPECT_EQ(odd.appTargets, QStringList());
    EXPECT_EQ(cask("{}").token, u"fern"_s);
}

TEST(CaskListing, IsTakenBehindWarningsAndRefusedWhenItIsNone) {
    const QByteArray outdated = R"({"casks":[{"name":"fern","current_version":"2"}]})";
    EXPECT_EQ(decodeOutdated("==> Analytics\n{words} in\nWarning: a\n" + outdated)
                  ->casks[u"fern"_s]
                  .currentVersion,
              u"2"_s);
    for (const char* garbage :
         {"", "garbage", "{}", "[]", R"({"casks":{}})", R"({"casks":[)", "banner\n{"}) {
        EXPECT_FALSE(decodeInfo(garbage)) << garbage;
        EXPECT_FALSE(decodeOutdated(garbage)) << garbage;
    }
    // One cask that makes no sense does not cost the others.
    const auto info = decodeInfo(R"({"casks":[{"token":1},{"token":"--force","version":"1"},
        {"token":"a","version":"1","auto_updates":"yes"}]})");
    ASSERT_EQ(info->casks.size(), 1);
    EXPECT_FALSE(info->casks[0].updatesItself);
    EXPECT_EQ(
        decodeOutdated(R"({"casks":[7,{"name":"-x","current_version":"2"},{"name":"fern"}]})")->casks,
        (QHash<QString, OutdatedCask>{{u"fern"_s, {}}}));
}

TEST(HomebrewOwnership, PrefersExactMatchesThenTheFirstBrewAndTheFirstCask) {
    test::TestMachine mac;
    mac.makeFolder(u"/Applications/Suite/Inner.app"_s);
    mac.makeFolder(u"/Applications/Suite Two.app"_s);
    mac.makeFolder(u"/opt/real/Linked.app"_s);
    mac.link(u"/Applications/Linked.app"_s, u"/opt/real/Linked.app"_s);
    const auto snapshot = [&](const QString& brew, const QList<InstalledCask>& casks) {
        HomebrewCaskSnapshot result{.brewExecutablePath = brew, .casks = casks};
        buildMatches(mac.files, u"/Users/ada"_s, result);
        return result;
    };
    const HomebrewCaskCheckResult result{
        .snapshots = {snapshot(u"/a/brew"_s, {{.token = u"suite"_s, .suiteTargets = {u"Suite"_s}},
                                              {.token = u"home"_s, .appTargets = {u"~/H.app"_s}},
                                              {.token = u"one"_s, .appTargets = {u"X.app"_s}},
                                              {.token = u"two"_s, .appTargets = {u"X.app"_s}},
                                              {.token = u"wild"_s,
                                               .suiteTargets = {u"."_s, u"/"_s, u"~"_s, u"/System"_s,
                                                                u"~/Applications"_s, u"/Users"_s,
                                                                u"/System/Applications"_s}}}),
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
    for (const auto& other : {u"/Users/ada/Applications/Own.app"_s, u"/System/Applications/Clock.app"_s,
                              u"/Users/Shared/S.app"_s})
        EXPECT_EQ(owner(other), QString()) << other.toStdString();
}

TEST(HomebrewVerdict, IsUnsupportedWhereHomebrewCannotTell) {
    const OutdatedResponse outdated{.casks = {{u"fern"_s, {.currentVersion = u"1.1,7"_s}},
                                              {u"bad"_s, {}},
                                              {u"kept"_s, {u"2"_s, true}}}};
    const auto say = [&](const HomebrewCaskOwnership& cask) {
        const AppUpdateVerdict said = verdict(cask, outdated);
        return test::sketch(AppUpdateRecord{.status = said.status}) +
               (said.reason ? u' ' + json::rawValue(said.reason->code) : QString());
    };
    EXPECT_EQ(say({.token = u"fern"_s, .catalogVersion = u"1"_s}), u"1.1,7");
    EXPECT_EQ(say({.token = u"fern"_s, .catalogVersion = u"LATEST"_s}), u"unsupported alwaysLatest");
    EXPECT_EQ(say({.token = u"fern"_s, .catalogVersion = u"1"_s, .updatesItself = true}),
              u"unsupported updatesItself");
    EXPECT_EQ(say({.token = u"moss"_s, .catalogVersion = u"1"_s}), u"upToDate");
    EXPECT_TRUE(say({.token = u"bad"_s, .catalogVersion = u"1"_s}).startsWith(u"failed"));
    EXPECT_TRUE(say({.token = u"kept"_s, .catalogVersion = u"1"_s}).endsWith(u" pinned"));
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

    EXPECT_EQ(ownershipOf(u"homebrew:/a/brew:1:2"_s),
              (HomebrewCaskOwnership{.brewExecutablePath = u"/a/brew"_s, .catalogVersion = u"1:2"_s}));
    EXPECT_EQ(ownershipOf(u"sparkle-v1"_s), std::nullopt);
}

// ---- feeds

QByteArray feed(const QByteArray& items, const QByteArray& prefix = "sparkle") {
    return "<rss xmlns:" + prefix +
           "=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" + items +
           "</channel></rss>";
}

const Instant today = *Instant::fromIso8601(u"2026-11-14T12:00:00Z");

QString best(const QByteArray& document, int rolloutGroup = 0) {
    const auto found = bestSparkleItem(
        document, {.systemVersion = u"14.0"_s, .now = today, .rolloutGroup = rolloutGroup});
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

TEST(SparkleVersion, FollowsTheStandardComparison) {
    struct Row {
        const char16_t* older;
        const char16_t* newer;
    };
    for (const auto& [older, newer] : {Row{u"3.7.0beta11", u"3.7.0"},
                                       {u"v1.9", u"2.0"},
                                       {u"1.9", u"V2.0"},
                                       {u"3.0-rc1", u"3.0"},
                                       {u"3.0-rc1", u"3.0-rc2"},
                                       {u"2.9", u"2.10"},
                                       {u"1.0b2", u"1.0b10"},
                                       {u"1.0a9", u"1.0b1"},
                                       {u"1.0b3", u"1.0.1"},
                                       {u"1.0", u"1.0.1"},
                                       {u"1.0", u"1.0.0.1"},
                                       {u"1.0.0b1", u"1.0"},
                                       {u"1.5 (22)", u"1.5 (23)"},
                                       {u"1.5", u"1.5 (1)"},
                                       {u"99", u"1117"},
                                       {u"9", u"99999999999999999999999"}}) {
        EXPECT_TRUE(compareSparkle(older, newer) < 0) << QString::fromUtf16(older).toStdString();
        EXPECT_TRUE(compareSparkle(newer, older) > 0) << QString::fromUtf16(older).toStdString();
    }
    for (const auto& [one, same] :
         {Row{u"1.0", u"1.0.0"}, {u"v2", u"2"}, {u"1.0", u"1.0"}, {u"007", u"7"}, {u"", u""}})
        EXPECT_TRUE(compareSparkle(one, same) == 0) << QString::fromUtf16(one).toStdString();
}

TEST(SparkleVerdict, IsNoDowngradeAndTellsBuildsApart) {
    const auto say = [](const QString& offered, const QString& shown, const QString& build) {
        const auto verdict = SparkleUpdateChecker::verdict(SparkleItem{offered, shown, {}},
                                                           {.version = u"1.0"_s, .build = build});
        const auto* update = std::get_if<UpdateAvailable>(&verdict.status);
        return update ? update->latestVersion : QString();
    };
    EXPECT_EQ(say(u"3.7.0beta11"_s, u"x"_s, u"3.7.0"_s), QString());
    EXPECT_EQ(say(u"3.7.0"_s, u"3.7"_s, u"3.7.0beta11"_s), u"3.7"_s);
    EXPECT_EQ(say(u"101"_s, u"1.0"_s, u"100"_s), u"1.0 (101)"_s);
    EXPECT_EQ(best(feed(R"(<item><enclosure url="https://x/my_app.zip"/></item>)")), u"none"_s);
}

TEST(SparkleFeed, RollsOutInPhasesAndHasNotes) {
    const QByteArray item = R"(<item><pubDate>Thu, 12 Nov 2026 12:00:00 +0000</pubDate>
        <sparkle:version>2</sparkle:version>
        <sparkle:phasedRolloutInterval>86400</sparkle:phasedRolloutInterval>%</item>
        <item><sparkle:version>1</sparkle:version></item>)";
    const QByteArray usual = feed(QByteArray(item).replace("%", ""));
    EXPECT_EQ(best(usual, 2), u"2|2"_s) << "two days after it came out";
    EXPECT_EQ(best(usual, 3), u"1|1"_s);
    EXPECT_EQ(best(feed(QByteArray(item).replace("%", "<sparkle:criticalUpdate/>")), 6), u"2|2"_s);

    const auto found = bestSparkleItem(feed(R"(<item><sparkle:version>2</sparkle:version>
        <description><![CDATA[<h2>What&amp;s new</h2><ul><li>Faster &lt;3</li></ul>]]></description>
        <sparkle:releaseNotesLink>https://example.com/notes</sparkle:releaseNotesLink></item>)"),
                                       {.now = today});
    ASSERT_TRUE(found && *found);
    EXPECT_EQ((*found)->notes,
              (AppUpdateNotes{u"What&s new Faster <3"_s, u"https://example.com/notes"_s}));

    QByteArray many;
    for (int i = 0; i < 500; ++i)
        many += "<item><sparkle:version>" + QByteArray::number(i) + "</sparkle:version><description>" +
                QByteArray(8'000, 'n') + "</description></item>";
    EXPECT_EQ(best(feed(many)), u"499|499"_s);
    EXPECT_LT(feed(many).size(), SparkleUpdateChecker::maximumFeedBytes);
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
