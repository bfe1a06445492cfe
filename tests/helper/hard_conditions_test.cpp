// The helper under what a machine can do to it: a full disk, mounts, other users, trees as deep as they
// can be made.

#include "helper/helper_server.h"

#include "cleanup/privileged/privileged_helper_coordinator.h"
#include "tests/helper/helper_fixture.h"
#include "tests/platform/disk_folder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <thread>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using Kind = PrivilegedFileOperationKind;
using Status = PrivilegedFileOutcomeStatus;

class HardConditions : public testing::Test, protected test::HelperMac {
protected:
    const QString folder = u"/Library/Application Support/"_s;

    /// Runs `work` in a child process of another user, and gives its exit status.
    static int asNobody(const std::function<int()>& work) {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(::setgid(65534) == 0 && ::setuid(65534) == 0 ? work() : 99);
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
    }
};

TEST_F(HardConditions, NothingMovesThatCannotBeWrittenDown) {
    const test::SmallDisk disk(state.path().toStdString(), "size=64k");
    if (!disk)
        GTEST_SKIP() << "This process may not mount.";
    mac.write(folder + u"item"_s, "x");
    QFile filler(state.path() + u"/filler"_s);
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) {
    }
    const auto outcome = perform(Kind::moveToTrash, item(folder + u"item"_s));
    EXPECT_EQ(outcome.message, u"The administrator helper could not record the move."_s);
    EXPECT_EQ(mac.read(folder + u"item"_s), "x");
    EXPECT_TRUE(mac.names(trash).isEmpty());
    filler.remove();
    EXPECT_EQ(perform(Kind::moveToTrash, item(folder + u"item"_s)).status, Status::moved);
}

TEST_F(HardConditions, AVolumeInsideOrInPlaceOfAnItemKeepsItsFiles) {
    mac.write(folder + u"Tree/a/file"_s, "x");
    mac.makeFolder(folder + u"Tree/b/volume"_s);
    mac.makeFolder(folder + u"Whole"_s);
    const test::SmallDisk inside(mac.hostPath(folder + u"Tree/b/volume"_s).toStdString(), "size=64k");
    const test::SmallDisk whole(mac.hostPath(folder + u"Whole"_s).toStdString(), "size=64k");
    if (!inside || !whole)
        GTEST_SKIP() << "This process may not mount.";
    mac.write(folder + u"Tree/b/volume/file"_s, "precious");
    mac.write(folder + u"Whole/file"_s, "precious");
    for (const Kind kind : {Kind::remove, Kind::moveToTrash}) {
        EXPECT_EQ(perform(kind, item(folder + u"Tree"_s)).message, u"A volume is mounted in it."_s);
        EXPECT_EQ(mac.read(folder + u"Tree/b/volume/file"_s), "precious");
        EXPECT_EQ(mac.read(folder + u"Tree/a/file"_s), "x");
        const auto outcome = perform(kind, item(folder + u"Whole"_s));
        EXPECT_EQ(outcome.message, u"It lies on another volume."_s);
        EXPECT_EQ(mac.read(folder + u"Whole/file"_s), "precious");
    }
    // A Trash on a volume of its own takes nothing: there is no copying here.
    const test::SmallDisk trashDisk(mac.hostPath(trash).toStdString(), "size=64k");
    mac.write(folder + u"item"_s, "x");
    EXPECT_EQ(perform(Kind::moveToTrash, item(folder + u"item"_s)).message,
              u"Your Trash could not be opened."_s);
    EXPECT_EQ(mac.read(folder + u"item"_s), "x");
}

TEST_F(HardConditions, AnotherUserIsKnownByTheKernelAndGetsNothing) {
    if (::getuid() != 0)
        GTEST_SKIP() << "Only an administrator can become someone else.";
    mac.write(folder + u"item"_s, "x");
    PolkitCheck check(mac.files, mac.commands); // without an authority on this machine
    RequestHandler handler(operations, check, [this](std::uint32_t) { return std::optional(client); });
    HelperServer server(handler, [] { return QByteArray("nonce"); }, {});
    ASSERT_EQ(::chmod(state.path().toUtf8().constData(), 0755), 0);
    const QByteArray path = state.path().toUtf8() + "/helper.socket";
    auto listening = listenLocally(path, SocketAccess::everyone);
    ASSERT_TRUE(listening);
    std::jthread serving([&](std::stop_token stop) { server.serve(listening->get(), stop); });

    PrivilegedFileOperationRequest request{
        .id = mac.uuids.next(), .operation = Kind::moveToTrash, .items = {item(folder + u"item"_s)}};
    request.authorization =
        json::writeCompact(json::encode(AdministratorApproval{"nonce", requestDigest(request), {}}));
    const QByteArray message = json::writeCompact(json::encode(request));
    const auto ask = [&] {
        const auto socket = connectLocally(path);
        if (!socket || !readFrame(socket->get(), 1 << 20, std::chrono::seconds(5)) ||
            writeFrame(socket->get(), message, std::chrono::seconds(5)) != 0)
            return 1;
        const auto reply = readFrame(socket->get(), 1 << 20, std::chrono::seconds(5));
        return reply && reply->contains("\"denied\"") ? 42 : 2;
    };
    EXPECT_EQ(asNobody(ask), 42);
    EXPECT_EQ(mac.read(folder + u"item"_s), "x");
    EXPECT_EQ(ask(), 2); // an administrator is not denied
    EXPECT_FALSE(mac.exists(folder + u"item"_s));
}

TEST_F(HardConditions, DeepFoldersAreMovedBroughtBackAndRemoved) {
    constexpr int levels = 5'000;  // more than there are descriptors
    const test::MemoryFolder root; // a disk takes its time for each folder that goes
    namespace fs = std::filesystem;
    fs::create_directories(root.path() / "Users/ada/.Trash");
    fs::create_directories(root.path() / "Library/Application Support/Deep");
    test::writeFile(root.path() / "Library/Application Support/Deep/file", "x");
    FileOperations deep(QByteArray::fromStdString(root.path().string()), state.path().toUtf8());
    const FileSystem files(QString::fromStdString(root.path().string()));
    Descriptor at(
        ::open((root.path() / "Library/Application Support/Deep").c_str(), O_RDONLY | O_DIRECTORY));
    for (int i = 0; i < levels; ++i) {
        ASSERT_EQ(::mkdirat(at.get(), "d", 0700), 0);
        at = Descriptor(::openat(at.get(), "d", O_RDONLY | O_DIRECTORY));
        ASSERT_TRUE(at);
    }
    const QString path = folder + u"Deep"_s;
    const auto done = [&](Kind kind, const PrivilegedFileOperationItem& item) {
        return deep.perform({.operation = kind, .items = {item}}, client).first();
    };
    const auto approved = identityOf(files.linkStatus(path).value());
    const auto moved = done(Kind::moveToTrash, {.source = path, .approved = approved});
    ASSERT_EQ(moved.status, Status::moved);
    ASSERT_EQ(done(Kind::restoreFromTrash, {.source = *moved.destination, .destination = path}).status,
              Status::moved);
    const auto removed = done(Kind::remove, {.source = path, .approved = approved});
    EXPECT_EQ(removed.status, Status::removed) << removed.message.value_or(QString()).toStdString();
    EXPECT_FALSE(files.exists(path));
}

} // namespace
} // namespace tessellar
