#include "launcher/launcher_cleanup.h"
#include "sample/leftovers.h"
#include "sample/tools.h"
#include "tessellarctl_fixture.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

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

    bool exists(const QString& path) const { return QFileInfo::exists(root.path() + path); }
    QStringList trash() const {
        return QDir(root.path() + u"/Users/ada/.Trash"_s)
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    const QString ash = u"org.example.ash"_s;
    const QString bundle = u"/Applications/Ash.app"_s;
    const QString preferences = u"/Users/ada/Library/Preferences/org.example.ash.plist"_s;
    const QString support = u"/Users/ada/Library/Application Support/Ash"_s;
    const QString systemPreferences = u"/Library/Preferences/org.example.ash.plist"_s;
};

TEST_F(CleanupCommandsTest, ReviewsWhatARemovalCouldTake) {
    const Result review = run({u"cleanup"_s, u"review"_s, ash});
    ASSERT_EQ(review.status, 0) << review.error.toStdString();
    EXPECT_EQ(review.json().keys(), (QStringList{u"app"_s, u"items"_s}));
    EXPECT_EQ(review.json().value(u"app").toObject().value(u"name").toString(), u"Ash");
    QHash<QString, QJsonObject> items;
    for (const QJsonValue& item : review.json().value(u"items").toArray())
        items.insert(item.toObject().value(u"path").toString(), item.toObject());
    EXPECT_EQ(items.size(), 4);
    const QJsonObject item = items.value(support);
    EXPECT_EQ(item.keys(), (QStringList{u"domain"_s, u"identity"_s, u"location"_s, u"match"_s,
                                        u"needsAdministrator"_s, u"path"_s, u"preselected"_s,
                                        u"reason"_s, u"size"_s, u"sizeIsPartial"_s}));
    EXPECT_EQ(item.value(u"location").toString(), u"Application Support");
    EXPECT_EQ(item.value(u"match").toString(), u"medium");
    EXPECT_FALSE(item.value(u"preselected").toBool(true));
    EXPECT_GT(item.value(u"size").toInteger(), 0);
    EXPECT_EQ(items.value(bundle).value(u"match").toString(), u"appBundle");
    EXPECT_EQ(items.value(systemPreferences).value(u"domain").toString(), u"system");
    const QByteArray text = run({u"cleanup"_s, u"review"_s, ash}, {}, false).out;
    EXPECT_TRUE(text.contains("[x]"));
    EXPECT_TRUE(text.contains("; 1 item will stay\n")) << text.toStdString();
    EXPECT_EQ(run({u"cleanup"_s, u"review"_s, u"nobody"_s}).code(), u"unknownApplication");
}

TEST_F(CleanupCommandsTest, RemovesOnlyAfterAYesAndAnotherProcessRestores) {
    const Result asked = run({u"cleanup"_s, u"remove"_s, ash});
    EXPECT_EQ(asked.status, 1);
    EXPECT_EQ(asked.code(), u"confirmationRequired");
    EXPECT_TRUE(asked.error.contains(preferences.toUtf8()));
    EXPECT_FALSE(asked.error.contains(support.toUtf8()));
    EXPECT_TRUE(asked.error.contains("--yes goes on"));
    EXPECT_TRUE(exists(bundle));

    const Result removed = run({u"cleanup"_s, u"remove"_s, ash, u"--yes"_s});
    EXPECT_EQ(removed.status, 0) << removed.error.toStdString();
    EXPECT_EQ(removed.json().value(u"log").toArray().size(), 3);
    EXPECT_FALSE(exists(bundle));
    EXPECT_FALSE(exists(preferences));
    EXPECT_FALSE(exists(systemPreferences));
    EXPECT_TRUE(exists(support));
    EXPECT_EQ(trash().size(), 3);
    EXPECT_EQ(run({u"list"_s}, {}, false).out, "Page 1\n  Beech\n");
    const QJsonArray past = run({u"cleanup"_s, u"history"_s}).json().value(u"removals").toArray();
    ASSERT_EQ(past.size(), 1);
    EXPECT_EQ(past[0][u"name"].toString(), u"Ash");
    EXPECT_EQ(past[0][u"inTrash"].toInt(), 3);
    EXPECT_EQ(run({u"cleanup"_s, u"restore"_s, u"first"_s}).code(), u"unknownRemoval");
    const Result restored = run({u"cleanup"_s, u"restore"_s, past[0][u"id"].toString()});
    EXPECT_EQ(restored.status, 0) << restored.error.toStdString();
    EXPECT_TRUE(exists(bundle));
    EXPECT_TRUE(exists(preferences));
    EXPECT_TRUE(trash().isEmpty());
    EXPECT_EQ(run({u"list"_s}, {}, false).out, "Page 1\n  Ash\n  Beech\n");
    EXPECT_EQ(run({u"cleanup"_s, u"restore"_s}).code(), u"nothingToRestore");
}

TEST_F(CleanupCommandsTest, RemovesWhatAFileNamesOrAllThatMatches) {
    const auto itemsFile = [&](const QByteArray& text) {
        QFile file(root.path() + u"/items.json"_s);
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(text);
        return QStringList{u"cleanup"_s, u"remove"_s, ash, u"--yes"_s, u"--items"_s, file.fileName()};
    };
    EXPECT_EQ(run(itemsFile("[1]")).code(), u"damaged");
    EXPECT_EQ(run(itemsFile("[\"/Users/ada/Documents\"]")).code(), u"notReviewed");
    EXPECT_EQ(run(itemsFile("[]")).code(), u"nothingSelected");
    EXPECT_EQ(run({u"cleanup"_s, u"remove"_s, ash, u"--all-matches"_s, u"--items"_s, u"x"_s}).status,
              2);
    // The answer of a review names what lay there then.
    const QByteArray reviewed = run({u"cleanup"_s, u"review"_s, ash}).out;
    ASSERT_TRUE(QDir().rename(root.path() + support, root.path() + u"/away"_s));
    ASSERT_TRUE(QDir().mkpath(root.path() + support));
    EXPECT_EQ(run(itemsFile(reviewed)).code(), u"changed");
    EXPECT_TRUE(exists(bundle));
    ASSERT_TRUE(QDir().rmdir(root.path() + support));
    ASSERT_TRUE(QDir().rename(root.path() + u"/away"_s, root.path() + support));
    EXPECT_EQ(run(itemsFile("[\"" + support.toUtf8() + "\"]")).status, 0);
    EXPECT_TRUE(exists(bundle));
    EXPECT_FALSE(exists(support));
    EXPECT_EQ(run({u"list"_s}, {}, false).out, "Page 1\n  Ash\n  Beech\n");
    EXPECT_EQ(run({u"cleanup"_s, u"restore"_s}).status, 0);
    EXPECT_TRUE(exists(support));
    EXPECT_EQ(run({u"cleanup"_s, u"remove"_s, ash, u"--yes"_s, u"--all-matches"_s}).status, 0);
    EXPECT_FALSE(exists(support));
    EXPECT_EQ(trash().size(), 4);

    const Result batch =
        run({u"batch"_s, u"-"_s},
            "cleanup remove org.example.beech --yes\nlist\nundo\nredo\nundo\nhistory\n");
    EXPECT_EQ(batch.status, 0) << batch.out.toStdString() << batch.error.toStdString();
    EXPECT_TRUE(batch.out.trimmed().endsWith(R"({"redo":["Move App to Trash"],"undo":[]})"));
    EXPECT_TRUE(exists(u"/Applications/Beech.app"_s));
}

TEST_F(CleanupCommandsTest, AnOpenApplicationIsAskedToQuitFirst) {
    const QString running = sample::MacBuilder::toolData() + u"/running"_s;
    const QString line = ash + u"\t/Applications/Ash.app/Contents/MacOS/Ash"_s;
    builder.addFile(running, (line + u'\n').toUtf8());
    EXPECT_TRUE(run({u"cleanup"_s, u"remove"_s, ash}).error.contains("Ash is open"));
    const Result removed = run({u"cleanup"_s, u"remove"_s, ash, u"--yes"_s}, {}, false);
    EXPECT_EQ(removed.status, 0) << removed.error.toStdString();
    EXPECT_TRUE(removed.out.contains("“Ash” is open"));
    EXPECT_FALSE(exists(bundle));
    QFile quit(root.path() + sample::MacBuilder::toolData() + u"/quit.log"_s);
    ASSERT_TRUE(quit.open(QFile::ReadOnly));
    EXPECT_EQ(quit.readAll(), "org.example.ash\n");
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
            {u"cleanup"_s, u"remove"_s, ash, u"--yes"_s}, {},
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
    const Result status = run({u"helper"_s, u"status"_s});
    EXPECT_EQ(status.status, 0);
    EXPECT_EQ(status.json(),
              (QJsonObject{{u"status"_s, u"unavailable"_s},
                           {u"description"_s, removalHelperDescription()},
                           {u"message"_s, u"Could not connect to the administrator helper."_s}}));
}

} // namespace
} // namespace tessellar
