#include "editing/layout_undo.h"

#include "editing/arrangements.h"
#include "editing/edit_names.h"
#include "support/manual_time.h"
#include "support/printers.h"
#include "support/sequential_uuids.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessellar {
namespace {

using test::app;
using test::tileID;
using testing::ElementsAre;
using Result = LayoutUndoHistory::Result;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using test::drawn;

const Locale english(u"en_US"_s);

/// A launcher with as much of itself as history touches. Like the real one, it takes a new value up
/// before saving it, also when the saving then fails.
class Launcher {
public:
    LayoutUndoState live{.document = {.pages = drawn(u"1 2 3")},
                         .otherDocument = LayoutDocument{.pages = drawn(u"4 5")}};
    bool layoutSaves = true;
    bool definitionsSave = true;
    QStringList alerts;
    int changes = 0; ///< that the history told of
    QStringList trashLog;
    QSet<QString> stuck; ///< names of applications that cannot be moved
    bool answersLater = false;
    QList<std::function<void()>> answers;

    test::ManualTime time;
    test::SequentialUuids uuids;
    std::optional<LayoutUndoHistory> history;

    Launcher() {
        history.emplace(
            time, uuids,
            LayoutUndoActions{
                .snapshot =
                    [this](LauncherWindowMode mode) {
                        show(mode);
                        return live;
                    },
                .apply =
                    [this](auto, const LayoutUndoEntry&, const LayoutUndoState& state, auto saved) {
                        show(state.mode);
                        LayoutUndoState next = live;
                        next.document = state.document;
                        if (state.otherDocument)
                            next.otherDocument = state.otherDocument;
                        next.smartFolderDefinitions = state.smartFolderDefinitions;
                        const bool isSaved =
                            !((!layoutSaves && (next.document != live.document ||
                                                next.otherDocument != live.otherDocument)) ||
                              (!definitionsSave &&
                               next.smartFolderDefinitions != live.smartFolderDefinitions));
                        const LayoutUndoState before = live;
                        if (isSaved || saved)
                            live = next;
                        if (saved)
                            answers.append([=, this] {
                                live = isSaved ? next : before;
                                saved(isSaved);
                            });
                        return isSaved || saved;
                    },
                .applyNavigation =
                    [this](const LayoutUndoState& state) {
                        show(state.mode);
                        live.navigation = state.navigation;
                    },
                .restoreFromTrash = [this](auto records, auto done) { moveApps(records, done, false); },
                .moveToTrash = [this](auto records, auto done) { moveApps(records, done, true); },
                .alert = [this](const QString& title,
                                const QString& message) { alerts += title + u'\n' + message; },
                .capacities = {},
                .changed = [this] { ++changes; }});
    }

    void show(LauncherWindowMode mode) {
        if (mode == live.mode)
            return;
        live.mode = mode;
        std::swap(live.document, *live.otherDocument);
    }

    /// Makes an edit of the present layout and records it.
    bool edit(const QString& name, const std::function<void(LayoutUndoState&)>& change,
              const QList<TrashedAppRecord>& trashed = {}) {
        const LayoutUndoState before = live;
        change(live);
        return history->record(name, before, trashed);
    }
    void rename(const QString& name) {
        edit(name, [&](LayoutUndoState& state) {
            state.document = *renameApp(state.document, state.document.pages[0][0].id(), name);
        });
    }
    /// `refused` also for a step that has not ended yet.
    Result undo() { return step(&LayoutUndoHistory::undo); }
    Result redo() { return step(&LayoutUndoHistory::redo); }
    QStringList undoNames() const { return names(history->undoStack()); }
    QStringList redoNames() const { return names(history->redoStack()); }

private:
    Result step(void (LayoutUndoHistory::*take)(LauncherWindowMode, const LayoutUndoHistory::Done&)) {
        auto result = std::make_shared<Result>(Result::refused);
        ((*history).*take)(live.mode, [result](Result r) { *result = r; });
        while (!answersLater && !answers.isEmpty())
            answers.takeFirst()();
        return *result;
    }
    static QStringList names(const QList<LayoutUndoEntry>& stack) {
        QStringList result;
        for (const LayoutUndoEntry& entry : stack)
            result += entry.name;
        return result;
    }

    void moveApps(const QList<TrashedAppRecord>& records, const LayoutUndoActions::TrashDone& done,
                  bool intoTrash) {
        QList<TrashOutcome> outcomes;
        for (TrashedAppRecord record : records) {
            if (stuck.contains(record.name)) {
                outcomes.append({record, u"It is stuck."_s});
                continue;
            }
            trashLog += (intoTrash ? u'-' : u'+') + record.name;
            if (intoTrash)
                record.trashedURL = u"/Trash/%1"_s.arg(trashLog.size());
            outcomes.append({record, std::nullopt});
        }
        if (answersLater)
            answers.append([done, outcomes] { done(outcomes); });
        else
            done(outcomes);
    }
};

TEST(UndoHistory, OnlyARealChangeIsKeptAndEndsRedo) {
    Launcher launcher;
    launcher.rename(u"one"_s);
    const LayoutUndoState afterOne = launcher.live;
    launcher.rename(u"two"_s);
    EXPECT_EQ(launcher.changes, 2);
    for (const auto step : {&Launcher::undo, &Launcher::redo, &Launcher::undo}) {
        launcher.changes = 0;
        ASSERT_EQ((launcher.*step)(), Result::done);
        EXPECT_GE(launcher.changes, 1);
    }
    EXPECT_EQ(launcher.live, afterOne);

    EXPECT_FALSE(launcher.edit(u"looked"_s, [](LayoutUndoState& state) {
        state.navigation.currentPage = 3;
        state.navigation.selectedItemID = tileID(2);
    }));
    EXPECT_EQ(launcher.undoNames(), QStringList{u"one"_s});
    EXPECT_EQ(launcher.redoNames(), QStringList{u"two"_s});

    EXPECT_TRUE(launcher.edit(u"hid"_s, [](LayoutUndoState& state) {
        state.document = *hideApps(state.document, {tileID(1)});
    }));
    EXPECT_FALSE(launcher.history->canRedo(launcher.live.mode));
    EXPECT_EQ(launcher.redo(), Result::refused);
    EXPECT_TRUE(launcher.edit(u"defined"_s, [](LayoutUndoState& state) {
        state.smartFolderDefinitions.append(SmartFolderDefinition{.id = tileID(77)});
    }));
    EXPECT_TRUE(launcher.edit(u"trashed"_s, [](LayoutUndoState&) {}, {{.name = u"Gone"_s}}));
}

TEST(UndoHistory, KeepsTheNewestFiftyWhichUndoneGiveEqualStatesInBothModes) {
    Launcher launcher;
    QList<LayoutUndoState> states;
    for (unsigned i = 0; i < 60; ++i) {
        if (i % 3 == 0)
            launcher.show(otherMode(launcher.live.mode));
        if (i >= 10)
            states.append(launcher.live);
        launcher.edit(u"edit"_s, [&](LayoutUndoState& state) {
            LayoutDocument& layout = i % 7 == 0 ? *state.otherDocument : state.document;
            layout = *renameApp(layout, layout.pages[0][0].id(), QString::number(i));
            if (i % 5 == 0) // as a deletion that touches the other mode, too
                state.smartFolderDefinitions.append(SmartFolderDefinition{.id = tileID(i)});
        });
    }
    states.append(launcher.live);
    const auto takes = [&](const QList<LayoutUndoEntry>& stack, Result (Launcher::*step)(),
                           const LayoutUndoState& expected) {
        launcher.show(stack.last().before.mode);
        ASSERT_EQ((launcher.*step)(), Result::done);
        launcher.show(expected.mode);
        ASSERT_EQ(launcher.live, expected);
    };
    for (qsizetype i = states.size() - 2; i >= 0; --i)
        takes(launcher.history->undoStack(), &Launcher::undo, states[i]);
    EXPECT_EQ(launcher.undo(), Result::refused);
    EXPECT_FALSE(launcher.history->canUndo(launcher.live.mode));
    for (qsizetype i = 1; i < states.size(); ++i)
        takes(launcher.history->redoStack(), &Launcher::redo, states[i]);
}

TEST(UndoHistory, WhatAStepDidNotChangeStaysAsItIsNow) {
    Launcher launcher;
    launcher.edit(u"rules"_s, [](LayoutUndoState& state) {
        state.smartFolderDefinitions = {SmartFolderDefinition{.id = tileID(77)}};
    });
    // An application was installed.
    launcher.live.document.pages = launcher.live.otherDocument->pages = drawn(u"1 2 3 9");
    for (const auto take : {&Launcher::undo, &Launcher::redo}) {
        ASSERT_EQ((launcher.*take)(), Result::done);
        EXPECT_EQ(launcher.live.document.pages, drawn(u"1 2 3 9"));
        EXPECT_EQ(launcher.live.otherDocument->pages, drawn(u"1 2 3 9"));
    }
}

TEST(UndoHistory, AStepThatWasDroppedMeanwhileReturnsToTheStackItCameFrom) {
    using enum UndoRedoFeedback::Direction;
    Launcher launcher;
    launcher.rename(u"redone"_s);
    ASSERT_EQ(launcher.undo(), Result::done);
    const LayoutUndoEntry entry = launcher.history->redoStack().last();
    ASSERT_EQ(launcher.redo(), Result::done);
    launcher.show(LauncherWindowMode::windowed);
    for (int i = 0; i < LayoutUndoHistory::undoLimit; ++i)
        launcher.rename(u"other %1"_s.arg(i));
    ASSERT_FALSE(launcher.undoNames().contains(u"redone"_s));
    launcher.history->giveBack(redo, entry);
    EXPECT_EQ(launcher.redoNames(), QStringList{u"redone"_s});
    EXPECT_EQ(launcher.undoNames().size(), LayoutUndoHistory::undoLimit);
    ASSERT_EQ(launcher.undo(), Result::done); // clears nothing of the other mode
    launcher.rename(u"clears"_s);
    launcher.history->giveBack(undo, entry);
    EXPECT_EQ(launcher.undoNames().last(), u"redone");
}

TEST(UndoHistory, AHalfAppliedStepIsPutBack) {
    Launcher launcher;
    launcher.edit(u"Delete Smart Folder"_s, [](LayoutUndoState& state) {
        state.document = *addSmartFolder(state.document, tileID(50), {{}, 0, 0}, {});
        state.smartFolderDefinitions = {SmartFolderDefinition{.id = tileID(50)}};
    });
    const LayoutUndoState live = launcher.live;

    launcher.definitionsSave = false;
    EXPECT_EQ(launcher.undo(), Result::notApplied);
    EXPECT_EQ(launcher.live, live);
    launcher.definitionsSave = true;
    launcher.layoutSaves = false;
    EXPECT_EQ(launcher.undo(), Result::notApplied);
    EXPECT_EQ(launcher.live, live);
    EXPECT_FALSE(launcher.history->feedback());
    EXPECT_EQ(launcher.undoNames().size(), 1);

    launcher.layoutSaves = true;
    EXPECT_EQ(launcher.undo(), Result::done);
    launcher.definitionsSave = false;
    EXPECT_EQ(launcher.redo(), Result::notApplied);
    EXPECT_EQ(launcher.redoNames().size(), 1);
    // A step of the layout alone does not need them to be savable.
    launcher.rename(u"one"_s);
    EXPECT_EQ(launcher.undo(), Result::done);
}

class UndoTrash : public testing::Test {
protected:
    void SetUp() override {
        launcher.edit(
            editName(EditKind::moveToTrash, 2),
            [](LayoutUndoState& state) {
                state.document = removeApplications(state.document, {appKey(app(1)), appKey(app(2))});
            },
            {{.name = u"A"_s, .trashedURL = u"/Trash/A"_s},
             {.name = u"B"_s, .trashedURL = u"/Trash/B"_s}});
    }
    Launcher launcher;
};

TEST_F(UndoTrash, AppsComeBackAndGoAgain) {
    ASSERT_EQ(launcher.undo(), Result::done);
    EXPECT_EQ(launcher.live.document.pages[0].size(), 3);
    ASSERT_EQ(launcher.redo(), Result::done);
    EXPECT_THAT(launcher.trashLog, ElementsAre(u"+A", u"+B", u"-A", u"-B"));
    EXPECT_EQ(launcher.live.document.pages[0].size(), 1);
    // The entry knows where they lie now.
    EXPECT_EQ(launcher.history->undoStack().last().trashedApps[1].trashedURL, u"/Trash/4");
    EXPECT_TRUE(launcher.alerts.isEmpty());
}

TEST_F(UndoTrash, AFailureLeavesEverythingAsItWas) {
    const LayoutUndoState live = launcher.live;
    launcher.stuck = {u"B"_s};
    EXPECT_EQ(launcher.undo(), Result::trashFailed);
    EXPECT_THAT(launcher.trashLog, ElementsAre(u"+A", u"-A"));
    EXPECT_EQ(launcher.live, live);
    EXPECT_EQ(launcher.undoNames().size(), 1);

    launcher.stuck.clear();
    launcher.layoutSaves = false;
    EXPECT_EQ(launcher.undo(), Result::notApplied);
    EXPECT_THAT(launcher.trashLog.mid(2), ElementsAre(u"+A", u"+B", u"-A", u"-B"));
    EXPECT_EQ(launcher.live, live);

    launcher.layoutSaves = true;
    ASSERT_EQ(launcher.undo(), Result::done);
    launcher.alerts.clear();
    launcher.trashLog.clear();
    launcher.stuck = {u"A"_s};
    const LayoutUndoState undone = launcher.live;
    EXPECT_EQ(launcher.redo(), Result::trashFailed);
    EXPECT_THAT(launcher.alerts, ElementsAre(u"Could not delete apps again\nA: It is stuck."));
    EXPECT_THAT(launcher.trashLog, ElementsAre(u"-B", u"+B"));
    EXPECT_EQ(launcher.live, undone);
    launcher.stuck.clear();
    EXPECT_EQ(launcher.redo(), Result::done);
}

TEST_F(UndoTrash, NoSecondStepBeginsWhileOneWaits) {
    launcher.answersLater = true;
    EXPECT_EQ(launcher.undo(), Result::refused); // which has begun
    EXPECT_TRUE(launcher.history->isInProgress());
    EXPECT_EQ(launcher.undo(), Result::refused);
    EXPECT_EQ(launcher.redo(), Result::refused);
    EXPECT_EQ(launcher.live.document.pages[0].size(), 1);

    const auto answer = launcher.answers.takeFirst();
    answer();
    answer(); // a second answer means nothing
    EXPECT_EQ(launcher.redo(), Result::refused) << "it is not saved yet";
    launcher.answers.takeFirst()();
    EXPECT_FALSE(launcher.history->isInProgress());
    EXPECT_EQ(launcher.live.document.pages[0].size(), 3);
    EXPECT_EQ(launcher.redoNames().size(), 1);

    launcher.history->redo(launcher.live.mode);
    launcher.history.reset();
    launcher.answers.takeFirst()(); // nobody is there any more
}

TEST(UndoNotice, StaysForItsOwnTime) {
    Launcher launcher;
    launcher.rename(u"one"_s);
    launcher.rename(u"two"_s);
    launcher.undo();
    ASSERT_TRUE(launcher.history->feedback());
    EXPECT_EQ(launcher.history->feedback()->text(), u"Undo two");
    const int revision = launcher.history->feedback()->revision;
    launcher.time.advance(1000ms);
    launcher.redo();
    EXPECT_EQ(launcher.history->feedback()->text(), u"Redo two");
    EXPECT_EQ(launcher.history->feedback()->symbolName(), u"arrow.uturn.forward");
    EXPECT_EQ(launcher.history->feedback()->revision, revision + 1);
    launcher.time.advance(1399ms);
    EXPECT_TRUE(launcher.history->feedback());
    launcher.time.advance(1ms);
    EXPECT_FALSE(launcher.history->feedback());

    // A step that fails does not leave the notice before it behind.
    launcher.undo();
    launcher.layoutSaves = false;
    launcher.undo();
    launcher.time.advance(5s);
    EXPECT_FALSE(launcher.history->feedback());
}

TEST(UndoReflow, SlidesTilesFromTheirOldSlots) {
    Launcher launcher;
    launcher.edit(editName(EditKind::move, 1), [](LayoutUndoState& state) {
        state.document = *moveTiles(state.document, {tileID(1)}, {{}, 0, 2}, {});
    });
    launcher.undo();
    ASSERT_TRUE(launcher.history->reflow());
    // 2 3 1 becomes 1 2 3.
    EXPECT_EQ(launcher.history->reflow()->heldSlots,
              (QHash<QUuid, int>{{tileID(1), 2}, {tileID(2), 0}, {tileID(3), 1}}));
    EXPECT_EQ(launcher.history->reflow()->movedOrder,
              (QHash<QUuid, int>{{tileID(1), 0}, {tileID(2), 1}, {tileID(3), 2}}));
    EXPECT_FALSE(launcher.history->reflow()->released);
    launcher.time.advance(LayoutUndoHistory::reflowHold);
    EXPECT_TRUE(launcher.history->reflow()->released);
    launcher.time.advance(LayoutUndoHistory::reflowDuration);
    EXPECT_FALSE(launcher.history->reflow());

    LayoutUndoState before, after;
    before.document.pages = drawn(u"1 2|3");
    after.document.pages = drawn(u"3 1 2 9");
    const UndoRedoReflow reflow = reflowBetween(before, after, {}, {});
    EXPECT_EQ(reflow.movedOrder.value(tileID(3), -1), 0);
    EXPECT_FALSE(reflow.heldSlots.contains(tileID(3)));
    EXPECT_EQ(reflow.heldSlots.value(tileID(2), -1), 1);
    EXPECT_EQ(reflow.appearing, QSet{tileID(9)});
}

} // namespace
} // namespace tessellar
