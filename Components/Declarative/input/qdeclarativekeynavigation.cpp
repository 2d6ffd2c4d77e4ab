#include "qdeclarativekeynavigation_p.h"

#include <QtQml/qqmlinfo.h>

QDeclarativeKeyNavigation::QDeclarativeKeyNavigation(QObject *parent)
    : QObject(parent)
    , QDeclarativeKeyFilter(qobject_cast<QDeclarativeItem *>(parent))
    , m_item(qobject_cast<QDeclarativeItem *>(parent))
{
    m_afterItem = true;
}

QDeclarativeKeyNavigation *QDeclarativeKeyNavigation::qmlAttachedProperties(QObject *object)
{
    if (!qobject_cast<QDeclarativeItem *>(object))
        qmlWarning(object) << tr("KeyNavigation attached property only works with Items");
    return new QDeclarativeKeyNavigation(object);
}

void QDeclarativeKeyNavigation::setPriority(Priority priority)
{
    if (priority == this->priority())
        return;
    m_afterItem = priority == AfterItem;
    Q_EMIT priorityChanged();
}

void QDeclarativeKeyNavigation::setTarget(Direction direction, QDeclarativeItem *item)
{
    static constexpr void (QDeclarativeKeyNavigation::*changed[])() = {
        &QDeclarativeKeyNavigation::leftChanged, &QDeclarativeKeyNavigation::rightChanged,
        &QDeclarativeKeyNavigation::upChanged,   &QDeclarativeKeyNavigation::downChanged,
        &QDeclarativeKeyNavigation::tabChanged,  &QDeclarativeKeyNavigation::backtabChanged,
    };
    if (m_targets[direction] == item)
        return;
    m_targets[direction] = item;
    const auto signal = changed[direction];
    Q_EMIT(this->*signal)();
}

QDeclarativeKeyNavigation::Direction QDeclarativeKeyNavigation::direction(int key) const
{
    const bool mirrored = m_item && QDeclarativeItemPrivate::get(m_item)->isMirrored();
    switch (key) {
    case Qt::Key_Left:
        return mirrored ? Right : Left;
    case Qt::Key_Right:
        return mirrored ? Left : Right;
    case Qt::Key_Up:
        return Up;
    case Qt::Key_Down:
        return Down;
    case Qt::Key_Tab:
        return Tab;
    case Qt::Key_Backtab:
        return Backtab;
    default:
        return Directions;
    }
}

void QDeclarativeKeyNavigation::moveFocus(Direction direction)
{
    // A hidden item is passed over by its own link in the same direction, and links may form a ring.
    QVector<const QDeclarativeItem *> visited{m_item};
    QDeclarativeItem *item = m_targets[direction];
    while (item && !item->isVisible() && !visited.contains(item)) {
        visited.append(item);
        auto *next = qobject_cast<QDeclarativeKeyNavigation *>(
            qmlAttachedPropertiesObject<QDeclarativeKeyNavigation>(item, false));
        item = next ? next->m_targets[direction].data() : nullptr;
    }
    if (item && item->isVisible())
        item->setFocus(true);
}

void QDeclarativeKeyNavigation::keyPressed(QKeyEvent *event, bool post)
{
    if (isFor(post)) {
        const Direction towards = direction(event->key());
        if (towards != Directions && m_targets[towards]) {
            moveFocus(towards);
            event->accept();
            return;
        }
        event->ignore();
    }
    QDeclarativeKeyFilter::keyPressed(event, post);
}

void QDeclarativeKeyNavigation::keyReleased(QKeyEvent *event, bool post)
{
    if (isFor(post)) {
        const Direction towards = direction(event->key());
        event->setAccepted(towards != Directions && m_targets[towards]);
        if (event->isAccepted())
            return;
    }
    QDeclarativeKeyFilter::keyReleased(event, post);
}
