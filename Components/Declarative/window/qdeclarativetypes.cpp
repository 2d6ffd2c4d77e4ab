#include <QtDeclarative/qdeclarative.h>

#include "editors/qdeclarativeeditorstypes_p.h"
#include "elements/qdeclarativeelementstypes_p.h"
#include "engine/qdeclarativeapplication_p.h"
#include "engine/qdeclarativeenginetypes_p.h"
#include "engine/qdeclarativelocalfile_p.h"
#include "engine/qdeclarativepropertytables_p.h"
#include "engine/qdeclarativeqtmodules_p.h"
#include "flickable/qdeclarativeflickabletypes_p.h"
#include "image/qdeclarativeimagetypes_p.h"
#include "input/qdeclarativeinputtypes_p.h"
#include "item/qdeclarativeitemtypes_p.h"
#include "language/qdeclarativeengine_p.h"
#include "models/qdeclarativemodelstypes_p.h"
#include "motion/qdeclarativemotiontypes_p.h"
#include "particles/qdeclarativeparticlestypes_p.h"
#include "pathview/qdeclarativepathviewtypes_p.h"
#include "qdeclarativedatabases_p.h"
#include "qdeclarativetypes_p.h"
#include "text/qdeclarativetexttypes_p.h"
#include "views/qdeclarativeviewstypes_p.h"

#include <mutex>

namespace {

using RegisterTypes = void (*)();

// The rooms whose types are all their own, from the lowest to the highest.
const RegisterTypes ownRooms[] = {
    registerDeclarativeItemTypes,      registerDeclarativeInputTypes,     registerDeclarativeModelsTypes,
    registerDeclarativeImageTypes,     registerDeclarativeTextTypes,      registerDeclarativeEditorsTypes,
    registerDeclarativeFlickableTypes, registerDeclarativeViewsTypes,     registerDeclarativePathViewTypes,
    registerDeclarativeElementsTypes,  registerDeclarativeParticlesTypes,
};

// Those that have types of Qt Quick's.
const RegisterTypes borrowingRooms[] = {registerDeclarativeEngineTypes, registerDeclarativeMotionTypes};

// Properties and signals of hosts name these by their QML 1 names, which moc writes down.
void registerNames()
{
    qRegisterMetaType<QDeclarativeComponent *>("QDeclarativeComponent*");
    qRegisterMetaType<QDeclarativeContext *>("QDeclarativeContext*");
    qRegisterMetaType<QDeclarativeExpression *>("QDeclarativeExpression*");
    qRegisterMetaType<QDeclarativePropertyMap *>("QDeclarativePropertyMap*");
    qRegisterMetaType<QDeclarativeScriptString>("QDeclarativeScriptString");
    qRegisterMetaType<QDeclarativeListReference>("QDeclarativeListReference");
    qRegisterMetaType<QList<QDeclarativeError>>("QList<QDeclarativeError>");
}

} // namespace

void registerOwnDeclarativeTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        registerNames();
        for (const RegisterTypes registerTypes : ownRooms)
            registerTypes();
        QDeclarativePropertyTables::complete();
    });
}

static void registerAllTypes(QQmlEngine *engine)
{
    registerOwnDeclarativeTypes();
    static std::once_flag once;
    std::call_once(once, [engine] {
        QDeclarativeQtModules::registerTypes(engine);
        for (const RegisterTypes registerTypes : borrowingRooms)
            registerTypes();
    });
}

void qmlRegisterDeclarativeTypes()
{
    registerAllTypes(nullptr);
}

void prepareDeclarativeEngine(QQmlEngine *engine)
{
    registerAllTypes(engine);
    QDeclarativeApplication::install(engine);
    QDeclarativeDatabases::install(engine);
    engine->setUrlInterceptor(QDeclarativeLocalFile::interceptor());
}
