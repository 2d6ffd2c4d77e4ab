#include "qdeclarativetextinput_p_p.h"

#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethodEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>

/** Whether a key would do nothing here that it does elsewhere: go beyond an end, or to another line. */
static bool leadsOut(const QKeyEvent *event, const QWidgetLineControl &control)
{
    const int key = event->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down)
        return event->modifiers() == Qt::NoModifier;
    if (control.hasSelectedText() || (key != Qt::Key_Left && key != Qt::Key_Right))
        return false;
    const bool towardsEnd = (key == Qt::Key_Right) == (control.layoutDirection() != Qt::RightToLeft);
    return control.cursor() == (towardsEnd ? control.text().length() : control.start());
}

void QDeclarativeTextInput::keyPressEvent(QKeyEvent *event)
{
    Q_D(QDeclarativeTextInput);
    if (leadsOut(event, d->control))
        event->ignore();
    else
        d->control.processKeyEvent(event);
    d->noteComposing();
    if (!event->isAccepted())
        QDeclarativeTextEditor::keyPressEvent(event);
}

bool QDeclarativeTextInputPrivate::processShortcutOverride(QKeyEvent *event)
{
    control.processShortcutOverrideEvent(event);
    return event->isAccepted();
}

void QDeclarativeTextInput::inputMethodEvent(QInputMethodEvent *event)
{
    Q_D(QDeclarativeTextInput);
    if (d->readOnly)
        event->ignore();
    else
        d->control.processInputMethodEvent(event);
    d->updateLayout();
    d->noteComposing();
    if (!event->isAccepted())
        QDeclarativeTextEditor::inputMethodEvent(event);
}

QVariant QDeclarativeTextInput::inputMethodQuery(Qt::InputMethodQuery query) const
{
    Q_D(const QDeclarativeTextInput);
    const QWidgetLineControl &control = d->control;
    const bool selects = control.hasSelectedText();
    switch (query) {
    case Qt::ImCursorRectangle:
        return d->exactCursorRect();
    case Qt::ImAnchorRectangle:
        return QRectF(control.anchorRect()).translated(-d->scroll, 0);
    case Qt::ImFont:
        return d->font;
    case Qt::ImCursorPosition:
        return control.cursor();
    case Qt::ImAnchorPosition:
        if (!selects)
            return control.cursor();
        return control.cursor() == control.selectionStart() ? control.selectionEnd()
                                                            : control.selectionStart();
    case Qt::ImSurroundingText:
        return control.surroundingText();
    case Qt::ImCurrentSelection:
        return control.selectedText();
    case Qt::ImMaximumTextLength:
        return control.maxLength();
    case Qt::ImHints:
        return int(d->effectiveHints());
    default:
        return QDeclarativeTextEditor::inputMethodQuery(query);
    }
}

void QDeclarativeTextInput::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextInput);
    QDeclarativeTextEditor::mousePressEvent(event);
    const int position =
        d->positionAt(event->pos().x() / contentsScale(), QTextLine::CursorBetweenCharacters);
    const bool extends = d->selectByMouse && event->modifiers() & Qt::ShiftModifier;
    d->moveCursor(position, extends);
    d->noteComposing();
    event->accept();
}

void QDeclarativeTextInput::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextInput);
    QDeclarativeTextEditor::mouseMoveEvent(event);
    if (!d->selectByMouse)
        return;
    moveCursorSelection(d->positionAt(event->pos().x() / contentsScale(), QTextLine::CursorBetweenCharacters),
                        d->mouseSelectionMode);
}

void QDeclarativeTextInput::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextInput);
    QDeclarativeTextEditor::mouseReleaseEvent(event);
    if (d->selectByMouse && QGuiApplication::clipboard()->supportsSelection())
        d->control.copy(QClipboard::Selection);
}

void QDeclarativeTextInput::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeTextInput);
    if (!d->selectByMouse) {
        mousePressEvent(event);
        return;
    }
    const int position = d->positionAt(event->pos().x() / contentsScale(), QTextLine::CursorOnCharacter);
    d->control.selectWordAtPos(position);
    event->accept();
}
