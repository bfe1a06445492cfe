#include "launcher/actions.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"

#include "launcher/smart_folder_editing.h"
#include "sample/mac_builder.h"
#include "support/items.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gmock/gmock.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
using test::app;
using test::folder;
using test::idOf;
using test::sketch;
using testing::Contains;
using testing::IsSupersetOf;
using testing::Not;

const QString directory = u"/Users/ada/Library/Application Support/com.tessellar.app"_s;

class ActionsTest : public testing::Test {
protected:
    ActionsTest() {
        for (const QString& name : {u"Ash"_s, u"Beech"_s, u"Cedar"_s, u"Dogwood"_s})
            builder.addApplication({.name = name, .identifier = u"org.example."_s + name.toLower()});
        AppEntry alias = app(u"Cedar"_s);
        alias.id = idOf(u"alias"_s);
        alias.alias = AppAliasReference{u"org.example.cedar"_s};
        store({.pages = {{app(u"Ash"_s), folder(u"Trees"_s, {{app(u"Beech"_s), app(u"Cedar"_s)}})},
                         {app(u"Dogwood"_s), alias}},
               .hiddenKeys = {}});
        start();
    }
    void store(const LayoutDocument& layout) {
        mac.write(directory + u"/layout.json"_s, json::write(json::encode(layout)));
    }
    void start() {
        launcher = std::make_unique<LauncherViewModel>(mac.machine);
        launcher->startAndWait();
        mac.settle();
    }
    ActionTarget on(const QString& name) {
        const LaunchpadItem* item = launcher->shown().item(idOf(name));
        return {.item = item ? std::optional(*item) : std::nullopt};
    }
    /// What can be chosen, submenus and their entries among it.
    QStringList choices(const ActionTarget& target = {}) {
        QStringList ids;
        for (const MenuEntry& entry : actionMenu(*launcher, target))
            if (entry.isEnabled && !entry.isSeparator())
                ids += entry.id;
        return ids;
    }
    QString titleOf(const QString& id, const ActionTarget& target = {}) {
        for (const MenuEntry& entry : actionMenu(*launcher, target))
            if (entry.id == id)
                return entry.title;
        return {};
    }
    QStringList titlesIn(const QString& id, const ActionTarget& target = {}) {
        QStringList titles;
        for (const MenuEntry& entry : actionMenu(*launcher, target))
            if (entry.id == id)
                for (const MenuEntry& inner : entry.entries)
                    titles += inner.title;
        return titles;
    }
    ActionRequest perform(const QString& id, const ActionTarget& target = {}) {
        const auto request = performAction(*launcher, target, id);
        mac.settle();
        return request.value_or(ActionRequest::none);
    }
    bool press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        ActionTarget target;
        if (const auto& selected = launcher->shown().selectedItemID())
            target.item = *launcher->shown().item(*selected);
        const bool meant = performShortcut(*launcher, target, key, modifiers).has_value();
        mac.settle();
        return meant;
    }
    QString shown() { return sketch(launcher->shown().pages()); }

    test::TestMachine mac;
    sample::MacBuilder builder{mac.root.path()};
    std::unique_ptr<LauncherViewModel> launcher;
};

TEST_F(ActionsTest, EachKindOfTileHasItsEntries) {
    EXPECT_EQ(choices(on(u"Ash"_s)), (QStringList{u"open"_s, u"information"_s, u"reveal"_s, u"rename"_s,
                                                  u"changeIcon"_s, u"cut"_s, u"copy"_s, u"moveTo"_s,
                                                  u"createAlias"_s, u"hide"_s, u"moveToTrash"_s}));
    EXPECT_EQ(choices(on(u"Trees"_s)),
              (QStringList{u"open"_s, u"rename"_s, u"cut"_s, u"copy"_s, u"moveTo"_s, u"ungroup"_s}));
    EXPECT_THAT(choices(on(u"alias"_s)), Contains(u"removeAlias"_s));
    EXPECT_EQ(titleOf(u"removeAlias"_s, on(u"alias"_s)), u"Remove alias to Cedar");
    EXPECT_EQ(titlesIn(u"moveTo"_s, on(u"Ash"_s)),
              (QStringList{u"Page 2"_s, u"New Page"_s, QString(), u"Trees"_s}));
}

TEST_F(ActionsTest, EntriesDoWhatTheySay) {
    EXPECT_EQ(perform(u"rename"_s, on(u"Ash"_s)), ActionRequest::rename);
    ASSERT_TRUE(launcher->editor().rename(launcher->shown().mode(), idOf(u"Ash"_s), u"Esche"_s));
    perform(u"revertName"_s, on(u"Ash"_s));
    EXPECT_EQ(shown(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar");
    perform(u"moveTo:1"_s, on(u"Ash"_s));
    EXPECT_EQ(shown(), u"[Trees: Beech Cedar]|Dogwood ~Cedar Ash");
    perform(u"createAlias:"_s + toText(idOf(u"Trees"_s)) + u"/0"_s, on(u"Ash"_s));
    EXPECT_EQ(shown(), u"[Trees: Beech Cedar ~Ash]|Dogwood ~Cedar Ash");
    perform(u"removeAlias"_s, on(u"alias"_s));
    perform(u"ungroup"_s, on(u"Trees"_s));
    EXPECT_EQ(shown(), u"Beech Cedar ~Ash|Dogwood Ash");
    perform(u"cut"_s, on(u"Beech"_s));
    perform(u"paste"_s, on(u"Dogwood"_s));
    EXPECT_EQ(shown(), u"Cedar ~Ash|Dogwood Beech Ash");
    perform(u"undo"_s);
    EXPECT_EQ(titleOf(u"redo"_s), u"Redo Paste Tile");
    EXPECT_EQ(shown(), u"Beech Cedar ~Ash|Dogwood Ash");
    perform(u"hide"_s, on(u"Dogwood"_s));
    EXPECT_EQ(titlesIn(u"unhide"_s), QStringList{u"Dogwood"_s});
    EXPECT_EQ(titleOf(u"undo"_s), u"Undo Hide App");
    perform(u"unhide:org.example.dogwood"_s);
    EXPECT_THAT(choices(), Not(Contains(u"unhide"_s)));
}

TEST_F(ActionsTest, TheMenuOfASelectionIsAboutAllOfIt) {
    launcher->shown().select({idOf(u"Dogwood"_s), idOf(u"Ash"_s)});
    EXPECT_EQ(choices(on(u"Ash"_s)),
              (QStringList{u"cut"_s, u"copy"_s, u"moveTo"_s, u"group"_s, u"hide"_s}));
    perform(u"moveTo:2"_s, on(u"Ash"_s));
    EXPECT_EQ(shown(), u"[Trees: Beech Cedar]|~Cedar|Ash Dogwood");
    EXPECT_THAT(choices(on(u"alias"_s)), Contains(u"open"_s)) << "it is not of the selection";
}

TEST_F(ActionsTest, ASmartFolderComesFromATemplateAndGoesWhenThatWasConfirmed) {
    EXPECT_EQ(titlesIn(u"newFromTemplate"_s),
              (QStringList{u"Installed This Week"_s, u"Microsoft Apps"_s, u"Recently Used"_s,
                           u"Updates Available"_s, u"Games"_s, u"Mac App Store Apps"_s}));
    perform(u"newFromTemplate:installedThisWeek"_s);
    ASSERT_EQ(launcher->smartFolders().definitions().size(), 1);
    const QUuid id = launcher->smartFolders().definitions().first().id;
    const ActionTarget target{.item = *launcher->shown().item(id)};
    EXPECT_THAT(choices(target), IsSupersetOf({u"open"_s, u"rename"_s, u"editSmartFolder"_s,
                                               u"removeSmartFolderTile"_s, u"deleteSmartFolder"_s}));
    EXPECT_EQ(launcher->shown().selectedItemID(), id) << "a new one is shown";

    // Its tile can go without it, and come back.
    perform(u"removeSmartFolderTile"_s, target);
    EXPECT_FALSE(launcher->shown().item(id));
    EXPECT_EQ(titlesIn(u"showSmartFolder"_s), QStringList{u"Installed This Week"_s});
    launcher->shown().setCurrentPage(1);
    launcher->shown().select(std::nullopt);
    perform(u"showSmartFolder:"_s + toText(id));
    EXPECT_EQ(shown(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar *");
    EXPECT_THAT(choices(), Not(Contains(u"showSmartFolder"_s)));

    ASSERT_TRUE(launcher->shown().openFolder(id));
    EXPECT_EQ(perform(u"editSmartFolder"_s), ActionRequest::rules) << "the one whose background it is";
    EXPECT_EQ(launcher->smartFolderEditing().draft()->definition().id, id);
    EXPECT_THAT(choices(), Not(Contains(u"paste"_s))) << "its rules decide what is in it";
    EXPECT_THAT(choices(on(u"Ash"_s)), Not(Contains(u"cut"_s)));
    launcher->shown().closeFolder();

    perform(u"deleteSmartFolder"_s, target);
    ASSERT_TRUE(launcher->messages().question());
    EXPECT_EQ(launcher->messages().question()->title, u"Delete “Installed This Week”?");
    EXPECT_TRUE(launcher->messages().question()->isDestructive);
    launcher->messages().answer(false);
    EXPECT_EQ(launcher->smartFolders().definitions().size(), 1);
    perform(u"deleteSmartFolder"_s, target);
    launcher->messages().answer(true);
    EXPECT_TRUE(launcher->smartFolders().definitions().isEmpty());
    EXPECT_EQ(shown(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar");
}

TEST_F(ActionsTest, ABlockedModeOffersWhatChangesNothingAndTheReset) {
    launcher.reset();
    mac.write(directory + u"/layout.json"_s, "damaged");
    start();
    const ActionTarget target{.item = launcher->shown().pages()[0][0]};
    EXPECT_EQ(choices(target),
              (QStringList{u"open"_s, u"information"_s, u"reveal"_s, u"changeIcon"_s, u"copy"_s}));
    EXPECT_EQ(perform(u"rename"_s, target), ActionRequest::none);
    EXPECT_THAT(choices(), Not(Contains(u"newSmartFolder"_s)));
    ASSERT_THAT(choices(), Contains(u"resetLayout"_s));
    perform(u"resetLayout"_s);
    ASSERT_TRUE(launcher->messages().question());
    EXPECT_EQ(launcher->messages().question()->title, u"Reset the Launchpad layout?");
    launcher->messages().answer(true);
    EXPECT_THAT(choices(), Contains(u"newSmartFolder"_s));
}

TEST_F(ActionsTest, ABlockedRegistrySaysSoAndCreatesNothing) {
    launcher.reset();
    mac.write(directory + u"/computed-folders.json"_s, "damaged");
    start();
    EXPECT_EQ(titleOf(u"smartFoldersUnavailable"_s), u"Smart Folders are unavailable");
    EXPECT_THAT(choices(), Not(Contains(u"newSmartFolder"_s)));
    EXPECT_EQ(perform(u"newSmartFolder"_s), ActionRequest::none);
    perform(u"newFromTemplate:games"_s);
    EXPECT_EQ(shown(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar");

    // It is still damaged when it is read again; without it there is a beginning.
    (void)launcher->messages().takeAlerts();
    perform(u"smartFoldersUnavailable:restore"_s);
    EXPECT_EQ(launcher->messages().takeAlerts().size(), 1);
    perform(u"smartFoldersUnavailable:replace"_s);
    ASSERT_TRUE(launcher->messages().question());
    EXPECT_THAT(
        launcher->messages().question()->text.toStdString(),
        testing::StartsWith("The Smart Folder registry could not be read. Its original file was "
                            "preserved"));
    launcher->messages().answer(true);
    EXPECT_THAT(choices(), Contains(u"newSmartFolder"_s));
    EXPECT_THAT(choices(), Not(Contains(u"smartFoldersUnavailable"_s)));
}

TEST_F(ActionsTest, AFoundApplicationWithoutATileCanBeOpenedAndShown) {
    perform(u"hide"_s, on(u"Ash"_s));
    const ActionTarget found{.item = *launcher->applications().withKey(u"org.example.ash"_s),
                             .isSearchResult = true};
    EXPECT_EQ(choices(found),
              (QStringList{u"open"_s, u"information"_s, u"reveal"_s, u"show"_s, u"moveToTrash"_s}));
    perform(u"show"_s, found);
    EXPECT_TRUE(launcher->shown().hiddenKeys().isEmpty());
}

TEST_F(ActionsTest, KeysDoWhatTheMenuDoes) {
    launcher->shown().select(idOf(u"Ash"_s));
    EXPECT_TRUE(press(Qt::Key_X));
    launcher->shown().select(idOf(u"Dogwood"_s));
    EXPECT_TRUE(press(Qt::Key_V)); // after the selected tile
    EXPECT_EQ(shown(), u"[Trees: Beech Cedar]|Dogwood Ash ~Cedar");
    EXPECT_TRUE(press(Qt::Key_Z));
    EXPECT_TRUE(press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier));
    EXPECT_EQ(shown(), u"[Trees: Beech Cedar]|Dogwood Ash ~Cedar");
    EXPECT_FALSE(press(Qt::Key_Y)); // nothing is left to redo
    EXPECT_TRUE(press(Qt::Key_A));
    EXPECT_EQ(launcher->shown().selectedItemIDs().size(), 1);
    EXPECT_FALSE(press(Qt::Key_K));
}

} // namespace
} // namespace tessellar
