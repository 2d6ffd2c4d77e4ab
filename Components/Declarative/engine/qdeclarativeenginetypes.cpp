#include "qdeclarativeenginetypes_p.h"

#include "qdeclarativeapplication_p.h"
#include "qdeclarativeconnections_p.h"
#include "qdeclarativeqttype_p.h"

#include <private/qqmlbind_p.h>
#include <private/qquickrectangle_p.h>

namespace {

struct QtType
{
    const char *module; ///< where Qt registers the type
    const char *name;
};

// The non-visual types, which work on any object and so on our items too.
const QtType qtTypes[] = {
    {"QtQml", "QtObject"},
    {"QtQml", "Component"},
    {"QtQml", "Timer"},
    {"QtQml.WorkerScript", "WorkerScript"},
    {"QtQml.Models", "Package"},
    {"QtQuick", "StateGroup"},
    {"QtQuick", "PropertyChanges"},
    {"QtQuick", "Transition"},
    {"QtQuick", "Behavior"},
    {"QtQuick", "Gradient"},
    {"QtQuick", "Path"},
    {"QtQuick", "PathLine"},
    {"QtQuick", "PathQuad"},
    {"QtQuick", "PathCubic"},
    {"QtQuick", "PathAttribute"},
    {"QtQuick", "PathPercent"},
    {"QtQuick", "SystemPalette"},
    {"QtQuick", "IntValidator"},
    {"QtQuick", "DoubleValidator"},
    {"QtQuick", "RegExpValidator"},
    {"QtQuick", "Easing"},
};

QDeclarativeQtType::CreateFunction createQtBinding = nullptr;

/**
 * Qt's Binding knows a third state of `when`, not given, which reads as false.
 *
 * It advises to say what becomes of the value afterwards, which QML 1 has no word for.
 */
void createBinding(void *memory)
{
    createQtBinding(memory);
    // Its first base is QObject.
    auto *binding = static_cast<QObject *>(memory);
    binding->setProperty("when", true);
    binding->setProperty("restoreMode", QQmlBind::RestoreBinding);
}

/** Qt leaves the position as it finds it. */
void createGradientStop(void *memory)
{
    (new (memory) QQmlPrivate::QQmlElement<QQuickGradientStop>)->setPosition(0);
}

void registerInitialisedTypes()
{
    const QQmlType binding = QDeclarativeQtType::find("QtQml", "Binding");
    createQtBinding = QDeclarativeQtType::createFunction(binding);
    QDeclarativeQtType::registerCopy(binding, "Binding", {createBinding});
    QDeclarativeQtType::registerCopy(QDeclarativeQtType::find("QtQuick", "GradientStop"), "GradientStop",
                                     {createGradientStop});
}

void registerConnections()
{
    const auto inModule = [](const char *uri, int major, int minor) {
        qmlRegisterCustomType<QDeclarativeConnections>(uri, major, minor, "Connections",
                                                       new QDeclarativeConnectionsParser);
    };
    inModule("QtQuick", 1, 0);
    inModule("Qt", 4, 7);
}

void registerUncreatableTypes()
{
    // QML 1 refuses it without a reason, so that the engine gives its own.
    QDeclarativeQtType::registerCopy(QDeclarativeQtType::find("QtQuick", "Font"), "Font",
                                     {nullptr, nullptr, ""});
    qmlRegisterUncreatableType<QDeclarativeApplication>("QtQuick", 1, 1, "Application",
                                                        QStringLiteral("Application is an abstract class"));
}

} // namespace

void registerDeclarativeEngineTypes()
{
    registerConnections();
    for (const QtType &type : qtTypes)
        QDeclarativeQtType::registerCopy(QDeclarativeQtType::find(type.module, type.name), type.name);
    registerUncreatableTypes();
    registerInitialisedTypes();
}
