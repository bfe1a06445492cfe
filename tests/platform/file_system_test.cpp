#include "platform/descriptor.h"
#include "platform/file_system.h"
#include "platform/rooted_path.h"
#include "tests/support/printers.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <filesystem>
#include <fstream>
#include <thread>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;
using Code = FileError::Code;

/// A folder with a machine's root in it and secrets beside it.
class FileSystemTest : public testing::Test {
protected:
    QTemporaryDir folder;
    fs::path outside = fs::path(folder.path().toStdString()) / "outside";
    fs::path root = fs::path(folder.path().toStdString()) / "root";
    FileSystem files{QString::fromStdString(root)};

    void SetUp() override {
        fs::create_directories(outside / "folder");
        fs::create_directories(root / "Applications");
        put(outside / "secret", "secret");
        put(outside / "folder/secret", "secret");
    }

    static void put(const fs::path& path, std::string_view bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }

    static std::string contents(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    Code readError(const QString& path, std::uint64_t limit = 1000) const {
        const auto bytes = files.read(path, limit);
        EXPECT_FALSE(bytes) << path.toStdString() << " was read";
        return bytes ? Code::io : bytes.error().code;
    }
};

TEST_F(FileSystemTest, NoPathLeadsOutOfTheRoot) {
    fs::create_directory(root / "outside");
    put(root / "secret", "inside");
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
        EXPECT_EQ(readError(path), Code::notFound) << path.toStdString();
        EXPECT_FALSE(files.exists(path));
    }
    for (const QString& path : {u"/Applications/inside"_s, u"/../../secret"_s,
                                u"/Applications/above/secret"_s, u"/Applications/parent/secret"_s})
        EXPECT_EQ(files.read(path, 100), QByteArray("inside"));
    EXPECT_FALSE(files.writeAtomically(u"/Applications/folder/new"_s, "x"));
    EXPECT_FALSE(files.createDirectories(u"/Applications/folder/new"_s));
    EXPECT_FALSE(files.remove(u"/Applications/folder/secret"_s));
    EXPECT_FALSE(files.move(u"/Applications/folder/secret"_s, u"/taken"_s));
    EXPECT_EQ(std::distance(fs::directory_iterator(outside), {}), 2);
}

} // namespace
} // namespace tessellar
