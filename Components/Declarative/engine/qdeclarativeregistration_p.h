#pragma once

#include <QtQml/qqml.h>

/**
 * Registers @p T as @p name in QtQuick 1.0, QtQuick 1.1 and Qt 4.7 at once.
 *
 * Members that only QtQuick 1.1 has are marked REVISION 1.
 */
template <typename T>
void registerDeclarativeType(const char *name)
{
    qmlRegisterType<T>("QtQuick", 1, 0, name);
    qmlRegisterType<T, 1>("QtQuick", 1, 1, name);
    qmlRegisterType<T>("Qt", 4, 7, name);
}

/** Registers @p T likewise for its enumerations or attached properties; who makes one is told @p reason. */
template <typename T>
void registerDeclarativeUncreatableType(const char *name, const QString &reason)
{
    qmlRegisterUncreatableType<T>("QtQuick", 1, 0, name, reason);
    qmlRegisterUncreatableType<T, 1>("QtQuick", 1, 1, name, reason);
    qmlRegisterUncreatableType<T>("Qt", 4, 7, name, reason);
}

/**
 * Makes the members that @p T marks as REVISION 1 available to its subclasses in QtQuick 1.1.
 *
 * For a base class that has no QML name and may be abstract, which Qt's own function does not allow.
 */
template <typename T>
void registerDeclarativeRevision()
{
    const QByteArray name = T::staticMetaObject.className();
    const QQmlPrivate::RegisterType type = {
        1,
        qRegisterNormalizedMetaType<T *>(name + '*'),
        qRegisterNormalizedMetaType<QQmlListProperty<T>>("QQmlListProperty<" + name + '>'),
        0,
        nullptr,
        QString(),
        "QtQuick",
        1,
        1,
        nullptr,
        &T::staticMetaObject,
        nullptr,
        nullptr,
        QQmlPrivate::StaticCastSelector<T, QQmlParserStatus>::cast(),
        -1,
        -1,
        nullptr,
        nullptr,
        nullptr,
        1,
    };
    QQmlPrivate::qmlregister(QQmlPrivate::TypeRegistration, const_cast<QQmlPrivate::RegisterType *>(&type));
}
