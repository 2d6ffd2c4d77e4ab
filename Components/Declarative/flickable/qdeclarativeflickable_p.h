#pragma once

#include "item/qdeclarativeitem.h"

class QDeclarativeFlickable;
class QDeclarativeFlickablePrivate;

/**
 * Where the visible part of a Flickable lies within its content, as parts of one.
 *
 * All values are 0 until the content first moves or a size changes after the group was first read.
 */
class QDeclarativeFlickableVisibleArea : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qreal xPosition READ xPosition NOTIFY xPositionChanged)
    Q_PROPERTY(qreal yPosition READ yPosition NOTIFY yPositionChanged)
    Q_PROPERTY(qreal widthRatio READ widthRatio NOTIFY widthRatioChanged)
    Q_PROPERTY(qreal heightRatio READ heightRatio NOTIFY heightRatioChanged)

public:
    explicit QDeclarativeFlickableVisibleArea(QDeclarativeFlickable *parent);

    qreal xPosition() const { return m_xPosition; }
    qreal yPosition() const { return m_yPosition; }
    qreal widthRatio() const { return m_widthRatio; }
    qreal heightRatio() const { return m_heightRatio; }

    /** Takes the values of the flickable's present state. */
    void update();

Q_SIGNALS:
    void xPositionChanged(qreal xPosition);
    void yPositionChanged(qreal yPosition);
    void widthRatioChanged(qreal widthRatio);
    void heightRatioChanged(qreal heightRatio);

private:
    QDeclarativeFlickable *const m_flickable;
    qreal m_xPosition = 0;
    qreal m_yPosition = 0;
    qreal m_widthRatio = 0;
    qreal m_heightRatio = 0;
};

/**
 * A window on larger content that can be dragged and flicked.
 *
 * Sizes and positions are in pixels, velocities in pixels per second. The content starts to move with the
 * mouse move after the one that passes the drag threshold.
 */
class QDeclarativeFlickable : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(qreal contentWidth READ contentWidth WRITE setContentWidth NOTIFY contentWidthChanged)
    Q_PROPERTY(qreal contentHeight READ contentHeight WRITE setContentHeight NOTIFY contentHeightChanged)
    Q_PROPERTY(qreal contentX READ contentX WRITE setContentX NOTIFY contentXChanged)
    Q_PROPERTY(qreal contentY READ contentY WRITE setContentY NOTIFY contentYChanged)
    Q_PROPERTY(QDeclarativeItem *contentItem READ contentItem CONSTANT)
    Q_PROPERTY(qreal horizontalVelocity READ horizontalVelocity NOTIFY horizontalVelocityChanged)
    Q_PROPERTY(qreal verticalVelocity READ verticalVelocity NOTIFY verticalVelocityChanged)
    Q_PROPERTY(BoundsBehavior boundsBehavior READ boundsBehavior WRITE setBoundsBehavior NOTIFY
                   boundsBehaviorChanged)
    Q_PROPERTY(qreal maximumFlickVelocity READ maximumFlickVelocity WRITE setMaximumFlickVelocity NOTIFY
                   maximumFlickVelocityChanged)
    Q_PROPERTY(qreal flickDeceleration READ flickDeceleration WRITE setFlickDeceleration NOTIFY
                   flickDecelerationChanged)
    Q_PROPERTY(bool moving READ isMoving NOTIFY movingChanged)
    Q_PROPERTY(bool movingHorizontally READ isMovingHorizontally NOTIFY movingHorizontallyChanged)
    Q_PROPERTY(bool movingVertically READ isMovingVertically NOTIFY movingVerticallyChanged)
    Q_PROPERTY(bool flicking READ isFlicking NOTIFY flickingChanged)
    Q_PROPERTY(bool flickingHorizontally READ isFlickingHorizontally NOTIFY flickingHorizontallyChanged)
    Q_PROPERTY(bool flickingVertically READ isFlickingVertically NOTIFY flickingVerticallyChanged)
    Q_PROPERTY(FlickableDirection flickableDirection READ flickableDirection WRITE setFlickableDirection
                   NOTIFY flickableDirectionChanged)
    Q_PROPERTY(bool interactive READ isInteractive WRITE setInteractive NOTIFY interactiveChanged)
    Q_PROPERTY(int pressDelay READ pressDelay WRITE setPressDelay NOTIFY pressDelayChanged)
    Q_PROPERTY(bool atXEnd READ isAtXEnd NOTIFY isAtBoundaryChanged)
    Q_PROPERTY(bool atYEnd READ isAtYEnd NOTIFY isAtBoundaryChanged)
    Q_PROPERTY(bool atXBeginning READ isAtXBeginning NOTIFY isAtBoundaryChanged)
    Q_PROPERTY(bool atYBeginning READ isAtYBeginning NOTIFY isAtBoundaryChanged)
    Q_PROPERTY(QDeclarativeFlickableVisibleArea *visibleArea READ visibleArea CONSTANT)
    Q_PROPERTY(QQmlListProperty<QObject> flickableData READ flickableData)
    Q_PROPERTY(QQmlListProperty<QGraphicsObject> flickableChildren READ flickableChildren)
    Q_CLASSINFO("DefaultProperty", "flickableData")

public:
    enum BoundsBehavior { StopAtBounds, DragOverBounds, DragAndOvershootBounds };
    Q_ENUM(BoundsBehavior)
    enum FlickableDirection {
        AutoFlickDirection = 0x00,
        HorizontalFlick = 0x01,
        VerticalFlick = 0x02,
        HorizontalAndVerticalFlick = 0x03
    };
    Q_ENUM(FlickableDirection)

    explicit QDeclarativeFlickable(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeFlickable() override;

    QQmlListProperty<QObject> flickableData();
    QQmlListProperty<QGraphicsObject> flickableChildren();
    QDeclarativeItem *contentItem() const;

    /** The size of the content; below zero it is the flickable's own. */
    qreal contentWidth() const;
    void setContentWidth(qreal);
    qreal contentHeight() const;
    void setContentHeight(qreal);

    /** The point of the content in the top left corner. Setting it ends movement; no bounds apply. */
    qreal contentX() const;
    virtual void setContentX(qreal);
    qreal contentY() const;
    virtual void setContentY(qreal);

    qreal horizontalVelocity() const;
    qreal verticalVelocity() const;
    BoundsBehavior boundsBehavior() const;
    void setBoundsBehavior(BoundsBehavior);
    qreal maximumFlickVelocity() const;
    void setMaximumFlickVelocity(qreal);
    qreal flickDeceleration() const;
    void setFlickDeceleration(qreal);
    bool isMoving() const;
    bool isMovingHorizontally() const;
    bool isMovingVertically() const;
    bool isFlicking() const;
    bool isFlickingHorizontally() const;
    bool isFlickingVertically() const;
    FlickableDirection flickableDirection() const;
    void setFlickableDirection(FlickableDirection);
    bool isInteractive() const;
    void setInteractive(bool);

    /** How long a press stays away from children, in milliseconds; a drag in that time never reaches them. */
    int pressDelay() const;
    void setPressDelay(int);
    bool isAtXEnd() const;
    bool isAtYEnd() const;
    bool isAtXBeginning() const;
    bool isAtYBeginning() const;
    QDeclarativeFlickableVisibleArea *visibleArea();

    /** Gives the content the size @p w by @p h, keeping the point @p center of it in place on screen. */
    Q_INVOKABLE Q_REVISION(1) void resizeContent(qreal w, qreal h, QPointF center);

    /** Moves content that lies beyond the bounds back into them. */
    Q_INVOKABLE Q_REVISION(1) void returnToBounds();

Q_SIGNALS:
    void contentWidthChanged();
    void contentHeightChanged();
    void contentXChanged();
    void contentYChanged();
    void movingChanged();
    void movingHorizontallyChanged();
    void movingVerticallyChanged();
    void flickingChanged();
    void flickingHorizontallyChanged();
    void flickingVerticallyChanged();
    void horizontalVelocityChanged();
    void verticalVelocityChanged();
    void isAtBoundaryChanged();
    void flickableDirectionChanged();
    void interactiveChanged();
    void boundsBehaviorChanged();
    void maximumFlickVelocityChanged();
    void flickDecelerationChanged();
    void pressDelayChanged();
    void movementStarted();
    void movementEnded();
    void flickStarted();
    void flickEnded();

protected:
    QDeclarativeFlickable(QDeclarativeFlickablePrivate &dd, QDeclarativeItem *parent);

    void mousePressEvent(QGraphicsSceneMouseEvent *) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override;
    void wheelEvent(QGraphicsSceneWheelEvent *) override;
    bool sceneEvent(QEvent *) override;
    bool sceneEventFilter(QGraphicsItem *, QEvent *) override;
    void timerEvent(QTimerEvent *) override;
    void geometryChanged(const QRectF &now, const QRectF &before) override;

private:
    Q_DISABLE_COPY(QDeclarativeFlickable)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeFlickable)
    friend class QDeclarativeFlickableVisibleArea;
};

QML_DECLARE_TYPE(QDeclarativeFlickable)
