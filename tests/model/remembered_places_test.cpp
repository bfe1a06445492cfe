#include "model/reconciliation.h"

#include "model/drawn.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <random>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::app;
using test::drawn;
using test::folder;
using test::idOf;
using test::sketch;

const Locale english(u"en_US"_s);

/// A machine on which applications come and go, and the arrangement that is merged with it.
class RememberedPlacesTest : public testing::Test {
protected:
    void install(const QString& path, const QString& identifier) { installed.insert(path, identifier); }
    void install(const QString& names) {
        for (const QString& name : names.split(u' '))
            install(app(name).path, app(name).bundleIdentifier.value_or(QString()));
    }
    void remove(const QString& names) {
        for (const QString& name : names.split(u' '))
            installed.remove(app(name).path);
    }

    bool isOutOfReach(const QString& path) const {
        return isUnmounted && path.startsWith(u"/Volumes/");
    }
    bool isSeen(const QString& path) const { return installed.contains(path) && !isOutOfReach(path); }
    QList<AppEntry> scan() const {
        QHash<QString, int> copies;
        for (auto it = installed.begin(); it != installed.end(); ++it)
            copies[it.value()] += isSeen(it.key());
        QList<AppEntry> apps;
        for (auto it = installed.begin(); it != installed.end(); ++it) {
            if (!isSeen(it.key()))
                continue;
            AppEntry entry = app(it.key().section(u'/', -1).chopped(4));
            entry.id = QUuid::createUuid();
            entry.path = it.key();
            entry.bundleIdentifier = it.value();
            entry.isDuplicateBundleIdentifier = copies[it.value()] > 1;
            apps.append(entry);
        }
        return apps;
    }

    /// The arrangement with what is installed now.
    QString merge() {
        // What is remembered has been saved and read again.
        const auto read =
            json::decodeDocument<RememberedPlaces>(json::write(json::encode(result.places)));
        EXPECT_EQ(read, result.places);
        result = mergeLayout(
            pages, hiddenKeys,
            {.scannedApps = scan(),
             .isGone = [&](const QString& path) { return !isSeen(path) && !isOutOfReach(path); },
             .pageCapacity = 4,
             .places = *read,
             .now = now},
            english);
        pages = result.pages;
        hiddenKeys = result.hiddenKeys;
        expectLaws();
        story += installed.keys().join(u' ') + (isUnmounted ? u" away: "_s : u": "_s) + sketch(pages);
        return sketch(pages);
    }
    /// Laws of any merge: no application that is seen is without a tile of its own or has two, nothing
    /// else has one but what is out of reach, and folders and pages are as they must be.
    void expectLaws() {
        QStringList found;
        forEachItem(pages, [&](const LaunchpadItem& item) {
            if (const AppEntry* entry = item.app(); entry && !entry->alias) {
                EXPECT_TRUE(isSeen(entry->path) || isOutOfReach(entry->path));
                if (isSeen(entry->path))
                    found += entry->path;
            }
            EXPECT_TRUE(!item.folder() || previewItems(*item.folder(), 2).size() == 2);
            return true;
        });
        found.sort();
        QStringList expected = installed.keys();
        expected.removeIf([&](const QString& path) { return !isSeen(path); });
        EXPECT_EQ(found, expected);
        for (const Page& page : std::as_const(pages))
            EXPECT_FALSE(page.isEmpty());
    }

    QMap<QString, QString> installed; ///< identifiers by path
    bool isUnmounted = false;
    Pages pages;
    QSet<QString> hiddenKeys;
    Instant now{1'000'000};
    MergeResult result;
    QStringList story; ///< what was installed at each merge, and what came of it
};

TEST_F(RememberedPlacesTest, WhatComesBackGoesWhereItLay) {
    pages = drawn(u"a [f: b c] d|e|g [o: [i: h j] k]");
    pages[0][1].folder()->customSymbolName = u"star"_s;
    pages[1][0].app()->name = u"mine"_s;
    install(u"a b c d e g h j k"_s);
    const QString whole = merge();
    const Pages before = pages;
    const struct {
        const char16_t* gone;
        const char16_t* left;
        qsizetype folders;
        qsizetype closedPages;
    } cases[] = {
        {u"b", u"a c d|mine|g [o: [i: h j] k]", 1, 0},
        {u"b c", u"a d|mine|g [o: [i: h j] k]", 1, 0},
        {u"e", u"a [f: b c] d|g [o: [i: h j] k]", 0, 1},
        {u"h j", u"a [f: b c] d|mine|g k", 2, 0},
        {u"j k", u"a [f: b c] d|mine|g h", 2, 0},
        {u"a b c d", u"mine|g [o: [i: h j] k]", 1, 1},
        {u"a b c d e g h j k", u"", 3, 3},
    };
    for (const auto& c : cases) {
        const QString gone = QString::fromUtf16(c.gone);
        remove(gone);
        EXPECT_EQ(merge(), QStringView(c.left)) << gone.toStdString();
        EXPECT_EQ(result.dropped.size(), gone.count(u' ') + 1);
        EXPECT_EQ(result.closedFolders.size(), c.folders) << gone.toStdString();
        EXPECT_EQ(result.closedPages, c.closedPages) << gone.toStdString();
        install(u"n"_s); // something new comes meanwhile, and goes
        merge();
        remove(u"n"_s);
        merge();
        // One after the other, the last first.
        const QStringList names = gone.split(u' ');
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            install(*name);
            merge();
            EXPECT_EQ(result.returned.size(), 1);
        }
        EXPECT_EQ(pages, before) << whole.toStdString() << " is now " << sketch(pages).toStdString();
        merge();
        EXPECT_EQ(pages, before);
    }
}

TEST_F(RememberedPlacesTest, WhatTheUserDidMeanwhileStands) {
    pages = drawn(u"a [f: b c d] e");
    install(u"a b c d e"_s);
    merge();
    const Pages before = pages;
    Pages moved = drawn(u"a e|[f: c d]"); // and renamed
    moved[1][0].folder()->name = u"x"_s;
    const std::pair<Pages, const char16_t*> cases[] = {
        {moved, u"a e|[x: b c d]"},
        {drawn(u"a c d e"), u"a b c d e"}, // the folder was dissolved
        {drawn(u"[f: d c] e a"), u"[f: d b c] e a"},
        {drawn(u"[y: e d] [z: c a]"), u"[y: e d] [z: c a]|b"}};
    for (const auto& [arranged, after] : cases) {
        pages = before;
        result = {};
        remove(u"b"_s);
        merge();
        pages = arranged;
        install(u"b"_s);
        EXPECT_EQ(merge(), QStringView(after));
    }

    // The user undoes the folder after it has closed.
    for (const char16_t* undone : {u"b d|a c e", u"b e|d a c", u"d c e|a b"}) {
        pages = drawn(u"b [f: c a] d e");
        result = {};
        remove(u"a"_s);
        EXPECT_EQ(merge(), u"b c d e");
        pages = drawn(undone);
        merge();
        install(u"a"_s);
        EXPECT_EQ(merge(), QStringView(undone));
    }

    // The tile that was left of a closed folder is in another one now: it stays there.
    pages = drawn(u"[f: b c] [y: a d] e");
    result = {};
    remove(u"b"_s);
    EXPECT_EQ(merge(), u"c [y: a d] e");
    pages = drawn(u"[y: a d c] e");
    install(u"b"_s);
    EXPECT_EQ(merge(), u"b [y: a d c] e");
}

TEST_F(RememberedPlacesTest, WhatBelongsToOneCopyNeverPassesToTheOther) {
    const QString key = u"org.example.a"_s;
    const AppEntry one = app(u"a"_s);
    AppEntry two = one;
    two.id = idOf(u"two"_s);
    two.path = u"/Users/ada/Applications/a.app"_s;
    install(one.path, key);
    install(two.path, key);
    pages = {{one, two}};
    merge();
    AppEntry alias = *pages[0][0].app();
    alias.id = idOf(u"alias"_s);
    alias.alias = AppAliasReference{one.path};
    pages[0].append(alias);
    hiddenKeys = {one.path};
    merge();
    const Pages before = pages;

    installed.remove(two.path);
    EXPECT_EQ(merge(), u"a ~a");
    EXPECT_EQ(hiddenKeys, QSet<QString>{key});
    EXPECT_EQ(result.changedKeys.value(one.path), key);
    // The only copy moves to where the other one lay, and takes all that is its own along.
    installed.remove(one.path);
    install(two.path, key);
    EXPECT_EQ(merge(), u"a ~a");
    EXPECT_EQ(pages[0][0].app()->id, one.id);
    EXPECT_EQ(pages[0][0].app()->path, two.path);
    EXPECT_TRUE(result.changedKeys.isEmpty());
    EXPECT_EQ(hiddenKeys, QSet<QString>{key});
    install(one.path, key);
    merge();
    EXPECT_EQ(pages, before);
    EXPECT_EQ(hiddenKeys, QSet<QString>{one.path});
}

TEST_F(RememberedPlacesTest, APlaceIsForgottenWhenTheUserSaysSoOrInTime) {
    pages = drawn(u"b a c");
    install(u"a b c"_s);
    merge();
    const Pages before = pages;
    const auto goAndReturn = [&](const std::function<void(RememberedPlaces&)>& meanwhile) {
        pages = before;
        result = {};
        remove(u"a b"_s);
        merge();
        meanwhile(result.places);
        merge(); // a scan in between changes nothing
        install(u"a b"_s);
        return merge();
    };
    const QString path = app(u"b"_s).path;
    const auto isIt = [&](const AppEntry& entry) { return entry.path == path; };
    EXPECT_EQ(goAndReturn([](RememberedPlaces&) {}), u"b a c");
    EXPECT_EQ(goAndReturn([&](RememberedPlaces& places) {
                  ASSERT_EQ(summaries(places).size(), 2);
                  places.forget(isIt);
                  ASSERT_EQ(summaries(places).size(), 1);
                  EXPECT_EQ(summaries(places)[0].tile.name, u"a");
              }),
              u"a c b");
    EXPECT_EQ(goAndReturn([&](RememberedPlaces& places) { places.setRemoved(path, true); }), u"a c b");
    EXPECT_EQ(goAndReturn([&](RememberedPlaces& places) {
                  places.setRemoved(path, true);
                  merge();
                  result.places.setRemoved(path, false);
              }),
              u"b a c");
    using namespace std::chrono_literals;
    EXPECT_EQ(goAndReturn([&](RememberedPlaces&) { now = now + std::chrono::days(90); }), u"b a c");
    EXPECT_EQ(goAndReturn([&](RememberedPlaces&) { now = now + std::chrono::days(90) + 1s; }),
              u"c a b");
    EXPECT_TRUE(result.places.isEmpty());
    EXPECT_TRUE(result.places.pages.isEmpty());
}

TEST_F(RememberedPlacesTest, WhatTheUserRemovedComesBackOnlyWhenItIsPutBack) {
    pages = drawn(u"a [f: b c]");
    install(u"a b c"_s);
    merge();
    const Pages before = pages;
    for (const bool isPutBack : {true, false}) {
        pages = before;
        result.places = placesAfterRemoval(pages, {}, app(u"b"_s).path, now, english);
        pages = drawn(u"a c"); // as the removal leaves it
        remove(u"b"_s);
        EXPECT_EQ(merge(), u"a c");
        if (isPutBack)
            result.places.setRemoved(app(u"b"_s).path, false);
        install(u"b"_s);
        EXPECT_EQ(merge(), isPutBack ? u"a [f: b c]"_s : u"a c b"_s);
    }
}

/// Applications, copies and a volume come and go at random, and vendors change identifiers. After
/// everything has come back, everything lies where it lay, under the same names.
TEST_F(RememberedPlacesTest, AfterEverythingHasComeBackEverythingLiesWhereItLay) {
    std::mt19937 random(11);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto told = [&] { return story.join(u'\n').toStdString(); };
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
        result = {};
        installed.clear();
        hiddenKeys.clear();
        isUnmounted = false;
        const bool withRenames = round % 4 == 0;
        QList<AppEntry> apps;
        for (int i = 0, count = 2 + below(14); i < count; ++i) {
            AppEntry entry = app(u"a%1"_s.arg(i));
            if (below(4) == 0)
                entry.path = u"/Volumes/Work/a%1.app"_s.arg(i);
            // Some come in two copies from the first.
            if (i > 0 && below(6) == 0)
                entry.bundleIdentifier = apps.last().bundleIdentifier;
            if (below(4) == 0)
                entry.name = u"my%1"_s.arg(i);
            install(entry.path, *entry.bundleIdentifier);
            apps.append(entry);
        }
        qsizetype next = 0;
        const auto build = [&](const auto& self, int depth) -> Pages {
            Pages built;
            for (int p = below(3); p >= 0; --p) {
                Page page;
                for (int t = below(4); t >= 0 && next < apps.size(); --t) {
                    if (depth < 3 && below(3) == 0)
                        page.append(folder(u"f%1.%2"_s.arg(depth).arg(next), self(self, depth + 1)));
                    else
                        page.append(apps[next++]);
                }
                built.append(page);
            }
            return built;
        };
        pages = build(build, 0);
        merge();
        QList<AppEntry> tiles;
        forEachItem(pages, [&](const LaunchpadItem& item) {
            if (item.app())
                tiles.append(*item.app());
            return true;
        });
        if (below(2))
            hiddenKeys.insert(appKey(tiles.last()));
        if (below(2)) {
            AppEntry alias = tiles.first();
            alias.alias = AppAliasReference{appKey(alias)};
            alias.id = QUuid::createUuid();
            pages.first().append(alias);
        }
        merge();
        const Pages before = pages;
        const QSet<QString> hiddenBefore = hiddenKeys;
        const QMap<QString, QString> everything = installed;

        story.clear();
        for (int step = below(12); step >= 0; --step) {
            for (int change = below(3); change >= 0; --change) {
                const AppEntry& one = apps[below(static_cast<int>(apps.size()))];
                const QString copy = u"/Users/ada/Applications/"_s + one.path.section(u'/', -1);
                const QString identifier = everything.value(one.path);
                switch (below(withRenames ? 7 : 6)) {
                case 0:
                case 1:
                    installed.remove(one.path);
                    break;
                case 2:
                    installed.insert(one.path, identifier);
                    break;
                case 3:
                    installed.insert(copy, identifier);
                    break;
                case 4:
                    // An application that is back under its former identifier just when a copy goes is
                    // that copy, moved.
                    if (withRenames)
                        merge();
                    installed.remove(copy);
                    if (withRenames)
                        merge();
                    break;
                case 5:
                    isUnmounted = !isUnmounted;
                    break;
                case 6:
                    if (installed.contains(one.path))
                        installed.insert(one.path, u"com.vendor."_s + one.originalName);
                    break;
                }
            }
            merge();
            const Pages merged = pages;
            const QSet<QString> mergedHidden = hiddenKeys;
            merge();
            ASSERT_EQ(pages, merged) << "a second merge changes nothing: " << told();
            ASSERT_EQ(hiddenKeys, mergedHidden);
        }
        // Back in any order.
        isUnmounted = false;
        QStringList paths = everything.keys();
        std::ranges::shuffle(paths, random);
        for (const QString& path : std::as_const(paths)) {
            installed.insert(path, everything[path]);
            if (below(2))
                merge();
        }
        if (withRenames)
            merge();
        installed = everything;
        merge();
        ASSERT_EQ(sketch(pages), sketch(before)) << told();
        if (withRenames)
            continue; // tiles under another identifier are others
        ASSERT_EQ(pages, before) << told();
        ASSERT_EQ(hiddenKeys, hiddenBefore) << told();
    }
}

} // namespace
} // namespace tessellar
