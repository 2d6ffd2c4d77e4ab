#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtQml/QQmlNetworkAccessManagerFactory>

/** The base of what makes an engine's network access managers, also for its threads. */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeNetworkAccessManagerFactory
    : public QQmlNetworkAccessManagerFactory
{
};
