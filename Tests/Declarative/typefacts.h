#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <private/qqmltype_p.h>

/**
 * Compares meta-objects with the facts of types.json; every difference is one line of text, "Type.member:
 * how".
 *
 * Whether a member belongs to a version of the module is not looked at here: only QML itself can tell.
 */
namespace TypeFacts {

/** The type that QtQuick 1.1 has under @p name; invalid when there is none. */
QQmlType registered(const QString &name);

/** What @p meta, with all that it inherits, lacks or has otherwise than @p facts record. */
QStringList memberDifferences(const QString &where, const QJsonObject &facts, const QMetaObject &meta);

/** As memberDifferences(), for the properties alone; @p meta may be of a gadget. */
QStringList propertyDifferences(const QString &where, const QJsonObject &facts, const QMetaObject &meta);

/** The enumerators of @p facts, by name. */
QHash<QString, int> enumerators(const QJsonObject &facts);

/** The meta-object of the class that properties or signals of a registered type name, or null. */
const QMetaObject *groupedMetaObject(const QByteArray &className);

} // namespace TypeFacts
