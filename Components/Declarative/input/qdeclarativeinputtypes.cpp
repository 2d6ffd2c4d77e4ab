#include "qdeclarativeinputtypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativefocusscope_p.h"
#include "qdeclarativekeynavigation_p.h"
#include "qdeclarativekeys_p.h"
#include "qdeclarativemousearea_p.h"
#include "qdeclarativepincharea_p.h"

void registerDeclarativeInputTypes()
{
    qmlRegisterAnonymousType<QDeclarativeKeyEvent>("QtQuick", 1);
    registerDeclarativeUncreatableType<QDeclarativeKeys>(
        "Keys", QStringLiteral("Keys is only available via attached properties"));
    registerDeclarativeUncreatableType<QDeclarativeKeyNavigation>(
        "KeyNavigation", QStringLiteral("KeyNavigation is only available via attached properties"));
    registerDeclarativeType<QDeclarativeFocusScope>("FocusScope");
    registerDeclarativeType<QDeclarativeFocusPanel>("FocusPanel");
    qmlRegisterAnonymousType<QDeclarativeMouseEvent>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeDrag>("Drag");
    registerDeclarativeType<QDeclarativeMouseArea>("MouseArea");
    qmlRegisterAnonymousType<QDeclarativePinchEvent>("QtQuick", 1);
    qmlRegisterType<QDeclarativePinch>("QtQuick", 1, 1, "Pinch");
    qmlRegisterType<QDeclarativePinchArea, 1>("QtQuick", 1, 1, "PinchArea");
}
