#include "motion/qdeclarativeanchorchanges_p.h"
#include "qdeclarativeanchors_p.h"
#include "qdeclarativefocusscope_p.h"
#include "motion/qdeclarativeitemanimation_p.h"
#include "qdeclarativekeynavigation_p.h"
#include "qdeclarativelayoutmirroring_p.h"
#include "motion/qdeclarativeparentchange_p.h"
#include "qdeclarativetranslate_p.h"
#include "engine/qdeclarativetypes_p.h"

static QString attachedOnly(const char *name)
{
    return QString::fromLatin1(name) + QLatin1String(" is only available via attached properties");
}

void registerDeclarativeItemTypes()
{
    qRegisterMetaType<QDeclarativeAnchorLine>();
    // Content compares lines.
    QMetaType::registerEqualsComparator<QDeclarativeAnchorLine>();
    qmlRegisterAnonymousType<QGraphicsObject>("QtQuick", 1);
    qmlRegisterAnonymousType<QGraphicsTransform>("QtQuick", 1);
    qmlRegisterAnonymousType<QDeclarativeAnchors>("QtQuick", 1);
    qmlRegisterAnonymousType<QDeclarativeKeyEvent>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeItem>("Item");
    registerDeclarativeType<QDeclarativeFocusScope>("FocusScope");
    registerDeclarativeType<QDeclarativeFocusPanel>("FocusPanel");
    registerDeclarativeType<QDeclarativeTranslate>("Translate");
    registerDeclarativeType<QGraphicsScale>("Scale");
    registerDeclarativeType<QGraphicsRotation>("Rotation");
    qmlRegisterAnonymousType<QDeclarativeAnchorSet>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeAnchorChanges>("AnchorChanges");
    registerDeclarativeType<QDeclarativeParentChange>("ParentChange");
    registerDeclarativeType<QDeclarativeAnchorAnimation>("AnchorAnimation");
    registerDeclarativeType<QDeclarativeParentAnimation>("ParentAnimation");
    registerDeclarativeUncreatableType<QDeclarativeKeys>("Keys", attachedOnly("Keys"));
    registerDeclarativeUncreatableType<QDeclarativeKeyNavigation>("KeyNavigation",
                                                                  attachedOnly("KeyNavigation"));
    qmlRegisterUncreatableType<QDeclarativeLayoutMirroring>("QtQuick", 1, 1, "LayoutMirroring",
                                                            attachedOnly("LayoutMirroring"));
}
