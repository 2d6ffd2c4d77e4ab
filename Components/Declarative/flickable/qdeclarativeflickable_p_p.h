#pragma once

#include "item/qdeclarativeitem_p.h"
#include "qdeclarativeflickable_p.h"
#include "qdeclarativetimeline_p.h"

#include <QtCore/QBasicTimer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QScopedPointer>

class QGraphicsSceneMouseEvent;
class QGraphicsSceneWheelEvent;

/**
 * One direction of a Flickable: where its content is, and what moves it.
 *
 * The value is contentX or contentY: it grows as the content moves to the left or up.
 */
class QDeclarativeFlickableAxis : public QQuickTimeLineValue
{
public:
    QDeclarativeFlickableAxis(QDeclarativeFlickablePrivate *flickable, Qt::Orientation orientation)
        : orientation(orientation)
        , flickable(flickable)
    {
    }

    void setValue(qreal) override;
    /** Puts the content there as it is: a view makes no items for what comes to be seen. */
    void place(qreal);

    /** Where the content is seen to be: it stands at whole pixels. */
    qreal wholeValue() const;

    /** Notes where the mouse is, for the velocity with which it lets go. */
    void addSample(qint64 now, qreal mousePosition);
    /** The velocity of the content at the release of the mouse. */
    qreal releaseVelocity(qint64 now) const;
    void clearSamples() { samples.clear(); }

    struct Sample
    {
        qint64 time; ///< nanoseconds
        qreal position;
    };

    const Qt::Orientation orientation;
    QDeclarativeFlickablePrivate *const flickable;
    QVector<Sample> samples;
    qreal contentSize = -1;
    qreal pressValue = 0;
    qreal pressStart = 0; ///< travelStart() at the press
    qreal pressEnd = 0; ///< travelEnd() at the press
    qreal dragStart = 0; ///< how far the mouse had gone when the content began to follow
    qreal velocity = 0;
    qint64 lastMove = 0; ///< nanoseconds, of the clock in a drag and else of the time line
    bool dragged = false;
    bool moving = false;
    bool flicking = false;
    bool atBeginning = true;
    bool atEnd = false;
};

class QDeclarativeFlickablePrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeFlickable)

public:
    using Axis = QDeclarativeFlickableAxis;
    enum FixupMode { Animated, Immediate };

    QDeclarativeFlickablePrivate();

    void init();

    /** The least and the greatest value that the content comes to rest at; the greatest may be less. */
    virtual qreal travelStart(const Axis &) const;
    virtual qreal travelEnd(const Axis &) const;

    /** Moves the axis back within its travel. Views also bring it to where it snaps. */
    virtual void fixup(Axis &, FixupMode);

    /** Lets the content run on at @p velocity; tells whether it does. */
    virtual bool flick(Axis &, qreal velocity);

    /** Called after the content has moved. */
    virtual void viewportMoved(Axis &) { }
    /** Called when the user begins to move the content. */
    virtual void dragStarting() { }
    void movementEnding();

    qreal boundedValue(const Axis &, qreal value) const;
    qreal viewSize(const Axis &) const;
    qreal contentSize(const Axis &) const;
    bool canFlick(const Axis &) const;
    bool isFlickingFast() const;
    void axisPlaced(Axis &, qreal before);
    void axisMoved(Axis &);
    void updateVelocity(Axis &, qreal way);
    qint64 lineTime() const { return timeLine.time() * qint64(1000000); }
    void placeContent();
    void updateBounds();
    void setContentSize(Axis &, qreal);
    void viewResized(Axis &);
    void moveTo(Axis &, qreal value);
    void settle(Axis &, qreal target, FixupMode);
    bool runOut(Axis &, qreal velocity, qreal maximumDistance);
    bool runOutTo(Axis &, qreal velocity, qreal distance);
    void endRun(Axis &);
    void startMovement(Axis &);
    void endMovement(Axis &);
    void startFlick(Axis &);
    void setVelocity(Axis &, qreal);
    void notifyMoving(const Axis &);
    void notifyFlicking(const Axis &);

    void press(const QGraphicsSceneMouseEvent &);
    void move(const QGraphicsSceneMouseEvent &);
    bool endPress();
    void release();
    void cancel();
    void drag(Axis &, int way, bool stealing);
    qreal draggedValue(const Axis &, qreal value) const;
    bool stopAtBounds(const Axis &, int way, qreal *value) const;
    bool wheel(Axis &, int delta);
    bool filterMouse(QGraphicsItem *child, QGraphicsSceneMouseEvent *);
    bool filterRelease(QGraphicsItem *child);
    void takeMouse();
    bool delayPress(const QGraphicsSceneMouseEvent &);
    void replayPress();

    QDeclarativeTimeLine timeLine;
    Axis x{this, Qt::Horizontal};
    Axis y{this, Qt::Vertical};
    QDeclarativeItem *content = nullptr;
    QDeclarativeFlickableVisibleArea *visibleArea = nullptr;
    QScopedPointer<QGraphicsSceneMouseEvent> delayedPress;
    QBasicTimer delayedPressTimer;
    QElapsedTimer clock;
    qint64 pressTime = 0; ///< nanoseconds
    QPointF pressPosition;
    qreal deceleration = 1750;
    qreal maximumVelocity = 2500;
    int pressDelay = 0;
    QDeclarativeFlickable::BoundsBehavior boundsBehavior = QDeclarativeFlickable::DragAndOvershootBounds;
    QDeclarativeFlickable::FlickableDirection direction = QDeclarativeFlickable::AutoFlickDirection;
    bool interactive = true;
    bool isPressed = false;
    bool steals = false; ///< the gesture is a drag of ours: from the next event on nobody else gets it
    bool grabbing = false;
    bool replaying = false;
};
