#include "qdeclarativetextedit_p_p.h"

#include <QtGui/QInputMethodEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>

void QDeclarativeTextEditPrivate::process(QEvent *event)
{
    const qreal scale = 1 / contentsScale;
    control.processEvent(event, QTransform::fromScale(scale, scale) * QTransform::fromTranslate(0, -offset));
    noteComposing();
}

bool QDeclarativeTextEditPrivate::processShortcutOverride(QKeyEvent *event)
{
    process(event);
    return event->isAccepted();
}

void QDeclarativeTextEdit::keyPressEvent(QKeyEvent *event)
{
    d_func()->process(event);
    if (!event->isAccepted())
        QDeclarativeTextEditor::keyPressEvent(event);
}

void QDeclarativeTextEdit::keyReleaseEvent(QKeyEvent *event)
{
    event->ignore();
    d_func()->process(event);
    if (!event->isAccepted())
        QDeclarativeTextEditor::keyReleaseEvent(event);
}

void QDeclarativeTextEdit::inputMethodEvent(QInputMethodEvent *event)
{
    Q_D(QDeclarativeTextEdit);
    if (d->readOnly)
        event->ignore();
    else
        d->process(event);
    d->updateLayout();
    if (!event->isAccepted())
        QDeclarativeTextEditor::inputMethodEvent(event);
}

QVariant QDeclarativeTextEdit::inputMethodQuery(Qt::InputMethodQuery property) const
{
    Q_D(const QDeclarativeTextEdit);
    if (property == Qt::ImHints)
        return int(d->effectiveHints());
    const QVariant answer = inputMethodQuery(property, QVariant());
    return answer.isValid() ? answer : QDeclarativeTextEditor::inputMethodQuery(property);
}

QVariant QDeclarativeTextEdit::inputMethodQuery(Qt::InputMethodQuery property, const QVariant &argument) const
{
    Q_D(const QDeclarativeTextEdit);
    QVariant answer = d->control.inputMethodQuery(property, argument);
    if (answer.userType() == QMetaType::QRectF)
        return answer.toRectF().translated(0, d->offset);
    return answer;
}

void QDeclarativeTextEdit::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextEdit);
    QDeclarativeTextEditor::mousePressEvent(event);
    const QPointF position = event->pos() / d->contentsScale - QPointF(0, d->offset);
    d->process(event);
    // A read-only text leaves presses to what is below, unless there is a link.
    if (!event->isAccepted())
        event->setAccepted(!d->control.anchorAt(position).isEmpty());
}

void QDeclarativeTextEdit::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    QDeclarativeTextEditor::mouseMoveEvent(event);
    d_func()->process(event);
}

void QDeclarativeTextEdit::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    QDeclarativeTextEditor::mouseReleaseEvent(event);
    d_func()->process(event);
}

void QDeclarativeTextEdit::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    d_func()->process(event);
}
