#pragma once

#include "app/launcher_controller.h"
#include "platform/clock_watch.h"
#include "platform/desktop/desktop_pasteboard.h"

#include <QQuickView>
#include <QTimer>

#include <functional>

namespace tessellar {

/// The launcher's window and its contents.
class LauncherWindow final : public QObject {
    Q_OBJECT

public:
    /// Starts the view model, creating the window meanwhile. `screen` is the size of a full-screen
    /// window; empty for that of the screen.
    LauncherWindow(Machine& machine, LauncherWindowMode mode, QSize screen = {});
    ~LauncherWindow() override;

    LauncherViewModel& viewModel() { return _viewModel; }
    LauncherController& controller() { return _controller; }
    TileIcons& icons() { return _icons; }
    QQuickView& view() { return _view; }

    void show();
    void hide();
    /// Hides it and emits `closed`, as when the user closes it.
    void close();
    /// Offers initial arrangements if nothing was arranged yet; after an update of the launcher shows
    /// the changelog's news.
    void welcome(const QString& changelog, const QString& version);
    /// From now on it fades in and out.
    void fadeWhenClosed() { _fades = true; }
    /// Shows all texts in the current language.
    void retranslate();
    /// Follows the system's language and region.
    void followSystemLocale();
    /// Refreshes what depends on the day when the clock jumps.
    void followClock(std::unique_ptr<ClockWatch> watch);
    /// From now on the program ends once the window is closed, no updates are running or queued, and
    /// all edits are saved, emitting `ended`. If they cannot be saved, the window stays or comes back,
    /// and the user decides. A window shown again meanwhile stays.
    void endWhenClosed();

    /// True once the arrangement and the icons of the visible page are loaded.
    bool isComplete() const;
    /// Calls `done` once, after the first complete frame.
    void whenComplete(std::function<void()> done);
    /// The window rendered to an image.
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
    bool mayEnd();

    Machine& _machine;
    Scheduler& _scheduler;
    DesktopPasteboard _pasteboard;
    LauncherViewModel _viewModel;
    TileIcons _icons;
    Subscription _iconsChanged;
    LauncherController _controller;
    QQuickView _view;
    bool _hasInput = false; ///< since the last frame
    QTimer _quiet;          ///< until nothing has moved for a while
    QSize _screen;
    QMetaObject::Connection _screenChanged;
    QMetaObject::Connection _welcoming; ///< until the welcome has been answered
    QRect _fitted;                      ///< the geometry last assigned
    LauncherWindowMode _mode;
    bool _endsWhenClosed = false;
    bool _swallowsClick = false; ///< the press ended an edit of a name
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
