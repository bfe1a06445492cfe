#pragma once

#include "app/launcher_controller.h"
#include "platform/desktop/desktop_pasteboard.h"

#include <QQuickView>

#include <functional>

namespace tessellar {

/// The launcher's window on the screen, with everything in it.
class LauncherWindow final : public QObject {
    Q_OBJECT

public:
    /// Begins the view model's start-up and makes the window while it runs. `screen` is the size of a
    /// full-screen window; empty for that of the screen.
    LauncherWindow(Machine& machine, LauncherWindowMode mode, QSize screen = {});
    ~LauncherWindow() override;

    LauncherViewModel& viewModel() { return _viewModel; }
    LauncherController& controller() { return _controller; }
    TileIcons& icons() { return _icons; }
    QQuickView& view() { return _view; }

    void show();
    void hide();
    /// Goes along when the user chooses another language or region in the system's settings.
    void followSystemLocale();

    /// True when the arrangement is there and the icons of the visible page are decoded.
    bool isComplete() const;
    /// Calls back once, after a frame that shows all of that has been drawn.
    void whenComplete(std::function<void()> done);
    /// The window as it would be drawn now.
    QImage photograph();

Q_SIGNALS:
    void firstFrame();
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void load();
    void fitToScreen();

    DesktopPasteboard _pasteboard;
    LauncherViewModel _viewModel;
    TileIcons _icons;
    Subscription _iconsChanged;
    LauncherController _controller;
    QQuickView _view;
    QSize _screen;
    bool _hasDrawn = false;
    std::function<void()> _whenComplete;
};

} // namespace tessellar
