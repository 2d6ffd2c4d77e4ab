#include "qdeclarativeenginetypes_p.h"

#include "qdeclarativeqttype_p.h"

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
    {"QtQml", "Connections"},
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

/** Qt's Binding knows a third state of `when`, not given, which reads as false. */
void createBinding(void *memory)
{
    createQtBinding(memory);
    // Its first base is QObject.
    static_cast<QObject *>(memory)->setProperty("when", true);
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

void registerUncreatableTypes()
{
    // QML 1 refuses it without a reason, so that the engine gives its own.
    QDeclarativeQtType::registerCopy(QDeclarativeQtType::find("QtQuick", "Font"), "Font",
                                     {nullptr, nullptr, ""});
    QDeclarativeQtType::registerLaterUncreatable(QDeclarativeQtType::find("QtQuick", "Application"),
                                                 "Application",
                                                 QStringLiteral("Application is an abstract class"));
}

} // namespace

void registerDeclarativeEngineTypes()
{
    for (const QtType &type : qtTypes)
        QDeclarativeQtType::registerCopy(QDeclarativeQtType::find(type.module, type.name), type.name);
    registerUncreatableTypes();
    registerInitialisedTypes();
}
