#include "control/control_socket.h"

#include "platform/local_socket.h"
#include "platform/texts.h"

#include <QCryptographicHash>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessellar {
namespace {

constexpr qint64 maximumLine = 1 << 20;
constexpr qsizetype maximumAddress = 100; ///< sun_path has 104 bytes on a Mac, 108 on Linux
constexpr qint64 maximumUnread = 64 << 20;
constexpr int connectTimeout = 2'000; ///< milliseconds
constexpr std::chrono::milliseconds pingInterval{5'000};
constexpr int maximumPings = 6;
constexpr std::chrono::milliseconds stopPatience{2'000};
const QByteArray stopLine = QByteArrayLiteral("{\"stop\":true}\n");
const QByteArray leaveLine = QByteArrayLiteral("{\"leave\":true}\n");
const QByteArray pingLine = QByteArrayLiteral("{\"ping\":true}\n");

struct Request {
    QStringList words;
    bool json = false;
    bool oneLine = false;
    bool showsProgress = false;
    bool answersUnsaved = false;
    std::optional<LauncherWindowMode> mode;
    QString directory;
    std::optional<Instant> now;
    std::optional<QString> locale;
};

} // namespace

template <>
struct json::Fields<Request> {
    static constexpr auto list = fields(
        required("words", &Request::words), defaulted("json", &Request::json),
        defaulted("oneLine", &Request::oneLine), defaulted("showsProgress", &Request::showsProgress),
        defaulted("answersUnsaved", &Request::answersUnsaved), optional("mode", &Request::mode),
        defaulted("directory", &Request::directory), optional("now", &Request::now),
        optional("locale", &Request::locale));
};

QString controlSocketPath(const Machine& machine) {
    const QByteArray folder = machine.files.hostPath(machine.places.applicationFolder());
    const QByteArray inFolder = folder + "/control.socket";
    if (inFolder.size() <= maximumAddress)
        return QString::fromUtf8(inFolder);
    const QByteArray shared = "/tmp/tessellar-" + QByteArray::number(::getuid());
    (void)::mkdir(shared.constData(), 0700);
    struct stat status = {};
    if (::lstat(shared.constData(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        status.st_uid != ::getuid() || (status.st_mode & 077) != 0)
        return {};
    const QByteArray name =
        QCryptographicHash::hash(folder, QCryptographicHash::Sha256).toHex().first(24);
    return QString::fromUtf8(shared + '/' + name + ".socket");
}

// ---- the launcher's side

class ControlServer::Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(CommandExecutor& executor, QLocalSocket* socket)
        : _executor(executor), _socket(socket) {}

    void start() {
        _socket->setReadBufferSize(maximumLine + 1);
        // The socket owns the connection; a command's callbacks only have weak references.
        QObject::connect(_socket, &QLocalSocket::readyRead, _socket,
                         [self = shared_from_this()] { self->read(); });
        QObject::connect(_socket, &QLocalSocket::bytesWritten, _socket,
                         [self = shared_from_this()] { self->read(); });
        QObject::connect(_socket, &QLocalSocket::disconnected, _socket, &QObject::deleteLater);
        QObject::connect(_socket, &QObject::destroyed, [weak = weak_from_this()] {
            if (const auto self = weak.lock()) {
                self->_socket = nullptr;
                self->end(Cancellation::disconnected);
            }
        });
    }

private:
    void read() {
        while (_socket && _socket->canReadLine()) {
            const auto isNext = [this](const QByteArray& line) {
                return _socket->peek(line.size()) == line;
            };
            const bool isStop = isNext(stopLine);
            const bool isEnd = isStop || isNext(leaveLine);
            const bool isPing = !isEnd && isNext(pingLine);
            // Clients that do not read get no more work done.
            if (!isEnd && !isPing && (_isBusy || _socket->bytesToWrite() > maximumLine))
                return;
            const QByteArray line = _socket->readLine(maximumLine + 1);
            if (isEnd) {
                if (!end(isStop ? Cancellation::stopped : Cancellation::disconnected) && _isBusy)
                    send(QStringLiteral("status"), static_cast<int>(ExitStatus::refused));
                continue;
            }
            if (isPing) {
                send(QStringLiteral("pong"), true);
                continue;
            }
            const auto request = json::decodeDocument<Request>(line);
            if (!request)
                return _socket->abort();
            if (hasDisconnected())
                return;
            carryOut(*request);
        }
        if (_socket && !_isBusy && _socket->bytesAvailable() > maximumLine)
            _socket->abort();
    }

    /// True for example if this launcher was suspended: a client that gave up has reported that nothing
    /// was done.
    bool hasDisconnected() const {
        char next = 0;
        // NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection): it does not wait
        return ::recv(static_cast<int>(_socket->socketDescriptor()), &next, 1,
                      MSG_PEEK | MSG_DONTWAIT) == 0;
    }

    void send(const QString& key, const QJsonValue& value) {
        if (!_socket)
            return;
        _socket->write(json::writeCompact(QJsonObject{{key, value}}) + '\n');
        _socket->flush(); // the launcher may be ending
        if (_socket->bytesToWrite() > maximumUnread)
            _socket->abort();
    }

    /// False if the command cannot be cancelled: it goes on, but nobody waits for it.
    bool end(Cancellation why) {
        const auto call = std::exchange(_whenCancelled, nullptr);
        if (call)
            call(why);
        return call != nullptr;
    }

    void carryOut(const Request& request) {
        _isBusy = true;
        const auto say = [weak = weak_from_this()](const QString& key, const QJsonValue& value) {
            if (const auto self = weak.lock())
                self->send(key, value);
        };
        CommandOutput output{
            .out =
                [say](const QByteArray& text) { say(QStringLiteral("out"), QString::fromUtf8(text)); },
            .error =
                [say](const QByteArray& text) {
                    say(QStringLiteral("error"), QString::fromUtf8(text));
                },
            .finished =
                [say, weak = weak_from_this()](int status) {
                    say(QStringLiteral("status"), status);
                    if (const auto self = weak.lock()) {
                        self->_isBusy = false;
                        self->_whenCancelled = nullptr;
                        if (self->_socket)
                            QMetaObject::invokeMethod(
                                self->_socket,
                                [weak] {
                                    if (const auto again = weak.lock())
                                        again->read();
                                },
                                Qt::QueuedConnection);
                    }
                },
            .whenCancelled =
                [weak = weak_from_this()](std::function<void(Cancellation)> call) {
                    if (const auto self = weak.lock())
                        self->_whenCancelled = std::move(call);
                }};
        CommandOptions options{.json = request.json,
                               .oneLine = request.oneLine,
                               .showsProgress = request.showsProgress,
                               .answersUnsaved = request.answersUnsaved,
                               .editor = _editor,
                               .mode = request.mode,
                               .directory = request.directory,
                               .now = request.now,
                               .locale = request.locale};
        _executor.run(request.words, options, std::move(output));
    }

    CommandExecutor& _executor;
    QLocalSocket* _socket;
    UnsavedEdits::Editor _editor = std::make_shared<std::byte>();
    std::function<void(Cancellation)> _whenCancelled; ///< of the running command
    bool _isBusy = false;
};

ControlServer::ControlServer(const Machine& machine, CommandExecutor& executor)
    : _machine(machine), _executor(executor), _server(std::make_unique<QLocalServer>()) {}

ControlServer::~ControlServer() = default;

bool ControlServer::listen() {
    const QString path = controlSocketPath(_machine);
    if (path.isEmpty())
        return false;
    QObject::connect(_server.get(), &QLocalServer::newConnection, _server.get(), [this] {
        while (QLocalSocket* socket = _server->nextPendingConnection())
            std::make_shared<Connection>(_executor, socket)->start();
    });
    // Not QLocalServer::listen(name): for a user-only socket it creates a folder, which is left behind
    // if it fails or is killed.
    auto socket = listenLocally(QFile::encodeName(path), SocketAccess::user);
    if (!socket) {
        _machine.log.warning(QStringLiteral("Commands cannot reach this launcher: %1")
                                 .arg(qt_error_string(socket.error())));
        return false;
    }
    return _server->listen(socket->release());
}

// ---- the client's side

std::unique_ptr<RemoteExecutor> RemoteExecutor::connect(const Machine& machine) {
    const QString path = controlSocketPath(machine);
    if (path.isEmpty())
        return nullptr;
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(path);
    if (!socket->waitForConnected(connectTimeout))
        return nullptr;
    return std::unique_ptr<RemoteExecutor>(new RemoteExecutor(std::move(socket), machine.scheduler));
}

RemoteExecutor::RemoteExecutor(std::unique_ptr<QLocalSocket> socket, Scheduler& scheduler)
    : _socket(std::move(socket)), _scheduler(scheduler) {
    QObject::connect(_socket.get(), &QLocalSocket::readyRead, _socket.get(), [this] { read(); });
    QObject::connect(_socket.get(), &QLocalSocket::disconnected, _socket.get(),
                     [this] { end(Texts::tr("The launcher ended before it had answered.")); });
}

RemoteExecutor::~RemoteExecutor() { _socket->disconnect(); }

void RemoteExecutor::run(const QStringList& words, const CommandOptions& options,
                         CommandOutput output) {
    _output = std::move(output);
    _isRunning = true;
    _output.whenCancelled([this](Cancellation why) { stop(why); });
    watchForSilence();
    const Request request{
        words,        options.json,      options.oneLine, options.showsProgress, options.answersUnsaved,
        options.mode, options.directory, options.now,     options.locale};
    _socket->write(json::writeCompact(json::encode(request)) + '\n');
    if (_socket->state() != QLocalSocket::ConnectedState)
        end(Texts::tr("The launcher ended before it had answered."));
}

void RemoteExecutor::watchForSilence() {
    _unanswered = 0;
    struct Ping {
        RemoteExecutor* self;
        void operator()() const {
            if (++self->_unanswered > maximumPings)
                return self->end(Texts::tr("The launcher does not answer."));
            self->_socket->write(pingLine);
            self->_patience = self->_scheduler.after(pingInterval, *this);
        }
    };
    _patience = _scheduler.after(pingInterval, Ping{this});
}

/// Normally the command itself reports how it ended. A second interruption does not wait for that, and
/// neither does anyone if the launcher does not respond.
void RemoteExecutor::stop(Cancellation why) {
    if (!_isRunning)
        return;
    _socket->write(why == Cancellation::stopped ? stopLine : leaveLine);
    _socket->write(pingLine);
    _unanswered = 1;
    _patience = _scheduler.after(stopPatience, [this] {
        if (_unanswered == 0)
            watchForSilence();
        else
            end(Texts::tr("The launcher does not answer."));
    });
    _output.whenCancelled([this](Cancellation) { end({}); });
}

void RemoteExecutor::read() {
    _unanswered = 0;
    while (_isRunning && _socket->canReadLine()) {
        const auto line = json::parse(_socket->readLine());
        const QJsonObject object = line ? line->toObject() : QJsonObject();
        if (const QJsonValue text = object.value(u"out"); text.isString()) {
            _output.out(text.toString().toUtf8());
        } else if (const QJsonValue error = object.value(u"error"); error.isString()) {
            _output.error(error.toString().toUtf8());
        } else if (const QJsonValue status = object.value(u"status"); status.isDouble()) {
            _isRunning = false;
            _patience.cancel();
            const CommandOutput output = std::exchange(_output, {});
            output.finished(status.toInt());
        }
    }
}

void RemoteExecutor::end(const QString& error) {
    if (!std::exchange(_isRunning, false))
        return;
    _patience.cancel();
    const CommandOutput output = std::exchange(_output, {});
    if (!error.isEmpty())
        output.error(error.toUtf8() + '\n');
    output.finished(static_cast<int>(ExitStatus::refused));
}

} // namespace tessellar
