#pragma once

#include "item/qdeclarativeitem_p.h"

#include <QtCore/QEasingCurve>
#include <QtCore/QPointer>

#include <private/qquickanimation_p.h>

class QDeclarativeParentChange;

/** Moves and resizes, in a transition, the items that AnchorChanges anchors elsewhere. */
class QDeclarativeAnchorAnimation : public QQuickAbstractAnimation
{
    Q_OBJECT
    Q_PROPERTY(QQmlListProperty<QDeclarativeItem> targets READ targets)
    Q_PROPERTY(int duration READ duration WRITE setDuration NOTIFY durationChanged)
    Q_PROPERTY(QEasingCurve easing READ easing WRITE setEasing NOTIFY easingChanged)

public:
    explicit QDeclarativeAnchorAnimation(QObject *parent = nullptr);

    /** The items that move; all that the transition anchors elsewhere when empty. */
    QQmlListProperty<QDeclarativeItem> targets();
    int duration() const { return m_duration; }
    void setDuration(int milliseconds);
    QEasingCurve easing() const { return m_easing; }
    void setEasing(const QEasingCurve &);

    QAbstractAnimationJob *transition(QQuickStateActions &actions, QQmlProperties &modified,
                                      TransitionDirection direction, QObject *defaultTarget) override;

Q_SIGNALS:
    void durationChanged(int);
    void easingChanged(const QEasingCurve &);
    void completed();

private:
    QList<QDeclarativeItem *> m_targets;
    QEasingCurve m_easing;
    int m_duration = 250;
};

/** Runs animations while ParentChange gives an item another parent, by way of a third item if wanted. */
class QDeclarativeParentAnimation : public QQuickAnimationGroup
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeItem *target READ target WRITE setTargetItem NOTIFY targetChanged)
    Q_PROPERTY(QDeclarativeItem *newParent READ newParent WRITE setNewParent NOTIFY newParentChanged)
    Q_PROPERTY(QDeclarativeItem *via READ via WRITE setVia NOTIFY viaChanged)

public:
    explicit QDeclarativeParentAnimation(QObject *parent = nullptr);

    QDeclarativeItem *target() const { return m_target; }
    void setTargetItem(QDeclarativeItem *);
    QDeclarativeItem *newParent() const { return m_newParent; }
    void setNewParent(QDeclarativeItem *);

    /** The parent that the item has while it moves, so that neither end clips it. */
    QDeclarativeItem *via() const { return m_via; }
    void setVia(QDeclarativeItem *);

    QAbstractAnimationJob *transition(QQuickStateActions &actions, QQmlProperties &modified,
                                      TransitionDirection direction, QObject *defaultTarget) override;

Q_SIGNALS:
    void targetChanged();
    void newParentChanged();
    void viaChanged();
    void completed();

private:
    struct Move
    {
        QPointer<QDeclarativeItem> item;
        QPointer<QDeclarativeItem> parent;
        QPointer<QDeclarativeParentChange> change;
        bool reverse = false;
    };

    bool takeMove(QQuickStateActions *actions, Move *move) const;
    void mapToVia(QQuickStateActions *actions, const Move &move) const;
    QAbstractAnimationJob *firstStep(const Move &);
    QAbstractAnimationJob *lastStep(const Move &);

    QPointer<QDeclarativeItem> m_target;
    QPointer<QDeclarativeItem> m_newParent;
    QPointer<QDeclarativeItem> m_via;
};
