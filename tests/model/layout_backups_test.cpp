#include "model/layout_backups.h"

#include "support/items.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(LayoutBackups, AreListedReadAndBoundedInNumberAndAge) {
    const test::TestMachine machine;
    const QString folder = u"/Library/T"_s;
    const LayoutBackups backups(machine.machine.files, folder);
    EXPECT_TRUE(backups.list().isEmpty());
    const Instant now = *Instant::fromIso8601(u"2026-11-20T12:00:00Z");
    const auto write = [&](int number, Instant date, const QByteArray& bytes = {}) {
        const BackupDocument backup{
            date, u"arrangement-restore"_s, {}, {.pages = {{test::app(QString::number(number))}}}};
        const QString name =
            date.toIso8601().replace(u':', u'-') + u"-%1"_s.arg(number, 8, 10, QChar(u'0'));
        machine.write(folder + u"/Backups/layout-"_s + name + u".json"_s,
                      bytes.isEmpty() ? json::write(json::encode(backup)) : bytes);
        return name;
    };
    using std::chrono::days;
    QStringList recent;
    for (int i = 0; i < 95; ++i)
        recent += write(i, now - days(i));
    for (int i = 95; i < 105; ++i)
        write(i, now - days(360) - days(i - 95));
    const QString damaged = write(200, now - days(1) - std::chrono::hours(1), "{");
    machine.write(folder + u"/Backups/unreadable-layout-2020-01-01T00-00-00Z-00000000.json"_s, "x");
    machine.write(folder + u"/Backups/layout-of-mine.json"_s, "x");

    const auto all = backups.list();
    ASSERT_EQ(all.size(), 105);
    EXPECT_EQ(all[0].name, recent[0]);
    EXPECT_EQ(all[0].appCount, 1);
    EXPECT_EQ(backups.read(recent[1])->value.document.pages[0][0].app()->name, u"1"_s);
    EXPECT_EQ(backups.read(damaged).error().code, FileError::Code::damaged);
    for (const QString& odd : {u"../../layout"_s, u""_s, u"2026"_s, recent[1] + u"/x"_s})
        EXPECT_EQ(backups.read(odd).error().code, FileError::Code::notFound);

    backups.prune(now);
    EXPECT_EQ(backups.list().size(), 99) << "a hundred with the damaged one";
    backups.prune(now + days(10'000));
    EXPECT_EQ(backups.list().size(), 9);
    EXPECT_EQ(machine.machine.files.entries(folder + u"/Backups"_s)->size(), 12);
}

} // namespace
} // namespace tessellar
