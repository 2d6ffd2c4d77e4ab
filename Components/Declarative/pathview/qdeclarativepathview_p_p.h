#pragma once

#include "engine/qdeclarativework_p.h"
#include "flickable/qdeclarativetimeline_p.h"
#include "item/qdeclarativeitem_p.h"
#include "models/qdeclarativekeptchanges_p.h"
#include "qdeclarativepathplaces_p.h"
#include "qdeclarativepathview_p.h"

#include <QtCore/QElapsedTimer>

#include <memory>
#include <vector>

class QDeclarativeVisualModel;
class QGraphicsSceneMouseEvent;
class QQmlOpenMetaObjectType;

class QDeclarativePathViewPrivate : public QDeclarativeItemPrivate, public QDeclarativeItemChangeListener
{
    Q_DECLARE_PUBLIC(QDeclarativePathView)

public:
    static constexpr qreal tolerance = 1e-6; ///< in rows; below this a row stands exactly where it should

    /** An item that is on the path, and the row that it shows. */
    struct Row
    {
        QDeclarativeItem *item;
        QDeclarativePathViewAttached *attached;
        int index;
    };
    enum Turn { NoTurn, OverTheStart, OverTheEnd };
    enum Mover { Nobody, Script, User };
    using Value = QQuickTimeLineValueProxy<QDeclarativePathViewPrivate>;

    QDeclarativePathViewPrivate();
    ~QDeclarativePathViewPrivate() override;

    // Places. A place is a part of the path's length; beyond 1 an item is not on the path.
    int visibleRows() const;
    qreal rangeStart() const;
    bool isStrict() const;
    qreal placeOf(qreal index) const;

    // Items.
    Row makeRow(int index, qreal place);
    void beginRow(int index, QObject *);
    void addRow(int index);
    void releaseRow(const Row &);
    void releaseRows(const std::vector<Row> &);
    void clear();
    void positionItem(QDeclarativeItem *, qreal place);
    void placeItem(QDeclarativeItem *, QDeclarativePathViewAttached *, qreal place);
    void layOut();
    void layOutRows();
    void pathUpdated();
    void readPath();
    void createHighlight();
    void makeHighlight();
    void placeHighlight(qreal place);
    void keepHighlight();
    void moveHighlight();
    void moveHighlightTo(qreal index);
    void pushRows();
    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemDestroyed(QDeclarativeItem *) override;

    // Movement.
    void moveTo(qreal offset);
    void setCurrent(int index);
    void changeCurrent(int index);
    void updateCurrentItem();
    void followOffset();
    int rowInRange() const;
    Turn turnFor(qreal way) const;
    void moveRound(Value &, qreal from, qreal to, qreal end);
    void moveToCurrent();
    void run(qreal velocity, qreal way);
    void notifyWhenDone();
    void stop();
    void startMovement();
    void startFlick();
    void endFlick();
    void endMovement();

    // Model.
    void rowsChanged(const QQmlChangeSet &, bool reset);
    void applyChanges(const QQmlChangeSet &);
    void applyKeptChanges();
    void announce(void (QDeclarativePathView::*signal)());
    void dropRows();
    void setRowCount(int);
    void reload();
    void keepCurrent();

    // Pointer.
    bool isDragPoint(const QPointF &) const;
    bool press(const QPointF &);
    void move(const QPointF &);
    void drag(const QPointF &);
    void release();
    void cancel();
    void settle(qreal velocity);
    void flick(qreal velocity);
    qreal releaseVelocity() const;
    bool filterMouse(QGraphicsSceneMouseEvent *);

    /** The item that is being made, for what is attached to it before the view knows it. */
    struct Making
    {
        QDeclarativePathViewPrivate *view;
        qreal place;
        bool isCurrent;
    };
    static const Making *making;

    QDeclarativeVisualModel *visualModel = nullptr;
    QQmlOpenMetaObjectType *attributeType = nullptr;
    std::shared_ptr<QDeclarativePathViewAttached> attributeKeeper;
    QPointer<QQuickPath> path;
    QDeclarativePathPlaces places; ///< of the path; none while it is still being declared
    QPointer<QQmlComponent> highlightComponent;
    QPointer<QDeclarativeItem> highlightItem;
    QPointer<QDeclarativePathViewAttached> highlightAttached;
    std::vector<Row> rows;
    QDeclarativeWork work;
    QDeclarativeKeptChanges keptChanges;
    Value offsetValue;
    Value highlightValue;
    QDeclarativeTimeLine timeLine;
    QElapsedTimer clock; ///< since the last way of a drag
    QPointF dragStart; ///< on the path
    qreal offset = 0;
    qreal highlightBegin = 0;
    qreal highlightEnd = 0;
    qreal highlightRow = 0; ///< where the highlight is among the rows
    qreal highlightPlace = 0; ///< and where on the path that was when it was put there
    qreal dragMargin = 0;
    qreal deceleration = 100;
    qreal dragPlace = 0; ///< where on the path the mouse was last
    qreal lastWay = 0; ///< of a drag, in rows
    qint64 lastInterval = 0; ///< from the way before it, in milliseconds
    int rowCount = 0;
    int currentIndex = 0;
    int pathItemCount = -1;
    int highlightMoveDuration = 300;
    Mover mover = Nobody; ///< who moved the rows last
    QDeclarativePathView::HighlightRangeMode rangeMode = QDeclarativePathView::StrictlyEnforceRange;
    bool interactive = true;
    bool moving = false;
    bool flicking = false;
    bool isPressed = false;
    bool steals = false; ///< the gesture is a drag of ours: from the next event on nobody else gets it
    bool isDragging = false;
    bool isRunning = false; ///< the rows move by themselves
    bool grabbing = false;
    bool highlightRises = false; ///< it moves towards later rows
    bool layingOut = false;
    bool layOutAgain = false;
    bool hadRows = false;
    bool refused = false; ///< the delegate makes no items
};
