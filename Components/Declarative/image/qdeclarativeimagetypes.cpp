#include "qdeclarativeimagetypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativeanimatedimage_p.h"
#include "qdeclarativeborderimage_p.h"
#include "qdeclarativeimage_p.h"
#include "qdeclarativescalegrid_p.h"

void registerDeclarativeImageTypes()
{
    qmlRegisterAnonymousType<QDeclarativeScaleGrid>("QtQuick", 1);
    registerDeclarativeRevision<QDeclarativeImageBase>();
    registerDeclarativeType<QDeclarativeImage>("Image");
    registerDeclarativeType<QDeclarativeBorderImage>("BorderImage");
    registerDeclarativeType<QDeclarativeAnimatedImage>("AnimatedImage");
}
