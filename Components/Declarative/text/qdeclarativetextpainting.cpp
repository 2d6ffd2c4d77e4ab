#include "qdeclarativetext_p_p.h"

#include "engine/qdeclarativerounding_p.h"
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

qreal QDeclarativeTextPrivate::verticalOffset() const
{
    // A style draws one pixel around.
    const qreal height = paintedSize.height() + (style == QDeclarativeText::Normal ? 0 : 2);
    switch (vAlign) {
    case QDeclarativeText::AlignBottom:
        return QDeclarativeRounding::truncated(itemHeight - height);
    case QDeclarativeText::AlignVCenter:
        return QDeclarativeRounding::truncated((itemHeight - height) / 2);
    default:
        return 0;
    }
}

QRectF QDeclarativeTextPrivate::contentRect() const
{
    QRectF content;
    if (document)
        content = QRectF(QPointF(), document->size());
    else if (layout)
        content = layout->boundingRect();
    else
        return content;
    // Slanted letters reach over the advance of their line, and a style draws one pixel around.
    const qreal overhang = paintedSize.height() / (4 * lineCount) + 1;
    return content.translated(0, verticalOffset()).adjusted(-overhang, -1, overhang, 1);
}

void QDeclarativeTextPrivate::draw(QPainter *painter, const QPointF &position, const QColor &color,
                                   bool isStyle, const QRectF &exposed)
{
    if (document) {
        painter->translate(position);
        document->draw(painter, color, isStyle, exposed.translated(-position));
        painter->translate(-position);
    } else if (layout) {
        painter->setPen(color);
        layout->draw(painter, position, exposed);
    }
}

/** What is drawn for @p exposed to be whole: letters reach over the height of their line. */
QRectF QDeclarativeTextPrivate::drawnRect(const QRectF &exposed) const
{
    const qreal line = QFontMetricsF(font).height();
    return exposed.adjusted(0, -line, 0, line);
}

QRectF QDeclarativeText::boundingRect() const
{
    Q_D(const QDeclarativeText);
    const QRectF item = QDeclarativeItem::boundingRect();
    return clip() ? item : item | d->contentRect();
}

void QDeclarativeText::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    Q_D(QDeclarativeText);
    static const QPoint outline[] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    if (d->text.isEmpty())
        return;
    painter->save();
    if (smooth())
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (clip())
        painter->setClipRect(QDeclarativeItem::boundingRect(), Qt::IntersectClip);
    // Text with a style stands one pixel further left, where the style's own outline begins.
    const QPointF position(d->style == Normal ? 0 : -1, d->verticalOffset());
    const QRectF exposed = d->drawnRect(option ? option->exposedRect : boundingRect());
    const QColor styleColor = d->styleColor.isValid() ? d->styleColor : QColor(Qt::black);
    if (d->style == Outline) {
        for (const QPoint &offset : outline)
            d->draw(painter, position + offset, styleColor, true, exposed);
    } else if (d->style != Normal) {
        d->draw(painter, position + QPointF(0, d->style == Raised ? 1 : -1), styleColor, true, exposed);
    }
    d->draw(painter, position, d->color, false, exposed);
    painter->restore();
}
