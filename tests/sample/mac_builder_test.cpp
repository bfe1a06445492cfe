#include "sample/mac_builder.h"
#include "sample/trees.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace tessellar::sample {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::Contains;
using testing::HasSubstr;
using testing::Key;
using testing::Not;

void buildSmallMac(MacBuilder& mac) {
    mac.addStandardFolders();
    mac.addApplication({.name = u"Fern"_s,
                        .identifier = u"com.example.fern"_s,
                        .rights = u"© 2026 Fern & Söhne <all>"_s,
                        .sparkleFeed = u"https://example.com/feed.xml"_s,
                        .storeIdentifier = 4711,
                        .localizedNames = {{u"de"_s, u"Farn"_s}},
                        .localizationForm = LocalizationForm::loctable,
                        .signature = {Signature::Kind::developerId, u"Fern Ltd."_s, u"TEAM123456"_s},
                        .icon = "icns",
                        .nested = {{.name = u"Helper"_s, .folder = u"Contents/Applications"_s}}});
    mac.addApplication({.name = u"Half"_s, .missing = Missing::executable});
    mac.addApplication({.name = u"Hostile"_s, .executable = u"../../../escaped"_s});
    mac.addApplication(
        {.name = u"Pocket"_s,
         .identifier = u"com.example.pocket"_s,
         .receipt = true,
         .wrapped = WrappedMetadata{.realName = u"PocketReal"_s, .itemName = u"Pocket: To Go"_s}});
    mac.addAlias(u"/Applications/Fern alias"_s, u"/Applications/Fern.app"_s);
    mac.addLink(u"/Applications/Link.app"_s, u"Fern.app"_s);
    mac.setModified(u"/Applications/Half.app"_s, QDateTime(QDate(2020, 1, 2), QTime(3, 4), Qt::UTC));
    mac.settleDates(QDateTime(QDate(2026, 5, 1), QTime(9, 0), Qt::UTC));
}

TEST(MacBuilder, TheSameCallsGiveTheSameBytesModesAndDates) {
    const QTemporaryDir first;
    const QTemporaryDir second;
    MacBuilder one(first.path());
    MacBuilder other(second.path());
    buildSmallMac(one);
    buildSmallMac(other);
    ASSERT_EQ(one.failure(), std::nullopt);
    const auto tree = test::treeOf(first.path());
    EXPECT_EQ(tree, test::treeOf(second.path()));

    EXPECT_THAT(
        tree,
        Contains(Key("Applications/Fern.app/Contents/Applications/Helper.app/Contents/Info.plist")));
    EXPECT_THAT(tree, Contains(Key("Applications/Pocket.app/_MASReceipt/receipt")));
    EXPECT_THAT(tree.at("Applications/Pocket.app/WrappedBundle"), HasSubstr("Wrapper/PocketReal.app"));
    EXPECT_THAT(tree, Not(Contains(Key("Applications/Half.app/Contents/MacOS/Half"))));
    EXPECT_THAT(tree, Not(Contains(Key("escaped")))) << "nothing may be written outside its bundle";
    EXPECT_THAT(tree.at("Applications/Half.app/Contents/Info.plist"), HasSubstr(" 1577934240 "));
    EXPECT_THAT(tree.at("Applications/Fern.app/Contents/Info.plist"),
                HasSubstr("<string>© 2026 Fern &amp; Söhne &lt;all&gt;</string>"));
}

TEST(MacBuilder, SaysWhatItCouldNotWrite) {
    const QTemporaryDir folder;
    MacBuilder mac(folder.path());
    mac.addFile(u"/Applications"_s, "a file where a folder has to be");
    mac.addApplication({.name = u"Fern"_s});
    ASSERT_TRUE(mac.failure());
    EXPECT_THAT(mac.failure()->toStdString(), HasSubstr("/Applications/Fern.app"));
}

} // namespace
} // namespace tessellar::sample
