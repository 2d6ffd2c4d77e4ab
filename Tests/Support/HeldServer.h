#pragma once

#include "LocalServer.h"
#include "Patience.h"

#include <QtTest/QTest>

/** Keeps whoever asks waiting until it is told what to answer. */
class HeldServer : public LocalServer
{
public:
    /** Answers one request with @p body under @p status; returns whether there was one. */
    bool answer(const QByteArray &status, const QByteArray &body)
    {
        if (!QTest::qWaitFor([this] { return hasPendingConnections(); }, Patience::longest))
            return false;
        QTcpSocket *socket = nextPendingConnection();
        // A connection that is closed with its request unread counts as broken, and is tried again.
        QByteArray request;
        const auto isWhole = [&] { return (request += socket->readAll()).contains("\r\n\r\n"); };
        if (!QTest::qWaitFor(isWhole, Patience::longest))
            return false;
        LocalServer::answer(socket, status, body);
        return true;
    }
};
