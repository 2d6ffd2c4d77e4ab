#include "qdeclarativeenginetype_p.h"
#include "qdeclarativefontloader_p.h"
#include "qdeclarativetypes_p.h"

#include <QtCore/QLoggingCategory>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>

#include <private/qqmlmetatype_p.h>
#include <private/qqmltype_p_p.h>
#include <private/qtquick2_p.h>

#include <atomic>
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
    {"QtQml", "Connections", nullptr},
    {"QtQml", "Timer", nullptr},
    {"QtQml.WorkerScript", "WorkerScript", nullptr},
    {"QtQml.Models", "Package", nullptr},
    {"QtQuick", "State", nullptr},
    {"QtQuick", "StateGroup", nullptr},
    {"QtQuick", "PropertyChanges", nullptr},
    {"QtQuick", "StateChangeScript", nullptr},
    {"QtQuick", "Transition", nullptr},
    {"QtQuick", "Behavior", nullptr},
    {"QtQuick", "Gradient", nullptr},
    {"QtQuick", "Path", nullptr},
    {"QtQuick", "PathLine", nullptr},
    {"QtQuick", "PathQuad", nullptr},
    {"QtQuick", "PathCubic", nullptr},
    {"QtQuick", "PathAttribute", nullptr},
    {"QtQuick", "PathPercent", nullptr},
    {"QtQuick", "SystemPalette", nullptr},
    {"QtQuick", "IntValidator", nullptr},
    {"QtQuick", "DoubleValidator", nullptr},
    {"QtQuick", "RegExpValidator", nullptr},
    {"QtQuick", "Easing", nullptr},
};

// Read by whichever thread makes a category.
std::atomic<QLoggingCategory::CategoryFilter> previousFilter{nullptr};

/**
 * QML 1 content knows no other form of handlers in Connections than the one that the engine warns of, and no
 * restoreMode in Binding.
 */
void silenceNotices(QLoggingCategory *category)
{
    previousFilter.load()(category);
    if (std::strcmp(category->categoryName(), "qt.qml.connections") == 0
        || std::strcmp(category->categoryName(), "qt.qml.binding.restoreMode") == 0)
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

QQmlType quickType(const char *name)
{
    return QQmlMetaType::qmlType(QString::fromLatin1(name), QStringLiteral("QtQuick"), 2, 15);
}

/** Both halves of Qt Quick 2 are registered; this type belongs to neither alone. */
bool isQuickComplete()
{
    return quickType("Easing").isValid();
}

/** Has Qt Quick 2 registered, exactly once: its providers of values loop for ever when they come twice. */
void registerQuickTypes()
{
    if (isQuickComplete())
        return;
    // Its plugin, where there is one, refuses to load later for a host that uses Qt Quick 2 as well.
    QQmlEngine engine;
    QQmlComponent(&engine).setData("import QtQuick 2.0\nQtObject {}", QUrl());
    if (isQuickComplete())
        return;
    // Where there is none, the import had the library register its half alone.
    const bool isLibraryRegistered = quickType("State").isValid();
    QQmlQtQuick2Module::defineModule();
    if (!isLibraryRegistered)
        qml_register_types_QtQuick();
}

void registerEngineTypes()
{
    for (const EngineType &entry : engineTypes) {
        const QQmlType type = QDeclarativeEngineType::find(entry.module, entry.name);
        QDeclarativeEngineType::registerCopy(type, entry.oldName ? entry.oldName : entry.name);
    }
    registerDeclarativeType<QDeclarativeFontLoader>("FontLoader");
    // QML 1 refuses it without a reason, so that the engine gives its own.
    QDeclarativeEngineType::registerCopy(QDeclarativeEngineType::find("QtQuick", "Font"), "Font",
                                         {nullptr, nullptr, ""});
    QDeclarativeEngineType::registerLaterUncreatable(QDeclarativeEngineType::find("QtQuick", "Application"),
                                                     "Application",
                                                     QStringLiteral("Application is an abstract class"));
}

} // namespace

void qmlRegisterDeclarativeTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        qml_register_types_QtQml();
        qml_register_types_QtQml_Models();
        qml_register_types_QtQml_WorkerScript();
        registerQuickTypes();
        // Installing runs the filter at once, so the one it calls must be known before.
        previousFilter = QLoggingCategory::installFilter(nullptr);
        QLoggingCategory::installFilter(silenceNotices);
        const QQmlPrivate::RegisterAutoParent autoParent = {0, parentGraphicsObject};
        QQmlPrivate::qmlregister(QQmlPrivate::AutoParentRegistration,
                                 const_cast<QQmlPrivate::RegisterAutoParent *>(&autoParent));
        registerEngineTypes();
        registerDeclarativeAnimationTypes();
        registerDeclarativeInitialisedTypes();
        registerDeclarativeListModelTypes();
        registerDeclarativeVisualModelTypes();
        registerDeclarativeXmlListModelTypes();
        registerDeclarativeFolderListModelTypes();
        registerDeclarativeParticleTypes();
        registerDeclarativeItemTypes();
        registerDeclarativeImageTypes();
        registerDeclarativeLoaderTypes();
        registerDeclarativeRepeaterTypes();
        registerDeclarativeTextTypes();
        registerDeclarativeTextInputTypes();
        registerDeclarativeTextEditTypes();
        registerDeclarativeMouseTypes();
        registerDeclarativeFlickableTypes();
        registerDeclarativeListViewTypes();
        registerDeclarativeGridViewTypes();
        registerDeclarativePathViewTypes();
        registerDeclarativePositionerTypes();
        registerDeclarativeRectangleTypes();
        registerDeclarativeFlipableTypes();
        registerDeclarativeLayoutTypes();
        registerDeclarativePinchTypes();
    });
}
