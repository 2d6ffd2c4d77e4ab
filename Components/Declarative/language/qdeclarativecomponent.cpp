#include "qdeclarativecomponent.h"

QDeclarativeComponentSignals::QDeclarativeComponentSignals(QObject *parent)
    : QQmlComponent(parent)
{
    pass();
}

QDeclarativeComponentSignals::QDeclarativeComponentSignals(QQmlEngine *engine, QObject *parent)
    : QQmlComponent(engine, parent)
{
    pass();
}

QDeclarativeComponentSignals::QDeclarativeComponentSignals(QQmlEngine *engine, const QString &file,
                                                           QObject *parent)
    : QQmlComponent(engine, file, parent)
{
    pass();
}

QDeclarativeComponentSignals::QDeclarativeComponentSignals(QQmlEngine *engine, const QUrl &url,
                                                           QObject *parent)
    : QQmlComponent(engine, url, parent)
{
    pass();
}

QDeclarativeComponentSignals::~QDeclarativeComponentSignals() = default;

void QDeclarativeComponentSignals::pass()
{
    connect(this, &QQmlComponent::statusChanged, this, &QDeclarativeComponentSignals::statusChanged);
}
