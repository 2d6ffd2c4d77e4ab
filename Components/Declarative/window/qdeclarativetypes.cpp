#include <QtDeclarative/qdeclarative.h>

#include "editors/qdeclarativeeditorstypes_p.h"
#include "elements/qdeclarativeelementstypes_p.h"
#include "engine/qdeclarativeenginetypes_p.h"
#include "engine/qdeclarativenotices_p.h"
#include "engine/qdeclarativeqtmodules_p.h"
#include "flickable/qdeclarativeflickabletypes_p.h"
#include "image/qdeclarativeimagetypes_p.h"
#include "input/qdeclarativeinputtypes_p.h"
#include "item/qdeclarativeitemtypes_p.h"
#include "models/qdeclarativemodelstypes_p.h"
#include "motion/qdeclarativemotiontypes_p.h"
#include "particles/qdeclarativeparticlestypes_p.h"
#include "text/qdeclarativetexttypes_p.h"
#include "views/qdeclarativeviewstypes_p.h"

#include <mutex>

namespace {

using RegisterTypes = void (*)();

// Of each room that has types, from the lowest to the highest.
const RegisterTypes rooms[] = {
    registerDeclarativeEngineTypes,  registerDeclarativeItemTypes,     registerDeclarativeInputTypes,
    registerDeclarativeModelsTypes,  registerDeclarativeImageTypes,    registerDeclarativeTextTypes,
    registerDeclarativeEditorsTypes, registerDeclarativeMotionTypes,   registerDeclarativeFlickableTypes,
    registerDeclarativeViewsTypes,   registerDeclarativeElementsTypes, registerDeclarativeParticlesTypes,
};

} // namespace

void qmlRegisterDeclarativeTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        QDeclarativeQtModules::registerTypes();
        QDeclarativeNotices::silence();
        for (const RegisterTypes registerTypes : rooms)
            registerTypes();
    });
}
