#pragma once

#include "qdeclarativeitem.h"

#include <QtQml/qqml.h>

/**
 * Helpers with which each element family registers its types.
 *
 * Every family has one function, declared here, that registers its types; qmlRegisterDeclarativeTypes() calls
 * them in order. A type goes into QtQuick 1.0, QtQuick 1.1 and Qt 4.7 at once; members that only QtQuick 1.1
 * has are marked REVISION 1.
 */
template <typename T>
void registerDeclarativeType(const char *name)
{
    qmlRegisterType<T>("QtQuick", 1, 0, name);
    qmlRegisterType<T, 1>("QtQuick", 1, 1, name);
    qmlRegisterType<T>("Qt", 4, 7, name);
}

template <typename T>
void registerDeclarativeUncreatableType(const char *name, const QString &reason)
{
    qmlRegisterUncreatableType<T>("QtQuick", 1, 0, name, reason);
    qmlRegisterUncreatableType<T, 1>("QtQuick", 1, 1, name, reason);
    qmlRegisterUncreatableType<T>("Qt", 4, 7, name, reason);
}

/** Makes the members that @p T inherits and marks as REVISION 1 available to its subclasses in QtQuick 1.1.
 */
template <typename T>
void registerDeclarativeRevision()
{
    qmlRegisterRevision<T, 1>("QtQuick", 1, 1);
}

void registerDeclarativeItemTypes();
void registerDeclarativeTextTypes();
void registerDeclarativePositionerTypes();
void registerDeclarativeRectangleTypes();
