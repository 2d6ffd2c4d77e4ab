#include "qdeclarativefonts_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "qdeclarativestyledtext_p.h"
#include "qdeclarativetext_p_p.h"

#include <QtGui/QFontMetrics>

#include <limits>

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
        size = QSizeF(QDeclarativeRounding::truncated(document->idealWidth()),
                      QDeclarativeRounding::truncated(document->size().height()));
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
        const int room = QDeclarativeRounding::truncated(heightIsSet ? itemHeight : size.height())
            - QDeclarativeRounding::truncated(size.height());
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
