// Commands that put one arrangement in place of another, killed before each of their changes of the
// disk.

#include "model/drawn.h"
#include "model/layout_document.h"
#include "sample/launchpad_database.h"
#include "tessellarctl_fixture.h"
#include "tests/platform/program_tracer.h"

#include <filesystem>

namespace tessellar {
namespace {

using test::sketch;

class KilledCommandsTest : public TessellarctlTest {
protected:
    const QString arranged = u"Beech [Trees: Ash Mine]"_s;

    KilledCommandsTest() {
        builder.addApplication({.name = u"Cedar"_s, .identifier = u"org.example.cedar"_s});
        Pages pages = test::drawn(u"Beech [Trees: Ash Cedar]");
        pages[0][1].folder()->pages[0][1].app()->name = u"Mine"_s;
        builder.addFile(layout, json::write(json::encode(LayoutDocument{
                                    .pages = pages, .hiddenKeys = {u"org.example.beech"_s}})));
    }

    QString shown() {
        const Result list = run(u"list"_s);
        EXPECT_EQ(list.status, 0) << list.error.toStdString();
        const auto document = json::decode<LayoutDocument>(list.json());
        EXPECT_TRUE(document);
        return document
                   ? sketch(document->pages) + (document->hiddenKeys.isEmpty() ? u""_s : u" hidden"_s)
                   : QString();
    }
    QStringList backedUp() {
        QStringList all;
        const QString backups = data + u"/Backups"_s;
        for (const QString& name : QDir(hostPath(backups)).entryList({u"layout-*.json"_s})) {
            const auto backup = json::decodeDocument<BackupDocument>(read(backups + u'/' + name));
            EXPECT_TRUE(backup) << name.toStdString() << " is whole";
            if (backup)
                all += sketch(backup->document.pages);
        }
        return all;
    }
};

TEST_F(KilledCommandsTest, LeaveTheArrangementBeforeOrTheOneAfterWithABackupOfTheFirst) {
    namespace fs = std::filesystem;
    const QString database = sample::addOldLaunchpad(
        builder,
        {.pages = {{sample::OldTile{u"Cedar"_s, u"org.example.cedar"_s}},
                   {sample::OldFolder{u"Two"_s,
                                      {{sample::OldTile{u"Ash"_s, u"org.example.ash"_s},
                                        sample::OldTile{u"Beech"_s, u"org.example.beech"_s}}}}}}});
    // Something to restore, other than what is there.
    const QString arrangement = run(u"arrangements save Kept"_s).json()[u"id"].toString();
    run(u"reset"_s);
    const QString backup = run(u"backups list"_s).list()[0][u"name"].toString();
    ASSERT_FALSE(backup.isEmpty());
    run(u"settings set gridRows 7"_s);
    run(u"rename org.example.ash Now"_s);
    const QString before = shown();
    ASSERT_EQ(before, u"Now Beech Cedar");

    const fs::path home = (root.path() + u"/Users/ada/Library"_s).toStdString();
    const fs::path pristine = (root.path() + u"/pristine"_s).toStdString();
    fs::copy(home, pristine, fs::copy_options::recursive);
    const auto startAgain = [&] {
        fs::remove_all(home);
        fs::copy(pristine, home, fs::copy_options::recursive);
    };
    const std::pair<QString, QString> cases[] = {
        {u"reset"_s, u"Ash Beech Cedar"_s},
        {u"backups restore "_s + backup, arranged + u" hidden"_s},
        {u"arrangements restore "_s + arrangement, arranged + u" hidden"_s},
        {u"import-launchpad --database "_s + database, u"Cedar|[Two: Now Beech]"_s}};
    int done = 0; // of several files: where one is written, there is no change of the disk after it
    for (const auto& [line, after] : cases) {
        SCOPED_TRACE(line.toStdString());
        std::vector<std::string> command{TESSELLARCTL, "--root", root.path().toStdString()};
        for (const QString& word : line.split(u' '))
            command.push_back(word.toStdString());
        int left = 0;
        for (std::size_t step = 0;; ++step) {
            startAgain();
            const test::KilledRun killed = test::runKilledAt(command, step);
            if (!killed.isTraceable)
                GTEST_SKIP() << "This process may not trace its children.";
            const QString now = shown();
            if (killed.exitStatus) {
                EXPECT_EQ(killed.exitStatus, 0);
                EXPECT_EQ(now, after);
                EXPECT_TRUE(backedUp().contains(before));
                break;
            }
            ASSERT_LT(step, 500u) << "it never ends";
            ++(now == before ? left : done);
            ASSERT_TRUE(now == before || now == after)
                << "killed at " << step << " it left " << now.toStdString();
            EXPECT_TRUE(now == before || backedUp().contains(before));
        }
        EXPECT_GT(left, 3);
    }
    EXPECT_GT(done, 0);
}

} // namespace
} // namespace tessellar
