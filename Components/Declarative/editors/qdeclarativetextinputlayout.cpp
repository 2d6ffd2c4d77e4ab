#include "qdeclarativetextinput_p_p.h"

#include "engine/qdeclarativerounding_p.h"

#include <QtGui/QPainter>

void QDeclarativeTextInputPrivate::updateLayout()
{
    Q_Q(QDeclarativeTextInput);
    if (!componentIsComplete)
        return;
    q->prepareGeometryChange();
    const QTextLine line = control.textLayout()->lineAt(0);
    q->setImplicitHeight(line.height());
    q->setImplicitWidth(QDeclarativeRounding::bounded(line.naturalTextWidth()));
    q->setContentsSize(QDeclarativeRounding::bounded(QSizeF(itemImplicitWidth, itemImplicitHeight)));
    updateScroll();
    q->update();
}

int QDeclarativeTextInputPrivate::scrollFor(int width, int textWidth, int cursorX) const
{
    // The room that text is aligned in ends where a cursor after its last letter would.
    const int room = width + cursorWidth;
    const Qt::Alignment alignment = effectiveAlignment();
    if (!autoScroll) {
        // As it has always been: text that does not scroll is moved out of the item where it is aligned.
        if (alignment & Qt::AlignRight)
            return QDeclarativeRounding::truncated(itemWidth - textWidth);
        return alignment & Qt::AlignHCenter ? QDeclarativeRounding::truncated((itemWidth - textWidth) / 2)
                                            : 0;
    }
    if (textWidth <= room) {
        if (alignment & Qt::AlignRight)
            return textWidth - room - cursorWidth;
        return alignment & Qt::AlignHCenter ? (textWidth - room) / 2 : 0;
    }
    if (cursorX - scroll >= width)
        return cursorX - width;
    if (cursorX < scroll)
        return cursorX;
    return qBound(0, scroll, textWidth - width);
}

void QDeclarativeTextInputPrivate::updateScroll()
{
    Q_Q(QDeclarativeTextInput);
    if (!componentIsComplete)
        return;
    const int textWidth = QDeclarativeRounding::bounded(control.naturalTextWidth());
    const int to = scrollFor(QDeclarativeRounding::bounded(itemWidth), textWidth,
                             QDeclarativeRounding::bounded(control.cursorToX()));
    if (to != scroll) {
        q->prepareGeometryChange();
        scroll = to;
        q->update();
    }
    noteCursor();
}

int QDeclarativeTextInputPrivate::positionAt(qreal x, QTextLine::CursorPosition between) const
{
    const int position = control.xToPos(QDeclarativeRounding::bounded(x) + scroll, between);
    // What is being composed is shown at the cursor but not part of the text yet.
    const int composed = control.preeditAreaText().length();
    if (position <= control.cursor())
        return position;
    return qMax(control.cursor(), position - composed);
}

QRectF QDeclarativeTextInputPrivate::rectAt(qreal x) const
{
    return QRectF(x - scroll, 0, cursorWidth, control.textLayout()->lineAt(0).height());
}

QRectF QDeclarativeTextInputPrivate::exactCursorRect() const
{
    return rectAt(control.cursorToX());
}

void QDeclarativeTextInputPrivate::mirrorChange()
{
    QDeclarativeTextEditorPrivate::mirrorChange();
    updateScroll();
}

int QDeclarativeTextInput::positionAt(int x) const
{
    return positionAt(x, CursorBetweenCharacters);
}

int QDeclarativeTextInput::positionAt(int x, CursorPosition position) const
{
    return d_func()->positionAt(x, QTextLine::CursorPosition(position));
}

QRectF QDeclarativeTextInput::positionToRectangle(int pos) const
{
    Q_D(const QDeclarativeTextInput);
    if (pos > d->control.cursor())
        pos += d->control.preeditAreaText().length();
    return d->rectAt(d->control.cursorToX(pos));
}

void QDeclarativeTextInput::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    if (newGeometry.width() != oldGeometry.width())
        d_func()->updateScroll();
    QDeclarativeTextEditor::geometryChanged(newGeometry, oldGeometry);
}

QRectF QDeclarativeTextInput::drawnRect() const
{
    Q_D(const QDeclarativeTextInput);
    const QTextLine line = d->control.textLayout()->lineAt(0);
    // Slanted letters reach over the advance of the line.
    const qreal overhang = line.height() / 4 + d->cursorWidth;
    return line.naturalTextRect().translated(-d->scroll, 0).adjusted(-overhang, 0, overhang, 1);
}

void QDeclarativeTextInput::drawContents(QPainter *painter, const QRectF &)
{
    Q_D(QDeclarativeTextInput);
    int parts = QWidgetLineControl::DrawText;
    // Over a mask the cursor marks the place that the next letter goes to, which the control does by
    // selecting.
    const bool marksBlank = d->paintsCursor() && !d->readOnly && !d->control.inputMask().isEmpty();
    if (d->control.hasSelectedText() || marksBlank)
        parts |= QWidgetLineControl::DrawSelections;
    painter->setPen(d->color);
    d->control.draw(painter, QPoint(-d->scroll, 0), drawnRect().toAlignedRect(), parts);
    d->drawCursor(painter, cursorRectangle(), d->control.cursorBlinkStatus());
}
