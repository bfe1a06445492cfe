#include "launcher/launcher_icons.h"

#include "small_launcher.h"
#include "tests/icons/icns_bytes.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

class LauncherIconsTest : public SmallLauncher {
protected:
    const QString ash = u"org.example.ash"_s;
    const QByteArray red = icnsFile(icnsEntry("ic07", png(128, Qt::red)));
    const QByteArray blue = icnsFile(icnsEntry("ic07", png(128, Qt::blue)));

    LauncherIconsTest() {
        install(u"Ash"_s);
        install(u"Beech"_s);
        mac.write(u"/in/red.icns"_s, red);
        mac.write(u"/in/blue.icns"_s, blue);
        start();
        subscription = launcher->icons().changed.connect(
            [this](const QSet<QString>& appKeys) { heard.append(appKeys); });
    }
    LauncherIcons& icons() { return launcher->icons(); }
    /// Its code, or nothing.
    QString failureOf(const QString& key, const QString& file) {
        QString code = u"noAnswer"_s;
        icons().set(key, file, [&](const LauncherIcons::Outcome& outcome) {
            code = outcome ? QString() : outcome.error().code;
        });
        mac.settle();
        return code;
    }
    QByteArray iconOf(const QString& key) {
        return icons().path(key) ? mac.read(*icons().path(key)) : QByteArray();
    }
    QSet<QString> facts() { return launcher->smartFolders().runtimeFacts().customIconKeys; }

    QList<QSet<QString>> heard;
    Subscription subscription;
};

TEST_F(LauncherIconsTest, AreKeptToldOfAndTakenAwayAgain) {
    SmartFolderRuntimeFacts others;
    others.updateCheckingEnabled = true;
    launcher->smartFolders().setRuntimeFacts(others);
    EXPECT_EQ(failureOf(ash, u"/in/red.icns"_s), u"");
    EXPECT_EQ(iconOf(ash), red);
    EXPECT_EQ(heard, QList<QSet<QString>>{{ash}});
    EXPECT_EQ(facts(), QSet<QString>{ash});
    EXPECT_TRUE(launcher->smartFolders().runtimeFacts().updateCheckingEnabled)
        << "what others know stays";
    EXPECT_EQ(failureOf(ash, u"/in/blue.icns"_s), u"");
    EXPECT_EQ(iconOf(ash), blue);
    EXPECT_EQ(heard.size(), 2);

    subscription.cancel();
    start();
    EXPECT_EQ(icons().appKeys(), QStringList{ash});
    EXPECT_EQ(facts(), QSet<QString>{ash});
    icons().remove(ash);
    mac.settle();
    EXPECT_FALSE(icons().has(ash));
    EXPECT_EQ(facts(), QSet<QString>());
    EXPECT_TRUE(mac.names(data + u"/Custom Icons"_s).isEmpty());
}

TEST_F(LauncherIconsTest, ARefusalLeavesTheEarlierOne) {
    ASSERT_EQ(failureOf(ash, u"/in/red.icns"_s), u"");
    mac.write(u"/in/bad.icns"_s, "icns");
    EXPECT_EQ(failureOf(ash, u"/in/bad.icns"_s), u"invalidICNSFile");
    EXPECT_EQ(failureOf(ash, u"/in/none.icns"_s), u"unreadableFile");
    EXPECT_EQ(failureOf(ash, u"/in/red.png"_s), u"notICNSFile");
    EXPECT_EQ(failureOf(u"org.example.ahs"_s, u"/in/red.icns"_s), u"unknownApplication");
    EXPECT_EQ(iconOf(ash), red);
    EXPECT_EQ(heard.size(), 1);
}

TEST_F(LauncherIconsTest, RequestsAreCarriedOutInTheirOrderForTheKeyThatTheApplicationHas) {
    icons().set(ash, u"/in/red.icns"_s);
    icons().remove(ash);
    icons().set(ash, u"/in/blue.icns"_s);
    const QString path = u"/Applications/Ash.app"_s;
    launcher->applications().keysChanged.notify({{ash, path}});
    mac.settle();
    EXPECT_EQ(iconOf(path), blue);
    EXPECT_FALSE(icons().has(ash));
}

TEST_F(LauncherIconsTest, FollowAnApplicationThroughTheKeysThatDuplicatesGiveIt) {
    ASSERT_EQ(failureOf(ash, u"/in/red.icns"_s), u"");
    const QString path = u"/Applications/Ash.app"_s;
    install(u"Ash"_s, u"/Users/ada/Applications"_s);
    heard.clear();
    rescan();
    EXPECT_EQ(icons().appKeys(), QStringList{path});
    EXPECT_EQ(iconOf(path), red);
    EXPECT_TRUE(heard.contains(QSet<QString>{ash, path}));
    EXPECT_EQ(facts(), QSet<QString>{path});
    mac.remove(u"/Users/ada/Applications/Ash.app"_s);
    // An icon that is being given while the key changes is not left behind.
    icons().set(path, u"/in/blue.icns"_s);
    rescan();
    EXPECT_EQ(icons().appKeys(), QStringList{ash});
    EXPECT_EQ(iconOf(ash), blue);
    EXPECT_EQ(mac.names(data + u"/Custom Icons"_s).size(), 1);
}

} // namespace
} // namespace tessellar::test
