#include "app/tile_drag.h"

#include "launcher/small_launcher.h"

#include <cmath>
#include <random>

namespace tessellar::test {
namespace {

/// Tiles carried by hands of every kind over a page of 18 in eight columns, without a window.
struct DragIntentTest : SmallLauncher {
    static constexpr int count = 18;
    static constexpr std::chrono::milliseconds frame{16};

    DragIntentTest() {
        for (int i = 0; i < count; ++i)
            install(name(i));
        metrics.columns = 8;
        metrics.rows = 5;
        metrics.left = 100;
        metrics.top = 60;
        metrics.cellWidth = 150;
        metrics.cellHeight = 140;
        start();
        drag = std::make_unique<TileDrag>(*launcher, time, [this] {
            return TileDrag::Area{.pages = launcher->shown().shownPages(),
                                  .page = launcher->shown().navigation().currentPage(),
                                  .frame = {0, 0, 1400, 800},
                                  .cells = metrics};
        });
        QObject::connect(drag.get(), &TileDrag::folderMade, [this](const QUuid& tile) { made = tile; });
    }

    static QString name(int i) { return u"T%1"_s.arg(i, 2, 10, QLatin1Char('0')); }
    QPointF middleOf(int cell) const {
        return {metrics.left + (cell % 8 + 0.5) * metrics.cellWidth,
                metrics.top + (cell / 8 + 0.5) * metrics.cellHeight};
    }
    Page tiles() const {
        return launcher->shown().shownPages().tiles(launcher->shown().navigation().currentPage());
    }
    QString idOf(int i) { return toText(tiles().at(i).id()); }
    double random(double from, double to) {
        return std::uniform_real_distribution(from, to)(generator);
    }
    void pick(int tile) { drag->press(idOf(tile), middleOf(tile), middleOf(tile) - QPointF(40, 40)); }
    /// In a straight line, a frame at a time, as steadily as a hand does.
    void carry(QPointF from, QPointF to, double pixelsPerSecond) {
        const double length = std::hypot(to.x() - from.x(), to.y() - from.y());
        const int frames = std::max(1, int(length / pixelsPerSecond / 0.016));
        for (int i = 1; i <= frames; ++i) {
            const QPointF trembling =
                i == frames ? QPointF() : QPointF(random(-1.5, 1.5), random(-1.5, 1.5));
            drag->move(from + (to - from) * i / frames + trembling);
            time.advance(frame);
        }
    }
    /// The order that what is shown promises; empty where a folder is promised, or nothing.
    QStringList promised(int lifted) {
        const int page = launcher->shown().navigation().currentPage();
        const QList<int> slots = drag->slotsOf(false, page);
        const QStringList shown = labels();
        QStringList order;
        QList<int> drawn;
        for (int i = 0; i < slots.size(); ++i)
            if (slots[i] >= 0) {
                order.append(shown[i]);
                drawn.append(slots[i]);
            }
        const QRectF caret = drag->caretOf(false, page);
        qsizetype before = 0;
        if (caret.isEmpty()) {
            while (before < drawn.size() && drawn[before] == before)
                ++before; // the room is at the first slot that nobody has
        } else {
            const double column = (caret.center().x() - metrics.left) / metrics.cellWidth;
            const int row = int((caret.center().y() - metrics.top) / metrics.cellHeight);
            const int right = row * 8 + int(std::lround(column)); // of the caret
            while (before < drawn.size() && drawn[before] < right)
                ++before;
        }
        order.insert(before, name(lifted));
        return order;
    }
    /// Lets go; what was promised happens, and is undone. True when tiles were grouped.
    bool dropsAsPromised(int lifted) {
        const QString target = drag->targetId();
        const QStringList order = promised(lifted);
        drag->drop();
        EXPECT_EQ(made ? toText(*made) : QString(), target);
        if (target.isEmpty()) {
            EXPECT_EQ(labels(), order);
        }
        made.reset();
        return !target.isEmpty();
    }
    QStringList labels() {
        QStringList result;
        for (const LaunchpadItem& item : tiles())
            result.append(item.app() ? item.app()->name : item.folder()->name);
        return result;
    }

    GridMetrics metrics;
    std::unique_ptr<TileDrag> drag;
    std::optional<QUuid> made;
    std::mt19937 generator{20261122};
};

TEST_F(DragIntentTest, OfFiveHundredStraightDragsOntoATilesMiddleAllGroupWithIt) {
    for (int i = 0; i < 500; ++i) {
        const int tile = int(generator() % count);
        const int target = (tile + 1 + int(generator() % (count - 1))) % count;
        const QUuid aimed = QUuid::fromString(idOf(target));
        pick(tile);
        carry(middleOf(tile), middleOf(target) + QPointF(random(-25, 25), random(-25, 25)),
              std::exp(random(std::log(60), std::log(4000))));
        if (i % 2)
            time.advance(std::chrono::milliseconds(int(random(0, 700))));
        ASSERT_EQ(drag->targetId(), toText(aimed)) << i;
        drag->drop();
        ASSERT_EQ(made, aimed) << i;
        made.reset();
        ASSERT_EQ(undo(), u"done");
    }
}

TEST_F(DragIntentTest, WhatIsShownIsWhatHappens) {
    int grouped = 0;
    for (int i = 0; i < 300; ++i) {
        const int tile = int(generator() % count);
        pick(tile);
        QPointF at = middleOf(tile);
        for (int leg = 0; leg < 3; ++leg) {
            const QPointF next(random(0, 1400), random(0, 800));
            carry(at, next, std::exp(random(std::log(20), std::log(2000))));
            at = next;
            if (generator() % 2)
                time.advance(std::chrono::milliseconds(int(random(0, 600))));
        }
        const QString suggestion = drag->suggestedName();
        if (dropsAsPromised(tile)) {
            ++grouped;
            EXPECT_TRUE(suggestion.isEmpty() || labels().contains(suggestion));
        }
        ASSERT_FALSE(HasFailure()) << i;
        if (launcher->history().steps().canUndo(mode())) {
            ASSERT_EQ(undo(), u"done");
        }
    }
    EXPECT_GT(grouped, 20);
    EXPECT_LT(grouped, 200);
}

TEST_F(DragIntentTest, NothingFleesFromAHandThatMovesAndRestingMakesRoomOrAFolder) {
    const QPointF beside = middleOf(5) - QPointF(60, 0);
    pick(0);
    carry(middleOf(0), beside, 300);
    const QList<int> still = drag->slotsOf(false, 0);
    EXPECT_EQ(still[5], 5);
    EXPECT_FALSE(drag->caretOf(false, 0).isEmpty());
    time.advance(TileDrag::roomDelay);
    EXPECT_EQ(drag->slotsOf(false, 0)[4], 3) << "the tiles before it fill the old place";
    EXPECT_TRUE(drag->caretOf(false, 0).isEmpty());
    carry(beside, middleOf(9), 600);
    EXPECT_EQ(drag->suggestedName(), u"");
    EXPECT_EQ(drag->targetId(), idOf(9));
    time.advance(TileDrag::formDelay);
    EXPECT_NE(drag->suggestedName(), u"");
    drag->move(middleOf(9) + QPointF(20, 10));
    EXPECT_NE(drag->suggestedName(), u"") << "it stays while the pointer is on the tile";
    drag->move({1400 + 50, 300});
    EXPECT_EQ(drag->suggestedName(), u"");
    EXPECT_EQ(drag->slotsOf(false, 0)[17], 17) << "outside the window they are to go back";
    const QStringList before = labels();
    drag->drop();
    EXPECT_EQ(labels(), before);
}

} // namespace
} // namespace tessellar::test
