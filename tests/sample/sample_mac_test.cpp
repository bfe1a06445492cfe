#include "sample/catalog.h"
#include "sample/demonstration_mac.h"
#include "sample/picture.h"
#include "sample/tools.h"
#include "sample/trees.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <set>

namespace tessellar::sample {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::Contains;
using testing::HasSubstr;
using testing::Key;
using testing::Not;

TEST(DemonstrationMac, IsTheSameToTheByteEveryTime) {
    const QTemporaryDir first;
    const QTemporaryDir second;
    MacBuilder one(first.path());
    MacBuilder other(second.path());
    for (MacBuilder* mac : {&one, &other}) {
        buildDemonstrationMac(*mac, 14);
        mac->addApplication({.name = u"Half"_s, .missing = Missing::executable});
        mac->addApplication({.name = u"Hostile"_s, .executable = u"../../../escaped"_s});
        mac->setModified(u"/Applications/Half.app"_s,
                         QDateTime(QDate(2020, 1, 2), QTime(3, 4), Qt::UTC));
        mac->settleDates(QDateTime(QDate(2026, 5, 1), QTime(9, 0), Qt::UTC));
    }
    ASSERT_EQ(one.failure(), std::nullopt);
    const auto tree = test::treeOf(first.path());
    EXPECT_EQ(tree, test::treeOf(second.path()));
    EXPECT_THAT(tree, Contains(Key("usr/bin/codesign")));
    EXPECT_THAT(tree, Contains(Key("Applications/Oldtimer.APP/Contents/Info.plist")));
    EXPECT_THAT(tree, Not(Contains(Key("Applications/Half.app/Contents/MacOS/Half"))));
    EXPECT_THAT(tree, Not(Contains(Key("escaped")))) << "nothing may be written outside its bundle";
    EXPECT_THAT(tree.at("Applications/Half.app/Contents/Info.plist"), HasSubstr(" 1577934240 "));
}

TEST(DemonstrationMac, TheCatalogNamesEachApplicationOnceAndDrawsWhatThereIs) {
    const QList<QByteArray> glyphs = pictureNames();
    std::set<QByteArray> names;
    std::set<Kind> kinds;
    for (const CatalogEntry& entry : catalog()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        EXPECT_TRUE(glyphs.contains(entry.icon.glyph)) << entry.icon.glyph;
        EXPECT_LT(entry.vendor, int(vendors().size())) << entry.name;
        kinds.insert(entry.kind);
    }
    EXPECT_EQ(kinds.size(), std::size_t(Kind::user) + 1);
    EXPECT_GE(names.size(), 110u);
}

TEST(MacBuilder, SaysWhatItCouldNotWrite) {
    const QTemporaryDir folder;
    MacBuilder mac(folder.path());
    mac.addFile(u"/Applications"_s, "a file where a folder has to be");
    mac.addApplication({.name = u"Fern"_s});
    ASSERT_TRUE(mac.failure());
    EXPECT_THAT(mac.failure()->toStdString(), HasSubstr("/Applications/Fern.app"));
}

/// Those that no other room's tests run; with an empty environment, as strangers have it.
TEST(Tools, OpenTellTheUsersFolderAndUpdate) {
    const QTemporaryDir folder;
    MacBuilder mac(folder.path() + u"/A Mac"_s);
    addTools(mac);
    const QString path = mac.addApplication({.name = u"Fern"_s});
    const QString info = mac.hostPath(path + u"/Contents/Info.plist"_s);
    addMicrosoftUpdater(mac, {{u"MSWD2019"_s, u"2.0"_s, path + u"/Contents/Info.plist"_s, "new"}});
    int status = 0;
    const auto run = [&](const QString& tool, const QStringList& arguments) {
        QProcess process;
        process.setProcessEnvironment(QProcessEnvironment());
        process.start(mac.hostPath(tool), arguments);
        process.waitForFinished();
        status = process.exitCode();
        return process.readAllStandardOutput();
    };
    run(u"/usr/bin/open"_s, {mac.hostPath(path)});
    run(u"/usr/bin/open"_s, {mac.hostPath(u"/Applications/None.app"_s)});
    EXPECT_EQ(status, 1);
    EXPECT_EQ(test::bytesOf(mac.hostPath(MacBuilder::toolData() + u"/opened.log"_s)),
              "/Applications/Fern.app\n");
    const QByteArray userFolder = run(u"/usr/bin/getconf"_s, {u"DARWIN_USER_DIR"_s});
    EXPECT_TRUE(userFolder.startsWith("/var/folders/") && userFolder.endsWith("/\n"));
    for (const char* said : {"Updates applied\n", "No updates applied\n"})
        EXPECT_EQ(
            run(u"/Library/Application Support/Microsoft/MAU2.0/Microsoft AutoUpdate.app/Contents/"
                u"MacOS/msupdate"_s,
                {u"--install"_s, u"--apps"_s, u"MSWD2019"_s, u"--wait"_s, u"1800"_s}),
            said);
    EXPECT_EQ(test::bytesOf(info), "new");
}

} // namespace
} // namespace tessellar::sample
