#include "qdeclarativetext_p.h"

#include "item/qdeclarativeitem_p.h"
#include "qdeclarativefonts_p.h"
#include "qdeclarativestyledtext_p.h"
#include "qdeclarativetextdocument_p.h"
#include "qdeclarativetextlayout_p.h"

#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <limits>

class QDeclarativeTextPrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeText)

public:
    void updateLayout();
    void updateSizes(const QSizeF &);
    void prepareText();
    void layOutLines();
    void layOutDocument();
    QSizeF clearLayout();
    void setLineCount(int);
    void setTruncated(bool);
    void updateAlignment();
    void mirrorChange() override;
    bool reactsToWidth() const;
    QDeclarativeTextLayout::Parameters parameters() const;
    Qt::Alignment effectiveAlignment() const;
    qreal naturalWidth() const;
    qreal implicitWidth() const override;
    qreal verticalOffset() const;
    QRectF contentRect() const;
    void draw(QPainter *, const QPointF &, const QColor &, bool isStyle);
    QString linkAt(const QPointF &) const;

    QString text;
    QString shownText; ///< without the markup of styled text, lines separated by QChar::LineSeparator
    QVector<QTextLayout::FormatRange> formats;
    QFont font;
    QColor color = Qt::black;
    QColor styleColor;
    QScopedPointer<QDeclarativeTextLayout> layout;
    QScopedPointer<QDeclarativeTextDocument> document; ///< exists while the text is rich
    QString activeLink;
    QSizeF paintedSize;
    int maximumLineCount = std::numeric_limits<int>::max();
    int lineCount = 1;
    qreal lineHeight = 1;
    QDeclarativeText::HAlignment hAlign = QDeclarativeText::AlignLeft;
    QDeclarativeText::VAlignment vAlign = QDeclarativeText::AlignTop;
    QDeclarativeText::TextStyle style = QDeclarativeText::Normal;
    QDeclarativeText::TextFormat format = QDeclarativeText::AutoText;
    QDeclarativeText::TextElideMode elide = QDeclarativeText::ElideNone;
    QDeclarativeText::WrapMode wrapMode = QDeclarativeText::NoWrap;
    QDeclarativeText::LineHeightMode lineHeightMode = QDeclarativeText::ProportionalHeight;
    bool isTruncated = false;
    bool isTextDirty = true;
    bool keepsTruncated = false;
    bool alignmentIsSet = false;
    bool isSizing = false;
    bool implicitWidthIsRead = false;
};

void QDeclarativeTextPrivate::prepareText()
{
    Q_Q(QDeclarativeText);
    isTextDirty = false;
    const bool rich = format == QDeclarativeText::RichText
        || (format == QDeclarativeText::AutoText && Qt::mightBeRichText(text));
    formats.clear();
    shownText.clear();
    if (!rich) {
        document.reset();
        q->setAcceptedMouseButtons(Qt::NoButton);
    }
    if (rich) {
        layout.reset();
        q->setAcceptedMouseButtons(Qt::LeftButton);
        if (!document) {
            document.reset(new QDeclarativeTextDocument(q));
            QObject::connect(document.data(), &QDeclarativeTextDocument::loaded, q,
                             [this] { updateLayout(); });
        }
        document->setDefaultFont(font);
        document->setMarkup(text);
    } else if (format == QDeclarativeText::StyledText) {
        const QDeclarativeStyledText styled(text, font);
        shownText = styled.text();
        formats = styled.formats();
    } else {
        shownText = text;
        shownText.replace(QLatin1Char('\n'), QChar::LineSeparator);
    }
}

void QDeclarativeTextPrivate::updateLayout()
{
    Q_Q(QDeclarativeText);
    if (!componentIsComplete)
        return;
    q->prepareGeometryChange();
    if (text.isEmpty()) {
        updateSizes(clearLayout());
        return;
    }
    if (!implicitWidthIsRead) {
        Q_EMIT q->implicitWidthChanged();
        // A binding that has read it then brought about the layout as well.
        if (implicitWidthIsRead)
            return;
    }
    // Of the same text a single line keeps counting as truncated.
    keepsTruncated = !isTextDirty;
    if (isTextDirty)
        prepareText();
    else if (document)
        document->setDefaultFont(font); // small capitals get their widths only from the second time on
    font = QDeclarativeFonts::shared(font);
    QSizeF size;
    if (document) {
        layOutDocument();
        size = QSizeF(int(document->idealWidth()), int(document->size().height()));
    } else {
        layOutLines();
        size = layout->size();
    }
    updateSizes(size);
}

QSizeF QDeclarativeTextPrivate::clearLayout()
{
    layout.reset();
    document.reset();
    isTextDirty = true;
    setLineCount(1);
    setTruncated(false);
    return QSizeF(0, QFontMetrics(font).height());
}

void QDeclarativeTextPrivate::updateSizes(const QSizeF &size)
{
    Q_Q(QDeclarativeText);
    isSizing = true;
    if (!text.isEmpty()) {
        const QFontMetrics metrics(font);
        const int room = int((heightIsSet ? itemHeight : size.height())) - int(size.height());
        int offset = 0;
        if (vAlign == QDeclarativeText::AlignBottom)
            offset = room;
        else if (vAlign == QDeclarativeText::AlignVCenter)
            offset = room / 2;
        q->setBaselineOffset(metrics.ascent() + offset);
    }
    if (!widthIsSet || text.isEmpty())
        q->setImplicitWidth(size.width());
    else if (implicitWidthIsRead)
        q->setImplicitWidth(naturalWidth());
    q->setImplicitHeight(size.height());
    isSizing = false;
    if (size != paintedSize) {
        paintedSize = size;
        Q_EMIT q->paintedSizeChanged();
    }
    q->update();
}

QDeclarativeTextLayout::Parameters QDeclarativeTextPrivate::parameters() const
{
    QDeclarativeTextLayout::Parameters parameters;
    parameters.text = shownText;
    parameters.formats = formats;
    parameters.font = font;
    parameters.width = itemWidth;
    parameters.hasWidth = widthIsSet;
    parameters.alignment = effectiveAlignment();
    parameters.wrapMode = QTextOption::WrapMode(wrapMode);
    parameters.elide = Qt::TextElideMode(elide);
    parameters.maximumLineCount = maximumLineCount;
    parameters.lineHeight = lineHeight;
    parameters.lineHeightIsFixed = lineHeightMode == QDeclarativeText::FixedHeight;
    parameters.isStyled = format == QDeclarativeText::StyledText;
    parameters.sourceLength = text.size();
    return parameters;
}

void QDeclarativeTextPrivate::layOutLines()
{
    if (!layout)
        layout.reset(new QDeclarativeTextLayout);
    layout->layOut(parameters());
    if (layout->isTruncated())
        setTruncated(true);
    setLineCount(layout->lineCount());
    const bool limited = maximumLineCount != std::numeric_limits<int>::max();
    if (limited || elide == QDeclarativeText::ElideNone || !keepsTruncated)
        setTruncated(layout->isTruncated());
}

void QDeclarativeTextPrivate::layOutDocument()
{
    QTextOption option(effectiveAlignment());
    option.setWrapMode(QTextOption::WrapMode(wrapMode));
    document->setDefaultTextOption(option);
    document->setTextWidth(widthIsSet ? itemWidth : -1);
    setLineCount(1);
    setTruncated(false);
}

qreal QDeclarativeTextPrivate::naturalWidth() const
{
    if (!document)
        return QDeclarativeTextLayout::naturalWidth(parameters());
    const qreal width = document->textWidth();
    document->setTextWidth(-1);
    const qreal natural = document->idealWidth();
    document->setTextWidth(width);
    return natural;
}

qreal QDeclarativeTextPrivate::implicitWidth() const
{
    if (!implicitWidthIsRead) {
        auto *self = const_cast<QDeclarativeTextPrivate *>(this);
        self->implicitWidthIsRead = true;
        self->updateLayout();
    }
    return itemImplicitWidth;
}

void QDeclarativeTextPrivate::setLineCount(int count)
{
    Q_Q(QDeclarativeText);
    if (count == lineCount)
        return;
    lineCount = count;
    Q_EMIT q->lineCountChanged();
}

void QDeclarativeTextPrivate::setTruncated(bool truncated)
{
    Q_Q(QDeclarativeText);
    if (truncated == isTruncated)
        return;
    isTruncated = truncated;
    Q_EMIT q->truncatedChanged();
}

void QDeclarativeTextPrivate::updateAlignment()
{
    Q_Q(QDeclarativeText);
    if (alignmentIsSet || text.isEmpty())
        return;
    const auto natural = text.isRightToLeft() ? QDeclarativeText::AlignRight : QDeclarativeText::AlignLeft;
    if (natural == hAlign)
        return;
    hAlign = natural;
    Q_EMIT q->horizontalAlignmentChanged(hAlign);
}

Qt::Alignment QDeclarativeTextPrivate::effectiveAlignment() const
{
    auto alignment = Qt::Alignment(int(hAlign));
    // Words are spread only where nothing else is asked for.
    if (hAlign == QDeclarativeText::AlignJustify)
        return alignment;
    // An alignment that follows the text's direction is right as it is.
    if (alignmentIsSet && isMirrored() && alignment & (Qt::AlignLeft | Qt::AlignRight))
        alignment ^= Qt::AlignLeft | Qt::AlignRight;
    // Absolute, or the layout would turn it round again for text that runs from right to left.
    return alignment | Qt::AlignAbsolute;
}

void QDeclarativeTextPrivate::mirrorChange()
{
    QDeclarativeItemPrivate::mirrorChange();
    if (alignmentIsSet)
        updateLayout();
}

bool QDeclarativeTextPrivate::reactsToWidth() const
{
    const bool left = effectiveAlignment() == (Qt::AlignLeft | Qt::AlignAbsolute);
    return document || !left || wrapMode != QDeclarativeText::NoWrap || elide != QDeclarativeText::ElideNone;
}

qreal QDeclarativeTextPrivate::verticalOffset() const
{
    // A style draws one pixel around.
    const qreal height = paintedSize.height() + (style == QDeclarativeText::Normal ? 0 : 2);
    switch (vAlign) {
    case QDeclarativeText::AlignBottom:
        return int(itemHeight - height);
    case QDeclarativeText::AlignVCenter:
        return int((itemHeight - height) / 2);
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
                                   bool isStyle)
{
    if (document) {
        painter->translate(position);
        document->draw(painter, color, isStyle);
        painter->translate(-position);
    } else if (layout) {
        painter->setPen(color);
        layout->draw(painter, position);
    }
}

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

QRectF QDeclarativeText::boundingRect() const
{
    Q_D(const QDeclarativeText);
    const QRectF item = QDeclarativeItem::boundingRect();
    return clip() ? item : item | d->contentRect();
}

void QDeclarativeText::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
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
    const QColor styleColor = d->styleColor.isValid() ? d->styleColor : QColor(Qt::black);
    if (d->style == Outline) {
        for (const QPoint &offset : outline)
            d->draw(painter, position + offset, styleColor, true);
    } else if (d->style != Normal) {
        d->draw(painter, position + QPointF(0, d->style == Raised ? 1 : -1), styleColor, true);
    }
    d->draw(painter, position, d->color, false);
    painter->restore();
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
