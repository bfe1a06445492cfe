#include "launcher/library_watch.h"

#include "launcher/launcher_icons.h"
#include "small_launcher.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

using Kind = LibraryNotice::Kind;
using testing::Contains;
using testing::Not;

class LibraryWatchTest : public SmallLauncher {
protected:
    LibraryWatchTest() {
        mac.makeFolder(u"/Volumes"_s);
        installAll(u"Ash Beech Cedar"_s);
    }
    void watch() {
        subscription = launcher->libraryWatch().noticed.connect([this](const LibraryNotice& notice) {
            notices.append(json::rawValue(notice.kind) + u' ' + notice.paths.join(u' '));
        });
        launcher->libraryWatch().start();
        mac.until([&] { return !launcher->libraryWatch().watchedDirectories().isEmpty(); });
        notices.clear();
    }
    /// Lets time pass until a scan has found what is to be found.
    void follow(const std::function<bool()>& isSo) {
        mac.settle();
        waitUntil(isSo, [this] {
            if (time.pendingCount() == 0)
                mac.mailbox.waitAndDrain();
            else
                time.advance(100ms);
            mac.settle();
        });
    }
    bool isUnavailable(const QString& name) {
        return launcher->shown().unavailableAppKeys().contains(u"org.example."_s + name.toLower());
    }

    QStringList notices;
    Subscription subscription;
};

TEST_F(LibraryWatchTest, ApplicationsComeAndGoByThemselves) {
    launcher = std::make_unique<LauncherViewModel>(mac.machine);
    launcher->libraryWatch().start(); // nothing is known yet: it begins with the first scan
    launcher->startAndWait();
    watch();
    EXPECT_EQ(time.pendingCount(), 0u) << "nothing to do while nothing changes";

    install(u"Dogwood"_s);
    follow([&] { return sketched() == u"Ash Beech Cedar Dogwood"; });
    EXPECT_THAT(notices, Contains(u"added /Applications/Dogwood.app"_s));

    notices.clear();
    uninstall(u"Beech"_s);
    mac.until([&] { return isUnavailable(u"Beech"_s); });
    EXPECT_EQ(sketched(), u"Ash Beech Cedar Dogwood") << "it leaves with the next scan";
    follow([&] { return sketched() == u"Ash Cedar Dogwood"; });
    EXPECT_EQ(notices.first(), u"gone /Applications/Beech.app");
    EXPECT_THAT(notices, Contains(u"removed /Applications/Beech.app"_s));

    // One that is still being copied has no tile until it is whole.
    notices.clear();
    builder.addApplication(
        {.name = u"Elm"_s, .identifier = u"org.example.elm"_s, .missing = sample::Missing::executable});
    follow([&] { return notices.contains(u"incomplete /Applications/Elm.app"_s); });
    EXPECT_EQ(sketched(), u"Ash Cedar Dogwood");
    install(u"Elm"_s);
    follow([&] { return sketched() == u"Ash Cedar Dogwood Elm"; });
    EXPECT_THAT(notices, Contains(u"added /Applications/Elm.app"_s));
    EXPECT_THAT(notices, Not(Contains(u"replaced /Applications/Elm.app"_s)));
}

TEST_F(LibraryWatchTest, ABundleReplacedInPlaceNeverLosesItsTile) {
    Pages arranged = drawn(u"[f: Beech Cedar] Ash");
    arranged[0][0].folder()->pages[0][0].app()->name = u"Fagus"_s;
    store(arranged);
    start();
    watch();
    QSet<QString> redrawn;
    const auto listening =
        launcher->icons().changed.connect([&](const QSet<QString>& appKeys) { redrawn += appKeys; });
    bool isAlwaysThere = true;
    const auto looking = launcher->shown().changed.connect([&] {
        isAlwaysThere = isAlwaysThere && sketched() == u"[f: Fagus Cedar] Ash" &&
                        launcher->shown().folder(idOf(u"f"_s))->pages[0][0].id() == idOf(u"Beech"_s);
    });

    // The new one is made ready elsewhere, the old one taken away, the new one moved to its place.
    const QString ready = install(u"Beech"_s, u"/tmp/update"_s, u"2.0"_s);
    move(u"/Applications/Beech.app"_s, u"/tmp/old.app"_s);
    mac.until([&] { return isUnavailable(u"Beech"_s); });
    time.advance(3s);
    mac.settle();
    move(ready, u"/Applications/Beech.app"_s);
    follow([&] { return notices.contains(u"replaced /Applications/Beech.app"_s); });
    EXPECT_FALSE(isUnavailable(u"Beech"_s));
    EXPECT_EQ(redrawn, QSet<QString>{u"org.example.beech"_s});

    // Copied over piece by piece: incomplete for as long as it takes.
    notices.clear();
    const QString executable = u"/Applications/Beech.app/Contents/MacOS/Beech"_s;
    const QByteArray bytes = mac.read(executable);
    mac.remove(executable);
    mac.makeFolder(u"/Applications/Stirs"_s); // a scan comes along meanwhile
    follow([&] { return notices.contains(u"incomplete /Applications/Beech.app"_s); });
    EXPECT_TRUE(isUnavailable(u"Beech"_s));
    builder.addExecutable(executable, bytes);
    follow([&] { return !isUnavailable(u"Beech"_s); });
    EXPECT_TRUE(isAlwaysThere);
}

} // namespace
} // namespace tessellar::test
