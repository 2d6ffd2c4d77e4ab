#include "qdeclarativeelementstypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativeflipable_p.h"
#include "qdeclarativegraphicswidget_p.h"
#include "qdeclarativelayoutitem_p.h"
#include "qdeclarativeloader_p.h"
#include "qdeclarativepositioners_p.h"
#include "qdeclarativerectangle_p.h"
#include "qdeclarativerepeater_p.h"

void registerDeclarativeElementsTypes()
{
    registerDeclarativeType<QDeclarativeLoader>("Loader");
    registerDeclarativeType<QDeclarativeRepeater>("Repeater");
    registerDeclarativeRevision<QDeclarativeBasePositioner>();
    registerDeclarativeType<QDeclarativeColumn>("Column");
    registerDeclarativeType<QDeclarativeRow>("Row");
    registerDeclarativeType<QDeclarativeGrid>("Grid");
    registerDeclarativeType<QDeclarativeFlow>("Flow");
    qmlRegisterAnonymousType<QDeclarativePen>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeRectangle>("Rectangle");
    registerDeclarativeType<QDeclarativeFlipable>("Flipable");
    registerDeclarativeType<QDeclarativeLayoutItem>("LayoutItem");
    // An extension, so that a host's own graphics widgets have it too.
    qmlRegisterExtendedType<QGraphicsWidget, QDeclarativeGraphicsWidget>("QtQuick", 1, 0, "QGraphicsWidget");
    qmlRegisterExtendedType<QGraphicsWidget, QDeclarativeGraphicsWidget>("Qt", 4, 7, "QGraphicsWidget");
}
