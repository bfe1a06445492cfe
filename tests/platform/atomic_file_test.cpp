#include "platform/atomic_file.h"
#include "tests/support/printers.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace tessellar {
namespace {

namespace fs = std::filesystem;

class AtomicFileTest : public testing::Test {
protected:
    QTemporaryDir temporary;
    fs::path folder{temporary.path().toStdString()};
    fs::path target = folder / "layout.json";

    std::expected<void, int> save(const QByteArray& bytes) const {
        return replaceFile(QByteArray::fromStdString(target), bytes);
    }

    std::string contents() const {
        std::ifstream in(target, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::ptrdiff_t fileCount() const { return std::distance(fs::directory_iterator(folder), {}); }
};

TEST_F(AtomicFileTest, ReplacesTheFileAndKeepsItsModeAndNothingElse) {
    ASSERT_TRUE(save("first"));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    fs::permissions(target, fs::perms(0644));
    ASSERT_TRUE(save(QByteArray("a\0b", 3)));
    EXPECT_EQ(contents(), std::string("a\0b", 3));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0644));
    ASSERT_TRUE(save({}));
    EXPECT_EQ(contents(), "");
    EXPECT_EQ(fileCount(), 1);
}

} // namespace
} // namespace tessellar
