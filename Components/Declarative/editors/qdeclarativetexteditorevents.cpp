#include "qdeclarativetexteditor_p.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsSceneMouseEvent>
#include <QtWidgets/QStyle>

void QDeclarativeTextEditorPrivate::activeFocusChange(bool active)
{
    Q_Q(QDeclarativeTextEditor);
    const QPointer<QDeclarativeTextEditor> guard(q);
    // The selection goes before anybody hears of the focus that went, unless that comes back with the window.
    if (!active && (!scene || scene->isActive()))
        leaveFocus();
    if (guard)
        QDeclarativePaintedItemPrivate::activeFocusChange(active);
    if (guard)
        q->setCursorVisible(active);
}

void QDeclarativeTextEditorPrivate::setSceneFocus(bool focus)
{
    hasSceneFocus = focus;
    applyCursor();
}

bool QDeclarativeTextEditor::sceneEvent(QEvent *event)
{
    Q_D(QDeclarativeTextEditor);
    if (event->type() == QEvent::ShortcutOverride)
        return d->processShortcutOverride(static_cast<QKeyEvent *>(event));
    if (event->type() == QEvent::UngrabMouse)
        setKeepMouseGrab(false);
    return QDeclarativePaintedItem::sceneEvent(event);
}

void QDeclarativeTextEditor::focusInEvent(QFocusEvent *event)
{
    d_func()->setSceneFocus(true);
    QDeclarativePaintedItem::focusInEvent(event);
}

void QDeclarativeTextEditor::focusOutEvent(QFocusEvent *event)
{
    d_func()->setSceneFocus(false);
    QDeclarativePaintedItem::focusOutEvent(event);
}

void QDeclarativeTextEditor::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextEditor);
    d->pressPosition = event->pos();
    d->hadFocusBeforePress = hasActiveFocus();
    setKeepMouseGrab(false);
    if (d->focusOnPress)
        forceActiveFocus();
}

void QDeclarativeTextEditor::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextEditor);
    const QPointF moved = event->pos() - d->pressPosition;
    if (d->selectByMouse && qAbs(moved.x()) > QGuiApplication::styleHints()->startDragDistance())
        setKeepMouseGrab(true);
}

void QDeclarativeTextEditor::mouseReleaseEvent(QGraphicsSceneMouseEvent *)
{
    Q_D(QDeclarativeTextEditor);
    setKeepMouseGrab(false);
    if (!d->focusOnPress || d->readOnly || !hasActiveFocus())
        return;
    const bool atFirstPress =
        QApplication::style()->styleHint(QStyle::SH_RequestSoftwareInputPanel) == QStyle::RSIP_OnMouseClick;
    if (d->hadFocusBeforePress || atFirstPress)
        openSoftwareInputPanel();
}
