#include "qdeclarativetext_p_p.h"

#include <QtGui/QAbstractTextDocumentLayout>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <limits>
#include <utility>

QString QDeclarativeTextPrivate::linkAt(const QPointF &position) const
{
    if (!document)
        return {};
    return document->documentLayout()->anchorAt(position - QPointF(0, verticalOffset()));
}

QDeclarativeText::QDeclarativeText(QDeclarativeItem *parent)
    : QDeclarativeItem(*new QDeclarativeTextPrivate, parent)
{
    d_func()->enablePainting();
    setFlag(ItemUsesExtendedStyleOption);
}

QDeclarativeText::~QDeclarativeText() = default;

QString QDeclarativeText::text() const
{
    return d_func()->text;
}

void QDeclarativeText::setText(const QString &text)
{
    Q_D(QDeclarativeText);
    if (text == d->text)
        return;
    d->text = text;
    d->isTextDirty = true;
    d->updateAlignment();
    d->updateLayout();
    Q_EMIT textChanged(text);
}

QFont QDeclarativeText::font() const
{
    return d_func()->font;
}

void QDeclarativeText::setFont(const QFont &font)
{
    Q_D(QDeclarativeText);
    const bool same = font == d->font;
    d->font = font;
    if (same)
        return;
    d->isTextDirty = true;
    d->updateLayout();
    Q_EMIT fontChanged(font);
}

QColor QDeclarativeText::color() const
{
    return d_func()->color;
}

void QDeclarativeText::setColor(const QColor &color)
{
    Q_D(QDeclarativeText);
    if (color == d->color)
        return;
    d->color = color;
    update();
    Q_EMIT colorChanged(color);
}

QDeclarativeText::TextStyle QDeclarativeText::style() const
{
    return d_func()->style;
}

void QDeclarativeText::setStyle(TextStyle style)
{
    Q_D(QDeclarativeText);
    if (style == d->style)
        return;
    d->style = style;
    update();
    Q_EMIT styleChanged(style);
}

QColor QDeclarativeText::styleColor() const
{
    return d_func()->styleColor;
}

void QDeclarativeText::setStyleColor(const QColor &color)
{
    Q_D(QDeclarativeText);
    if (color == d->styleColor)
        return;
    d->styleColor = color;
    update();
    Q_EMIT styleColorChanged(color);
}

QDeclarativeText::HAlignment QDeclarativeText::hAlign() const
{
    return d_func()->hAlign;
}

void QDeclarativeText::setHAlign(HAlignment alignment)
{
    Q_D(QDeclarativeText);
    d->alignmentIsSet = true;
    if (alignment == d->hAlign)
        return;
    d->hAlign = alignment;
    d->updateLayout();
    Q_EMIT horizontalAlignmentChanged(alignment);
}

void QDeclarativeText::resetHAlign()
{
    Q_D(QDeclarativeText);
    d->alignmentIsSet = false;
    const HAlignment before = d->hAlign;
    d->updateAlignment();
    if (d->hAlign != before)
        d->updateLayout();
}

QDeclarativeText::VAlignment QDeclarativeText::vAlign() const
{
    return d_func()->vAlign;
}

void QDeclarativeText::setVAlign(VAlignment alignment)
{
    Q_D(QDeclarativeText);
    if (alignment == d->vAlign)
        return;
    prepareGeometryChange();
    d->vAlign = alignment;
    update();
    Q_EMIT verticalAlignmentChanged(alignment);
}

QDeclarativeText::WrapMode QDeclarativeText::wrapMode() const
{
    return d_func()->wrapMode;
}

void QDeclarativeText::setWrapMode(WrapMode mode)
{
    Q_D(QDeclarativeText);
    if (mode == d->wrapMode)
        return;
    d->wrapMode = mode;
    d->updateLayout();
    Q_EMIT wrapModeChanged();
}

int QDeclarativeText::lineCount() const
{
    return d_func()->lineCount;
}

bool QDeclarativeText::truncated() const
{
    return d_func()->isTruncated;
}

int QDeclarativeText::maximumLineCount() const
{
    return d_func()->maximumLineCount;
}

void QDeclarativeText::setMaximumLineCount(int count)
{
    Q_D(QDeclarativeText);
    if (count == d->maximumLineCount)
        return;
    d->maximumLineCount = count;
    d->updateLayout();
    Q_EMIT maximumLineCountChanged();
}

void QDeclarativeText::resetMaximumLineCount()
{
    setMaximumLineCount(std::numeric_limits<int>::max());
}

QDeclarativeText::TextFormat QDeclarativeText::textFormat() const
{
    return d_func()->format;
}

void QDeclarativeText::setTextFormat(TextFormat format)
{
    Q_D(QDeclarativeText);
    if (format == d->format)
        return;
    d->format = format;
    d->isTextDirty = true;
    d->updateLayout();
    Q_EMIT textFormatChanged(format);
}

QDeclarativeText::TextElideMode QDeclarativeText::elideMode() const
{
    return d_func()->elide;
}

void QDeclarativeText::setElideMode(TextElideMode mode)
{
    Q_D(QDeclarativeText);
    if (mode == d->elide)
        return;
    d->elide = mode;
    d->updateLayout();
    Q_EMIT elideModeChanged(mode);
}

qreal QDeclarativeText::paintedWidth() const
{
    return d_func()->paintedSize.width();
}

qreal QDeclarativeText::paintedHeight() const
{
    return d_func()->paintedSize.height();
}

qreal QDeclarativeText::lineHeight() const
{
    return d_func()->lineHeight;
}

void QDeclarativeText::setLineHeight(qreal height)
{
    Q_D(QDeclarativeText);
    if (height == d->lineHeight || height < 0)
        return;
    d->lineHeight = height;
    d->updateLayout();
    Q_EMIT lineHeightChanged(height);
}

QDeclarativeText::LineHeightMode QDeclarativeText::lineHeightMode() const
{
    return d_func()->lineHeightMode;
}

void QDeclarativeText::setLineHeightMode(LineHeightMode mode)
{
    Q_D(QDeclarativeText);
    if (mode == d->lineHeightMode)
        return;
    d->lineHeightMode = mode;
    d->updateLayout();
    Q_EMIT lineHeightModeChanged(mode);
}

QVariant QDeclarativeText::itemChange(GraphicsItemChange change, const QVariant &value)
{
    // Clipping decides whether the item reaches beyond its own rectangle.
    if (change == ItemFlagsChange)
        prepareGeometryChange();
    return QDeclarativeItem::itemChange(change, value);
}

void QDeclarativeText::componentComplete()
{
    Q_D(QDeclarativeText);
    QDeclarativeItem::componentComplete();
    d->updateLayout();
}

void QDeclarativeText::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    Q_D(QDeclarativeText);
    if (!d->isSizing && newGeometry.width() != oldGeometry.width() && (!d->widthIsSet || d->reactsToWidth()))
        d->updateLayout();
    QDeclarativeItem::geometryChanged(newGeometry, oldGeometry);
}

void QDeclarativeText::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeText);
    d->activeLink = d->linkAt(event->pos());
    event->setAccepted(!d->activeLink.isEmpty());
}

void QDeclarativeText::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeText);
    const QString link = std::exchange(d->activeLink, {});
    event->setAccepted(!link.isEmpty());
    if (!link.isEmpty() && d->linkAt(event->pos()) == link)
        Q_EMIT linkActivated(link);
}

#include "moc_qdeclarativetext_p.cpp"
