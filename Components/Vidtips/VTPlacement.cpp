#include "VTPlacement.h"

#include "VTManager.h"
#include "VTSurroundings_p.h"
#include "VTWidget.h"
#include "VTWindowKind_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtGui/QCursor>
#include <QtGui/QResizeEvent>

#include <algorithm>

namespace Vidtips {

namespace {

using Surroundings = VTPlacement::Surroundings;

// Room between a tip and what it keeps off.
constexpr int gap = 4;
// What a pointer covers around its place.
constexpr int pointerReach = 12;

QRect slidInto(const QRect &screen, QRect tip, Qt::LayoutDirection direction)
{
    // The side where reading begins comes last, so that it is seen of a tip that does not fit.
    const bool isRightToLeft = direction == Qt::RightToLeft;
    if (isRightToLeft)
        tip.moveLeft(std::max(tip.left(), screen.left()));
    tip.moveRight(std::min(tip.right(), screen.right()));
    if (!isRightToLeft)
        tip.moveLeft(std::max(tip.left(), screen.left()));
    tip.moveBottom(std::min(tip.bottom(), screen.bottom()));
    tip.moveTop(std::max(tip.top(), screen.top()));
    return tip;
}

QRect besidePointer(const QSize &size, const Surroundings &around)
{
    QRect tip(around.pointer + QPoint(around.offset.width(), around.offset.height()), size);
    if (around.direction == Qt::RightToLeft)
        tip.moveRight(around.pointer.x() - around.offset.width());
    return tip;
}

QRect rightOf(const QRect &obstacle, QRect tip)
{
    tip.moveLeft(obstacle.right() + 1 + gap);
    return tip;
}

QRect leftOf(const QRect &obstacle, QRect tip)
{
    tip.moveRight(obstacle.left() - 1 - gap);
    return tip;
}

QRect below(const QRect &obstacle, QRect tip)
{
    tip.moveTop(obstacle.bottom() + 1 + gap);
    return tip;
}

QRect above(const QRect &obstacle, QRect tip)
{
    tip.moveBottom(obstacle.top() - 1 - gap);
    return tip;
}

/** Returns the first of @p places that is off @p obstacle once it is on the screen; null when none is. */
QRect firstFree(const QVector<QRect> &places, const QRect &obstacle, const Surroundings &around)
{
    for (const QRect &place : places) {
        const QRect tip = slidInto(around.screen, place, around.direction);
        if (!tip.intersects(obstacle))
            return tip;
    }
    return {};
}

QVector<QRect> sidesOf(const QRect &obstacle, const QRect &tip, Qt::LayoutDirection direction)
{
    const QRect right = rightOf(obstacle, tip);
    const QRect left = leftOf(obstacle, tip);
    return direction == Qt::RightToLeft ? QVector<QRect>{left, right} : QVector<QRect>{right, left};
}

QRect besidePopups(const QSize &size, const Surroundings &around)
{
    QRect tip = besidePointer(size, around);
    const QVector<QRect> vertical{below(around.popups, tip), above(around.popups, tip)};
    tip.moveTop(around.command.isNull() ? around.pointer.y() : around.command.top());
    return firstFree(sidesOf(around.popups, tip, around.direction) + vertical, around.popups, around);
}

QRect offObstacle(const QRect &obstacle, const QSize &size, const Surroundings &around)
{
    const QRect tip = besidePointer(size, around);
    const QVector<QRect> places{tip, above(obstacle, tip), below(obstacle, tip)};
    return firstFree(places + sidesOf(obstacle, tip, around.direction), obstacle, around);
}

} // namespace

struct VIDTIPS_NO_EXPORT VTPlacement::Private
{
    VTManager *manager = nullptr;
    bool isMoving = false;
    QPoint place; ///< of the tip, as it was put last
    QPoint pointer; ///< where that tip was asked for
};

VTPlacement::VTPlacement(VTManager *manager)
    : QObject(manager)
    , d(new Private)
{
    d->manager = manager;
    if (manager)
        QCoreApplication::instance()->installEventFilter(this);
}

VTPlacement::~VTPlacement() = default;

Surroundings VTPlacement::surroundings() const
{
    const VTManager *const manager = d->manager;
    const QPoint pointer = manager->referencePosition();
    const QPoint begin = manager->tooltipPosition(pointer, nullptr) - pointer;
    return surroundingsOf(manager->referenceObject(), manager->referenceRect(), pointer,
                          QSize(begin.x(), begin.y()));
}

void VTPlacement::place(QWidget *tip, const QRect &readRoom)
{
    const Surroundings around = surroundings();
    if (around.screen.isNull())
        return;
    // A tip that is being read grows under the reader's pointer, or that would be out of it, and the tip
    // would go.
    const QRect tipRoom = tip->frameGeometry();
    const QRect room = readRoom.contains(QCursor::pos()) ? slidInto(around.screen, tipRoom, around.direction)
                                                         : placed(tipRoom.size(), around);
    d->place = room.topLeft();
    d->pointer = around.pointer;
    if (d->place == tip->pos())
        return;
    // Whoever else watches the window may answer by anything.
    const QPointer<VTPlacement> self(this);
    d->isMoving = true;
    tip->move(d->place);
    if (self)
        d->isMoving = false;
}

QRect VTPlacement::placed(const QSize &size, const Surroundings &surroundings)
{
    const QRect wanted = besidePointer(size, surroundings);
    QRect tip;
    if (!surroundings.popups.isNull())
        tip = besidePopups(size, surroundings);
    // A command that is larger than the offset gets its tip beside the pointer all the same.
    if (tip.isNull() && !surroundings.command.isNull() && !wanted.intersects(surroundings.command))
        tip = offObstacle(surroundings.command, size, surroundings);
    const QPoint reach(pointerReach, pointerReach);
    if (tip.isNull())
        tip = offObstacle(QRect(surroundings.pointer - reach, surroundings.pointer + reach), size,
                          surroundings);
    return tip.isNull() ? slidInto(surroundings.screen, wanted, surroundings.direction) : tip;
}

bool VTPlacement::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::Show && type != QEvent::Resize && type != QEvent::Move)
        return false;
    VTWidget *const tip = d->manager->widget();
    // A popup is placed as it has to be.
    if (VTWindowKind::isPopup() || d->isMoving || !tip || watched != tip || !tip->isWindow())
        return false;
    // What is reported from outside is for the window, which knows its place.
    if (!tip->isVisible() || event->spontaneous())
        return false;
    // A window manager may have moved it, and it has gone back.
    if (type == QEvent::Move && tip->pos() == d->place && d->manager->referencePosition() == d->pointer)
        return false;
    const bool isResize = type == QEvent::Resize;
    place(tip, isResize ? QRect(tip->pos(), static_cast<QResizeEvent *>(event)->oldSize()) : QRect());
    return false;
}

} // namespace Vidtips
