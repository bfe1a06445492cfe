#include "platform/http.h"

#include "platform/texts.h"
#include "platform/worker_pool.h"

#include <QEventLoop>
#include <QHostAddress>
#include <QNetworkProxyFactory>
#include <QSslSocket>
#include <QThread>

#include <future>
#include <map>
#include <optional>
#include <utility>

namespace tessellar {

QString message(HttpError error) {
    switch (error) {
    case HttpError::addressRefused:
        return Texts::tr("The address is not secure.");
    case HttpError::redirectRefused:
        return Texts::tr("The server redirects to another address.");
    case HttpError::timedOut:
        return Texts::tr("The server did not answer in time.");
    case HttpError::tooLarge:
        return Texts::tr("The server's answer is too large.");
    case HttpError::transport:
        break;
    }
    return Texts::tr("The server could not be reached.");
}

bool isLoopback(const QUrl& url) {
    if (url.host().compare(u"localhost", Qt::CaseInsensitive) == 0)
        return true;
    const QHostAddress address(url.host());
    return !address.isNull() && address.isLoopback();
}

bool isAllowedAddress(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty())
        return false;
    return url.scheme() == u"https" || (url.scheme() == u"http" && isLoopback(url));
}

namespace {

constexpr qsizetype maximumHead = 64 << 10; ///< of all headers together
constexpr qsizetype readAtOnce = 64 << 10;  ///< from one connection, before the others take their turn
constexpr qsizetype maximumChunkLine = 1'024;
constexpr int maximumInterimAnswers = 8;

/// The system's proxy, but none for the loopback.
QNetworkProxy proxyFor(const QUrl& url) {
    if (isLoopback(url))
        return QNetworkProxy(QNetworkProxy::NoProxy);
    const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
    return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.first();
}

/// Parses one HTTP/1.1 response incrementally.
class AnswerReader {
public:
    explicit AnswerReader(std::int64_t maximumBody) : _maximumBody(maximumBody) {}

    /// False once it is complete or has failed.
    bool take(const QByteArray& bytes) {
        _pending += bytes;
        while (!_failure && _part != Part::over && step()) {
        }
        return !_failure && _part != Part::over;
    }
    /// The connection was closed.
    void close() {
        if (_part == Part::rest)
            _part = Part::over;
        else if (_part != Part::over && !_failure)
            _failure = HttpError::transport;
    }

    std::optional<HttpError> failure() const { return _failure; }
    int status() const { return _status; }
    const QByteArray& location() const { return _location; }
    QByteArray takeBody() { return std::move(_body); }

private:
    enum class Part { head, length, chunkSize, chunk, chunkEnd, trailer, rest, over };

    bool fail(HttpError error) {
        _failure = error;
        return false;
    }

    /// Parses one element of the pending bytes; false if more are needed.
    bool step() {
        switch (_part) {
        case Part::head:
            return takeHead();
        case Part::length:
            take(_left);
            if (_left == 0)
                _part = Part::over;
            return _left == 0;
        case Part::chunkSize:
            return takeChunkSize();
        case Part::chunk:
            take(_left);
            if (_left == 0)
                _part = Part::chunkEnd;
            return _left == 0;
        case Part::chunkEnd:
        case Part::trailer: {
            const auto line = takeLine(maximumChunkLine);
            if (!line)
                return false;
            if (_part == Part::trailer && line->isEmpty())
                _part = Part::over;
            else if (_part == Part::trailer && ++_trailers > 100)
                return fail(HttpError::tooLarge);
            else if (_part == Part::chunkEnd)
                _part = Part::chunkSize;
            return true;
        }
        case Part::rest:
            if (_body.size() + _pending.size() > _maximumBody)
                return fail(HttpError::tooLarge);
            _body += std::exchange(_pending, {});
            return false;
        case Part::over:
            break;
        }
        return false;
    }

    void take(std::int64_t& left) {
        const qsizetype count = std::min<qsizetype>(_pending.size(), static_cast<qsizetype>(left));
        _body += _pending.first(count);
        _pending.remove(0, count);
        left -= count;
    }

    std::optional<QByteArray> takeLine(qsizetype longest) {
        const qsizetype end = _pending.indexOf('\n');
        if (end < 0 || end > longest) {
            if (end > longest || _pending.size() > longest)
                fail(HttpError::tooLarge);
            return std::nullopt;
        }
        QByteArray line = _pending.first(end);
        _pending.remove(0, end + 1);
        if (line.endsWith('\r'))
            line.chop(1);
        return line;
    }

    bool takeHead() {
        qsizetype end = _pending.indexOf("\r\n\r\n");
        if (end < 0 || end > maximumHead)
            return _pending.size() > maximumHead ? fail(HttpError::tooLarge) : false;
        const QList<QByteArray> lines = _pending.first(end).split('\n');
        _pending.remove(0, end + 4);
        const QList<QByteArray> words = lines.first().trimmed().split(' ');
        _status = words.value(1).toInt();
        if (!words.first().startsWith("HTTP/1.") || _status < 100 || _status > 599)
            return fail(HttpError::transport);
        if (_status < 200) // an interim response
            return ++_interim <= maximumInterimAnswers || fail(HttpError::transport);
        return readFields(lines.sliced(1));
    }

    bool readFields(const QList<QByteArray>& lines) {
        std::optional<std::int64_t> length;
        bool isChunked = false;
        for (const QByteArray& line : lines) {
            const qsizetype colon = line.indexOf(':');
            const QByteArray name = line.first(std::max<qsizetype>(colon, 0)).trimmed().toLower();
            const QByteArray value = line.sliced(colon + 1).trimmed();
            if (name == "content-length") {
                bool isNumber = false;
                const std::int64_t bytes = value.toLongLong(&isNumber);
                if (!isNumber || bytes < 0 || (length && *length != bytes))
                    return fail(HttpError::transport);
                length = bytes;
            } else if (name == "transfer-encoding") {
                isChunked = value.toLower() == "chunked";
                if (!isChunked)
                    return fail(HttpError::transport);
            } else if (name == "content-encoding" && value.toLower() != "identity") {
                return fail(HttpError::transport); // none was requested
            } else if (name == "location") {
                _location = value;
            }
        }
        _part = isChunked ? Part::chunkSize : length ? Part::length : Part::rest;
        _left = length.value_or(0);
        if (_status == 204 || _status == 304 || (_part == Part::length && _left == 0))
            _part = Part::over;
        if (_left > _maximumBody)
            return fail(HttpError::tooLarge);
        return true;
    }

    bool takeChunkSize() {
        const auto line = takeLine(maximumChunkLine);
        if (!line)
            return false;
        bool isNumber = false;
        _left = line->split(';').first().trimmed().toLongLong(&isNumber, 16);
        if (!isNumber || _left < 0)
            return fail(HttpError::transport);
        if (_left > _maximumBody - _body.size())
            return fail(HttpError::tooLarge);
        _part = _left == 0 ? Part::trailer : Part::chunk;
        return true;
    }

    std::int64_t _maximumBody;
    Part _part = Part::head;
    std::int64_t _left = 0; ///< of the body or chunk
    int _interim = 0;
    int _trailers = 0;
    int _status = 0;
    QByteArray _location;
    QByteArray _pending;
    QByteArray _body;
    std::optional<HttpError> _failure;
};

/// A request, with the redirects that it follows. Lives on the network thread.
class Exchange final : public QObject {
public:
    using Done = std::function<void(HttpClient::Answer)>;

    Exchange(HttpRequest request, Done done)
        : _request(std::move(request))
        , _redirectsLeft(_request.maximumRedirects)
        , _reader(_request.maximumBytes)
        , _done(std::move(done)) {
        send();
    }
    ~Exchange() override { drop(); }

private:
    void send() {
        const QUrl& url = _request.url;
        const bool isSecure = url.scheme() == u"https";
        _reader = AnswerReader(_request.maximumBytes);
        _socket = std::make_unique<QSslSocket>();
        _socket->setProxy(proxyFor(url));
        _socket->setReadBufferSize(readAtOnce);
        connect(_socket.get(), isSecure ? &QSslSocket::encrypted : &QSslSocket::connected, this,
                [this] { _socket->write(head(_request.url)); });
        connect(_socket.get(), &QSslSocket::readyRead, this, [this] { read(); });
        connect(_socket.get(), &QSslSocket::errorOccurred, this, [this] { closed(); });
        connect(_socket.get(), &QSslSocket::disconnected, this, [this] { closed(); });
        const QString host = url.host(QUrl::FullyEncoded);
        if (isSecure)
            _socket->connectToHostEncrypted(host, static_cast<quint16>(url.port(443)));
        else
            _socket->connectToHost(host, static_cast<quint16>(url.port(80)));
    }

    static QByteArray head(const QUrl& url) {
        const QString path = url.path(QUrl::FullyEncoded);
        const QString query = url.query(QUrl::FullyEncoded);
        const QString host = url.authority(QUrl::FullyEncoded | QUrl::RemoveUserInfo);
        return "GET " + (path.isEmpty() ? QByteArray("/") : path.toLatin1()) +
               (url.hasQuery() ? '?' + query.toLatin1() : QByteArray()) +
               " HTTP/1.1\r\nHost: " + host.toLatin1() +
               "\r\nUser-Agent: Tessellar\r\nAccept: */*\r\nAccept-Encoding: identity\r\n"
               "Connection: close\r\n\r\n";
    }

    void drop() {
        if (_socket) {
            _socket->disconnect(this);
            _socket->abort();
            _socket.release()->deleteLater(); // it may be the caller
        }
    }

    void read() {
        if (_reader.take(_socket->readAll()))
            return;
        finish();
    }

    void closed() {
        while (_socket && _socket->bytesAvailable() > 0)
            if (!_reader.take(_socket->readAll()))
                return finish();
        _reader.close();
        finish();
    }

    void finish() {
        drop();
        if (const auto failure = _reader.failure())
            return end(std::unexpected(*failure));
        const int status = _reader.status();
        const bool isRedirect =
            status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
        if (!isRedirect || _reader.location().isEmpty())
            return end(HttpResponse{status, _reader.takeBody()});
        const QUrl from = _request.url;
        const QUrl to = from.resolved(QUrl::fromEncoded(_reader.location()));
        if (_redirectsLeft-- <= 0 || !isAllowedAddress(to) || (isLoopback(to) && !isLoopback(from)))
            return end(std::unexpected(HttpError::redirectRefused));
        _request.url = to;
        send();
    }

    void end(HttpClient::Answer answer) {
        if (const Done done = std::exchange(_done, nullptr))
            done(std::move(answer)); // last: may destroy this object
    }

    HttpRequest _request;
    int _redirectsLeft;
    AnswerReader _reader;
    std::unique_ptr<QSslSocket> _socket;
    Done _done;
};

} // namespace

/// The network thread, which owns the connections, and the way back from it.
struct NetworkHttpClient::Stack {
    using Number = std::uint64_t;

    Stack() {
        std::promise<Mailbox*> ready;
        thread.reset(QThread::create([this, &ready] {
            Mailbox inside;
            std::map<Number, std::unique_ptr<Exchange>> running;
            exchanges = &running;
            QEventLoop loop;
            ends = &loop;
            ready.set_value(&inside);
            loop.exec();
        }));
        thread->start();
        box = ready.get_future().get();
    }
    ~Stack() {
        box->post([this] { ends->quit(); });
        thread->wait();
    }

    Mailbox answers; ///< delivered on the main thread
    Number last = 0;
    Mailbox* box = nullptr;
    // Network thread only.
    std::map<Number, std::unique_ptr<Exchange>>* exchanges = nullptr;
    QEventLoop* ends = nullptr;
    std::unique_ptr<QThread> thread;
};

namespace {

/// A request that may end in several ways; the first one counts. Main thread only.
class Transfer final : public HttpCall::Pending {
public:
    Transfer(HttpClient::Done done, std::function<void()> drop)
        : _done(std::move(done)), _drop(std::move(drop)) {}
    ~Transfer() override { stop(); }

    void endAfter(Scheduler& scheduler, std::chrono::milliseconds delay, HttpError error) {
        _timeout = scheduler.after(delay, [this, error] { end(std::unexpected(error)); });
    }
    void end(HttpClient::Answer answer) {
        stop();
        if (auto done = std::exchange(_done, nullptr))
            done(std::move(answer)); // may destroy this object
    }
    std::weak_ptr<Transfer*> alive() const { return _alive; }

private:
    void stop() {
        _timeout.cancel();
        if (const auto drop = std::exchange(_drop, nullptr))
            drop();
    }

    HttpClient::Done _done;
    std::function<void()> _drop;
    Timer _timeout;
    std::shared_ptr<Transfer*> _alive = std::make_shared<Transfer*>(this);
};

} // namespace

NetworkHttpClient::NetworkHttpClient(Scheduler& scheduler) : _scheduler(scheduler) {}
NetworkHttpClient::~NetworkHttpClient() = default;

HttpCall NetworkHttpClient::get(const HttpRequest& request, Done done) {
    if (!isAllowedAddress(request.url)) {
        auto refused = std::make_unique<Transfer>(std::move(done), nullptr);
        refused->endAfter(_scheduler, std::chrono::milliseconds(0), HttpError::addressRefused);
        return HttpCall(std::move(refused));
    }
    if (!_stack)
        _stack = std::make_shared<Stack>();
    const Stack::Number number = ++_stack->last;
    auto transfer =
        std::make_unique<Transfer>(std::move(done), [stack = std::weak_ptr(_stack), number] {
            if (const auto there = stack.lock())
                there->box->post([exchanges = there->exchanges, number] { exchanges->erase(number); });
        });
    transfer->endAfter(_scheduler, request.timeout, HttpError::timedOut);
    _stack->box->post([stack = _stack.get(), request, number, transfer = transfer->alive()] {
        const auto answered = [stack, transfer](const Answer& answer) {
            stack->answers.post([transfer, answer] {
                if (const auto waiting = transfer.lock())
                    (*waiting)->end(answer);
            });
        };
        stack->exchanges->emplace(number, std::make_unique<Exchange>(request, answered));
    });
    return HttpCall(std::move(transfer));
}

} // namespace tessellar
