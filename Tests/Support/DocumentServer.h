#pragma once

#include "LocalServer.h"

/** Serves one document to whoever asks. */
class DocumentServer : public LocalServer
{
public:
    DocumentServer(const QByteArray &status, const QByteArray &body)
    {
        connect(this, &QTcpServer::newConnection, this, [this, status, body] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket, status, body] {
                if (socket->readAll().contains("\r\n\r\n"))
                    LocalServer::answer(socket, status, body);
            });
        });
    }
};
