#include "qdeclarativedatabases_p.h"

#include "guard/qdeclarativeguardedfunctions_p.h"

#include <QtCore/QVariant>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>

#include <private/qqmlengine_p.h>
#include <private/qv4engine_p.h>

QDeclarativeDatabases::QDeclarativeDatabases(QQmlEngine *engine)
    : QObject(engine)
    , m_engine(engine)
{
}

void QDeclarativeDatabases::install(QQmlEngine *engine)
{
    const QString name = QStringLiteral("openDatabaseSync");
    const QJSValue object = engine->newQObject(new QDeclarativeDatabases(engine));
    QQmlEngine::setObjectOwnership(object.toQObject(), QQmlEngine::CppOwnership);
    // The engine's global object takes no more members.
    engine->rootContext()->setContextProperty(name, QVariant::fromValue(object.property(name)));
}

QObject *QDeclarativeDatabases::storage(QString *error)
{
    if (!m_module) {
        QQmlComponent component(m_engine);
        component.setData("import QtQml 2.0\nimport QtQuick.LocalStorage 2.0\n"
                          "QtObject { property QtObject storage: LocalStorage }",
                          QUrl());
        m_module = component.isReady() ? component.create() : nullptr;
        if (!m_module) {
            *error = component.errors().value(0).description();
            return nullptr;
        }
        m_module->setParent(this);
    }
    return m_module->property("storage").value<QObject *>();
}

void QDeclarativeDatabases::openDatabaseSync(QQmlV4Function *arguments)
{
    if (QDeclarativeGuardedFunctions::refuses(m_engine, QStringLiteral("openDatabaseSync()")))
        return;
    QString error;
    QObject *const databases = storage(&error);
    if (databases)
        QMetaObject::invokeMethod(databases, "openDatabaseSync", Q_ARG(QQmlV4Function *, arguments));
    else
        arguments->v4engine()->throwError(error);
}

#include "moc_qdeclarativedatabases_p.cpp"
