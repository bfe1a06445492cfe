#include "discovery/library_watcher.h"

#include "support/few_events.h"
#include "support/items.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessellar::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Files have the real time, the watcher a scan's start far ahead of it: no folder counts as changed
/// since, unless a test says so.
class LibraryWatcherTest : public testing::Test {
protected:
    LibraryWatcherTest() {
        for (const QString& path : {u"/Applications/A.app"_s, u"/Applications/B.app"_s, u"/Volumes"_s})
            machine.makeFolder(path);
        scan.apps = {app(u"A"_s), app(u"B"_s)};
        scan.watchableDirectories = {u"/Applications"_s};
    }

    void start(std::unique_ptr<DirectoryEvents> events = makeDirectoryEvents()) {
        watcher = std::make_unique<LibraryWatcher>(
            machine.machine,
            LibraryWatcher::Callbacks{
                .rescan = [this](const QStringList& directories) { rescans += directories.join(u' '); },
                .applicationGone = [this](const QString& path) { gone += path; },
                .watching = [this] { ++established; }},
            std::move(events));
        scanned();
    }
    void scanned(Instant startedAt = *Instant::fromIso8601(u"2100-01-01T00:00:00Z")) {
        const int before = established;
        watcher->scanned(scan, startedAt);
        machine.until([&] { return established > before; });
    }
    /// Until the watcher has heard of a change and done what it does at once.
    void heard() {
        machine.mailbox.waitAndDrain();
        machine.settle();
    }
    void rename(const QString& from, const QString& to) {
        std::filesystem::rename(machine.hostPath(from).toStdString(),
                                machine.hostPath(to).toStdString());
    }

    TestMachine machine;
    AppScanner::LibraryScan scan;
    int established = 0;
    QStringList rescans;
    QStringList gone;
    std::unique_ptr<LibraryWatcher> watcher;
};

TEST_F(LibraryWatcherTest, GathersChangesIntoOneScan) {
    start();
    EXPECT_EQ(machine.time.pendingCount(), 0u);
    machine.makeFolder(u"/Applications/New.app"_s);
    heard();
    machine.time.advance(499ms);
    EXPECT_TRUE(rescans.isEmpty());
    machine.time.advance(1ms);
    EXPECT_EQ(rescans, QStringList{u"/Applications"_s});

    // Changes that do not end are not waited for longer than five seconds.
    for (int i = 0; i < 14; ++i) {
        machine.makeFolder(u"/Applications/%1"_s.arg(i));
        heard();
        EXPECT_EQ(rescans.size(), i <= 12 ? 1 : 2) << i;
        machine.time.advance(400ms);
    }
    machine.time.advance(1min);
    EXPECT_EQ(rescans.size(), 3);
    EXPECT_EQ(machine.time.pendingCount(), 0u);
    EXPECT_TRUE(gone.isEmpty());

    // A folder changed while the scan went on, before it was watched.
    machine.makeFolder(u"/Users/ada/Applications"_s);
    scan.watchableDirectories += u"/Users/ada/Applications"_s;
    scanned(Instant{});
    machine.settle();
    machine.time.advance(500ms);
    EXPECT_EQ(rescans.last(), u"/Users/ada/Applications"_s);
}

TEST_F(LibraryWatcherTest, WaitsForTheReplacementOfAnApplicationAndNotForLonger) {
    start();
    rename(u"/Applications/A.app"_s, u"/A.app"_s);
    machine.until([&] { return !gone.isEmpty(); });
    machine.time.advance(3s);
    EXPECT_TRUE(rescans.isEmpty());
    rename(u"/A.app"_s, u"/Applications/A.app"_s);
    heard();
    machine.time.advance(100ms); // the check of what is back comes a little later
    machine.settle();
    machine.time.advance(500ms);
    EXPECT_EQ(rescans.size(), 1);
}

TEST_F(LibraryWatcherTest, SeesTheTargetOfALinkTakenAway) {
    scan.apps += app(u"C"_s);
    scan.apps.last().path = u"/opt/C.app"_s;
    machine.makeFolder(scan.apps.last().path);
    machine.link(u"/Applications/C.app"_s, scan.apps.last().path);
    start();
    machine.remove(u"/opt/C.app"_s);
    machine.until([&] { return !gone.isEmpty(); });
    EXPECT_EQ(gone, QStringList{u"/opt/C.app"_s});
}

TEST_F(LibraryWatcherTest, FollowsFoldersThatComeAndGo) {
    const QString later = u"/Users/ada/Later/Applications"_s;
    scan.unreadableDirectories = {{later, AppScanner::UnreadableDirectory::Reason::absent}};
    scan.watchableDirectories += u"/Work/Tools"_s;
    machine.makeFolder(u"/Work/Tools"_s);
    start();
    const auto noticed = [&](const QString& directory) {
        rescans.clear();
        machine.until([&] {
            machine.time.advance(500ms);
            return rescans.join(u' ').contains(directory);
        });
    };
    machine.makeFolder(later);
    noticed(later);
    machine.makeFolder(later + u"/X.app"_s);
    noticed(later);
    machine.remove(u"/Work"_s);
    noticed(u"/Work/Tools"_s);
    machine.makeFolder(u"/Work/Tools"_s);
    noticed(u"/Work/Tools"_s);
    machine.makeFolder(u"/Work/Tools/Y.app"_s);
    noticed(u"/Work/Tools"_s);
    machine.makeFolder(u"/Volumes/Stick"_s);
    noticed(u"/Volumes"_s);
    rename(u"/Applications"_s, u"/Elsewhere"_s);
    machine.until([&] { return gone.size() == 2; });
    // What lies beside a folder that is awaited is no one's concern.
    scanned();
    machine.remove(later);
    noticed(later);
    scanned(); // whatever was on its way has come by then
    machine.settle();
    machine.time.advance(5s);
    rescans.clear();
    machine.write(u"/Users/ada/Later/file"_s, "x");
    machine.makeFolder(u"/Volumes/Last"_s);
    noticed(u"/Volumes"_s);
    EXPECT_EQ(rescans, QStringList{u"/Volumes"_s});
}

/// A link that leads elsewhere stands for the volume: no watch of a folder tells of either.
TEST_F(LibraryWatcherTest, FollowsAPathToTheVolumeThatCameOverIt) {
    for (const QString& path : {u"/Below"_s, u"/Volume"_s})
        machine.makeFolder(path);
    machine.link(u"/Work"_s, u"/Below"_s);
    scan.watchableDirectories += u"/Work"_s;
    auto owned = std::make_unique<FewEvents>(100);
    FewEvents& events = *owned;
    start(std::move(owned));
    const auto notices = [&](const QStringList& directories) {
        rescans.clear();
        machine.until([&] {
            machine.time.advance(500ms);
            return !rescans.isEmpty();
        });
        EXPECT_EQ(rescans, directories);
    };
    machine.remove(u"/Work"_s);
    machine.link(u"/Work"_s, u"/Volume"_s);
    events.mount();
    notices({u"/Work"_s});
    machine.makeFolder(u"/Volume/X.app"_s);
    notices({u"/Work"_s});
    machine.makeFolder(u"/Below/Y.app"_s); // no longer of concern
    machine.remove(u"/Volume"_s);
    machine.remove(u"/Work"_s);
    events.mount();
    notices({u"/Work"_s});
    machine.makeFolder(u"/Work"_s);
    notices({u"/Work"_s});
}

/// It may be damaged, or a copy that takes long.
TEST_F(LibraryWatcherTest, LooksAtAnIncompleteBundleEverMoreRarelyButForgetsNone) {
    const QString bundle = u"/Applications/Copied.app"_s;
    machine.write(bundle + u"/Contents/Info.plist"_s, "<plist");
    machine.write(bundle + u"/Contents/MacOS/Copied"_s, "x");
    QFile::setPermissions(machine.hostPath(bundle + u"/Contents/MacOS/Copied"_s),
                          QFile::ReadOwner | QFile::ExeOwner);
    scan.incompleteBundles = {{bundle, {}}};
    start();
    for (int i = 0; i < 12; ++i) {
        machine.time.advance(1s * (1 << i));
        machine.settle();
    }
    EXPECT_TRUE(rescans.isEmpty());
    machine.time.advance(1min);
    machine.settle();
    machine.write(bundle + u"/Contents/Info.plist"_s,
                  "<plist><dict><key>CFBundleExecutable</key><string>Copied</string></dict></plist>");
    machine.time.advance(1h);
    machine.settle();
    machine.time.advance(500ms);
    EXPECT_EQ(rescans, QStringList{u"/Applications"_s});
}

TEST_F(LibraryWatcherTest, PollsWhatTheSystemHasNoWatchesFor) {
    scan.watchableDirectories += u"/Work"_s;
    machine.makeFolder(u"/Work"_s);
    start(std::make_unique<FewEvents>(0));
    ASSERT_TRUE(watcher->isPolling());
    EXPECT_EQ(machine.log.lines().size(), 1);
    machine.time.advance(10s);
    machine.makeFolder(u"/Work/X.app"_s);
    machine.remove(u"/Applications/A.app"_s);
    machine.until([&] {
        machine.time.advance(10s);
        return rescans.join(u' ').contains(u"/Work"_s) && !gone.isEmpty();
    });
    EXPECT_EQ(gone, QStringList{u"/Applications/A.app"_s});
    EXPECT_EQ(machine.log.lines().size(), 1);

    watcher.reset();
    start(std::make_unique<FewEvents>(3));
    EXPECT_FALSE(watcher->isPolling());
    // The watch of a folder that is no longer of concern is there for another one.
    scan.watchableDirectories.removeLast();
    scanned();
    machine.makeFolder(u"/Other"_s);
    scan.watchableDirectories += u"/Other"_s;
    scanned();
    EXPECT_FALSE(watcher->isPolling());
}

} // namespace
} // namespace tessellar::test
