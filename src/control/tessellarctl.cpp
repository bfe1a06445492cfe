#include "control/tessellarctl.h"

#include "control/command_interpreter.h"
#include "control/control_socket.h"
#include "control/manual.h"
#include "control/running_launcher.h"
#include "control/shell_words.h"
#include "launcher/language.h"
#include "launcher/launcher_messages.h"
#include "platform/descriptor.h"
#include "platform/host_machine.h"
#include "platform/interruption.h"
#include "platform/texts.h"
#include "platform/version.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace tessellar {
namespace {

constexpr qint64 maximumBatch = 16 << 20;

QString wrongMode() { return Texts::tr("--mode is fullScreen or windowed."); }

/// The manual page or completions, generated from the parser's commands and the global options.
std::string manual(const std::string& form) {
    const CommandSet set;
    ProgramOutline outline = outlineOf(set.commands());
    outline.options.clear();
    for (const GlobalOption& option : globalOptions()) {
        const std::string name = option.name;
        outline.options.push_back({.names = {name},
                                   .value = option.value ? option.value : "",
                                   .choices = name == "--mode"
                                                  ? std::vector<std::string>{"fullScreen", "windowed"}
                                                  : std::vector<std::string>(),
                                   .description = option.description});
    }
    outline.commands.push_back({.path = "batch",
                                .description = "One command a line, in one process, with one history",
                                .options = {},
                                .operands = {{.names = {},
                                              .value = "file",
                                              .choices = {},
                                              .description = "The file, or - for standard input",
                                              .isRequired = true}}});
    outline.remarks =
        "Tiles are named by identifier or app key, places as PAGE:INDEX or FOLDER/PAGE:INDEX, counted "
        "from 0.\n\nWhile the launcher is running it carries the commands out itself. A line of a "
        "batch "
        "may begin with --mode.\n\nThe exit status is 0 when it was done, 1 when it was refused or "
        "failed, 2 for wrong usage. With --json, errors are documents too: "
        "{\"error\": {\"code\": ..., \"message\": ...}}.";
    outline.examples = "tessellar-sample-mac ~/sample-mac\n"
                       "tessellarctl --root ~/sample-mac list\n"
                       "tessellarctl --root ~/sample-mac search mail\n"
                       "tessellarctl --root ~/sample-mac cleanup review co.marigoldmoss.fernlight\n";
    return writeManual(outline, form);
}

struct Invocation {
    MachineOptions machine;
    CommandOptions options;
    QStringList words;
};

/// Splits the command line into global options and the command's words. `--json` may be anywhere.
std::expected<Invocation, CommandSet::Failure> readInvocation(QStringList arguments) {
    Invocation invocation;
    invocation.options.directory = QDir::currentPath();
    invocation.options.showsProgress = ::isatty(STDERR_FILENO) == 1;
    const auto said = [](const QString& text) {
        return std::unexpected(CommandSet::Failure{ExitStatus::done, text});
    };
    const auto wrong = [](const QString& text) {
        return std::unexpected(CommandSet::Failure{ExitStatus::wrongUsage, text});
    };
    // Anywhere, but not after "--".
    for (qsizetype i = 0; i < arguments.size() && arguments[i] != u"--";) {
        if (arguments[i] == u"--json") {
            invocation.options.json = true;
            arguments.removeAt(i);
        } else {
            ++i;
        }
    }
    while (!arguments.isEmpty() && arguments.first().startsWith(u'-')) {
        QString name = arguments.takeFirst();
        if (name == u"--help" || name == u"-h")
            return said(CommandSet().help());
        if (name == u"--version")
            return said(QString::fromStdString("tessellarctl " + versionText()));
        if (name == u"--generate")
            return said(QString::fromStdString(manual(arguments.value(0).toStdString())));
        QString value;
        if (const qsizetype equals = name.indexOf(u'='); equals > 0) {
            value = name.sliced(equals + 1);
            name.truncate(equals);
        } else if (!arguments.isEmpty()) {
            value = arguments.takeFirst();
        } else {
            return wrong(Texts::tr("%1 needs a value, or is not an option.").arg(name));
        }
        if (name == u"--root") {
            invocation.machine.root = QDir(value).absolutePath();
        } else if (name == u"--home") {
            invocation.machine.home = value;
        } else if (name == u"--locale") {
            invocation.machine.locale = invocation.options.locale = value;
        } else if (name == u"--mode") {
            invocation.options.mode = json::fromRawValue<LauncherWindowMode>(value);
            if (!invocation.options.mode)
                return wrong(wrongMode());
        } else if (name == u"--now") {
            invocation.machine.now = invocation.options.now = Instant::fromIso8601(value);
            if (!invocation.options.now)
                return wrong(Texts::tr("--now takes a date such as 2026-11-14T21:05:40Z."));
        } else {
            return wrong(Texts::tr("There is no option %1.").arg(name));
        }
    }
    invocation.words = arguments;
    return invocation;
}

/// The locale for help and errors before there is a machine.
Locale localeNamed(const QStringList& arguments) {
    const QString option = QStringLiteral("--locale");
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == option && i + 1 < arguments.size())
            return Locale(arguments[i + 1]);
        if (arguments[i].startsWith(option + u'='))
            return Locale(arguments[i].sliced(option.size() + 1));
    }
    return Locale::system();
}

/// A line of a batch may begin with its own `--mode`.
bool takeMode(QStringList& words, CommandOptions& options) {
    if (words.value(0) != u"--mode")
        return true;
    options.mode = json::fromRawValue<LauncherWindowMode>(words.value(1));
    words.remove(0, std::min<qsizetype>(words.size(), 2));
    return options.mode.has_value();
}

/// The lines of a batch. While it waits for input the event loop runs: edits are saved and other
/// commands are answered.
class BatchLines {
public:
    explicit BatchLines(int descriptor) : _descriptor(descriptor) {}

    /// nullopt at the end.
    std::optional<QByteArray> next() {
        for (;;) {
            const qsizetype length = _read.indexOf('\n') + 1;
            if (length > 0 || _isAtEnd) {
                const QByteArray line = _read.first(length > 0 ? length : _read.size());
                _read.remove(0, line.size());
                return line.isEmpty() ? std::nullopt : std::optional(line);
            }
            readMore();
        }
    }
    bool isTooLarge() const { return _size > maximumBatch; }

private:
    void readMore() {
        waitForInput();
        std::array<char, 64 << 10> bytes;
        const ssize_t count = ::read(_descriptor, bytes.data(), bytes.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            return;
        _isAtEnd = count <= 0;
        _read.append(bytes.data(), std::max<ssize_t>(count, 0));
        _size += std::max<ssize_t>(count, 0);
        if (isTooLarge()) {
            _read.clear();
            _isAtEnd = true;
        }
    }
    void waitForInput() const {
        bool isThere = false;
        const QSocketNotifier input(_descriptor, QSocketNotifier::Read);
        const auto connection = QObject::connect(&input, &QSocketNotifier::activated, &input,
                                                 [&isThere] { isThere = true; });
        while (connection && !isThere)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    int _descriptor;
    QByteArray _read;
    qint64 _size = 0;
    bool _isAtEnd = false;
};

/// Runs commands in this process with its own launcher, under the lock unless it is read-only.
class LocalExecutor final : public CommandExecutor {
public:
    LocalExecutor(Machine& machine, FileLock lock, LauncherWindowMode mode)
        : _lock(std::move(lock)), _launcher(machine, mode), _interpreter(machine, _launcher) {
        _launcher.startAndWait();
    }

    LauncherViewModel& launcher() { return _launcher; }
    void run(const QStringList& words, const CommandOptions& options, CommandOutput output) override {
        _interpreter.run(words, options, std::move(output));
    }

private:
    FileLock _lock;
    LauncherViewModel _launcher;
    CommandInterpreter _interpreter;
};

/// Otherwise the event loop cannot be created, and its libraries abort the process.
bool canOpenFiles() {
    std::array<Descriptor, 6> files;
    for (Descriptor& file : files)
        file = Descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    return static_cast<bool>(files.back());
}

class Program {
public:
    Program(HostMachine& host, Invocation invocation)
        : _host(host), _machine(host.machine()), _invocation(std::move(invocation)) {}

    int run() {
        QStringList& words = _invocation.words;
        if (!words.isEmpty() && words.first() == u"batch")
            return runBatch();
        const auto parsed = CommandSet().parse(words);
        if (!parsed) {
            CommandInterpreter::refuse(parsed.error(), _invocation.options, output());
            return _status;
        }
        if (parsed->needs == CommandNeeds::machine) {
            CommandInterpreter::runWithoutLauncher(_machine, parsed->run, _invocation.options,
                                                   output());
            return waitForEnd();
        }
        if (!findExecutor(parsed->needs))
            return _status;
        std::optional<ControlServer> server;
        // Other commands need not wait until this one is stopped: they can use this launcher.
        if (parsed->needs == CommandNeeds::launcherUntilStopped && _local)
            (void)server.emplace(_machine, *_local).listen();
        _executor->run(words, _invocation.options, output());
        waitForEnd();
        return close(parsed->needs);
    }

private:
    int runBatch() {
        _isBatch = true;
        const QStringList& words = _invocation.words;
        if (words.contains(QStringLiteral("--help")) || words.contains(QStringLiteral("-h"))) {
            write(STDOUT_FILENO, CommandSet().help().toUtf8());
            return 0;
        }
        if (words.size() != 2)
            return fail({QStringLiteral("wrongUsage"),
                         Texts::tr("batch takes one file, or - for standard input."),
                         {}},
                        ExitStatus::wrongUsage);
        const bool isStandardInput = words[1] == u"-";
        QFile file(isStandardInput ? QString() : words[1]);
        if (!(isStandardInput ? file.open(STDIN_FILENO, QFile::ReadOnly) : file.open(QFile::ReadOnly)))
            return fail(
                {QStringLiteral("unreadable"), Texts::tr("%1 cannot be read.").arg(words[1]), {}});
        if (!findExecutor(CommandNeeds::launcher))
            return _status;
        _invocation.options.oneLine = true;
        _invocation.options.answersUnsaved = true;
        _invocation.options.editor = std::make_shared<std::byte>();
        int status = 0;
        bool hasQuit = false;
        BatchLines lines(file.handle());
        while (const auto line = lines.next()) {
            hasQuit = false;
            auto lineWords = splitWords(QString::fromUtf8(*line));
            if (!lineWords) {
                status = std::max(status, fail({QStringLiteral("wrongUsage"), lineWords.error(), {}},
                                               ExitStatus::wrongUsage));
                continue;
            }
            if (lineWords->isEmpty())
                continue;
            CommandOptions options = _invocation.options;
            if (!takeMode(*lineWords, options)) {
                status = std::max(status, fail({QStringLiteral("wrongUsage"), wrongMode(), {}},
                                               ExitStatus::wrongUsage));
                continue;
            }
            const int ended = runAgain(*lineWords, options, output());
            status = std::max(status, ended);
            hasQuit = ended == 0 && *lineWords == QStringList{QStringLiteral("quit")};
            _interruption.reset();
            if (_isInterrupted)
                break;
        }
        if (lines.isTooLarge())
            return fail({QStringLiteral("tooLarge"), Texts::tr("The batch is too large."), {}});
        if (hasQuit)
            return status; // the launcher has saved everything and is gone
        CommandOptions options = _invocation.options;
        options.answersUnsaved = options.json = false; // prints nothing unless it fails
        status = std::max(status, runAgain({QStringLiteral("save")}, options, output()));
        sayAlerts();
        return status;
    }

    int runAgain(const QStringList& words, const CommandOptions& options, CommandOutput to) {
        _isFinished = false;
        _executor->run(words, options, std::move(to));
        return waitForEnd();
    }

    /// The running launcher; or a local one, once nobody else holds the lock.
    bool findExecutor(CommandNeeds needs) {
        FileLock lock;
        if (needs == CommandNeeds::launcherReadOnly) {
            _executor = RemoteExecutor::connect(_machine);
            if (!_executor)
                _host.refuseChanges({FileError::Code::readOnly, _machine.places.applicationFolder()});
        } else {
            const QString name = QStringLiteral("tessellarctl %1, process %2")
                                     .arg(_invocation.words.first())
                                     .arg(QCoreApplication::applicationPid());
            auto found = findLauncherOrLock(_host, name);
            if (!found) {
                fail({QStringLiteral("busy"), found.error(), {}});
                return false;
            }
            _executor = std::move(found->launcher);
            lock = std::move(found->lock);
        }
        if (_executor)
            return true;
        auto local = std::make_unique<LocalExecutor>(
            _machine, std::move(lock),
            _invocation.options.mode.value_or(LauncherWindowMode::fullScreen));
        _local = local.get();
        _executor = std::move(local);
        if (needs != CommandNeeds::launcherReadOnly)
            sayAlerts();
        return true;
    }

    /// Saves and prints the local launcher's messages before it is destroyed. A command that failed to
    /// save has reported so and is not retried: that must stay true.
    int close(CommandNeeds needs) {
        if (!_local)
            return _status;
        if (_status == 0 && needs != CommandNeeds::launcherReadOnly &&
            _local->launcher().hasUnsavedEdits())
            if (const auto saved = _local->launcher().quit(); !saved)
                fail(saved.error());
        sayAlerts();
        return _status;
    }

    void sayAlerts() {
        if (!_local)
            return;
        for (const LauncherError& error : _local->launcher().messages().takeAlerts()) {
            const QByteArray message = error.message.toUtf8() + '\n';
            if (_said.contains(message) || _alerts.contains(message))
                continue;
            _alerts.append(message);
            const QString separator =
                error.title.endsWith(u'?') ? QStringLiteral(" ") : QStringLiteral(": ");
            write(STDERR_FILENO,
                  error.title.isEmpty() ? message : (error.title + separator).toUtf8() + message);
        }
    }

    int waitForEnd() {
        while (!_isFinished)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return _status;
    }

    CommandOutput output() {
        return {.out = [this](const QByteArray& text) { write(STDOUT_FILENO, text); },
                .error =
                    [this](const QByteArray& text) {
                        // The reason why nothing can be saved has been printed; but in a batch, each
                        // refusal is.
                        if (!_isBatch && _alerts.contains(text))
                            return;
                        _said.append(text);
                        write(STDERR_FILENO, text);
                    },
                .finished =
                    [this](int status) {
                        _status = status;
                        _isFinished = true;
                    },
                .whenCancelled =
                    [this](std::function<void(Cancellation)> call) {
                        endWhenInterrupted(std::move(call));
                    }};
    }

    /// Commands that support cancelling are cancelled properly; others end at once.
    void endWhenInterrupted(std::function<void(Cancellation)> call) {
        _whenCancelled = std::move(call);
        if (!_interruption)
            _interruption.emplace([this](int signal) {
                _isInterrupted = true;
                if (const auto end = std::exchange(_whenCancelled, nullptr))
                    end(signal == SIGINT ? Cancellation::stopped : Cancellation::disconnected);
            });
    }

    int fail(const LauncherError& error, ExitStatus status = ExitStatus::refused) {
        sayError(error, _invocation.options,
                 {.out = [this](const QByteArray& text) { write(STDOUT_FILENO, text); },
                  .error = [this](const QByteArray& text) { write(STDERR_FILENO, text); },
                  .finished = {}});
        return _status = static_cast<int>(status);
    }

    /// A reader that does not read must not keep the program from ending: then the rest is dropped.
    void write(int descriptor, QByteArrayView text) const {
        constexpr qsizetype atOnce = 4096; // a pipe that is ready takes this much at once
        while (!text.isEmpty() && (!_interruption || _interruption->waitToWrite(descriptor))) {
            const auto count = static_cast<std::size_t>(std::min(text.size(), atOnce));
            const ssize_t written = ::write(descriptor, text.data(), count);
            if (written < 0 && errno != EINTR)
                return;
            text = text.sliced(std::max<ssize_t>(written, 0));
        }
    }

    HostMachine& _host;
    Machine& _machine;
    Invocation _invocation;
    std::optional<Interruption> _interruption; ///< for commands that must be ended with care
    bool _isInterrupted = false;
    std::unique_ptr<CommandExecutor> _executor;
    LocalExecutor* _local = nullptr;
    QByteArrayList _alerts; ///< printed to standard error, without titles
    QByteArrayList _said;   ///< other messages printed there
    std::function<void(Cancellation)> _whenCancelled;
    bool _isBatch = false;
    int _status = 0;
    bool _isFinished = false;
};

} // namespace

int tessellarctl(int argc, char** argv) {
    if (!canOpenFiles()) {
        std::fputs("tessellarctl: Too many files are open.\n", stderr);
        return static_cast<int>(ExitStatus::refused);
    }
    const QCoreApplication application(argc, argv);
    const CommandOutput standard{
        .out = [](const QByteArray& text) { std::fputs(text.constData(), stdout); },
        .error = [](const QByteArray& text) { std::fputs(text.constData(), stderr); },
        .finished = [](int) {}};
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    Language language;
    language.follow(std::nullopt, localeNamed(arguments));
    auto invocation = readInvocation(arguments);
    if (!invocation) {
        CommandInterpreter::refuse(invocation.error(),
                                   {.json = arguments.contains(QStringLiteral("--json"))}, standard);
        return static_cast<int>(invocation.error().status);
    }
    auto host = HostMachine::make(invocation->machine);
    if (!host) {
        CommandInterpreter::refuse({ExitStatus::refused, host.error()}, invocation->options, standard);
        return static_cast<int>(ExitStatus::refused);
    }
    language.follow((*host)->machine().settings, (*host)->machine().locale);
    return Program(**host, *std::move(invocation)).run();
}

} // namespace tessellar
