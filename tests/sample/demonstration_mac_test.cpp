#include "sample/catalog.h"
#include "sample/demonstration_mac.h"
#include "sample/launchpad_database.h"
#include "sample/trees.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <set>

namespace tessellar::sample {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::Contains;
using testing::Key;

TEST(DemonstrationMac, IsTheSameToTheByteEveryTime) {
    const QTemporaryDir first;
    const QTemporaryDir second;
    MacBuilder one(first.path());
    MacBuilder other(second.path());
    buildDemonstrationMac(one, 14);
    buildDemonstrationMac(other, 14);
    ASSERT_EQ(one.failure(), std::nullopt);
    const auto tree = test::treeOf(first.path());
    EXPECT_EQ(tree, test::treeOf(second.path()));
    EXPECT_THAT(tree, Contains(Key("usr/bin/codesign")));
    EXPECT_THAT(tree, Contains(Key("Applications/Oldtimer.APP/Contents/Info.plist")));
}

TEST(DemonstrationMac, TheCatalogNamesEachApplicationOnceAndDrawsWhatThereIs) {
    const QList<QByteArray> glyphs = glyphNames();
    std::set<QByteArray> names;
    std::set<Kind> kinds;
    for (const CatalogEntry& entry : catalog()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        EXPECT_TRUE(glyphs.contains(entry.icon.glyph)) << entry.icon.glyph;
        EXPECT_LT(entry.vendor, int(vendors().size())) << entry.name;
        kinds.insert(entry.kind);
    }
    EXPECT_EQ(kinds.size(), std::size_t(Kind::user) + 1);
    EXPECT_GE(names.size(), 110u);
}

QStringList rows(const QString& file, const char* query) {
    sqlite3* database = nullptr;
    sqlite3_open_v2(file.toUtf8(), &database, SQLITE_OPEN_READONLY, nullptr);
    QStringList result;
    sqlite3_exec(
        database, query,
        [](void* list, int count, char** values, char**) {
            QStringList row;
            for (int i = 0; i < count; ++i)
                row.append(values[i] ? QString::fromUtf8(values[i]) : u"NULL"_s);
            static_cast<QStringList*>(list)->append(row.join(u'|'));
            return 0;
        },
        &result, nullptr);
    sqlite3_close(database);
    return result;
}

TEST(OldLaunchpad, ItsRowsStandInTheLogWhileItIsInUse) {
    const QTemporaryDir folder;
    MacBuilder mac(folder.path());
    const OldLaunchpad arrangement{.pages = {{OldTile{u"Fern"_s, u"com.example.fern"_s},
                                              OldFolder{u"Spiele"_s,
                                                        {{{u"Moss"_s, u"com.example.moss"_s}},
                                                         {{u"Reed"_s, u"com.example.reed"_s}}}}},
                                             {OldTile{u"Sedge"_s, u"com.example.sedge"_s}}}};
    const QString file = mac.hostPath(addOldLaunchpad(mac, arrangement));
    ASSERT_EQ(mac.failure(), std::nullopt);

    const QString alone = folder.filePath(u"alone.db"_s);
    QFile::copy(file, alone);
    EXPECT_EQ(rows(alone, "SELECT count(*) FROM items"), QStringList{u"0"_s});
    // Down from the root: pages, what is on them, folders' pages, and what is on those.
    EXPECT_EQ(rows(file,
                   "SELECT page.ordering, item.ordering, item.type, apps.title, groups.title, "
                   "inner_page.ordering, "
                   "inner_apps.title FROM items root JOIN items page ON page.parent_id = root.rowid "
                   "JOIN items item ON item.parent_id = page.rowid LEFT JOIN apps ON apps.item_id = "
                   "item.rowid "
                   "LEFT JOIN groups ON groups.item_id = item.rowid "
                   "LEFT JOIN items inner_page ON inner_page.parent_id = item.rowid "
                   "LEFT JOIN items inner_item ON inner_item.parent_id = inner_page.rowid "
                   "LEFT JOIN apps inner_apps ON inner_apps.item_id = inner_item.rowid "
                   "WHERE root.uuid = 'ROOTPAGE' AND page.uuid != 'HOLDINGPAGE' "
                   "ORDER BY page.ordering, item.ordering, inner_page.ordering"),
              (QStringList{u"1|0|4|Fern|NULL|NULL|NULL"_s, u"1|1|2|NULL|Spiele|0|Moss"_s,
                           u"1|1|2|NULL|Spiele|1|Reed"_s, u"2|0|4|Sedge|NULL|NULL|NULL"_s}));
}

} // namespace
} // namespace tessellar::sample
