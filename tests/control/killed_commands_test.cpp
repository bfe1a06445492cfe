// Commands that put one arrangement in place of another, killed before each of their changes of the
// disk.

#include "model/layout_document.h"
#include "sample/launchpad_database.h"
#include "support/items.h"
#include "tessellarctl_fixture.h"
#include "tests/platform/program_tracer.h"

#include <QDir>
#include <QFile>

#include <filesystem>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::app;
using test::folder;
using test::sketch;

class KilledCommandsTest : public TessellarctlTest {
protected:
    const QString data = u"/Users/ada/Library/Application Support/com.tessellar.app"_s;
    const QString arranged = u"Beech [Trees: Ash Mine]"_s;

    KilledCommandsTest() {
        builder.addApplication({.name = u"Cedar"_s, .identifier = u"org.example.cedar"_s});
        AppEntry renamed = app(u"Cedar"_s);
        renamed.name = u"Mine"_s;
        builder.addFile(
            data + u"/layout.json"_s,
            json::write(json::encode(LayoutDocument{
                .pages = {{app(u"Beech"_s), folder(u"Trees"_s, {{app(u"Ash"_s), renamed}})}},
                .hiddenKeys = {u"org.example.beech"_s}})));
    }

    QString shown() {
        const Result list = run({u"list"_s});
        EXPECT_EQ(list.status, 0) << list.error.toStdString();
        const auto document = json::decode<LayoutDocument>(list.json());
        EXPECT_TRUE(document);
        return document
                   ? sketch(document->pages) + (document->hiddenKeys.isEmpty() ? u""_s : u" hidden"_s)
                   : QString();
    }
    QStringList backedUp() {
        QStringList all;
        const QDir backups(root.path() + data + u"/Backups"_s);
        for (const QString& name : backups.entryList({u"layout-*.json"_s})) {
            QFile file(backups.filePath(name));
            EXPECT_TRUE(file.open(QFile::ReadOnly));
            const auto backup = json::decodeDocument<BackupDocument>(file.readAll());
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
    const QString arrangement = run({u"arrangements"_s, u"save"_s, u"Kept"_s}).json()[u"id"].toString();
    run({u"reset"_s});
    const QString backup = json::parse(run({u"backups"_s, u"list"_s}).out)
                               .value_or(QJsonValue())
                               .toArray()[0]
                               .toObject()[u"name"]
                               .toString();
    ASSERT_FALSE(backup.isEmpty());
    run({u"settings"_s, u"set"_s, u"gridRows"_s, u"7"_s});
    run({u"rename"_s, u"org.example.ash"_s, u"Now"_s});
    const QString before = shown();
    ASSERT_EQ(before, u"Now Beech Cedar");

    const fs::path home = (root.path() + u"/Users/ada/Library"_s).toStdString();
    const fs::path pristine = (root.path() + u"/pristine"_s).toStdString();
    fs::copy(home, pristine, fs::copy_options::recursive);
    const auto startAgain = [&] {
        fs::remove_all(home);
        fs::copy(pristine, home, fs::copy_options::recursive);
    };
    const struct {
        QStringList words;
        QString after;
    } cases[] = {{{u"reset"_s}, u"Ash Beech Cedar"_s},
                 {{u"backups"_s, u"restore"_s, backup}, arranged + u" hidden"_s},
                 {{u"arrangements"_s, u"restore"_s, arrangement}, arranged + u" hidden"_s},
                 {{u"import-launchpad"_s, u"--database"_s, database}, u"Cedar|[Two: Now Beech]"_s}};
    int done = 0; // of several files: where one is written, there is no change of the disk after it
    for (const auto& [words, after] : cases) {
        std::vector<std::string> command{TESSELLARCTL, "--root", root.path().toStdString()};
        for (const QString& word : words)
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
                EXPECT_EQ(now, after) << words.join(u' ').toStdString();
                EXPECT_TRUE(backedUp().contains(before));
                break;
            }
            ASSERT_LT(step, 500u) << "it never ends";
            ++(now == before ? left : done);
            ASSERT_TRUE(now == before || now == after)
                << words.join(u' ').toStdString() << " killed at " << step << " left "
                << now.toStdString();
            const QStringList kept = backedUp();
            if (now == after) {
                EXPECT_TRUE(kept.contains(before));
            }
        }
        EXPECT_GT(left, 3) << words.join(u' ').toStdString();
    }
    EXPECT_GT(done, 0);
}

} // namespace
} // namespace tessellar
