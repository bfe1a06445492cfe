#include "discovery/small_library.h"
#include "tests/platform/disk_folder.h"

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using sample::Missing;
using sample::Plist;
namespace fs = std::filesystem;

class ScanCacheTest : public test::SmallLibrary {
protected:
    /// Waits until the disk's own clock has moved on, so that the next change has another time.
    void passTick() {
        const auto stamp = [&] {
            test::writeFile(host(u"/tick"_s), "x");
            return fs::last_write_time(host(u"/tick"_s));
        };
        const auto start = stamp();
        while (stamp() == start) {
        }
    }
    void rewrite(const QString& path, const QByteArray& before, const QByteArray& after) {
        const auto date = fs::last_write_time(host(path));
        QByteArray bytes = *files.read(path, 1 << 20);
        ASSERT_TRUE(bytes.contains(before));
        bytes.replace(before, after);
        test::writeFile(host(path), bytes.toStdString());
        fs::last_write_time(host(path), date);
    }
    void swap(const QString& a, const QString& b) {
        fs::rename(host(a), host(u"/swap"_s));
        fs::rename(host(b), host(a));
        fs::rename(host(u"/swap"_s), host(b));
    }
};

TEST_F(ScanCacheTest, AnUnchangedMachineIsOnlyLookedAt) {
    for (int i = 0; i < 20; ++i)
        add(i % 2 ? u"/Applications"_s : u"/Applications/Group"_s, u"App%1"_s.arg(i));
    mac.addApplication({.name = u"Half"_s, .missing = Missing::executable});
    mac.addAlias(u"/Applications/Alias"_s, add(u"/opt"_s, u"Fern"_s));
    mac.addLink(u"/Applications/Link"_s, u"/opt"_s);
    ScanCache cache;
    const auto first = scan(cache);
    EXPECT_EQ(cache.work.bundlesRead, 22);
    EXPECT_EQ(cache.work.directoriesListed, 3);

    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(scan(cache), first) << "identifiers too";
        EXPECT_TRUE(cache.work.reusedResult);
        EXPECT_EQ(cache.work.bundlesRead, 0);
        EXPECT_EQ(cache.work.directoriesListed, 0);
        EXPECT_LE(cache.work.observationsChecked, 22 * 4 + 6);
    }

    settings.searchPaths.removeAll(u"/Applications"_s);
    EXPECT_EQ(scan(cache).apps.size(), 0) << "another question has another answer";
}

TEST_F(ScanCacheTest, EveryChangeIsNoticedAndNothingElseIsRead) {
    const QString fern = u"/Applications/Fern.app"_s;
    const QString info = fern + u"/Contents/Info.plist"_s;
    const QString german = fern + u"/Contents/Resources/de.lproj/InfoPlist.strings"_s;
    const QString fish = u"/Applications/Fish.app"_s;
    const struct {
        const char* what;
        std::function<void()> change;
        bool changesResult = true;
    } cases[] = {
        {"Info.plist rewritten in place, size and date kept",
         [&] { rewrite(info, "org.example.Fern", "org.example.Furn"); }},
        {"Info.plist removed", [&] { fs::remove(host(info)); }},
        {"executable removed", [&] { fs::remove(host(fern + u"/Contents/MacOS/Fern"_s)); }},
        {"executable moved in",
         [&] {
             mac.addExecutable(u"/exe"_s, "x");
             fs::create_directories(host(u"/Applications/Half.app/Contents/MacOS"_s));
             fs::rename(host(u"/exe"_s), host(u"/Applications/Half.app/Contents/MacOS/Half"_s));
         }},
        {"localized name changed in place", [&] { rewrite(german, "Farn", "Forn"); }},
        {"localized name removed", [&] { fs::remove(host(german)); }},
        {"language added",
         [&] {
             mac.addFile(u"/Applications/Moss.app/Contents/Resources/de.lproj/InfoPlist.strings"_s,
                         "\"CFBundleDisplayName\" = \"Moos\";");
         }},
        {"table of languages added",
         [&] {
             mac.addPropertyList(
                 u"/Applications/Moss.app/Contents/Resources/InfoPlist.loctable"_s,
                 Plist::Dictionary{
                     {u"de"_s, Plist::Dictionary{{u"CFBundleDisplayName"_s, u"Moos"_s}}}});
         }},
        {"store metadata changed in place",
         [&] { rewrite(fish + u"/Wrapper/iTunesMetadata.plist"_s, "Goldfish", "Goldfinch"); }},
        {"wrapper added to a bundle", [&] { swap(fern, fish); }},
        {"bundle removed", [&] { fs::remove_all(host(fern)); }},
        {"bundle added", [&] { add(u"/Applications/Group"_s, u"New"_s); }},
        {"bundle exchanged for another one, dates kept", [&] { swap(fern, u"/opt/Grass.app"_s); }},
        {"bundle replaced by a file",
         [&] {
             fs::remove_all(host(fern));
             mac.addFile(fern, "x");
         }},
        {"tools added", [&] { add(fern + u"/Contents/Applications"_s, u"Tool"_s); }},
        {"alias rewritten in place", [&] { rewrite(u"/Applications/Alias"_s, "Stone", "Grass"); }},
        {"link on the way pointed elsewhere", [&] { mac.addLink(u"/opt/current"_s, u"two"_s); }},
        {"alias' target removed", [&] { fs::remove_all(host(u"/opt/Stone.app"_s)); }},
        {"folder added", [&] { add(u"/Applications/Fresh/Deep"_s, u"New"_s); }},
        {"search path appears", [&] { add(u"/Users/ada/Applications"_s, u"Mine"_s); }},
        {"file added", [&] { mac.addFile(u"/Applications/readme"_s, "x"); }, false},
    };
    languages = QStringList{u"de"_s, u"en"_s};
    for (const auto& [what, change, changesResult] : cases) {
        SCOPED_TRACE(what);
        for (const auto& entry : fs::directory_iterator(root.path().toStdString()))
            fs::remove_all(entry);
        addLocalized(u"Fern"_s, u"Farn"_s);
        mac.addApplication(
            {.name = u"Moss"_s, .identifier = u"org.example.Moss"_s, .displayName = u"Moss"_s});
        mac.addDirectory(u"/Applications/Moss.app/Contents/Resources"_s);
        mac.addApplication({.name = u"Half"_s, .missing = Missing::executable});
        mac.addApplication(
            {.name = u"Fish"_s,
             .identifier = u"org.example.fish"_s,
             .wrapped = sample::WrappedMetadata{.realName = u"Real"_s, .itemName = u"Goldfish"_s}});
        for (int i = 0; i < 2; ++i)
            add(u"/Applications/Group"_s, u"App%1"_s.arg(i));
        add(u"/opt"_s, u"Grass"_s);
        mac.addAlias(u"/Applications/Alias"_s, add(u"/opt"_s, u"Stone"_s));
        mac.addLink(u"/Applications/Link"_s, u"/opt/current"_s);
        mac.addLink(u"/opt/current"_s, u"one"_s);
        add(u"/opt/one"_s, u"One"_s);
        add(u"/opt/two"_s, u"Two"_s);

        ScanCache cache;
        const auto before = scan(cache);
        ASSERT_EQ(before.apps.size(), 7);
        passTick();
        change();
        const auto after = scan(cache);
        EXPECT_EQ(withoutIdentifiers(after), withoutIdentifiers(scan()));
        EXPECT_EQ(after != before, changesResult);
        EXPECT_LE(cache.work.bundlesRead, 2);
        EXPECT_EQ(scan(cache), after);
        EXPECT_TRUE(cache.work.reusedResult);
    }
}

TEST_F(ScanCacheTest, AnEntryKeepsItsIdentifierWhenItsBundleChanges) {
    const QString fern = add(u"/Applications"_s, u"Fern"_s);
    add(u"/Applications"_s, u"Moss"_s);
    ScanCache cache;
    const auto before = scan(cache);
    passTick();
    rewrite(fern + u"/Contents/Info.plist"_s, "org.example.Fern", "org.example.Furn");
    const auto after = scan(cache);
    ASSERT_EQ(after.apps.size(), 2);
    EXPECT_EQ(after.apps[0].bundleIdentifier, u"org.example.Furn");
    EXPECT_EQ(after.apps[0].id, before.apps[0].id);
    EXPECT_EQ(after.apps[1], before.apps[1]);
}

TEST_F(ScanCacheTest, WhatWasJustChangedIsReadAgain) {
    // A change within the same tick of the disk's clock leaves the same times: nothing so fresh is
    // relied upon.
    const QString fern = add(u"/Applications"_s, u"Fern"_s);
    now = files.status(fern)->changed;
    ScanCache cache;
    const auto first = scan(cache);
    EXPECT_EQ(scan(cache), first);
    EXPECT_EQ(cache.work.bundlesRead, 1);
    EXPECT_EQ(cache.work.directoriesListed, 1);

    now = now + std::chrono::seconds(4);
    EXPECT_EQ(scan(cache), first);
    EXPECT_EQ(cache.work.bundlesRead, 1);
    EXPECT_EQ(scan(cache), first);
    EXPECT_EQ(cache.work.bundlesRead, 0);
    EXPECT_EQ(cache.work.directoriesListed, 0);
}

TEST_F(ScanCacheTest, OtherLanguagesBeginAnew) {
    addLocalized(u"Fern"_s, u"Farn"_s);
    ScanCache cache;
    EXPECT_EQ(names(scan(cache)), u"Fern");
    languages = QStringList{u"de"_s};
    EXPECT_EQ(names(scan(cache)), u"Farn");
}

} // namespace
} // namespace tessellar
