#include "qdeclarativeqttype_p.h"

#include <QtCore/QVector>

#include <private/qqmlmetatype_p.h>
#include <private/qqmltype_p_p.h>

using namespace QDeclarativeQtType;

namespace {

QQmlPrivate::RegisterType registrationOf(const QQmlType &type)
{
    const auto *cpp = type.priv()->extraData.cd;
    return {
        0,
        type.typeId(),
        type.qListTypeId(),
        cpp->allocationSize,
        cpp->newFunc,
        cpp->noCreationReason,
        nullptr,
        0,
        0,
        nullptr,
        type.baseMetaObject(),
        cpp->attachedPropertiesFunc,
        cpp->attachedPropertiesType,
        cpp->parserStatusCast,
        cpp->propertyValueSourceCast,
        cpp->propertyValueInterceptorCast,
        cpp->extFunc,
        cpp->extMetaObject,
        cpp->customParser,
        0,
    };
}

void registerIn(QQmlPrivate::RegisterType copy, const char *uri, int major, int minor, const char *name)
{
    copy.uri = uri;
    copy.versionMajor = major;
    copy.versionMinor = minor;
    copy.elementName = name;
    // The copy shares the original's parser, which each would delete at exit: this one is never released.
    static auto *const immortal = new QVector<QQmlType>;
    immortal->append(QQmlMetaType::registerType(copy));
}

} // namespace

QQmlType QDeclarativeQtType::find(const char *module, const char *name)
{
    QQmlType type = QQmlMetaType::qmlType(QString::fromLatin1(name), QString::fromLatin1(module), 2, 15);
    if (!type.isValid())
        qFatal("QtDeclarative: Qt does not have the type %s in %s 2", name, module);
    return type;
}

CreateFunction QDeclarativeQtType::createFunction(const QQmlType &type)
{
    return type.priv()->extraData.cd->newFunc;
}

void QDeclarativeQtType::registerCopy(const QQmlType &type, const char *name, const Replacement &replacement)
{
    QQmlPrivate::RegisterType copy = registrationOf(type);
    if (replacement.create)
        copy.create = replacement.create;
    if (replacement.metaObject)
        copy.metaObject = replacement.metaObject;
    if (replacement.noCreationReason)
        copy.noCreationReason = QString::fromLatin1(replacement.noCreationReason);
    registerIn(copy, "QtQuick", 1, 0, name);
    registerIn(copy, "Qt", 4, 7, name);
}

void QDeclarativeQtType::registerAgain(const QQmlType &type)
{
    registerIn(registrationOf(type), "QtQuick", 1, 0, nullptr);
}
