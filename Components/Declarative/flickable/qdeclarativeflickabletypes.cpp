#include "qdeclarativeflickabletypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativeflickable_p.h"

void registerDeclarativeFlickableTypes()
{
    qmlRegisterAnonymousType<QDeclarativeFlickableVisibleArea>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeFlickable>("Flickable");
}
