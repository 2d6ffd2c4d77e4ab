#include "qdeclarativelistmodel_p.h"
#include "qdeclarativetypes_p.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QVector>

#include <private/qqmlmetatype_p.h>
#include <private/qqmltype_p_p.h>
#include <private/qtquick2_p.h>

#include <cstring>
#include <mutex>

extern void qml_register_types_QtQml();
extern void qml_register_types_QtQml_Models();
extern void qml_register_types_QtQml_WorkerScript();
extern void qml_register_types_QtQuick();

namespace {

struct EngineType
{
    const char *module; ///< where Qt registers the type
    const char *name; ///< its name there
    const char *oldName; ///< its QML 1 name, where that differs
};

// The non-visual types, which work on any object and so on our items too.
const EngineType engineTypes[] = {
    {"QtQml", "QtObject", nullptr},
    {"QtQml", "Component", nullptr},
    {"QtQml", "Binding", nullptr},
    {"QtQml", "Connections", nullptr},
    {"QtQml", "Timer", nullptr},
    {"QtQml.WorkerScript", "WorkerScript", nullptr},
    {"QtQml.Models", "ListElement", nullptr},
    {"QtQml.Models", "Package", nullptr},
    {"QtQml.Models", "DelegateModel", "VisualDataModel"},
    {"QtQml.Models", "ObjectModel", "VisualItemModel"},
    {"QtQuick", "State", nullptr},
    {"QtQuick", "StateGroup", nullptr},
    {"QtQuick", "PropertyChanges", nullptr},
    {"QtQuick", "StateChangeScript", nullptr},
    {"QtQuick", "Transition", nullptr},
    {"QtQuick", "Animation", nullptr},
    {"QtQuick", "PropertyAnimation", nullptr},
    {"QtQuick", "NumberAnimation", nullptr},
    {"QtQuick", "ColorAnimation", nullptr},
    {"QtQuick", "RotationAnimation", nullptr},
    {"QtQuick", "Vector3dAnimation", nullptr},
    {"QtQuick", "SmoothedAnimation", nullptr},
    {"QtQuick", "SpringAnimation", nullptr},
    {"QtQuick", "SequentialAnimation", nullptr},
    {"QtQuick", "ParallelAnimation", nullptr},
    {"QtQuick", "PauseAnimation", nullptr},
    {"QtQuick", "PropertyAction", nullptr},
    {"QtQuick", "ScriptAction", nullptr},
    {"QtQuick", "Behavior", nullptr},
    {"QtQuick", "Gradient", nullptr},
    {"QtQuick", "GradientStop", nullptr},
    {"QtQuick", "Path", nullptr},
    {"QtQuick", "PathLine", nullptr},
    {"QtQuick", "PathQuad", nullptr},
    {"QtQuick", "PathCubic", nullptr},
    {"QtQuick", "PathAttribute", nullptr},
    {"QtQuick", "PathPercent", nullptr},
    {"QtQuick", "Font", nullptr},
    {"QtQuick", "FontLoader", nullptr},
    {"QtQuick", "SystemPalette", nullptr},
    {"QtQuick", "IntValidator", nullptr},
    {"QtQuick", "DoubleValidator", nullptr},
    {"QtQuick", "RegExpValidator", nullptr},
    {"QtQuick", "Easing", nullptr},
};

/** How @p type, as Qt registered it elsewhere, is registered as @p name in @p uri @p major . @p minor. */
QQmlPrivate::RegisterType copyOf(const QQmlType &type, const char *uri, int major, int minor,
                                 const char *name)
{
    const auto *cpp = type.priv()->extraData.cd;
    return {
        0,
        type.typeId(),
        type.qListTypeId(),
        cpp->allocationSize,
        cpp->newFunc,
        cpp->noCreationReason,
        uri,
        major,
        minor,
        name,
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

void registerCopy(const QQmlPrivate::RegisterType &copy)
{
    const QQmlType registered = QQmlMetaType::registerType(copy);
    // The copy shares the original's parser, which each would delete at exit: this one is never released.
    static QVector<QQmlType> *const immortal = new QVector<QQmlType>;
    immortal->append(registered);
}

QLoggingCategory::CategoryFilter previousFilter = nullptr;

/** QML 1 content knows no other form of handlers in Connections than the one that the engine warns of. */
void silenceConnectionsNotice(QLoggingCategory *category)
{
    previousFilter(category);
    if (std::strcmp(category->categoryName(), "qt.qml.connections") == 0)
        category->setEnabled(QtWarningMsg, false);
}

/** Gives an object made by Component.createObject() its place in the scene. */
QQmlPrivate::AutoParentResult parentGraphicsObject(QObject *object, QObject *parent)
{
    auto *item = qobject_cast<QGraphicsObject *>(object);
    if (!item)
        return QQmlPrivate::IncompatibleObject;
    auto *parentItem = qobject_cast<QGraphicsObject *>(parent);
    if (!parentItem)
        return QQmlPrivate::IncompatibleParent;
    item->setParentItem(parentItem);
    return QQmlPrivate::Parented;
}

QQmlType engineType(const EngineType &entry)
{
    const QQmlType type =
        QQmlMetaType::qmlType(QString::fromLatin1(entry.name), QString::fromLatin1(entry.module), 2, 15);
    if (!type.isValid())
        qFatal("QtDeclarative: Qt does not have the type %s in %s 2", entry.name, entry.module);
    return type;
}

void registerEngineTypes()
{
    for (const EngineType &entry : engineTypes) {
        const QQmlType type = engineType(entry);
        const char *name = entry.oldName ? entry.oldName : entry.name;
        registerCopy(copyOf(type, "QtQuick", 1, 0, name));
        registerCopy(copyOf(type, "Qt", 4, 7, name));
    }
}

/** Registers @p T, a subclass of what @p entry names, in place of it; both are read by the same parser. */
template <typename T>
void registerInPlaceOf(const EngineType &entry)
{
    const QQmlType type = engineType(entry);
    for (QQmlPrivate::RegisterType copy :
         {copyOf(type, "QtQuick", 1, 0, entry.name), copyOf(type, "Qt", 4, 7, entry.name)}) {
        copy.typeId = qRegisterNormalizedMetaType<T *>(QByteArray(T::staticMetaObject.className()) + '*');
        copy.listId = qRegisterNormalizedMetaType<QQmlListProperty<T>>(
            "QQmlListProperty<" + QByteArray(T::staticMetaObject.className()) + '>');
        copy.objectSize = sizeof(T);
        copy.create = QQmlPrivate::createInto<T>;
        copy.metaObject = &T::staticMetaObject;
        registerCopy(copy);
    }
}

} // namespace

void qmlRegisterDeclarativeTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        qml_register_types_QtQml();
        qml_register_types_QtQml_Models();
        qml_register_types_QtQml_WorkerScript();
        QQmlQtQuick2Module::defineModule();
        qml_register_types_QtQuick();
        // Installing runs the filter at once, so the one it calls must be known before.
        previousFilter = QLoggingCategory::installFilter(nullptr);
        QLoggingCategory::installFilter(silenceConnectionsNotice);
        const QQmlPrivate::RegisterAutoParent autoParent = {0, parentGraphicsObject};
        QQmlPrivate::qmlregister(QQmlPrivate::AutoParentRegistration,
                                 const_cast<QQmlPrivate::RegisterAutoParent *>(&autoParent));
        registerEngineTypes();
        registerInPlaceOf<QDeclarativeListModel>({"QtQml.Models", "ListModel", nullptr});
        registerDeclarativeItemTypes();
        registerDeclarativeImageTypes();
        registerDeclarativeLoaderTypes();
        registerDeclarativeRepeaterTypes();
        registerDeclarativeTextTypes();
        registerDeclarativeMouseTypes();
        registerDeclarativeFlickableTypes();
        registerDeclarativeListViewTypes();
        registerDeclarativeGridViewTypes();
        registerDeclarativePathViewTypes();
        registerDeclarativePositionerTypes();
        registerDeclarativeRectangleTypes();
    });
}
