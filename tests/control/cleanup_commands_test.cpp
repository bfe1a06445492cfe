#include "launcher/launcher_cleanup.h"
#include "sample/leftovers.h"
#include "sample/tools.h"
#include "tessellarctl_fixture.h"

#include <sys/stat.h>

namespace tessellar {
namespace {

/// On a Mac with the stand-ins for its tools.
class CleanupCommandsTest : public TessellarctlTest {
protected:
    CleanupCommandsTest() {
        sample::addTools(builder);
        for (const QString& name : {u"Ash"_s, u"Beech"_s})
            sample::addLeftovers(builder,
                                 {.name = name, .identifier = u"org.example."_s + name.toLower()},
                                 {sample::Leftover::preferences, sample::Leftover::support,
                                  sample::Leftover::systemPreferences});
    }

    Result cleanup(const QString& words) { return run(u"cleanup "_s + words); }

    const QString bundle = u"/Applications/Ash.app"_s;
    const QString preferences = u"/Users/ada/Library/Preferences/org.example.ash.plist"_s;
    const QString support = u"/Users/ada/Library/Application Support/Ash"_s;
    const QString systemPreferences = u"/Library/Preferences/org.example.ash.plist"_s;
};

TEST_F(CleanupCommandsTest, ReviewsWhatARemovalCouldTake) {
    const Result review = cleanup(u"review org.example.ash"_s);
    ASSERT_EQ(review.status, 0) << review.error.toStdString();
    EXPECT_EQ(review.json().keys().join(u' '), u"app items");
    EXPECT_EQ(review.json()[u"app"][u"name"].toString(), u"Ash");
    QHash<QString, QJsonObject> items;
    for (const QJsonValue& item : review.json()[u"items"].toArray())
        items.insert(item[u"path"].toString(), item.toObject());
    EXPECT_EQ(items.size(), 4);
    const QJsonObject item = items[support];
    EXPECT_EQ(item.keys().join(u' '), u"domain identity location match needsAdministrator path "
                                      "preselected reason size sizeIsPartial");
    EXPECT_GT(item[u"size"].toInteger(), 0);
    EXPECT_EQ(item[u"location"].toString(), u"Application Support");
    EXPECT_EQ(item[u"match"].toString(), u"medium");
    EXPECT_FALSE(item[u"preselected"].toBool(true));
    EXPECT_EQ(items[bundle][u"match"].toString(), u"appBundle");
    EXPECT_EQ(items[systemPreferences][u"domain"].toString(), u"system");
    const QByteArray shown = text(u"cleanup review org.example.ash"_s);
    EXPECT_TRUE(shown.contains("[x]"));
    EXPECT_TRUE(shown.contains("; 1 item will stay\n")) << shown.toStdString();
    EXPECT_EQ(cleanup(u"review nobody"_s).code(), u"unknownApplication");
}

TEST_F(CleanupCommandsTest, RemovesOnlyAfterAYesAndAnotherProcessRestores) {
    const Result asked = cleanup(u"remove org.example.ash"_s);
    EXPECT_EQ(asked.status, 1);
    EXPECT_EQ(asked.code(), u"confirmationRequired");
    EXPECT_TRUE(asked.error.contains(preferences.toUtf8()));
    EXPECT_FALSE(asked.error.contains(support.toUtf8()));
    EXPECT_TRUE(asked.error.contains("--yes to continue"));
    EXPECT_TRUE(exists(bundle));

    const Result removed = cleanup(u"remove org.example.ash --yes"_s);
    EXPECT_EQ(removed.status, 0) << removed.error.toStdString();
    EXPECT_EQ(removed.json()[u"log"].toArray().size(), 3);
    EXPECT_FALSE(exists(bundle) || exists(preferences) || exists(systemPreferences));
    EXPECT_TRUE(exists(support));
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Beech\n");
    const QJsonArray past = cleanup(u"history"_s).json()[u"removals"].toArray();
    ASSERT_EQ(past.size(), 1);
    EXPECT_EQ(past[0][u"name"].toString(), u"Ash");
    EXPECT_EQ(past[0][u"inTrash"].toInt(), 3);
    EXPECT_EQ(cleanup(u"restore first"_s).code(), u"unknownRemoval");
    const Result restored = cleanup(u"restore "_s + past[0][u"id"].toString());
    EXPECT_EQ(restored.status, 0) << restored.error.toStdString();
    EXPECT_TRUE(exists(bundle) && exists(preferences));
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n");
    EXPECT_EQ(cleanup(u"restore"_s).code(), u"nothingToRestore");
}

TEST_F(CleanupCommandsTest, RemovesWhatAFileNamesOrAllThatMatches) {
    const auto removeItems = [&](const QByteArray& named) {
        builder.addFile(u"/items.json"_s, named);
        return cleanup(u"remove org.example.ash --yes --items "_s + hostPath(u"/items.json"_s));
    };
    // Nobody writes to the pipe: to open it would wait for ever.
    const QString pipe = hostPath(u"/pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe), 0600), 0);
    EXPECT_EQ(cleanup(u"remove org.example.ash --yes --items "_s + pipe).code(), u"unreadable");
    EXPECT_EQ(run(u"smart-folders add "_s + pipe).code(), u"unreadable");
    EXPECT_EQ(removeItems("[1]").code(), u"damaged");
    EXPECT_EQ(removeItems("[\"/Users/ada/Documents\"]").code(), u"notReviewed");
    EXPECT_EQ(removeItems("[]").code(), u"nothingSelected");
    EXPECT_EQ(cleanup(u"remove org.example.ash --all-matches --items x"_s).status, 2);
    // The answer of a review names what lay there then.
    const QByteArray reviewed = cleanup(u"review org.example.ash"_s).out;
    const QString there = hostPath(support), away = hostPath(u"/away"_s);
    ASSERT_TRUE(QDir().rename(there, away) && QDir().mkpath(there));
    EXPECT_EQ(removeItems(reviewed).code(), u"changed");
    EXPECT_TRUE(exists(bundle));
    ASSERT_TRUE(QDir().rmdir(there) && QDir().rename(away, there));
    EXPECT_EQ(removeItems("[\"" + support.toUtf8() + "\"]").status, 0);
    EXPECT_TRUE(exists(bundle));
    EXPECT_FALSE(exists(support));
    EXPECT_EQ(text(u"list"_s), "Page 1\n  Ash\n  Beech\n");
    EXPECT_EQ(cleanup(u"restore"_s).status, 0);
    EXPECT_TRUE(exists(support));
    EXPECT_EQ(cleanup(u"remove org.example.ash --yes --all-matches"_s).status, 0);
    EXPECT_FALSE(exists(support));

    const Result batch =
        run(u"batch -"_s, "cleanup remove org.example.beech --yes\nlist\nundo\nredo\nundo\nhistory\n");
    EXPECT_EQ(batch.status, 0) << batch.out.toStdString() << batch.error.toStdString();
    EXPECT_TRUE(batch.out.trimmed().endsWith(R"({"redo":["Move App to Trash"],"undo":[]})"));
    EXPECT_TRUE(exists(u"/Applications/Beech.app"_s));
}

TEST_F(CleanupCommandsTest, AnOpenApplicationIsAskedToQuitFirst) {
    builder.addFile(sample::MacBuilder::toolData() + u"/running"_s,
                    "org.example.ash\t/Applications/Ash.app/Contents/MacOS/Ash\n");
    EXPECT_TRUE(cleanup(u"remove org.example.ash"_s).error.contains("Ash is open"));
    const Result removed = run(u"cleanup remove org.example.ash --yes"_s, {}, false);
    EXPECT_EQ(removed.status, 0) << removed.error.toStdString();
    EXPECT_TRUE(removed.out.contains("“Ash” is open"));
    EXPECT_FALSE(exists(bundle));
    EXPECT_EQ(read(sample::MacBuilder::toolData() + u"/quit.log"_s), "org.example.ash\n");
}

TEST_F(CleanupCommandsTest, AReviewThatEndsUnderACommandEndsIt) {
    RunningLauncher running(root.path());
    LauncherCleanup& cleanup = running.launcher.cleanup();
    Mailbox& mailbox = running.machine.workers.mailbox();
    const auto until = [&](const std::function<bool()>& isSo) {
        test::waitUntil(isSo, [&] { mailbox.waitAndDrain(); });
    };
    std::function<void(Cancellation)> leave;
    const auto removeUnder = [&](const std::function<void()>& meanwhile) {
        std::optional<int> status;
        QByteArray said;
        running.interpreter.run(
            {u"cleanup"_s, u"remove"_s, u"org.example.ash"_s, u"--yes"_s}, {},
            {.out = [](const QByteArray&) {},
             .error = [&](const QByteArray& text) { said += text; },
             .finished = [&](int ended) { status = ended; },
             .whenCancelled = [&](std::function<void(Cancellation)> call) { leave = call; }});
        meanwhile();
        until([&] { return status.has_value(); });
        EXPECT_EQ(*status, 1);
        return said;
    };
    EXPECT_EQ(removeUnder([&] { leave(Cancellation::disconnected); }), "The removal was cancelled.\n");
    EXPECT_EQ(cleanup.phase(), LauncherCleanup::Phase::idle);
    const QByteArray closed = "The review was closed meanwhile.\n";
    EXPECT_EQ(removeUnder([&] { cleanup.close(); }), closed);
    EXPECT_EQ(removeUnder([&] { cleanup.open(u"org.example.beech"_s); }), closed);
    until([&] { return cleanup.phase() == LauncherCleanup::Phase::review && !cleanup.isMeasuring(); });
    EXPECT_EQ(cleanup.app().name, u"Beech") << "the other review goes on";
    EXPECT_TRUE(exists(bundle) && exists(u"/Applications/Beech.app"_s));
}

TEST_F(CleanupCommandsTest, SaysThatThereIsNoHelper) {
    const Result status = run(u"helper status"_s);
    EXPECT_EQ(status.status, 0);
    EXPECT_EQ(status.json()[u"status"].toString(), u"unavailable");
    EXPECT_EQ(status.json()[u"description"].toString(), removalHelperDescription());
    EXPECT_EQ(status.json().size(), 3);
}

} // namespace
} // namespace tessellar
