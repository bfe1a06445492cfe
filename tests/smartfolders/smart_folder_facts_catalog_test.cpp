#include "smartfolders/smart_folder_facts_catalog.h"

#include "sample/mac_builder.h"
#include "smartfolders/bundle_tools.h"
#include "smartfolders/smart_folder_definition.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include <filesystem>

#include <sys/xattr.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using enum SmartFolderNeed;

const SmartFolderNeeds files = bundle;
const SmartFolderNeeds all = allNeeds();
const QDateTime someDate = QDateTime::fromSecsSinceEpoch(1'700'000'000);

class SmartFolderFactsCatalogs : public testing::Test {
protected:
    SmartFolderFactsCatalogs() {
        machine.tool(u"/usr/bin/lipo"_s, [this](const Command& command, const std::stop_token&) {
            EXPECT_EQ(command.executable, machine.hostPath(u"/usr/bin/lipo"_s).toUtf8());
            return test::exited(0, "x86_64 arm64\n");
        });
        sign("Authority=Developer ID Application: Fern Ltd (ABCDE12345)\n"
             "TeamIdentifier=ABCDE12345\n");
    }
    void sign(const QByteArray& lines) {
        machine.tool(u"/usr/bin/codesign"_s, test::exited(0, {}, lines));
    }
    QList<AppEntry> addSeveral(int count) {
        QList<AppEntry> apps;
        for (int i = 0; i < count; ++i)
            apps += add({.name = u"App %1"_s.arg(i), .modified = someDate});
        mac.settleDates(someDate);
        return apps;
    }
    AppEntry add(const sample::Application& application) {
        AppEntry entry;
        entry.id = machine.uuids.next();
        entry.path = mac.addApplication(application);
        entry.name = entry.originalName = application.name;
        entry.bundleIdentifier = application.identifier;
        EXPECT_EQ(mac.failure(), std::nullopt);
        return entry;
    }
    SmartFolderFactsList facts(const QList<AppEntry>& apps, SmartFolderNeeds needed = files,
                               const SmartFolderRuntimeFacts& runtime = {}) {
        return factsFrom(catalog, apps, needed, runtime);
    }
    SmartFolderFactsList factsFrom(SmartFolderFactsCatalog& which, const QList<AppEntry>& apps,
                                   SmartFolderNeeds needed,
                                   const SmartFolderRuntimeFacts& runtime = {}) {
        SmartFolderFactsList result;
        bool wasComplete = false;
        const Task task =
            which.facts({apps, runtime, needed}, [&](SmartFolderFactsList list, bool isComplete) {
                EXPECT_FALSE(std::exchange(wasComplete, isComplete));
                result = list;
            });
        machine.settle();
        EXPECT_TRUE(wasComplete);
        EXPECT_EQ(result.size(), apps.size());
        for (const auto& record : std::as_const(result))
            EXPECT_EQ(record->pending, runtime.pending);
        return result;
    }
    SmartFolderAppFacts factsOf(const AppEntry& app, SmartFolderNeeds needed = all,
                                const SmartFolderRuntimeFacts& runtime = {}) {
        return *facts({app}, needed, runtime).value(0, std::make_shared<const SmartFolderAppFacts>());
    }
    /// Moves the date of a folder, and of nothing else, to now.
    void touch(const QString& path) const {
        std::filesystem::last_write_time(machine.hostPath(path).toStdString(),
                                         std::filesystem::file_time_type::clock::now());
    }
    QStringList toolsRun() const {
        QStringList result;
        for (const Command& command : machine.commands.commands())
            result += QString::fromUtf8(command.executable.mid(9));
        result.sort();
        return result;
    }

    test::TestMachine machine;
    sample::MacBuilder mac{machine.root.path()};
    SmartFolderFactsCatalog catalog{machine.machine};
};

TEST_F(SmartFolderFactsCatalogs, FindsWhatABundleTells) {
    const AppEntry fern =
        add({.name = u"Fern"_s,
             .identifier = u"com.example.fern"_s,
             .version = u"2.1"_s,
             .build = u"77"_s,
             .minimumSystem = u"12.0"_s,
             .rights = u"Copyright © 2020 Fern Gardens. All rights reserved."_s,
             .privacyKeys = {u"NSCalendarsFullAccessUsageDescription"_s, u"NSCameraUsageDescription"_s,
                             u"NSCalendarsUsageDescription"_s, u"NSDesktopFolderUsageDescription"_s},
             .sparkleFramework = true});
    const auto f = factsOf(fern);
    EXPECT_EQ(f.entry, fern);
    EXPECT_TRUE(f.installedDate);
    QJsonObject told = json::encode(f).toObject();
    told.remove(u"entry");
    told.remove(u"installedDate");
    EXPECT_EQ(
        json::writeCompact(told).trimmed(),
        R"({"applicationLocation":"applications","architectures":["x86_64","arm64"],"build":"77",)"
        R"("declaredPermissions":["camera","calendar"],"developer":"Fern Ltd",)"
        R"("distributionChannel":"sparkle","hasCustomIcon":false,"installSource":"manual",)"
        R"("minimumMacOSVersion":"12.0","platform":"macOS","publisher":"Fern Gardens",)"
        R"("signingTeamID":"ABCDE12345","version":"2.1"})");
    for (const Command& command : machine.commands.commands())
        EXPECT_TRUE(command.arguments.last().startsWith(mac.hostPath(fern.path).toUtf8()));

    const auto g = factsOf(
        add({.name = u"Game"_s,
             .wrapped = sample::WrappedMetadata{.realName = u"Real"_s, .artistName = u"Studio"_s}}));
    EXPECT_EQ(g.developer, u"Studio");
    EXPECT_EQ(g.platform, SmartFolderPlatform::iOSOnMac);
    EXPECT_EQ(g.installSource, SmartFolderInstallSource::macAppStore);

    // The launcher's own record of an application that is gone says no more than that.
    AppEntry gone;
    gone.path = u"/Applications/Gone.app"_s;
    const auto h = factsOf(gone);
    EXPECT_FALSE(h.version || h.platform || h.installSource || h.distributionChannel ||
                 h.installedDate);
    EXPECT_EQ(h.applicationLocation, SmartFolderApplicationLocation::applications);
}

TEST_F(SmartFolderFactsCatalogs, DecidesTheChannelByTheBundleWhenUpdatesSayNothing) {
    using enum SmartFolderDistributionChannel;
    const auto channel = [&](const AppEntry& app) { return *factsOf(app, files).distributionChannel; };
    EXPECT_EQ(
        channel(add({.name = u"A"_s, .sparkleFeed = u"https://example.com/a.xml"_s, .receipt = true})),
        macAppStore);
    EXPECT_EQ(
        channel(add({.name = u"B"_s, .folder = u"/System/Applications"_s, .sparkleFramework = true})),
        system);
    EXPECT_EQ(channel(add({.name = u"C"_s, .folder = u"/Library/Apple/X"_s})), system);
    EXPECT_EQ(channel(add({.name = u"D"_s, .folder = u"/Systems"_s})), unsupported);
    EXPECT_EQ(channel(add({.name = u"E"_s, .identifier = u"com.Microsoft.Word"_s})), vendor);
    EXPECT_EQ(channel(add({.name = u"F"_s, .info = {{u"KSUpdateURL"_s, u"https://example.com"_s}}})),
              vendor);
    SmartFolderRuntimeFacts runtime;
    runtime.distributionChannels.insert(u"com.example.g"_s, homebrew);
    EXPECT_EQ(factsOf(add({.name = u"G"_s, .identifier = u"com.example.g"_s, .receipt = true}), files,
                      runtime)
                  .distributionChannel,
              homebrew);
    // Before the channels are known, a feed of its own does not mean that it is updated by that.
    runtime.pending = channels;
    const AppEntry own = add({.name = u"H"_s, .sparkleFramework = true});
    EXPECT_EQ(factsOf(own, files, runtime).distributionChannel, std::nullopt);
    EXPECT_EQ(factsOf(add({.name = u"I"_s, .receipt = true}), files, runtime).distributionChannel,
              macAppStore);
}

TEST_F(SmartFolderFactsCatalogs, KnowsWhoMadeTheSystemsOwnSoftware) {
    const AppEntry own = add({.name = u"Chess"_s, .folder = u"/System/Applications"_s});
    EXPECT_EQ(factsOf(own, files).developer, systemDeveloper); // without a tool
    sign("Authority=Software Signing\nAuthority=Apple Root CA\nTeamIdentifier=not set\n");
    const auto f = factsOf(add({.name = u"Safari"_s}));
    EXPECT_EQ(f.developer, systemDeveloper);
    EXPECT_FALSE(f.signingTeamID);
    EXPECT_EQ(factsOf(own).developer, systemDeveloper);
    EXPECT_EQ(toolsRun().count(u"codesign"_s), 1);
}

TEST_F(SmartFolderFactsCatalogs, KeepsWhatToolsSaidBetweenRuns) {
    const QString path = u"/Users/ada/Library/Application Support/t/bundle-answers.json"_s;
    QList<AppEntry> apps = addSeveral(3);
    const auto run = [&] {
        SmartFolderFactsCatalog fresh(machine.machine, path);
        const qsizetype before = machine.commands.commands().size();
        const auto list = factsFrom(fresh, apps, all);
        EXPECT_EQ(list[2]->developer, u"Fern Ltd");
        EXPECT_EQ(list[2]->signingTeamID, u"ABCDE12345");
        return machine.commands.commands().size() - before;
    };
    EXPECT_EQ(run(), 6);
    EXPECT_EQ(run(), 0);
    touch(apps[1].path);
    EXPECT_EQ(run(), 2);
    machine.write(path, "{\"version\": 1, \"bun");
    EXPECT_EQ(run(), 6);
    EXPECT_EQ(run(), 0);

    // Answers for good are kept, what went wrong this time is not.
    machine.tool(u"/usr/bin/lipo"_s, test::exited(1));
    touch(apps[0].path);
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(run(), 0);
    machine.tool(u"/usr/bin/lipo"_s, CommandResult{.outcome = CommandResult::Outcome::timedOut});
    touch(apps[0].path);
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(run(), 1);
}

TEST_F(SmartFolderFactsCatalogs, TellsWhereABundleLies) {
    using enum SmartFolderApplicationLocation;
    const auto location = [](const char* path, AppSource source = AppSource::local) {
        AppEntry app;
        app.path = QString::fromLatin1(path);
        app.source = source;
        return SmartFolderFactsCatalog::location(app, u"/Users/ada"_s);
    };
    EXPECT_EQ(location("/Applications/Suite.app/Contents/Tool.app", AppSource::system),
              nestedApplication);
    EXPECT_EQ(location("/Applications/Safari.app", AppSource::system), system);
    EXPECT_EQ(location("/System/Applications/Notes.app"), system);
    EXPECT_EQ(location("/Users/ada/Applications/Games/X.app"), userApplications);
    EXPECT_EQ(location("/Users/ada/Applications2/X.app"), other);
    EXPECT_EQ(location("/Applications/Utilities/X.app"), applications);
    EXPECT_EQ(location("/Applications2/X.app"), other);
}

TEST_F(SmartFolderFactsCatalogs, AddsWhatTheLauncherKnows) {
    const AppEntry app = add({.name = u"Fern"_s, .identifier = u"f"_s});
    SmartFolderRuntimeFacts runtime;
    auto f = factsOf(app, files, runtime);
    EXPECT_FALSE(f.isNeverUsed || f.updateStatus || f.firstSeenDate || f.lastUsedDate || f.launchCount);
    runtime.usageDataIsComplete = runtime.updateCheckingEnabled = true;
    f = factsOf(app, files, runtime);
    EXPECT_EQ(f.isNeverUsed, true);
    EXPECT_EQ(f.updateStatus, SmartFolderUpdateState::notChecked);
    runtime.launchCounts.insert(u"f"_s, 0);
    runtime.updateStatuses.insert(u"f"_s, SmartFolderUpdateState::failed);
    runtime.customIconKeys.insert(u"f"_s);
    f = factsOf(app, files, runtime);
    EXPECT_EQ(f.isNeverUsed, true);
    EXPECT_EQ(f.updateStatus, SmartFolderUpdateState::failed);
    EXPECT_EQ(f.hasCustomIcon, true);
    runtime.usageDataIsComplete = runtime.updateCheckingEnabled = false;
    runtime.lastUsedDates.insert(u"f"_s, Instant{5});
    f = factsOf(app, files, runtime);
    EXPECT_EQ(f.isNeverUsed, false);
    EXPECT_FALSE(f.updateStatus);
}

TEST_F(SmartFolderFactsCatalogs, KnowsFromTheSystemWhatWasUsedWithoutTheLauncher) {
    const AppEntry app = add({.name = u"Fern"_s, .identifier = u"f"_s});
    const QByteArray path = machine.hostPath(app.path).toUtf8();
    const auto note = [&](const QByteArray& value) {
        const auto size = static_cast<std::size_t>(value.size());
#ifdef __APPLE__
        return ::setxattr(path, "com.apple.lastuseddate#PS", value, size, 0, 0) == 0;
#else
        return ::setxattr(path, "user.com.apple.lastuseddate#PS", value, size, 0) == 0;
#endif
    };
    const auto used = [](qint64 seconds, qint64 nanoseconds) {
        QByteArray value(16, 0);
        qToLittleEndian(seconds, value.data());
        qToLittleEndian(nanoseconds, value.data() + 8);
        return value;
    };
    if (!note(used(1'700'000'000, 500'000'000)))
        GTEST_SKIP() << "no extended attributes on this disk";
    SmartFolderRuntimeFacts runtime;
    runtime.usageDataIsComplete = true;
    auto f = factsOf(app, usage, runtime);
    EXPECT_EQ(f.lastUsedDate, Instant::fromUnixSeconds(1'700'000'000.5));
    EXPECT_EQ(f.isNeverUsed, false);
    EXPECT_FALSE(f.launchCount) << "how often, it does not say";
    runtime.lastUsedDates.insert(u"f"_s, Instant::fromUnixSeconds(1'800'000'000));
    EXPECT_EQ(factsOf(app, usage, runtime).lastUsedDate, Instant::fromUnixSeconds(1'800'000'000));
    runtime.lastUsedDates.clear();
    EXPECT_FALSE(factsOf(app, files, runtime).lastUsedDate) << "nobody wants to know";
    for (const QByteArray& nonsense :
         {QByteArray(), QByteArray("short"), used(-1, 0), used(1, -1),
          used(std::numeric_limits<qint64>::max(), 0), QByteArray(64, 1)}) {
        ASSERT_TRUE(note(nonsense));
        EXPECT_FALSE(factsOf(app, usage, runtime).lastUsedDate) << nonsense.size();
    }
}

TEST_F(SmartFolderFactsCatalogs, InspectsWhatChangedAndWhatIsNeededAndNothingElse) {
    QList<AppEntry> apps = addSeveral(20);

    const auto first = facts(apps);
    EXPECT_EQ(catalog.inspectionCount(), 20);
    EXPECT_TRUE(toolsRun().isEmpty());
    EXPECT_FALSE(first[3]->architectures);
    EXPECT_EQ(facts(apps), first); // the very records
    EXPECT_EQ(catalog.inspectionCount(), 20);

    facts(apps, bundle | architectures);
    EXPECT_EQ(catalog.inspectionCount(), 40);
    EXPECT_EQ(toolsRun(), QStringList(20, u"lipo"_s));
    const auto second = facts(apps, all);
    EXPECT_EQ(toolsRun(), QStringList(20, u"codesign"_s) + QStringList(20, u"lipo"_s));
    EXPECT_EQ(catalog.inspectionCount(), 60);

    touch(apps[7].path);
    const auto third = facts(apps, all);
    EXPECT_EQ(catalog.inspectionCount(), 61);
    for (int i = 0; i < 20; ++i) // nothing new was found; others keep their very records
        EXPECT_TRUE(i == 7 ? *third[i] == *second[i] : third[i] == second[i]) << i;
    EXPECT_EQ(toolsRun().size(), 42);

    // A new Info.plist in an old folder; what the scan gives anew; a new name of the tile, which is
    // none.
    const QByteArray info = machine.read(apps[2].path + u"/Contents/Info.plist"_s);
    machine.write(apps[2].path + u"/Contents/Info.plist"_s, QByteArray(info).replace("1.0<", "9.0<"));
    EXPECT_EQ(facts(apps, all)[2]->version, u"9.0");
    EXPECT_EQ(catalog.inspectionCount(), 62);
    apps[4].category = u"public.app-category.games"_s;
    apps[5].name = u"Mine"_s;
    EXPECT_EQ(facts(apps, all)[5]->entry.name, u"Mine");
    EXPECT_EQ(catalog.inspectionCount(), 63);
}

TEST_F(SmartFolderFactsCatalogs, ABundleThatChangesWhileItIsInspectedIsInspectedAgain) {
    const AppEntry app = add({.name = u"Fern"_s, .modified = someDate});
    mac.settleDates(someDate);
    std::atomic<int> runs = 0;
    machine.tool(u"/usr/bin/codesign"_s, [&](const Command&, std::stop_token) {
        if (++runs == 1) {
            sample::MacBuilder other(machine.root.path());
            other.addApplication(
                {.name = u"Fern"_s, .version = u"2.0"_s, .modified = someDate.addDays(1)});
            other.settleDates(someDate);
            return test::exited(0, {}, "TeamIdentifier=OLDOLDOLD0\n");
        }
        return test::exited(0, {}, "TeamIdentifier=NEWNEWNEW0\n");
    });
    const auto f = factsOf(app);
    EXPECT_EQ(f.version, u"2.0");
    EXPECT_EQ(f.signingTeamID, u"NEWNEWNEW0");
    EXPECT_EQ(runs, 2);

    // One that never rests ends, too, and is looked at again the next time.
    machine.tool(u"/usr/bin/codesign"_s, [&](const Command&, std::stop_token) {
        machine.write(app.path + u"/touched %1"_s.arg(++runs), "x");
        return test::exited(0);
    });
    touch(app.path);
    factsOf(app);
    EXPECT_LE(runs, 5);
    const int before = runs;
    factsOf(app);
    EXPECT_GT(runs, before);
}

TEST_F(SmartFolderFactsCatalogs, ToolsThatFailLeaveAFactMissing) {
    const auto lost = [](CommandResult::Outcome outcome) { return CommandResult{.outcome = outcome}; };
    CommandResult flooded = test::exited(0, "arm64", "TeamIdentifier=ABCDE12345\n");
    flooded.outputTruncated = true;
    const CommandResult failures[] = {test::exited(1, "arm64", "TeamIdentifier=ABCDE12345\n"), flooded,
                                      lost(CommandResult::Outcome::timedOut),
                                      lost(CommandResult::Outcome::couldNotLaunch),
                                      lost(CommandResult::Outcome::signalled)};
    int i = 0;
    for (const CommandResult& failure : failures) {
        machine.tool(u"/usr/bin/lipo"_s, failure);
        machine.tool(u"/usr/bin/codesign"_s, failure);
        const auto f = factsOf(add({.name = u"App %1"_s.arg(i++)}));
        EXPECT_FALSE(f.architectures || f.developer || f.signingTeamID) << i;
        EXPECT_EQ(f.version, u"1.0");
    }
    for (const Command& command : machine.commands.commands()) {
        EXPECT_LE(command.timeout, std::chrono::seconds(10));
        EXPECT_LE(command.maximumOutput, 1u << 20);
    }

    // A tool that hangs is not waited for with every bundle; missing ones are not even tried.
    machine.tool(u"/usr/bin/lipo"_s, lost(CommandResult::Outcome::timedOut));
    machine.remove(u"/usr/bin/codesign"_s);
    const QList<AppEntry> many = addSeveral(30);
    const qsizetype before = machine.commands.commands().size();
    facts(many, all);
    // Three, and what the other workers had begun by then.
    const qsizetype others = machine.workers.threadCount(Lane::tools) - 1;
    EXPECT_LE(machine.commands.commands().size() - before, 3 + others);
    // Once it works again, those that were left out get their facts.
    machine.tool(u"/usr/bin/lipo"_s, test::exited(0, "arm64"));
    EXPECT_TRUE(facts(many, all).last()->architectures);
}

} // namespace
} // namespace tessellar
