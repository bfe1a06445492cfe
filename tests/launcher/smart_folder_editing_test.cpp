#include "launcher/smart_folder_editing.h"

#include "small_launcher.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

class SmartFolderEditingTest : public SmallLauncher {
protected:
    SmartFolderEditingTest() {
        installAll(u"Ash Beech Aspen"_s);
        start();
    }
    SmartFolderEditing& editing() { return launcher->smartFolderEditing(); }
    void change(const std::function<void(SmartFolderDraft&)>& with) {
        editing().change(with);
        mac.settle();
    }
    /// The names that the draft would show.
    QString preview() {
        if (!editing().preview())
            return u"none"_s;
        QStringList names;
        for (const auto& facts : editing().preview()->matches)
            names += facts->entry.name;
        return names.join(u' ');
    }
    /// "A folder": applications whose names begin with A.
    void makeFolder() {
        editing().openNew(fullScreen);
        change([](SmartFolderDraft& draft) {
            draft.setName(u"A folder"_s);
            draft.choose({SmartFolderMenu::Kind::predicate, 0}, u"beginsWith"_s);
            draft.type(0, 0, u"a"_s);
        });
    }
};

TEST_F(SmartFolderEditingTest, ANewFolderIsPreviewedAndSavedAsOneStep) {
    makeFolder();
    EXPECT_EQ(preview(), u"Ash Aspen");
    change([](SmartFolderDraft& draft) { draft.setName(u" "_s); });
    EXPECT_EQ(preview(), u"Ash Aspen") << "rules can be tried before there is a name";
    EXPECT_EQ(editing().issue(), u"Enter a name.");
    EXPECT_FALSE(editing().save());
    EXPECT_TRUE(definitions().isEmpty());
    change([](SmartFolderDraft& draft) { draft.setName(u" A folder"_s); });
    install(u"Alder"_s);
    rescan();
    EXPECT_EQ(preview(), u"Alder Ash Aspen") << "it follows what it depends on";

    // What could not be written is there again as it was typed.
    const QString registry = data + u"/computed-folders.json"_s;
    block(registry);
    ASSERT_TRUE(editing().save());
    mac.settle();
    EXPECT_EQ(alerts(&LauncherError::title), QStringList{u"Could not save Smart Folders"_s});
    EXPECT_TRUE(definitions().isEmpty());
    ASSERT_TRUE(editing().draft());
    EXPECT_TRUE(editing().isNew() && editing().isChanged());
    EXPECT_EQ(preview(), u"Alder Ash Aspen");
    mac.remove(registry);

    const auto saved = editing().save();
    ASSERT_TRUE(saved) << saved.error().message.toStdString();
    EXPECT_FALSE(editing().draft());
    ASSERT_EQ(definitions().size(), 1);
    EXPECT_EQ(definitions().first().name, u" A folder") << "as typed";
    EXPECT_EQ(definitions().first().modifiedAt, time.now());
    EXPECT_EQ(steps().last(), u"Add Smart Folder");
    EXPECT_EQ(steps().size(), 1);
    EXPECT_EQ(undo(), u"done");
    EXPECT_TRUE(definitions().isEmpty());
    EXPECT_EQ(sketched(), u"Ash Aspen Beech Alder");
}

TEST_F(SmartFolderEditingTest, AFolderIsChangedOrLeftAsItIs) {
    makeFolder();
    ASSERT_TRUE(editing().save());
    mac.settle();
    const SmartFolderDefinition before = definitions().first();
    time.advance(1h);

    editing().open(fullScreen, before);
    mac.settle();
    EXPECT_EQ(preview(), u"Ash Aspen");
    EXPECT_FALSE(editing().isChanged());
    change([](SmartFolderDraft& draft) { draft.type(0, 0, u"b"_s); });
    EXPECT_TRUE(editing().isChanged());
    EXPECT_EQ(preview(), u"Beech");
    editing().close();
    mac.settle();
    EXPECT_EQ(definitions(), QList{before});

    editing().open(fullScreen, before);
    ASSERT_TRUE(editing().save());
    EXPECT_EQ(definitions(), QList{before}) << "nothing was changed, not even its date";
    EXPECT_EQ(steps().size(), 1);

    editing().open(fullScreen, before);
    change([](SmartFolderDraft& draft) { draft.type(0, 0, u"b"_s); });
    ASSERT_TRUE(editing().save());
    mac.settle();
    EXPECT_EQ(launcher->smartFolders().evaluations(fullScreen).value(before.id).appKeys(),
              QStringList{u"org.example.beech"_s});
    EXPECT_EQ(definitions().first().modifiedAt, time.now());
    EXPECT_EQ(steps().last(), u"Edit Smart Folder");
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(definitions(), QList{before});
}

TEST_F(SmartFolderEditingTest, WhatSomebodyElseChangedMeanwhileIsNotLostUnasked) {
    makeFolder();
    ASSERT_TRUE(editing().save());
    const SmartFolderDefinition before = definitions().first();
    editing().open(fullScreen, before);
    change([](SmartFolderDraft& draft) { draft.setHasLimit(true); });
    SmartFolderDefinition theirs = before;
    theirs.name = u"Theirs"_s;
    ASSERT_TRUE(editor().changeSmartFolder(fullScreen, theirs));
    EXPECT_EQ(editing().save().error().code, u"changedElsewhere");
    EXPECT_EQ(definitions().first().name, u"Theirs");
    ASSERT_TRUE(editing().save());
    EXPECT_EQ(definitions().first().name, u"A folder");
    EXPECT_EQ(definitions().first().resultLimit, 25);

    // What was typed and cannot be read would be lost, too.
    editing().open(fullScreen, definitions().first());
    EXPECT_FALSE(editing().isChanged());
    change([](SmartFolderDraft& draft) { draft.typeLimit(u"x"_s); });
    EXPECT_TRUE(editing().isChanged());
}

TEST_F(SmartFolderEditingTest, WhatIsNotCompleteShowsNothingAndStillSuggests) {
    mac.tool(u"/usr/bin/codesign"_s,
             exited(0, {}, "Authority=Developer ID Application: Grove (ABCDE12345)\n"));
    editing().openNew(fullScreen);
    EXPECT_EQ(preview(), u"none");
    change([](SmartFolderDraft& draft) {
        draft.choose({SmartFolderMenu::Kind::field, 0}, u"developer"_s);
    });
    EXPECT_EQ(preview(), u"none");
    EXPECT_EQ(editing().suggestions(0, 0), QStringList{u"Grove"_s});
    change([](SmartFolderDraft& draft) { draft.type(0, 0, u"grove"_s); });
    EXPECT_EQ(preview(), u"Ash Aspen Beech");
    change([](SmartFolderDraft& draft) {
        draft.choose({SmartFolderMenu::Kind::field, 0}, u"lastUsedDate"_s);
    });
    EXPECT_EQ(preview(), u"");
    EXPECT_THAT(editing().notice().toStdString(), testing::HasSubstr("unavailable"));
    // What is worked out for a draft that is gone reaches nobody.
    editing().change([](SmartFolderDraft& draft) { draft.removeRule(0); });
    editing().close();
    mac.settle();
    EXPECT_EQ(preview(), u"none");
    EXPECT_EQ(editing().issue(), QString());
}

} // namespace
} // namespace tessellar::test
