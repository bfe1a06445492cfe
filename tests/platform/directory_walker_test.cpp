#include "platform/directory_walker.h"

#include "tests/platform/disk_folder.h"
#include "tests/support/printers.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <mutex>
#include <set>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using namespace test;
namespace fs = std::filesystem;

/// What was visited: path, type and depth, as bytes.
using Seen = std::multiset<std::tuple<std::string, FileType, int>>;

class DirectoryWalkerTest : public testing::Test {
protected:
    MemoryFolder memory;
    fs::path root = memory.path();
    FileSystem files{QString::fromStdString(root)};

    static WalkStep descend(const WalkEntry&) { return WalkStep::descend; }

    void put(const fs::path& path) const { writeFile(root / path, "x"); }

    Seen walked(const WalkOptions& options, WalkResult* result = nullptr) const {
        Seen seen;
        std::mutex mutex;
        const WalkResult done = walkDirectory(files, u"/"_s, options, {}, [&](const WalkEntry& entry) {
            const std::scoped_lock lock(mutex);
            seen.emplace(FileSystem::toHostBytes(entry.path())->toStdString(), entry.type, entry.depth);
            return WalkStep::descend;
        });
        EXPECT_EQ(done.entries, seen.size());
        if (result)
            *result = done;
        return seen;
    }
};

TEST_F(DirectoryWalkerTest, SeesFilesFoldersLinksAndWhateverElseUnderAnyName) {
    fs::create_directories(root / "a/b/c");
    put("a/b/\xFF n\xC3");
    fs::create_symlink("..", root / "a/b/up");
    fs::create_symlink("nowhere", root / "dangling");
    ::mkfifo((root / "a/pipe").c_str(), 0600);
    Seen expected{{"/a", FileType::directory, 1},        {"/dangling", FileType::symbolicLink, 1},
                  {"/a/b", FileType::directory, 2},      {"/a/pipe", FileType::other, 2},
                  {"/a/b/c", FileType::directory, 3},    {"/a/b/\xFF n\xC3", FileType::regular, 3},
                  {"/a/b/up", FileType::symbolicLink, 3}};
    // More than one reading of a folder brings.
    for (int i = 0; i < 2'000; ++i) {
        const std::string name = "a/b/" + std::string(40, 'n') + std::to_string(i);
        put(name);
        expected.emplace('/' + name, FileType::regular, 3);
    }
    for (const unsigned threads : {1u, 2u, 7u}) {
        WalkResult result;
        EXPECT_EQ(walked({.threads = threads}, &result), expected);
        EXPECT_TRUE(result.complete);
        EXPECT_THAT(result.unreadable, testing::IsEmpty());
    }
}

TEST_F(DirectoryWalkerTest, KeepsToItsLimits) {
    fs::create_directories(root / "a/b/c/d");
    for (int i = 0; i < 20; ++i)
        put("a/b/" + std::to_string(i));

    WalkResult result;
    EXPECT_EQ(walked({.maximumDepth = 2}, &result).size(), 2u);
    EXPECT_FALSE(result.complete);
    EXPECT_EQ(walked({.maximumDepth = 5}, &result).size(), 24u);
    EXPECT_TRUE(result.complete);
    EXPECT_EQ(walked({.maximumEntries = 10}, &result).size(), 10u);
    EXPECT_FALSE(result.complete);
    EXPECT_EQ(walked({.maximumEntries = 24}, &result).size(), 24u);
    EXPECT_TRUE(result.complete);

    std::atomic<int> visits = 0;
    result = walkDirectory(files, u"/a/"_s, {}, {}, [&](const WalkEntry& entry) {
        ++visits;
        EXPECT_EQ(entry.directory, entry.name == "b" ? u"/a"_s : u"/a/b"_s);
        return entry.name == "c" ? WalkStep::skip : WalkStep::descend;
    });
    EXPECT_EQ(visits, 22);
    EXPECT_TRUE(result.complete);
}

TEST_F(DirectoryWalkerTest, StopsWithTheVisitThatItIsIn) {
    for (int i = 0; i < 50; ++i) {
        fs::create_directory(root / std::to_string(i));
        for (int j = 0; j < 50; ++j)
            put(std::to_string(i) + '/' + std::to_string(j));
    }
    std::stop_source stop;
    std::atomic<int> visits = 0;
    const auto visit = [&](const WalkEntry&) {
        if (++visits == 60)
            stop.request_stop();
        return WalkStep::descend;
    };
    const WalkResult result = walkDirectory(files, u"/"_s, {.threads = 4}, stop.get_token(), visit);
    EXPECT_FALSE(result.complete);
    EXPECT_GE(visits, 60);
    EXPECT_LE(visits, 60 + 4);
    EXPECT_EQ(result.entries, static_cast<std::uint64_t>(visits));
    EXPECT_EQ(walkDirectory(files, u"/"_s, {}, stop.get_token(), visit).entries, 0u);
}

TEST_F(DirectoryWalkerTest, FollowsNoLinkAndSaysWhatItCouldNotList) {
    fs::create_directories(root / "real/inner");
    fs::create_directory_symlink("real", root / "link");
    put("file");
    using Code = FileError::Code;
    const auto errors = [&](const QString& path) {
        return walkDirectory(files, path, {}, {}, descend).unreadable;
    };
    EXPECT_THAT(errors(u"/link"_s), testing::ElementsAre(FileError{Code::notADirectory, u"/link"_s}));
    EXPECT_THAT(errors(u"/file"_s), testing::ElementsAre(FileError{Code::notADirectory, u"/file"_s}));
    EXPECT_THAT(errors(u"/none"_s), testing::ElementsAre(FileError{Code::notFound, u"/none"_s}));
    EXPECT_EQ(walkDirectory(files, u"/link/inner"_s, {}, {}, descend).unreadable.size(), 0);

    fs::permissions(root, fs::perms(0755));
    fs::permissions(root / "real/inner", fs::perms::none);
    {
        const WithoutRights user;
        if (!user)
            GTEST_SKIP() << "cannot act as a user without rights";
        EXPECT_THAT(errors(u"/"_s),
                    testing::ElementsAre(FileError{Code::permissionDenied, u"/real/inner"_s}));
    }
    fs::permissions(root / "real/inner", fs::perms(0700));
}

TEST_F(DirectoryWalkerTest, EntersAMountOnlyWhenTold) {
    fs::create_directory(root / "volume");
    const SmallDisk volume(root / "volume", "size=64k");
    if (!volume)
        GTEST_SKIP() << "this process may not mount";
    put("volume/file");
    EXPECT_EQ(walked({}).size(), 1u);
    EXPECT_EQ(walked({.crossMounts = true}).size(), 2u);
}

/// Below the longest path that the system takes, with few descriptors; every tenth level has a second
/// folder, entered on the way back.
TEST_F(DirectoryWalkerTest, WalksATreeOf50000Levels) {
    constexpr int levels = 50'000;
    int at = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < levels; ++level) {
        ASSERT_EQ(::mkdirat(at, "d", 0700), 0);
        if (level % 10 == 0) {
            ASSERT_EQ(::mkdirat(at, "e", 0700), 0);
        }
        const int next = ::openat(at, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(at);
        ASSERT_GE(at = next, 0);
    }
    ::close(at);

    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{150, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    std::atomic<int> deepest = 0;
    const WalkResult result =
        walkDirectory(files, u"/"_s, {.maximumDepth = levels + 1}, {}, [&](const WalkEntry& entry) {
            for (int seen = deepest;
                 entry.depth > seen && !deepest.compare_exchange_weak(seen, entry.depth);) {
            }
            return WalkStep::descend;
        });
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_TRUE(result.complete);
    EXPECT_THAT(result.unreadable, testing::IsEmpty());
    EXPECT_EQ(result.entries, levels + levels / 10u);
    EXPECT_EQ(deepest, levels);

    // No library takes so deep a tree away: it is pulled up level by level.
    const auto in = [&](const char* name) { return root / name; };
    for (int level = 1; level < levels; ++level) {
        ASSERT_EQ(::rename(in("d/d").c_str(), in("next").c_str()), 0);
        ::rmdir(in("d/e").c_str());
        ::rmdir(in("d").c_str());
        ::rename(in("next").c_str(), in("d").c_str());
    }
}

} // namespace
} // namespace tessellar
