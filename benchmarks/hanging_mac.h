#pragma once

#include "hanging_volume.h"

#include "icns_bytes.h"
#include "sample/mac_builder.h"
#include "support/collecting_log.h"
#include "support/fake_http.h"
#include "support/memory_settings.h"

#include "platform/clock.h"
#include "platform/machine.h"
#include "platform/scheduler.h"
#include "platform/uuid_source.h"
#include "platform/worker_pool.h"

#include <QJsonArray>
#include <QTemporaryDir>

#include <condition_variable>
#include <mutex>

namespace tessellar {

using namespace Qt::Literals::StringLiterals;

/// Every tool is there and never ends by itself.
class HangingCommands final : public CommandRunner {
public:
    CommandResult run(const Command&, std::stop_token stop) override {
        std::unique_lock lock(_mutex);
        _ended.wait(lock, stop, [] { return false; });
        return {.outcome = CommandResult::Outcome::cancelled};
    }
    std::expected<std::int64_t, int> start(const Command&, const QByteArray&) override {
        return std::unexpected(ENOENT);
    }
    DetachedState poll(std::int64_t, const QByteArray&) override { return {}; }
    void terminate(std::int64_t, const QByteArray&, bool) override {}

private:
    std::mutex _mutex;
    std::condition_variable_any _ended;
};

/// A Mac of so many applications, one of them on the volume that hangs, with 1,200 files that one of
/// them has left. Its tools hang.
class HangingMac {
public:
    explicit HangingMac(int applications) {
        static const QStringList colours{u"Amber"_s, u"Birch"_s, u"Cobalt"_s, u"Dusk"_s, u"Ember"_s,
                                         u"Fern"_s,  u"Gold"_s,  u"Hazel"_s,  u"Iris"_s, u"Jade"_s};
        static const QStringList things{u"Atlas"_s,  u"Board"_s,  u"Compass"_s, u"Diary"_s,
                                        u"Editor"_s, u"Finder"_s, u"Grid"_s,    u"Harbor"_s,
                                        u"Ink"_s,    u"Journal"_s};
        const QByteArray icon = test::icnsFile(test::icnsEntry("ic07", test::png(128, Qt::darkCyan)));
        builder.addStandardFolders();
        for (int i = 0; i < applications; ++i) {
            const QString name = u"%1 %2 %3"_s.arg(colours[i % 10], things[i / 10 % 10]).arg(i);
            builder.addApplication(
                {.name = name,
                 .identifier = u"org.example.app%1"_s.arg(i),
                 .sparkleFeed =
                     i % 20 == 0 ? std::optional(u"https://feeds.test/%1"_s.arg(i)) : std::nullopt,
                 .icon = icon});
        }
        builder.addApplication({.name = u"Away"_s,
                                .folder = QString::fromLatin1(hanging_volume::path),
                                .identifier = u"org.example.away"_s});
        for (int i = 0; i < 1200; ++i)
            builder.addFile(u"/Users/ada/Library/Preferences/org.example.app0.part%1.plist"_s.arg(i),
                            "x");
        for (const auto* tool : {"/usr/bin/codesign", "/usr/bin/lipo", "/usr/bin/mdls"})
            builder.addExecutable(QString::fromLatin1(tool), "stand-in");
        builder.addExecutable(u"/usr/bin/open"_s, "stand-in");
        (void)settings.set(u"appDiscovery.additionalSearchPaths"_s,
                           QJsonArray{QString::fromLatin1(hanging_volume::path)});
        (void)settings.set(u"appUpdates.enabled"_s, true);
    }

    QTemporaryDir root;
    sample::MacBuilder builder{root.path()};
    FileSystem files{root.path()};
    SystemClock clock;
    EventLoopScheduler scheduler;
    Mailbox mailbox;
    HangingCommands commands;
    test::FakeHttp http;
    test::MemorySettings settings;
    RandomUuidSource uuids;
    test::CollectingLog log;
    WorkerPool workers{mailbox};
    Machine machine{.files = files,
                    .places = {.home = u"/Users/ada"_s,
                               .applicationSupport = u"/Users/ada/Library/Application Support"_s},
                    .clock = clock,
                    .scheduler = scheduler,
                    .workers = workers,
                    .commands = commands,
                    .http = http,
                    .settings = settings,
                    .uuids = uuids,
                    .log = log,
                    .locale = Locale(u"en_US"_s),
                    .environment = {}};
};

} // namespace tessellar
