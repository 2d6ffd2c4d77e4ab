#pragma once

#include <QtCore/QByteArray>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

/** Serves one document to whoever asks. */
class DocumentServer : public QTcpServer
{
public:
    DocumentServer(const QByteArray &status, const QByteArray &body)
    {
        connect(this, &QTcpServer::newConnection, this, [this, status, body] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket, status, body] {
                if (!socket->readAll().contains("\r\n\r\n"))
                    return;
                socket->write("HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: "
                              + QByteArray::number(body.size()) + "\r\n\r\n" + body);
                socket->disconnectFromHost();
            });
        });
        if (!listen(QHostAddress::LocalHost))
            qFatal("cannot listen");
    }

    QByteArray url(const QByteArray &name) const
    {
        return "http://127.0.0.1:" + QByteArray::number(serverPort()) + '/' + name;
    }
};
