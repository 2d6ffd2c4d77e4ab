#include "qdeclarativegridview_p.h"

#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativegridview_p_p.h"

#include <QtGui/QKeyEvent>

QDeclarativeGridViewAttached::QDeclarativeGridViewAttached(QObject *item)
    : QDeclarativeItemViewAttached(item)
{
}

QDeclarativeGridView *QDeclarativeGridViewAttached::view() const
{
    return qobject_cast<QDeclarativeGridView *>(itemView());
}

QDeclarativeGridViewPrivate::QDeclarativeGridViewPrivate()
    : highlightX([this](qreal x) {
        const QDeclarativeWork::Scope scope(&work);
        if (highlightItem)
            highlightItem->setX(x);
    })
    , highlightY([this](qreal y) {
        const QDeclarativeWork::Scope scope(&work);
        if (highlightItem)
            highlightItem->setY(y);
    })
{
    direction = QDeclarativeFlickable::VerticalFlick;
    highlightMoveDuration = 150;
}

QDeclarativeGridView::QDeclarativeGridView(QDeclarativeItem *parent)
    : QDeclarativeItemView(*new QDeclarativeGridViewPrivate, parent)
{
}

QDeclarativeGridView::~QDeclarativeGridView() = default;

QDeclarativeGridView::Flow QDeclarativeGridView::flow() const
{
    return d_func()->flow;
}

void QDeclarativeGridView::setFlow(Flow flow)
{
    Q_D(QDeclarativeGridView);
    if (flow == d->flow || d->work.postpone([=] { setFlow(flow); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->clear();
    d->setViewPosition(0);
    d->setContentSize(d->mainAxis(), -1);
    d->flow = flow;
    setFlickableDirection(flow == LeftToRight ? VerticalFlick : HorizontalFlick);
    if (isComponentComplete())
        d->regenerate();
    Q_EMIT flowChanged();
}

int QDeclarativeGridView::cellWidth() const
{
    return d_func()->cellWidth;
}

void QDeclarativeGridView::setCellWidth(int width)
{
    Q_D(QDeclarativeGridView);
    if (width == d->cellWidth || width <= 0)
        return;
    d->cellWidth = width;
    d->cellsChanged();
    Q_EMIT cellWidthChanged();
}

int QDeclarativeGridView::cellHeight() const
{
    return d_func()->cellHeight;
}

void QDeclarativeGridView::setCellHeight(int height)
{
    Q_D(QDeclarativeGridView);
    if (height == d->cellHeight || height <= 0)
        return;
    d->cellHeight = height;
    d->cellsChanged();
    Q_EMIT cellHeightChanged();
}

QDeclarativeGridView::SnapMode QDeclarativeGridView::snapMode() const
{
    return d_func()->snapMode;
}

void QDeclarativeGridView::setSnapMode(SnapMode mode)
{
    Q_D(QDeclarativeGridView);
    if (mode == d->snapMode)
        return;
    d->snapMode = mode;
    Q_EMIT snapModeChanged();
}

/** Makes the row that is @p by rows before the current one that, from one end to the other where keys wrap.
 */
void QDeclarativeGridViewPrivate::goBack(int by)
{
    const int rows = visualModel->count();
    if (rows == 0 || (currentIndex < by && !wraps))
        return;
    const int index = currentIndex - by;
    q_func()->setCurrentIndex(index >= 0 && index < rows ? index : rows - 1);
}

void QDeclarativeGridViewPrivate::goForth(int by)
{
    const int rows = visualModel->count();
    if (rows == 0 || (currentIndex >= rows - by && !wraps))
        return;
    const int index = currentIndex + by;
    q_func()->setCurrentIndex(index >= 0 && index < rows ? index : 0);
}

void QDeclarativeGridView::moveCurrentIndexUp()
{
    Q_D(QDeclarativeGridView);
    d->goBack(d->isTopToBottom() ? 1 : d->columns());
}

void QDeclarativeGridView::moveCurrentIndexDown()
{
    Q_D(QDeclarativeGridView);
    d->goForth(d->isTopToBottom() ? 1 : d->columns());
}

void QDeclarativeGridView::moveCurrentIndexLeft()
{
    Q_D(QDeclarativeGridView);
    const int by = d->isTopToBottom() ? d->columns() : 1;
    if (d->isRightToLeft())
        d->goForth(by);
    else
        d->goBack(by);
}

void QDeclarativeGridView::moveCurrentIndexRight()
{
    Q_D(QDeclarativeGridView);
    const int by = d->isTopToBottom() ? d->columns() : 1;
    if (d->isRightToLeft())
        d->goBack(by);
    else
        d->goForth(by);
}

void QDeclarativeGridView::keyPressEvent(QKeyEvent *event)
{
    const int before = currentIndex();
    if (count() > 0 && isInteractive()) {
        switch (event->key()) {
        case Qt::Key_Up:
            moveCurrentIndexUp();
            break;
        case Qt::Key_Down:
            moveCurrentIndexDown();
            break;
        case Qt::Key_Left:
            moveCurrentIndexLeft();
            break;
        case Qt::Key_Right:
            moveCurrentIndexRight();
            break;
        default:
            break;
        }
    }
    if (currentIndex() != before)
        event->accept();
    else
        QDeclarativeItemView::keyPressEvent(event);
}

QDeclarativeGridViewAttached *QDeclarativeGridView::qmlAttachedProperties(QObject *object)
{
    return new QDeclarativeGridViewAttached(object);
}

#include "moc_qdeclarativegridview_p.cpp"
