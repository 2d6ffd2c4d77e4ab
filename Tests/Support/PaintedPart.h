#pragma once

#include <QtGui/QPainter>
#include <QtGui/QPicture>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QStyleOptionGraphicsItem>

/** How much @p item draws, in bytes of drawing commands, when @p exposed of it is to be painted. */
inline uint paintedPart(QGraphicsItem *item, const QRectF &exposed)
{
    QStyleOptionGraphicsItem option;
    option.exposedRect = exposed;
    QPicture picture;
    QPainter painter(&picture);
    item->paint(&painter, &option, nullptr);
    painter.end();
    return picture.size();
}
