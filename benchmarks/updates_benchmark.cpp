// What a full check of 500 applications costs the launcher's main thread, with its smart folder of
// updates: processor time, since it waits for most of the time, beside that of the same requests made
// bare.

#include "launcher/installed_applications.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_updates.h"
#include "launcher/launcher_view_model.h"
#include "sample/mac_builder.h"
#include "support/altered_machine.h"
#include "support/loopback_server.h"
#include "support/test_machine.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThread>

#include <ctime>
#include <future>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;

constexpr int casks = 200;
constexpr int storeApps = 150;
constexpr int feeds = 150;

double threadSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Answers for the store and the feeds, on a thread of its own.
class ServerThread {
public:
    ServerThread() {
        std::promise<QUrl> listening;
        _thread.reset(QThread::create([this, &listening] {
            test::LoopbackServer server([](const QByteArray& path) {
                return test::httpAnswer("200 OK", path.startsWith("/lookup") ? lookup() : feed());
            });
            listening.set_value(server.url({}));
            QEventLoop loop;
            _loop = &loop;
            loop.exec();
        }));
        _thread->start();
        base = listening.get_future().get().toString();
    }
    ~ServerThread() {
        QMetaObject::invokeMethod(_loop, &QEventLoop::quit, Qt::QueuedConnection);
        _thread->wait();
    }

    QString base;

private:
    static QByteArray lookup() {
        return R"({"resultCount":1,"results":[{"trackId":1,"version":"2.0","description":")" +
               QByteArray(4'000, 'x') + "\"}]}";
    }
    static QByteArray feed() {
        QByteArray items;
        for (int i = 0; i < 20; ++i)
            items += "<item><title>Version</title><description>" + QByteArray(500, 'y') +
                     "</description><enclosure url=\"https://example.com/a.zip\" sparkle:version=\"" +
                     QByteArray::number(100 + i) + "\" length=\"1\"/></item>";
        return "<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>" +
               items + "</channel></rss>";
    }

    std::unique_ptr<QThread> _thread;
    QEventLoop* _loop = nullptr;
};

struct Fixture {
    Fixture() {
        sample::MacBuilder builder(mac.root.path());
        QByteArray installed;
        QByteArray outdated;
        for (int i = 0; i < casks + storeApps + feeds; ++i) {
            const QString name = u"App%1"_s.arg(i);
            const bool isCask = i < casks;
            const bool isStore = !isCask && i < casks + storeApps;
            builder.addApplication(
                {.name = name,
                 .identifier = u"org.example.app%1"_s.arg(i),
                 .sparkleFeed = isCask || isStore ? std::nullopt
                                                  : std::optional(server.base + u"/feed/%1"_s.arg(i)),
                 .receipt = isStore});
            if (!isCask)
                urls.append(QUrl(server.base + (isStore ? u"/lookup?id=%1"_s : u"/feed/%1"_s).arg(i)));
            const QByteArray token = name.toLower().toUtf8();
            if (isCask) {
                installed += (i ? "," : "") +
                             R"({"token":"NAME","version":"2","artifacts":[{"app":["App%1.app"]}]})"_ba
                                 .replace("NAME", token)
                                 .replace("%1", QByteArray::number(i));
                outdated += (i ? "," : "") +
                            R"({"name":"NAME","current_version":"2"})"_ba.replace("NAME", token);
            }
        }
        mac.tool(u"/opt/homebrew/bin/brew"_s, [installed, outdated](const Command& command,
                                                                    const std::stop_token&) {
            return test::exited(0, R"({"casks":[)" +
                                       (command.arguments.first() == "info" ? installed : outdated) +
                                       "]}");
        });
        mac.tool(u"/usr/bin/mdls"_s, [](const Command& command, const std::stop_token&) {
            const QByteArray name = command.arguments.last().split('/').last(); // "App201.app"
            return test::exited(0, name.sliced(3).chopped(4));
        });
        (void)mac.settings.set(AppUpdateSettings::storeLookupKey, server.base);
    }

    ServerThread server;
    test::TestMachine mac;
    EventLoopScheduler scheduler;
    NetworkHttpClient http{scheduler};
    Machine machine = test::altered(mac.machine, {.scheduler = &scheduler, .http = &http});
    QList<QUrl> urls;
};

/// Turns the event loop until `isOver`; the longest turn, in seconds of processor time.
double turnUntil(const bool& isOver) {
    double longest = 0;
    while (!isOver) {
        const double start = threadSeconds();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        longest = std::max(longest, threadSeconds() - start);
    }
    return longest;
}

/// The requests alone, as many at a time as a check makes.
void bareRequests(QNetworkAccessManager& network, const QList<QUrl>& urls) {
    qsizetype next = 0;
    qsizetype left = urls.size();
    bool isOver = false;
    std::function<void()> fetch = [&] {
        if (next == urls.size())
            return;
        QNetworkReply* reply = network.get(QNetworkRequest(urls[next++]));
        QObject::connect(reply, &QNetworkReply::finished, reply, [&, reply] {
            benchmark::DoNotOptimize(reply->readAll());
            reply->deleteLater();
            isOver = --left == 0;
            fetch();
        });
    };
    for (int i = 0; i < 4; ++i)
        fetch();
    turnUntil(isOver);
}

void fullCheck(benchmark::State& state) {
    Fixture fixture;
    QNetworkAccessManager network;
    LauncherViewModel launcher(fixture.machine);
    launcher.startAndWait();
    (void)launcher.editor().addSmartFolder(
        LauncherWindowMode::fullScreen,
        templateDefinition(SmartFolderTemplate::updatesAvailable, fixture.mac.uuids.next(),
                           fixture.mac.time.now(), fixture.mac.uuids));
    LauncherUpdates& launcherUpdates = launcher.updates();
    bool isKnown = false;
    launcherUpdates.whenReady([&] { isKnown = true; });
    turnUntil(isKnown);
    bareRequests(network, fixture.urls); // both start warm

    double floor = 0;
    double work = 0;
    double longest = 0;
    for (auto _ : state) {
        double start = threadSeconds();
        bareRequests(network, fixture.urls);
        floor += threadSeconds() - start;
        start = threadSeconds();
        bool isOver = false;
        launcherUpdates.check(
            {}, {.result = {}, .progress = {}, .done = [&](const auto&) { isOver = true; }});
        longest = std::max(longest, turnUntil(isOver));
        if (!launcherUpdates.flush())
            return state.SkipWithError("the cache was not saved");
        const double took = threadSeconds() - start;
        work += took;
        state.SetIterationTime(took);
    }
    qsizetype updates = 0;
    for (const AppEntry& app : launcher.applications().all())
        if (const auto record = launcherUpdates.of(appKey(app)).record())
            updates += std::holds_alternative<UpdateAvailable>(record->status) ? 1 : 0;
    if (updates != casks + storeApps + feeds)
        return state.SkipWithError("the check did not find all updates");
    const auto iterations = static_cast<double>(state.iterations());
    state.counters["floor_ms"] = floor / iterations * 1e3;
    state.counters["work_ms"] = work / iterations * 1e3;
    state.counters["ratio"] = work / floor;
    state.counters["own_us_an_app"] = (work - floor) / iterations / (casks + storeApps + feeds) * 1e6;
    state.counters["longest_turn_ms"] = longest * 1e3;
}
BENCHMARK(fullCheck)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace
} // namespace tessellar

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
