#include "platform/http.h"

#include "tests/support/loopback_server.h"
#include "tests/support/manual_time.h"
#include "tests/support/printers.h"
#include "tests/support/run_tests.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace std::chrono_literals;
using test::httpAnswer;

class NetworkHttpClientTest : public testing::Test {
protected:
    HttpClient::Answer get(HttpRequest request) {
        std::optional<HttpClient::Answer> result;
        const HttpCall call =
            _client.get(request, [&](HttpClient::Answer answer) { result = std::move(answer); });
        EXPECT_FALSE(result) << "answered before get had returned";
        _time.advance(0ms);
        test::processEventsUntil([&] { return result.has_value(); });
        return *result;
    }
    HttpClient::Answer get(const QString& path) { return get({.url = _server.url(path)}); }

    test::LoopbackServer _server{[this](const QByteArray& path) { return answer(path); }};
    test::ManualTime _time;
    NetworkHttpClient _client{_time};

private:
    QByteArray answer(const QByteArray& path) const {
        if (path == "/there?x=1%2B1")
            return httpAnswer("200 OK", "body");
        if (path == "/limit")
            return httpAnswer("200 OK", QByteArray(1 << 20, 'x'));
        if (path == "/large")
            return httpAnswer("200 OK", QByteArray((1 << 20) + 1, 'x'));
        if (path == "/moved")
            return httpAnswer("302 Found", {}, "Location: /there?x=1%2B1\r\n");
        if (path == "/round")
            return httpAnswer("302 Found", {}, "Location: /round\r\n");
        if (path == "/away")
            return httpAnswer("302 Found", {}, "Location: http://example.com/\r\n");
        if (path == "/file")
            return httpAnswer("302 Found", {}, "Location: file:///etc/passwd\r\n");
        if (path == "/short")
            return "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf";
        if (path == "/stalled")
            return {};
        if (path == "/header")
            return "HTTP/1.1 200 OK\r\n" + QByteArray("X-More: and more\r\n").repeated(100'000);
        if (path == "/line")
            return "HTTP/1.1 200 OK\r\nX-More: " + QByteArray(1 << 20, 'x');
        if (path == "/chunks")
            return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2;a=b\r\nbo\r\n"
                   "2\r\ndy\r\n0\r\nX: y\r\n\r\n";
        if (path == "/hugechunk")
            return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nffffffffff\r\nx";
        if (path == "/cutchunk")
            return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nbo";
        if (path == "/interim")
            return "HTTP/1.1 103 Early Hints\r\n\r\n" + httpAnswer("200 OK", "body");
        if (path == "/toclose")
            return "HTTP/1.1 200 OK\r\n\r\nbody";
        if (path == "/nonsense")
            return "SSH-2.0-OpenSSH\r\n\r\n";
        if (path == "/lengths")
            return "HTTP/1.1 200 OK\r\nContent-Length: 4\r\nContent-Length: 40\r\n\r\nbody";
        return httpAnswer("404 Not Found", "nothing");
    }
};

TEST_F(NetworkHttpClientTest, GivesWhatTheServerSays) {
    EXPECT_EQ(get(QStringLiteral("/there?x=1%2B1")), (HttpResponse{200, "body"}));
    EXPECT_EQ(get(QStringLiteral("/missing")), (HttpResponse{404, "nothing"}));
}

TEST_F(NetworkHttpClientTest, EndsWhatIsTooLargeOrBreaksOff) {
    EXPECT_EQ(get(QStringLiteral("/limit")), (HttpResponse{200, QByteArray(1 << 20, 'x')}));
    EXPECT_EQ(get(QStringLiteral("/large")), std::unexpected(HttpError::tooLarge));
    EXPECT_EQ(get(QStringLiteral("/short")), std::unexpected(HttpError::transport));
}

TEST_F(NetworkHttpClientTest, BoundsWhatComesBeforeTheBody) {
    for (const auto& path : {QStringLiteral("/header"), QStringLiteral("/line")})
        EXPECT_EQ(get(path), std::unexpected(HttpError::tooLarge)) << path.toStdString();
    EXPECT_EQ(get(QStringLiteral("/hugechunk")), std::unexpected(HttpError::tooLarge));
    for (const auto& path :
         {QStringLiteral("/chunks"), QStringLiteral("/interim"), QStringLiteral("/toclose")})
        EXPECT_EQ(get(path), (HttpResponse{200, "body"})) << path.toStdString();
    for (const auto& path :
         {QStringLiteral("/cutchunk"), QStringLiteral("/nonsense"), QStringLiteral("/lengths")})
        EXPECT_EQ(get(path), std::unexpected(HttpError::transport)) << path.toStdString();
}

TEST_F(NetworkHttpClientTest, FollowsAsManyRedirectsAsAreWantedAndOnlyToAllowedAddresses) {
    EXPECT_EQ(get(QStringLiteral("/moved")), std::unexpected(HttpError::redirectRefused));
    const auto follow = [&](const QString& path) {
        return get({.url = _server.url(path), .maximumRedirects = 2});
    };
    EXPECT_EQ(follow(QStringLiteral("/moved")), (HttpResponse{200, "body"}));
    EXPECT_EQ(follow(QStringLiteral("/round")), std::unexpected(HttpError::redirectRefused));
    EXPECT_EQ(follow(QStringLiteral("/away")), std::unexpected(HttpError::redirectRefused));
    EXPECT_EQ(follow(QStringLiteral("/file")), std::unexpected(HttpError::redirectRefused));
}

TEST_F(NetworkHttpClientTest, StopsAtItsTimeAndWhenTheCallIsDropped) {
    std::optional<HttpClient::Answer> result;
    const auto keep = [&](HttpClient::Answer answer) { result = std::move(answer); };
    HttpCall call = _client.get({.url = _server.url(QStringLiteral("/stalled"))}, keep);
    test::processEventsUntil([&] { return !_server.paths.isEmpty(); });
    _time.advance(14'999ms);
    EXPECT_FALSE(result);
    _time.advance(1ms);
    EXPECT_EQ(result, HttpClient::Answer(std::unexpected(HttpError::timedOut)));

    result.reset();
    call = _client.get({.url = _server.url(QStringLiteral("/stalled"))}, keep);
    call.cancel();
    _time.advance(1h);
    QCoreApplication::processEvents();
    EXPECT_FALSE(result);
}

TEST_F(NetworkHttpClientTest, AsksNobodyAtAddressesThatAreNotAllowed) {
    for (const auto* address :
         {u"http://example.com/", u"file:///etc/passwd", u"ftp://127.0.0.1/", u"", u"https://",
          u"http://127.0.0.1.example.com/", u"http://localhost@example.com/", u"http://2130706433/x"})
        EXPECT_FALSE(isAllowedAddress(QUrl(QString::fromUtf16(address))) &&
                     !isLoopback(QUrl(QString::fromUtf16(address))))
            << QString::fromUtf16(address).toStdString();
    for (const auto* address : {u"https://example.com/a", u"http://127.0.0.1:8080", u"http://[::1]/",
                                u"http://localhost:1/x"})
        EXPECT_TRUE(isAllowedAddress(QUrl(QString::fromUtf16(address))))
            << QString::fromUtf16(address).toStdString();
    EXPECT_EQ(get({.url = QUrl(QStringLiteral("http://example.com/"))}),
              std::unexpected(HttpError::addressRefused));
}

} // namespace
} // namespace tessellar
