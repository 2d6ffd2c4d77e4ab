#include "qdeclarativemotiontypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativeanchorchanges_p.h"
#include "qdeclarativeanimationtypes_p.h"
#include "qdeclarativeitemanimation_p.h"
#include "qdeclarativeparentchange_p.h"
#include "qdeclarativescriptname_p.h"
#include "qdeclarativestate_p.h"

void registerDeclarativeMotionTypes()
{
    registerDeclarativeAnimationTypes();
    registerDeclarativeStateChangeScript();
    registerDeclarativeType<QDeclarativeState>("State");
    qmlRegisterAnonymousType<QDeclarativeAnchorSet>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeAnchorChanges>("AnchorChanges");
    registerDeclarativeType<QDeclarativeParentChange>("ParentChange");
    registerDeclarativeType<QDeclarativeAnchorAnimation>("AnchorAnimation");
    registerDeclarativeType<QDeclarativeParentAnimation>("ParentAnimation");
}
