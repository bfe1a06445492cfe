#include "launcher/unsaved_edits.h"

#include "launcher/small_launcher.h"

namespace tessellar::test {
namespace {

using Whose = UnsavedEdits::Whose;

class UnsavedEditsTest : public SmallLauncher {
protected:
    UnsavedEditsTest() {
        installAll(u"Ash Elm"_s);
        store(drawn(u"Ash Elm"));
        start();
    }

    static UnsavedEdits::Editor command() { return std::make_shared<std::byte>(); }
    /// By hand, or by a command.
    void rename(const QString& app, const QString& name, const UnsavedEdits::Editor& editor = {},
                LauncherWindowMode in = fullScreen) {
        unsaved().editAs(editor, [&] {
            const AppEntry* tile = launcher->layout(in).tileOf(u"org.example."_s + app.toLower());
            EXPECT_TRUE(launcher->editor().rename(in, tile->id, name));
        });
    }
    /// Notes what the editor is answered.
    void await(const UnsavedEdits::Editor& editor, Whose whose = Whose::own) {
        unsaved().whenSaved(editor, whose, [this, name = QString::number(_asked++)](const auto& saved) {
            answers += name + (saved ? u" saved"_s : u' ' + saved.error().code);
        });
    }
    void setDiskFails(bool fails) {
        mac.workers.waitIdle();
        if (fails) {
            _kept = mac.read(layoutFile);
            block(layoutFile);
        } else {
            mac.remove(layoutFile);
            mac.write(layoutFile, _kept);
        }
    }
    QStringList taken() { return std::exchange(answers, {}); }
    /// The window, and the file once all that waits to be saved is.
    QStringList shownAndStored() {
        const QString shown = sketched();
        EXPECT_TRUE(launcher->quit());
        return {shown, sketch(stored().pages)};
    }
    UnsavedEdits& unsaved() { return launcher->history().unsaved(); }

    QStringList answers;

private:
    int _asked = 0;
    QByteArray _kept;
};

TEST_F(UnsavedEditsTest, WhatACommandCouldNotSaveIsAsIfItHadNotBeen) {
    rename(u"Ash"_s, u"Mine"_s);
    ASSERT_EQ(undo(), u"done");
    setDiskFails(true);
    const auto rename1 = command();
    const auto rename2 = command();
    rename(u"Ash"_s, u"One"_s, rename1);
    await(rename1);
    rename(u"Elm"_s, u"Two"_s, rename2);
    await(rename2);
    await(command());
    EXPECT_EQ(taken(), QStringList{u"2 saved"_s}) << "who only reads waits for nobody";
    EXPECT_EQ(sketched(), u"One Two");
    mac.settle();
    EXPECT_EQ(taken(), QStringList({u"0 isADirectory"_s, u"1 isADirectory"_s}));
    EXPECT_EQ(steps().size(), 0);
    EXPECT_EQ(sketched(), u"Ash Elm");
    setDiskFails(false);
    EXPECT_EQ(redo(), u"done") << "nor does it keep anything from being redone";
    EXPECT_EQ(shownAndStored(), QStringList({u"Mine Elm"_s, u"Mine Elm"_s}));

    // One that fails leaves what was saved before it, in the other mode too.
    const auto batch = command();
    rename(u"Elm"_s, u"First"_s, batch);
    time.advance(1s);
    mac.settle();
    setDiskFails(true);
    rename(u"Elm"_s, u"Second"_s, batch);
    rename(u"Elm"_s, u"Third"_s, batch, windowed);
    await(batch, Whose::all);
    mac.settle();
    EXPECT_EQ(taken(), QStringList{u"3 isADirectory"_s});
    setDiskFails(false);
    EXPECT_EQ(shownAndStored(), QStringList({u"Mine First"_s, u"Mine First"_s}));
    EXPECT_EQ(sketch(stored("layout-windowed.json").pages), u"Ash Third");
}

TEST_F(UnsavedEditsTest, WhatTheUserEditsByHandIsKept) {
    setDiskFails(true);
    rename(u"Ash"_s, u"Below"_s);
    const auto peeled = command();
    rename(u"Elm"_s, u"Peeled"_s, peeled);
    await(peeled);
    await(command(), Whose::all);
    mac.settle();
    EXPECT_EQ(taken(), QStringList({u"0 isADirectory"_s, u"1 isADirectory"_s}));
    EXPECT_EQ(sketched(), u"Below Elm");
    EXPECT_EQ(steps().size(), 1);
    EXPECT_TRUE(launcher->hasUnsavedEdits()) << "what was peeled off does not make it saved";

    // What lies below it stays, and is said to.
    const auto kept = command();
    rename(u"Elm"_s, u"Kept"_s, kept);
    await(kept);
    rename(u"Ash"_s, u"Above"_s);
    mac.settle();
    EXPECT_EQ(taken(), QStringList{u"2 keptUnsaved"_s});
    EXPECT_EQ(sketched(), u"Above Kept");
    setDiskFails(false);
    EXPECT_EQ(shownAndStored(), QStringList({u"Above Kept"_s, u"Above Kept"_s}));
    await(kept, Whose::all);
    mac.settle();
    EXPECT_EQ(taken(), QStringList{u"3 saved"_s});
    EXPECT_EQ(steps().size(), 3);
}

TEST_F(UnsavedEditsTest, WhoHearsOfASavedStepMayBeginAnother) {
    const auto hide = [&](const QString& key) {
        const auto hidden = [&](LauncherWindowMode in) {
            LayoutDocument document = launcher->layout(in).document();
            document.hiddenKeys.insert(key);
            return document;
        };
        EXPECT_TRUE(launcher->history().make({.name = key,
                                              .mode = fullScreen,
                                              .document = hidden(fullScreen),
                                              .otherDocument = hidden(windowed)}));
    };
    bool isThere = false;
    rename(u"Ash"_s, u"Mine"_s);
    unsaved().whenSaved({}, Whose::own, [&](const auto&) {
        const auto renaming = command();
        rename(u"Elm"_s, u"Late"_s, renaming, windowed);
        hide(u"two"_s);
        unsaved().whenSaved(renaming, Whose::own, [&](const auto&) {
            isThere = mac.read(data + u"/layout-windowed.json"_s).contains("Late");
        });
    });
    hide(u"one"_s);
    EXPECT_TRUE(launcher->history().settle());
    EXPECT_TRUE(isThere) << "what is told to be saved is on the disk";
    EXPECT_EQ(stored("layout-windowed.json").hiddenKeys, (QSet<QString>{u"one"_s, u"two"_s}));
}

TEST_F(UnsavedEditsTest, StepsOfHistoryAreShownAtOnceAndComeBackIfTheyCannotBeSaved) {
    const auto& history = launcher->history();
    const auto step = [&](bool isUndo, LauncherWindowMode of = fullScreen) {
        isUndo ? launcher->history().undo(of) : launcher->history().redo(of);
    };
    const auto told = [&] {
        QStringList codes;
        for (const LauncherError& alert : messages().takeAlerts())
            codes += alert.code +
                     (alert.remedy == LauncherError::Remedy::none ? QString() : u" with a remedy"_s);
        return codes;
    };
    rename(u"Ash"_s, u"One"_s);
    rename(u"Elm"_s, u"Two"_s);
    time.advance(1s);
    mac.settle();

    // Several in a row, before the first of them is saved.
    setDiskFails(true);
    step(true);
    step(true);
    EXPECT_EQ(sketched(), u"Ash Elm");
    EXPECT_EQ(steps().size(), 0);
    mac.settle();
    EXPECT_EQ(sketched(), u"One Two");
    EXPECT_EQ(steps().size(), 2);
    EXPECT_TRUE(history.steps().redoStack().isEmpty());
    EXPECT_FALSE(history.steps().feedback()) << "nothing was undone";
    EXPECT_EQ(told(), QStringList{u"isADirectory"_s})
        << "it can be undone again, and needs no other help";

    // An edit by hand keeps the step below it, an edit of the other mode does not.
    step(true);
    rename(u"Ash"_s, u"Third"_s, {}, windowed);
    mac.settle();
    EXPECT_EQ(sketched(), u"One Two");
    EXPECT_EQ(steps().size(), 3);
    told();
    step(true);
    rename(u"Ash"_s, u"Mine"_s);
    mac.settle();
    EXPECT_EQ(sketched(), u"Mine Elm");
    EXPECT_EQ(told(), QStringList{u"isADirectory with a remedy"_s});
    // What was not saved before it is told once, though saving what came back fails as well.
    rename(u"Ash"_s, u"Never"_s);
    step(true);
    mac.settle();
    EXPECT_EQ(sketched(), u"Never Elm");
    EXPECT_EQ(told(), QStringList{u"isADirectory with a remedy"_s});
    step(true);
    mac.settle();
    told();
    setDiskFails(false);
    EXPECT_EQ(undo(), u"done");
    EXPECT_EQ(shownAndStored(), QStringList({u"Mine Elm"_s, u"Mine Elm"_s}));

    // A command's own step waits until the command asks, however soon the disk fails.
    setDiskFails(true);
    const auto batch = command();
    unsaved().editAs(batch, [&] { step(true); });
    time.advance(1s);
    mac.settle();
    await(batch);
    mac.settle();
    EXPECT_EQ(taken(), QStringList{u"0 isADirectory"_s});
    EXPECT_EQ(sketched(), u"Mine Elm");
    EXPECT_TRUE(told().isEmpty());
    setDiskFails(false);

    step(true);
    mac.settle();
    setDiskFails(true);
    step(false);
    EXPECT_EQ(sketched(), u"Mine Elm");
    mac.settle();
    EXPECT_EQ(sketched(), u"One Elm");
    EXPECT_EQ(history.steps()
                  .nextRedo(LauncherWindowMode::fullScreen)
                  .entry->after.document.pages[0][0]
                  .app()
                  ->name,
              u"Mine");
    setDiskFails(false);
    EXPECT_EQ(redo(), u"done");
    EXPECT_EQ(shownAndStored(), QStringList({u"Mine Elm"_s, u"Mine Elm"_s}));
}

} // namespace
} // namespace tessellar::test
