#include "model/reconciliation.h"

#include "model/drawn.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::app;
using test::drawn;
using test::folder;
using test::idOf;
using test::sketch;

const Locale english(u"en_US"_s);

QList<AppEntry> scanOf(const QString& names) {
    QList<AppEntry> result;
    for (const QString& name : names.split(u' ', Qt::SkipEmptyParts)) {
        result.append(app(name));
        result.last().id = QUuid::createUuid(); // a scan's identifiers are its own
    }
    return result;
}

MergeResult merge(const Pages& pages, const QList<AppEntry>& scan, bool isRestore = false) {
    return mergeLayout(
        pages, {},
        {.scannedApps = scan,
         .isGone = [](const QString& path) { return !path.startsWith(u"/Volumes/Away/"); },
         .pageCapacity = 4,
         .isRestore = isRestore},
        english);
}

TEST(Merge, GoneApplicationsLeaveFoldersCloseUpAndNewOnesComeAtTheEndByName) {
    const struct {
        const char16_t* before;
        const char16_t* installed;
        const char16_t* after;
        const char16_t* restored = nullptr; ///< where that differs
    } cases[] = {
        {u"a b|c", u"b c", u"b|c"},
        {u"a|c", u"c", u"c"},
        {u"a [f: b c]", u"a", u"a"},
        {u"a [f: b c] d", u"a c d", u"a c d"},
        {u"[f: a|b c]", u"b c", u"[f: b c]"},
        {u"[o: [i: a b] c]", u"a c", u"[o: a c]"},
        {u"[o: [i: a b] c]", u"a", u"a"},
        {u"[o: [i: a b]]", u"a b", u"[i: a b]"},
        {u"[f: * a]", u"", u"*"},
        {u"a", u"", u""},
        {u"z y", u"z y b a C e d", u"z y a b|C d e", u"z y|a b C d|e"},
        // A page that holds more than the grid shows is full, and keeps what it has.
        {u"v w x y z", u"v w x y z a", u"v w x y z|a"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(QString::fromUtf16(c.before).toStdString());
        const auto scan = scanOf(QString::fromUtf16(c.installed));
        EXPECT_EQ(sketch(merge(drawn(c.before), scan).pages), QStringView(c.after));
        EXPECT_EQ(sketch(merge(drawn(c.before), scan, true).pages),
                  QStringView(c.restored ? c.restored : c.after));
    }
    EXPECT_EQ(sketch(defaultLayout(scanOf(u"b a"_s), 1, english)), u"a|b");
}

TEST(Merge, TilesThatShareAnIdentifierStandForTheirOwnApplications) {
    Pages pages = drawn(u"a gone b");
    pages[0][1].app()->id = pages[0][2].app()->id = idOf(u"a"_s);
    EXPECT_EQ(sketch(merge(pages, scanOf(u"a b c"_s)).pages), u"a b c");
}

TEST(Merge, AMatchedTileTakesTheScansDataButKeepsItsIdentityAndTheUsersName) {
    Pages before = drawn(u"Maple Oak");
    before[0][0].app()->name = u"My Tree"_s;
    auto scan = scanOf(u"Maple Oak"_s);
    scan[0].path = u"/Applications/Trees/Maple.app"_s;
    scan[0].originalName = scan[0].name = u"Maple 2"_s;
    scan[1].originalName = scan[1].name = u"Oak 2"_s;
    const MergeResult result = merge(before, scan);
    EXPECT_EQ(sketch(result.pages), u"My Tree Oak 2");
    EXPECT_EQ(result.pages[0][0].id(), before[0][0].id());
    EXPECT_EQ(result.pages[0][1].id(), before[0][1].id());
    EXPECT_EQ(result.pages[0][0].app()->originalName, u"Maple 2");
    EXPECT_EQ(result.pages[0][0].app()->path, scan[0].path);

    // One with another identifier takes the place under its own identity.
    scan[0] = scanOf(u"Maple"_s)[0];
    scan[0].bundleIdentifier = u"org.example.other"_s;
    const MergeResult other = merge(drawn(u"Maple Oak"), scan);
    EXPECT_EQ(sketch(other.pages), u"Maple Oak 2");
    EXPECT_NE(other.pages[0][0].id(), idOf(u"Maple"_s));
}

TEST(Merge, AliasesFollowTheirApplication) {
    AppEntry alias = app(u"Maple"_s);
    alias.id = idOf(u"alias"_s);
    alias.alias = AppAliasReference{u"org.example.maple"_s};
    const Pages before{{app(u"Maple"_s)}, {alias, app(u"Oak"_s)}};
    EXPECT_EQ(sketch(merge(before, scanOf(u"Maple Oak"_s)).pages), u"Maple|~Maple Oak");
    EXPECT_EQ(sketch(merge(before, scanOf(u"Oak"_s)).pages), u"Oak");

    QList<AppEntry> copies = scanOf(u"Maple Maple"_s);
    copies[1].path = u"/Applications/M2.app"_s;
    for (AppEntry& copy : copies)
        copy.isDuplicateBundleIdentifier = true;
    EXPECT_EQ(merge(before, copies).pages[1][0].app()->alias->appKey, copies[0].path);
    // An alias alone is no tile of the application's own.
    EXPECT_EQ(sketch(merge({{alias}}, scanOf(u"Maple"_s)).pages), u"~Maple Maple");
}

TEST(Merge, ApplicationsOutOfReachKeepTheirPlacesAndAreNotLostToOtherPages) {
    Pages before = drawn(u"[f: Away Gone Too]");
    Page& tiles = before[0][0].folder()->pages[0];
    for (const int i : {0, 2})
        tiles[i].app()->path = u"/Volumes/Away/%1.app"_s.arg(i);
    tiles[0].app()->name = u"Mine"_s;
    const AppEntry away = *tiles[0].app();
    const MergeResult result = merge(before, {});
    EXPECT_EQ(sketch(result.pages), u"[f: Mine Too]");
    EXPECT_EQ(result.unavailableAppKeys, QSet<QString>({appKey(away), u"org.example.too"_s}));

    const auto restored = [&](const Pages& pages) {
        return mergeLayout(pages, {},
                           {.scannedApps = scanOf(u"Oak"_s), .isRestore = true, .unseenApps = {away}},
                           english);
    };
    EXPECT_EQ(sketch(restored(drawn(u"Oak")).pages), u"Oak|Mine");
    EXPECT_EQ(restored(drawn(u"Oak")).unavailableAppKeys, QSet<QString>{appKey(away)});
    EXPECT_EQ(sketch(restored({{folder(u"f"_s, {{away, app(u"Oak"_s)}})}}).pages), u"[f: Mine Oak]");
}

} // namespace
} // namespace tessellar
