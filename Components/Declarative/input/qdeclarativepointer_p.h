#pragma once

#include "item/qdeclarativeitem.h"

#include <QtWidgets/QGraphicsSceneMouseEvent>

/**
 * A mouse event of one item as another item in the same scene sees it.
 *
 * Items that watch the events of their children get them in the child's coordinates; this is a copy in their
 * own. It starts out accepted, and what happens to it does not reach the original.
 */
class QDeclarativeMappedMouseEvent : public QGraphicsSceneMouseEvent
{
public:
    QDeclarativeMappedMouseEvent(const QGraphicsSceneMouseEvent &event, const QGraphicsItem *item);
};

/** The rules about who has the mouse that MouseArea, Flickable and the views share. */
namespace QDeclarativePointer {

/** @p event as the press, double click, move or release of a mouse that it is, or null. */
QGraphicsSceneMouseEvent *mouseEvent(QEvent *event);

/** Tells whether a drag that went @p distance pixels along an axis is more than an unsteady hand. */
bool passesThreshold(qreal distance);

/** The item that has the mouse in @p item's scene, or null. */
QGraphicsItem *grabber(const QGraphicsItem *item);

/** Tells whether the item that has the mouse refuses to give it to @p item. */
bool isKeptFrom(const QDeclarativeItem *item);

/** Gives the mouse to @p item if another item has it and does not keep it. */
void steal(QDeclarativeItem *item);

/** Takes the mouse from @p item if it has it; taken from a child, it does not come free by itself. */
void letGo(QDeclarativeItem *item);

} // namespace QDeclarativePointer
