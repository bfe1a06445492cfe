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
    /// Follows the language and region of the system's settings.
    void followSystemLocale();

    /// True once the arrangement is loaded and the icons of the visible page are decoded.
    bool isComplete() const;
    /// Calls `done` once, after the first frame that shows all of that.
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
