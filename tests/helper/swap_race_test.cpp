// Someone who owns the folders around an item exchanges files, or the folder itself, under the helper's
// hands, at every single system call of it. Beside the helper stands a mover that looks, renames, looks
// again and puts back; it loses, which shows that the attacks are real.

#include "tests/helper/helper_fixture.h"
#include "tests/platform/disk_folder.h"
#include "tests/platform/system_call_tracer.h"

#include "platform/rooted_path.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessellar {
namespace {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;
using Kind = PrivilegedFileOperationKind;
using Status = PrivilegedFileOutcomeStatus;

bool exchange(const fs::path& a, const fs::path& b) {
    return ::syscall(SYS_renameat2, AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), 2 /* exchange */) == 0;
}
void occupy(const fs::path& path) {
    const Descriptor made(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644));
}

/// A Mac in memory with one item, "the item", which goes from one folder to another, and a stranger
/// beside it in the folder that it leaves.
class Arena {
public:
    Arena() { reset(); }

    const fs::path& root() const { return _folder; }
    fs::path at(const char* path) const { return _folder / path; }

    /// Everything in its first place.
    void reset() {
        fs::remove_all(_folder / "Library");
        fs::remove_all(_folder / "Users");
        fs::remove_all(_folder / "state");
        fs::create_directories(_folder / "Library/Application Support/Acme");
        fs::create_directories(_folder / "Users/ada/.Trash");
        fs::create_directories(_folder / "state");
        test::writeFile(place, "the item");
        test::writeFile(at("Library/Application Support/Acme/stranger"), "a stranger");
        test::writeFile(at("Users/ada/.Trash/stranger"), "a stranger");
        isTrashed = false;
    }
    FileOperations operations() const {
        return FileOperations(QByteArray::fromStdString(_folder.string()),
                              QByteArray::fromStdString((_folder / "state").string()));
    }
    Status perform(Kind kind) const {
        const FileSystem files(QString::fromStdString(_folder.string()));
        PrivilegedFileOperationItem item{.source = original};
        if (kind == Kind::restoreFromTrash)
            item = {.source = u"/Users/ada/.Trash/item"_s, .destination = original};
        else if (const auto status = files.linkStatus(original))
            item.approved = approved ? *approved : identityOf(*status);
        return operations()
            .perform({.operation = kind, .items = {item}}, {::getuid(), {u"/Users/ada/.Trash"_s}})
            .first()
            .status;
    }
    FileIdentity identity() const {
        const FileSystem files(QString::fromStdString(_folder.string()));
        return identityOf(files.linkStatus(original).value());
    }
    /// How many files of the arena, or of a folder of it, hold a text.
    int count(const char* text, const fs::path& folder) const {
        int found = 0;
        for (const auto& entry : fs::recursive_directory_iterator(folder))
            found += entry.is_regular_file() && test::readFile(entry.path()) == text;
        return found;
    }
    int itemsLeft() const {
        return count("the item", _folder / "Library") + count("the item", _folder / "Users");
    }

    const QString original = u"/Library/Application Support/Acme/item"_s;
    std::optional<FileIdentity> approved;
    bool isTrashed = false;

private:
    test::MemoryFolder _memory;
    fs::path _folder = _memory.path();

public:
    const fs::path place = _folder / "Library/Application Support/Acme/item";
    const fs::path trashed = _folder / "Users/ada/.Trash/item";
    const fs::path staging = _folder / "Library/.com.tessellar.app.removal-helper";
};

/// Does the work in a child process; `before` is told the number of each of its system calls, from 1,
/// and gives false to kill it there. Gives how many there were; nothing where none may be traced.
std::optional<int> stepThrough(const std::function<void()>& work,
                               const std::function<bool(int)>& before) {
    using Fate = test::Fate;
    const auto run = test::traceSystemCalls(
        [&] {
            work();
            return 0;
        },
        [&](std::size_t index, long) {
            return Fate{before(int(index) + 1) ? Fate::Kind::run : Fate::Kind::killBefore};
        });
    return run.traceable ? std::optional(int(run.calls.size())) : std::nullopt;
}

/// Looks at a name, renames it, looks at what came, puts back what was not the item.
void moveByName(const fs::path& from, const fs::path& to) {
    struct stat before {};
    struct stat after {};
    if (::lstat(from.c_str(), &before) != 0 || before.st_size != 8 /* the item's */)
        return;
    if (renameExclusively(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str()) != 0)
        return;
    if (::lstat(to.c_str(), &after) == 0 && after.st_ino != before.st_ino)
        (void)renameExclusively(AT_FDCWD, to.c_str(), AT_FDCWD, from.c_str());
}

struct Harm {
    int tries = 0;
    int done = 0;    ///< the item went where it was to go
    int planted = 0; ///< a stranger stands where only the item may
    int lost = 0;    ///< the item is nowhere
};

/// At one call the item, or the folder that holds it, is exchanged for a stranger, and from then on
/// every name that it frees is occupied; some calls later the two are exchanged back.
Harm attackEveryCall(Arena& arena, bool isReturning, bool swapsFolders, bool isByHelper) {
    const fs::path from = isReturning ? arena.trashed : arena.place;
    const fs::path to = isReturning ? arena.place : arena.trashed;
    const fs::path otherFolder = from.parent_path().parent_path() / "Other";
    const fs::path one = swapsFolders ? from.parent_path() : from;
    const fs::path other = swapsFolders ? otherFolder : from.parent_path() / "stranger";
    Harm harm;
    int calls = 1;
    for (int back = 0; back <= 2; ++back)
        for (int at = 1; at <= calls; ++at) {
            arena.reset();
            arena.approved = arena.identity();
            if (isReturning && arena.perform(Kind::moveToTrash) != Status::moved)
                return {};
            if (swapsFolders) {
                fs::create_directories(otherFolder);
                test::writeFile(otherFolder / "item", "a stranger");
            }
            const int strangers = arena.count("a stranger", arena.root());
            const auto stepped = stepThrough(
                [&] {
                    if (isByHelper)
                        (void)arena.perform(isReturning ? Kind::restoreFromTrash : Kind::moveToTrash);
                    else
                        moveByName(from, to);
                },
                [&](int call) {
                    if (call == at || (back > 0 && call == at + back))
                        exchange(one, other);
                    else if (call > at)
                        occupy(from);
                    return true;
                });
            if (!stepped)
                return {};
            calls = std::max(calls, *stepped);
            ++harm.tries;
            harm.done += fs::exists(to) && test::readFile(to) == "the item";
            // The stranger in the Trash may be anywhere but in the Library, and the other way round.
            const fs::path target =
                isReturning ? arena.at("Library/Application Support") : arena.at("Users");
            harm.planted += arena.count("a stranger", target) != 1;
            harm.lost += arena.itemsLeft() != 1 || arena.count("a stranger", arena.root()) != strangers;
        }
    return harm;
}

TEST(SwapRace, AtEveryCallNothingIsPlantedAndNothingLost) {
    Arena arena;
    for (const bool isReturning : {true, false})
        for (const bool swapsFolders : {true, false}) {
            const Harm naive = attackEveryCall(arena, isReturning, swapsFolders, false);
            if (naive.tries == 0)
                GTEST_SKIP() << "This process may not trace another.";
            const Harm helper = attackEveryCall(arena, isReturning, swapsFolders, true);
            for (const auto& [who, harm] : {std::pair("by name", naive), {"helper", helper}})
                std::printf("%s the Trash, %s: %s: %d tries, %d done, %d planted, %d lost\n",
                            isReturning ? "from" : "to", swapsFolders ? "folders" : "files", who,
                            harm.tries, harm.done, harm.planted, harm.lost);
            EXPECT_GT(naive.planted, 0) << "The attack is too tame to prove anything.";
            EXPECT_GT(helper.done, 0);
            EXPECT_LT(helper.done, helper.tries);
            EXPECT_EQ(helper.planted, 0);
            EXPECT_EQ(helper.lost, 0);
        }
}

/// The way on and the way back are barred while the item is in the helper's folder.
TEST(SwapRace, WhatCanNeitherGoOnNorBackWaitsInTheHelpersFolder) {
    Arena arena;
    int waited = 0;
    int calls = 1;
    for (const bool isReturning : {true, false})
        for (int at = 1; at <= calls; at += 7) {
            arena.reset();
            arena.approved = arena.identity();
            if (isReturning) {
                ASSERT_EQ(arena.perform(Kind::moveToTrash), Status::moved);
            }
            const fs::path trash = arena.trashed.parent_path();
            const auto stepped = stepThrough(
                [&] { (void)arena.perform(isReturning ? Kind::restoreFromTrash : Kind::moveToTrash); },
                [&](int call) {
                    const fs::path from = isReturning ? arena.trashed : arena.place;
                    if (call >= at && !fs::exists(from)) {
                        occupy(arena.place);
                        fs::remove_all(trash / "stranger");
                        if (fs::exists(trash) && fs::is_empty(trash))
                            fs::remove(trash);
                    }
                    return true;
                });
            if (!stepped)
                GTEST_SKIP() << "This process may not trace another.";
            calls = std::max(calls, *stepped);
            ASSERT_EQ(arena.itemsLeft(), 1) << at;
            if (!fs::exists(arena.staging))
                continue;
            ++waited;
            // With the ways free again, the next start brings it on.
            fs::create_directories(trash);
            fs::remove(arena.place);
            arena.operations().settle();
            ASSERT_FALSE(fs::exists(arena.staging)) << at;
            ASSERT_TRUE(fs::exists(arena.trashed) || fs::exists(arena.place)) << at;
            ASSERT_EQ(arena.itemsLeft(), 1) << at;
        }
    EXPECT_GT(waited, 0);
}

TEST(SwapRace, KilledAtEveryCallNothingIsLost) {
    Arena arena;
    for (const Kind kind : {Kind::moveToTrash, Kind::restoreFromTrash, Kind::remove}) {
        int kills = 0;
        int onTheWay = 0;
        for (int at = 1;; ++at) {
            arena.reset();
            arena.approved = arena.identity();
            if (kind == Kind::restoreFromTrash) {
                ASSERT_EQ(arena.perform(Kind::moveToTrash), Status::moved);
            }
            const auto stepped =
                stepThrough([&] { (void)arena.perform(kind); }, [&](int call) { return call < at; });
            if (!stepped)
                GTEST_SKIP() << "This process may not trace another.";
            if (*stepped < at)
                break;
            ++kills;
            const bool isStaged = fs::exists(arena.staging) && !fs::is_empty(arena.staging);
            onTheWay += isStaged;
            arena.operations().settle();
            if (kind == Kind::remove) {
                ASSERT_EQ(arena.itemsLeft(), fs::exists(arena.place) ? 1 : 0) << at;
                ASSERT_FALSE(isStaged && fs::exists(arena.place)) << at;
            } else {
                ASSERT_EQ(arena.itemsLeft(), 1) << at;
                ASSERT_TRUE(fs::exists(arena.trashed) || fs::exists(arena.place)) << at;
                if (fs::exists(arena.trashed)) {
                    ASSERT_EQ(arena.perform(Kind::restoreFromTrash), Status::moved) << at;
                }
            }
            ASSERT_TRUE(!fs::exists(arena.staging) || fs::is_empty(arena.staging)) << at;
        }
        std::printf("killed at %d calls, %d times on the way\n", kills, onTheWay);
        EXPECT_GT(onTheWay, 0);
    }
}

} // namespace
} // namespace tessellar
