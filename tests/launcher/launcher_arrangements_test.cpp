#include "launcher/launcher_editor.h"
#include "launcher/place_memory.h"
#include "launcher/smart_folder_library.h"
#include "launcher/unplaced_items.h"
#include "small_launcher.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

class LauncherArrangementsTest : public SmallLauncher {
protected:
    LauncherArrangementsTest() {
        for (const QString& name : {u"Ash"_s, u"Beech"_s, u"Oak"_s})
            install(name);
        store({{folder(u"Trees"_s, {{app(u"Oak"_s), app(u"Ash"_s)}}), app(u"Beech"_s)}});
        start();
    }
    LauncherArrangements& arrangements() { return launcher->arrangements(); }
    LauncherWindowMode mode() { return launcher->shown().mode(); }
    /// What comes of a request, as the arrangement's name or the refusal's code.
    template <typename Request>
    QString outcome(Request request) {
        QString text;
        request([&](const LauncherArrangements::Saved& saved) {
            text = saved ? saved->name : saved.error().code;
            last = saved.value_or(ArrangementSummary());
        });
        mac.settle();
        return text;
    }
    QString save(const QString& name) {
        return outcome([&](auto done) { arrangements().save(mode(), name, done); });
    }
    QString undo() {
        return outcome([&](auto done) { arrangements().undo(mode(), done); });
    }
    QString redo() {
        return outcome([&](auto done) { arrangements().redo(mode(), done); });
    }
    QString listed() {
        QStringList names;
        arrangements().list(mode(), [&](const QList<ListedArrangement>& all) {
            for (const ListedArrangement& arrangement : all)
                names += arrangement.summary.name;
        });
        mac.settle();
        return names.join(u' ');
    }
    QString fileOf(const QUuid& id) const {
        return data + u"/Arrangements/"_s + toText(id) + u".json"_s;
    }
    QString sketchOf(const QUuid& id) {
        const auto saved = json::decodeDocument<Arrangement>(mac.read(fileOf(id)));
        return saved ? sketch(saved->document.pages) : u"(none)"_s;
    }

    ArrangementSummary last;
};

TEST_F(LauncherArrangementsTest, EachChangeIsMadeAndTakenBackFileByFile) {
    EXPECT_EQ(save(u" "_s), u"emptyName");
    EXPECT_EQ(save(u" Mine "_s), u"Mine");
    const QUuid id = last.id;
    EXPECT_EQ(last.folderCount, 1);
    const QByteArray first = mac.read(fileOf(id));

    EXPECT_EQ(outcome([&](auto done) { arrangements().rename(mode(), id, u"\t"_s, done); }),
              u"emptyName");
    EXPECT_EQ(outcome([&](auto done) { arrangements().rename(mode(), id, u"Ours"_s, done); }), u"Ours");
    EXPECT_EQ(listed(), u"Ours");
    ASSERT_TRUE(launcher->editor().ungroupFolder(mode(), idOf(u"Trees"_s)));
    time.advance(1h);
    EXPECT_EQ(outcome([&](auto done) { arrangements().replace(mode(), id, done); }), u"Ours");
    EXPECT_EQ(sketchOf(id), u"Oak Ash Beech");
    EXPECT_EQ(last.createdAt, time.now());
    EXPECT_EQ(outcome([&](auto done) { arrangements().remove(mode(), id, done); }), u"Ours");
    EXPECT_EQ(listed(), u"");

    EXPECT_EQ(arrangements().undoName(mode()), u"Delete “Ours”");
    EXPECT_EQ(undo(), u"Ours");
    EXPECT_EQ(undo(), u"Ours"); // before it was replaced
    EXPECT_EQ(sketchOf(id), u"[Trees: Oak Ash] Beech");
    EXPECT_EQ(undo(), u"Mine");
    EXPECT_EQ(mac.read(fileOf(id)), first) << "to the byte";
    EXPECT_EQ(undo(), u"Mine");
    EXPECT_FALSE(mac.exists(fileOf(id)));
    EXPECT_EQ(undo(), u"nothingToUndo");
    for (int i = 0; i < 4; ++i)
        redo();
    EXPECT_EQ(redo(), u"nothingToRedo");
    EXPECT_EQ(listed(), u"");
    EXPECT_EQ(undo(), u"Ours");
    EXPECT_EQ(save(u"Other"_s), u"Other");
    EXPECT_EQ(redo(), u"nothingToRedo") << "another change was made";
    launcher->layouts().show(LauncherWindowMode::windowed);
    EXPECT_EQ(undo(), u"nothingToUndo") << "that was done in the other mode";
    launcher->layouts().show(LauncherWindowMode::fullScreen);
    EXPECT_EQ(sketched(), u"Oak Ash Beech") << "the layout never changed by any of this";
}

TEST_F(LauncherArrangementsTest, NamesAreKeptInOneLine) {
    EXPECT_EQ(save(u" At\nhome "_s), u"At home");
    EXPECT_EQ(save(u"\n"_s), u"emptyName");
    EXPECT_EQ(save(QString(300, u'x')), u"nameTooLong");
}

TEST_F(LauncherArrangementsTest, AStepThatTheDiskRefusesIsNotLost) {
    save(u"Mine"_s);
    EXPECT_EQ(outcome([&](auto done) { arrangements().remove(mode(), last.id, done); }), u"Mine");
    mac.files.refuseChanges({FileError::Code::noSpace, fileOf(last.id)});
    EXPECT_EQ(undo(), u"noSpace");
    EXPECT_EQ(arrangements().undoName(mode()), u"Delete “Mine”");
}

TEST_F(LauncherArrangementsTest, WhatAnotherChangedMeanwhileIsLeftAlone) {
    save(u"Mine"_s);
    const QUuid id = last.id;
    mac.write(fileOf(id), "another's");
    EXPECT_EQ(undo(), u"changedMeanwhile");
    EXPECT_EQ(mac.read(fileOf(id)), "another's");
    EXPECT_EQ(outcome([&](auto done) { arrangements().replace(mode(), id, done); }), u"damaged");
    EXPECT_EQ(outcome([&](auto done) { arrangements().rename(mode(), id, u"x"_s, done); }), u"damaged");
    EXPECT_EQ(mac.read(fileOf(id)), "another's");
    // Only the user's own word removes it, and even that can be taken back.
    EXPECT_EQ(outcome([&](auto done) { arrangements().remove(mode(), id, done); }), QString());
    EXPECT_FALSE(mac.exists(fileOf(id)));
    undo();
    EXPECT_EQ(mac.read(fileOf(id)), "another's");
    EXPECT_EQ(outcome([&](auto done) { arrangements().remove(mode(), idOf(u"none"_s), done); }),
              u"notFound");
}

TEST_F(LauncherArrangementsTest, ARenameKeepsWhatThisVersionDoesNotKnow) {
    save(u"Mine"_s);
    const QUuid id = last.id;
    auto object = json::parse(mac.read(fileOf(id)))->toObject();
    object.insert(u"later"_s, u"kept"_s);
    mac.write(fileOf(id), json::write(object));
    EXPECT_EQ(outcome([&](auto done) { arrangements().rename(mode(), id, u"Ours"_s, done); }), u"Ours");
    EXPECT_EQ(json::parse(mac.read(fileOf(id)))->toObject()[u"later"_s], u"kept"_s);
}

TEST_F(LauncherArrangementsTest, AnArrangementGoesElsewhereAndComesBackAsAnother) {
    save(u"Mine"_s);
    const QUuid id = last.id;
    const QString file = u"/Users/ada/Desktop/Mine.tessellar-arrangement"_s;
    mac.makeFolder(u"/Users/ada/Desktop"_s);
    const auto give = [&] {
        return outcome([&](auto done) { arrangements().exportTo(mode(), id, mac.files, file, done); });
    };
    EXPECT_EQ(give(), u"Mine");
    EXPECT_EQ(mac.read(file), mac.read(fileOf(id)));
    EXPECT_EQ(give(), u"alreadyExists") << "what stands there is somebody's";
    EXPECT_EQ(arrangements().undoName(mode()), u"Save “Mine”") << "nothing of ours has changed";

    const auto take = [&](LauncherWindowMode to) {
        return outcome([&](auto done) { arrangements().importFrom(to, mac.files, file, done); });
    };
    EXPECT_EQ(take(mode()), u"Mine");
    EXPECT_NE(last.id, id);
    EXPECT_EQ(listed(), u"Mine Mine");
    EXPECT_TRUE(restoreArrangement(*launcher, mac, last.id));
    EXPECT_EQ(take(LauncherWindowMode::windowed), u"Mine") << "also into the other mode";
    outcome([&](auto done) { arrangements().undo(LauncherWindowMode::windowed, done); });
    EXPECT_EQ(mac.names(data + u"/Arrangements-Windowed"_s), QStringList());

    auto renamed = json::parse(mac.read(fileOf(id)))->toObject();
    renamed.insert(u"name"_s, u"At\nhome"_s);
    mac.write(file, json::write(renamed));
    EXPECT_EQ(take(mode()), u"At home") << "in one line";
    EXPECT_EQ(json::parse(mac.read(fileOf(last.id)))->toObject()[u"id"_s], toText(last.id));
    EXPECT_EQ(undo(), u"At home");

    mac.write(file, "{}");
    EXPECT_EQ(take(mode()), u"damaged");
    mac.write(file, mac.read(fileOf(id)).replace("\"version\": 3", "\"version\": 9"));
    EXPECT_EQ(take(mode()), u"unsupportedWorkingDocumentVersion");
    mac.remove(file);
    EXPECT_EQ(take(mode()), u"notFound");
    EXPECT_EQ(listed(), u"Mine Mine");
}

// ---- what is not on the pages

TEST_F(LauncherArrangementsTest, WhatIsNotOnThePagesIsListedAndComesBack) {
    ASSERT_TRUE(launcher->editor().hideApps(mode(), {idOf(u"Beech"_s), idOf(u"Ash"_s)}));
    ASSERT_TRUE(launcher->editor().addSmartFolder(mode(), SmartFolderTemplate::games));
    const QUuid games = launcher->smartFolders().definitions().first().id;
    ASSERT_TRUE(launcher->editor().removeSmartFolderTile(mode(), games));
    mac.remove(u"/Applications/Oak.app"_s);
    rescan();
    const auto things = [&] {
        QStringList lines;
        for (const UnplacedItem& thing : unplacedItems(*launcher, mode(), mac.locale))
            lines += json::rawValue(thing.kind) + u' ' + thing.name;
        return lines;
    };
    const auto settleFirst = [&] {
        EXPECT_TRUE(placeOrForget(*launcher, mode(), unplacedItems(*launcher, mode(), mac.locale)[0]));
        mac.settle();
    };
    EXPECT_EQ(things(), (QStringList{u"hidden Ash"_s, u"hidden Beech"_s, u"smartFolder Games"_s,
                                     u"place Oak"_s}));
    EXPECT_TRUE(unplacedItems(*launcher, mode(), mac.locale)
                    .last()
                    .text.startsWith(u"Page 1, “Trees” · not seen since"));
    settleFirst();
    EXPECT_EQ(things().size(), 3);
    EXPECT_EQ(SmallLauncher::undo(), u"done") << "a step as any other";
    EXPECT_EQ(things().size(), 4);
    for (int i = 0; i < 4; ++i)
        settleFirst();
    EXPECT_EQ(things(), QStringList());
    EXPECT_TRUE(launcher->shown().item(games));
    EXPECT_TRUE(launcher->places()[mode()].isEmpty());
}

} // namespace
} // namespace tessellar::test
