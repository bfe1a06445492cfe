#include "platform/atomic_file.h"
#include "platform/background_file.h"

#include "tests/platform/disk_folder.h"
#include "tests/platform/system_call_tracer.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <latch>
#include <thread>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using namespace test;
namespace fs = std::filesystem;
using Code = FileError::Code;

class AtomicFileTest : public testing::Test {
protected:
    MemoryFolder memory;
    fs::path folder = memory.path();
    fs::path target = folder / "layout.json";
    // Longer than any buffer on the way, so that a part of it would show.
    QByteArray before = QByteArray(150'000, 'o');
    QByteArray after = QByteArray(200'000, 'n');

    static std::expected<void, int> save(const fs::path& path, const QByteArray& bytes) {
        return replaceFile(QByteArray::fromStdString(path), bytes);
    }
    /// For a child: 0 only when success is reported.
    int saveAfter() const { return save(target, after) ? 0 : 1; }

    bool isOld() const { return readFile(target) == before.toStdString(); }
    bool isNew() const { return readFile(target) == after.toStdString(); }
};

TEST_F(AtomicFileTest, ReplacesTheFileAndKeepsItsModeAndOwner) {
    ASSERT_TRUE(save(target, "first"));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0600));
    fs::permissions(target, fs::perms(0444));
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(target.c_str(), 1234, 1235), 0);
    }
    ASSERT_TRUE(save(target, QByteArray("a\0b", 3)));
    EXPECT_EQ(readFile(target), std::string("a\0b", 3));
    struct stat status {};
    ASSERT_EQ(::stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0444u);
    if (::geteuid() == 0) {
        EXPECT_EQ(status.st_uid, 1234u);
        EXPECT_EQ(status.st_gid, 1235u);
    }
    ASSERT_TRUE(save(target, {}));
    EXPECT_EQ(readFile(target), "");
    EXPECT_EQ(entryCount(folder), 1);
}

TEST_F(AtomicFileTest, ReplacesALinkAndRefusesAFolder) {
    writeFile(folder / "precious", "p");
    fs::create_symlink("precious", target);
    ASSERT_TRUE(save(target, after));
    EXPECT_TRUE(isNew());
    EXPECT_FALSE(fs::is_symlink(target));
    EXPECT_EQ(readFile(folder / "precious"), "p");

    fs::create_directory(folder / "folder");
    EXPECT_EQ(save(folder / "folder", after).error(), EISDIR);
    EXPECT_EQ(save(folder / "none/file", after).error(), ENOENT);
    EXPECT_EQ(save(folder / "folder/..", after).error(), EINVAL);
    EXPECT_EQ(entryCount(folder), 3);
    ASSERT_TRUE(save(folder / std::string(255, 'n'), after)); // the longest name
}

TEST_F(AtomicFileTest, IsOldOrNewWhereverItIsKilled) {
    for (const Fate::Kind kind : {Fate::Kind::killBefore, Fate::Kind::killAfter}) {
        ASSERT_TRUE(save(target, before));
        std::size_t kills = 0;
        for (bool done = false; !done; ++kills) {
            const TracedRun run = traceSystemCalls(
                [&] { return saveAfter(); },
                [&](std::size_t index, long) { return Fate{index == kills ? kind : Fate::Kind::run}; });
            if (!run.traceable)
                GTEST_SKIP() << "this process may not trace its children";
            ASSERT_TRUE(isOld() || isNew()) << "killed at call " << kills;
            done = run.exitStatus.has_value();
            EXPECT_EQ(run.exitStatus.value_or(0), 0);
            EXPECT_TRUE(isNew() || !done);
            EXPECT_LE(entryCount(folder), 2) << "what kills leave must not add up";
            if (isNew()) {
                ASSERT_TRUE(save(target, before));
            }
        }
        EXPECT_GT(kills, 8u);
        EXPECT_EQ(entryCount(folder), 1) << "a save takes over what a kill has left";
    }
}

TEST_F(AtomicFileTest, ReportsEveryFailedStepAndKeepsTheOldFile) {
#if !defined(__x86_64__)
    GTEST_SKIP() << "calls are made to fail through the registers of another processor";
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer's own calls would fail as well";
#endif
    for (const int error : {EIO, ENOSPC, EINTR}) {
        for (std::size_t failing = 0;; ++failing) {
            ASSERT_TRUE(save(target, before));
            const TracedRun run = traceSystemCalls(
                [&] { return saveAfter(); },
                [&](std::size_t index, long number) {
                    const bool ofMemory = number == SYS_brk || number == SYS_mmap ||
                                          number == SYS_munmap || number == SYS_madvise;
                    return index == failing && !ofMemory ? Fate{Fate::Kind::fail, error} : Fate{};
                });
            if (!run.traceable)
                GTEST_SKIP() << "this process may not trace its children";
            ASSERT_TRUE(run.exitStatus);
            if (failing >= run.calls.size())
                break;
            const long call = run.calls[failing];
            const auto calledBefore = [&](long number) {
                const auto end = run.calls.begin() + static_cast<std::ptrdiff_t>(failing);
                return std::find(run.calls.begin(), end, number) != end;
            };
            const bool flushedLast = call == SYS_fsync && calledBefore(SYS_renameat);
            const bool success = *run.exitStatus == 0;
            EXPECT_TRUE(success ? isNew() : isOld() || (isNew() && flushedLast)) << "call " << call;
            if (call == SYS_write || call == SYS_fsync || call == SYS_renameat) {
                EXPECT_EQ(success, error == EINTR && call != SYS_renameat) << "call " << call;
            }
        }
    }
}

/// The order is the promise: without it a loss of power leaves an empty file under the good name.
TEST_F(AtomicFileTest, FlushesTheFileBeforeTheRenameAndTheFolderAfterIt) {
    const TracedRun run =
        traceSystemCalls([&] { return saveAfter(); }, [](std::size_t, long) { return Fate{}; });
    if (!run.traceable)
        GTEST_SKIP() << "this process may not trace its children";
    std::vector<long> order;
    for (long call : run.calls) {
        if (call == SYS_write || call == SYS_fsync || call == SYS_renameat)
            order.push_back(call);
    }
    // Any number of writes; sanitizers add some of their own.
    order.erase(std::unique(order.begin(), order.end()), order.end());
    EXPECT_THAT(order, testing::ElementsAre(SYS_write, SYS_fsync, SYS_renameat, SYS_fsync));
}

TEST_F(AtomicFileTest, KeepsTheOldFileWhenTheDiskIsFullOrNotToBeWritten) {
    ASSERT_TRUE(save(target, before));
    fs::permissions(folder, fs::perms(0555));
    if (const WithoutRights user; user) {
        EXPECT_EQ(save(target, after).error(), EACCES);
    }
    fs::permissions(folder, fs::perms(0755));
    EXPECT_TRUE(isOld());

    fs::create_directory(folder / "disk");
    const SmallDisk disk(folder / "disk", "size=256k");
    if (!disk)
        GTEST_SKIP() << "this process may not mount a small disk";
    target = folder / "disk/layout.json";
    ASSERT_TRUE(save(target, before));
    EXPECT_EQ(save(target, after).error(), ENOSPC);
    EXPECT_TRUE(isOld());
    EXPECT_EQ(entryCount(folder / "disk"), 1);
    ASSERT_TRUE(save(target, "small")) << "what fits is saved again";
    ASSERT_TRUE(save(target, before));

    ASSERT_TRUE(disk.makeReadOnly());
    EXPECT_EQ(save(target, "small").error(), EROFS);
    EXPECT_TRUE(isOld());
}

TEST_F(AtomicFileTest, IsNotHinderedByWhatLiesUnderTemporaryNames) {
    writeFile(folder / "precious", "p");
    ASSERT_EQ(::mkfifo((folder / ".tessellar-save-0").c_str(), 0600), 0);
    fs::create_directory(folder / ".tessellar-save-1");
    fs::create_symlink("precious", folder / ".tessellar-save-2");
    fs::create_hard_link(folder / "precious", folder / ".tessellar-save-3");
    ASSERT_TRUE(save(target, after));
    EXPECT_TRUE(isNew());
    EXPECT_EQ(readFile(folder / "precious"), "p");
}

TEST_F(AtomicFileTest, ManyWritersLeaveOneWholeFile) {
    ASSERT_TRUE(save(target, "first"));
    std::vector<pid_t> children;
    for (const char letter : {'A', 'B', 'C'}) {
        children.push_back(::fork());
        if (children.back() == 0) {
            std::atomic<int> saved = 0;
            {
                std::vector<std::jthread> writers;
                for (const char each : {letter, static_cast<char>(letter + 'a' - 'A')})
                    writers.emplace_back([&, each] {
                        for (int i = 0; i < 200; ++i)
                            saved += save(target, QByteArray(10'000 + i, each)).has_value();
                    });
            }
            ::_exit(saved == 400 ? 0 : 1);
        }
    }
    for (const pid_t child : children) {
        int status = 0;
        while (::waitpid(child, &status, WNOHANG) == 0) {
            const std::string bytes = readFile(target);
            ASSERT_TRUE(!bytes.empty() &&
                        (bytes == "first" || bytes.find_first_not_of(bytes[0]) == bytes.npos));
        }
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(entryCount(folder), 1);
}

class StoredFileTest : public testing::Test {
protected:
    const QString folder = u"/Users/ada/store"_s;
    const QString path = u"/Users/ada/store/notes.json"_s;
    test::TestMachine mac;
    StoredFile file{mac.files, path, 100};

    std::uint64_t inode() const { return mac.files.linkStatus(path)->inode; }
};

TEST_F(StoredFileTest, TellsMissingUnreadableAndThereApart) {
    EXPECT_EQ(file.read(), std::nullopt);
    EXPECT_TRUE(file.write("one"));
    EXPECT_EQ(file.read(), "one");

    // Neither what is too large, nor a folder, nor a link to nowhere is written over or moved.
    const auto keepsItsPlace = [&](Code code) {
        const auto read = file.read();
        ASSERT_FALSE(read);
        EXPECT_EQ(read.error().code, code);
        EXPECT_EQ(file.write("two").error().code, code);
        EXPECT_EQ(mac.names(folder), QStringList{u"notes.json"_s});
    };
    mac.write(path, QByteArray(101, 'x'));
    keepsItsPlace(Code::tooLarge);
    mac.remove(path);
    mac.makeFolder(path);
    keepsItsPlace(Code::isADirectory);
    mac.remove(path);
    mac.link(path, u"/Volumes/Away/notes.json"_s);
    keepsItsPlace(Code::notFound);

    // Readable again it has to be read first; certainly gone it need not.
    mac.remove(path);
    mac.write(path, "two");
    EXPECT_FALSE(file.write("three"));
    EXPECT_EQ(file.read(), "two");
    EXPECT_TRUE(file.write("three"));
    mac.remove(path);
    mac.makeFolder(path);
    EXPECT_FALSE(file.read());
    mac.remove(path);
    EXPECT_TRUE(file.write("four"));
}

TEST_F(StoredFileTest, SetsAsideUnderAFreshName) {
    mac.write(path, "damaged");
    const auto aside = file.setAside(mac.time, QUuid(u"{12345678-0000-4000-8000-000000000000}"_s));
    EXPECT_EQ(aside, folder + u"/notes.damaged-2026-11-14T21-05-40Z-12345678.json"_s);
    EXPECT_EQ(mac.read(*aside), "damaged");
    EXPECT_TRUE(file.write("new"));
    // What cannot be moved stays.
    mac.write(path, "damaged again");
    EXPECT_FALSE(file.setAside(mac.time, QUuid(u"{12345678-0000-4000-8000-000000000000}"_s)));
    EXPECT_FALSE(file.write("newer"));
    EXPECT_EQ(mac.read(path), "damaged again");
}

TEST_F(StoredFileTest, WritesEqualBytesOnlyAfterAFailure) {
    ASSERT_TRUE(file.write("same"));
    const std::uint64_t before = inode();
    ASSERT_TRUE(file.write("same"));
    EXPECT_EQ(inode(), before);

    mac.remove(path);
    mac.makeFolder(path + u"/in the way"_s);
    EXPECT_FALSE(file.write("same"));
    mac.remove(path);
    mac.write(path, "same"); // as a rename leaves it that was not flushed
    const std::uint64_t unsure = inode();
    EXPECT_TRUE(file.write("same"));
    EXPECT_NE(inode(), unsure);
}

TEST_F(StoredFileTest, ARemovalAndAMoveFlushTheirFolders) {
    mac.write(path, "one");
    const auto flushes = [&](const std::function<bool()>& work) -> std::optional<qsizetype> {
        const auto run = test::traceSystemCalls([&] { return work() ? 0 : 1; },
                                                [](auto, long) { return test::Fate{}; });
        if (!run.traceable)
            return std::nullopt;
        EXPECT_EQ(run.exitStatus, 0);
        return std::ranges::count(run.calls, SYS_fsync);
    };
    const auto moving =
        flushes([&] { return mac.files.move(path, folder + u"/other.json"_s).has_value(); });
    if (!moving)
        GTEST_SKIP() << "this process may not trace its children";
    EXPECT_EQ(moving, 2);
    EXPECT_EQ(flushes([&] { return mac.files.remove(folder + u"/other.json"_s).has_value(); }), 1);
}

/// Holds the lane for saving up until told to go on.
class BackgroundFileTest : public StoredFileTest {
protected:
    BackgroundFileTest() {
        mac.workers.submit(Lane::saving, {}, [this](std::stop_token) { opened.wait(); });
    }
    BackgroundFile::Encode bytes(const char* text) {
        return [this, text] {
            ++encoded;
            return QByteArray(text);
        };
    }
    ~BackgroundFileTest() override { open(); }
    void open() {
        if (!opened.try_wait())
            opened.count_down();
        mac.settle();
    }

    std::latch opened{1};
    std::atomic<int> encoded = 0;
    std::optional<BackgroundFile> background{std::in_place, mac.workers, file};
};

TEST_F(BackgroundFileTest, ALaterFailureIsNotOneOfWhatWasWrittenBefore) {
    const auto first = background->write(bytes("one"));
    EXPECT_EQ(background->result(first), std::nullopt);
    open();
    EXPECT_EQ(background->result(first), BackgroundFile::Result());
    mac.remove(path);
    mac.makeFolder(path);
    const auto second = background->write(bytes("two"));
    EXPECT_FALSE(background->wait());
    EXPECT_EQ(background->lastError()->code, Code::isADirectory);
    EXPECT_EQ(background->result(first), BackgroundFile::Result());
    EXPECT_FALSE(background->result(second).value());
    mac.remove(path);
    background->write(bytes("three"));
    EXPECT_TRUE(background->wait());
    EXPECT_EQ(background->lastError(), std::nullopt);
    EXPECT_EQ(background->read(), "three");
}

TEST_F(BackgroundFileTest, ALaterWriteDoesNotOvertakeWhatWasHandedOverForAnotherFile) {
    const QString otherPath = folder + u"/other.json"_s;
    BackgroundFile other(mac.workers, StoredFile(mac.files, otherPath, 1'000));
    background->write(bytes("one"));
    other.write(bytes("two"));
    QByteArray seen;
    background->write([&] {
        seen = mac.read(otherPath);
        return QByteArray("three");
    });
    open();
    EXPECT_EQ(seen, "two");
    EXPECT_EQ(mac.read(path), "three");
}

TEST_F(BackgroundFileTest, WhatMayOnlyBeWrittenAfterItFindsItThere) {
    BackgroundFile other(mac.workers, StoredFile(mac.files, folder + u"/other.json"_s, 1'000));
    background->write(bytes("one"));
    QByteArrayList seen;
    const auto write = [&] {
        return other.write(
            [&, written = background->written()]() -> std::expected<QByteArray, FileError> {
                if (const auto there = written(); !there)
                    return std::unexpected(there.error());
                seen.append(mac.read(path));
                return QByteArray("other");
            });
    };
    write();
    background->write(bytes("two")); // in place of the first, whose turn is over then
    open();
    EXPECT_EQ(seen, QByteArrayList{"two"});
    EXPECT_EQ(encoded, 1);
    EXPECT_TRUE(background->wait());

    mac.remove(path);
    mac.makeFolder(path);
    background->write(bytes("three"));
    write();
    EXPECT_EQ(other.wait().error().code, Code::isADirectory);
    EXPECT_EQ(seen.size(), 1);
}

TEST_F(BackgroundFileTest, IsWrittenButTellsNobodyWhenItGoes) {
    background->write(bytes("one"));
    background->whenWritten([](const auto&) { FAIL(); });
    const auto written = background->written(); // keeps what it knows beyond its end
    background.reset();
    open();
    EXPECT_EQ(mac.read(path), "one");
}

} // namespace
} // namespace tessellar
