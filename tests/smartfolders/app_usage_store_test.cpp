#include "smartfolders/app_usage_store.h"

#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
const QString folder = u"/Users/ada/Library/Application Support/com.tessellar.app"_s;
const QString path = folder + u"/app-usage.json"_s;
const QString app = u"org.example.a"_s;
const QString other = u"/Applications/B.app"_s;

class AppUsageStores : public testing::Test {
protected:
    std::unique_ptr<AppUsageStore> loaded() {
        auto store = std::make_unique<AppUsageStore>(machine.machine, folder);
        store->load();
        return store;
    }
    test::TestMachine machine;
};

TEST_F(AppUsageStores, RemembersWhatWasSeenAndLaunched) {
    const auto store = loaded();
    EXPECT_TRUE(store->recordSeen({app, other}));
    const Instant first = machine.time.now();
    machine.time.advance(std::chrono::hours(5));
    EXPECT_FALSE(store->recordSeen({app}));
    store->recordLaunch(app);
    store->recordLaunch(app);
    ASSERT_TRUE(store->flush());
    store->recordLaunch(u"x"_s.repeated(2'000)); // no key of an application
    EXPECT_EQ(store->records().size(), 2);

    const auto again = loaded();
    EXPECT_EQ(again->records(), store->records());
    EXPECT_EQ(again->records().value(app), (AppUsage{first, machine.time.now(), 2}));
    SmartFolderRuntimeFacts facts;
    again->fill(facts);
    EXPECT_EQ(facts.firstSeenDates.value(other), first);
    EXPECT_EQ(facts.launchCounts, (QHash<QString, qint64>{{app, 2}, {other, 0}}));
    EXPECT_EQ(facts.lastUsedDates.size(), 1);
    EXPECT_FALSE(facts.usageDataIsComplete); // on the first day nothing can be called never used
    machine.time.advance(AppUsageStore::completeAfter);
    again->fill(facts);
    EXPECT_TRUE(facts.usageDataIsComplete);
}

TEST_F(AppUsageStores, ForgetsForGoodAndSaysOfNoneThatItWasNeverUsed) {
    const auto store = loaded();
    store->recordSeen({app, other});
    store->recordLaunch(app);
    machine.time.advance(2 * AppUsageStore::completeAfter);
    store->forget();
    ASSERT_TRUE(store->flush());
    const auto again = loaded();
    const AppUsage unused{machine.time.now(), std::nullopt, 0};
    EXPECT_EQ(again->records(), (QHash<QString, AppUsage>{{app, unused}, {other, unused}}));
    SmartFolderRuntimeFacts facts;
    again->fill(facts);
    EXPECT_FALSE(facts.usageDataIsComplete);
    EXPECT_TRUE(facts.launchCounts.isEmpty());
}

TEST_F(AppUsageStores, FollowsAnApplicationThatGoesByAnotherKey) {
    const auto store = loaded();
    store->recordLaunch(app);
    const AppUsage usage = store->records().value(app);
    EXPECT_TRUE(store->changeKeys({{app, other}})); // a second copy has come
    EXPECT_EQ(store->records(), (QHash<QString, AppUsage>{{other, usage}}));
    machine.time.advance(std::chrono::hours(1));
    store->recordLaunch(app);
    EXPECT_TRUE(store->changeKeys({{other, app}})); // and gone again
    EXPECT_EQ(store->records().keys(), QStringList{app});
    EXPECT_EQ(store->records().value(app), (AppUsage{usage.firstSeen, machine.time.now(), 2}));
    EXPECT_FALSE(store->changeKeys({{other, app}}));
}

TEST_F(AppUsageStores, SetsADamagedFileAsideAndKnowsItsLoss) {
    const QByteArray damaged = R"({"version": 1, "records": ["a"]})";
    for (const QByteArray& bytes :
         {damaged, QByteArray(R"({"version": 2, "records": {}})"), QByteArray()}) {
        machine.write(path, bytes);
        const auto store = loaded();
        EXPECT_TRUE(store->records().isEmpty());
        EXPECT_FALSE(machine.exists(path));
        store->recordSeen({app});
        EXPECT_TRUE(store->flush());
        EXPECT_FALSE(loaded()->isComplete());
        SmartFolderRuntimeFacts facts;
        store->fill(facts);
        EXPECT_FALSE(facts.usageDataIsComplete || facts.launchCounts.contains(app));
        // A loss matters for so long, and no longer.
        machine.time.advance(AppUsageStore::completeAfter);
        EXPECT_TRUE(loaded()->isComplete());
        store->fill(facts);
        EXPECT_TRUE(facts.usageDataIsComplete && facts.launchCounts.contains(app));
    }
    const QStringList aside = machine.names(folder).filter(u"app-usage.damaged-"_s);
    ASSERT_EQ(aside.size(), 3);
    QList<QByteArray> kept;
    for (const QString& name : aside)
        kept += machine.read(folder + u'/' + name);
    EXPECT_TRUE(kept.contains(damaged));
}

TEST_F(AppUsageStores, ADamagedRecordCostsItselfAlone) {
    machine.write(path, R"({"version": 1, "records": {"a": {"firstSeen": "yesterday"},
                            "b": {"firstSeen": 1, "count": 7}}})");
    const auto store = loaded();
    EXPECT_EQ(store->records().keys(), QStringList{u"b"_s});
    EXPECT_EQ(store->records().cbegin()->count, 7);
    EXPECT_FALSE(store->isComplete());
    EXPECT_TRUE(machine.names(folder).filter(u"damaged"_s).isEmpty());

    // Where a whole file does not say since when it counts, its oldest record does.
    machine.write(path, R"({"version": 1, "records": {"b": {"firstSeen": 1, "count": 7}}})");
    SmartFolderRuntimeFacts facts;
    loaded()->fill(facts);
    EXPECT_TRUE(facts.usageDataIsComplete);
}

TEST_F(AppUsageStores, AFileThatCannotBeReadNowStaysWhereItIs) {
    machine.makeFolder(path + u"/in the way"_s);
    const auto store = loaded();
    store->recordLaunch(app);
    EXPECT_FALSE(store->flush());
    EXPECT_FALSE(store->isComplete());
    EXPECT_EQ(machine.names(folder), QStringList{u"app-usage.json"_s});
    machine.remove(path);
    machine.settle(); // what failed is known now, and goes with the next save
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(loaded()->records().value(app).count, 1);
}

} // namespace
} // namespace tessellar
