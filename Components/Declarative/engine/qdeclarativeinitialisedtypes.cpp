#include "qdeclarativeenginetype_p.h"
#include "qdeclarativetypes_p.h"

#include <private/qquickrectangle_p.h>

static QDeclarativeEngineType::CreateFunction createQtBinding = nullptr;

/** Qt's Binding knows a third state of `when`, not given, which reads as false. */
static void createBinding(void *memory)
{
    createQtBinding(memory);
    // Its first base is QObject.
    static_cast<QObject *>(memory)->setProperty("when", true);
}

/** Qt leaves the position as it finds it. */
static void createGradientStop(void *memory)
{
    (new (memory) QQmlPrivate::QQmlElement<QQuickGradientStop>)->setPosition(0);
}

void registerDeclarativeInitialisedTypes()
{
    const QQmlType binding = QDeclarativeEngineType::find("QtQml", "Binding");
    createQtBinding = QDeclarativeEngineType::createFunction(binding);
    QDeclarativeEngineType::registerCopy(binding, "Binding", {createBinding});
    QDeclarativeEngineType::registerCopy(QDeclarativeEngineType::find("QtQuick", "GradientStop"),
                                         "GradientStop", {createGradientStop});
}
