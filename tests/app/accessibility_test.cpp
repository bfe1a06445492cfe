#include "app/accessible_focus.h"
#include "launcher/launcher_arrangements.h"
#include "launcher_fixture.h"

#include <QAccessible>
#include <QSet>

#include <algorithm>
#include <array>

namespace tessellar::test {
namespace {

/// The actions that open the sheets: of the grid, and of a tile.
const QStringList gridSheets{u"settings"_s,     u"updates"_s,        u"backups"_s,
                             u"arrangements"_s, u"unplaced"_s,       u"pastRemovals"_s,
                             u"keys"_s,         u"newSmartFolder"_s, u"arrange"_s};
const QStringList tileSheets{u"information"_s, u"changeIcon"_s, u"moveToTrash"_s};

/// The window as a screen reader meets it: the tree of what says of itself what it is.
class AccessibilityTest : public LauncherFixture {
protected:
    using Role = QAccessible::Role;

    static std::string nameOf(QAccessibleInterface* thing) {
        const auto* object = thing->object();
        return u"%1 “%2” (%3)"_s
            .arg(QString::number(static_cast<int>(thing->role())), thing->text(QAccessible::Name),
                 object ? QString::fromLatin1(object->metaObject()->className()) : QString())
            .toStdString();
    }
    /// What can be read or worked at in the sheet, and where each is drawn, as far as it is seen.
    QList<std::pair<QQuickItem*, QRectF>> contents() {
        QList<std::pair<QQuickItem*, QRectF>> all;
        forEachItem(named(u"sheetCard"_s), [&](QQuickItem* item) {
            const bool isText = item->inherits("QQuickText") && item->opacity() > 0 &&
                                !item->property("text").toString().isEmpty();
            if (!item->isVisible() ||
                (!isText && !item->inherits("QQuickControl") && !item->inherits("QQuickTextInput") &&
                 !item->inherits("QQuickTextEdit") && !item->inherits("tessellar::ImageItem")))
                return;
            QRectF drawn = item->boundingRect();
            if (isText && item->rotation() == 0) { // no more of its width than the words take
                drawn.adjust(item->property("leftPadding").toDouble(), 0,
                             -item->property("rightPadding").toDouble(), 0);
                const int alignment = item->property("effectiveHorizontalAlignment").toInt();
                const double width = std::min(drawn.width(), item->property("contentWidth").toDouble());
                drawn.setLeft(alignment == Qt::AlignRight     ? drawn.right() - width
                              : alignment == Qt::AlignHCenter ? drawn.center().x() - width / 2
                                                              : drawn.left());
                drawn.setWidth(width);
            }
            QRectF seen = item->mapRectToScene(drawn);
            for (QQuickItem* part = item->parentItem(); part; part = part->parentItem())
                if (part->clip())
                    seen &= part->mapRectToScene(part->boundingRect());
            if (seen.width() > 1 && seen.height() > 1)
                all.append({item, seen});
        });
        return all;
    }
    QStringList overlaps() {
        QStringList found;
        const auto all = contents();
        const auto words = [](const QQuickItem* item) {
            return u"%1 “%2”"_s.arg(
                QString::fromLatin1(item->metaObject()->className()).section(u'_', 0, 0),
                item->property("text").toString().left(30));
        };
        for (qsizetype i = 0; i < all.size(); ++i)
            for (qsizetype k = i + 1; k < all.size(); ++k) {
                const auto& [one, where] = all[i];
                const auto& [other, there] = all[k];
                const QRectF both = where & there;
                if (one->isAncestorOf(other) || other->isAncestorOf(one) || both.width() <= 1.5 ||
                    both.height() <= 3) // lines of text have air above and below
                    continue;
                found += words(one) + u" and "_s + words(other);
            }
        return found;
    }
    static bool isForHands(Role role) {
        constexpr std::array roles{Role::Button,      Role::ButtonMenu,  Role::CheckBox,
                                   Role::RadioButton, Role::MenuItem,    Role::PageTab,
                                   Role::Slider,      Role::EditableText};
        return std::ranges::find(roles, role) != roles.end();
    }

    /// All that can be seen of the tree.
    std::vector<QAccessibleInterface*> things() {
        std::vector<QAccessibleInterface*> found;
        visit(QAccessible::queryAccessibleInterface(&view()), found);
        return found;
    }
    QAccessibleInterface* thing(Role role, const QString& name) {
        for (QAccessibleInterface* each : things())
            if (each->role() == role && each->text(QAccessible::Name) == name)
                return each;
        return nullptr;
    }

    /// What every state of the window owes to those who do not see it.
    void expectAccessible(const char* where = "") {
        SCOPED_TRACE(where);
        QSet<const QObject*> reached;
        for (QAccessibleInterface* each : things()) {
            reached.insert(each->object());
            const bool hasName = !each->text(QAccessible::Name).trimmed().isEmpty();
            if (isForHands(each->role()) || each->role() == Role::Dialog ||
                each->role() == Role::AlertMessage || each->role() == Role::ListItem) {
                EXPECT_TRUE(hasName) << nameOf(each) << " has no name";
            }
            if (isForHands(each->role()) && each->role() != Role::EditableText &&
                each->role() != Role::Slider && !each->state().disabled) {
                EXPECT_TRUE(each->actionInterface() &&
                            !each->actionInterface()->actionNames().isEmpty())
                    << nameOf(each) << " cannot be pressed";
            }
        }
        forEach(view().rootObject(), [&](QQuickItem* item) {
            // Their children are items as well, but what they are is said by themselves.
            if (!item->activeFocusOnTab() && !takesClicks(item))
                return;
            const QQuickItem* said = item;
            while (said && !reached.contains(said))
                said = said->parentItem();
            QAccessibleInterface* spokenFor =
                said ? QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(said)) : nullptr;
            EXPECT_TRUE(spokenFor && spokenFor->role() != Role::NoRole)
                << item->metaObject()->className() << " at " << item->mapToScene({}).x() << ", "
                << item->mapToScene({}).y() << " is not in the tree";
            if (item->activeFocusOnTab() && said == item) {
                EXPECT_FALSE(spokenFor->text(QAccessible::Name).isEmpty())
                    << item->metaObject()->className() << " has the keyboard and no name";
            }
        });
    }

    /// The tile is A01.
    void open(const QString& sheet) {
        launcher().input()->openMenu(
            tileSheets.contains(sheet) ? tile(u"A01"_s)->property("tileId").toString() : QString(),
            {100, 100});
        launcher().input()->menu()->close();
        Q_EMIT launcher().input()->menu()->chosen(sheet);
        ASSERT_TRUE(comes(u"sheetCard"_s));
    }
    bool isWithinWindow(QQuickItem* item) {
        return item &&
               QRectF({}, QSizeF(view().size())).contains(item->mapRectToScene(item->boundingRect()));
    }
    void press(QAccessibleInterface* thing) {
        thing->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    using LauncherFixture::press;

private:
    static void visit(QAccessibleInterface* thing, std::vector<QAccessibleInterface*>& found) {
        if (!thing || !thing->isValid() || thing->state().invisible)
            return;
        found.push_back(thing);
        for (int i = 0; i < thing->childCount(); ++i)
            visit(thing->child(i), found);
    }
    static void forEach(QQuickItem* item, const std::function<void(QQuickItem*)>& visit) {
        if (!item->isVisible() || !item->isEnabled() || item->opacity() == 0)
            return;
        visit(item);
        for (QQuickItem* child : item->childItems())
            forEach(child, visit);
    }
    /// An area for a finger on its own: not the window's whole, which only closes what lies over it.
    bool takesClicks(const QQuickItem* item) {
        return item->inherits("QQuickMouseArea") && item->width() < view().width() / 2.0 &&
               item->height() < view().height() / 2.0;
    }
};

TEST_F(AccessibilityTest, TilesSayWhatTheyAreAndHowTheyStand) {
    install(manyNames(50));
    start();
    QAccessibleInterface* first = thing(Role::Button, u"A01"_s);
    ASSERT_TRUE(first);
    EXPECT_TRUE(first->state().focusable);
    EXPECT_FALSE(first->state().selected);
    EXPECT_TRUE(first->state().selectable);
    if (QAccessibleInterface* last = thing(Role::Button, u"A50"_s)) {
        EXPECT_TRUE(last->state().offscreen) << "on a page that is not shown";
    }
    press(Qt::Key_Right);
    const QString selected = selectedLabel();
    QAccessibleInterface* focused = thing(Role::Button, selected);
    ASSERT_TRUE(focused) << selected.toStdString();
    EXPECT_TRUE(focused->state().focused);
    EXPECT_TRUE(focused->state().selected);
    EXPECT_TRUE(thing(Role::PageTab, u"Page 2"_s));
    expectAccessible("grid");
    press(first);
    EXPECT_TRUE(opens(u"A01"_s));
}

/// What a screen reader says while keys are pressed.
TEST_F(AccessibilityTest, WhatKeysLeadToIsSaid) {
    install({u"Ash"_s, u"Beech"_s, u"Cedar"_s});
    start();
    const auto says = [&](const QString& name) {
        QString said;
        const bool isSaid = QTest::qWaitFor([&] {
            auto* thing = QAccessible::queryAccessibleInterface(AccessibleFocus::item());
            return (said = thing ? thing->text(QAccessible::Name) : QString()) == name;
        });
        return isSaid ? testing::AssertionSuccess()
                      : testing::AssertionFailure() << "it says " << said.toStdString();
    };
    press(Qt::Key_Right);
    EXPECT_TRUE(says(u"Ash"_s));
    press(Qt::Key_Right);
    EXPECT_TRUE(says(u"Beech"_s));
    press({Qt::Key_Menu, Qt::Key_Down});
    EXPECT_TRUE(says(u"Open"_s));
    press(Qt::Key_Escape);
    EXPECT_TRUE(says(u"Beech"_s)) << "where the menu was opened";
    type(u"ced"_s);
    EXPECT_TRUE(says(u"Cedar"_s)) << "the best of what is found";
    press({Qt::Key_Escape, Qt::Key_Question, Qt::Key_Down});
    EXPECT_TRUE(says(u"Return: Open what is selected, or found"_s));
}

TEST_F(AccessibilityTest, FoldersSearchAndMenusAreInTheTree) {
    install({u"Ash"_s, u"Beech"_s, u"Cedar"_s, u"Dogwood"_s});
    start();
    rightClick(u"Ash"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return line(u"Hide"_s); }));
    QAccessibleInterface* hide = thing(Role::MenuItem, u"Hide"_s);
    ASSERT_TRUE(hide);
    EXPECT_FALSE(hide->state().disabled);
    expectAccessible("menu");
    press(Qt::Key_Escape);
    type(u"bee"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return tile(u"Beech"_s) && !tile(u"Cedar"_s); }));
    // It is made when there is time.
    ASSERT_TRUE(QTest::qWaitFor([&] { return thing(Role::EditableText, u"Search"_s); }));
    EXPECT_EQ(thing(Role::EditableText, u"Search"_s)->text(QAccessible::Value), u"bee");
    EXPECT_TRUE(thing(Role::Button, u"Beech"_s));
    expectAccessible("search");
    press(Qt::Key_Escape);
    const Page page = viewModel().shown().pages().first();
    ASSERT_TRUE(editor().groupTiles(mode(), {page[0].id()}, page[1].id()));
    openFolder(viewModel().shown().pages().first().first().folder()->name);
    expectAccessible("folder");
}

TEST_F(AccessibilityTest, AlertsAreSaidWithTheirAnswers) {
    install(manyNames(2));
    start();
    viewModel().messages().ask({.title = u"Reset?"_s, .text = u"All goes."_s, .accept = u"Reset"_s},
                               [](bool) {});
    ASSERT_TRUE(QTest::qWaitFor([&] { return thing(Role::Button, u"Reset"_s); }));
    QAccessibleInterface* alert = thing(Role::AlertMessage, u"Reset?"_s);
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->text(QAccessible::Description), u"All goes.");
    EXPECT_TRUE(thing(Role::Button, u"Cancel"_s));
    expectAccessible("alert");
    press(thing(Role::Button, u"Cancel"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !launcher().alert()->isOpen(); }));
}

TEST_F(AccessibilityTest,
       EachSheetSaysWhatIsInItAndNothingOverlapsWhicheverWayAndHoweverLargeOneReads) {
    install(manyNames(6));
    start({1280, 900});
    ASSERT_TRUE(editor().hideApps(mode(), {viewModel().shown().tileOf(u"org.example.a06"_s)->id}));
    viewModel().arrangements().save(mode(), u"Mine"_s, [](const auto&) {});
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft})
        for (const double scale : {1.0, 1.4}) {
            QGuiApplication::setLayoutDirection(direction);
            set(u"textScale"_s, scale);
            for (const QString& sheet : gridSheets + tileSheets) {
                SCOPED_TRACE(sheet.toStdString() + " at " + std::to_string(scale) +
                             (direction == Qt::RightToLeft ? ", mirrored" : ""));
                open(sheet);
                QStringList found; // until all has come to its place
                EXPECT_TRUE(QTest::qWaitFor([&] { return (found = overlaps()).isEmpty(); }, 2000))
                    << found.join(u'\n').toStdString();
                if (direction == Qt::LeftToRight && scale == 1) {
                    EXPECT_TRUE(std::ranges::any_of(things(), [](auto* each) {
                        return each->role() == Role::Dialog && !each->text(QAccessible::Name).isEmpty();
                    }));
                    expectAccessible();
                }
                leave(u"sheetCard"_s);
            }
        }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(AccessibilityTest, WhatComesAndGoesFitsTheSmallestWindow) {
    const QString longName(240, u'W');
    install({longName});
    start({320, 240});
    ASSERT_TRUE(isSeen(longName));
    QTest::mouseMove(&view(), at(longName));
    ASSERT_TRUE(comes(u"tip"_s));
    EXPECT_TRUE(isWithinWindow(named(u"tip"_s)));
    rightClick(longName);
    ASSERT_TRUE(comes(u"menuPanel"_s));
    EXPECT_TRUE(isWithinWindow(named(u"menuPanel"_s)));
    press(Qt::Key_Escape);
    const QString sentence = longName.left(60);
    viewModel().messages().showNotice(sentence);
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("shown", sentence); }));
    EXPECT_TRUE(isWithinWindow(itemWith("shown", sentence)));
}

/// For who reads from the right the first tile is at the right, pages come from the left, and the hand
/// and the keys find everything where it is drawn.
TEST_F(AccessibilityTest, TheWindowIsMirroredForWhoReadsFromTheRight) {
    struct Direction {
        Direction() { QGuiApplication::setLayoutDirection(Qt::RightToLeft); }
        ~Direction() { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }
    } const direction;
    install(manyNames(50));
    start();
    ASSERT_TRUE(rests());
    EXPECT_GT(at(u"A01"_s).x(), at(u"A02"_s).x());
    EXPECT_GT(at(u"A01"_s).x(), view().width() / 2);
    press({Qt::Key_Left, Qt::Key_Left});
    EXPECT_EQ(selectedLabel(), u"A02") << "an arrow goes where it points";
    drag(at(u"A01"_s), at(u"A03"_s, {-int(tile(u"A03"_s)->width()) / 2, 0}));
    EXPECT_TRUE(shownTiles().startsWith(u"A02 A03 A01"_s)) << shownTiles().toStdString();
    swipe(400);
    ASSERT_TRUE(rests());
    EXPECT_EQ(launcher().grid()->page(), 1) << "the next page comes from the left";
    click(u"A41"_s);
    EXPECT_TRUE(opens(u"A41"_s));
}

} // namespace
} // namespace tessellar::test
