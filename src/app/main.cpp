#include "app/activation_triggers.h"
#include "app/launcher_window.h"

#include "launcher/language.h"
#include "launcher/launcher_error.h"
#include "launcher/launcher_updates.h"

#include "control/manual.h"
#include "control/running_launcher.h"
#include "control/usage_error.h"
#include "platform/desktop/launch_at_login.h"
#include "platform/host_machine.h"
#include "platform/host_traits.h"
#include "platform/interruption.h"
#include "platform/texts.h"
#include "platform/version.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QTimer>

#include <CLI/CLI.hpp>

#include <cstdio>

namespace tessellar {
namespace {

struct Arguments {
    MachineOptions machine;
    std::optional<LauncherWindowMode> mode; ///< defaults to the last one used
    QSize screen;
    QString screenshot; ///< a host path
    QStringList steps;  ///< performed before it is taken
    bool measureStart = false;
    bool isResident = false;
    bool isHidden = false;
    std::optional<bool> atLogin;
    bool usesHardware = false;
};

std::string manual(const CLI::App& app, const std::string& form) {
    ProgramOutline outline = outlineOf(app);
    outline.description = "application launcher: all applications as pages of tiles";
    outline.remarks =
        "Type anywhere to search; Return starts the best match. Press on a tile and pull to carry it; "
        "the right button opens its menu.\n\nOn a Mac it runs on that Mac. Elsewhere --root names a "
        "folder that holds a Mac's layout; tessellar-sample-mac builds one with some 130 invented "
        "applications.";
    outline.examples = "tessellar-sample-mac ~/sample-mac\ntessellar --root ~/sample-mac\n";
    return writeManual(outline, form);
}

/// The locale in a command line, even one that cannot be parsed; empty if there is none.
QString localeNamedBy(int argc, char** argv) {
    const QString option = QStringLiteral("--locale");
    for (int i = 1; i < argc; ++i) {
        const QString word = QString::fromLocal8Bit(argv[i]);
        if (word == option && i + 1 < argc)
            return QString::fromLocal8Bit(argv[i + 1]);
        if (word.startsWith(option + u'='))
            return word.sliced(option.size() + 1);
    }
    return {};
}

/// nullopt if the program must exit with `status`.
std::optional<Arguments> readArguments(int argc, char** argv, int& status) {
    CLI::App app{Texts::noop("Shows the installed applications as pages of tiles."), "tessellar"};
    std::string root;
    std::string home;
    std::string mode;
    std::string locale;
    std::string screenshot;
    std::vector<int> screen;
    Arguments arguments;
    arguments.usesHardware = hasReliableGraphics();
    arguments.isResident = keepsRunningWithoutWindow();
    app.add_option(
        "--root", root,
        Texts::noop("A folder that holds a Mac's layout, to run on instead of this machine"));
    app.add_option("--home", home, Texts::noop("The user's home, under the root"));
    app.add_option("--mode", mode, Texts::noop("fullScreen or windowed; without, as it was last"))
        ->check(CLI::IsMember({"fullScreen", "windowed"}));
    app.add_option("--locale", locale, Texts::noop("The user's locale, such as de_DE"));
    app.add_option("--screenshot", screenshot,
                   Texts::noop("Write an image of the first complete frame to a PNG file and exit"));
    app.add_option("--screen", screen,
                   Texts::noop("WIDTH HEIGHT of a screen to fill instead of the real one"))
        ->expected(2)
        ->check(CLI::Range(240, 8192));
    app.add_flag("--hardware,!--software", arguments.usesHardware,
                 Texts::noop("Draw by the graphics processor, or without it"));
    app.add_flag("--resident,!--no-resident", arguments.isResident,
                 Texts::noop("Stay in the background without the window; starting again shows it"));
    app.add_flag("--hidden", arguments.isHidden,
                 Texts::noop("Start in the background, without the window"));
    std::string atLogin;
    app.add_option("--at-login", atLogin, Texts::noop("Set whether to start at login, and exit"))
        ->check(CLI::IsMember({"on", "off"}));
    std::vector<std::string> steps;
    app.add_option("--perform", steps)->group("");
    std::string form;
    app.add_option("--generate", form)->group("")->check(CLI::IsMember(manualForms));
    app.set_version_flag("--version", "tessellar " + versionText(),
                         Texts::noop("Print the version and exit"));
    app.add_flag(
        "--measure-start", arguments.measureStart,
        Texts::noop("Print how long the first frame and the first complete frame took, and exit"));
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const QCoreApplication application(argc, argv); // translations need one
        Language language;
        const QString named = localeNamedBy(argc, argv);
        language.follow(std::nullopt, named.isEmpty() ? Locale::system() : Locale(named));
        if (error.get_exit_code() == 0) { // help or version
            translateHelp(app);
            status = app.exit(error);
            return std::nullopt;
        }
        std::fprintf(stderr, "tessellar: %s\n",
                     qUtf8Printable(usageSentence(QString::fromUtf8(error.what()))));
        status = 2;
        return std::nullopt;
    }
    if (!form.empty()) {
        std::fputs(manual(app, form).c_str(), stdout);
        return std::nullopt;
    }
    if (!root.empty())
        arguments.machine.root = QDir(QString::fromLocal8Bit(root)).absolutePath();
    if (!home.empty())
        arguments.machine.home = QString::fromStdString(home);
    if (!locale.empty())
        arguments.machine.locale = QString::fromStdString(locale);
    if (!atLogin.empty())
        arguments.atLogin = atLogin == "on";
    arguments.isResident = arguments.isResident || arguments.isHidden;
    arguments.mode = json::fromRawValue<LauncherWindowMode>(QString::fromStdString(mode));
    arguments.screenshot = QString::fromLocal8Bit(screenshot);
    for (const std::string& step : steps)
        arguments.steps.append(QString::fromLocal8Bit(step));
    if (screen.size() == 2)
        arguments.screen = QSize(screen[0], screen[1]);
    return arguments;
}

/// Returns the exit status.
int startAtLogin(bool on) {
    const auto stored =
        setLaunchesAtLogin(on, QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    if (stored)
        return 0;
    std::fprintf(stderr, "tessellar: %s\n", qUtf8Printable(stored.error()));
    return 1;
}

/// Asks the running launcher to show itself; false if it does not.
bool showRunning(RemoteExecutor& running) {
    QEventLoop answered;
    bool isShown = false;
    running.run(
        {QStringLiteral("show")}, {},
        {.out = [](const QByteArray&) {},
         .error =
             [](const QByteArray& text) { std::fprintf(stderr, "tessellar: %s", text.constData()); },
         .finished =
             [&](int status) {
                 isShown = status == static_cast<int>(ExitStatus::done);
                 answered.quit();
             }});
    QTimer::singleShot(std::chrono::seconds(5), &answered, [&] {
        std::fprintf(stderr, "tessellar: %s\n",
                     qUtf8Printable(Texts::tr("The launcher that is running does not answer.")));
        answered.quit();
    });
    answered.exec();
    return isShown;
}

QString changelog() {
    QFile file(QStringLiteral(":/CHANGELOG.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The tile with this label, or empty.
QString tileLabelled(LauncherWindow& window, const QString& label) {
    for (const Page& page : window.viewModel().shown().pages())
        for (const LaunchpadItem& item : page) {
            const QString id = toText(item.id());
            if (window.controller().tileView(id).value(QStringLiteral("label")) == label)
                return id;
        }
    return {};
}

/// A step before a screenshot: "type TEXT", "menu [TILE'S LABEL]", or a menu entry, "ENTRY [TILE'S
/// LABEL]".
void performStep(LauncherWindow& window, const QString& step) {
    LauncherController& controller = window.controller();
    const QString verb = step.section(u' ', 0, 0);
    const QString object = step.section(u' ', 1);
    if (verb == u"type")
        return controller.search()->setText(object);
    if (verb == u"menu") {
        if (!object.isEmpty())
            controller.selection()->select({tileLabelled(window, object)}, false);
        (void)controller.input()->pressKey(Qt::Key_Menu);
        return;
    }
    controller.input()->openMenu(tileLabelled(window, object), {});
    controller.input()->menu()->close();
    Q_EMIT controller.input()->menu()->chosen(verb);
}

int run(int argc, char** argv) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    int status = 0;
    const auto arguments = readArguments(argc, argv, status);
    if (!arguments)
        return status;
    if (arguments->atLogin)
        return startAtLogin(*arguments->atLogin);

    if (!arguments->usesHardware)
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Tessellar"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("com.tessellar.app"),
                                                    QIcon(QStringLiteral(":/com.tessellar.app.svg"))));
    QFont font = QGuiApplication::font();
    font.setFamilies(preferredFontFamilies() + QStringList{font.family()});
    QGuiApplication::setFont(font);

    auto host = HostMachine::make(arguments->machine);
    if (!host) {
        std::fprintf(stderr, "tessellar: %s\n", qUtf8Printable(host.error()));
        return 1;
    }
    Machine& machine = (*host)->machine();
    QLocale::setDefault(QLocale(machine.locale.identifier()));
    Language language;
    const auto followLanguage = [&] {
        const bool isAnother = language.follow(machine.settings, machine.locale);
        QGuiApplication::setLayoutDirection(language.direction());
        return isAnother;
    };
    followLanguage();
    // There must be only one writer.
    const auto found = findLauncherOrLock(
        **host, QStringLiteral("Tessellar, process %1").arg(QGuiApplication::applicationPid()));
    if (!found) {
        std::fprintf(stderr, "tessellar: %s\n", qUtf8Printable(found.error()));
        return 1;
    }
    if (found->launcher)
        return showRunning(*found->launcher) ? 0 : 1;
    // Edits are saved, and no tool is left running. Unlike closing the window, a signal never asks: a
    // logout must not wait.
    const Interruption interruption([](int) { QCoreApplication::exit(); });

    const auto lastMode = json::fromRawValue<LauncherWindowMode>(
        machine.settings.text(QStringLiteral("window.mode")).value_or(QString()));
    LauncherWindow window(machine,
                          arguments->mode.value_or(lastMode.value_or(LauncherWindowMode::fullScreen)),
                          arguments->screen);
    if (!arguments->machine.locale)
        window.followSystemLocale();
    window.followClock(makeClockWatch());
    if (!arguments->machine.root) { // a folder with a Mac's layout has no logins
        const QString configuration =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        window.controller().panels()->settings()->setLoginItem(
            {.isOn = [configuration] { return launchesAtLogin(configuration); },
             .set = [configuration](bool on) { return setLaunchesAtLogin(on, configuration); }});
    }
    CommandInterpreter interpreter(machine, window.viewModel());
    // From now on, other starts and commands find this launcher.
    ControlServer server(machine, interpreter);
    (void)server.listen();
    const bool isForShow = !arguments->screenshot.isEmpty() || arguments->measureStart;
    LauncherUpdates& updates = window.viewModel().updates();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    window.fadeWhenClosed();
    if (!isForShow)
        window.welcome(changelog(), QString::fromStdString(versionNumber()));
    const bool isHidden = arguments->isHidden && !isForShow;
    if (isHidden)
        updates.startSchedule();
    else if (!isForShow)
        QObject::connect(&window, &LauncherWindow::firstFrame, &application,
                         [&] { updates.startSchedule(); });
    const Subscription languageChanged = window.viewModel().settingsChanged.connect([&] {
        if (followLanguage())
            window.retranslate();
    });
    std::optional<ActivationTriggers> triggers;
    Subscription settingsChanged;
    if (arguments->isResident && !isForShow) {
        triggers.emplace(machine.settings, machine.log,
                         [&] { window.view().isVisible() ? window.close() : window.show(); });
        settingsChanged = window.viewModel().settingsChanged.connect([&] { triggers->apply(); });
        window.controller().panels()->settings()->setHotKeyState(
            [&] { return triggers->isKeyRefused() ? HotKeyState::refused : HotKeyState::taken; });
        QObject::connect(&application, &QGuiApplication::applicationStateChanged, &window,
                         [&](Qt::ApplicationState state) {
                             if (state == Qt::ApplicationActive && !window.view().isVisible())
                                 window.show();
                         });
    } else {
        window.endWhenClosed();
        if (!isForShow)
            window.controller().panels()->settings()->setHotKeyState([] { return HotKeyState::away; });
        QObject::connect(&window, &LauncherWindow::ended, &application,
                         [] { QCoreApplication::exit(); });
    }

    if (!arguments->screenshot.isEmpty()) {
        const auto photograph = [&] {
            if (!window.photograph().save(arguments->screenshot, "png")) {
                std::fprintf(
                    stderr, "tessellar: %s\n",
                    qUtf8Printable(Texts::tr("%1 cannot be written.").arg(arguments->screenshot)));
                status = 1;
            }
            application.exit(status);
        };
        const auto stage = [&, photograph] {
            for (const QString& step : arguments->steps)
                performStep(window, step);
            // What was opened is drawn once its animations and contents are complete.
            const std::chrono::milliseconds settled(arguments->steps.isEmpty() ? 0 : 1500);
            QTimer::singleShot(settled, &window, photograph);
        };
        // The tiles must show the last check's results.
        updates.whenReady([&, stage] { window.whenComplete(stage); });
    } else if (arguments->measureStart) {
        QObject::connect(&window, &LauncherWindow::firstFrame, &application, [&] {
            std::printf("first frame %lld ms\n", static_cast<long long>(sinceStart.elapsed()));
            std::fflush(stdout);
        });
        window.whenComplete([&] {
            std::printf("first whole frame %lld ms\n", static_cast<long long>(sinceStart.elapsed()));
            std::printf("most resident %lld KiB\n", static_cast<long long>(peakResidentMemory()));
            std::fflush(stdout);
            application.exit();
        });
    }
    if (!isHidden)
        window.show();
    const int ended = application.exec();
    (void)window.viewModel().quit();
    // Answers the commands whose edits this has saved. New ones are not served: theirs would be lost.
    bool isDrained = false;
    const Task barrier = machine.workers.run(
        Lane::saving, [](std::stop_token) {}, [&] { isDrained = true; });
    while (!isDrained)
        machine.workers.mailbox().waitAndDrain();
    const auto saved = window.viewModel().quit();
    if (!saved) {
        std::fprintf(stderr, "tessellar: %s\n", qUtf8Printable(saved.error().message));
        return 1;
    }
    return ended;
}

} // namespace
} // namespace tessellar

int main(int argc, char** argv) { return tessellar::run(argc, argv); }
