#include "qdeclarativeqtmodules_p.h"

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>

#include <private/qqmlmetatype_p.h>
#include <private/qqmltype_p_p.h>
#include <private/qtquick2_p.h>

#include <optional>

extern void qml_register_types_QtQml();
extern void qml_register_types_QtQml_Models();
extern void qml_register_types_QtQml_WorkerScript();
extern void qml_register_types_QtQuick();

namespace {

QQmlType quickType(const char *name)
{
    return QQmlMetaType::qmlType(QString::fromLatin1(name), QStringLiteral("QtQuick"), 2, 15);
}

/** Both halves of Qt Quick 2 are registered; this type belongs to neither alone. */
bool isQuickComplete()
{
    return quickType("Easing").isValid();
}

void importQuick(QQmlEngine *engine)
{
    std::optional<QQmlEngine> ownEngine;
    QQmlComponent(engine ? engine : &ownEngine.emplace()).setData("import QtQuick 2.0\nQtObject {}", QUrl());
}

/** Has Qt Quick 2 registered, exactly once: its providers of values loop for ever when they come twice. */
void registerQuickTypes(QQmlEngine *engine)
{
    if (isQuickComplete())
        return;
    // Its plugin, where there is one, refuses to load later for a host that uses Qt Quick 2 as well.
    importQuick(engine);
    if (isQuickComplete())
        return;
    // Where there is none, the import had the library register its half alone.
    const bool isLibraryRegistered = quickType("State").isValid();
    QQmlQtQuick2Module::defineModule();
    if (!isLibraryRegistered)
        qml_register_types_QtQuick();
}

} // namespace

void QDeclarativeQtModules::registerTypes(QQmlEngine *engine)
{
    qml_register_types_QtQml();
    qml_register_types_QtQml_Models();
    qml_register_types_QtQml_WorkerScript();
    registerQuickTypes(engine);
}
