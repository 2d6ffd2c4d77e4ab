#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtCore/QList>
#include <QtQml/QQmlError>

/** What is wrong in QML code, and where. */
class QDeclarativeError : public QQmlError
{
public:
    QDeclarativeError() = default;

    /** Makes a copy of @p error. */
    QDeclarativeError(const QQmlError &error)
        : QQmlError(error)
    {
    }

    /** Returns copies of @p errors, in their order. */
    static QList<QDeclarativeError> named(const QList<QQmlError> &errors)
    {
        return QList<QDeclarativeError>(errors.cbegin(), errors.cend());
    }
};

Q_DECLARE_TYPEINFO(QDeclarativeError, Q_MOVABLE_TYPE);
