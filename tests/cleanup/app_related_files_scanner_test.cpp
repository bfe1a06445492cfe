#include "cleanup/cleanup_review_state.h"
#include "cleanup/related_file_names.h"

#include "sample/leftovers.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using enum RelatedFileMatch;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

const QString library = u"/Users/ada/Library/"_s;

CleanupApplication app(const QString& name, std::optional<QString> identifier = std::nullopt,
                       std::optional<QString> team = QString()) {
    return {.names = {name},
            .bundleIdentifier = std::move(identifier),
            .path = u"/Applications/%1.app"_s.arg(name),
            .team = std::move(team)};
}

class AppRelatedFilesScannerTest : public testing::Test {
protected:
    test::TestMachine mac;
    QList<CleanupApplication> others;

    RelatedFilesScan scan(const CleanupApplication& application) const {
        return AppRelatedFilesScanner(mac.files, u"/Users/ada"_s).scan(application, others, {}).value();
    }
    CleanupReviewState review(const CleanupApplication& application) const {
        CleanupReviewState state;
        state.show(scan(application));
        return state;
    }
    /// What is offered and what is chosen, by its path in the user's Library if it lies there:
    /// "One|Two".
    QString offered(const CleanupApplication& application) const {
        return listOf(scan(application).files);
    }
    QString chosen(const CleanupApplication& application) const {
        return listOf(review(application).selectedItems());
    }
    static QString listOf(const QList<RelatedFile>& files) {
        QStringList paths;
        for (const RelatedFile& file : files)
            paths.append(file.path.startsWith(library) ? file.path.sliced(library.size()) : file.path);
        return paths.join(u'|');
    }
    /// Folders in the user's Library: "One|Two".
    void folders(const QString& list) const {
        for (const QString& path : list.split(u'|'))
            mac.write(library + path + u"/x"_s, "x");
    }
};

TEST_F(AppRelatedFilesScannerTest, FindsWhatAnApplicationLeavesEverywhere) {
    sample::MacBuilder builder(mac.root.path());
    sample::Application quill{.name = u"Quill Writer"_s,
                              .identifier = u"com.example.quill"_s,
                              .signature = {.team = u"ABCDE12345"_s}};
    builder.addApplication(quill);
    using enum sample::Leftover;
    const QStringList left = sample::addLeftovers(
        builder, quill,
        {savedState, httpStorage, webKit, container, preferences, byHostPreferences, cache,
         updaterCache, support, supportById, vendorSupport, logs, groupContainer, launchAgent,
         systemSupport, systemPreferences, systemAgent, daemon, helperTool});
    const CleanupApplication quillApp = app(u"Quill Writer"_s, u"com.example.quill"_s, u"ABCDE12345"_s);

    const RelatedFilesScan found = scan(quillApp);
    EXPECT_TRUE(found.isComplete);
    QStringList paths;
    for (const RelatedFile& file : found.files)
        paths.append(file.path);
    EXPECT_EQ(paths.takeFirst(), quillApp.path);
    EXPECT_THAT(paths, testing::UnorderedElementsAreArray(left));
    for (const RelatedFile& file : found.files)
        EXPECT_EQ(file.domain == CleanupDomain::system, file.path.startsWith(u"/Library/"));

    // What carries the identifier is chosen, what carries the name alone is offered.
    const CleanupReviewState state = review(quillApp);
    for (const RelatedFile& file : state.items)
        EXPECT_EQ(state.isSelected(file.path), file.match <= strongish) << file.path.toStdString();
}

TEST_F(AppRelatedFilesScannerTest, WhatIsAnotherApplicationsIsNotListed) {
    folders(u"Application Support/com.foo.barista|Application Support/com.foo.bar|"
            "Caches/com.foo.bar.baz|Caches/com.foo.bar.baz.cache|"
            "Group Containers/TEAM.com.foo.bar.baz.shared|"
            "Application Support/Baz Studio/com.foo.bar"_s);
    const CleanupApplication bar = app(u"Bar"_s, u"com.foo.bar"_s);
    EXPECT_EQ(offered(bar).split(u'|').size(), 5);
    others = {bar, app(u"Barista"_s, u"com.foo.barista"_s), app(u"Baz Studio"_s, u"com.foo.bar.baz"_s)};
    EXPECT_EQ(offered(bar), u"Application Support/com.foo.bar");

    // A second copy uses the same files.
    CleanupApplication copy = bar;
    copy.path = u"/Users/ada/Applications/Bar.app"_s;
    others.append(copy);
    EXPECT_EQ(offered(bar), u"Application Support/com.foo.bar");
    EXPECT_EQ(chosen(bar), QString());
    // What lies in the bundle itself goes with it.
    others.last().path = bar.path + u"/Contents/Applications/Bar.app"_s;
    EXPECT_EQ(offered(bar), u"Application Support/com.foo.bar");
}

TEST_F(AppRelatedFilesScannerTest, NamesAloneChooseNothing) {
    for (const QString& name : {u"chrome"_s, u"Chrome"_s, u"Pages"_s, u"My Pages of 2020"_s,
                                u"Google"_s, u"Gru\u0308n"_s /* decomposed */, u"Gr\u00FCn"_s}) {
        folders(u"Application Support/Photos/"_s + name);
        folders(u"Caches/"_s + name);
    }
    for (const QString& name : {u"Google Chrome"_s, u"Pages"_s, u"PAGES"_s, u"Gr\u00FCn"_s}) {
        EXPECT_NE(offered(app(name, u"com.example.thing"_s)), QString());
        EXPECT_EQ(chosen(app(name, u"com.example.thing"_s)), QString());
    }
    EXPECT_FALSE(offered(app(u"Google Chrome"_s)).split(u'|').contains(u"Caches/Google"));
    EXPECT_EQ(offered(app(u"Google"_s)), QString());
}

TEST_F(AppRelatedFilesScannerTest, AVendorsFolderBelongsToNoneOfItsProducts) {
    folders(u"Application Support/Acme/Acme Notes|Application Support/Acme/Acme Draw|"
            "Application Support/Notability/acme notes"_s);
    const CleanupApplication notes = app(u"Acme Notes"_s, u"com.acme.notes"_s);
    others = {notes, app(u"Acme Draw"_s, u"com.acme.draw"_s),
              app(u"Notability"_s, u"com.ginger.labs"_s)};
    EXPECT_EQ(offered(notes), u"Application Support/Acme/Acme Notes");
}

TEST_F(AppRelatedFilesScannerTest, AFolderInWhichAnotherApplicationKeepsFilesIsNotChosen) {
    folders(u"Application Support/com.acme.suite/Products/Mac/All/User/2024/com.acme.suite.draw|"
            "Application Support/com.acme.suite/com.acme.suite.cache"_s);
    const CleanupApplication suite = app(u"Zed"_s, u"com.acme.suite"_s);
    EXPECT_EQ(chosen(suite), u"Application Support/com.acme.suite");
    others = {suite, app(u"Draw"_s, u"com.acme.suite.draw"_s)};
    EXPECT_EQ(chosen(suite), QString());
    EXPECT_TRUE(
        scan(suite).files.first().reason.endsWith(u"It contains files of another application."));
    // Who chooses everything is told, too.
    folders(u"Application Support/Zed/com.acme.suite.draw"_s);
    for (const RelatedFile& file : scan(suite).files)
        EXPECT_TRUE(file.reason.endsWith(u"It contains files of another application."));

    // Whoever says to be a whole vendor is believed in nothing.
    folders(u"Caches/com.microsoft"_s);
    EXPECT_EQ(chosen(app(u"Zed"_s, u"com.microsoft"_s)), QString());
}

TEST_F(AppRelatedFilesScannerTest, SharedGroupContainersAreOfferedOnly) {
    const QString group = u"Group Containers/TEAM123456.com.acme.notes"_s;
    folders(group);
    const auto notes = [](std::optional<QString> team) {
        return app(u"Notes Pro"_s, u"com.acme.notes"_s, std::move(team));
    };
    EXPECT_EQ(chosen(notes(u"TEAM123456"_s)), group);
    EXPECT_EQ(chosen(notes(std::nullopt)), QString());
    others = {app(u"Draw"_s, u"com.acme.draw"_s, u"OTHER12345"_s)};
    EXPECT_EQ(chosen(notes(u"TEAM123456"_s)), group);
    for (const auto& team : {std::optional(u"TEAM123456"_s), std::optional<QString>()}) {
        others = {app(u"Draw"_s, u"com.acme.draw"_s, team)};
        EXPECT_EQ(chosen(notes(u"TEAM123456"_s)), QString());
        EXPECT_EQ(offered(notes(u"TEAM123456"_s)), group);
    }
}

TEST_F(AppRelatedFilesScannerTest, DoubtfulIdentifiersChooseNoMoreThanTheirVeryName) {
    folders(u"Caches/com.acme|Caches/com.acme.draw|Caches/com.acme.notes|"
            "Caches/com.acme.notes.beta|Caches/com.apple.finder|"
            "Group Containers/243LU875E5.groups.com.apple.finder"_s);
    EXPECT_EQ(chosen(app(u"Zed"_s, u"com.acme"_s)), u"Caches/com.acme");
    EXPECT_EQ(chosen(app(u"Zed"_s, u"com.acme.notes"_s)), u"Caches/com.acme.notes");
    EXPECT_EQ(chosen(app(u"Zed"_s, u"com.apple.finder"_s)), QString());
    EXPECT_EQ(offered(app(u"Finder"_s, u"org.other.finder"_s)), QString());
    for (const QString& bad : {u""_s, u"com"_s, u"/"_s, u"../../com.acme"_s, u"com.acme/../.."_s})
        EXPECT_EQ(offered(app(u"Zed"_s, bad)), QString()) << bad.toStdString();
}

TEST_F(AppRelatedFilesScannerTest, GoesFourLevelsDeepIntoNeitherPackagesNorLinks) {
    const QString id = u"com.acme.notes"_s;
    folders(u"Application Support/A/B/C/"_s + id);
    folders(u"Application Support/A/B/C/D/"_s + id);
    folders(u"Application Support/Tool.app/"_s + id);
    folders(u"Application Support/Zebra/"_s + id + u"/deeper/"_s + id);
    folders(u"Containers/Other/"_s + id);
    folders(u"Preferences/ByHost/"_s + id + u".ABC"_s);
    folders(u"Preferences/Sub/"_s + id);
    mac.write(u"/Users/ada/Elsewhere/"_s + id, "x");
    mac.link(library + u"Application Support/Linked"_s, u"/Users/ada/Elsewhere"_s);
    mac.link(library + u"Caches/"_s + id, u"/Users/ada/Elsewhere"_s);
    mac.link(library + u"WebKit"_s, u"/Users/ada/Elsewhere"_s);
    EXPECT_EQ(offered(app(u"Zed"_s, id)), u"Application Support/A/B/C/com.acme.notes|"
                                          "Application Support/Zebra/com.acme.notes|"
                                          "Preferences/ByHost/com.acme.notes.ABC"_s);
}

TEST_F(AppRelatedFilesScannerTest, AHomeLinkedElsewhereIsSearchedALinkedLibraryIsNot) {
    mac.write(u"/Volumes/Big/Library/Caches/com.acme.notes"_s, "x");
    mac.link(u"/Users/bob"_s, u"/Volumes/Big"_s);
    mac.link(u"/Users/eve/Library"_s, u"/Volumes/Big/Library"_s);
    const CleanupApplication notes = app(u"Zed"_s, u"com.acme.notes"_s);
    const auto found = [&](const QString& home) {
        return AppRelatedFilesScanner(mac.files, home).scan(notes, {}, {})->files.size();
    };
    EXPECT_EQ(found(u"/Users/bob"_s), 1);
    EXPECT_EQ(found(u"/Users/eve"_s), 0);
}

TEST_F(AppRelatedFilesScannerTest, TellsOfRightsAndSizesAndStops) {
    mac.write(u"/Library/Preferences/com.acme.notes.plist"_s, "12345");
    mac.write(library + u"Caches/com.acme.notes/a/b"_s, "123");
    mac.write(library + u"Caches/com.acme.notes/c"_s, "1234");
    mac.link(library + u"Caches/com.acme.notes/d"_s, u"/Library/Preferences/com.acme.notes.plist"_s);
    const CleanupApplication notes = app(u"Zed"_s, u"com.acme.notes"_s);
    const AppRelatedFilesScanner scanner(mac.files, u"/Users/ada"_s,
                                         [](const FileSystem&, const QString&) { return false; });
    const auto found = scanner.scan(notes, {}, {});
    ASSERT_EQ(found->files.size(), 2);
    EXPECT_FALSE(found->files[0].needsAdministrator); // the user's own is Finder's to ask for
    EXPECT_TRUE(found->files[1].needsAdministrator);

    const auto size = [&] {
        return AppRelatedFilesScanner::measure(mac.files, found->files[0].path, {});
    };
    const MeasuredSize before = size();
    EXPECT_TRUE(before.isComplete);
    // A sparse file takes no space of its own, a second name none at all.
    const QString folderPath = mac.hostPath(found->files[0].path);
    QFile sparse(folderPath + u"/sparse"_s);
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(1 << 30));
    mac.write(found->files[0].path + u"/full"_s, QByteArray(64 << 10, 'x'));
    ASSERT_EQ(::link((folderPath + u"/full"_s).toUtf8().constData(),
                     (folderPath + u"/again"_s).toUtf8().constData()),
              0);
    EXPECT_EQ(size().bytes - before.bytes, 64u << 10);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(scanner.scan(notes, {}, stop.get_token()));
    EXPECT_FALSE(
        AppRelatedFilesScanner::measure(mac.files, found->files[0].path, stop.get_token()).isComplete);
}

TEST_F(AppRelatedFilesScannerTest, AsksForItsOwnTeamOnceAndOnlyWhereAGroupIsAtStake) {
    folders(u"Caches/com.acme.notes"_s);
    QStringList asked;
    const AppRelatedFilesScanner asking(
        mac.files, u"/Users/ada"_s, {},
        [&](const CleanupApplication& application, std::stop_token) -> std::optional<QString> {
            asked.append(application.names.first());
            return u"TEAM"_s;
        });
    const auto notes = app(u"Notes"_s, u"com.acme.notes"_s, std::nullopt);
    others = {notes, app(u"Other"_s, u"org.other.thing"_s, std::nullopt)};
    (void)asking.scan(notes, others, {});
    EXPECT_TRUE(asked.isEmpty());
    folders(u"Group Containers/TEAM.com.acme.notes|Group Containers/group.com.acme.notes"_s);
    const auto isContested = [&] { return asking.scan(notes, others, {})->files.last().isContested; };
    EXPECT_FALSE(isContested());
    EXPECT_EQ(asked, QStringList{u"Notes"_s});
    others.append(app(u"Draw"_s, u"com.acme.draw"_s, std::nullopt));
    EXPECT_TRUE(isContested());
    others.last() = app(u"Sketch"_s, u"org.sketch.app"_s, u"TEAM"_s);
    EXPECT_TRUE(isContested());
}

TEST_F(AppRelatedFilesScannerTest, OfTwoNamesTheNearerOneCountsAndATieIsShownToBoth) {
    const CleanupApplication bench = app(u"Photo Bench"_s, u"com.acme.bench"_s);
    const CleanupApplication pro = app(u"Photo Bench Pro"_s, u"com.acme.benchpro"_s);
    const CleanupApplication cord = app(u"Cord"_s, u"com.cord.Cord"_s);
    const CleanupApplication canary = app(u"Cord Canary"_s, u"com.cord.CordCanary"_s);
    others = {bench, pro, cord, canary, app(u"Acme Desktop"_s, u"com.other.desktop"_s)};
    for (const QString& name :
         {u"Photo Bench"_s, u"Photo_Bench"_s, u"Photo Bench Pro"_s, u"Photo-Bench-Pro"_s,
          u"Photobooth"_s, u"cord"_s, u"cordcanary"_s, u"com.cord.Cord.desktop.ShipIt"_s})
        folders(u"Application Support/"_s + name);
    const auto names = [&](const CleanupApplication& application) {
        return offered(application).remove(u"Application Support/"_s);
    };
    EXPECT_EQ(names(bench), u"Photo Bench|Photo_Bench|Photobooth");
    EXPECT_EQ(names(pro), u"Photo Bench Pro|Photo-Bench-Pro|Photobooth");
    EXPECT_TRUE(scan(bench).files.last().reason.endsWith(u"May also belong to Photo Bench Pro."_s));
    EXPECT_EQ(names(cord), u"com.cord.Cord.desktop.ShipIt|cord");
    EXPECT_EQ(names(canary), u"cordcanary");
    // Words of others take no tick from what an identifier ties.
    EXPECT_EQ(chosen(cord), u"Application Support/com.cord.Cord.desktop.ShipIt");
}

TEST_F(AppRelatedFilesScannerTest, TheSystemsOwnFoldersAreNobodysLeftovers) {
    for (const QString& name : {u"MobileSync/Backup"_s, u"Dock"_s, u"AddressBook"_s})
        folders(u"Application Support/"_s + name);
    for (const QString& name :
         {u"Backup"_s, u"Dock Manager"_s, u"Address Book Manager"_s, u"AddressBook"_s, u"MobileSync"_s})
        EXPECT_EQ(offered(app(name, u"com.acme.thing"_s)), QString()) << name.toStdString();
    // Nor is another product of the vendor's.
    folders(u"Application Support/LogiOptionsPlus|Application Support/Epic"_s);
    EXPECT_EQ(offered(app(u"Logitech Options"_s)), QString());
    EXPECT_EQ(offered(app(u"Epic Games Launcher"_s)), QString());
}

TEST_F(AppRelatedFilesScannerTest, WhatIsTiedByMoreThanItsName) {
    const auto list = [&](const QString& path, const QByteArray& body) {
        mac.write(path, "<plist><dict>" + body + "</dict></plist>");
    };
    const QString daemon = u"/Library/LaunchDaemons/net.vendor.d.plist"_s;
    list(daemon, "<key>ProgramArguments</key><array><string>/Applications/Zed.app/Contents/d</string>"
                 "</array>");
    list(u"/Library/LaunchDaemons/net.vendor.e.plist"_s,
         "<key>Program</key><string>/Applications/Zed2.app/Contents/d</string>");
    const QString container = library + u"Containers/0F2C3C4E-5A0B-4C51-9F4E-6D1A2B3C4D5E"_s;
    list(container + u"/.com.apple.containermanagerd.metadata.plist"_s,
         "<key>MCMMetadataIdentifier</key><string>com.acme.zed</string>");
    folders(u"Application Scripts/com.acme.zed|Application Scripts/Zed|Caches/com.acme.helper"_s);
    const CleanupApplication zed = app(u"Zed"_s, u"com.acme.zed"_s);
    const QString tied =
        container.sliced(library.size()) + u'|' + daemon + u"|Application Scripts/com.acme.zed"_s;
    EXPECT_EQ(chosen(zed), tied);
    EXPECT_EQ(offered(zed), u"Caches/com.acme.helper|"_s + tied);
    others = {app(u"Else"_s, u"com.acme.helper"_s)};
    EXPECT_EQ(offered(zed), tied);
    // An identifier of an odd form stands for its very self alone.
    mac.write(library + u"Preferences/com.foo.My App.plist"_s, "x");
    mac.write(library + u"Preferences/Sketchy.plist"_s, "x");
    EXPECT_EQ(chosen(app(u"Q"_s, u"com.foo.My App"_s)), u"Preferences/com.foo.My App.plist");
    EXPECT_EQ(chosen(app(u"Q"_s, u"Sketchy"_s)), QString());
    EXPECT_EQ(offered(app(u"Q"_s, u"Sketchy"_s)), u"Preferences/Sketchy.plist");
}

TEST(ProtectionClassTest, IsOfThePlaceThatLinksLeadTo) {
    const test::TestMachine mac;
    mac.write(u"/System/Library/x"_s, "");
    mac.write(u"/Library/Apple/y"_s, "");
    mac.write(u"/Library/Applesauce/y"_s, "");
    mac.link(u"/Library/Caches/z"_s, u"/System/Library/x"_s);
    const std::pair<QString, ProtectionClass> cases[]{
        {u"/System"_s, ProtectionClass::systemProtected},
        {u"/SYSTEM/library/q"_s, ProtectionClass::systemProtected},
        {u"/Library/Apple/y"_s, ProtectionClass::systemProtected},
        {u"/Library/Caches/../Apple/y"_s, ProtectionClass::systemProtected},
        {u"/Library/Caches/z"_s, ProtectionClass::systemProtected},
        {u"/Library/Applesauce/y"_s, ProtectionClass::ordinary},
        {u"/Systematic"_s, ProtectionClass::ordinary},
        {u"/Applications/A.app"_s, ProtectionClass::applications},
        {u"/Applications"_s, ProtectionClass::applications},
        {u"/Applications.old/A.app"_s, ProtectionClass::ordinary},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(protectionClass(mac.files, path), expected) << path.toStdString();
}

// ---- of names

using Match = std::optional<RelatedFileMatch>;

Match gradeOf(const CleanupApplication& application, const QByteArray& name) {
    const MatchingName matching(name);
    const auto grade = ApplicationNames(application).grade(matching);
    return grade ? Match(grade->match) : std::nullopt;
}

CleanupApplication named(const QString& name, std::optional<QString> identifier = std::nullopt) {
    return {.names = {name}, .bundleIdentifier = std::move(identifier)};
}

TEST(RelatedFileNames, GradesByIdentifierThenByName) {
    const CleanupApplication notes = named(u"Acme Notes"_s, u"com.Acme.Notes"_s);
    const std::pair<QByteArray, Match> cases[]{
        {"com.acme.notes.plist", strong},
        {"COM.ACME.NOTES.savedState", strong},
        {"com.acme.Notes.binarycookies", strong},
        {"com.acme.notes.plist.plist", strongish}, // one suffix is taken off
        {"com.acme.notes.ShipIt", strongish},
        {"ABCDE12345.com.acme.notes", strongish},
        {"group.com.acme.notes", strongish},
        {"com.acme.notesplus", risky}, // by "notes", not by the identifier
        {"xcom.acme.notes", risky},
        {"acme notes", medium},
        {"AcmeNotes", medium},
        {"Acme-Notes", medium},
        {"acme_notes.plist", medium},
        {"Notes", medium},
        {"my notes of 2024", risky},
        {"com.acme", risky},
        {"com.globex.calendar", std::nullopt},
        {".plist", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [name, match] : cases)
        EXPECT_EQ(gradeOf(notes, name), match) << name.toStdString();
}

TEST(RelatedFileNames, NeitherVendorsNorPartsStandForAnApplication) {
    EXPECT_EQ(gradeOf(named(u"Google Chrome"_s), "Google"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"Google Chrome"_s), "Chrome"), medium);
    EXPECT_EQ(gradeOf(named(u"Steam"_s), "Steam"), std::nullopt);
    for (const char* name : {"Epic Games", "epic-games", "EpicGames"})
        EXPECT_EQ(gradeOf(named(u"Epic Games"_s), name), std::nullopt) << name;
    EXPECT_EQ(gradeOf(named(u"Core Data Helper"_s), "Data"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"Update.app"_s), "Update"), std::nullopt);
}

TEST(RelatedFileNames, ShortNamesAndNumbersCountOnlyAsAWhole) {
    EXPECT_EQ(gradeOf(named(u"Ice"_s), "ice"), medium);
    EXPECT_EQ(gradeOf(named(u"Ice"_s), "service"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"2048"_s), "2048"), medium);
    EXPECT_EQ(gradeOf(named(u"2048"_s), "backup-2048"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u"Go To It"_s), "Go"), std::nullopt); // words need four letters
    EXPECT_EQ(gradeOf(named(u"…"_s), "…"), std::nullopt);
    EXPECT_EQ(gradeOf(named(u".."_s), ".."), std::nullopt);
    EXPECT_EQ(gradeOf(named(QString()), "anything"), std::nullopt);
}

TEST(RelatedFileNames, ComposedAndDecomposedNamesAreTheSame) {
    const QString composed = u"Café Über"_s.normalized(QString::NormalizationForm_C);
    const QString decomposed = composed.normalized(QString::NormalizationForm_D);
    for (const QString& name : {composed, decomposed, composed.toUpper(), decomposed.toUpper()}) {
        EXPECT_EQ(gradeOf(named(name), composed.toUtf8()), medium);
        EXPECT_EQ(gradeOf(named(name), decomposed.toUtf8()), medium);
        EXPECT_EQ(gradeOf(named(name), "x " + decomposed.toUpper().toUtf8()), risky);
    }
    EXPECT_EQ(gradeOf(named(u"Café"_s), "Caf\xE9"), std::nullopt); // no UTF-8
}

TEST(RelatedFileNames, AnIdentifierThatCouldBeAnybodysIsNone) {
    for (const QString& bad : {u""_s, u"notes"_s, u"com/acme/notes"_s, u"../com.acme"_s, u"com..acme"_s,
                               u".com.acme"_s, u"com.acme."_s, u"com.acme notes"_s, u"com.ácme"_s})
        EXPECT_TRUE(ApplicationNames(named(u"X"_s, bad)).identifier().isEmpty()) << bad.toStdString();
    EXPECT_FALSE(ApplicationNames(named(u"X"_s, u"com.acme"_s)).ownsExtensions());
    EXPECT_FALSE(ApplicationNames(named(u"X"_s, u"com.apple.finder"_s)).ownsExtensions());
    EXPECT_TRUE(ApplicationNames(named(u"X"_s, u"com.acme.x"_s)).ownsExtensions());
    // Of an unusable identifier nothing but the name is left.
    EXPECT_EQ(gradeOf(named(u"Quill"_s, u"com"_s), "com.acme.x"), std::nullopt);
}

} // namespace
} // namespace tessellar
