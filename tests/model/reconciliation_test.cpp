#include "model/reconciliation.h"

#include "support/items.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <random>

namespace tessellar {
namespace {

using test::app;
using test::folder;
using test::sketch;

const Locale english(QStringLiteral("en_US"));

QList<AppEntry> scanOf(const QStringList& names) {
    QList<AppEntry> result;
    for (const QString& name : names) {
        result.append(app(name));
        result.last().id = QUuid::createUuid(); // a scan's identifiers are its own
    }
    return result;
}

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

MergeResult merge(const Pages& pages, const QList<AppEntry>& scan, bool isRestore = false,
                  const QSet<QString>& hidden = {}) {
    return mergeLayout(
        pages, hidden,
        {.scannedApps = scan,
         .isGone = [](const QString& path) { return !path.startsWith(u"/Volumes/Away/"); },
         .pageCapacity = 4,
         .isRestore = isRestore},
        english);
}

/// Two copies of one application.
QList<AppEntry> copiesOf(const QString& name, const QStringList& paths) {
    QList<AppEntry> result;
    for (const QString& path : paths) {
        result.append(app(name));
        result.last().id = QUuid::createUuid();
        result.last().path = path;
        result.last().isDuplicateBundleIdentifier = paths.size() > 1;
    }
    return result;
}

TEST(Merge, GoneApplicationsLeaveAndFoldersCloseUpFromTheInsideOut) {
    const struct {
        Pages before;
        const char* installed;
        const char* after;
    } cases[] = {
        {{{app(u"a"_qs), app(u"b"_qs)}, {app(u"c"_qs)}}, "b c", "b|c"},
        {{{app(u"a"_qs)}, {app(u"c"_qs)}}, "c", "c"},
        {{{app(u"a"_qs), folder(u"f"_qs, {{app(u"b"_qs), app(u"c"_qs)}})}}, "a", "a"},
        {{{app(u"a"_qs), folder(u"f"_qs, {{app(u"b"_qs), app(u"c"_qs)}}), app(u"d"_qs)}},
         "a c d",
         "a c d"},
        {{{folder(u"f"_qs, {{app(u"a"_qs)}, {app(u"b"_qs), app(u"c"_qs)}})}}, "b c", "[f: b c]"},
        {{{folder(u"o"_qs, {{folder(u"i"_qs, {{app(u"a"_qs), app(u"b"_qs)}}), app(u"c"_qs)}})}},
         "a c",
         "[o: a c]"},
        {{{folder(u"o"_qs, {{folder(u"i"_qs, {{app(u"a"_qs), app(u"b"_qs)}}), app(u"c"_qs)}})}},
         "a",
         "a"},
        {{{folder(u"o"_qs, {{folder(u"i"_qs, {{app(u"a"_qs), app(u"b"_qs)}})}})}}, "a b", "[i: a b]"},
        {{{folder(u"f"_qs, {{SmartFolderReference{QUuid::createUuid()}, app(u"a"_qs)}})}}, "", "*"},
        {{{app(u"a"_qs)}}, "", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sketch(merge(c.before, scanOf(words(c.installed))).pages), QLatin1StringView(c.after))
            << sketch(c.before).toStdString() << " with " << c.installed;
}

TEST(Merge, TilesThatShareAnIdentifierStandForTheirOwnApplications) {
    AppEntry a = app(u"a"_qs);
    AppEntry gone = app(u"gone"_qs);
    AppEntry b = app(u"b"_qs);
    gone.id = b.id = a.id;
    EXPECT_EQ(sketch(merge({{a, gone, b}}, scanOf(words("a b c"))).pages), u"a b c");
}

TEST(Merge, NewApplicationsComeAtTheEndInAlphabeticalOrder) {
    const Pages before{{app(u"z"_qs), app(u"y"_qs)}};
    const auto scan = scanOf(words("z y b a C e d"));
    EXPECT_EQ(sketch(merge(before, scan).pages), u"z y a b|C d e");
    EXPECT_EQ(sketch(merge(before, scan, true).pages), u"z y|a b C d|e");
    // A page that holds more than the grid shows is full, and keeps what it has.
    const Pages crowded{{app(u"v"_qs), app(u"w"_qs), app(u"x"_qs), app(u"y"_qs), app(u"z"_qs)}};
    EXPECT_EQ(sketch(merge(crowded, scanOf(words("v w x y z a"))).pages), u"v w x y z|a");
    EXPECT_EQ(sketch(defaultLayout(scanOf(words("b a")), 1, english)), u"a|b");
}

TEST(Merge, AMatchedTileTakesTheScansDataButKeepsItsIdentityAndTheUsersName) {
    AppEntry stored = app(u"Maple"_qs);
    stored.name = QStringLiteral("My Tree");
    AppEntry plain = app(u"Oak"_qs);
    auto scan = scanOf(words("Maple Oak"));
    scan[0].path = QStringLiteral("/Applications/Trees/Maple.app");
    scan[0].originalName = scan[0].name = QStringLiteral("Maple 2");
    scan[1].originalName = scan[1].name = QStringLiteral("Oak 2");
    const MergeResult result = merge({{stored, plain}}, scan);
    const AppEntry& maple = *result.pages[0][0].app();
    EXPECT_EQ(maple.id, stored.id);
    EXPECT_EQ(maple.name, u"My Tree");
    EXPECT_EQ(maple.originalName, u"Maple 2");
    EXPECT_EQ(maple.path, scan[0].path);
    EXPECT_EQ(result.pages[0][1].app()->name, u"Oak 2");
    EXPECT_EQ(result.pages[0][1].app()->id, plain.id);
}

TEST(Merge, ASecondCopyCostsTheFirstNeitherPlaceNorHiddenState) {
    const QString here = QStringLiteral("/Applications/Maple.app");
    const QString there = QStringLiteral("/Users/ada/Applications/Maple.app");
    const QString key = QStringLiteral("org.example.maple");
    const Pages before{{app(u"Maple"_qs), app(u"Oak"_qs)}};
    const QList<AppEntry> oak = scanOf(words("Oak"));

    const MergeResult two = merge(before, copiesOf(u"Maple"_qs, {there, here}) + oak, false, {key});
    ASSERT_EQ(sketch(two.pages), u"Maple Oak Maple");
    EXPECT_EQ(two.pages[0][0].id(), before[0][0].id());
    EXPECT_EQ(two.pages[0][0].app()->path, here);
    EXPECT_EQ(two.hiddenKeys, QSet<QString>{here});
    EXPECT_EQ(two.changedKeys.value(key), here);

    const MergeResult one =
        merge(two.pages, copiesOf(u"Maple"_qs, {here}) + oak, false, two.hiddenKeys);
    EXPECT_EQ(sketch(one.pages), u"Maple Oak");
    EXPECT_EQ(one.pages[0][0].id(), before[0][0].id());
    EXPECT_EQ(one.hiddenKeys, QSet<QString>{key});

    // The first goes and the second stays, in the second's place.
    const MergeResult other =
        merge(two.pages, copiesOf(u"Maple"_qs, {there}) + oak, false, two.hiddenKeys);
    EXPECT_EQ(sketch(other.pages), u"Oak Maple");
    EXPECT_EQ(other.pages[0][1].id(), two.pages[0][2].id());
}

TEST(Merge, AliasesFollowTheirApplication) {
    AppEntry alias = app(u"Maple"_qs);
    alias.id = test::idOf(u"alias"_qs);
    alias.alias = AppAliasReference{QStringLiteral("org.example.maple")};
    const Pages before{{app(u"Maple"_qs)}, {alias, app(u"Oak"_qs)}};
    EXPECT_EQ(sketch(merge(before, scanOf(words("Maple Oak"))).pages), u"Maple|~Maple Oak");
    EXPECT_EQ(sketch(merge(before, scanOf(words("Oak"))).pages), u"Oak");

    const QString here = QStringLiteral("/Applications/Maple.app");
    const MergeResult two =
        merge(before, copiesOf(u"Maple"_qs, {here, QStringLiteral("/Applications/M2.app")}));
    EXPECT_EQ(two.pages[1][0].app()->alias->appKey, here);
    // An alias alone is no tile of the application's own.
    EXPECT_EQ(sketch(merge({{alias}}, scanOf(words("Maple"))).pages), u"~Maple Maple");
}

TEST(Merge, ApplicationsOutOfReachKeepTheirPlaces) {
    AppEntry away = app(u"Away"_qs);
    away.path = QStringLiteral("/Volumes/Away/Away.app");
    AppEntry awayToo = app(u"AwayToo"_qs);
    awayToo.path = QStringLiteral("/Volumes/Away/Too.app");
    const Pages before{{folder(u"f"_qs, {{away, app(u"Gone"_qs), awayToo}})}};
    const MergeResult result = merge(before, {});
    EXPECT_EQ(sketch(result.pages), u"[f: Away AwayToo]");
    EXPECT_EQ(result.unavailableAppKeys, QSet<QString>({QStringLiteral("org.example.away"),
                                                        QStringLiteral("org.example.awaytoo")}));
}

TEST(Merge, ApplicationsOutOfSightAreNotLostToOtherPages) {
    AppEntry away = app(u"Away"_qs);
    away.path = QStringLiteral("/Volumes/Away/Away.app");
    away.name = QStringLiteral("Mine");
    const auto merged = [&](const Pages& pages) {
        return mergeLayout(
            pages, {}, {.scannedApps = scanOf(words("Oak")), .isRestore = true, .unseenApps = {away}},
            english);
    };
    EXPECT_EQ(sketch(merged({{app(u"Oak"_qs)}}).pages), u"Oak|Mine");
    EXPECT_EQ(merged({{app(u"Oak"_qs)}}).unavailableAppKeys, QSet<QString>{appKey(away)});
    EXPECT_EQ(sketch(merged({{folder(u"f"_qs, {{away, app(u"Oak"_qs)}})}}).pages), u"[f: Mine Oak]");
}

TEST(Merge, AnApplicationWithAnotherIdentifierTakesThePlaceUnderItsOwnIdentity) {
    auto scan = scanOf(words("Maple Oak"));
    scan[0].bundleIdentifier = QStringLiteral("org.example.other");
    const MergeResult result = merge({{app(u"Maple"_qs), app(u"Oak"_qs)}}, scan);
    EXPECT_EQ(sketch(result.pages), u"Maple Oak");
    EXPECT_NE(result.pages[0][0].id(), test::idOf(u"Maple"_qs));
}

/// Laws that hold of any arrangement and any scan: no installed application is without a tile or has
/// two, nothing else has one, folders and pages are as they must be, and a second merge changes
/// nothing.
TEST(Merge, KeepsItsLawsOnGeneratedArrangements) {
    std::mt19937 random(7);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 300; ++round) {
        QStringList names;
        for (int i = below(30); i >= 0; --i)
            names += QString::number(i);
        std::ranges::shuffle(names, random);
        qsizetype next = 0;
        const auto build = [&](const auto& self, int depth) -> Pages {
            Pages pages;
            for (int p = below(3); p >= 0; --p) {
                Page page;
                for (int t = below(4); t >= 0 && next < names.size(); --t) {
                    if (depth < 3 && below(4) == 0)
                        page.append(folder(QStringLiteral("f%1").arg(next), self(self, depth + 1)));
                    else
                        page.append(app(names[next++]));
                }
                pages.append(page);
            }
            return pages;
        };
        const Pages before = build(build, 0);
        QStringList installed;
        for (int i = 0; i < 35; ++i)
            if (below(3))
                installed += QString::number(i);
        const auto scan = scanOf(installed);
        const MergeResult result = merge(before, scan, below(2));

        QStringList found;
        forEachItem(result.pages, [&](const LaunchpadItem& item) {
            if (const AppEntry* entry = item.app())
                found += entry->name;
            else if (const FolderEntry* f = item.folder()) {
                qsizetype tiles = 0;
                for (const Page& page : f->pages)
                    tiles += page.size();
                EXPECT_GT(tiles, 1);
            }
            return true;
        });
        std::ranges::sort(found);
        std::ranges::sort(installed);
        EXPECT_EQ(found, installed);
        for (const Page& page : result.pages)
            EXPECT_FALSE(page.isEmpty());
        EXPECT_EQ(merge(result.pages, scan).pages, result.pages);
    }
}

} // namespace
} // namespace tessellar
