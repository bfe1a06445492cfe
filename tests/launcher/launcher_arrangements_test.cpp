#include "launcher/place_memory.h"
#include "launcher/unplaced_items.h"
#include "small_launcher.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

class LauncherArrangementsTest : public SmallLauncher {
protected:
    LauncherArrangementsTest() {
        installAll(u"Ash Beech Oak"_s);
        store(drawn(u"[Trees: Oak Ash] Beech"));
        start();
    }
    LauncherArrangements& arrangements() { return launcher->arrangements(); }
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
    QString undo(LauncherWindowMode of = fullScreen) {
        return outcome([&](auto done) { arrangements().undo(of, done); });
    }
    QString redo() {
        return outcome([&](auto done) { arrangements().redo(mode(), done); });
    }
    QString rename(const QUuid& id, const QString& name) {
        return outcome([&](auto done) { arrangements().rename(mode(), id, name, done); });
    }
    QString replace(const QUuid& id) {
        return outcome([&](auto done) { arrangements().replace(mode(), id, done); });
    }
    QString remove(const QUuid& id) {
        return outcome([&](auto done) { arrangements().remove(mode(), id, done); });
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
    EXPECT_EQ(save(u"\n "_s), u"emptyName");
    EXPECT_EQ(save(QString(300, u'x')), u"nameTooLong");
    EXPECT_EQ(save(u" At\nhome "_s), u"At home");
    const QUuid id = last.id;
    EXPECT_EQ(last.folderCount, 1);
    const QByteArray first = mac.read(fileOf(id));

    EXPECT_EQ(rename(id, u"\t"_s), u"emptyName");
    EXPECT_EQ(rename(id, u"Ours"_s), u"Ours");
    EXPECT_EQ(listed(), u"Ours");
    ASSERT_TRUE(editor().ungroupFolder(mode(), idOf(u"Trees"_s)));
    time.advance(1h);
    EXPECT_EQ(replace(id), u"Ours");
    EXPECT_EQ(sketchOf(id), u"Oak Ash Beech");
    EXPECT_EQ(last.createdAt, time.now());
    EXPECT_EQ(remove(id), u"Ours");
    EXPECT_EQ(listed(), u"");

    EXPECT_EQ(arrangements().undoName(mode()), u"Delete “Ours”");
    EXPECT_EQ(undo(), u"Ours");
    EXPECT_EQ(undo(), u"Ours"); // before it was replaced
    EXPECT_EQ(sketchOf(id), u"[Trees: Oak Ash] Beech");
    EXPECT_EQ(undo(), u"At home");
    EXPECT_EQ(mac.read(fileOf(id)), first) << "to the byte";
    EXPECT_EQ(undo(), u"At home");
    EXPECT_FALSE(mac.exists(fileOf(id)));
    EXPECT_EQ(undo(), u"nothingToUndo");
    for (int i = 0; i < 4; ++i)
        redo();
    EXPECT_EQ(redo(), u"nothingToRedo");
    EXPECT_EQ(listed(), u"");
    EXPECT_EQ(undo(), u"Ours");
    EXPECT_EQ(save(u"Other"_s), u"Other");
    EXPECT_EQ(redo(), u"nothingToRedo") << "another change was made";
    EXPECT_EQ(undo(windowed), u"nothingToUndo") << "that was done in the other mode";
    EXPECT_EQ(sketched(), u"Oak Ash Beech") << "the layout never changed by any of this";
}

TEST_F(LauncherArrangementsTest, AStepThatTheDiskRefusesIsNotLost) {
    save(u"Mine"_s);
    EXPECT_EQ(remove(last.id), u"Mine");
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
    EXPECT_EQ(replace(id), u"damaged");
    EXPECT_EQ(rename(id, u"x"_s), u"damaged");
    EXPECT_EQ(mac.read(fileOf(id)), "another's");
    // Only the user's own word removes it, and even that can be taken back.
    EXPECT_EQ(remove(id), QString());
    EXPECT_FALSE(mac.exists(fileOf(id)));
    undo();
    EXPECT_EQ(mac.read(fileOf(id)), "another's");
    EXPECT_EQ(remove(idOf(u"none"_s)), u"notFound");
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
    EXPECT_EQ(take(windowed), u"Mine") << "also into the other mode";
    undo(windowed);
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
    ASSERT_TRUE(editor().hideApps(mode(), {idOf(u"Beech"_s), idOf(u"Ash"_s)}));
    ASSERT_TRUE(editor().addSmartFolder(mode(), SmartFolderTemplate::games));
    const QUuid games = definitions().first().id;
    ASSERT_TRUE(editor().removeSmartFolderTile(mode(), games));
    uninstall(u"Oak"_s);
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
