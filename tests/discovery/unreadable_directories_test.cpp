#include "discovery/small_library.h"

#include <unistd.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using Unreadable = AppScanner::UnreadableDirectory;
using Reason = Unreadable::Reason;

/// Root may read everything; while this lives, the process is someone else.
class AsNobody {
public:
    AsNobody() {
        if (::geteuid() == 0)
            _changed = ::seteuid(65'534) == 0;
    }
    ~AsNobody() {
        if (_changed)
            (void)!::seteuid(0);
    }

private:
    bool _changed = false;
};

class UnreadableDirectoriesTest : public test::SmallLibrary {
protected:
    void forbid(const QString& path) { std::filesystem::permissions(host(path), {}); }
    void allow(const QString& path) {
        std::filesystem::permissions(host(path), std::filesystem::perms(0755));
    }

    void SetUp() override {
        std::filesystem::permissions(root.path().toStdString(), std::filesystem::perms(0755));
    }
};

TEST_F(UnreadableDirectoriesTest, FoldersWithoutRightsHideWhatLiesInThem) {
    add(u"/Applications"_s, u"Good"_s);
    const QString inside = add(u"/Applications/Closed"_s, u"Inside"_s);
    const QString linked = add(u"/opt/closed/deep"_s, u"Linked"_s);
    mac.addLink(u"/Applications/way"_s, u"/opt/closed/deep"_s);
    const QString sealed = add(u"/Applications"_s, u"Sealed"_s);
    ScanCache cache;
    EXPECT_EQ(scan(cache).apps.size(), 4);

    for (const auto& path : {u"/Applications/Closed"_s, u"/opt/closed"_s, sealed})
        forbid(path);
    AppScanner::LibraryScan blind;
    {
        const AsNobody nobody;
        blind = scan(cache);
        EXPECT_EQ(AppScanner::installState(files, sealed), AppScanner::InstallState::incomplete);
        EXPECT_EQ(AppScanner::installState(files, inside), AppScanner::InstallState::incomplete);
    }
    for (const auto& path : {u"/Applications/Closed"_s, u"/opt/closed"_s, sealed})
        allow(path);

    EXPECT_EQ(names(blind), QStringList(u"Good"_s));
    EXPECT_THAT(blind.unreadableDirectories,
                Contains(Unreadable{u"/Applications/Closed"_s, Reason::unreadable}));
    EXPECT_EQ(incomplete(blind), QStringList(sealed));
    EXPECT_FALSE(blind.watchableDirectories.contains(u"/Applications/Closed"_s));
    for (const QString& path : {inside, linked, sealed})
        EXPECT_TRUE(blind.isOutOfReach(path)) << path.toStdString();
    EXPECT_FALSE(blind.isOutOfReach(u"/Applications/Gone.app"_s));
    EXPECT_FALSE(blind.isOutOfReach(u"/Applications/Closedness/Gone.app"_s));

    EXPECT_EQ(scan(cache).apps.size(), 4) << "rights that come back are noticed";
}

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
    EXPECT_EQ(names(mounted), QStringList({u"Fern"_s, u"Moss"_s}));
    EXPECT_THAT(mounted.unreadableDirectories,
                testing::UnorderedElementsAre(Unreadable{u"/Volumes/Stick"_s, Reason::volumeNotMounted},
                                              Unreadable{u"/nowhere"_s, Reason::absent},
                                              Unreadable{u"/Volumes/Other"_s, Reason::volumeNotMounted},
                                              Unreadable{u"/Volumes/Work/Typo"_s, Reason::absent}));
    EXPECT_FALSE(mounted.isOutOfReach(u"/nowhere/X.app"_s));
    EXPECT_FALSE(mounted.isOutOfReach(u"/Volumes/Work/Apps/Gone.app"_s));

    std::filesystem::rename(host(u"/Volumes/Work"_s), host(u"/away"_s));
    const auto unmounted = scan(cache);
    EXPECT_THAT(unmounted.apps, IsEmpty());
    for (const AppEntry& entry : mounted.apps)
        EXPECT_TRUE(unmounted.isOutOfReach(entry.path)) << entry.path.toStdString();
    EXPECT_FALSE(unmounted.isOutOfReach(u"/Volumes/Worker/X.app"_s));

    std::filesystem::rename(host(u"/away"_s), host(u"/Volumes/Work"_s));
    EXPECT_EQ(withoutIdentifiers(scan(cache)), withoutIdentifiers(mounted));
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
        EXPECT_TRUE(names(scan).contains(u"Mine"_s)) << "what lies high comes before what lies deep";
        EXPECT_THAT(scan.unreadableDirectories, Contains(everything));
        EXPECT_TRUE(scan.isOutOfReach(u"/anywhere/X.app"_s));
    }
    limits = {.entriesPerDirectory = 20};
    const auto scan = this->scan();
    EXPECT_THAT(scan.unreadableDirectories,
                Contains(Unreadable{u"/Applications/Deep"_s, Reason::limit}));
    EXPECT_TRUE(scan.isOutOfReach(u"/Applications/Deep/1/Deep1.app"_s));
    EXPECT_FALSE(scan.isOutOfReach(u"/Applications/Gone.app"_s));
}

} // namespace
} // namespace tessellar
