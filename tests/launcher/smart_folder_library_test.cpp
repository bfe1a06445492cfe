#include "small_launcher.h"

#include "smartfolders/smart_folder_rule.h"

#include <latch>

namespace tessellar::test {
namespace {

class SmartFolderLibraryTest : public SmallLauncher {
protected:
    const QString registry = data + u"/computed-folders.json"_s;
    Subscription subscription;
    int announced = 0;

    SmartFolderLibraryTest() {
        mac.tool(u"/usr/bin/lipo"_s, exited(0, "arm64\n"));
        mac.tool(u"/usr/bin/codesign"_s, exited(0, {}, "TeamIdentifier=ABCDE12345\n"));
        mac.tool(u"/usr/bin/open"_s, exited(0));
        installAll(u"Ash Beech Iris"_s);
    }
    void start() {
        subscription.cancel();
        SmallLauncher::start();
        subscription = launcher->smartFolders().changed.connect([this] { ++announced; });
    }
    SmartFolderLibrary& library() { return launcher->smartFolders(); }

    SmartFolderDefinition definition(const QString& name, const SmartFolderRule& rule) {
        SmartFolderDefinition result{.id = idOf(name), .name = name};
        result.rules = {rule};
        result.sort.field = "name";
        return result;
    }
    SmartFolderRule nameBegins(const QString& text) {
        return SmartFolderTextRule{mac.uuids.next(), "displayName", predicate::BeginsWith(text)};
    }
    SmartFolderRule usedToday() {
        return SmartFolderDateRule{mac.uuids.next(), "lastUsedDate", predicate::IsToday()};
    }
    void add(const SmartFolderDefinition& definition) {
        ASSERT_EQ(codeOf(editor().addSmartFolder(mode(), definition)), u"done");
        mac.settle();
    }
    /// The names that a folder shows, in order.
    QString shown(const QString& name) {
        QStringList names;
        if (const SmartFolderEvaluation* evaluation = library().evaluation(idOf(name), mode()))
            for (const auto& facts : evaluation->matches)
                names += facts->entry.name;
        return names.join(u' ');
    }
    qsizetype toolRuns() const {
        return std::ranges::count_if(mac.commands.commands(), [](const Command& command) {
            return command.executable != "/usr/bin/open";
        });
    }
};

TEST_F(SmartFolderLibraryTest, ARoundFollowsAScanAndLooksIntoTheOneBundleThatChanged) {
    start();
    add(definition(u"A"_s, nameBegins(u"a"_s)));
    EXPECT_EQ(shown(u"A"_s), u"Ash");
    EXPECT_EQ(library().inspectionCount(), 0); // no rule asks for what a bundle tells
    add(definition(u"New"_s, SmartFolderVersionRule{mac.uuids.next(), "version",
                                                    predicate::IsAbove<QString>(u"0.5"_s)}));
    EXPECT_EQ(shown(u"New"_s), u"Ash Beech Iris");
    EXPECT_EQ(toolRuns(), 0); // or for what a tool knows

    const quint64 before = library().inspectionCount();
    announced = 0;
    rescan();
    EXPECT_EQ(library().inspectionCount(), before);
    EXPECT_EQ(announced, 0); // the same as was shown

    install(u"Alder"_s);
    rescan();
    EXPECT_EQ(shown(u"A"_s), u"Alder Ash");
    EXPECT_EQ(library().inspectionCount(), before + 1);
    EXPECT_EQ(announced, 1);
}

TEST_F(SmartFolderLibraryTest, OnlyTheLastOfSeveralChangesCounts) {
    start();
    SmartFolderDefinition tree = definition(u"Tree"_s, nameBegins(u"a"_s));
    add(tree);
    announced = 0;
    for (const QString& begin : {u"b"_s, u"i"_s, u"a"_s, u"b"_s}) {
        tree.rules = {nameBegins(begin)};
        ASSERT_TRUE(editor().changeSmartFolder(mode(), tree));
        // The facts of the round have come, its evaluation is still under way.
        mac.workers.waitIdle();
        if (begin == u"a")
            (void)mac.mailbox.drain();
    }
    mac.settle();
    EXPECT_EQ(shown(u"Tree"_s), u"Beech");
    EXPECT_EQ(announced, 4 + 1); // each definition, and the one result
}

TEST_F(SmartFolderLibraryTest, LaunchesAreRecordedAndFoldersFollowThemAndTheDay) {
    start();
    add(definition(u"Today"_s, usedToday()));
    EXPECT_EQ(shown(u"Today"_s), u"");
    EXPECT_FALSE(library().notice(idOf(u"Today"_s), mode()).isEmpty());
    launcher->opener().launch(u"org.example.beech"_s);
    mac.settle();
    EXPECT_EQ(shown(u"Today"_s), u"Beech");

    // What was recorded outlives the program.
    start();
    EXPECT_EQ(shown(u"Today"_s), u"Beech");
    const auto facts = library().facts(mode());
    ASSERT_EQ(facts.size(), 3);
    EXPECT_EQ(facts[1]->launchCount, 1);
    EXPECT_EQ(facts[0]->firstSeenDate, facts[2]->firstSeenDate); // seen by the same scan

    announced = 0;
    for (int hour = 0; hour < 24; ++hour) {
        time.advance(1h);
        mac.settle();
    }
    EXPECT_EQ(shown(u"Today"_s), u"");
    EXPECT_EQ(announced, 1);
    // So it does when the clock alone is set.
    time.setNow(time.now() - 24h);
    time.advance(1h);
    mac.settle();
    EXPECT_EQ(shown(u"Today"_s), u"Beech");
    // After a sleep, in which timers did not run, as soon as somebody looks.
    time.setNow(time.now() + 24h);
    library().reevaluate();
    mac.settle();
    EXPECT_EQ(shown(u"Today"_s), u"");
}

TEST_F(SmartFolderLibraryTest, FoldersFollowTheLocale) {
    start();
    add(definition(u"I"_s, nameBegins(u"ı"_s)));
    EXPECT_EQ(shown(u"I"_s), u"");
    launcher->setLocale(Locale(u"tr_TR"_s));
    mac.settle();
    EXPECT_EQ(shown(u"I"_s), u"Iris");
}

TEST_F(SmartFolderLibraryTest, FoldersGoByTheNamesOfTheModeThatIsShown) {
    start();
    add(definition(u"A"_s, nameBegins(u"a"_s)));
    add(definition(u"Named"_s, SmartFolderBooleanRule{mac.uuids.next(), "hasCustomName",
                                                      predicate::IsValue<bool>(true)}));
    EXPECT_EQ(shown(u"Named"_s), u"");
    const QUuid beech = launcher->shown().pages()[0][1].id();
    ASSERT_TRUE(editor().rename(mode(), beech, u"Acorn"_s));
    mac.settle();
    EXPECT_EQ(shown(u"A"_s), u"Acorn Ash");
    EXPECT_EQ(shown(u"Named"_s), u"Acorn");

    start(); // the name outlives the program, and a scan that finds something new
    EXPECT_EQ(shown(u"A"_s), u"Acorn Ash");
    install(u"Alder"_s);
    rescan();
    EXPECT_EQ(shown(u"A"_s), u"Acorn Alder Ash");

    launcher->layouts().show(windowed);
    mac.settle();
    EXPECT_EQ(shown(u"A"_s), u"Alder Ash");
    EXPECT_EQ(shown(u"Named"_s), u"");
}

TEST_F(SmartFolderLibraryTest, AFolderThatWaitsForAToolHoldsUpNoOther) {
    std::latch answer(1);
    mac.tool(u"/usr/bin/codesign"_s, [&](const Command&, std::stop_token) {
        answer.wait();
        return exited(0, {}, "Authority=Developer ID Application: Fern Ltd (ABCDE12345)\n");
    });
    start();
    ASSERT_TRUE(editor().addSmartFolder(mode(), definition(u"A"_s, nameBegins(u"a"_s))));
    auto signedOnes = definition(
        u"Fern"_s, SmartFolderTextRule{mac.uuids.next(), "developer", predicate::Contains(u"fern"_s)});
    signedOnes.rules += nameBegins(u"b"_s);
    signedOnes.matchMode = SmartFolderMatchMode::any;
    ASSERT_TRUE(editor().addSmartFolder(mode(), signedOnes));
    mac.until([&] { return !shown(u"Fern"_s).isEmpty(); });
    EXPECT_EQ(shown(u"A"_s), u"Ash");
    EXPECT_EQ(library().notice(idOf(u"A"_s), mode()), u"");
    EXPECT_EQ(shown(u"Fern"_s), u"Beech"); // what is known
    EXPECT_EQ(library().notice(signedOnes.id, mode()), u"Still gathering… (Developer)");
    // Who asks for what bundles tell waits for no tool, either.
    QStringList told;
    library().gatherFacts(SmartFolderNeed::signature, [&] { told += u"tools"_s; });
    library().gatherFacts(SmartFolderNeed::bundle, [&] { told += u"files"_s; });
    mac.until([&] { return !told.isEmpty(); });
    EXPECT_EQ(told, QStringList{u"files"_s});
    answer.count_down();
    mac.settle();
    EXPECT_EQ(told, (QStringList{u"files"_s, u"tools"_s}));
    EXPECT_EQ(shown(u"Fern"_s), u"Ash Beech Iris");
    EXPECT_EQ(library().notice(signedOnes.id, mode()), u"");

    // The next start asks no tool about bundles that are as they were.
    const qsizetype before = toolRuns();
    EXPECT_EQ(before, 3);
    start();
    EXPECT_EQ(shown(u"Fern"_s), u"Ash Beech Iris");
    EXPECT_EQ(toolRuns(), before);
}

TEST_F(SmartFolderLibraryTest, HiddenApplicationsCountNowhereInTheirMode) {
    start();
    auto two = definition(u"Two"_s,
                          SmartFolderTextRule{mac.uuids.next(), "path", predicate::Contains(u"/"_s)});
    two.resultLimit = 2;
    add(two);
    EXPECT_EQ(shown(u"Two"_s), u"Ash Beech");
    ASSERT_TRUE(editor().hideApps(mode(), {launcher->shown().pages()[0][0].id()}));
    mac.settle();
    EXPECT_EQ(shown(u"Two"_s), u"Beech Iris");
    EXPECT_EQ(library().evaluations(otherMode(mode())).value(two.id).appKeys().value(0),
              u"org.example.ash");
}

TEST_F(SmartFolderLibraryTest, FactsOfOneApplicationAskForNoOther) {
    start();
    std::optional<QString> team;
    library().gatherFactsOf(
        *launcher->applications().withKey(u"org.example.beech"_s), mode(),
        [&](const SmartFolderAppFacts& facts, bool) { team = facts.signingTeamID; });
    mac.settle();
    EXPECT_EQ(team, u"ABCDE12345");
    EXPECT_EQ(toolRuns(), 2);
    EXPECT_EQ(library().inspectionCount(), 1);
}

TEST_F(SmartFolderLibraryTest, ARegistryPutBackSurvivesAnUndoOfWhatWasDoneWithoutIt) {
    start();
    const SmartFolderDefinition tree = definition(u"Tree"_s, nameBegins(u"a"_s));
    add(tree);
    const QByteArray good = mac.read(registry);
    launcher.reset();
    mac.write(registry, "half a fi");
    start();
    ASSERT_EQ(messages().takeAlerts().size(), 1);
    EXPECT_FALSE(library().isWritable());
    EXPECT_EQ(library().name(tree.id), u"Unavailable Smart Folder");
    EXPECT_EQ(sketched().count(u'*'), 1);
    EXPECT_EQ(editor().deleteSmartFolder(mode(), tree.id).error().code, u"noSuchSmartFolder");
    ASSERT_TRUE(editor().hideApps(mode(), {launcher->shown().pages()[0][0].id()}));

    // Still damaged: another try fails and says so.
    EXPECT_EQ(library().recover(SmartFolderRecovery::restore).error().code, u"damaged");
    const QStringList aside = mac.names(data).filter(u"corrupt"_s);
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(mac.read(data + u'/' + aside.first()), "half a fi");

    mac.write(data + u'/' + aside.first(), good);
    EXPECT_TRUE(library().recover(SmartFolderRecovery::restore));
    mac.settle();
    EXPECT_EQ(shown(u"Tree"_s), u""); // its one application is hidden
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(shown(u"Tree"_s), u"Ash");
    EXPECT_EQ(mac.read(registry), good);
    EXPECT_TRUE(launcher->shown().hiddenKeys().isEmpty());
}

} // namespace
} // namespace tessellar::test
