#pragma once

#include <QtQml/QQmlNetworkAccessManagerFactory>

class QQmlEngine;

/** Makes network access managers that read what the guard of an engine admits, and never write. */
class QDeclarativeGuardedNetworkFactory : public QQmlNetworkAccessManagerFactory
{
public:
    explicit QDeclarativeGuardedNetworkFactory(const QQmlEngine *engine)
        : engine(engine)
    {
    }

    /** Any thread. */
    QNetworkAccessManager *create(QObject *parent) override;

private:
    const QQmlEngine *const engine;
};
