#pragma once

#include "app/launcher_controller.h"
#include "platform/clock_watch.h"
#include "platform/desktop/desktop_pasteboard.h"

#include <QQuickView>

#include <functional>

namespace tessellar {

/// The launcher's window on the screen, with everything in it.
class LauncherWindow final : public QObject {
    Q_OBJECT

public:
    /// Starts the view model and makes the window while it runs. `screen` is the size of a full-screen
    /// window; empty for that of the screen.
    LauncherWindow(Machine& machine, LauncherWindowMode mode, QSize screen = {});
    ~LauncherWindow() override;

    LauncherViewModel& viewModel() { return _viewModel; }
    LauncherController& controller() { return _controller; }
    TileIcons& icons() { return _icons; }
    QQuickView& view() { return _view; }

    void show();
    void hide();
    /// Hides it and says so, as the user does.
    void close();
    /// Offers ways to arrange what is installed, where there was no arrangement before; after an update
    /// of the launcher itself says what is new, as its changelog has it.
    void welcome(const QString& changelog, const QString& version);
    /// From now on it fades when it closes, and when it is shown again.
    void fadeWhenClosed() { _fades = true; }
    /// Shows everything in the language that texts are given in now.
    void retranslate();
    /// Follows the language and region of the system's settings.
    void followSystemLocale();
    /// What depends on the day is looked at again when the clock leaps.
    void followClock(std::unique_ptr<ClockWatch> watch);
    /// From now on the program ends when its window has gone, but not before updates that run or wait
    /// are over: `ended` says when. A window that is shown again meanwhile stays.
    void endWhenClosed();

    /// True once the arrangement is loaded and the icons of the visible page are decoded.
    bool isComplete() const;
    /// Calls `done` once, after the first frame that shows all of that.
    void whenComplete(std::function<void()> done);
    /// The window as it would be drawn now.
    QImage photograph();

Q_SIGNALS:
    void firstFrame();
    void closed();
    void ended();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void load();
    QScreen* wantedScreen() const;
    void fitToScreen();
    void followScreen();
    void remember();
    bool commitNameBeside(QEvent* event);
    void setAway(bool isAway);
    void endIfIdle();

    Settings& _settings;
    Scheduler& _scheduler;
    DesktopPasteboard _pasteboard;
    LauncherViewModel _viewModel;
    TileIcons _icons;
    Subscription _iconsChanged;
    LauncherController _controller;
    QQuickView _view;
    QSize _screen;
    QMetaObject::Connection _screenChanged;
    QRect _fitted; ///< what the window was given when it was last laid out
    LauncherWindowMode _mode;
    bool _swallowsClick = false; ///< the press was for a name that was being typed
    bool _hasDrawn = false;
    bool _fades = false;
    Timer _leaving;
    std::unique_ptr<ClockWatch> _clock;
    Subscription _clockLeapt;
    Subscription _updateRan;
    Subscription _bootstrapped;
    std::function<void()> _whenComplete;
};

} // namespace tessellar
