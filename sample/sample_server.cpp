// Answers on the loopback for the store's lookup service and for the feeds of a sample Mac, from the
// files that its builder wrote.

#include "sample/demonstration_mac.h"

#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <cstdio>

using namespace tessellar;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 longestRequest = 8'192;

/// The file that holds the answer to a request, or nothing for one that is not understood.
QString fileFor(const QUrl& url, const QString& folder) {
    const auto isPlain = [](const QString& name) {
        return !name.isEmpty() && std::ranges::all_of(name, [](QChar c) {
            return c.isLetterOrNumber() || c == u'-' || c == u'_';
        });
    };
    if (url.path() == u"/lookup") {
        const QString id = QUrlQuery(url).queryItemValue(u"id"_s);
        return isPlain(id) ? folder + u"/lookup/"_s + id + u".json"_s : QString();
    }
    QString name = url.path();
    if (!name.startsWith(u"/feeds/") || !name.endsWith(u".xml"))
        return {};
    name = name.sliced(7).chopped(4);
    return isPlain(name) ? folder + u"/feeds/"_s + name + u".xml"_s : QString();
}

void answer(QTcpSocket* socket, const QString& folder) {
    const QByteArray head = socket->peek(longestRequest);
    if (!head.contains("\r\n\r\n") && head.size() < longestRequest)
        return;
    const QList<QByteArray> words = head.left(head.indexOf("\r\n")).split(' ');
    QByteArray status = "404 Not Found";
    QByteArray body;
    if (words.value(0) == "GET") {
        QFile file(fileFor(QUrl::fromEncoded(words.value(1)), folder));
        if (!file.fileName().isEmpty() && file.open(QIODevice::ReadOnly)) {
            body = file.readAll();
            status = "200 OK";
        }
    }
    std::printf("%s %s\n", status.left(3).constData(), words.value(1).constData());
    std::fflush(stdout);
    socket->disconnect(); // one answer for each connection
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    socket->readAll();
    socket->write("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                  "\r\nConnection: close\r\n\r\n" + body);
    socket->disconnectFromHost();
}

} // namespace

int main(int argc, char** argv) {
    CLI::App cli("Answers for the store and the feeds of a sample Mac, on the loopback.");
    std::string directory;
    const QUrl usual(sample::demonstrationServer);
    quint16 port = quint16(usual.port());
    cli.add_option("DIRECTORY", directory, "The sample Mac's folder")->required();
    cli.add_option("--port", port, "Another port than the one that its settings name");
    CLI11_PARSE(cli, argc, argv);

    QCoreApplication application(argc, argv);
    const QString folder =
        QString::fromStdString(directory) + sample::MacBuilder::toolData() + u"/http"_s;
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, port)) {
        std::fprintf(stderr, "Could not listen on port %d: %s\n", int(port),
                     qPrintable(server.errorString()));
        return 1;
    }
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        while (QTcpSocket* socket = server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [socket, folder] { answer(socket, folder); });
        }
    });
    std::printf("http://127.0.0.1:%d\n", int(server.serverPort()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
