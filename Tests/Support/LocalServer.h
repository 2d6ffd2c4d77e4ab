#pragma once

#include <QtCore/QByteArray>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

/** A web server of this machine, on a port that is free; what it answers is up to the class that derives. */
class LocalServer : public QTcpServer
{
public:
    QByteArray url(const QByteArray &name) const
    {
        return "http://127.0.0.1:" + QByteArray::number(serverPort()) + '/' + name;
    }

protected:
    LocalServer()
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("cannot listen");
    }

    static void answer(QTcpSocket *socket, const QByteArray &status, const QByteArray &body)
    {
        socket->write("HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: "
                      + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket->disconnectFromHost();
    }
};
