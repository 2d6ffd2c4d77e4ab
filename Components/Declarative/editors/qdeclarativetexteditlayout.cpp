#include "qdeclarativetextedit_p_p.h"

#include "engine/qdeclarativerounding_p.h"

#include <QtCore/QScopedValueRollback>
#include <QtCore/QtMath>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtGui/QTextBlock>

#include <utility>

void QDeclarativeTextEditPrivate::updateLayout()
{
    Q_Q(QDeclarativeTextEdit);
    if (!componentIsComplete || isSizing)
        return;
    q->prepareGeometryChange();
    layOut();
    updateSizes();
    q->update();
}

void QDeclarativeTextEditPrivate::layOut()
{
    // Absolute, or the layout would turn it round again for text that runs from right to left.
    QTextOption option(effectiveAlignment() | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapMode(wrapMode));
    const QTextOption before = document.defaultTextOption();
    if (option.alignment() != before.alignment() || option.wrapMode() != before.wrapMode())
        document.setDefaultTextOption(option);
    if (widthIsSet) {
        document.setTextWidth(itemWidth);
        return;
    }
    document.setTextWidth(-1);
    // The lines are aligned in a width that is no less than the longest of them.
    if (!(option.alignment() & Qt::AlignLeft))
        document.setTextWidth(qCeil(document.idealWidth()));
}

void QDeclarativeTextEditPrivate::updateSizes()
{
    Q_Q(QDeclarativeTextEdit);
    const qreal ideal = document.idealWidth();
    const QSizeF painted(qCeil(ideal), QDeclarativeRounding::bounded(document.size().height()));
    {
        const QScopedValueRollback<bool> sizing(isSizing, true);
        q->setImplicitWidth(widthIsSet ? naturalWidth() : painted.width());
        q->setImplicitHeight(painted.height());
    }
    q->setContentsSize(QDeclarativeRounding::bounded(painted));
    updateOffset();
    updateLineCount();
    if (painted != paintedSize) {
        paintedSize = painted;
        Q_EMIT q->paintedSizeChanged();
    }
}

void QDeclarativeTextEditPrivate::updateLineCount()
{
    Q_Q(QDeclarativeTextEdit);
    int lines = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        lines += block.layout()->lineCount();
    if (lines == lineCount)
        return;
    lineCount = lines;
    if (componentIsComplete)
        Q_EMIT q->lineCountChanged();
}

void QDeclarativeTextEditPrivate::updateOffset()
{
    Q_Q(QDeclarativeTextEdit);
    const qreal room = heightIsSet ? itemHeight - QDeclarativeRounding::bounded(document.size().height()) : 0;
    qreal to = 0;
    if (vAlign == QDeclarativeTextEdit::AlignBottom)
        to = QDeclarativeRounding::truncated(room);
    else if (vAlign == QDeclarativeTextEdit::AlignVCenter)
        to = QDeclarativeRounding::truncated(room / 2);
    if (to != offset) {
        q->prepareGeometryChange();
        offset = to;
        q->update();
    }
    q->setBaselineOffset(QFontMetrics(font).ascent() + offset + document.documentMargin());
    noteCursor();
}

qreal QDeclarativeTextEditPrivate::naturalWidth()
{
    const qreal width = document.textWidth();
    if (wrapMode == QDeclarativeTextEdit::NoWrap || !implicitWidthIsRead)
        return document.idealWidth();
    document.setTextWidth(-1);
    const qreal natural = document.idealWidth();
    document.setTextWidth(width);
    return natural;
}

qreal QDeclarativeTextEditPrivate::implicitWidth() const
{
    // Wrapped text is laid out a second time for the width it would have, but only if that is asked for.
    if (!implicitWidthIsRead) {
        auto *self = const_cast<QDeclarativeTextEditPrivate *>(this);
        self->implicitWidthIsRead = true;
        if (wrapMode != QDeclarativeTextEdit::NoWrap)
            self->updateLayout();
    }
    return itemImplicitWidth;
}

QRectF QDeclarativeTextEditPrivate::exactCursorRect() const
{
    return control.cursorRect().translated(0, offset);
}

void QDeclarativeTextEditPrivate::mirrorChange()
{
    QDeclarativeTextEditorPrivate::mirrorChange();
    updateLayout();
}

int QDeclarativeTextEditPrivate::positionAt(const QPointF &point) const
{
    const QAbstractTextDocumentLayout *layout = document.documentLayout();
    const int position = layout->hitTest(point, Qt::FuzzyHit);
    const QTextCursor cursor = control.textCursor();
    const QRectF paragraph = layout->blockBoundingRect(cursor.block());
    if (position <= cursor.position() || point.y() < paragraph.top() || point.y() >= paragraph.bottom())
        return position;
    // What is being composed is shown at the cursor but not part of the text yet.
    const int composed = cursor.block().layout()->preeditAreaText().length();
    return qMax(cursor.position(), position - composed);
}

QRectF QDeclarativeTextEdit::positionToRectangle(int position) const
{
    Q_D(const QDeclarativeTextEdit);
    QTextCursor cursor(const_cast<QDeclarativeTextDocument *>(&d->document));
    cursor.setPosition(position);
    return d->control.cursorRect(cursor).translated(0, d->offset);
}

int QDeclarativeTextEdit::positionAt(int x, int y) const
{
    Q_D(const QDeclarativeTextEdit);
    return d->positionAt(QPointF(x, y - d->offset));
}

void QDeclarativeTextEdit::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    Q_D(QDeclarativeTextEdit);
    if (newGeometry.width() != oldGeometry.width())
        d->updateLayout();
    else if (newGeometry.height() != oldGeometry.height() && d->componentIsComplete && !d->isSizing)
        d->updateOffset();
    QDeclarativeTextEditor::geometryChanged(newGeometry, oldGeometry);
}

QRectF QDeclarativeTextEdit::boundingRect() const
{
    Q_D(const QDeclarativeTextEdit);
    // What is above a text that stands lower is left to what is below the item.
    QRectF rect = QDeclarativeTextEditor::boundingRect();
    if (!clip() && d->fillColor.alpha() == 0)
        rect.setTop(qMax(rect.top(), d->offset * d->contentsScale));
    return rect;
}

QRectF QDeclarativeTextEdit::drawnRect() const
{
    Q_D(const QDeclarativeTextEdit);
    const QRectF text(QPointF(0, d->offset), d->document.size());
    // Slanted letters reach over the advance of their line, and the cursor stands behind the last one.
    const qreal overhang = d->paintedSize.height() / (4 * qMax(1, d->lineCount)) + d->control.cursorWidth();
    return text.adjusted(-overhang, 0, overhang, 1);
}

void QDeclarativeTextEdit::drawContents(QPainter *painter, const QRectF &exposed)
{
    Q_D(QDeclarativeTextEdit);
    auto context = d->control.getPaintContext(nullptr);
    // Letters reach over the height of their line.
    const qreal line = QFontMetricsF(d->font).height();
    context.clip = exposed.adjusted(0, -line, 0, line).translated(0, -d->offset);
    const bool isLit = std::exchange(context.cursorPosition, -1) != -1;
    painter->translate(0, d->offset);
    d->document.documentLayout()->draw(painter, context);
    painter->translate(0, -d->offset);
    d->drawCursor(painter, cursorRectangle(), isLit);
}
