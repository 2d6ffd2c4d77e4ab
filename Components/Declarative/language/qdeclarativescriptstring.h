#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtQml/QQmlScriptString>

/** A property's value that is a script, kept to be evaluated by a QDeclarativeExpression. */
class QDeclarativeScriptString : public QQmlScriptString
{
public:
    QDeclarativeScriptString() = default;

    /** Makes a copy of @p other. */
    QDeclarativeScriptString(const QQmlScriptString &other)
        : QQmlScriptString(other)
    {
    }
};

/** A property of this class is filled as one of Qt's own. */
template <>
struct QMetaTypeId<QDeclarativeScriptString> : QMetaTypeId<QQmlScriptString>
{
};
