#include "platform/http.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>

#include <utility>

namespace tessellar {

QString message(HttpError error) {
    switch (error) {
    case HttpError::addressRefused:
        return QStringLiteral("The address is not a secure one.");
    case HttpError::redirectRefused:
        return QStringLiteral("The server leads to another address.");
    case HttpError::timedOut:
        return QStringLiteral("The server did not answer in time.");
    case HttpError::tooLarge:
        return QStringLiteral("The server's answer is too large.");
    case HttpError::transport:
        break;
    }
    return QStringLiteral("The server could not be reached.");
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

/// The system's proxies for the world, none for the loopback.
class ProxyFactory final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        if (isLoopback(query.url()))
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

/// A request until it has ended in one of several ways; the first of them counts. Redirects are
/// followed here: what the stack itself offers to ask first was seen to give up half way.
class Transfer final : public QObject, public HttpCall::Pending {
public:
    /// Without a manager the address was refused.
    Transfer(QNetworkAccessManager* manager, const HttpRequest& request, Scheduler& scheduler,
             HttpClient::Done done)
        : _manager(manager)
        , _limit(request.maximumBytes)
        , _redirectsLeft(request.maximumRedirects)
        , _done(std::move(done)) {
        if (_manager)
            send(request.url);
        _timeout = scheduler.after(_manager ? request.timeout : std::chrono::milliseconds(0), [this] {
            end(std::unexpected(_manager ? HttpError::timedOut : HttpError::addressRefused));
        });
    }
    ~Transfer() override { dropReply(); }

private:
    void send(const QUrl& url) {
        QNetworkRequest wire(url);
        wire.setRawHeader("User-Agent", "Tessellar");
        wire.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                          QNetworkRequest::ManualRedirectPolicy);
        for (const auto attribute :
             {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
              QNetworkRequest::AuthenticationReuseAttribute})
            wire.setAttribute(attribute, QNetworkRequest::Manual);
        _body.clear();
        _reply = _manager->get(wire);
        connect(_reply, &QNetworkReply::readyRead, this, [this] { take(); });
        connect(_reply, &QNetworkReply::finished, this, [this] { finished(); });
    }

    void dropReply() {
        if (QNetworkReply* reply = std::exchange(_reply, nullptr)) {
            reply->disconnect(this);
            reply->abort();
            reply->deleteLater();
        }
    }

    void end(HttpClient::Answer answer) {
        dropReply();
        _timeout.cancel();
        if (auto done = std::exchange(_done, nullptr))
            done(std::move(answer)); // may destroy this object
    }

    bool take() {
        _body += _reply->read(_limit + 1 - _body.size());
        if (_body.size() <= _limit)
            return true;
        end(std::unexpected(HttpError::tooLarge));
        return false;
    }

    void finished() {
        const int status = _reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QUrl target = _reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        if (!target.isEmpty())
            return redirect(_reply->url(), _reply->url().resolved(target));
        // An answer that says "not found" is an answer; one that breaks off is none.
        const QNetworkReply::NetworkError error = _reply->error();
        if (status < 200 ||
            (error != QNetworkReply::NoError && error < QNetworkReply::ContentAccessDenied))
            return end(std::unexpected(HttpError::transport));
        if (take())
            end(HttpResponse{status, std::move(_body)});
    }

    void redirect(const QUrl& from, const QUrl& to) {
        if (_redirectsLeft-- <= 0 || !isAllowedAddress(to) || (isLoopback(to) && !isLoopback(from)))
            return end(std::unexpected(HttpError::redirectRefused));
        dropReply();
        send(to);
    }

    QNetworkAccessManager* _manager;
    QNetworkReply* _reply = nullptr;
    std::int64_t _limit;
    int _redirectsLeft;
    QByteArray _body;
    HttpClient::Done _done;
    Timer _timeout;
};

} // namespace

struct NetworkHttpClient::Stack {
    QNetworkAccessManager manager;
};

NetworkHttpClient::NetworkHttpClient(Scheduler& scheduler) : _scheduler(scheduler) {}
NetworkHttpClient::~NetworkHttpClient() = default;

HttpCall NetworkHttpClient::get(const HttpRequest& request, Done done) {
    if (!isAllowedAddress(request.url))
        return HttpCall(std::make_unique<Transfer>(nullptr, request, _scheduler, std::move(done)));
    if (!_stack) {
        _stack = std::make_unique<Stack>();
        _stack->manager.setProxyFactory(new ProxyFactory);
    }
    return HttpCall(std::make_unique<Transfer>(&_stack->manager, request, _scheduler, std::move(done)));
}

} // namespace tessellar
