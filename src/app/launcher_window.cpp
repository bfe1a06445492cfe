#include "app/launcher_window.h"

#include "launcher/launcher_history.h"
#include "launcher/launcher_icons.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_settings.h"
#include "launcher/launcher_updates.h"
#include "launcher/layout_proposals.h"
#include "launcher/library_watch.h"
#include "launcher/release_notes.h"
#include "launcher/smart_folder_library.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QScreen>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>

Q_IMPORT_QML_PLUGIN(TessellarPlugin)

namespace tessellar {

/// The pause in drawing that counts as idle, as between words or drags.
static constexpr std::chrono::milliseconds quietTime{300};

/// Exactly as long as the fade.
static constexpr std::chrono::milliseconds fadeTime{200};

LauncherWindow::LauncherWindow(Machine& machine, LauncherWindowMode mode, QSize screen)
    : _machine(machine)
    , _scheduler(machine.scheduler)
    , _viewModel(machine, mode, &_pasteboard)
    , _icons(machine.files, machine.workers)
    , _controller(_viewModel, _icons, machine)
    , _screen(screen)
    , _mode(mode) {
    // Reading the system's list of fonts takes longer than creating all items of the window.
    machine.workers.submit(Lane::decoding, {},
                           [](std::stop_token) { (void)QFontDatabase::families(); });
    _view.setResizeMode(QQuickView::SizeRootObjectToView);
    _view.setTitle(QStringLiteral("Tessellar"));
    _view.setColor(QColor(13, 15, 27));
    fitToScreen();
    _icons.loader().setCustomIcons(
        [this](const QString& appKey) { return _viewModel.icons().path(appKey); });
    _iconsChanged = _viewModel.icons().changed.connect([this](const QSet<QString>& appKeys) {
        for (const QString& appKey : appKeys)
            _icons.loader().reload(appKey);
    });
    // The folders are scanned and the backdrop is drawn while QML loads.
    _controller.backdrop()->prepare((QSizeF(_view.size()) * _view.devicePixelRatio()).toSize());
    _viewModel.start();
    // In a turn of its own; one that starts hidden is ready when it is wanted.
    QMetaObject::invokeMethod(this, &LauncherWindow::load, Qt::QueuedConnection);

    const auto resized = [this] { _controller.setWindow(_view.size(), _view.devicePixelRatio()); };
    connect(&_view, &QWindow::widthChanged, this, resized);
    connect(&_view, &QWindow::heightChanged, this, resized);
    connect(&_view, &QWindow::screenChanged, this, &LauncherWindow::followScreen);
    followScreen();
    connect(&_controller, &LauncherController::modeChanged, this, [this] {
        if (const auto now = _viewModel.shown().mode(); std::exchange(_mode, now) != now) {
            const QString key = QStringLiteral("window.mode");
            if (_viewModel.settings().expected().value(key) != json::rawValue(now))
                _viewModel.settings().store({{key, json::rawValue(now)}});
            _fitted = {};
        }
        fitToScreen();
        if (_view.isVisible())
            show();
    });
    connect(&_controller, &LauncherController::closeRequested, this, &LauncherWindow::close);
    _view.installEventFilter(this); // for its own close button, and for clicks beside a name field
    // Left alone, QML collects garbage while the user is typing or dragging. A blinking cursor makes
    // none.
    _quiet.setSingleShot(true);
    _quiet.setInterval(quietTime);
    connect(&_quiet, &QTimer::timeout, _view.engine(), &QQmlEngine::collectGarbage);
    connect(&_view, &QQuickWindow::frameSwapped, this, [this] {
        if (_hasInput || _quiet.isActive())
            _quiet.start();
        _hasInput = false;
        if (!std::exchange(_hasDrawn, true)) {
            _viewModel.libraryWatch().start();
            Q_EMIT firstFrame();
        }
        if (_whenComplete && isComplete())
            std::exchange(_whenComplete, nullptr)();
    });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                // An updater may prompt for a password without reporting it.
                if (state != Qt::ApplicationActive && _view.isVisible() && !_controller.isWindowed() &&
                    _viewModel.updates().isExternalUpdaterRunning())
                    close();
            });
    _viewModel.setPresenter({.show = [this] { show(); },
                             .dismiss = [this] { close(); },
                             .isShown = [this] { return _view.isVisible(); },
                             .isBusy = [this] { return _controller.input()->isBusy(); },
                             .perform =
                                 [this](const ActionTarget& target, ActionRequest request) {
                                     return _controller.input()->continueAction(target, request);
                                 },
                             // Deferred, so that the command is answered first.
                             .quit = [] { QTimer::singleShot(0, qApp, &QGuiApplication::quit); }});
    _controller.setWindow(_view.size(), _view.devicePixelRatio());
}

LauncherWindow::~LauncherWindow() {
    remember();
    LauncherSettings::flush(_machine); // before another launcher may start
    disconnect(qGuiApp, nullptr, this, nullptr);
    // The scene refers to the controller, which is destroyed first.
    _view.setSource({});
}

void LauncherWindow::retranslate() { _view.engine()->retranslate(); }

void LauncherWindow::load() {
    if (_view.status() != QQuickView::Null)
        return;
    _view.setInitialProperties({{QStringLiteral("launcher"), QVariant::fromValue(&_controller)}});
    _view.setSource(QUrl(QStringLiteral("qrc:/qt-project.org/imports/Tessellar/qml/Main.qml")));
}

/// The screen where the user left the window, else the one with the pointer.
QScreen* LauncherWindow::wantedScreen() const {
    const auto left = _viewModel.settings().expected().integer(QStringLiteral("window.left"));
    const auto top = _viewModel.settings().expected().integer(QStringLiteral("window.top"));
    if (_controller.isWindowed() && left && top)
        if (QScreen* known =
                QGuiApplication::screenAt({static_cast<int>(*left), static_cast<int>(*top)}))
            return known;
    return QGuiApplication::screenAt(QCursor::pos());
}

void LauncherWindow::fitToScreen() {
    if (QScreen* wanted = _view.isVisible() ? nullptr : wantedScreen(); wanted && _screen.isEmpty())
        _view.setScreen(wanted);
    const QScreen* screen = _view.screen();
    const QRect area = !_screen.isEmpty() ? QRect({}, _screen)
                       : screen           ? screen->geometry()
                                          : QRect(0, 0, 1440, 900);
    if (!_controller.isWindowed()) {
        _view.setGeometry(area);
        return;
    }
    const QSize size =
        windowedSize(_viewModel.shown().settings()).toSize().boundedTo(area.size() * 0.95);
    QRect wanted(area.center() - QPoint(size.width() / 2, size.height() / 2), size);
    const auto left = _viewModel.settings().expected().integer(QStringLiteral("window.left"));
    const auto top = _viewModel.settings().expected().integer(QStringLiteral("window.top"));
    if (left && top) {
        // On a screen that still exists.
        wanted.moveLeft(std::clamp(static_cast<int>(*left), area.left(), area.right() - size.width()));
        wanted.moveTop(std::clamp(static_cast<int>(*top), area.top(), area.bottom() - size.height()));
    }
    _view.setMinimumSize({320, 240});
    // Other settings do not move the window back.
    if (std::exchange(_fitted, wanted) != wanted)
        _view.setGeometry(wanted);
}

/// A screen may be resized, or be removed with the window on it.
void LauncherWindow::followScreen() {
    disconnect(_screenChanged);
    const QScreen* screen = _view.screen();
    if (!screen || !_screen.isEmpty())
        return;
    _screenChanged = connect(screen, &QScreen::geometryChanged, this, &LauncherWindow::followScreen);
    const bool isSeen = std::ranges::any_of(QGuiApplication::screens(), [this](const QScreen* each) {
        return each->geometry().intersects(_view.geometry());
    });
    if (!_view.isVisible() || (_controller.isWindowed() && isSeen))
        return; // the user placed it there
    _fitted = {};
    fitToScreen();
}

void LauncherWindow::remember() {
    const QRect now = _view.geometry();
    if (!_controller.isWindowed() || !_view.isVisible() || now == _fitted)
        return;
    QMap<QString, QJsonValue> changes{{QStringLiteral("window.left"), now.x()},
                                      {QStringLiteral("window.top"), now.y()}};
    if (now.size() != _fitted.size()) {
        changes.insert(QStringLiteral("windowed.windowSize.width"), now.width());
        changes.insert(QStringLiteral("windowed.windowSize.height"), now.height());
    }
    _fitted = now;
    _viewModel.settings().store(changes);
}

void LauncherWindow::show() {
    load();
    _leaving.cancel();
    setAway(false);
    if (!_view.isVisible() && _hasDrawn)
        _controller.backdrop()->reload(); // it may have been hidden for days
    if (!_view.isVisible() && wantedScreen() && wantedScreen() != _view.screen())
        fitToScreen();
    if (_controller.isWindowed() || !_screen.isEmpty())
        _view.show();
    else
        _view.showFullScreen();
    _view.requestActivate();
    // The date may have changed since it was last shown.
    _viewModel.smartFolders().reevaluate();
}

void LauncherWindow::followClock(std::unique_ptr<ClockWatch> watch) {
    _clock = std::move(watch);
    _clockLeapt = _clock->leapt.connect([this] {
        _viewModel.smartFolders().reevaluate();
        _viewModel.updates().settingsChanged(); // a check may have come due meanwhile
    });
}

void LauncherWindow::welcome(const QString& changelog, const QString& version) {
    const auto offer = [this, changelog, version] {
        const auto welcome = ReleaseNotes::welcome(
            _machine.settings, _viewModel.proposals().isUnarranged(), changelog, version);
        if (!welcome.news.isEmpty())
            _controller.sheets()->openNews(welcome.news);
        else if (welcome.asksHowToBegin)
            _controller.panels()->openArranging(true);
        // If the program ends before it is answered, it is offered again at the next start.
        const auto endOnceAnswered = [this, version] {
            if (_controller.panels()->isWelcoming())
                return;
            disconnect(_welcoming);
            _viewModel.settings().store({{ReleaseNotes::lastVersionKey, version}});
        };
        _welcoming = connect(_controller.sheets(), &Sheets::changed, this, endOnceAnswered);
        endOnceAnswered();
    };
    if (_viewModel.isBootstrapped())
        offer();
    else
        _bootstrapped = _viewModel.bootstrapped.connect(offer);
}

void LauncherWindow::followSystemLocale() { QCoreApplication::instance()->installEventFilter(this); }

/// A click beside a name field ends the editing, and does nothing else.
bool LauncherWindow::commitNameBeside(QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        QQuickItem* field = _view.activeFocusItem();
        const QPointF point = static_cast<QMouseEvent*>(event)->position();
        if (_controller.renaming()->tileId().isEmpty() || !field ||
            field->contains(field->mapFromScene(point)))
            return false;
        field->setFocus(false); // losing focus ends the editing
        return _swallowsClick = true;
    }
    case QEvent::MouseMove:
    case QEvent::MouseButtonDblClick:
        return _swallowsClick;
    case QEvent::MouseButtonRelease:
        return std::exchange(_swallowsClick, false);
    default:
        return false;
    }
}

bool LauncherWindow::eventFilter(QObject* watched, QEvent* event) {
    _hasInput = _hasInput || (watched == &_view && event->isInputEvent());
    if (watched == &_view && commitNameBeside(event))
        return true;
    if (event->type() == QEvent::LocaleChange && watched == QCoreApplication::instance())
        _viewModel.setLocale(Locale::system());
    if (event->type() == QEvent::Close && watched == &_view) {
        if (_endsWhenClosed && !_viewModel.updates().isRunning() && !mayEnd()) {
            event->ignore(); // and with it a request to quit
            return true;
        }
        remember(); // quitting closes it for good
        QMetaObject::invokeMethod(
            this, [this] { close(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void LauncherWindow::hide() {
    remember();
    _view.hide();
    _controller.startAfresh();
}

static LauncherQuestion quitQuestion() {
    return {.title = LauncherWindow::tr("Quit without saving?"),
            .text = LauncherWindow::tr("The last changes could not be saved, and would be lost."),
            .accept = LauncherWindow::tr("Quit"),
            .isDestructive = true};
}

static bool isAsking(const LauncherMessages& messages) {
    const LauncherQuestion* asked = messages.question();
    return asked && *asked == quitQuestion();
}

void LauncherWindow::endWhenClosed() {
    _endsWhenClosed = true;
    connect(_controller.alert(), &AlertPanel::savedAgain, this, [this] {
        if (isAsking(_viewModel.messages()))
            _viewModel.messages().answer(false);
    });
    connect(this, &LauncherWindow::closed, this, [this] {
        // Nobody will see the question.
        while (_viewModel.messages().question())
            _viewModel.messages().answer(false);
        endIfIdle();
    });
    _updateRan = _viewModel.updates().ran.connect([this](const QString&) {
        // Deferred: the last update still counts as running during its notification.
        QMetaObject::invokeMethod(this, &LauncherWindow::endIfIdle, Qt::QueuedConnection);
    });
}

void LauncherWindow::endIfIdle() {
    if (_view.isVisible() || _viewModel.updates().isRunning())
        return;
    if (mayEnd())
        Q_EMIT ended();
    else
        show(); // with the alert that says why
}

/// Saves all edits. If that fails, the user is told and asked.
bool LauncherWindow::mayEnd() {
    const bool wasAlerted = _controller.alert()->isOpen();
    (void)_viewModel.history().settle();
    (void)_viewModel.quit();
    if (!_viewModel.hasUnsavedEdits())
        return wasAlerted || !_controller.alert()->isOpen(); // a step may have been rolled back
    if (!isAsking(_viewModel.messages()))
        _viewModel.messages().ask(quitQuestion(), [this](bool accepted) {
            if (accepted)
                Q_EMIT ended();
        });
    return false;
}

void LauncherWindow::close() {
    const auto leave = [this] {
        hide();
        Q_EMIT closed();
    };
    if (!_fades || !_view.isVisible())
        return leave();
    setAway(true);
    _leaving = _scheduler.after(fadeTime, leave);
}

void LauncherWindow::setAway(bool isAway) {
    if (QQuickItem* root = _view.rootObject())
        root->setProperty("isAway", isAway);
}

bool LauncherWindow::isComplete() const { return _controller.isReady() && _icons.hasVisible(); }

void LauncherWindow::whenComplete(std::function<void()> done) {
    _whenComplete = std::move(done);
    _view.update();
}

QImage LauncherWindow::photograph() { return _view.grabWindow(); }

} // namespace tessellar
