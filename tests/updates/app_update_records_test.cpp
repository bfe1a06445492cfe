#include "updates/app_update_settings.h"
#include "updates/app_update_store.h"
#include "updates/app_update_texts.h"

#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;

const AppUpdateCache someCache{.records = {{u"a"_s, {.status = UpToDate(), .checkedAt = {10.5}}},
                                           {u"b"_s,
                                            {.status = UpdateCheckFailed(),
                                             .checkedAt = {20},
                                             .installedVersion = u"1"_s,
                                             .sourceFingerprint = u"sparkle-v1"_s,
                                             .lastKnownStatus = UpdateAvailable{u"2"_s}}}},
                               .lastCheck = Instant{30}};

TEST(AppUpdateStore, WritesTheCacheInItsForm) {
    test::TestMachine mac;
    AppUpdateStore store(mac.machine);
    EXPECT_EQ(store.load(), AppUpdateCache());
    store.save(someCache);
    ASSERT_TRUE(store.wait());
    const QByteArray bytes =
        mac.read(u"/Users/ada/Library/Application Support/com.tessellar.app/app-updates.json"_s);
    EXPECT_EQ(
        json::writeCompact(*json::parse(bytes)).trimmed(),
        R"({"lastCheck":30,"records":{"a":{"checkedAt":10.5,"status":{"upToDate":{}}},"b":{"checkedAt":20,)"
        R"("installedVersion":"1","lastKnownStatus":{"updateAvailable":{"latestVersion":"2"}},)"
        R"("sourceFingerprint":"sparkle-v1","status":{"failed":{}}}}})");
    EXPECT_EQ(store.load(), someCache);
    EXPECT_EQ(AppUpdateStore::defaultPath(mac.machine.places, std::nullopt),
              u"/Users/ada/Library/Application Support/com.quillane.app/app-updates.json"_s);

    mac.write(store.path(), R"({"later":1})");
    EXPECT_EQ(store.load(), AppUpdateCache());
}

TEST(AppUpdateStore, SetsADamagedFileAsideAndNeverOverwritesIt) {
    test::TestMachine mac;
    AppUpdateStore store(mac.machine);
    const QString folder = FileSystem::parent(store.path());
    const QByteArray damaged = R"({"records":{"a":{"status":{"later":{}},"checkedAt":1}}})";
    mac.write(store.path(), damaged);
    EXPECT_EQ(store.load(), AppUpdateCache());
    ASSERT_EQ(mac.names(folder).size(), 1);
    const QString aside = FileSystem::joined(folder, mac.names(folder).first());
    EXPECT_NE(aside, store.path());
    store.save(someCache);
    ASSERT_TRUE(store.wait());
    EXPECT_EQ(mac.read(aside), damaged);
    EXPECT_EQ(mac.log.lines().size(), 1);
}

TEST(AppUpdateSettings, TakeOnlyTheIntervalsAndSecureAddresses) {
    EXPECT_EQ(appUpdateInterval(0), AppUpdateInterval::daily);
    EXPECT_EQ(appUpdateInterval(604'800), AppUpdateInterval::weekly);
    EXPECT_EQ(appUpdateInterval(3'600), std::nullopt);
    EXPECT_EQ(appUpdateInterval(-86'400), std::nullopt);

    test::MemorySettings settings;
    const AppUpdateSettings usual = readAppUpdateSettings(settings);
    EXPECT_TRUE(usual.enabled);
    EXPECT_EQ(usual.period(), std::chrono::hours(24));
    (void)settings.set(AppUpdateSettings::intervalKey, u"21600"_s);
    (void)settings.set(AppUpdateSettings::enabledKey, 0);
    (void)settings.set(AppUpdateSettings::storePageKey, u"http://example.com"_s);
    EXPECT_EQ(readAppUpdateSettings(settings), usual);
    (void)settings.set(AppUpdateSettings::intervalKey, 21'600);
    (void)settings.set(AppUpdateSettings::enabledKey, false);
    (void)settings.set(AppUpdateSettings::storePageKey, u"http://127.0.0.1:8080/"_s);
    const AppUpdateSettings own = readAppUpdateSettings(settings);
    EXPECT_FALSE(own.enabled);
    EXPECT_EQ(own.period(), std::chrono::hours(6));
    EXPECT_EQ(own.storePageBase, u"http://127.0.0.1:8080"_s);
}

TEST(AppUpdateTexts, SayWhatIsThere) {
    EXPECT_EQ(update_texts::available(u"1.0"_s, u"2%1"_s), u"Update available: 1.0 → 2%1"_s);
    EXPECT_EQ(update_texts::available(u"3.2"_s, u"3.1"_s), u"Update available: 3.1"_s);
    EXPECT_EQ(update_texts::status({.status = UpdateCheckFailed(),
                                    .lastKnownStatus = UpdateUnsupported(),
                                    .reason = AppUpdateReason{AppUpdateReason::Code::throttled, {}}}),
              u"The check failed. The server accepts no more requests for now. Before: Its source "
              "cannot tell"_s);
    const auto summary = [](const AppUpdateTally& tally) {
        return update_texts::summary(tally, {}, u"today"_s);
    };
    EXPECT_EQ(summary({.available = 12, .failed = 1}),
              u"12 updates available. 1 app could not be checked."_s);
    EXPECT_EQ(summary({.unsupported = 3}),
              u"Last checked today. None of your apps can be checked for updates."_s);

    const AppUpdateCandidate word{.path = u"/Applications/Word.app"_s,
                                  .bundleIdentifier = u"com.Microsoft.Word"_s};
    EXPECT_TRUE(sourceText(std::nullopt, word).explanation.startsWith(u"Microsoft AutoUpdate"));
    EXPECT_EQ(sourceText(std::nullopt, {.path = u"/System/Applications/Maps.app"_s}).label,
              u"Managed by macOS"_s);
    const auto unknown = sourceText(std::nullopt, {.path = u"/Systematic/Fern.app"_s});
    EXPECT_EQ(unknown.label + unknown.source, QString());
}

} // namespace
} // namespace tessellar
