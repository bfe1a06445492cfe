#pragma once

#include "platform/move_only_function.h"
#include "platform/scheduler.h"

#include <QByteArray>
#include <QUrl>

#include <cstdint>
#include <expected>
#include <memory>

namespace tessellar {

/// One GET request; every resource it uses is limited.
struct HttpRequest {
    QUrl url; ///< https; http only on the loopback
    /// For the entire request, from name look-up to the last byte.
    std::chrono::milliseconds timeout{15'000};
    std::int64_t maximumBytes = 1 << 20; ///< of the body
    /// Each target must satisfy `isAllowedAddress`; only a loopback address may redirect to loopback.
    int maximumRedirects = 0;
};

struct HttpResponse {
    int status = 0;
    QByteArray body;

    bool operator==(const HttpResponse&) const = default;
};

enum class HttpError {
    addressRefused, ///< neither https nor http on the loopback
    redirectRefused,
    timedOut,
    tooLarge,
    transport, ///< no such host, connection refused or broken off, certificate not trusted
};
QString message(HttpError error);

/// True for https with a host, and for http on the loopback ("localhost", 127.0.0.0/8, ::1).
bool isAllowedAddress(const QUrl& url);
bool isLoopback(const QUrl& url);

/// A request under way.
using HttpCall = Task;

/// Main thread only. Answers arrive there, never before `get` has returned.
class HttpClient {
public:
    using Answer = std::expected<HttpResponse, HttpError>;
    using Done = MoveOnlyFunction<void(Answer)>;

    virtual ~HttpClient() = default;
    [[nodiscard]] virtual HttpCall get(const HttpRequest& request, Done done) = 0;
};

/// HTTP/1.1 over Qt's secure sockets: no cookies, cache, credentials or compression. All connections
/// share one thread, started with the first request, and take turns on it, reading in limited chunks.
///
/// Used instead of QNetworkAccessManager, which reads response headers without a limit, byte by byte on
/// one shared thread: a single endless header made every request of a check fail.
class NetworkHttpClient final : public HttpClient {
public:
    explicit NetworkHttpClient(Scheduler& scheduler);
    ~NetworkHttpClient() override;

    [[nodiscard]] HttpCall get(const HttpRequest& request, Done done) override;

private:
    struct Stack;

    Scheduler& _scheduler;
    std::shared_ptr<Stack> _stack;
};

} // namespace tessellar
