#pragma once

#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QTest>

/** A web server of this machine that keeps whoever asks waiting until it is told what to answer. */
class HeldServer : public QTcpServer
{
public:
    HeldServer()
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("cannot listen");
    }

    QByteArray url(const QByteArray &name) const
    {
        return "http://127.0.0.1:" + QByteArray::number(serverPort()) + '/' + name;
    }

    /** Answers one request with @p body under @p status; returns whether there was one. */
    bool answer(const QByteArray &status, const QByteArray &body)
    {
        if (!QTest::qWaitFor([this] { return hasPendingConnections(); }))
            return false;
        QTcpSocket *socket = nextPendingConnection();
        // A connection that is closed with its request unread counts as broken, and is tried again.
        QByteArray request;
        if (!QTest::qWaitFor([&] { return (request += socket->readAll()).contains("\r\n\r\n"); }))
            return false;
        socket->write("HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: "
                      + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket->disconnectFromHost();
        return true;
    }
};
