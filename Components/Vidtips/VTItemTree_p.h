#pragma once

#include <QtCore/QList>
#include <QtGui/QAccessible>

QT_BEGIN_NAMESPACE
class QGraphicsItem;
class QGraphicsObject;
QT_END_NAMESPACE

/**
 * Which items of a scene there are for those who do not see it: of each item what it is, and what lies in it.
 * Items are known by their classes' names and properties, which every QML 1 module has. Nothing is kept: QML
 * may change everything at any time.
 */
namespace Vidtips::VTItemTree {

/** Returns what @p item is; NoRole for an item that is only there to hold or to decorate others. */
QAccessible::Role role(const QGraphicsObject *item);

/** Returns the visible items that are something, in or below the children of @p parent, in their order. */
QList<QGraphicsObject *> children(const QGraphicsItem *parent);

/** Tells whether what is inside @p item is part of it: said by QML, or a clickable area with its label. */
bool isWhole(const QGraphicsObject *item);

/** Returns what @p item is told as: itself or what it is a part of; null when that is nothing. */
QGraphicsObject *teller(QGraphicsItem *item);

/** Returns the area at @p item or inside it that answers clicks, or null. */
QGraphicsObject *clickableArea(QGraphicsObject *item);

/**
 * Returns the label of @p item: the texts on it. A clickable area without any has that of what it lies on, or
 * else the texts beside it within its rectangle.
 */
QString label(const QGraphicsObject *item);

/** Returns what the Text, TextInput or TextEdit @p item says. */
QString text(const QGraphicsObject *item);

} // namespace Vidtips::VTItemTree
