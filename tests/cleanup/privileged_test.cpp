#include "cleanup/privileged/privileged_helper_coordinator.h"
#include "platform/code_requirement.h"

#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(CodeRequirementTest, CannotBeBrokenOutOf) {
    EXPECT_EQ(codeRequirement(u"com.tessellar.app"_s, u"TEAM123456"_s),
              u"anchor apple generic and identifier \"com.tessellar.app\" and certificate "
              "leaf[subject.OU] = \"TEAM123456\""_s);
    EXPECT_FALSE(codeRequirement(u"x\" or true or identifier \"y"_s, u"TEAM123456"_s));
    EXPECT_FALSE(codeRequirement(u"com.tessellar.app"_s, QString()));
}

class HelperSetupBrokerTest : public testing::Test {
protected:
    HelperSetupBrokerTest() {
        mac.tool(component, [this](const Command& command, std::stop_token) {
            words.append(command.arguments.value(0));
            return answers.isEmpty() ? test::exited(0, "enabled\n") : answers.takeFirst();
        });
    }
    QString ensured() {
        const auto result = broker.ensure({});
        return result ? u"ready"_s : message(result.error());
    }
    void say(const QList<QByteArray>& said) {
        answers.clear();
        words.clear();
        notices.clear();
        for (const QByteArray& word : said)
            answers.append(test::exited(0, word + '\n'));
    }

    const QString component =
        u"/Tessellar.app/Resources/TessellarHelperSetup.app/Contents/MacOS/TessellarHelperSetup"_s;
    test::TestMachine mac;
    QList<CommandResult> answers;
    QList<QByteArray> words;
    QList<std::optional<HelperNotice>> notices;
    bool isPatient = true;
    HelperSetupBroker broker{
        mac.machine, u"/Tessellar.app/Resources"_s,
        [this](const std::optional<HelperNotice>& notice) { notices.append(notice); },
        [this](std::chrono::milliseconds, std::stop_token) { return isPatient; }};
};

TEST_F(HelperSetupBrokerTest, RegistersAndWaitsForApproval) {
    say({"notFound", "requiresApproval", "requiresApproval", "enabled"});
    EXPECT_EQ(ensured(), u"ready"_s);
    EXPECT_THAT(words, ElementsAre("status", "register", "status", "status"));
    ASSERT_EQ(notices.size(), 2);
    EXPECT_EQ(notices[0]->title, u"Approval Needed to Finish"_s);
    EXPECT_EQ(notices[0]->text,
              u"Waiting for approval in System Settings — the uninstall continues automatically."_s);
    EXPECT_FALSE(notices[1]);

    // It was there once: now it was turned off.
    say({"requiresApproval"});
    isPatient = false;
    EXPECT_EQ(ensured(),
              u"Enable Tessellar’s administrator helper in System Settings, then try again."_s);
    EXPECT_EQ(
        notices[0]->text,
        u"An approval Tessellar needs was turned off in System Settings. Grant it again to finish "
        "this uninstall — nothing has been deleted yet."_s);
}

TEST_F(HelperSetupBrokerTest, SaysWhyThereIsNoHelper) {
    say({"enabled"});
    EXPECT_EQ(ensured(), u"ready"_s);
    say({"notRegistered", "notRegistered"});
    EXPECT_EQ(ensured(), u"macOS did not register the administrator helper."_s);
    say({"maybe"});
    EXPECT_EQ(ensured(), u"macOS returned an unknown administrator-helper status."_s);
    say({});
    answers = {test::exited(1, "", "No luck.\n")};
    EXPECT_EQ(ensured(), u"No luck."_s);
    answers = {test::exited(1)};
    EXPECT_EQ(ensured(), u"macOS could not configure Tessellar’s administrator helper."_s);
    mac.remove(component);
    EXPECT_EQ(ensured(), u"Tessellar’s administrator-helper setup component is missing."_s);
}

/// Answers requests as it is told.
class FakeTransport final : public HelperTransport {
public:
    using Behaviour =
        std::function<void(const PrivilegedFileOperationRequest&, const HelperConnectionHandlers&)>;

    std::expected<std::unique_ptr<HelperConnection>, QString> connect() override {
        if (!behaviour)
            return std::unexpected(u"no way"_s);
        return std::make_unique<Connection>(*this);
    }
    Behaviour behaviour;
    Behaviour afterStop;
    QList<PrivilegedFileOperationRequest> requests;

private:
    class Connection final : public HelperConnection {
    public:
        explicit Connection(FakeTransport& transport) : _transport(transport) {}
        const QByteArray& challenge() const override { return _challenge; }
        void send(const QByteArray& message, HelperConnectionHandlers handlers) override {
            _transport.requests.append(
                json::decodeDocument<PrivilegedFileOperationRequest>(message).value());
            _handlers = handlers;
            _transport.behaviour(_transport.requests.last(), handlers);
        }
        void stop() override {
            if (_transport.afterStop)
                _transport.afterStop(_transport.requests.last(), _handlers);
        }

    private:
        FakeTransport& _transport;
        HelperConnectionHandlers _handlers;
        QByteArray _challenge = json::writeCompact(json::encode(HelperChallenge{"nonce"}));
    };
};

class FakeAuthorization final : public AdministratorAuthorization {
public:
    std::expected<QByteArray, Refusal> obtain(std::stop_token) override {
        if (refusal)
            return std::unexpected(*refusal);
        return QByteArray("grant");
    }
    std::optional<Refusal> refusal;
};

class PrivilegedHelperCoordinatorTest : public testing::Test {
protected:
    static QByteArray bytesOf(const PrivilegedFileOperationResponse& response) {
        return json::writeCompact(json::encode(response));
    }
    static PrivilegedFileOperationResponse goodReply(const PrivilegedFileOperationRequest& request) {
        PrivilegedFileOperationResponse response{.id = request.id};
        for (const PrivilegedFileOperationItem& item : request.items)
            response.outcomes.append({.status = PrivilegedFileOutcomeStatus::moved,
                                      .destination = u"/Trash"_s + item.source});
        return response;
    }
    QString saidOf(FakeTransport::Behaviour behaviour) {
        transport.behaviour = std::move(behaviour);
        const auto outcome = coordinator.moveToTrash({{.path = u"/Library/x"_s}}, {}).first();
        return outcome.status == PrivilegedFileOutcomeStatus::moved ? u"moved"_s : *outcome.message;
    }
    static FakeTransport::Behaviour
    replying(std::function<QByteArray(const PrivilegedFileOperationRequest&)> reply) {
        return [reply](const auto& request, const auto& handlers) { handlers.reply(reply(request)); };
    }

    test::TestMachine mac;
    FakeTransport transport;
    FakeAuthorization authorization;
    PrivilegedHelperCoordinator coordinator{
        {.transport = transport, .authorization = authorization, .uuids = mac.uuids, .log = mac.log}};
};

TEST_F(PrivilegedHelperCoordinatorTest, BindsAnApprovalToOneRequestAndHandsOutcomesBack) {
    transport.behaviour = replying([](const auto& request) { return bytesOf(goodReply(request)); });
    QList<AdminMove> items(
        300, AdminMove{.path = u"/Library/Preferences/x"_s, .identity = {1, 2, FileType::regular}});
    items[1].path = u"/Library/Preferences/"_s + QChar(0xDCFF); // no text
    const auto outcomes = coordinator.moveToTrash(items, {});
    ASSERT_EQ(outcomes.size(), 300);
    EXPECT_EQ(outcomes[0].destination, u"/Trash/Library/Preferences/x"_s);
    EXPECT_EQ(outcomes[1].message, u"Could not encode the administrator request."_s);
    EXPECT_EQ(outcomes[299].status, PrivilegedFileOutcomeStatus::moved);
    ASSERT_EQ(transport.requests.size(), 2);
    const auto& request = transport.requests.first();
    EXPECT_EQ(request.items.size(), 256);
    EXPECT_EQ(request.items.first().approved, (FileIdentity{1, 2, FileType::regular}));
    const auto approval = json::decodeDocument<AdministratorApproval>(request.authorization);
    EXPECT_EQ(approval, (AdministratorApproval{"nonce", requestDigest(request), "grant"}));
    EXPECT_NE(approval->digest, requestDigest(transport.requests.last()));
}

TEST_F(PrivilegedHelperCoordinatorTest, AStopIsToldAndTheReplySaysHowFarItCame) {
    std::stop_source stop;
    transport.behaviour = [&](const auto&, const auto&) { stop.request_stop(); };
    transport.afterStop = replying([](const auto& request) {
        auto reply = goodReply(request);
        reply.outcomes.last() = {.message = u"The removal was stopped."_s};
        return bytesOf(reply);
    });
    const auto outcomes = coordinator.moveToTrash(
        {{.path = u"/Library/x"_s}, {.path = u"/Library/y"_s}}, stop.get_token());
    EXPECT_EQ(outcomes[0].destination, u"/Trash/Library/x"_s);
    EXPECT_EQ(outcomes[1].message, u"The removal was stopped."_s);
}

TEST_F(PrivilegedHelperCoordinatorTest, SaysWhatWentWrong) {
    EXPECT_EQ(saidOf({}), u"Could not connect to the administrator helper."_s);
    EXPECT_EQ(saidOf(replying([](const auto&) { return QByteArray("{]"); })),
              u"The administrator helper returned unreadable data."_s);
    for (const auto& spoil : QList<std::function<void(PrivilegedFileOperationResponse&)>>{
             [](auto& reply) { reply.id = QUuid::createUuid(); },
             [](auto& reply) { reply.outcomes.append(reply.outcomes.first()); },
             [](auto& reply) { reply.outcomes.first().status = PrivilegedFileOutcomeStatus::removed; }})
        EXPECT_EQ(saidOf(replying([&](const auto& request) {
                      auto reply = goodReply(request);
                      spoil(reply);
                      return bytesOf(reply);
                  })),
                  u"The administrator helper returned an invalid response."_s);
    EXPECT_EQ(saidOf(replying([](const auto& request) {
                  return bytesOf({.id = request.id, .error = AuthorizationError::invalid});
              })),
              u"The administrator authorization is no longer valid."_s);
    EXPECT_EQ(saidOf([](const auto&, const auto& handlers) { handlers.interrupted(); }),
              u"The administrator helper was interrupted."_s);
    EXPECT_EQ(saidOf([](const auto&, const auto& handlers) { handlers.invalidated(); }),
              u"The administrator helper connection closed unexpectedly."_s);
    EXPECT_EQ(saidOf([](const auto& request, const auto& handlers) {
                  handlers.reply(bytesOf(goodReply(request)));
                  handlers.reply("again");
                  handlers.invalidated();
              }),
              u"moved"_s);
    using Refusal = AdministratorAuthorization::Refusal;
    authorization.refusal = Refusal::canceled;
    EXPECT_EQ(saidOf(transport.behaviour), administratorApprovalCanceled());
    authorization.refusal = Refusal::externalizationFailed;
    EXPECT_EQ(saidOf(transport.behaviour), u"Could not prepare administrator authorization."_s);
}

} // namespace
} // namespace tessellar
