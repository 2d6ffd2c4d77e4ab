#include "typefacts.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>

#include <private/qhashedstring_p.h>
#include <private/qqmlmetatype_p.h>

namespace {

/** The kind of a C++ type: the QML name of what is a value, else "enum", "object" or "list". */
QString seenKind(const QByteArray &cppType, bool isEnum)
{
    static const QHash<QByteArray, QString> names{
        {"double", QStringLiteral("real")},
        {"qreal", QStringLiteral("real")},
        {"QString", QStringLiteral("string")},
        {"QVariant", QStringLiteral("variant")},
        {"QJSValue", QStringLiteral("variant")},
        {"QColor", QStringLiteral("color")},
        {"QUrl", QStringLiteral("url")},
        {"QFont", QStringLiteral("font")},
        {"QQmlScriptString", QStringLiteral("script")},
    };
    if (isEnum)
        return QStringLiteral("enum");
    if (cppType.startsWith("QQmlListProperty<") || cppType.startsWith("QDeclarativeListProperty<"))
        return QStringLiteral("list");
    if (cppType.endsWith('*'))
        return QStringLiteral("object");
    return names.value(cppType, QString::fromLatin1(cppType));
}

/** The kind of a recorded type, see seenKind(). */
QString recordedKind(const QString &type, const QJsonObject &enums)
{
    if (enums.contains(type))
        return QStringLiteral("enum");
    static const QStringList values{
        QStringLiteral("bool"),        QStringLiteral("int"),
        QStringLiteral("real"),        QStringLiteral("string"),
        QStringLiteral("color"),       QStringLiteral("url"),
        QStringLiteral("variant"),     QStringLiteral("font"),
        QStringLiteral("QRectF"),      QStringLiteral("QRect"),
        QStringLiteral("QPointF"),     QStringLiteral("QPoint"),
        QStringLiteral("QSizeF"),      QStringLiteral("QSize"),
        QStringLiteral("QVector3D"),   QStringLiteral("QEasingCurve"),
        QStringLiteral("QRegExp"),     QStringLiteral("QPalette"),
        QStringLiteral("QSizePolicy"), QStringLiteral("QDeclarativeAnchorLine"),
    };
    if (values.contains(type))
        return type;
    if (type == QLatin1String("QScriptValue"))
        return QStringLiteral("variant");
    if (type == QLatin1String("QDeclarativeScriptString"))
        return QStringLiteral("script");
    if (type.startsWith(QLatin1String("list<")))
        return QStringLiteral("list");
    const bool isType = TypeFacts::registered(type).isValid();
    return isType || type.endsWith(QLatin1Char('*')) ? QStringLiteral("object") : QStringLiteral("enum");
}

/** What is wrong with one property, or nothing. */
QString propertyDifference(const QJsonObject &fact, const QJsonObject &enums, const QMetaObject &meta)
{
    const QByteArray name = fact.value(QLatin1String("name")).toString().toLatin1();
    const QMetaProperty property = meta.property(meta.indexOfProperty(name));
    if (!property.isValid())
        return QStringLiteral("missing");
    const QString recorded = recordedKind(fact.value(QLatin1String("type")).toString(), enums);
    const QString seen = seenKind(property.typeName(), property.isEnumType());
    if (recorded != seen)
        return QStringLiteral("type %1, not %2").arg(seen, recorded);
    const bool readOnly = fact.value(QLatin1String("readOnly")).toBool();
    if (recorded != QLatin1String("list") && readOnly == property.isWritable())
        return QStringLiteral("writable");
    const QString notify = fact.value(QLatin1String("notify")).toString();
    const QString seenNotify = QString::fromLatin1(property.notifySignal().name());
    if (!notify.isEmpty() && seenNotify != notify)
        return QStringLiteral("notifies by '%1', not '%2'").arg(seenNotify, notify);
    return {};
}

/** Whether @p method takes its arguments from the script as they come. */
bool takesAnything(const QMetaMethod &method)
{
    return method.parameterTypes() == QList<QByteArray>{"QQmlV4Function*"};
}

bool namesMatch(const QMetaMethod &method, const QJsonArray &parameters)
{
    const QList<QByteArray> names = method.parameterNames();
    for (int i = 0; i < names.count(); ++i) {
        const QString recorded = parameters.at(i)[QLatin1String("name")].toString();
        if (!recorded.isEmpty() && recorded != QLatin1String(names.at(i)))
            return false;
    }
    return true;
}

bool hasMethod(const QJsonObject &fact, const QMetaObject &meta, bool isSignal)
{
    const QByteArray name = fact.value(QLatin1String("name")).toString().toLatin1();
    const QJsonArray parameters = fact.value(QLatin1String("parameters")).toArray();
    for (int i = 0; i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.name() != name || (method.methodType() == QMetaMethod::Signal) != isSignal)
            continue;
        if (takesAnything(method))
            return true;
        if (method.access() == QMetaMethod::Public && method.parameterCount() == parameters.count()
            && (!isSignal || namesMatch(method, parameters)))
            return true;
    }
    return false;
}

QStringList methodDifferences(const QString &where, const QJsonArray &facts, const QMetaObject &meta,
                              bool isSignal)
{
    QStringList differences;
    for (const QJsonValue &fact : facts) {
        if (!hasMethod(fact.toObject(), meta, isSignal))
            differences +=
                QStringLiteral("%1.%2(): missing").arg(where, fact[QLatin1String("name")].toString());
    }
    return differences;
}

} // namespace

QQmlType TypeFacts::registered(const QString &name)
{
    const QString module = QStringLiteral("QtQuick");
    return QQmlMetaType::qmlType(QHashedStringRef(&name), QHashedStringRef(&module), 1, 1);
}

QStringList TypeFacts::propertyDifferences(const QString &where, const QJsonObject &facts,
                                           const QMetaObject &meta)
{
    QStringList differences;
    const QJsonObject enums = facts.value(QLatin1String("enums")).toObject();
    const QJsonArray properties = facts.value(QLatin1String("properties")).toArray();
    for (const QJsonValue &fact : properties) {
        const QString difference = propertyDifference(fact.toObject(), enums, meta);
        if (!difference.isEmpty())
            differences +=
                QStringLiteral("%1.%2: %3").arg(where, fact[QLatin1String("name")].toString(), difference);
    }
    return differences;
}

QStringList TypeFacts::memberDifferences(const QString &where, const QJsonObject &facts,
                                         const QMetaObject &meta)
{
    return propertyDifferences(where, facts, meta)
        + methodDifferences(where, facts.value(QLatin1String("signals")).toArray(), meta, true)
        + methodDifferences(where, facts.value(QLatin1String("methods")).toArray(), meta, false);
}

QHash<QString, int> TypeFacts::enumerators(const QJsonObject &facts)
{
    QHash<QString, int> values;
    for (const QJsonValue enumeration : facts.value(QLatin1String("enums")).toObject()) {
        const QJsonObject entries = enumeration.toObject();
        for (auto it = entries.begin(); it != entries.end(); ++it)
            values.insert(it.key(), it.value().toInt());
    }
    return values;
}

const QMetaObject *TypeFacts::groupedMetaObject(const QByteArray &className)
{
    const QByteArray pointer = className + '*';
    const auto isNamed = [&](int type) { return type && QMetaType::typeName(type) == pointer; };
    const auto types = QQmlMetaType::qmlTypes();
    for (const QQmlType &type : types) {
        const QMetaObject *meta = type.metaObject();
        if (!meta)
            continue;
        for (int i = 0; i < meta->propertyCount(); ++i) {
            if (isNamed(meta->property(i).userType()))
                return QMetaType::metaObjectForType(meta->property(i).userType());
        }
        for (int i = 0; i < meta->methodCount(); ++i) {
            for (int j = 0; j < meta->method(i).parameterCount(); ++j) {
                if (isNamed(meta->method(i).parameterType(j)))
                    return QMetaType::metaObjectForType(meta->method(i).parameterType(j));
            }
        }
    }
    return nullptr;
}
