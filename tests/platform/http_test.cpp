#include "platform/http.h"

#include "tests/support/loopback_server.h"
#include "tests/support/manual_time.h"
#include "tests/support/printers.h"
#include "tests/support/run_tests.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
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
    HttpClient::Answer get(const QString& path, int redirects = 0) {
        return get({.url = _server.url(path), .maximumRedirects = redirects});
    }
    HttpClient::Answer getting(const QByteArray& bytes) {
        _says = {{"/", bytes}};
        return get(u"/"_s);
    }

    QMap<QByteArray, QByteArray> _says; ///< by path
    test::LoopbackServer _server{[this](const QByteArray& path) { return _says.value(path); }};
    test::ManualTime _time;
    NetworkHttpClient _client{_time};
};

TEST_F(NetworkHttpClientTest, GivesWhatTheServerSaysWithinItsBounds) {
    const QByteArray limit(1 << 20, 'x');
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
    EXPECT_EQ(getting(httpAnswer("404 Not Found", "nothing")), (HttpResponse{404, "nothing"}));
    EXPECT_EQ(getting(httpAnswer("200 OK", limit)), (HttpResponse{200, limit}));
    for (const QByteArray& bytes :
         {httpAnswer("200 OK", "body"), chunked + "2;a=b\r\nbo\r\n2\r\ndy\r\n0\r\nX: y\r\n\r\n",
          "HTTP/1.1 103 Early Hints\r\n\r\n" + httpAnswer("200 OK", "body"), ok + "\r\nbody"})
        EXPECT_EQ(getting(bytes), (HttpResponse{200, "body"})) << bytes.toStdString();
    for (const QByteArray& bytes :
         {httpAnswer("200 OK", limit + 'x'), ok + QByteArray("X-More: and more\r\n").repeated(100'000),
          ok + "X-More: " + limit, chunked + "ffffffffff\r\nx"})
        EXPECT_EQ(getting(bytes), std::unexpected(HttpError::tooLarge)) << bytes.left(80).toStdString();
    for (const QByteArray& bytes : {ok + "Content-Length: 100\r\n\r\nhalf", chunked + "4\r\nbo",
                                    QByteArray("SSH-2.0-OpenSSH\r\n\r\n"),
                                    ok + "Content-Length: 4\r\nContent-Length: 40\r\n\r\nbody"})
        EXPECT_EQ(getting(bytes), std::unexpected(HttpError::transport)) << bytes.toStdString();
}

TEST_F(NetworkHttpClientTest, FollowsAsManyRedirectsAsAreWantedAndOnlyToAllowedAddresses) {
    const auto redirect = [](const QByteArray& to, const QByteArray& status = "302") {
        return httpAnswer(status + " Moved", {}, "Location: " + to + "\r\n");
    };
    _says = {{"/there?x=1%2B1", httpAnswer("200 OK", "body")},
             {"/moved", redirect("/there?x=1%2B1")},
             {"/round", redirect("/round")},
             {"/away", redirect("http://example.com/")},
             {"/file", redirect("file:///etc/passwd")}};
    EXPECT_EQ(get(u"/moved"_s), std::unexpected(HttpError::redirectRefused));
    for (const char* status : {"301", "302", "303", "307", "308"}) {
        _says["/moved"] = redirect("/there?x=1%2B1", status);
        EXPECT_EQ(get(u"/moved"_s, 2), (HttpResponse{200, "body"})) << status;
    }
    for (const QString& path : {u"/round"_s, u"/away"_s, u"/file"_s})
        EXPECT_EQ(get(path, 2), std::unexpected(HttpError::redirectRefused)) << path.toStdString();
}

TEST_F(NetworkHttpClientTest, StopsAtItsTimeAndWhenTheCallIsDropped) {
    std::optional<HttpClient::Answer> result;
    const auto keep = [&](HttpClient::Answer answer) { result = std::move(answer); };
    HttpCall call = _client.get({.url = _server.url(u"/stalled"_s)}, keep);
    test::processEventsUntil([&] { return !_server.paths.isEmpty(); });
    _time.advance(14'999ms);
    EXPECT_FALSE(result);
    _time.advance(1ms);
    EXPECT_EQ(result, HttpClient::Answer(std::unexpected(HttpError::timedOut)));

    result.reset();
    call = _client.get({.url = _server.url(u"/stalled"_s)}, keep);
    call.cancel();
    _time.advance(1h);
    QCoreApplication::processEvents();
    EXPECT_FALSE(result);
}

TEST_F(NetworkHttpClientTest, AsksNobodyAtAddressesThatAreNotAllowed) {
    for (const QString& address :
         {u"http://example.com/"_s, u"file:///etc/passwd"_s, u"ftp://127.0.0.1/"_s, u""_s,
          u"https://"_s, u"http://127.0.0.1.example.com/"_s, u"http://localhost@example.com/"_s,
          u"http://2130706433/x"_s})
        EXPECT_FALSE(isAllowedAddress(QUrl(address)) && !isLoopback(QUrl(address)))
            << address.toStdString();
    for (const QString& address : {u"https://example.com/a"_s, u"http://127.0.0.1:8080"_s,
                                   u"http://[::1]/"_s, u"http://localhost:1/x"_s})
        EXPECT_TRUE(isAllowedAddress(QUrl(address))) << address.toStdString();
    EXPECT_EQ(get({.url = QUrl(u"http://example.com/"_s)}), std::unexpected(HttpError::addressRefused));
}

} // namespace
} // namespace tessellar
