#pragma once

#include <QtDeclarative/qdeclarativenamed.h>

#include <QtQml/QQmlPropertyMap>

/** An object whose properties C++ sets by name, and QML binds to. GUI thread. */
class QDeclarativePropertyMap : public QQmlPropertyMap
{
    QDECLARATIVE_NAMED(QQmlPropertyMap)

public:
    /** Makes an object without properties, owned by @p parent if there is one. */
    explicit QDeclarativePropertyMap(QObject *parent = nullptr)
        : QQmlPropertyMap(parent)
    {
    }
};
