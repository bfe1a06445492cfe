#pragma once

#include "app/launcher_window.h"
#include "app/pager_item.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_settings.h"
#include "launcher/live_layout.h"
#include "sample/mac_builder.h"
#include "support/items.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <QJSValue>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace tessellar::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What QML has complained of since the program began, or since somebody emptied it.
QStringList& qmlWarnings();

/// A window on a small Mac, driven as a user drives it: with the pointer, the wheel and keys.
class LauncherFixture : public testing::Test {
protected:
    LauncherFixture() {
        qmlWarnings().clear();
        mac.tool(u"/usr/bin/open"_s, exited(0));
    }
    ~LauncherFixture() override {
        window.reset();
        EXPECT_THAT(qmlWarnings(), testing::IsEmpty());
    }

    void install(const QStringList& names, const QByteArray& icon = {}) {
        for (const QString& name : names)
            builder.addApplication(
                {.name = name, .identifier = u"org.example."_s + name.toLower(), .icon = icon});
    }
    /// Names "A01", "A02" and so on.
    static QStringList manyNames(int count) {
        QStringList names;
        for (int i = 1; i <= count; ++i)
            names += u"A%1"_s.arg(i, 2, 10, QLatin1Char('0'));
        return names;
    }
    void store(const Pages& pages) {
        const QByteArray bytes =
            json::write(json::encode(LayoutDocument{.pages = pages, .hiddenKeys = {}}));
        for (const auto* file : {"layout.json", "layout-windowed.json"})
            mac.write(mac.machine.places.applicationFolder() + u'/' + QLatin1StringView(file), bytes);
    }

    void start(QSize size = {1280, 800}, LauncherWindowMode mode = LauncherWindowMode::fullScreen) {
        window = std::make_unique<LauncherWindow>(mac.machine, mode, size);
        bool isComplete = false;
        window->whenComplete([&] { isComplete = true; });
        window->show();
        ASSERT_TRUE(QTest::qWaitFor([&] { return isComplete; }));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view()));
    }

    LauncherController& launcher() { return window->controller(); }
    LauncherViewModel& viewModel() { return window->viewModel(); }
    Panels& panels() { return *launcher().panels(); }
    LauncherEditor& editor() { return viewModel().editor(); }
    LauncherWindowMode mode() { return viewModel().shown().mode(); }
    QQuickView& view() { return window->view(); }
    /// A frame lays the items out.
    void layOut() { (void)window->photograph(); }
    void set(const QString& setting, const QJsonValue& value) {
        ASSERT_TRUE(mac.machine.settings.set(setting, value));
        viewModel().settings().stored.notify();
    }

    /// The item of a tile, by its label; null when no page that exists shows it.
    QQuickItem* tile(const QString& label) {
        return seen([&](QQuickItem* item) {
            return item->property("tileId").isValid() && item->property("label") == label;
        });
    }
    bool isSeen(const QString& label) {
        return QTest::qWaitFor([&] { return tile(label); });
    }
    QPoint middle(const QQuickItem* item) {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    /// The middle of a tile, or beside it.
    QPoint at(const QString& label, QPoint away = {}) { return middle(tile(label)) + away; }
    void click(const QString& label, Qt::KeyboardModifiers modifiers = {}) {
        ASSERT_TRUE(tile(label)) << label.toStdString();
        QTest::mouseClick(&view(), Qt::LeftButton, modifiers, at(label));
    }
    void clickAt(QPoint point) { QTest::mouseClick(&view(), Qt::LeftButton, {}, point); }
    void rightClick(const QString& label) {
        ASSERT_TRUE(tile(label)) << label.toStdString();
        rightClickAt(at(label));
    }
    void rightClickAt(QPoint point) { QTest::mouseClick(&view(), Qt::RightButton, {}, point); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&view(), key, modifiers);
    }
    void press(std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys)
            press(key);
    }
    void undo() { press(Qt::Key_Z, Qt::ControlModifier); }
    void redo() { press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
    void type(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClick(&view(), letter.toLatin1());
    }
    /// An item that can be seen and has this value as a property.
    QQuickItem* itemWith(const char* property, const QVariant& value) {
        return seen([&](QQuickItem* item) { return item->property(property) == value; });
    }
    QQuickItem* named(const QString& objectName) { return itemWith("objectName", objectName); }
    bool comes(const QString& objectName) {
        return QTest::qWaitFor([&] { return named(objectName); });
    }
    bool goes(const QString& objectName) {
        return QTest::qWaitFor([&] { return !named(objectName); });
    }
    /// With Escape.
    void leave(const QString& sheet) {
        press(Qt::Key_Escape);
        ASSERT_TRUE(goes(sheet)) << sheet.toStdString();
    }
    void clickNamed(const QString& objectName) {
        ASSERT_TRUE(comes(objectName)) << objectName.toStdString();
        layOut();
        clickAt(middle(named(objectName)));
    }
    /// Chooses from the menu of the grid.
    void chooseInGrid(const QString& title) {
        rightClickAt({20, 400});
        choose(title);
    }
    void chooseAt(const QString& label, const QString& title) {
        rightClick(label);
        choose(title);
    }
    void answer(bool accepted) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return launcher().alert()->isOpen(); }));
        launcher().alert()->answer(accepted);
    }
    /// A line of the menu that is open.
    QQuickItem* line(const QString& title) {
        return seen([&](QQuickItem* item) {
            QVariant data = item->property("modelData");
            if (data.userType() == qMetaTypeId<QJSValue>())
                data = data.value<QJSValue>().toVariant();
            return data.toMap().value(u"title"_s) == title;
        });
    }
    void choose(const QString& title) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return line(title); })) << title.toStdString();
        clickAt(middle(line(title)));
    }
    /// Moves the pointer with the button held, in small steps as a hand does.
    void carry(QPoint from, QPoint to) {
        for (int step = 1; step <= 8; ++step)
            QTest::mouseMove(&view(), from + (to - from) * step / 8);
    }
    void lift(QPoint from, QPoint to) {
        QTest::mousePress(&view(), Qt::LeftButton, {}, from);
        carry(from, to);
    }
    void release(QPoint at) { QTest::mouseRelease(&view(), Qt::LeftButton, {}, at); }
    void drag(QPoint from, QPoint to) {
        lift(from, to);
        release(to);
    }
    QString shownTiles() { return sketch(viewModel().shown().pages()); }
    void wheel(QPoint angle) {
        const QPointF at(view().width() / 2.0, view().height() / 2.0);
        QWheelEvent event(at, view().mapToGlobal(at), {}, angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        event.setTimestamp(_now += 1000);
        QCoreApplication::sendEvent(&view(), &event);
    }
    void swipe(int pixels) {
        // Between the tiles and the dots: what begins on a tile lifts it.
        const QPoint from((view().width() - pixels) / 2, view().height() - 70);
        QTest::mousePress(&view(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(&view(), from + QPoint(pixels * step / 10, 0));
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, from + QPoint(pixels, 0));
    }
    /// Lets pages that move and folders that open come to rest.
    bool rests() {
        return QTest::qWaitFor([&] {
            bool resting = true;
            forEachItem(view().rootObject(), [&](QQuickItem* item) {
                if (auto* pager = qobject_cast<PagerItem*>(item))
                    resting = resting && !pager->isMoving();
                if (item->objectName() == u"folderOverlay")
                    resting = resting && item->property("progress").toDouble() ==
                                             (launcher().folder()->isOpen() ? 1 : 0);
            });
            return resting;
        });
    }
    void openFolder(const QString& label) {
        click(label);
        ASSERT_TRUE(launcher().folder()->isOpen());
        ASSERT_TRUE(rests());
    }
    /// The bundles that were handed to the system to open.
    QStringList opened() {
        QStringList paths;
        for (const Command& command : mac.commands.commands())
            if (!command.arguments.isEmpty())
                paths += FileSystem::fileName(QString::fromUtf8(command.arguments.last()));
        return paths;
    }
    /// Waits until something is opened; true when it is this application alone.
    bool opens(const QString& name) {
        return QTest::qWaitFor([&] { return !opened().isEmpty(); }) &&
               opened() == QStringList{name + u".app"_s};
    }
    QString selectedLabel() {
        const LaunchpadItem* item =
            viewModel().shown().navigation().selectedItemID()
                ? viewModel().shown().item(*viewModel().shown().navigation().selectedItemID())
                : nullptr;
        return !item ? QString() : item->app() ? item->app()->name : item->folder()->name;
    }

    TestMachine mac;
    sample::MacBuilder builder{mac.root.path()};
    std::unique_ptr<LauncherWindow> window;

    static void forEachItem(QQuickItem* item, const std::function<void(QQuickItem*)>& visit) {
        visit(item);
        for (QQuickItem* child : item->childItems())
            forEachItem(child, visit);
    }

private:
    /// The last of those that can be seen.
    template <typename Is>
    QQuickItem* seen(Is is) {
        QQuickItem* found = nullptr;
        forEachItem(view().rootObject(), [&](QQuickItem* item) {
            if (item->isVisible() && is(item))
                found = item;
        });
        return found;
    }

    ulong _now = 1000;
};

} // namespace tessellar::test
