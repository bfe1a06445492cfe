#include "platform/file_system.h"

#include "platform/full_disk_access.h"
#include "platform/rooted_path.h"
#include "tests/platform/disk_folder.h"
#include "tests/support/printers.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using namespace std::string_literals;
using namespace test;
namespace fs = std::filesystem;
using Code = FileError::Code;

/// A folder with a machine's root in it and secrets beside it.
class FileSystemTest : public testing::Test {
protected:
    MemoryFolder memory;
    fs::path outside = memory.path() / "outside";
    fs::path root = memory.path() / "root";
    FileSystem files{QString::fromStdString(root)};
    FileSystem host;

    void SetUp() override {
        fs::create_directories(outside / "folder");
        fs::create_directories(root / "Applications");
        writeFile(outside / "secret", "secret");
        writeFile(outside / "folder/secret", "secret");
    }

    /// The code of a failure; a success is none of these tests' codes.
    template <typename T>
    static std::optional<Code> failure(const std::expected<T, FileError>& result) {
        return result ? std::nullopt : std::optional(result.error().code);
    }
};

TEST_F(FileSystemTest, NoPathLeadsOutOfTheRoot) {
    fs::create_directory(root / "outside");
    writeFile(root / "secret", "inside");
    fs::create_symlink("../../../outside/secret", root / "Applications/up");
    fs::create_symlink(outside / "secret", root / "Applications/absolute");
    fs::create_symlink("/secret", root / "Applications/inside");
    fs::create_symlink("..", root / "Applications/parent");
    fs::create_symlink("/..", root / "Applications/above");
    fs::create_symlink(outside, root / "Applications/folder");

    for (const QString& path :
         {u"/../outside/secret"_s, u"/Applications/../../outside/secret"_s, u"/Applications/up"_s,
          u"/Applications/absolute"_s, u"/Applications/parent/../outside/secret"_s,
          u"/Applications/folder/secret"_s}) {
        EXPECT_EQ(failure(files.read(path, 100)), Code::notFound) << path.toStdString();
        EXPECT_FALSE(files.exists(path));
    }
    for (const QString& path : {u"/Applications/inside"_s, u"/../../secret"_s,
                                u"/Applications/above/secret"_s, u"/Applications/parent/secret"_s})
        EXPECT_EQ(files.read(path, 100), QByteArray("inside"));
    EXPECT_FALSE(files.writeAtomically(u"/Applications/folder/new"_s, "x"));
    EXPECT_FALSE(files.createDirectories(u"/Applications/folder/new"_s));
    EXPECT_FALSE(files.remove(u"/Applications/folder/secret"_s));
    EXPECT_FALSE(files.move(u"/Applications/folder/secret"_s, u"/taken"_s));
    EXPECT_EQ(entryCount(outside), 2);
}

/// The kernel's resolution under a root is what the one by components has to equal.
TEST_F(FileSystemTest, BothWaysOfResolvingAgreeInAForestOfLinks) {
    fs::create_directories(root / "a/b/c");
    writeFile(root / "a/file", "x");
    for (const auto& [link, target] : {std::pair{"up", "../.."},
                                       {"top", "/a/b/"},
                                       {"file", "../file"},
                                       {"again", "up/a/./b/top/c"},
                                       {"self", "self"},
                                       {"none", "c/none"},
                                       {"out", "/../../outside"}})
        fs::create_symlink(target, root / "a/b" / link);
    const Descriptor base(::open(root.c_str(), O_RDONLY | O_CLOEXEC));
#ifdef O_PATH
    const std::array allFlags{O_PATH, O_PATH | O_NOFOLLOW};
#else
    const std::array allFlags{O_RDONLY, O_RDONLY | O_NOFOLLOW};
#endif
    const auto outcome = [](const std::expected<Descriptor, int>& opened) {
        struct stat status {};
        if (opened)
            ::fstat(opened->get(), &status);
        return std::pair(opened ? 0 : opened.error(), status.st_ino);
    };
    const std::array parts{"a",    "b",    "up",  "top", "file", "again",
                           "self", "none", "out", "c",   "..",   "."};
    int found = 0;
    const auto agree = [&](const std::string& text) {
        const QByteArray path = QByteArray::fromStdString(text);
        for (const int flags : allFlags) {
            const auto byKernel = outcome(openInRoot(base.get(), path, flags));
            ASSERT_EQ(byKernel, outcome(openInRootByComponent(base.get(), path, flags))) << text;
            found += byKernel.first == 0;
        }
        const QString resolved = files.resolved(QString::fromStdString(text)).value_or(QString());
        const auto status = files.status(QString::fromStdString(text));
        ASSERT_EQ(resolved.isEmpty(), !status) << text;
        if (status) {
            ASSERT_EQ(files.linkStatus(resolved), status) << text;
        }
    };
    for (const std::string one : parts)
        for (const std::string two : parts)
            for (const std::string three : parts)
                for (const std::string& start : {"/"s, "/a/b/"s})
                    agree(start + one + '/' + two + '/' + three);
    EXPECT_GT(found, 200) << "too few paths led anywhere";
}

TEST_F(FileSystemTest, LinkLoopsAndOverlongPathsEnd) {
    fs::create_symlink("b", root / "a");
    fs::create_symlink("/a", root / "b");
    EXPECT_EQ(failure(files.status(u"/a"_s)), Code::linkLoop);
    EXPECT_EQ(failure(files.resolved(u"/a/x"_s)), Code::linkLoop);
    EXPECT_EQ(files.linkTarget(u"/a"_s), QByteArray("b"));
    EXPECT_EQ(failure(files.linkTarget(u"/Applications"_s)), Code::badPath);
    for (const QString& path : {QString(u'/' + QString(5000, u'n')), u"relative"_s, QString(),
                                QString(u"/a"_s + QChar(0)), QString(u'/' + QString(QChar(0xD800)))}) {
        EXPECT_EQ(failure(files.status(path)), Code::badPath);
        EXPECT_EQ(failure(host.status(path)), Code::badPath);
    }
    EXPECT_EQ(failure(files.remove(u"/"_s)), Code::badPath);
    EXPECT_EQ(failure(files.move(u"/Applications/.."_s, u"/x"_s)), Code::badPath);
}

TEST_F(FileSystemTest, HostPathsStayInsideTheRootAndComeBack) {
    const QByteArray base = QByteArray::fromStdString(root);
    EXPECT_EQ(files.hostPath(u"/Applications/A.app"_s), base + "/Applications/A.app");
    EXPECT_EQ(files.hostPath(u"/../../outside/secret"_s), base + "/outside/secret");
    EXPECT_EQ(host.hostPath(u"/a"_s), "/a");
    EXPECT_EQ(files.pathFromHost(base + "/a//b/."), u"/a/b"_s);
    EXPECT_EQ(files.pathFromHost(base), u"/"_s);
    EXPECT_EQ(files.pathFromHost(base + "/../outside"), std::nullopt);
    EXPECT_EQ(files.pathFromHost(base + "2/a"), std::nullopt);
    EXPECT_EQ(files.pathFromHost("a"), std::nullopt);

    // A tool answers with the path that it resolved, even where the root was given by a link.
    fs::create_directory_symlink(root, memory.path() / "link");
    const FileSystem linked(QString::fromStdString(memory.path() / "link"));
    EXPECT_EQ(linked.pathFromHost(base + "/a"), u"/a"_s);
    EXPECT_TRUE(linked.isDirectory(u"/Applications"_s));

    // The root is a place, not the folder that once lay there.
    fs::remove_all(root);
    EXPECT_FALSE(files.exists(u"/"_s));
    fs::create_directory(root);
    EXPECT_TRUE(files.writeAtomically(u"/new"_s, "x"));
    EXPECT_EQ(readFile(root / "new"), "x");
}

TEST_F(FileSystemTest, NamesOfAnyBytesCanBeReached) {
    QList<DirectoryEntry> expected;
    for (const QByteArray name :
         {"\x80", "a\xFF", "b\xC3", "c\xED\xA0\x80", "d\xF4\x90\x80\x80", "ü𝄞\xF0\x9D"}) {
        expected.append({name, FileType::regular});
        const QString path = FileSystem::joined(u"/Applications"_s, FileSystem::fromHostBytes(name));
        ASSERT_EQ(FileSystem::toHostBytes(path), "/Applications/" + name);
        ASSERT_EQ(files.pathFromHost(files.hostPath(path)), path);
        ASSERT_TRUE(files.writeAtomically(path, name));
        ASSERT_EQ(files.read(path, 100), name);
        ASSERT_EQ(files.resolved(path), path);
    }
    std::ranges::sort(expected, {}, &DirectoryEntry::name);
    EXPECT_EQ(files.entries(u"/Applications"_s), expected);
    EXPECT_EQ(FileSystem::fromHostBytes("ü𝄞"), u"ü𝄞"_s);
}

TEST_F(FileSystemTest, ReadsRegularFilesWithinTheLimitAndNothingElse) {
    writeFile(root / "file", "12345");
    EXPECT_EQ(files.read(u"/file"_s, 5), QByteArray("12345"));
    EXPECT_EQ(files.read(u"/file/"_s, 5), QByteArray("12345"));
    EXPECT_EQ(failure(files.read(u"/file"_s, 4)), Code::tooLarge);
    EXPECT_EQ(failure(files.read(u"/file/x"_s, 4)), Code::notADirectory);
    EXPECT_EQ(failure(files.read(u"/Applications"_s, 5)), Code::isADirectory);
    EXPECT_EQ(failure(files.entries(u"/file"_s)), Code::notADirectory);

    // Files whose size shows only while they are read.
    EXPECT_GT(host.read(u"/proc/self/maps"_s, 1 << 20).value_or("").size(), 1000);
    EXPECT_EQ(failure(host.read(u"/proc/self/maps"_s, 1000)), Code::tooLarge);

    ASSERT_EQ(::mkfifo((root / "pipe").c_str(), 0600), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    ::snprintf(address.sun_path, sizeof address.sun_path, "%s", (root / "socket").c_str());
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    fs::create_symlink("pipe", root / "link");
    for (const QString& path : {u"/pipe"_s, u"/socket"_s, u"/link"_s}) {
        EXPECT_EQ(failure(files.read(path, 5)), Code::notARegularFile);
        EXPECT_EQ(failure(files.open(path)), Code::notARegularFile);
        EXPECT_EQ(failure(files.entries(path)), Code::notADirectory);
    }
    EXPECT_EQ(failure(host.read(u"/dev/zero"_s, 5)), Code::notARegularFile);
}

TEST_F(FileSystemTest, TellsWhatAFileIs) {
    writeFile(root / "tool", "12345");
    fs::permissions(root / "tool", fs::perms(04750));
    fs::create_symlink("/tool", root / "Applications/link");
    const timespec times[2] = {{0, 0}, {978'307'200 + 60, 500'000'000}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (root / "tool").c_str(), times, 0), 0);
    struct stat raw {};
    ASSERT_EQ(::stat((root / "tool").c_str(), &raw), 0);
    for (const auto& status :
         {files.status(u"/Applications/link"_s),
          host.status(host.fromHostBytes(QByteArray::fromStdString(root / "tool")))}) {
        ASSERT_TRUE(status);
        EXPECT_EQ(status->type, FileType::regular);
        EXPECT_EQ(status->size, 5u);
        EXPECT_EQ(status->device, raw.st_dev);
        EXPECT_EQ(status->inode, raw.st_ino);
        EXPECT_EQ(status->mode, 04750u);
        EXPECT_EQ(status->owner, ::geteuid());
        EXPECT_EQ(status->modified, Instant{60.5});
    }
    EXPECT_EQ(files.linkStatus(u"/Applications/link"_s)->type, FileType::symbolicLink);
    EXPECT_TRUE(files.isExecutableFile(u"/Applications/link"_s));
    EXPECT_FALSE(files.isExecutableFile(u"/Applications"_s));
    fs::permissions(root / "tool", fs::perms(0640));
    EXPECT_FALSE(files.isExecutableFile(u"/Applications/link"_s));
    fs::create_symlink("nowhere", root / "dangling");
    EXPECT_FALSE(files.exists(u"/dangling"_s));
    EXPECT_TRUE(files.linkStatus(u"/dangling"_s));
}

TEST_F(FileSystemTest, MakesFoldersMovesAndRemovesWithoutLoss) {
    fs::create_symlink("/Applications", root / "link");
    fs::create_symlink("/nowhere", root / "dangling");
    EXPECT_TRUE(files.createDirectories(u"/link/a/b/"_s));
    EXPECT_TRUE(files.createDirectories(u"/link/a/b"_s));
    EXPECT_TRUE(fs::is_directory(root / "Applications/a/b"));
    writeFile(root / "file", "f");
    EXPECT_EQ(failure(files.createDirectories(u"/file/x"_s)), Code::notADirectory);
    EXPECT_EQ(failure(files.createDirectories(u"/dangling/x"_s)), Code::notADirectory);

    writeFile(root / "other", "o");
    EXPECT_EQ(files.move(u"/file"_s, u"/other"_s).error(),
              (FileError{Code::alreadyExists, u"/other"_s}));
    EXPECT_EQ(files.move(u"/link/a"_s, u"/dangling"_s).error().code, Code::alreadyExists);
    EXPECT_EQ(files.move(u"/none"_s, u"/x"_s).error(), (FileError{Code::notFound, u"/none"_s}));
    EXPECT_EQ(files.move(u"/file"_s, u"/none/x"_s).error(), (FileError{Code::notFound, u"/none/x"_s}));
    EXPECT_EQ(failure(files.move(u"/link/a"_s, u"/link/a/b/c"_s)), Code::badPath);
    EXPECT_TRUE(files.move(u"/file"_s, u"/link/moved"_s));
    EXPECT_EQ(readFile(root / "Applications/moved"), "f");

    EXPECT_EQ(failure(files.remove(u"/Applications/a"_s)), Code::notEmpty);
    EXPECT_TRUE(files.remove(u"/Applications/a/b"_s));
    EXPECT_TRUE(files.remove(u"/Applications/moved"_s));
    EXPECT_TRUE(files.remove(u"/link/"_s));
    EXPECT_TRUE(fs::is_directory(root / "Applications/a"));
    EXPECT_EQ(failure(files.remove(u"/link"_s)), Code::notFound);
}

TEST_F(FileSystemTest, TellsFullDiskAccessByWhatItGuards) {
    const QString home = u"/Users/ada"_s;
    EXPECT_EQ(fullDiskAccess(files, home), FullDiskAccess::notGuarded);
    const fs::path guarded = root / "Users/ada/Library/Application Support/com.apple.TCC";
    fs::create_directories(guarded);
    writeFile(guarded / "TCC.db", "guarded");
    EXPECT_EQ(fullDiskAccess(files, home), FullDiskAccess::granted);
    if (::geteuid() != 0) { // who may read everything
        fs::permissions(guarded / "TCC.db", fs::perms::none);
        EXPECT_EQ(fullDiskAccess(files, home), FullDiskAccess::denied);
    }
}

TEST_F(FileSystemTest, NamesWhatStandsInTheWay) {
    fs::create_directory(root / "disk");
    const SmallDisk disk(root / "disk", "size=64k");
    if (!disk)
        GTEST_SKIP() << "this process may not mount a small disk";
    writeFile(root / "file", "f");
    EXPECT_EQ(files.move(u"/file"_s, u"/disk/file"_s).error(),
              (FileError{Code::otherVolume, u"/disk/file"_s}));
    EXPECT_EQ(failure(files.writeAtomically(u"/disk/file"_s, QByteArray(1 << 20, 'x'))), Code::noSpace);
    ASSERT_TRUE(disk.makeReadOnly());
    EXPECT_EQ(failure(files.writeAtomically(u"/disk/file"_s, "x")), Code::readOnly);
    EXPECT_EQ(failure(files.createDirectories(u"/disk/a/b"_s)), Code::readOnly);

    fs::permissions(memory.path(), fs::perms(0755));
    fs::permissions(root / "file", fs::perms::none);
    const WithoutRights user;
    if (user) {
        EXPECT_EQ(failure(files.read(u"/file"_s, 10)), Code::permissionDenied);
    }
    EXPECT_EQ(message(FileError{Code::permissionDenied, u"/file"_s}),
              u"You do not have permission to use “/file”."_s);
}

} // namespace
} // namespace tessellar
