#include "helper/helper_server.h"

#include "cleanup/privileged/privileged_helper_coordinator.h"
#include "helper/move_journal.h"
#include "tests/helper/helper_fixture.h"

#include <gmock/gmock.h>

#include <condition_variable>
#include <thread>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = PrivilegedFileOperationKind;

class FakeCheck final : public AuthorizationCheck {
public:
    Answer check(const PeerCredentials& peer, const PrivilegedFileOperationRequest&, const QByteArray&,
                 std::stop_token stop) override {
        asked.append(peer);
        if (prompting)
            prompting(stop);
        return given;
    }
    Answer given = Answer::granted;
    std::function<void(std::stop_token)> prompting; ///< what happens before it is granted
    QList<PeerCredentials> asked;
};

class HelperServerTest : public testing::Test, protected test::HelperMac {
protected:
    HelperServerTest() { mac.write(daemon, "daemon"); }

    PrivilegedFileOperationRequest request() const {
        return {.id = QUuid::createUuid(), .operation = Kind::moveToTrash, .items = {item(daemon)}};
    }
    static void approve(PrivilegedFileOperationRequest& request, const QByteArray& nonce) {
        request.authorization =
            json::writeCompact(json::encode(AdministratorApproval{nonce, requestDigest(request), {}}));
    }
    PrivilegedFileOperationResponse answer(const PrivilegedFileOperationRequest& request,
                                           const QByteArray& nonce) {
        return json::decodeDocument<PrivilegedFileOperationResponse>(
                   handler.answer(json::writeCompact(json::encode(request)), {::getuid(), ::getpid()},
                                  nonce))
            .value();
    }

    const QString daemon = u"/Library/LaunchDaemons/com.acme.plist"_s;
    FakeCheck check;
    RequestHandler handler{operations, check, [this](std::uint32_t) { return std::optional(client); }};
    QByteArray socketPath = state.path().toUtf8() + "/helper.socket";
    LocalSocketTransport transport{socketPath, ::getuid()};
    PeerAuthorization authorization;
    PrivilegedHelperCoordinator coordinator{
        {.transport = transport, .authorization = authorization, .uuids = mac.uuids, .log = mac.log}};
    std::atomic<int> nonces = 0;
    HelperServer server{handler,
                        [this] { return "nonce" + QByteArray::number(++nonces); },
                        {.idle = 60s, .sendTime = 300ms}};
};

TEST_F(HelperServerTest, AnApprovalIsGoodForOneRequestOnOneConnection) {
    auto asked = request();
    EXPECT_EQ(answer(asked, "one").error, AuthorizationError::missing);
    asked.authorization = "{}";
    EXPECT_EQ(answer(asked, "one").error, AuthorizationError::malformed);
    approve(asked, "one");
    EXPECT_EQ(answer(asked, "two").error, AuthorizationError::invalid); // replayed
    EXPECT_EQ(answer(asked, "").error, AuthorizationError::invalid);
    for (auto change : QList<std::function<void(PrivilegedFileOperationRequest&)>>{
             [](auto& r) { r.items.first().source += u'x'; },
             [](auto& r) { r.operation = Kind::remove; },
             [](auto& r) { r.items.append(r.items.first()); },
             [](auto& r) { r.id = QUuid::createUuid(); },
             [](auto& r) { ++r.items.first().approved->inode; }}) {
        auto forged = asked;
        change(forged);
        EXPECT_EQ(answer(forged, "one").error, AuthorizationError::invalid);
    }
    EXPECT_TRUE(check.asked.isEmpty());
    check.given = FakeCheck::Answer::denied;
    EXPECT_EQ(answer(asked, "one").error, AuthorizationError::denied);
    check.given = FakeCheck::Answer::canceled;
    EXPECT_EQ(answer(asked, "one").outcomes.first().message, administratorApprovalCanceled());
    EXPECT_EQ(mac.read(daemon), "daemon");
    check.given = FakeCheck::Answer::granted;
    EXPECT_EQ(answer(asked, "one").outcomes.size(), 1);
    EXPECT_FALSE(mac.exists(daemon));
}

TEST_F(HelperServerTest, AHealthCheckBringsToItsEndWhatAKilledHelperLeft) {
    const QString stagingFolder = u"/Library/.com.tessellar.app.removal-helper"_s;
    struct stat status {};
    ASSERT_EQ(::lstat(mac.hostPath(daemon).toUtf8().constData(), &status), 0);
    ASSERT_TRUE(MoveJournal::open(state.path().toUtf8())
                    ->append({{.id = 1,
                               .user = ::getuid(),
                               .original = daemon,
                               .trashed = trash + u"/com.acme.plist"_s,
                               .staged = stagingFolder + u"/1"_s,
                               .identity = identity(daemon),
                               .owner = status.st_uid,
                               .mode = status.st_mode & 07777u}}));
    mac.makeFolder(stagingFolder);
    ASSERT_EQ(::chmod(mac.hostPath(stagingFolder).toUtf8().constData(), 0700), 0);
    ASSERT_TRUE(mac.files.move(daemon, stagingFolder + u"/1"_s));
    PrivilegedFileOperationRequest health{.id = QUuid::createUuid()};
    approve(health, "one");
    EXPECT_FALSE(answer(health, "one").error);
    EXPECT_EQ(mac.read(trash + u"/com.acme.plist"_s), "daemon");
    EXPECT_TRUE(check.asked.isEmpty());
}

TEST_F(HelperServerTest, EveryMessageHasOneReply) {
    for (const QByteArray& message : {QByteArray(), QByteArray("{"), QByteArray("[]"),
                                      QByteArray(1 << 20, '['), QByteArray("\0\xFF", 2)}) {
        const auto reply =
            json::decodeDocument<PrivilegedFileOperationResponse>(handler.answer(message, {}, "nonce"));
        ASSERT_TRUE(reply);
        EXPECT_EQ(reply->error, AuthorizationError::malformed);
    }
    auto tooMany = request();
    tooMany.items = QList<PrivilegedFileOperationItem>(257, tooMany.items.first());
    approve(tooMany, "nonce");
    EXPECT_EQ(answer(tooMany, "nonce").error, AuthorizationError::malformed);
}

TEST_F(HelperServerTest, ServesOverItsSocketAndOutlivesBadPeers) {
    auto listening = listenLocally(socketPath, SocketAccess::everyone);
    ASSERT_TRUE(listening);
    EXPECT_FALSE(listenLocally(socketPath, SocketAccess::everyone)); // taken
    // The probe above, and those below that leave, may be counted for a while yet.
    HelperServer patient(handler, [this] { return "nonce" + QByteArray::number(++nonces); },
                         {.idle = 60s, .sendTime = 300ms, .maximumPerUser = 16});
    std::jthread serving([&](std::stop_token stop) { patient.serve(listening->get(), stop); });

    // One that says nothing, one that leaves, one that announces too much, one that sends garbage.
    const auto silent = connectLocally(socketPath);
    (void)connectLocally(socketPath);
    const auto loud = connectLocally(socketPath);
    ASSERT_EQ(::write(loud->get(), "\xFF\xFF\xFF\xFF", 4), 4);
    const auto garbage = connectLocally(socketPath);
    EXPECT_EQ(writeFrame(garbage->get(), "garbage", 1s), 0);
    for (const auto* peer : {&silent, &loud, &garbage}) {
        EXPECT_TRUE(readFrame((*peer)->get(), 1 << 20, 5s)); // the challenge
        const auto reply = readFrame((*peer)->get(), 1 << 20, 5s);
        EXPECT_TRUE(reply && reply->contains("malformed"));
    }

    EXPECT_TRUE(coordinator.healthCheck({}));
    EXPECT_TRUE(check.asked.isEmpty());
    const auto moved =
        coordinator.moveToTrash({{.path = daemon, .identity = identity(daemon)}}, {}).first();
    EXPECT_EQ(moved.destination, trash + u"/com.acme.plist"_s);
    EXPECT_EQ(check.asked, (QList{PeerCredentials{::getuid(), ::getpid()}}));
    const auto back = coordinator.restoreFromTrash(
        {{.path = *moved.destination, .identity = {}, .destination = daemon}}, {});
    EXPECT_EQ(back.first().status, PrivilegedFileOutcomeStatus::moved);
    EXPECT_EQ(mac.read(daemon), "daemon");

    // Someone else who listens in its place is not spoken to.
    LocalSocketTransport wary(socketPath, ::getuid() + 1);
    EXPECT_FALSE(wary.connect());
}

TEST_F(HelperServerTest, AWordOfThePeerEndsAPromptAndNothingIsMoved) {
    auto listening = listenLocally(socketPath, SocketAccess::everyone);
    ASSERT_TRUE(listening);
    std::jthread serving([&](std::stop_token stop) { server.serve(listening->get(), stop); });
    std::stop_source stop;
    check.prompting = [&](std::stop_token enough) {
        stop.request_stop();
        std::mutex mutex;
        std::unique_lock lock(mutex);
        std::condition_variable_any().wait(lock, enough, [] { return false; });
    };
    const auto outcome =
        coordinator.moveToTrash({{.path = daemon, .identity = identity(daemon)}}, stop.get_token())
            .first();
    EXPECT_EQ(outcome.message, u"The removal was stopped."_s);
    EXPECT_EQ(mac.read(daemon), "daemon");
}

TEST_F(HelperServerTest, OneUserLeavesTheOthersNeitherWaitingNorWithoutAPlace) {
    auto listening = listenLocally(socketPath, SocketAccess::everyone);
    ASSERT_TRUE(listening);
    std::vector<Descriptor> silent;
    std::jthread serving([&](std::stop_token stop) { server.serve(listening->get(), stop); });
    for (int i = 0; i < 40; ++i)
        silent.push_back(connectLocally(socketPath).value());
    // The first few are listened to; the others are closed unheard.
    int heard = 0;
    for (const Descriptor& socket : silent)
        heard += readFrame(socket.get(), 1 << 20, 5s).has_value();
    EXPECT_EQ(heard, 4);
}

TEST(PolkitCheckTest, AsksTheAuthorityAboutTheVeryProcessAndSaysWhatFor) {
    using Answer = PolkitCheck::Answer;
    test::TestMachine mac;
    PolkitCheck check(mac.files, mac.commands);
    PrivilegedFileOperationRequest request{
        .operation = Kind::moveToTrash,
        .items = QList<PrivilegedFileOperationItem>(5, {.source = u"/Library/\u202EAcme\n"_s}),
        .application = u"Quill"_s};
    EXPECT_EQ(check.check({0, 1}, request, {}, {}), Answer::granted);
    const PeerCredentials peer{1000, ::getpid()};
    EXPECT_EQ(check.check(peer, request, {}, {}), Answer::denied); // no authority: only root
    int status = 0;
    mac.tool(u"/usr/bin/pkcheck"_s,
             [&](const Command&, std::stop_token) { return test::exited(status); });
    QSet<QByteArray> actions;
    for (const Kind kind : {Kind::moveToTrash, Kind::restoreFromTrash, Kind::remove}) {
        request.operation = kind;
        EXPECT_EQ(check.check(peer, request, {}, {}), Answer::granted);
        actions.insert(mac.commands.commands().last().arguments.value(1));
    }
    EXPECT_EQ(actions.size(), 3);
    const auto arguments = mac.commands.commands().last().arguments;
    EXPECT_THAT(arguments, testing::Contains(
                               QByteArray::number(::getpid()) + ',' +
                               QByteArray::number(quint64(*processStartTime(::getpid()))) + ",1000"));
    EXPECT_THAT(arguments, testing::Contains("“Quill”"));
    const QByteArray one = "“/Library/?Acme?”";
    EXPECT_THAT(arguments, testing::Contains(one + ", " + one + ", " + one + " and 2 more"));
    status = 3;
    EXPECT_EQ(check.check(peer, request, {}, {}), Answer::canceled);
    status = 1;
    EXPECT_EQ(check.check(peer, request, {}, {}), Answer::denied);
}

TEST(GrantCheckTest, WhoBringsNoGrantIsRefused) {
    for (const QByteArray& grant : {QByteArray(), QByteArray("no grant")})
        EXPECT_EQ(GrantCheck().check({1000, 1}, {}, grant, {}), GrantCheck::Answer::denied);
}

} // namespace
} // namespace tessellar
