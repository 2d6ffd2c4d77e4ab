#pragma once

#include "LocalServer.h"

#include <QtCore/QFile>
#include <QtCore/QString>

/** Serves the files of a folder, and counts who asks. */
class FolderServer : public LocalServer
{
public:
    explicit FolderServer(const QString &folder)
    {
        connect(this, &QTcpServer::newConnection, this, [this, folder] {
            ++connections;
            QTcpSocket *const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket, folder] {
                const QByteArray name = socket->readAll().split(' ').value(1);
                QFile file(folder + QString::fromLatin1(name));
                const bool isThere = file.open(QIODevice::ReadOnly);
                answer(socket, isThere ? "200 OK" : "404 Not Found", file.readAll());
            });
        });
    }

    int connections = 0;
};
