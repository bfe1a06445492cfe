#pragma once

#include "app/launcher_window.h"
#include "app/pager_item.h"
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

/// What QML has complained of since the program began, or since somebody emptied it.
QStringList& qmlWarnings();

/// A window on a small Mac, driven as a user drives it: with the pointer, the wheel and keys.
class LauncherFixture : public testing::Test {
protected:
    LauncherFixture() {
        qmlWarnings().clear();
        mac.tool(QStringLiteral("/usr/bin/open"), exited(0));
    }
    ~LauncherFixture() override {
        window.reset();
        EXPECT_THAT(qmlWarnings(), testing::IsEmpty());
    }

    void install(const QStringList& names, const QByteArray& icon = {}) {
        for (const QString& name : names)
            builder.addApplication({.name = name,
                                    .identifier = QStringLiteral("org.example.") + name.toLower(),
                                    .icon = icon});
    }
    /// Names "A01", "A02" and so on.
    static QStringList manyNames(int count) {
        QStringList names;
        for (int i = 1; i <= count; ++i)
            names += QStringLiteral("A%1").arg(i, 2, 10, QLatin1Char('0'));
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
    QQuickView& view() { return window->view(); }

    /// The item of a tile, by its label; null when no page that exists shows it.
    QQuickItem* tile(const QString& label) { return tileBelow(view().rootObject(), label); }
    QPoint middle(const QQuickItem* item) {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    void click(const QString& label) {
        QQuickItem* item = tile(label);
        ASSERT_TRUE(item) << label.toStdString();
        clickAt(middle(item));
    }
    void clickAt(QPoint point) { QTest::mouseClick(&view(), Qt::LeftButton, {}, point); }
    void rightClick(const QString& label) {
        QQuickItem* item = tile(label);
        ASSERT_TRUE(item) << label.toStdString();
        QTest::mouseClick(&view(), Qt::RightButton, {}, middle(item));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&view(), key, modifiers);
    }
    void type(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClick(&view(), letter.toLatin1());
    }
    /// An item that can be seen and has this value as a property.
    QQuickItem* itemWith(const char* property, const QVariant& value) {
        QQuickItem* found = nullptr;
        forEachItem(view().rootObject(), [&](QQuickItem* item) {
            if (item->property(property) == value && item->isVisible())
                found = item;
        });
        return found;
    }
    void clickNamed(const QString& objectName) {
        QQuickItem* item = itemWith("objectName", objectName);
        ASSERT_TRUE(item) << objectName.toStdString();
        clickAt(middle(item));
    }
    /// A line of the menu that is open.
    QQuickItem* line(const QString& title) {
        QQuickItem* found = nullptr;
        forEachItem(view().rootObject(), [&](QQuickItem* item) {
            QVariant data = item->property("modelData");
            if (data.userType() == qMetaTypeId<QJSValue>())
                data = data.value<QJSValue>().toVariant();
            if (data.toMap().value(u"title"_qs) == title && item->isVisible())
                found = item;
        });
        return found;
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
    void drag(QPoint from, QPoint to) {
        QTest::mousePress(&view(), Qt::LeftButton, {}, from);
        carry(from, to);
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, to);
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
    /// The bundles that were handed to the system to open.
    QStringList opened() {
        QStringList paths;
        for (const Command& command : mac.commands.commands())
            if (!command.arguments.isEmpty())
                paths += FileSystem::fileName(QString::fromUtf8(command.arguments.last()));
        return paths;
    }
    QString selectedLabel() {
        const LaunchpadItem* item =
            viewModel().shown().selectedItemID()
                ? viewModel().shown().item(*viewModel().shown().selectedItemID())
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
    static QQuickItem* tileBelow(QQuickItem* root, const QString& label) {
        QQuickItem* found = nullptr;
        forEachItem(root, [&](QQuickItem* item) {
            if (item->property("tileId").isValid() && item->property("label") == label &&
                item->isVisible())
                found = item;
        });
        return found;
    }

    ulong _now = 1000;
};

} // namespace tessellar::test
