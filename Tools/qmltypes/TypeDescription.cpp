#include "TypeDescription.h"

#include <QtCore/QMetaEnum>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtCore/QMetaType>
#include <private/qhashedstring_p.h>
#include <private/qqmlmetatype_p.h>

#include <algorithm>

namespace {

struct TypeName
{
    QByteArray name;
    bool isPointer = false;
    bool isList = false;
};

TypeName typeName(QByteArray name)
{
    static const QByteArray list("QQmlListProperty<");
    TypeName type;
    if (name.startsWith(list) && name.endsWith('>')) {
        type.isList = true;
        name = name.mid(list.size(), name.size() - list.size() - 1);
    }
    if (name.endsWith('*')) {
        type.isPointer = true;
        name.chop(1);
    }
    static const QHash<QByteArray, QByteArray> qmlNames = {
        {"QString", "string"}, {"qreal", "double"}, {"float", "float"}, {"QUrl", "QUrl"}};
    type.name = qmlNames.value(name, name);
    return type;
}

QByteArray typeFields(const QByteArray &name)
{
    const TypeName type = typeName(name);
    return "; type: \"" + type.name + '"' + (type.isList ? "; isList: true" : "")
        + (type.isPointer ? "; isPointer: true" : "");
}

QByteArray revisionField(int revision)
{
    return revision > 0 ? "; revision: " + QByteArray::number(revision) : QByteArray();
}

QByteArray propertyLine(const QMetaProperty &property)
{
    return "        Property { name: \"" + QByteArray(property.name()) + '"'
        + revisionField(property.revision()) + typeFields(property.typeName())
        + (property.isWritable() ? "" : "; isReadonly: true") + " }\n";
}

QByteArray enumBlock(const QMetaEnum &enumeration)
{
    QByteArray text = "        Enum {\n            name: \"" + QByteArray(enumeration.name()) + "\"\n";
    if (enumeration.isFlag())
        text += "            isFlag: true\n";
    text += "            values: {\n";
    for (int i = 0; i < enumeration.keyCount(); ++i) {
        const char *const separator = i + 1 < enumeration.keyCount() ? ",\n" : "\n";
        text += "                \"" + QByteArray(enumeration.key(i))
            + "\": " + QByteArray::number(enumeration.value(i)) + separator;
    }
    return text + "            }\n        }\n";
}

QByteArray methodBlock(const QMetaMethod &method)
{
    const bool isSignal = method.methodType() == QMetaMethod::Signal;
    QByteArray head = (isSignal ? "        Signal {" : "        Method {");
    QByteArray body = " name: \"" + method.name() + '"' + revisionField(method.revision());
    const QByteArray result = method.typeName();
    if (result != "void")
        body += typeFields(result);
    if (method.parameterCount() == 0)
        return head + body + " }\n";

    body.replace("; ", "\n            ").prepend("\n           ");
    const QList<QByteArray> names = method.parameterNames();
    const QList<QByteArray> types = method.parameterTypes();
    for (int i = 0; i < types.size(); ++i) {
        const QByteArray name = names.at(i).isEmpty() ? QByteArray() : "name: \"" + names.at(i) + '"';
        const QByteArray fields = typeFields(types.at(i));
        body += "\n            Parameter { " + (name.isEmpty() ? fields.mid(2) : name + fields) + " }";
    }
    return head + body + "\n        }\n";
}

bool isForQml(const QMetaMethod &method)
{
    return method.access() == QMetaMethod::Public && !(method.attributes() & QMetaMethod::Cloned)
        && !method.name().startsWith('_');
}

QByteArray listField(const char *name, const QStringList &values)
{
    return "        " + QByteArray(name) + ": [" + values.join(QStringLiteral(", ")).toUtf8() + "]\n";
}

// What the list property of @p type, a registered type's number, holds.
const QMetaObject *classOf(int type)
{
    if (QQmlMetaType::isList(type))
        type = QQmlMetaType::listType(type);
    return QMetaType::metaObjectForType(type);
}

} // namespace

TypeDescription::TypeDescription(const QString &module)
{
    const QList<QQmlType> types = QQmlMetaType::qmlAllTypes();
    for (const QQmlType &type : types) {
        if (static_cast<QString>(type.module()) != module)
            continue;
        Export &entry = m_exports[type.metaObject()->className()];
        entry.names += QStringLiteral("\"%1 %2.%3\"")
                           .arg(type.qmlTypeName())
                           .arg(type.majorVersion())
                           .arg(type.minorVersion());
        entry.revisions += QString::number(type.metaObjectRevision());
        entry.isCreatable = type.isCreatable();
        if (const QMetaObject *const attached = type.attachedPropertiesType(nullptr))
            entry.attached = attached->className();
        addClass(type.metaObject());
    }
}

bool TypeDescription::isEmpty() const
{
    return m_exports.isEmpty();
}

void TypeDescription::addClass(const QMetaObject *metaObject)
{
    for (; metaObject && metaObject != &QObject::staticMetaObject; metaObject = metaObject->superClass()) {
        if (m_classes.contains(metaObject->className()))
            return;
        m_classes.insert(metaObject->className(), metaObject);
        addPropertyClasses(metaObject);
    }
}

void TypeDescription::addPropertyClasses(const QMetaObject *metaObject)
{
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i)
        addClass(classOf(metaObject->property(i).userType()));
}

QByteArray TypeDescription::exports(const QMetaObject *metaObject) const
{
    const auto found = m_exports.constFind(metaObject->className());
    if (found == m_exports.constEnd())
        return {};
    QByteArray text = listField("exports", found->names);
    if (!found->isCreatable)
        text += "        isCreatable: false\n";
    text += listField("exportMetaObjectRevisions", found->revisions);
    if (!found->attached.isEmpty())
        text += "        attachedType: \"" + found->attached + "\"\n";
    return text;
}

QByteArray TypeDescription::component(const QMetaObject *metaObject) const
{
    QByteArray text = "    Component {\n        name: \"" + QByteArray(metaObject->className()) + "\"\n";
    const int defaultProperty = metaObject->indexOfClassInfo("DefaultProperty");
    if (defaultProperty >= metaObject->classInfoOffset())
        text += "        defaultProperty: \"" + QByteArray(metaObject->classInfo(defaultProperty).value())
            + "\"\n";
    if (metaObject->superClass())
        text += "        prototype: \"" + QByteArray(metaObject->superClass()->className()) + "\"\n";
    text += exports(metaObject);
    for (int i = metaObject->enumeratorOffset(); i < metaObject->enumeratorCount(); ++i)
        text += enumBlock(metaObject->enumerator(i));
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i)
        text += propertyLine(metaObject->property(i));
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        if (isForQml(metaObject->method(i)))
            text += methodBlock(metaObject->method(i));
    }
    return text + "    }\n";
}

QByteArray TypeDescription::text() const
{
    QByteArray text =
        "import QtQuick.tooling 1.2\n\n"
        "// The QML types of this module, for editors. Written by a program from the library's classes.\n\n"
        "Module {\n    dependencies: []\n";
    for (const QMetaObject *metaObject : m_classes)
        text += component(metaObject);
    return text + "}\n";
}
