#pragma once

#include <QtDeclarative/qdeclarativenamed.h>
#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtQml/QQmlContext>
#include <QtQml/qqml.h>

class QDeclarativeEngine;

/**
 * What QML code sees by name: properties that C++ sets, and the context around.
 *
 * Owned by its parent context's engine, or by the object given to the constructor. GUI thread.
 */
class QDeclarativeContext : public QQmlContext
{
    QDECLARATIVE_NAMED(QQmlContext)

public:
    using QQmlContext::QQmlContext;

    /** Returns the engine that the context belongs to. */
    QDeclarativeEngine *engine() const;

    /** Returns the context around this one, or null for the engine's root. */
    QDeclarativeContext *parentContext() const { return named(QQmlContext::parentContext()); }

    /** Returns @p context, which may be null, under the name of this class. */
    static QDeclarativeContext *named(QQmlContext *context)
    {
        return static_cast<QDeclarativeContext *>(context);
    }
};

/** Returns the context that @p object was made in, or null if QML did not make it. */
template <typename T>
inline QDeclarativeContext *qmlContext(T *object)
{
    return QDeclarativeContext::named(QtQml::qmlContext(object));
}

#include <QtDeclarative/qdeclarativeengine.h>
