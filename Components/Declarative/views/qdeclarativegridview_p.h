#pragma once

#include "qdeclarativeitemview_p.h"

class QDeclarativeGridView;
class QDeclarativeGridViewPrivate;

/** What a GridView attaches to its delegates. */
class QDeclarativeGridViewAttached : public QDeclarativeItemViewAttached
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeGridView *view READ view NOTIFY viewChanged)

public:
    explicit QDeclarativeGridViewAttached(QObject *item);

    QDeclarativeGridView *view() const;
};

/**
 * Shows the rows of a model in cells of one size, line after line.
 *
 * A line runs across the direction in which the view scrolls, and has as many cells as fit. Items are placed
 * in their cells' corners; their own size is up to the delegate.
 */
class QDeclarativeGridView : public QDeclarativeItemView
{
    Q_OBJECT
    Q_PROPERTY(Flow flow READ flow WRITE setFlow NOTIFY flowChanged)
    Q_PROPERTY(int cellWidth READ cellWidth WRITE setCellWidth NOTIFY cellWidthChanged)
    Q_PROPERTY(int cellHeight READ cellHeight WRITE setCellHeight NOTIFY cellHeightChanged)
    Q_PROPERTY(SnapMode snapMode READ snapMode WRITE setSnapMode NOTIFY snapModeChanged)

public:
    enum Flow { LeftToRight, TopToBottom };
    Q_ENUM(Flow)
    enum SnapMode { NoSnap, SnapToRow, SnapOneRow };
    Q_ENUM(SnapMode)

    explicit QDeclarativeGridView(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeGridView() override;

    Flow flow() const;
    void setFlow(Flow);

    /** The size of a cell, in pixels; anything below one is refused. */
    int cellWidth() const;
    void setCellWidth(int);
    int cellHeight() const;
    void setCellHeight(int);
    SnapMode snapMode() const;
    void setSnapMode(SnapMode);

    Q_INVOKABLE void moveCurrentIndexUp();
    Q_INVOKABLE void moveCurrentIndexDown();
    Q_INVOKABLE void moveCurrentIndexLeft();
    Q_INVOKABLE void moveCurrentIndexRight();

    static QDeclarativeGridViewAttached *qmlAttachedProperties(QObject *);

Q_SIGNALS:
    void flowChanged();
    void cellWidthChanged();
    void cellHeightChanged();
    void snapModeChanged();

protected:
    void keyPressEvent(QKeyEvent *) override;

private:
    Q_DISABLE_COPY(QDeclarativeGridView)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeGridView)
};

QML_DECLARE_TYPE(QDeclarativeGridView)
QML_DECLARE_TYPEINFO(QDeclarativeGridView, QML_HAS_ATTACHED_PROPERTIES)
