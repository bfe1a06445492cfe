#include "tests/helper/helper_fixture.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <atomic>
#include <thread>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

/// A thread exchanges the folder around an item with a link to another folder, which holds a file of
/// the same name, as fast as it can, while the item is moved to the Trash and back.
class SwapRace : public testing::Test, protected test::HelperMac {
protected:
    static constexpr int rounds = 20'000;

    SwapRace() {
        mac.write(folder + u"/item"_s, "item");
        mac.write(u"/victim/item"_s, "victim");
        mac.link(u"/Library/Application Support/link"_s, u"../../victim"_s);
        approved = identity(folder + u"/item"_s);
        swapper = std::jthread([this](std::stop_token stop) {
            const QByteArray a = mac.hostPath(folder).toUtf8();
            const QByteArray b = mac.hostPath(u"/Library/Application Support/link"_s).toUtf8();
            while (!stop.stop_requested()) {
                ::syscall(SYS_renameat2, AT_FDCWD, a.constData(), AT_FDCWD, b.constData(),
                          2 /* exchange */);
                ++swaps;
            }
        });
    }

    /// Gives the other thread its turn, however busy the machine is.
    void awaitSwap() const {
        for (const int before = swaps; swaps == before;)
            std::this_thread::yield();
    }
    bool isVictimUnharmed() const { return mac.read(u"/victim/item"_s) == "victim"; }

    const QString folder = u"/Library/Application Support/Acme"_s;
    FileIdentity approved;
    std::atomic<int> swaps = 0;
    std::jthread swapper;
};

/// Looks by path, then acts by path: a swap between the two takes the wrong file.
TEST_F(SwapRace, IsLostByAWalkThatLooksFirst) {
    const QByteArray source = mac.hostPath(folder + u"/item"_s).toUtf8();
    const QByteArray target = mac.hostPath(trash + u"/item"_s).toUtf8();
    int taken = 0;
    for (int i = 0; i < rounds && taken == 0; ++i) {
        struct stat status {};
        if (::stat(source.constData(), &status) != 0 || status.st_ino != approved.inode)
            continue;
        awaitSwap();
        if (::rename(source.constData(), target.constData()) != 0)
            continue;
        if (!isVictimUnharmed())
            ++taken;
        while (taken == 0 && ::rename(target.constData(), source.constData()) == 0 &&
               identity(u"/victim/item"_s) == approved) {
            // It came back into the wrong folder: also a loss.
            ++taken;
        }
    }
    EXPECT_GT(taken, 0) << "The harness is too tame to prove anything.";
}

TEST_F(SwapRace, IsWonByDescriptors) {
    const ConfinedFiles files(mac.root.path().toUtf8());
    const auto bin = files.folder("Users/ada/.Trash");
    ASSERT_TRUE(bin);
    const NamedPlace place = *namedPlace(folder + u"/item"_s);
    int moved = 0;
    int refused = 0;
    // On a busy machine the swaps come late; then it takes some rounds more.
    for (int i = 0; i < rounds || moved == 0 || refused == 0 || swaps < rounds / 10; ++i) {
        const auto held = files.hold(place, approved);
        if (!held) {
            ++refused;
            continue;
        }
        ASSERT_TRUE(ConfinedFiles::move(*held, bin->get(), "item"));
        struct stat status {};
        ASSERT_EQ(::fstatat(bin->get(), "item", &status, AT_SYMLINK_NOFOLLOW), 0);
        ASSERT_EQ(status.st_ino, approved.inode);
        ++moved;
        ASSERT_EQ(::renameat(bin->get(), "item", held->folder.get(), "item"), 0);
        ASSERT_TRUE(isVictimUnharmed());
    }
    EXPECT_TRUE(isVictimUnharmed());
    RecordProperty("moved", moved);
    std::printf("moved %d, refused %d, swaps %d\n", moved, refused, swaps.load());
}

} // namespace
} // namespace tessellar
