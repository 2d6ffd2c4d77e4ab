#include "qdeclarativelistmodelparser_p.h"

#include "bounds/qdeclarativeqtcompat_p.h"
#include "qdeclarativelistmodel_p.h"

#include <QtCore/QCoreApplication>

namespace {

QString trMessage(const char *text)
{
    return QCoreApplication::translate("QDeclarativeListModelParser", text);
}

bool isEmptyList(const QString &script)
{
    const QString trimmed = script.trimmed();
    return trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))
        && trimmed.midRef(1, trimmed.size() - 2).trimmed().isEmpty();
}

} // namespace

QDeclarativeListModelParser::QDeclarativeListModelParser()
    : QQmlCustomParser(AcceptsSignalHandlers)
{
}

void QDeclarativeListModelParser::verifyBindings(const Unit &unit, const QList<const Binding *> &bindings)
{
    for (const Binding *binding : bindings) {
        const QString property = unit->stringAt(int(binding->propertyNameIndex));
        if (!property.isEmpty()) {
            error(binding, trMessage("ListModel: undefined property '%1'").arg(property));
            return;
        }
        if (!verifyElement(unit, binding))
            return;
    }
}

bool QDeclarativeListModelParser::verifyElement(const Unit &unit, const Binding *binding)
{
    const auto *element = unit->objectAt(int(binding->value.objectIndex));
    const QString name = unit->stringAt(int(element->inheritedTypeNameIndex));
    if (resolveType(name) != &QDeclarativeListElement::staticMetaObject) {
        error(element, trMessage("ListElement: cannot contain nested elements"));
        return false;
    }
    if (!unit->stringAt(int(element->idNameIndex)).isEmpty()) {
        error(element->locationOfIdProperty, trMessage("ListElement: cannot use reserved \"id\" property"));
        return false;
    }
    const Binding *value = element->bindingTable();
    for (quint32 i = 0; i < element->nBindings; ++i, ++value) {
        if (unit->stringAt(int(value->propertyNameIndex)).isEmpty()) {
            error(value, trMessage("ListElement: cannot contain nested elements"));
            return false;
        }
        if (!verifyValue(unit, value))
            return false;
    }
    return true;
}

bool QDeclarativeListModelParser::verifyValue(const Unit &unit, const Binding *binding)
{
    const auto type = QtCompat::bindingType(*binding);
    if (type == Binding::Type_Object)
        return verifyElement(unit, binding);
    if (type == Binding::Type_AttachedProperty || type == Binding::Type_GroupProperty) {
        error(binding, trMessage("ListElement: cannot contain nested elements"));
        return false;
    }
    if (type != Binding::Type_Script)
        return true;
    const QString script = unit->bindingValueAsScriptString(binding);
    bool isEnum = false;
    if (!isEmptyList(script))
        evaluateEnum(script.toUtf8(), &isEnum);
    if (isEnum || isEmptyList(script))
        return true;
    error(binding, trMessage("ListElement: cannot use script for property value"));
    return false;
}

void QDeclarativeListModelParser::applyBindings(QObject *object, const Unit &unit,
                                                const QList<const Binding *> &bindings)
{
    auto *model = static_cast<QDeclarativeListModel *>(object);
    for (const Binding *binding : bindings)
        model->insertRow(model->count(), elementValues(unit, binding));
}

QVariantMap QDeclarativeListModelParser::elementValues(const Unit &unit, const Binding *binding) const
{
    QVariantMap values;
    const auto *element = unit->objectAt(int(binding->value.objectIndex));
    const Binding *entry = element->bindingTable();
    for (quint32 i = 0; i < element->nBindings; ++i, ++entry) {
        const QString role = unit->stringAt(int(entry->propertyNameIndex));
        if (QtCompat::bindingType(*entry) == Binding::Type_Object) {
            QVariantList list = values.value(role).toList();
            list.append(elementValues(unit, entry));
            values.insert(role, list);
        } else {
            values.insert(role, value(unit, entry));
        }
    }
    return values;
}

QVariant QDeclarativeListModelParser::value(const Unit &unit, const Binding *binding) const
{
    switch (QtCompat::bindingType(*binding)) {
    case Binding::Type_Boolean:
        return binding->valueAsBoolean();
    case Binding::Type_Number:
        return unit->bindingValueAsNumber(binding);
    case Binding::Type_Null:
        return QVariant::fromValue(nullptr);
    case Binding::Type_Script: {
        const QString script = unit->bindingValueAsScriptString(binding);
        if (isEmptyList(script))
            return QVariantList();
        bool isEnum = false;
        return evaluateEnum(script.toUtf8(), &isEnum);
    }
    default:
        return unit->bindingValueAsString(binding);
    }
}
