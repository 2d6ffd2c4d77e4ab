#include "VTCommandWatch_p.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>

namespace Vidtips {

namespace {

QWidget *widgetWith(QObject *object, const QPoint &position)
{
    if (!object || object->isWidgetType())
        return qobject_cast<QWidget *>(object);
    return QApplication::widgetAt(position);
}

/** Returns what @p widget stands in, also across the border of a scene that it is embedded in. */
QWidget *surrounding(const QWidget *widget)
{
    if (!widget->isWindow())
        return widget->parentWidget();
    const QGraphicsProxyWidget *const proxy = widget->graphicsProxyWidget();
    const QGraphicsScene *const scene = proxy ? proxy->scene() : nullptr;
    return scene && !scene->views().isEmpty() ? scene->views().constFirst()->viewport() : nullptr;
}

} // namespace

VTCommandWatch::VTCommandWatch(QObject *parent)
    : QObject(parent)
{
    m_check.setSingleShot(true);
    m_check.setInterval(0);
    connect(&m_check, &QTimer::timeout, this, &VTCommandWatch::checkPart);
}

void VTCommandWatch::begin(QObject *object, const QRect &rect, const QPoint &position)
{
    end();
    m_widget = widgetWith(object, position);
    m_part = rect;
    if (object)
        watchObject(object);
    if (!m_widget)
        return;
    if (m_widget != object)
        m_connections << connect(m_widget.data(), &QObject::destroyed, this, &VTCommandWatch::gone);
    if (auto *const menu = qobject_cast<QMenu *>(m_widget.data()))
        watchMenu(menu, position);
    watchPart(position);
    watchChain();
    m_origin = m_widget->mapToGlobal(QPoint(0, 0));
    m_wasInSight = isSeen();
}

void VTCommandWatch::end()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_connections))
        disconnect(connection);
    m_connections.clear();
    for (const QPointer<QObject> &object : std::as_const(m_filtered)) {
        if (object)
            object->removeEventFilter(this);
    }
    m_filtered.clear();
    m_widget = nullptr;
    m_entry = nullptr;
    m_stateOfPart = nullptr;
    m_check.stop();
}

QRect VTCommandWatch::rect() const
{
    if (m_part.isValid() || !m_widget)
        return m_part;
    return {m_widget->mapToGlobal(QPoint(0, 0)), m_widget->size()};
}

// A host may show a tip for what cannot be seen; it then is no reason to go that it still cannot.
bool VTCommandWatch::isInSight() const
{
    return !m_widget || !m_wasInSight || isSeen();
}

bool VTCommandWatch::isSeen() const
{
    const QRect local(m_widget->mapFromGlobal(rect().topLeft()), rect().size());
    return m_widget->isVisible() && m_widget->visibleRegion().intersects(local);
}

bool VTCommandWatch::isReachedThrough(const QWidget *widget) const
{
    return widget && m_widget
        && (m_widget->isAncestorOf(widget) || m_filtered.contains(const_cast<QWidget *>(widget)));
}

bool VTCommandWatch::isOpening(const QWidget *popup) const
{
    const auto *const menu = qobject_cast<const QMenu *>(popup);
    return menu && m_entry && menu->menuAction() == m_entry;
}

void VTCommandWatch::watchObject(QObject *object)
{
    m_connections << connect(object, &QObject::destroyed, this, &VTCommandWatch::gone);
    if (auto *const item = qobject_cast<QGraphicsObject *>(object)) {
        m_connections << connect(item, &QGraphicsObject::visibleChanged, this, &VTCommandWatch::gone);
    } else if (auto *const action = qobject_cast<QAction *>(object)) {
        m_connections << connect(action, &QAction::changed, this, [this, action] {
            if (!action->isVisible())
                Q_EMIT gone();
        });
    }
}

// The menu may be about to take the pointer's entry for the active one.
void VTCommandWatch::watchMenu(QMenu *menu, const QPoint &position)
{
    QAction *const pointed = menu->actionAt(menu->mapFromGlobal(position));
    QAction *const entry = pointed ? pointed : menu->activeAction();
    m_entry = entry;
    if (!m_part.isValid() && entry) {
        const QRect geometry = menu->actionGeometry(entry);
        m_part = QRect(menu->mapToGlobal(geometry.topLeft()), geometry.size());
    }
    m_connections << connect(menu, &QMenu::hovered, this, [this, entry](const QAction *hovered) {
        if (hovered != entry)
            Q_EMIT passedOn();
    });
}

void VTCommandWatch::watchPart(const QPoint &position)
{
    if (!m_part.isValid())
        return;
    const QRect rect(m_widget->mapFromGlobal(m_part.topLeft()), m_part.size());
    const QPoint inside = m_widget->mapFromGlobal(position);
    m_stateOfPart = checkOfPart(m_widget, rect, rect.contains(inside) ? inside : rect.center());
}

void VTCommandWatch::checkPart()
{
    const VTPartState state = m_stateOfPart ? m_stateOfPart() : VTPartState::There;
    if (state == VTPartState::Gone) {
        Q_EMIT gone();
    } else if (state == VTPartState::Elsewhere) {
        m_stateOfPart = nullptr;
        Q_EMIT passedOn();
    }
}

void VTCommandWatch::watchChain()
{
    const QWidget *top = m_widget;
    for (QWidget *widget = m_widget; widget; widget = surrounding(widget)) {
        m_filtered << widget;
        top = widget;
    }
    // Modal windows block windows, not widgets.
    if (top->windowHandle())
        m_filtered << top->windowHandle();
    for (const QPointer<QObject> &object : std::as_const(m_filtered))
        object->installEventFilter(this);
    auto *const area = qobject_cast<QAbstractScrollArea *>(m_widget.data());
    auto *const around = qobject_cast<QAbstractScrollArea *>(m_widget->parent());
    if (area)
        watchScrolling(area);
    if (around && around->viewport() == m_widget)
        watchScrolling(around);
}

// What is inside a view is drawn, and moves without an event.
void VTCommandWatch::watchScrolling(const QAbstractScrollArea *area)
{
    for (const QScrollBar *const bar : {area->horizontalScrollBar(), area->verticalScrollBar()})
        m_connections << connect(bar, &QScrollBar::valueChanged, this, &VTCommandWatch::passedOn);
    const auto *const view = qobject_cast<const QAbstractItemView *>(area);
    if (view && view->model() && m_part.isValid())
        watchCell(view);
}

void VTCommandWatch::watchCell(const QAbstractItemView *view)
{
    const QPersistentModelIndex cell = view->indexAt(view->viewport()->mapFromGlobal(m_part.center()));
    if (!cell.isValid())
        return;
    const QRect place = view->visualRect(cell);
    const auto check = [this, view = QPointer<const QAbstractItemView>(view), cell, place] {
        if (!cell.isValid() || !view)
            Q_EMIT gone();
        else if (view->visualRect(cell) != place)
            Q_EMIT passedOn();
    };
    const QAbstractItemModel *const model = view->model();
    m_connections << connect(model, &QAbstractItemModel::rowsInserted, this, check)
                  << connect(model, &QAbstractItemModel::rowsRemoved, this, check)
                  << connect(model, &QAbstractItemModel::rowsMoved, this, check)
                  << connect(model, &QAbstractItemModel::layoutChanged, this, check)
                  << connect(model, &QAbstractItemModel::modelReset, this, check);
}

void VTCommandWatch::follow()
{
    const QPoint origin = m_widget->mapToGlobal(QPoint(0, 0));
    if (m_part.isValid())
        m_part.translate(origin - m_origin);
    m_origin = origin;
    Q_EMIT stirred();
}

bool VTCommandWatch::eventFilter(QObject *watched, QEvent *event)
{
    // Who hears of it may destroy what the event is for.
    const QPointer<QObject> guard(watched);
    switch (event->type()) {
    case QEvent::Hide:
        if (watched == m_widget)
            Q_EMIT gone();
        break;
    case QEvent::WindowBlocked:
    case QEvent::ParentChange:
        Q_EMIT gone();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (m_widget)
            follow();
        break;
    case QEvent::Paint:
        // Of a part that is drawn and not told of, nothing else tells that it is gone.
        if (watched == m_widget && m_stateOfPart)
            m_check.start();
        break;
    case QEvent::Enter:
    case QEvent::Leave:
        Q_EMIT stirred();
        break;
    default:
        break;
    }
    return !guard;
}

} // namespace Vidtips
