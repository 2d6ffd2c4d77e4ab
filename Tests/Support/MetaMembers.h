#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaObject>
#include <QtCore/QMetaProperty>

/** Returns "type name rw notifySignal" ("r" for a read-only one) of each property that @p meta adds. */
inline QList<QByteArray> ownProperties(const QMetaObject &meta)
{
    QList<QByteArray> properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const char *access = property.isWritable() ? " rw " : " r ";
        properties << QByteArray(property.typeName()) + ' ' + property.name() + access
                + property.notifySignal().name();
    }
    return properties;
}
