#include "cleanup/app_cleanup_remover.h"

#include "cleanup/app_related_files_scanner.h"
#include "cleanup/desktop_trash.h"
#include "tests/platform/disk_folder.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using enum RelatedFileMatch;

const QString caches = u"/Users/ada/Library/Caches/"_s;

/// A real Trash that remembers the order, and fails or lies where it is told to.
class WatchedTrash final : public Trash {
public:
    explicit WatchedTrash(const Machine& machine) : _trash(machine) {}
    QList<TrashResult> moveToTrash(const QStringList& paths, std::stop_token stop) override {
        QList<TrashResult> results;
        for (const QString& path : paths) {
            moved.append(path);
            if (path.contains(u"lie"))
                results.append({.trashedPath = u"/nowhere"_s});
            else if (path.contains(u"stuck"))
                results.append({.failure = u"Stuck."_s});
            else
                results += _trash.moveToTrash({path}, stop);
            if (path.contains(u"cut"))
                results.last() = {.failure = u"Interrupted."_s};
            else if (path.contains(u"mumble"))
                results.last() = {.trashedPath = u"/nowhere"_s};
        }
        return results;
    }
    QStringList moved;

private:
    DesktopTrash _trash;
};

class FakeRunning final : public RunningApplications {
public:
    State state(const CleanupApplication&) override {
        return isHidden ? State::unknown : looksLeft-- > 0 ? State::open : State::closed;
    }
    void askToQuit(const CleanupApplication&, std::stop_token) override { ++asked; }
    int looksLeft = 0;
    int asked = 0;
    bool isHidden = false;
};

class FakeAgents final : public LaunchAgents {
public:
    bool unload(const QString& propertyList, std::stop_token) override {
        unloaded.append(propertyList);
        return true;
    }
    QStringList unloaded;
};

class FakeAdministrator final : public AdminMover {
public:
    QList<AdminMoveOutcome> moveToTrash(const QList<AdminMove>& items, std::stop_token) override {
        QList<AdminMoveOutcome> outcomes;
        for (const AdminMove& item : items) {
            asked.append(item);
            outcomes.append({.path = item.path, .message = answer});
        }
        return outcomes;
    }
    QList<AdminMoveOutcome> restoreFromTrash(const QList<AdminMove>& items, std::stop_token) override {
        asked += items;
        return {};
    }
    bool isAvailable(std::stop_token) override { return answers; }
    bool answers = true;
    QList<AdminMove> asked;
    QString answer = administratorApprovalCanceled();
};

class AppCleanupRemoverTest : public testing::Test {
protected:
    AppCleanupRemoverTest() { mac.write(quill.path + u"/Contents/Info.plist"_s, "x"); }

    RelatedFile item(const QString& path, RelatedFileMatch match = strong) const {
        const auto status = mac.files.linkStatus(path);
        return {
            .path = path, .match = match, .identity = status ? identityOf(*status) : FileIdentity{}};
    }
    RelatedFile made(const QString& name) const {
        mac.write(caches + name + u"/x"_s, "x");
        return item(caches + name);
    }
    QString failureOf(const RelatedFile& file) {
        const auto result = remover.remove(quill, {file}, {});
        return result.items.first().failure.value_or(QString());
    }

    test::TestMachine mac;
    CleanupApplication quill{.names = {u"Quill"_s},
                             .bundleIdentifier = u"com.example.quill"_s,
                             .path = u"/Applications/Quill.app"_s};
    WatchedTrash trash{mac.machine};
    FakeRunning running;
    FakeAdministrator administrator;
    FakeAgents agents;
    AppCleanupRemover remover{
        {.files = mac.files,
         .home = u"/Users/ada"_s,
         .trash = trash,
         .running = running,
         .administrator = administrator,
         .agents = &agents,
         .trashFolders = {u"/Users/ada/.Trash"_s, u"/Users/ada/.local/share/Trash/files"_s},
         .wait = [](std::chrono::milliseconds, std::stop_token) { return true; }}};
    const QString changed = u"It has changed since it was reviewed, and was left alone."_s;
    const QString isProtected = u"macOS protects this item, and it couldn’t be moved to the Trash."_s;
};

TEST_F(AppCleanupRemoverTest, MovesTheBundleLastTellsOfEachAndBringsAllBack) {
    const QList<RelatedFile> items{item(quill.path, appBundle), made(u"one"_s), made(u"stuck"_s),
                                   made(u"lie"_s), made(u"two"_s)};
    QStringList names;
    const auto result = remover.remove(quill, items, {}, [&](const CleanupRemovalProgress& state) {
        names.append(state.name);
        EXPECT_EQ(state.total, 5);
    });
    EXPECT_EQ(trash.moved.last(), quill.path);
    EXPECT_EQ(names, (QStringList{u"one"_s, u"Quill.app"_s, QString()}));
    QStringList log;
    for (const CleanupLogLine& line : result.log)
        log.append(line.text);
    EXPECT_EQ(log, (QStringList{u"one: moved to the Trash."_s, u"stuck: Stuck."_s,
                                u"lie: Finder did not move the item to the Trash."_s,
                                u"two: moved to the Trash."_s, u"Quill.app: moved to the Trash."_s}));
    EXPECT_FALSE(mac.exists(quill.path));

    mac.write(caches + u"two"_s, "in the way");
    const auto restored = remover.restore(quill, result.items, {});
    EXPECT_EQ(restored.first().item.path, quill.path);
    EXPECT_TRUE(mac.exists(quill.path + u"/Contents/Info.plist"_s));
    EXPECT_TRUE(mac.exists(caches + u"one/x"_s));
    EXPECT_EQ(mac.read(caches + u"two"_s), "in the way");
    EXPECT_TRUE(restored[1].failure); // two
}

TEST_F(AppCleanupRemoverTest, WhatATrashSaysIsComparedWithWhereTheItemsAre) {
    // Others of the names lie there already; an emptied Trash has nothing to bring back.
    for (const QString& name : {u"cut"_s, u"mumble"_s, u"stuck"_s})
        mac.write(u"/Users/ada/.local/share/Trash/files/"_s + name, "older");
    const auto result =
        remover.remove(quill, {made(u"cut"_s), made(u"mumble"_s), made(u"stuck"_s)}, {});
    EXPECT_FALSE(result.items[0].failure);
    EXPECT_EQ(result.log[0].text, u"cut: moved to the Trash."_s);
    EXPECT_EQ(result.items[1].trashedPath, u"/Users/ada/.local/share/Trash/files/mumble 2"_s);
    EXPECT_EQ(result.items[2].failure, u"Stuck."_s);
    for (const CleanupItemResult& back : remover.restore(quill, result.items, {}))
        EXPECT_TRUE(mac.exists(back.item.path + u"/x"_s)) << back.item.path.toStdString();
}

TEST_F(AppCleanupRemoverTest, OnlyWhatIsCertainlyGoneFromItsTrashIsCalledGone) {
    const auto removed = remover.remove(quill, {made(u"one"_s), made(u"two"_s)}, {}).items;
    const QString bin = u"/Users/ada/.local/share/Trash/files"_s;
    // The volume with the Trash is not there; then somebody may not look into it.
    ASSERT_TRUE(mac.files.move(bin, u"/away"_s));
    for (const CleanupItemResult& back : remover.restore(quill, removed, {}))
        EXPECT_TRUE(back.failure && !back.isGone);
    mac.write(bin, "no folder");
    for (const CleanupItemResult& back : remover.restore(quill, removed, {}))
        EXPECT_TRUE(back.failure && !back.isGone);
    mac.remove(bin);
    ASSERT_TRUE(mac.files.move(u"/away"_s, bin));
    mac.remove(bin + u"/two"_s);
    const auto back = remover.restore(quill, removed, {});
    EXPECT_EQ(back[0].item.path, caches + u"two"_s);
    EXPECT_TRUE(back[0].isGone);
    EXPECT_EQ(back[0].failure, u"It is no longer in the Trash."_s);
    EXPECT_FALSE(back[1].failure);
    EXPECT_TRUE(mac.exists(caches + u"one/x"_s));

    // A helper that does not answer may have it still.
    QList<CleanupItemResult> helpers{removed[1]};
    helpers[0].isByHelper = true;
    mac.write(*helpers[0].trashedPath + u"/x"_s, "another");
    helpers[0].item.identity = item(*helpers[0].trashedPath).identity;
    (void)remover.restore(quill, helpers, {});
    ASSERT_EQ(administrator.asked.size(), 1);
    EXPECT_EQ(administrator.asked[0].application, u"Quill"_s); // as the prompt says it
    mac.remove(*helpers[0].trashedPath);
    administrator.answers = false;
    EXPECT_FALSE(remover.restore(quill, helpers, {}).first().isGone);
    administrator.answers = true;
    EXPECT_TRUE(remover.restore(quill, helpers, {}).first().isGone);
}

TEST_F(AppCleanupRemoverTest, LinksGoWithTheBundleAndAgentsAreEndedFirst) {
    mac.write(u"/Users/ada/Tools/Quill.app/Contents/Info.plist"_s, "x");
    mac.link(u"/Applications/Pen.app"_s, u"/Users/ada/Tools/Quill.app"_s);
    quill.path = u"/Users/ada/Tools/Quill.app"_s;
    const QString agent = u"/Users/ada/Library/LaunchAgents/com.example.quill.plist"_s;
    mac.write(agent, "x");
    const auto found =
        AppRelatedFilesScanner(mac.files, u"/Users/ada"_s).scan(quill, {}, {}).value().files;
    QStringList paths;
    for (const RelatedFile& file : found)
        paths.append(file.path);
    EXPECT_EQ(paths, (QStringList{quill.path, u"/Applications/Pen.app"_s, agent}));
    const auto result = remover.remove(quill, found, {});
    EXPECT_EQ(agents.unloaded, QStringList{agent});
    EXPECT_EQ(result.log.first().text, u"com.example.quill.plist: its agent was ended."_s);
    EXPECT_EQ(mac.names(u"/Applications"_s), QStringList{u"Quill.app"_s});
    for (const CleanupItemResult& back : remover.restore(quill, result.items, {}))
        EXPECT_FALSE(back.failure) << back.failure->toStdString();
    EXPECT_TRUE(mac.files.exists(u"/Applications/Pen.app/Contents/Info.plist"_s));

    // A link that leads elsewhere by now stays.
    mac.remove(u"/Applications/Pen.app"_s);
    mac.link(u"/Applications/Pen.app"_s, u"/Users/ada"_s);
    RelatedFile link = found[1];
    link.identity = item(link.path).identity;
    EXPECT_EQ(failureOf(link), changed);
}

TEST_F(AppCleanupRemoverTest, NothingMovesThatCouldNotBeWrittenDown) {
    // A name that the Trash cuts; the last of its characters that count there is of two.
    const QString longName = u"0123456789012345678e\u0301"_s + QString(77, u'写');
    const QList<RelatedFile> items{made(u"one"_s), made(longName), item(caches + u"gone"_s),
                                   item(quill.path, appBundle)};
    const auto refused =
        remover.remove(quill, items, {}, {}, [&](const QList<CleanupItemResult>& planned) {
            EXPECT_EQ(planned.size(), 3);
            EXPECT_TRUE(mac.exists(caches + u"one"_s));
            return std::expected<void, QString>(std::unexpected(u"The disk is full."_s));
        });
    for (const CleanupItemResult& each : refused.items)
        EXPECT_TRUE(each.failure);
    EXPECT_TRUE(trash.moved.isEmpty());

    // A plan is enough to bring back from, also when the volumes have other numbers by then.
    QList<CleanupItemResult> noted;
    ASSERT_TRUE(remover
                    .remove(quill, items, {}, {},
                            [&](const QList<CleanupItemResult>& planned) {
                                noted = planned;
                                return std::expected<void, QString>();
                            })
                    .items.first()
                    .isMoved());
    for (CleanupItemResult& each : noted)
        each.item.identity.device += 7;
    for (const CleanupItemResult& back : remover.restore(quill, noted, {}))
        EXPECT_FALSE(back.failure) << back.failure->toStdString();
    EXPECT_TRUE(mac.exists(quill.path + u"/Contents/Info.plist"_s));
    EXPECT_TRUE(mac.exists(caches + u"one/x"_s));
    EXPECT_TRUE(mac.exists(caches + longName + u"/x"_s));
}

TEST_F(AppCleanupRemoverTest, WhatHasChangedSinceTheReviewStays) {
    const RelatedFile replaced = made(u"replaced"_s);
    mac.makeFolder(u"/keep"_s);
    QDir().rename(mac.hostPath(caches + u"replaced"_s), mac.hostPath(u"/keep/it"_s));
    mac.write(caches + u"replaced/new"_s, "x");
    EXPECT_EQ(failureOf(replaced), changed);

    const RelatedFile linked = made(u"linked"_s);
    QDir().rename(mac.hostPath(caches + u"linked"_s), mac.hostPath(u"/keep/linked"_s));
    mac.link(caches + u"linked"_s, u"/keep/linked"_s);
    EXPECT_EQ(failureOf(linked), changed);

    // The very item, but under a folder that has become a link meanwhile.
    const RelatedFile below = item(made(u"vendor"_s).path + u"/x"_s);
    QDir().rename(mac.hostPath(caches + u"vendor"_s), mac.hostPath(u"/keep/vendor"_s));
    mac.link(caches + u"vendor"_s, u"/keep/vendor"_s);
    EXPECT_EQ(failureOf(below), changed);
    mac.write(u"/keep/vendor/product/y"_s, "y");
    EXPECT_EQ(failureOf(item(caches + u"vendor/product/y"_s)), changed);

    const RelatedFile gone = made(u"gone"_s);
    mac.remove(caches + u"gone"_s);
    EXPECT_EQ(failureOf(gone), u"It is no longer there."_s);
    EXPECT_TRUE(trash.moved.isEmpty());
}

TEST_F(AppCleanupRemoverTest, AFullDiskLeavesEverythingWhereItIs) {
    const test::SmallDisk disk(mac.hostPath(u"/Users/ada"_s).toStdString(), "size=128k");
    if (!disk)
        GTEST_SKIP() << "This process may not mount.";
    const RelatedFile one = made(u"one"_s);
    QFile filler(mac.hostPath(u"/Users/ada/filler"_s));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) {
    }
    EXPECT_NE(failureOf(one), QString());
    EXPECT_EQ(mac.read(one.path + u"/x"_s), "x");
    filler.remove();
    EXPECT_EQ(failureOf(one), QString());
    EXPECT_FALSE(mac.exists(one.path));
}

TEST_F(AppCleanupRemoverTest, AFolderInWhichAVolumeIsMountedStays) {
    const RelatedFile around = made(u"a round"_s);
    const RelatedFile beside = made(u"a"_s);
    mac.makeFolder(around.path + u"/a disk"_s);
    const test::SmallDisk disk(mac.hostPath(around.path + u"/a disk"_s).toStdString(), "size=64k");
    if (!disk)
        GTEST_SKIP() << "This process may not mount.";
    EXPECT_EQ(failureOf(around), u"A volume is mounted in it. Eject it, then try again."_s);
    EXPECT_EQ(failureOf(beside), QString());
    EXPECT_EQ(trash.moved, QStringList{beside.path});
}

TEST_F(AppCleanupRemoverTest, ProtectedShallowAndForeignPlacesStay) {
    mac.write(u"/System/Library/Caches/x"_s, "x");
    mac.write(u"/Users/ada/Documents/x"_s, "x");
    mac.write(u"/Applications/Other.app/x"_s, "x");
    mac.write(caches + u"deep/x"_s, "x");
    mac.link(caches + u"way"_s, u"/System/Library/Caches"_s);
    for (const QString& path :
         {u"/System/Library/Caches/x"_s, u"/Users/ada/Documents/x"_s, u"/Users/ada"_s, u"/Library"_s,
          u"/"_s, u"/Users/ada/Library/Caches"_s, caches + u"../Caches/deep"_s, caches + u"way/x"_s,
          u"/Applications/Other.app"_s, u"/Applications"_s}) {
        EXPECT_NE(failureOf(item(path)), QString()) << path.toStdString();
        EXPECT_NE(failureOf(item(path, appBundle)), QString()) << path.toStdString();
    }
    EXPECT_EQ(failureOf(item(u"/System/Library/Caches/x"_s)), isProtected);
    EXPECT_TRUE(trash.moved.isEmpty());
}

TEST_F(AppCleanupRemoverTest, ARunningApplicationIsAskedFirstAndNothingMovesWhileItStays) {
    running.looksLeft = 3;
    QStringList told;
    const auto tell = [&](const CleanupRemovalProgress& state) { told.append(state.text()); };
    EXPECT_EQ(remover.remove(quill, {made(u"one"_s)}, {}, tell).stillRunning, QStringList());
    EXPECT_EQ(running.asked, 1);
    EXPECT_EQ(told, (QStringList{u"Waiting for Quill to quit…"_s, u"one"_s, QString()}));
    running.isHidden = true;
    EXPECT_EQ(failureOf(made(u"three"_s)),
              u"Tessellar could not find out whether Quill is open. Try again."_s);
    running.isHidden = false;
    running.looksLeft = 1'000;
    const auto result = remover.remove(quill, {made(u"two"_s), item(quill.path, appBundle)}, {});
    EXPECT_EQ(result.stillRunning, QStringList{u"Quill"_s});
    EXPECT_EQ(result.log.last().text, u"Quill.app: Quill is still open. Quit it, then try again."_s);
    EXPECT_TRUE(mac.exists(caches + u"two"_s));
    EXPECT_TRUE(mac.exists(quill.path));
}

TEST_F(AppCleanupRemoverTest, ARefusedPromptStopsOnlyWhatNeedsIt) {
    mac.write(u"/Library/LaunchDaemons/com.example.quill.plist"_s, "x");
    RelatedFile daemon = item(u"/Library/LaunchDaemons/com.example.quill.plist"_s);
    daemon.domain = CleanupDomain::system;
    daemon.needsAdministrator = true;
    const auto result = remover.remove(quill, {daemon, made(u"one"_s)}, {});
    EXPECT_EQ(result.log[0].text, u"com.example.quill.plist: administrator approval was canceled."_s);
    EXPECT_EQ(result.log[1].kind, CleanupLogLine::Kind::moved);
    EXPECT_EQ(administrator.asked,
              QList<AdminMove>(
                  {{.path = daemon.path, .identity = daemon.identity, .application = u"Quill"_s}}));

    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(remover.remove(quill, {made(u"two"_s)}, stop.get_token()).items.first().failure,
              u"The removal was stopped."_s);
}

TEST(SystemRunningApplicationsTest, KnowsProcessesByTheirBundleAndQuitsByIdentifier) {
    test::TestMachine mac;
    const QByteArray bundle = mac.files.hostPath(u"/Applications/Quill.app"_s);
    QByteArray processes = bundle + "2/Contents/MacOS/Quill\n";
    mac.tool(u"/bin/ps"_s, [&](const Command&, std::stop_token) { return test::exited(0, processes); });
    mac.tool(u"/usr/bin/osascript"_s, test::exited(0));
    OsascriptInterpreter interpreter(mac.machine);
    SystemRunningApplications running(mac.machine, interpreter);
    CleanupApplication quill{.names = {u"Quill"_s},
                             .bundleIdentifier = u"com.example.Quill"_s,
                             .path = u"/Applications/Quill.app"_s};
    using State = RunningApplications::State;
    EXPECT_EQ(running.state(quill), State::closed);
    processes += bundle + "/Contents/MacOS/Quill\n";
    EXPECT_EQ(running.state(quill), State::open);
    mac.tool(u"/bin/ps"_s, test::exited(1));
    EXPECT_EQ(running.state(quill), State::unknown);
    mac.remove(u"/bin/ps"_s);
    EXPECT_EQ(running.state(quill), State::closed); // a Mac in a folder
    mac.write(u"/bin/ps"_s, "may not be started");
    EXPECT_EQ(running.state(quill), State::unknown);
    running.askToQuit(quill, {});
    EXPECT_EQ(mac.commands.commands().last().input,
              "tell application id \"com.example.Quill\" to quit\n");
    quill.bundleIdentifier = u"x\" to delete"_s;
    running.askToQuit(quill, {});
    EXPECT_EQ(mac.commands.commands().last().input, "tell application \"" + bundle + "\" to quit\n");
}

} // namespace
} // namespace tessellar
