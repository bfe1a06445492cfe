#include "platform/background_file.h"

#include "tests/platform/system_call_tracer.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

#include <latch>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using Code = FileError::Code;

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
        return [this, text]() -> std::expected<QByteArray, FileError> {
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

TEST_F(BackgroundFileTest, WritesTheLastOfThoseThatWaitAndTellsOfAll) {
    QStringList told;
    const auto tell = [&](const QString& name) {
        background->whenWritten([&told, name](const BackgroundFile::Result& written) {
            told += name + (written ? u" there"_s : u" failed"_s);
        });
    };
    const auto first = background->write(bytes("one"));
    tell(u"one"_s);
    const auto second = background->write(bytes("two"));
    tell(u"two"_s);
    mac.mailbox.drain();
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(background->result(first), std::nullopt);
    open();
    EXPECT_EQ(told, (QStringList{u"one there"_s, u"two there"_s}));
    EXPECT_EQ(encoded, 1);
    EXPECT_EQ(mac.read(path), "two");
    EXPECT_EQ(background->result(first), BackgroundFile::Result());
    EXPECT_EQ(background->result(second), BackgroundFile::Result());

    mac.remove(path);
    mac.makeFolder(path);
    const auto third = background->write(bytes("three"));
    EXPECT_FALSE(background->wait());
    EXPECT_EQ(background->lastError()->code, Code::isADirectory);
    EXPECT_EQ(background->result(second), BackgroundFile::Result());
    EXPECT_FALSE(background->result(third).value());
    mac.remove(path);
    background->write(bytes("four"));
    EXPECT_TRUE(background->wait());
    EXPECT_EQ(background->lastError(), std::nullopt);
    EXPECT_EQ(background->read(), "four");
}

TEST_F(BackgroundFileTest, ALaterWriteDoesNotOvertakeWhatWasHandedOverForAnotherFile) {
    const QString otherPath = folder + u"/other.json"_s;
    BackgroundFile other(mac.workers, StoredFile(mac.files, otherPath, 1'000));
    background->write(bytes("one"));
    other.write(bytes("two"));
    QByteArray seen;
    background->write([&]() -> std::expected<QByteArray, FileError> {
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
    background.reset();
    open();
    EXPECT_EQ(mac.read(path), "one");
}

} // namespace
} // namespace tessellar
