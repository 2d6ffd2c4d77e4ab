#pragma once

#include "LocalServer.h"

#include <QtTest/QTest>

/** Keeps whoever asks waiting until it is told what to answer. */
class HeldServer : public LocalServer
{
public:
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
        LocalServer::answer(socket, status, body);
        return true;
    }
};
