#pragma once

#include <QtDeclarative/qdeclarativeerror.h>

#include <QtQml/QQmlInfo>

/** What qmlInfo() returns: a stream that prints a warning with file and line of the object when it ends. */
class QDeclarativeInfo : public QQmlInfo
{
public:
    /** Makes another end of @p stream. */
    QDeclarativeInfo(const QQmlInfo &stream)
        : QQmlInfo(stream)
    {
    }
};

/** Returns a stream that prints a warning about @p object. */
template <typename T>
inline QDeclarativeInfo qmlInfo(T *object)
{
    return QtQml::qmlWarning(object);
}

/** Returns a stream that prints a warning about @p object, followed by @p error. */
template <typename T>
inline QDeclarativeInfo qmlInfo(T *object, const QDeclarativeError &error)
{
    return QtQml::qmlWarning(object, error);
}

/** Returns a stream that prints a warning about @p object, followed by @p errors. */
template <typename T>
inline QDeclarativeInfo qmlInfo(T *object, const QList<QDeclarativeError> &errors)
{
    return QtQml::qmlWarning(object, QList<QQmlError>(errors.cbegin(), errors.cend()));
}
