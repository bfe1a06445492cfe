#include "discovery/small_library.h"
#include "tests/platform/disk_folder.h"

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using Unreadable = AppScanner::UnreadableDirectory;
using Reason = Unreadable::Reason;

class UnreadableDirectoriesTest : public test::SmallLibrary {
protected:
    UnreadableDirectoriesTest() { setMode({}, 0755); }
    void setMode(const QString& path, unsigned mode) { fs::permissions(host(path), fs::perms(mode)); }
};

TEST_F(UnreadableDirectoriesTest, AVolumeThatIsNotMountedIsNotAnAbsentFolder) {
    add(u"/Volumes/Work/Apps"_s, u"Fern"_s);
    add(u"/Volumes/Work/More"_s, u"Moss"_s);
    mac.addLink(u"/Users/ada/shelf"_s, u"/Volumes"_s);
    mac.addLink(u"/Users/ada/Applications"_s, u"/Users/ada/shelf/Work/Apps"_s);
    mac.addAlias(u"/Applications/Moss"_s, u"/Volumes/Work/More/Moss.app"_s);
    mac.addLink(u"/Applications/Stick"_s, u"../Volumes/Stick/Apps"_s);
    settings.searchPaths = QStringList{u"/Applications"_s, u"/Users/ada/Applications"_s, u"/nowhere"_s,
                                       u"/Volumes/Other"_s, u"/Volumes/Work/Typo"_s};
    ScanCache cache;
    const auto mounted = scan(cache);
    EXPECT_EQ(names(mounted), u"Fern|Moss");
    EXPECT_THAT(mounted.unreadableDirectories,
                testing::UnorderedElementsAre(Unreadable{u"/Volumes/Stick"_s, Reason::volumeNotMounted},
                                              Unreadable{u"/nowhere"_s, Reason::absent},
                                              Unreadable{u"/Volumes/Other"_s, Reason::volumeNotMounted},
                                              Unreadable{u"/Volumes/Work/Typo"_s, Reason::absent}));
    EXPECT_TRUE(mounted.isGone(u"/nowhere/X.app"_s));
    EXPECT_TRUE(mounted.isGone(u"/Volumes/Work/Apps/Gone.app"_s));

    fs::rename(host(u"/Volumes/Work"_s), host(u"/away"_s));
    const auto unmounted = scan(cache);
    EXPECT_THAT(unmounted.apps, IsEmpty());
    for (const AppEntry& entry : mounted.apps)
        EXPECT_FALSE(unmounted.isGone(entry.path)) << entry.path.toStdString();

    fs::rename(host(u"/away"_s), host(u"/Volumes/Work"_s));
    EXPECT_EQ(withoutIdentifiers(scan(cache)), withoutIdentifiers(mounted));
}

/// What is asked of every way in which an application can be out of sight for a while: it is not gone
/// then, and seen again after; and once it is really taken away, it is gone.
struct WayOutOfSight {
    const char* what;
    std::function<void()> hide;
    std::function<void()> show;
};

TEST_F(UnreadableDirectoriesTest, WhatIsOutOfSightIsNotGone) {
    const QString path = add(u"/Volumes/Work/Apps/One"_s, u"Fern"_s);
    const QString custom = add(u"/Users/ada/Mine"_s, u"Moss"_s);
    const QString deep = add(u"/Applications/A/B/C"_s, u"Oak"_s);
    const QString linked = add(u"/opt/trees"_s, u"Elm"_s);
    mac.addLink(u"/Applications/Elm.app"_s, linked);
    const QString onDisk = add(u"/Applications"_s, u"Ivy"_s);
    const QString inside = mac.addApplication({.name = u"Inner"_s,
                                               .folder = onDisk + u"/Contents/Applications"_s,
                                               .identifier = u"org.example.inner"_s});
    settings.searchPaths += {u"/Volumes/Work/Apps"_s, u"/Users/ada/Mine"_s};
    const AppDiscoverySettings whole = settings;
    const QStringList all{path, custom, deep, linked, onDisk, inside};
    const fs::path aside = host(u"/aside"_s);
    const auto move = [](const fs::path& from, const fs::path& to) {
        return [=] { fs::rename(from, to); };
    };
    const auto mode = [&](unsigned bits) { return [=, this] { setMode(u"/Applications"_s, bits); }; };
    const fs::path work = host(u"/Volumes/Work"_s);
    const fs::path apps = host(u"/Volumes/Work/Apps"_s);
    const WayOutOfSight ways[] = {
        {"a listed bundle that cannot be looked at", mode(0444), mode(0755)},
        {"a folder that cannot be listed", mode(0), mode(0755)},
        {"an unmounted volume", move(work, aside), move(aside, work)},
        {"a mount point without its mount",
         [&] {
             fs::rename(work, aside);
             fs::create_directory(work);
         },
         [&] {
             fs::remove(work);
             fs::rename(aside, work);
         }},
        {"another volume in its place, with the same folder",
         [&] {
             fs::rename(work, aside);
             fs::create_directories(apps);
             add(u"/Volumes/Work/Apps"_s, u"Other"_s);
         },
         [&] {
             fs::remove_all(work);
             fs::rename(aside, work);
         }},
        {"settings that cannot be read",
         [&] {
             settings.searchPaths = AppDiscoverySettings::defaultSearchPaths(u"/Users/ada"_s);
             settings.isCertain = false;
         },
         [&] { settings = whole; }},
        {"a lower depth", [&] { settings.scanDepth = 1; }, [&] { settings = whole; }},
        {"a limit", [&] { limits.directories = 2; }, [&] { limits = {}; }},
    };
    for (const bool isOneRun : {true, false}) {
        for (const WayOutOfSight& way : ways) {
            ScanCache cache;
            for (const QString& application : all)
                EXPECT_TRUE(paths(scan(cache)).contains(application)) << application.toStdString();
            const auto again = [&] {
                const test::WithoutRights nobody;
                // A command line begins with what an earlier run left, the launcher with its own scan.
                if (!isOneRun)
                    cache = ScanCache{.knownVolumes = cache.knownVolumes};
                return scan(cache);
            };
            way.hide();
            for (int i = 0; i < 2; ++i) {
                const AppScanner::LibraryScan blind = again();
                EXPECT_THAT(paths(blind), Not(testing::IsSupersetOf(all))) << way.what;
                for (const QString& application : all)
                    EXPECT_FALSE(blind.isGone(application)) << way.what << application.toStdString();
            }
            way.show();
            for (const QString& application : all)
                EXPECT_EQ(again().presence(application), AppScanner::Presence::present) << way.what;
        }
    }

    ScanCache cache;
    (void)scan(cache);
    for (const QString& application : {path, custom, deep, linked, inside, onDisk})
        fs::remove_all(host(application));
    const AppScanner::LibraryScan after = scan(cache);
    for (const QString& application : {custom, deep, linked, inside, onDisk})
        EXPECT_TRUE(after.isGone(application)) << application.toStdString();
    EXPECT_TRUE(after.isGone(path)) << "the last one on its volume";
    fs::remove_all(host(u"/Users/ada/Mine"_s));
    EXPECT_TRUE(scan(cache).isGone(custom)) << "its search path with it";
    for (const auto& volume : cache.knownVolumes.volumes)
        EXPECT_THAT(volume.applications, IsEmpty());
}

/// It may have come by the number of the volume that was there, within one tick of the file system's
/// clock.
TEST_F(UnreadableDirectoriesTest, AnEmptyFolderIsNoVolume) {
    mac.addDirectory(u"/Volumes/Work"_s);
    const auto identity = [&] { return VolumeFinder(files).identityOf(u"/Volumes/Work"_s); };
    EXPECT_EQ(identity(), std::nullopt);
    mac.addFile(u"/Volumes/Work/.volume"_s, {});
    EXPECT_TRUE(identity());
}

/// A folder that the user's settings no longer name, and a link that was taken away, are the user's
/// own doing; and a disk that was copied is known by what lies on it.
TEST_F(UnreadableDirectoriesTest, WhatTheUserNoLongerSearchesIsGone) {
    const QString kept = add(u"/Applications"_s, u"Kept"_s);
    const QString custom = add(u"/Users/ada/Mine"_s, u"Moss"_s);
    const QString linked = add(u"/opt/trees"_s, u"Elm"_s);
    mac.addLink(u"/Applications/way"_s, u"/opt/trees"_s);
    settings.searchPaths += u"/Users/ada/Mine"_s;
    ScanCache cache;
    EXPECT_EQ(scan(cache).apps.size(), 3);
    settings.searchPaths.removeLast();
    fs::remove(host(u"/Applications/way"_s));
    EXPECT_TRUE(scan(cache).isGone(custom));
    EXPECT_TRUE(scan(cache).isGone(linked));

    const QString gone = add(u"/Applications"_s, u"Gone"_s);
    (void)scan(cache);
    KnownVolumes known = cache.knownVolumes;
    ASSERT_EQ(known.volumes.size(), 1);
    known.volumes[0].identity = u"of another disk"_s;
    fs::remove_all(host(gone));
    ScanCache copied{.knownVolumes = known};
    EXPECT_TRUE(scan(copied).isGone(gone));
    fs::remove_all(host(kept));
    ScanCache bare{.knownVolumes = known};
    EXPECT_FALSE(scan(bare).isGone(gone));
}

TEST_F(UnreadableDirectoriesTest, LimitsCutTheDeepAndSaySo) {
    for (int i = 0; i < 12; ++i) {
        add(u"/Applications/Deep/%1"_s.arg(i), u"Deep%1"_s.arg(i));
        mac.addFile(u"/Applications/Deep/file%1"_s.arg(i), "x");
    }
    add(u"/Users/ada/Applications"_s, u"Mine"_s);
    const Unreadable everything{u"/"_s, Reason::limit};
    EXPECT_EQ(scan().apps.size(), 13);
    EXPECT_THAT(scan().unreadableDirectories, Not(Contains(everything)));

    const struct {
        ScanLimits limits;
        qsizetype applications;
    } cases[] = {{{.directories = 6}, 4}, {{.bundles = 5}, 5}, {{.entries = 20}, 1}};
    for (const auto& [few, applications] : cases) {
        limits = few;
        const auto scan = this->scan();
        EXPECT_EQ(scan.apps.size(), applications);
        EXPECT_TRUE(names(scan).split(u'|').contains(u"Mine"))
            << "what lies high comes before what lies deep";
        EXPECT_THAT(scan.unreadableDirectories, Contains(everything));
        EXPECT_FALSE(scan.isGone(u"/anywhere/X.app"_s));
    }
    limits = {.entriesPerDirectory = 20};
    const auto scan = this->scan();
    EXPECT_THAT(scan.unreadableDirectories,
                Contains(Unreadable{u"/Applications/Deep"_s, Reason::limit}));
    EXPECT_FALSE(scan.isGone(u"/Applications/Deep/1/Deep1.app"_s));
    EXPECT_TRUE(scan.isGone(u"/Applications/Gone.app"_s));
}

} // namespace
} // namespace tessellar
