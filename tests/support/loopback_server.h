#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

namespace tessellar::test {

/// A server on the loopback that sends, for each request, exactly the bytes that the test gives for its
/// path, and then closes unless they are empty: then it says nothing and keeps the connection.
class LoopbackServer {
public:
    explicit LoopbackServer(std::function<QByteArray(const QByteArray& path)> answer)
        : _answer(std::move(answer)) {
        _server.listen(QHostAddress::LocalHost);
        QObject::connect(&_server, &QTcpServer::newConnection, &_server, [this] {
            QTcpSocket* socket = _server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (!socket->canReadLine())
                    return;
                const QByteArray path = socket->readLine().split(' ').value(1);
                paths.append(path);
                const QByteArray bytes = _answer(path);
                if (bytes.isEmpty())
                    return;
                socket->write(bytes);
                socket->disconnectFromHost();
            });
        });
    }

    QUrl url(const QString& path) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(_server.serverPort()).arg(path));
    }

    QList<QByteArray> paths;

private:
    std::function<QByteArray(const QByteArray&)> _answer;
    QTcpServer _server;
};

inline QByteArray httpAnswer(const QByteArray& status, const QByteArray& body,
                             const QByteArray& header = {}) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
           header + "Connection: close\r\n\r\n" + body;
}

} // namespace tessellar::test
