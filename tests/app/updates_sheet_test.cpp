#include "launcher/launcher_updates.h"
#include "launcher_fixture.h"
#include "support/fake_updates.h"

namespace tessellar::test {
namespace {

const QString cask = u"org.example.cask"_s;
const QString brewPath = u"/opt/homebrew/bin/brew"_s;

/// The sheet about updates, as a user meets it: one application with an update that Homebrew brings,
/// one whose feed fails, and two that nothing is known of.
class UpdatesSheetTest : public LauncherFixture {
protected:
    void SetUp() override {
        installCask(u"1.9"_s);
        install({u"Plain"_s, u"Other"_s});
        builder.addApplication({.name = u"Feed"_s,
                                .identifier = u"org.example.feed"_s,
                                .version = u"1.0"_s,
                                .sparkleFeed = u"https://feeds.test/feed"_s});
        mac.tool(brewPath, brewOfOneCask("2.0"));
        start({1280, 800});
        chooseInGrid(update_texts::checkNow());
        until([&] { return !mac.http.waiting().isEmpty(); });
        mac.http.answer(u"feeds"_s, FakeHttp::Answer(std::unexpected(HttpError::timedOut)));
        until([&] { return !updates().isChecking() && panel().runnableCount() == 1; });
        layOut();
    }
    void installCask(const QString& version) {
        builder.addApplication({.name = u"Cask"_s, .identifier = cask, .version = version});
    }
    LauncherUpdates& updates() { return viewModel().updates(); }
    UpdatesPanel& panel() { return *panels().updates(); }
    /// Lets workers answer and timers ring until something is so, however long a busy machine takes.
    void until(const std::function<bool()>& isSo,
               const std::source_location& where = std::source_location::current()) {
        waitUntil(
            isSo,
            [this] {
                mac.time.advance(250ms);
                QTest::qWait(1);
            },
            where);
    }
    /// Until the update is written down, which it is once its command was started: what that says from
    /// then on is its own.
    void untilStarted() {
        until([&] {
            return mac.exists(mac.machine.places.applicationFolder() + u"/app-update-run.json"_s);
        });
    }
    /// The lines, as "Name: text".
    QStringList lines() {
        const UpdateRows& rows = *panel().rows();
        QStringList result;
        for (int i = 0; i < rows.rowCount(); ++i)
            result += rows.data(rows.index(i), UpdateRows::NameRole).toString() + u": "_s +
                      rows.data(rows.index(i), UpdateRows::TextRole).toString();
        return result;
    }
    QString text(const char* objectName) {
        layOut();
        QQuickItem* item = named(QLatin1StringView(objectName));
        return item ? item->property("text").toString() : QString();
    }
    /// Waits for the question and answers it with Return.
    void agree() {
        until([&] { return launcher().alert()->isOpen(); });
        press(Qt::Key_Return);
    }
    void brewSays(const QByteArray& words) {
        mac.commands.say(
            mac.hostPath(mac.machine.places.applicationFolder() + u"/app-update-run.log"_s).toUtf8(),
            words);
    }
    QString activity(const QString& label) {
        QQuickItem* item = tile(label);
        return item ? item->property("activity").toString() : QString();
    }
};

TEST_F(UpdatesSheetTest, ItsLinesSayWhatIsKnownAndWhy) {
    EXPECT_EQ(lines(),
              (QStringList{u"Updates: 1"_s, u"Cask: Update available: 1.9 → 2.0"_s,
                           u"Could Not Be Checked: 1"_s, u"Feed: The server did not answer in time."_s,
                           u"Cannot Be Checked: 2"_s}));
    EXPECT_EQ(panel().summary(),
              u"1 update available. 1 app could not be checked. The server did not answer in time.");
    // Up and down the list; the line that is current says more.
    press({Qt::Key_Down, Qt::Key_Down, Qt::Key_Down});
    EXPECT_EQ(text("updateSource"),
              u"Declared in the app bundle. Version information comes from the app bundle. This app "
              u"declares a Sparkle update feed.");
    press({Qt::Key_Down, Qt::Key_Space});
    EXPECT_EQ(lines().mid(4),
              (QStringList{u"Cannot Be Checked: 2"_s,
                           u"Other: The app declares no source of updates that can be checked."_s,
                           u"Plain: The app declares no source of updates that can be checked."_s}));
    press(Qt::Key_Down);
    EXPECT_THAT(text("updateSource").toStdString(),
                testing::StartsWith("Version information comes from the app bundle."));
    press({Qt::Key_Up, Qt::Key_Return});
    EXPECT_EQ(lines().size(), 5);
}

TEST_F(UpdatesSheetTest, AnUpdateIsRunWithTheKeyboardAndSeenToRun) {
    mac.commands.holdStarted(true);
    press({Qt::Key_Down, Qt::Key_Return});
    agree();
    untilStarted();
    brewSays("==> Downloading https://example.org/cask.dmg\n");
    until([&] { return activity(u"Cask"_s) == u"Downloading…"; });
    EXPECT_EQ(lines().value(1), u"Cask: Updating… Downloading."_s);
    EXPECT_EQ(text("updateDetail"), u"==> Downloading https://example.org/cask.dmg");
    EXPECT_EQ(text("updateAction"), u"Cancel");
    EXPECT_TRUE(named(u"updatesList"_s)->hasActiveFocus())
        << "the keyboard comes back from the question";

    // It fails, and its own words stay; then it comes.
    mac.tool(brewPath, brewOfOneCask("2.0", 1));
    press(Qt::Key_Space);
    until([&] { return !updates().isRunning(); });
    EXPECT_EQ(lines().value(1), u"Cask: Update available: 1.9 → 2.0 · The update was cancelled."_s);
    // It can be run again once it was looked at what the first one left.
    const UpdateRows& rows = *panel().rows();
    until([&] { return rows.data(rows.index(1), UpdateRows::CanActRole).toBool(); });
    press(Qt::Key_Return);
    installCask(u"2.0"_s);
    mac.tool(brewPath, brewOfOneCask({}));
    mac.commands.holdStarted(false);
    agree();
    until([&] { return lines().value(0) == u"Updated: 1"; });
    EXPECT_EQ(lines().value(1), u"Cask: Updated to version 2.0."_s);
    EXPECT_EQ(named(u"updatesList"_s)->property("currentIndex"), 1)
        << "Return is not to act on the next one";
    EXPECT_EQ(activity(u"Cask"_s), QString());
}

TEST_F(UpdatesSheetTest, AVersionIsSkippedAndOfferedAgain) {
    press({Qt::Key_Down, Qt::Key_Right});
    choose(u"Skip Version 2.0"_s);
    until([&] { return lines().value(0) == u"Held Back: 1"; });
    EXPECT_EQ(lines().value(1), u"Cask: Update available: 1.9 → 2.0"_s);
    EXPECT_FALSE(named(u"updateAllButton"_s));
    press({Qt::Key_Home, Qt::Key_Down, Qt::Key_Right});
    choose(u"Offer Its Updates Again"_s);
    until([&] { return lines().value(0) == u"Updates: 1"; });
}

TEST_F(UpdatesSheetTest, TabReachesAllOfItAndNothingBehindIt) {
    QStringList reached;
    for (int i = 0; i < 8; ++i) {
        press(Qt::Key_Tab);
        const QQuickItem* item = view().activeFocusItem();
        reached += item ? item->objectName() : QString();
    }
    const QStringList all{u"updatesSwitch"_s, u"updatesInterval"_s, u"updatesDone"_s,
                          u"checkButton"_s,   u"updateAllButton"_s, u"updateSection"_s};
    EXPECT_EQ(reached.first(6), all);
    EXPECT_EQ(reached.mid(6), all.first(2));
    const auto interval = [&] {
        mac.settle();
        return mac.machine.settings.integer(AppUpdateSettings::intervalKey);
    };
    press(Qt::Key_Right);
    EXPECT_TRUE(panel().intervals()[2].toMap()[u"isChosen"_s].toBool());
    EXPECT_EQ(interval(), 3 * 24 * 3600);
    panel().chooseInterval(5);
    EXPECT_EQ(interval(), 3 * 24 * 3600) << "there is none of five seconds";
    press({Qt::Key_Right, Qt::Key_Right});
    EXPECT_EQ(interval(), 7 * 24 * 3600) << "there is no longer one";
    press({Qt::Key_Backtab, Qt::Key_Space});
    EXPECT_FALSE(panel().isEnabled());
    press(Qt::Key_Escape);
    EXPECT_EQ(launcher().sheets()->current(), QString());
    type(u"ca"_s);
    EXPECT_EQ(launcher().search()->text(), u"ca") << "the keyboard is the search's again";
}

TEST_F(UpdatesSheetTest, UpdateAllRunsWhatCanAndTheProgramWaitsForItsEnd) {
    window->endWhenClosed();
    const QSignalSpy ended(window.get(), &LauncherWindow::ended);
    const QSignalSpy closed(window.get(), &LauncherWindow::closed);
    mac.commands.holdStarted(true);
    clickNamed(u"updateAllButton"_s);
    agree();
    untilStarted();

    // A question for a password is not covered; what runs goes on behind.
    brewSays("Password:");
    until([&] { return !view().isVisible(); });
    EXPECT_EQ(closed.count(), 1);
    EXPECT_EQ(ended.count(), 0);
    EXPECT_TRUE(mac.commands.terminated().isEmpty());
    mac.commands.holdStarted(false);
    until([&] { return ended.count() > 0; });
    EXPECT_FALSE(updates().isRunning());
}

TEST_F(UpdatesSheetTest, AQuestionThatNobodySeesIsDeclined) {
    window->endWhenClosed();
    const QSignalSpy ended(window.get(), &LauncherWindow::ended);
    clickNamed(u"updateAllButton"_s);
    until([&] { return launcher().alert()->isOpen(); });
    window->close();
    EXPECT_EQ(ended.count(), 1);
    EXPECT_FALSE(updates().isRunning());
}

} // namespace
} // namespace tessellar::test
