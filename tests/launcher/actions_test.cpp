#include "launcher/actions.h"

#include "launcher/smart_folder_editing.h"
#include "small_launcher.h"

#include <gmock/gmock.h>

namespace tessellar::test {
namespace {

using testing::Contains;
using testing::IsSupersetOf;
using testing::Not;

class ActionsTest : public SmallLauncher {
protected:
    ActionsTest() {
        installAll(u"Ash Beech Cedar Dogwood"_s);
        Pages pages = drawn(u"Ash [Trees: Beech Cedar]|Dogwood Cedar");
        AppEntry& alias = *pages[1][1].app();
        alias.id = idOf(u"alias"_s);
        alias.alias = AppAliasReference{u"org.example.cedar"_s};
        store(pages);
        start();
    }
    ActionTarget on(const QString& name) {
        const LaunchpadItem* item = launcher->shown().item(idOf(name));
        return {.item = item ? std::optional(*item) : std::nullopt};
    }
    /// What can be chosen, submenus and their entries among it.
    QStringList choices(const ActionTarget& target = {}) {
        QStringList ids;
        for (const MenuEntry& each : actionMenu(*launcher, target))
            if (each.isEnabled && !each.isSeparator())
                ids += each.id;
        return ids;
    }
    MenuEntry entry(const QString& id, const ActionTarget& target = {}) {
        for (const MenuEntry& found : actionMenu(*launcher, target))
            if (found.id == id)
                return found;
        return {};
    }
    QString titleOf(const QString& id, const ActionTarget& target = {}) {
        return entry(id, target).title;
    }
    QStringList titlesIn(const QString& id, const ActionTarget& target = {}) {
        QStringList titles;
        for (const MenuEntry& inner : entry(id, target).entries)
            titles += inner.title;
        return titles;
    }
    ActionRequest perform(const QString& id, const ActionTarget& target = {}) {
        const auto request = performAction(*launcher, target, id);
        mac.settle();
        return request.value_or(ActionRequest::none);
    }
};

TEST_F(ActionsTest, EachKindOfTileHasItsEntries) {
    EXPECT_EQ(
        choices(on(u"Ash"_s)).join(u' '),
        u"open information reveal rename changeIcon cut copy moveTo createAlias hide moveToTrash");
    EXPECT_EQ(choices(on(u"Trees"_s)).join(u' '), u"open rename cut copy moveTo ungroup");
    EXPECT_THAT(choices(on(u"alias"_s)), Contains(u"removeAlias"_s));
    EXPECT_EQ(titleOf(u"removeAlias"_s, on(u"alias"_s)), u"Remove alias to Cedar");
    EXPECT_EQ(titlesIn(u"moveTo"_s, on(u"Ash"_s)),
              (QStringList{u"Page 2"_s, u"New Page"_s, QString(), u"Trees"_s}));
}

TEST_F(ActionsTest, EntriesDoWhatTheySay) {
    EXPECT_EQ(perform(u"rename"_s, on(u"Ash"_s)), ActionRequest::rename);
    ASSERT_TRUE(editor().rename(mode(), idOf(u"Ash"_s), u"Esche"_s));
    perform(u"revertName"_s, on(u"Ash"_s));
    EXPECT_EQ(sketched(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar");
    perform(u"moveTo:1"_s, on(u"Ash"_s));
    EXPECT_EQ(sketched(), u"[Trees: Beech Cedar]|Dogwood ~Cedar Ash");
    perform(u"createAlias:"_s + toText(idOf(u"Trees"_s)) + u"/0"_s, on(u"Ash"_s));
    EXPECT_EQ(sketched(), u"[Trees: Beech Cedar ~Ash]|Dogwood ~Cedar Ash");
    perform(u"removeAlias"_s, on(u"alias"_s));
    perform(u"ungroup"_s, on(u"Trees"_s));
    EXPECT_EQ(sketched(), u"Beech Cedar ~Ash|Dogwood Ash");
    perform(u"cut"_s, on(u"Beech"_s));
    perform(u"paste"_s, on(u"Dogwood"_s));
    EXPECT_EQ(sketched(), u"Cedar ~Ash|Dogwood Beech Ash");
    perform(u"undo"_s);
    EXPECT_EQ(titleOf(u"redo"_s), u"Redo Paste Tile");
    EXPECT_EQ(sketched(), u"Beech Cedar ~Ash|Dogwood Ash");
    perform(u"hide"_s, on(u"Dogwood"_s));
    EXPECT_EQ(titlesIn(u"unhide"_s), QStringList{u"Dogwood"_s});
    EXPECT_EQ(titleOf(u"undo"_s), u"Undo Hide App");
    perform(u"unhide:org.example.dogwood"_s);
    EXPECT_THAT(choices(), Not(Contains(u"unhide"_s)));
}

TEST_F(ActionsTest, TheMenuOfASelectionIsAboutAllOfIt) {
    launcher->shown().navigation().select({idOf(u"Dogwood"_s), idOf(u"Ash"_s)});
    EXPECT_EQ(choices(on(u"Ash"_s)).join(u' '), u"cut copy moveTo group hide");
    perform(u"moveTo:2"_s, on(u"Ash"_s));
    EXPECT_EQ(sketched(), u"[Trees: Beech Cedar]|~Cedar|Ash Dogwood");
    EXPECT_THAT(choices(on(u"alias"_s)), Contains(u"open"_s)) << "it is not of the selection";
}

TEST_F(ActionsTest, ASmartFolderComesFromATemplateAndGoesWhenThatWasConfirmed) {
    EXPECT_EQ(titlesIn(u"newFromTemplate"_s),
              (QStringList{u"Installed This Week"_s, u"Microsoft Apps"_s, u"Recently Used"_s,
                           u"Updates Available"_s, u"Games"_s, u"Mac App Store Apps"_s}));
    perform(u"newFromTemplate:installedThisWeek"_s);
    ASSERT_EQ(definitions().size(), 1);
    const QUuid id = definitions().first().id;
    const ActionTarget target{.item = *launcher->shown().item(id)};
    EXPECT_THAT(choices(target), IsSupersetOf({u"open"_s, u"rename"_s, u"editSmartFolder"_s,
                                               u"removeSmartFolderTile"_s, u"deleteSmartFolder"_s}));
    EXPECT_EQ(launcher->shown().navigation().selectedItemID(), id) << "a new one is shown";

    // Its tile can go without it, and come back.
    perform(u"removeSmartFolderTile"_s, target);
    EXPECT_FALSE(launcher->shown().item(id));
    EXPECT_EQ(titlesIn(u"showSmartFolder"_s), QStringList{u"Installed This Week"_s});
    launcher->shown().navigation().setCurrentPage(1);
    launcher->shown().navigation().select(std::nullopt);
    perform(u"showSmartFolder:"_s + toText(id));
    EXPECT_EQ(sketched(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar *");
    EXPECT_THAT(choices(), Not(Contains(u"showSmartFolder"_s)));

    ASSERT_TRUE(launcher->shown().navigation().openFolder(id));
    EXPECT_EQ(perform(u"editSmartFolder"_s), ActionRequest::rules) << "the one whose background it is";
    EXPECT_EQ(launcher->smartFolderEditing().draft()->definition().id, id);
    EXPECT_THAT(choices(), Not(Contains(u"paste"_s))) << "its rules decide what is in it";
    EXPECT_THAT(choices(on(u"Ash"_s)), Not(Contains(u"cut"_s)));
    launcher->shown().navigation().closeFolder();

    perform(u"deleteSmartFolder"_s, target);
    EXPECT_EQ(asked(), u"Delete “Installed This Week”?");
    EXPECT_TRUE(messages().question()->isDestructive);
    messages().answer(false);
    EXPECT_EQ(definitions().size(), 1);
    perform(u"deleteSmartFolder"_s, target);
    messages().answer(true);
    EXPECT_TRUE(definitions().isEmpty());
    EXPECT_EQ(sketched(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar");
}

TEST_F(ActionsTest, ABlockedModeOffersWhatChangesNothingAndTheReset) {
    launcher.reset();
    mac.write(layoutFile, "damaged");
    start();
    const ActionTarget target{.item = launcher->shown().pages()[0][0]};
    EXPECT_EQ(choices(target).join(u' '), u"open information reveal changeIcon copy");
    EXPECT_EQ(perform(u"rename"_s, target), ActionRequest::none);
    EXPECT_THAT(choices(), Not(Contains(u"newSmartFolder"_s)));
    ASSERT_THAT(choices(), Contains(u"resetLayout"_s));
    perform(u"resetLayout"_s);
    EXPECT_EQ(asked(), u"Reset the Launchpad layout?");
    messages().answer(true);
    EXPECT_THAT(choices(), Contains(u"newSmartFolder"_s));
}

TEST_F(ActionsTest, ABlockedRegistrySaysSoAndCreatesNothing) {
    launcher.reset();
    mac.write(data + u"/computed-folders.json"_s, "damaged");
    start();
    EXPECT_EQ(titleOf(u"smartFoldersUnavailable"_s), u"Smart Folders are unavailable");
    EXPECT_THAT(choices(), Not(Contains(u"newSmartFolder"_s)));
    EXPECT_EQ(perform(u"newSmartFolder"_s), ActionRequest::none);
    perform(u"newFromTemplate:games"_s);
    EXPECT_EQ(sketched(), u"Ash [Trees: Beech Cedar]|Dogwood ~Cedar");

    // It is still damaged when it is read again; without it there is a beginning.
    (void)messages().takeAlerts();
    perform(u"smartFoldersUnavailable:restore"_s);
    EXPECT_EQ(messages().takeAlerts().size(), 1);
    perform(u"smartFoldersUnavailable:replace"_s);
    ASSERT_TRUE(messages().question());
    messages().answer(true);
    EXPECT_THAT(choices(), Contains(u"newSmartFolder"_s));
    EXPECT_THAT(choices(), Not(Contains(u"smartFoldersUnavailable"_s)));
}

TEST_F(ActionsTest, AFoundApplicationWithoutATileCanBeOpenedAndShown) {
    perform(u"hide"_s, on(u"Ash"_s));
    const ActionTarget found{.item = *launcher->applications().withKey(u"org.example.ash"_s),
                             .isSearchResult = true};
    EXPECT_EQ(choices(found).join(u' '), u"open information reveal show moveToTrash");
    perform(u"show"_s, found);
    EXPECT_TRUE(launcher->shown().hiddenKeys().isEmpty());
}

} // namespace
} // namespace tessellar::test
