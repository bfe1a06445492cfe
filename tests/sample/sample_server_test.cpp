#include "launcher/launcher_updates.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"
#include "platform/host_machine.h"
#include "sample/demonstration_mac.h"
#include "sample/demonstration_updates.h"
#include "sample/tools.h"
#include "support/altered_machine.h"
#include "support/run_tests.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace tessellar::sample {
namespace {

using namespace Qt::Literals::StringLiterals;

/// Speaks to the server under test wherever the sample's applications name the usual one.
class OtherPort final : public HttpClient {
public:
    OtherPort(HttpClient& client, int port) : _client(client), _port(port) {}

    HttpCall get(const HttpRequest& request, Done done) override {
        HttpRequest here = request;
        if (here.url.port() == QUrl(demonstrationServer).port())
            here.url.setPort(_port);
        return _client.get(here, std::move(done));
    }

private:
    HttpClient& _client;
    int _port;
};

TEST(SampleServer, AFullCheckFindsUpdatesThroughAllChannels) {
    const QTemporaryDir folder;
    MacBuilder mac(folder.path());
    mac.addStandardFolders();
    addTools(mac);
    QList<Application> applications;
    const auto add = [&](Application application) {
        application.identifier = u"com.example."_s + application.name.toLower();
        application.version = u"1.4"_s;
        application.build = u"20"_s;
        if (application.sparkleFeed)
            application.sparkleFeed = feedAddress(application);
        mac.addApplication(application);
        applications.append(application);
    };
    add({.name = u"Ferrule"_s});
    add({.name = u"Newsreel"_s,
         .sparkleFeed = QString()}); // feeds and listings by turns have an update
    add({.name = u"Quince"_s, .receipt = true, .storeIdentifier = 11});
    add({.name = u"Medlar"_s, .receipt = true, .storeIdentifier = 12});
    addUpdates(mac, applications, {Kind::homebrew, Kind::sparkle, Kind::store, Kind::store});
    ASSERT_EQ(mac.failure(), std::nullopt);

    QProcess server;
    server.start(QStringLiteral(SAMPLE_SERVER), {folder.path(), u"--port"_s, u"0"_s});
    ASSERT_TRUE(server.waitForReadyRead());
    const int port = QUrl(QString::fromUtf8(server.readLine().trimmed())).port();
    ASSERT_GT(port, 0);

    auto host = HostMachine::make({.root = folder.path(), .home = {}, .locale = {}, .now = {}});
    ASSERT_TRUE(host);
    OtherPort http((*host)->machine().http, port);
    Machine machine = test::altered((*host)->machine(), {.http = &http});
    LauncherViewModel launcher(machine);
    launcher.startAndWait();
    std::optional<bool> completed;
    QMap<QString, QString> found;
    launcher.updates().check(
        {}, {.result =
                 [&](const QString& key, const AppUpdateRecord& record) {
                     const auto* update = std::get_if<UpdateAvailable>(&record.status);
                     found.insert(key, update ? update->latestVersion : u"none"_s);
                 },
             .progress = {},
             .done = [&](const auto& outcome) { completed = outcome.value_or(false); }});
    test::processEventsUntil([&] { return completed.has_value(); });
    EXPECT_EQ(completed, true);
    EXPECT_EQ(found, (QMap<QString, QString>{{u"com.example.ferrule"_s, u"2.0.1"_s},
                                             {u"com.example.newsreel"_s, u"2.0.1"_s},
                                             {u"com.example.quince"_s, u"none"_s},
                                             {u"com.example.medlar"_s, u"2.0.1"_s}}));
    server.kill();
    server.waitForFinished();
}

} // namespace
} // namespace tessellar::sample
