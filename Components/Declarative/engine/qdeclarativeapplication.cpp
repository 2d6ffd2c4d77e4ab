#include "qdeclarativeapplication_p.h"

#include "guard/qdeclarativeworkers_p.h"

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlEngine>

#include <private/qqmlbuiltinfunctions_p.h>
#include <private/qv4engine_p.h>
#include <private/qv4scopedvalue_p.h>

QDeclarativeApplication::QDeclarativeApplication(QObject *parent)
    : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            &QDeclarativeApplication::activeChanged);
    connect(qGuiApp, &QGuiApplication::layoutDirectionChanged, this,
            &QDeclarativeApplication::layoutDirectionChanged);
}

void QDeclarativeApplication::install(QQmlEngine *engine)
{
    QV4::Scope scope(engine->handle());
    QV4::ScopedString name(scope, scope.engine->newString(QStringLiteral("Qt")));
    QV4::ScopedObject qt(scope, scope.engine->globalObject->get(name));
    // Where there is one already, the engine makes none.
    static_cast<QV4::Heap::QtObject *>(qt->d())->application = new QDeclarativeApplication(engine);
    QDeclarativeWorkers::setApplication([]() -> QObject * { return new QDeclarativeApplication(nullptr); });
}

bool QDeclarativeApplication::isActive() const
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

Qt::LayoutDirection QDeclarativeApplication::layoutDirection() const
{
    return QGuiApplication::layoutDirection();
}

#include "moc_qdeclarativeapplication_p.cpp"
