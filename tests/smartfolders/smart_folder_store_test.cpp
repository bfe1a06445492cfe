#include "smartfolders/smart_folder_store.h"

#include "smartfolders/smart_folder_rule.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using Store = SmartFolderStore;
using enum SmartFolderRecovery;

const QString folder = u"/Users/ada/Library/Application Support/com.tessellar.app"_s;
const QString registry = folder + u"/computed-folders.json"_s;
const QString marker = folder + u"/computed-folders.recovery.json"_s;

/// A stand-in for the power going: nothing after it happens.
struct Killed {};

class SmartFolderStores : public testing::Test {
protected:
    Store store(std::function<void()> beforeStep = {}) const {
        return {machine->files, folder, machine->time, machine->uuids, std::move(beforeStep)};
    }
    SmartFolderDefinition definition() {
        return templateDefinition(SmartFolderTemplate::microsoftApps, machine->uuids.next(),
                                  Instant{0.1}, machine->uuids);
    }
    static QByteArray bytes(const QList<SmartFolderDefinition>& definitions, qint64 version = 1) {
        return json::write(
            QJsonObject{{u"version"_s, version}, {u"definitions"_s, json::encode(definitions)}});
    }
    static std::optional<Store::Error> failure(const Store::LoadResult& result) {
        const auto* failed = std::get_if<Store::Failed>(&result);
        return failed ? std::optional(failed->error) : std::nullopt;
    }
    /// The names of all registries that were moved aside.
    QStringList aside() const { return machine->names(folder).filter(u"corrupt-"_s); }
    void newMachine() { machine = std::make_unique<test::TestMachine>(); }

    std::unique_ptr<test::TestMachine> machine = std::make_unique<test::TestMachine>();
};

TEST_F(SmartFolderStores, BeginsEmptyAndKeepsWhatIsSaved) {
    Store first = store();
    EXPECT_EQ(first.save({}), std::unexpected(Store::Error(Store::StoreError(Store::WriteBlocked()))));
    EXPECT_EQ(first.load(), Store::LoadResult(Store::Missing()));
    const QList definitions{definition(), definition()};
    ASSERT_TRUE(first.save(definitions));
    EXPECT_EQ(store().load(), Store::LoadResult(Store::Loaded{definitions}));
    EXPECT_EQ(machine->read(registry), bytes(definitions));
    EXPECT_TRUE(machine->read(registry).contains("\"modifiedAt\": 0.1,"));

    auto invalid = definitions;
    invalid[1].name.clear();
    EXPECT_EQ(first.save(invalid), std::unexpected(Store::Error(
                                       Store::StoreError(Store::InvalidDefinition{invalid[1].id}))));
    EXPECT_EQ(machine->read(registry), bytes(definitions));
}

TEST_F(SmartFolderStores, MovesAsideWhatItCannotReadAndSavesNothingUntilRecovered) {
    const auto a = definition();
    auto b = definition();
    const auto sameRule = [&] {
        auto changed = b;
        changed.rules[1] = a.rules[2];
        return changed;
    };
    auto blank = a;
    blank.name = u" "_s;
    QByteArray unknownWord = bytes({a});
    unknownWord.replace("bundleIdentifier", "bundleFlavour");
    QByteArray version2 = bytes({}, 2);
    version2.replace("[\n    ]", "{\"of another\": \"form\"}");
    const struct {
        QByteArray bytes;
        std::optional<Store::StoreError> error;
        const char* message;
    } faults[] = {
        {version2, Store::UnsupportedVersion{2}, "Unsupported Smart Folder registry version 2."},
        {bytes({a, blank}), Store::DuplicateDefinitionID{a.id},
         "The Smart Folder registry contains a duplicate definition identifier."},
        {bytes({b, blank}), Store::InvalidDefinition{a.id},
         "The Smart Folder registry contains an invalid definition."},
        {bytes({a, sameRule()}), Store::DuplicateRuleID{a.rules[2].id(), b.id},
         "The Smart Folder registry contains a duplicate rule identifier."},
        {unknownWord, {}, nullptr},
        {bytes({a, b}).chopped(40), {}, nullptr},
        {QByteArray(), {}, nullptr},
        {QByteArray("[").repeated(5'000), {}, nullptr},
        {bytes({a}).replace("0.1", "1e999"), {}, nullptr},
    };
    for (const auto& fault : faults) {
        newMachine();
        machine->write(registry, fault.bytes);
        Store s = store();
        const auto error = failure(s.load());
        ASSERT_TRUE(error) << fault.bytes.left(80).toStdString();
        if (fault.error) {
            EXPECT_EQ(*error, Store::Error(*fault.error));
            EXPECT_EQ(message(*error), QLatin1StringView(fault.message));
        } else {
            EXPECT_TRUE(message(*error).startsWith(u"The Smart Folder registry is damaged: "));
        }
        ASSERT_TRUE(s.lastQuarantinedPath());
        EXPECT_TRUE(FileSystem::fileName(*s.lastQuarantinedPath())
                        .startsWith(u"computed-folders.corrupt-2026-11-14T21-05-40Z-0000000"));
        EXPECT_EQ(machine->read(*s.lastQuarantinedPath()), fault.bytes);
        EXPECT_FALSE(machine->exists(registry));
        const auto marked = json::decodeDocument<Store::RecoveryMarker>(machine->read(marker));
        EXPECT_EQ(marked, (Store::RecoveryMarker{1, FileSystem::fileName(*s.lastQuarantinedPath()),
                                                 machine->time.now()}));
        EXPECT_EQ(
            message(s.save({}).error()),
            u"Smart Folders cannot be saved until the quarantined registry is recovered or replaced.");
        EXPECT_FALSE(machine->exists(registry));

        Store next = store();
        EXPECT_EQ(next.load(),
                  Store::LoadResult(Store::Failed{Store::StoreError(Store::RecoveryRequired())}));
        EXPECT_EQ(next.lastQuarantinedPath(), s.lastQuarantinedPath());
        EXPECT_TRUE(next.isWriteBlocked());
    }
}

TEST_F(SmartFolderStores, MovesAsideWhatIsNoFileAndNeverStartsAnewOnADoubt) {
    machine->write(registry + u"/inside"_s, "kept");
    Store s = store();
    EXPECT_TRUE(failure(s.load()));
    EXPECT_EQ(machine->read(s.lastQuarantinedPath().value() + u"/inside"_s), "kept");

    // Neither can the marker be written here, so the registry stays where it is.
    newMachine();
    machine->write(registry, "damaged");
    machine->makeFolder(marker + u"/in the way"_s);
    Store stuck = store();
    EXPECT_TRUE(failure(stuck.load()));
    EXPECT_TRUE(stuck.isWriteBlocked());
    EXPECT_TRUE(failure(stuck.recover(replace)));
    EXPECT_EQ(machine->read(registry), "damaged");

    // A marker that nobody can read still says that something lies aside.
    newMachine();
    machine->write(marker, "{");
    EXPECT_TRUE(failure(store().load()));
    EXPECT_TRUE(failure(store().recover(restore)));
    EXPECT_EQ(store().recover(replace), Store::LoadResult(Store::Loaded{}));
    EXPECT_FALSE(machine->exists(marker));

    // One that names another place is not followed.
    newMachine();
    machine->write(folder + u"/../treasure.json"_s, bytes({}));
    const QString elsewhere = u"computed-folders.corrupt-/../../treasure.json"_s;
    machine->write(marker, json::write(json::encode(Store::RecoveryMarker{1, elsewhere, {}})));
    EXPECT_TRUE(failure(store().recover(restore)));
    EXPECT_TRUE(machine->exists(folder + u"/../treasure.json"_s));
}

TEST_F(SmartFolderStores, AKillAtAnyStepLosesNothingAndIsNoticed) {
    const QByteArray damaged = "the only copy";
    // What is on the disk when it goes wrong, and what is asked of the store then.
    const std::vector<std::function<void(Store&)>> works{
        [](Store& s) { (void)s.load(); },
        [](Store& s) { (void)s.recover(restore); },
        [](Store& s) { (void)s.recover(replace); },
    };
    for (const auto& work : works) {
        for (const bool loadedBefore : {false, true}) {
            bool finished = false;
            for (int steps = 0; !finished; ++steps) {
                newMachine();
                machine->write(registry, damaged);
                if (loadedBefore)
                    (void)store().load();
                int left = steps;
                Store killed = store([&] {
                    if (left-- == 0)
                        throw Killed();
                });
                try {
                    work(killed);
                    finished = true;
                } catch (const Killed&) {
                }
                QList<QByteArray> kept;
                for (const QString& name : aside())
                    kept += machine->read(folder + u'/' + name);
                if (machine->exists(registry))
                    kept += machine->read(registry);
                EXPECT_TRUE(kept.contains(damaged)) << steps;
                // The next start either knows, or the user had begun anew by then.
                const auto next = store().load();
                EXPECT_NE(next, Store::LoadResult(Store::Missing())) << steps;
                if (const auto* loaded = std::get_if<Store::Loaded>(&next)) {
                    EXPECT_EQ(aside().size(), 1);
                    EXPECT_TRUE(loaded->definitions.isEmpty());
                }
                ASSERT_LT(steps, 20);
            }
        }
    }
}

} // namespace
} // namespace tessellar
