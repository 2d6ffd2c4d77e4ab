#pragma once

#include <QtDeclarative/qdeclarativecontext.h>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativeerror.h>
#include <QtDeclarative/qdeclarativenamed.h>
#include <QtDeclarative/qdeclarativescriptstring.h>

#include <QtQml/QQmlExpression>

/** A script that is evaluated in a context. GUI thread. */
class QDeclarativeExpression : public QQmlExpression
{
    QDECLARATIVE_NAMED(QQmlExpression)

public:
    QDeclarativeExpression() = default;
    using QQmlExpression::QQmlExpression;

    /** Returns the engine that evaluates, or null when there is no context. */
    QDeclarativeEngine *engine() const { return QDeclarativeEngine::named(QQmlExpression::engine()); }

    /** Returns the context that the script is evaluated in, or null. */
    QDeclarativeContext *context() const { return QDeclarativeContext::named(QQmlExpression::context()); }

    /** Returns what went wrong at the last evaluation. */
    QDeclarativeError error() const { return QQmlExpression::error(); }
};
