#include "qdeclarativeitemtypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativeanchors_p.h"
#include "qdeclarativeitem.h"
#include "qdeclarativelayoutmirroring_p.h"
#include "qdeclarativetranslate_p.h"

#include <QtWidgets/QGraphicsEffect>

/** Gives an object made by Component.createObject() its place in the scene. */
static QQmlPrivate::AutoParentResult parentGraphicsObject(QObject *object, QObject *parent)
{
    auto *item = qobject_cast<QGraphicsObject *>(object);
    if (!item)
        return QQmlPrivate::IncompatibleObject;
    auto *parentItem = qobject_cast<QGraphicsObject *>(parent);
    if (!parentItem)
        return QQmlPrivate::IncompatibleParent;
    item->setParentItem(parentItem);
    return QQmlPrivate::Parented;
}

void registerDeclarativeItemTypes()
{
    const QQmlPrivate::RegisterAutoParent autoParent = {0, parentGraphicsObject};
    QQmlPrivate::qmlregister(QQmlPrivate::AutoParentRegistration,
                             const_cast<QQmlPrivate::RegisterAutoParent *>(&autoParent));
    qRegisterMetaType<QDeclarativeAnchorLine>();
    // Content compares lines.
    QMetaType::registerEqualsComparator<QDeclarativeAnchorLine>();
    qmlRegisterAnonymousType<QGraphicsObject>("QtQuick", 1);
    // By this name Graphics View knows the children of its own objects, which are a default property there.
    QDeclarativeListProperty<QGraphicsObject>::makeNameKnown();
    qmlRegisterAnonymousType<QGraphicsTransform>("QtQuick", 1);
    qmlRegisterAnonymousType<QGraphicsEffect>("QtQuick", 1);
    qmlRegisterAnonymousType<QDeclarativeAnchors>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeItem>("Item");
    registerDeclarativeType<QDeclarativeTranslate>("Translate");
    registerDeclarativeType<QGraphicsScale>("Scale");
    registerDeclarativeType<QGraphicsRotation>("Rotation");
    qmlRegisterUncreatableType<QDeclarativeLayoutMirroring>(
        "QtQuick", 1, 1, "LayoutMirroring",
        QStringLiteral("LayoutMirroring is only available via attached properties"));
}
