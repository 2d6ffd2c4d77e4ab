#include "PressCheck.h"

#include "stage/PreviewStage.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtGui/QAccessible>
#include <QtWidgets/QGraphicsObject>

namespace {

constexpr qreal smallest = 24; // pixels: target size of the accessibility guidelines, level AA
constexpr qreal rounding = 0.5; // pixels

bool isPressable(QAccessibleInterface *thing)
{
    QAccessibleActionInterface *const actions = thing->actionInterface();
    return actions && actions->actionNames().contains(QAccessibleActionInterface::pressAction());
}

qreal area(const QRectF &rect)
{
    return rect.width() * rect.height();
}

// The largest part that answers clicks; one that has none answers as a whole.
QRectF targetOf(const ShownTip &tip, QGraphicsObject *item)
{
    QRectF largest;
    for (QGraphicsObject *object : tip.items()) {
        const bool isPart = object == item || item->isAncestorOf(object);
        if (!isPart || !object->inherits("QDeclarativeMouseArea"))
            continue;
        const QRectF rect = object->mapRectToScene(object->boundingRect());
        if (area(rect) > area(largest))
            largest = rect;
    }
    return largest.isNull() ? item->mapRectToScene(item->boundingRect()) : largest;
}

void checkTarget(const ShownTip &tip, QGraphicsObject *item)
{
    const QSizeF size = targetOf(tip, item).size();
    if (size.width() < smallest - rounding || size.height() < smallest - rounding)
        tip.add("VT908", item,
                QString("what can be pressed here is %1 x %2 pixels, and %3 x %3 are needed")
                    .arg(qRound(size.width()))
                    .arg(qRound(size.height()))
                    .arg(smallest));
}

void visit(const ShownTip &tip, QAccessibleInterface *thing)
{
    auto *const item = qobject_cast<QGraphicsObject *>(thing->object());
    if (item && isPressable(thing)) {
        checkTarget(tip, item);
        if (thing->text(QAccessible::Name).trimmed().isEmpty())
            tip.add("VT909", item, "what can be pressed here has no name");
    }
    for (int i = 0; i < thing->childCount(); ++i) {
        if (QAccessibleInterface *const child = thing->child(i))
            visit(tip, child);
    }
}

} // namespace

void PressCheck::run(const ShownTip &tip)
{
    if (QAccessibleInterface *const view =
            QAccessible::queryAccessibleInterface(tip.stage().window()->view()))
        visit(tip, view);
}
