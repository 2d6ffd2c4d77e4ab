#include "qdeclarativetextlayout_p.h"

#include "engine/qdeclarativerounding_p.h"
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>

#include <cmath>

namespace {

QString ellipsisText()
{
    return QString(QChar(0x2026));
}

bool isLimited(const QDeclarativeTextLayout::Parameters &parameters)
{
    return parameters.maximumLineCount != std::numeric_limits<int>::max();
}

} // namespace

void QDeclarativeTextLayout::layOut(const Parameters &parameters)
{
    QTextOption option(parameters.hasWidth ? parameters.alignment : Qt::AlignLeft);
    option.setWrapMode(parameters.wrapMode);
    truncated = false;
    if (elideSingleLine(parameters))
        option.setWrapMode(QTextOption::NoWrap);
    else
        layout.setText(parameters.text);
    layout.setCacheEnabled(true);
    layout.setTextOption(option);
    layout.setFont(parameters.font);
    layout.setFormats(parameters.formats);
    breakLines(parameters);
    measure();
}

void QDeclarativeTextLayout::breakLines(const Parameters &parameters)
{
    const qreal width = parameters.hasWidth ? qMax(0.0, parameters.width) : std::numeric_limits<int>::max();
    height = 0;
    ellipsis = QRectF();
    if (parameters.maximumLineCount < 1)
        truncated = true;
    layout.beginLayout();
    for (int count = 1; count <= parameters.maximumLineCount; ++count) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        // Markup counts as text here: styled text that fills its lines is taken for cut.
        if (count == parameters.maximumLineCount
            && line.textStart() + line.textLength() < parameters.sourceLength) {
            truncated = true;
            elideLine(&line, parameters);
        }
        height +=
            parameters.lineHeightIsFixed ? parameters.lineHeight : line.height() * parameters.lineHeight;
    }
    layout.endLayout();
}

bool QDeclarativeTextLayout::elideSingleLine(const Parameters &parameters)
{
    if (parameters.elide == Qt::ElideNone || !parameters.hasWidth || parameters.isStyled)
        return false;
    if (isLimited(parameters) || parameters.text.contains(QChar::LineSeparator))
        return false;
    const QString elided =
        QFontMetrics(parameters.font)
            .elidedText(parameters.text, parameters.elide, QDeclarativeRounding::truncated(parameters.width));
    truncated = elided != parameters.text;
    layout.setText(elided);
    return true;
}

// The line ends at a word, or wherever lines do, with room for the ellipsis behind it; a word that is longer
// than the line stays whole.
void QDeclarativeTextLayout::elideLine(QTextLine *line, const Parameters &parameters)
{
    if (parameters.elide != Qt::ElideRight || !parameters.hasWidth)
        return;
    const qreal width = QFontMetricsF(parameters.font).horizontalAdvance(ellipsisText());
    line->setLineWidth(qMax(0.0, parameters.width - width));
    const QRectF rect = line->naturalTextRect();
    const bool rightToLeft = layout.text().mid(line->textStart(), line->textLength()).isRightToLeft();
    if (rightToLeft)
        line->setPosition(line->position() + QPointF(width, 0));
    ellipsis = QRectF(rightToLeft ? rect.left() : rect.right(), rect.top(), width, rect.height());
}

void QDeclarativeTextLayout::measure()
{
    bounds = ellipsis;
    // Unlike the lines' natural width, these know of justified words and of words that reach out at the left.
    for (int i = 0; i < layout.lineCount(); ++i)
        bounds |= layout.lineAt(i).naturalTextRect();
    lineBounds = QSizeF(std::ceil(bounds.width()), std::ceil(height));
    bounds |= QRectF(bounds.left(), 0, lineBounds.width(), lineBounds.height());
}

qreal QDeclarativeTextLayout::naturalWidth(const Parameters &parameters)
{
    QTextLayout unbroken(parameters.text, parameters.font);
    unbroken.setFormats(parameters.formats);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    unbroken.setTextOption(option);
    qreal widest = 0;
    unbroken.beginLayout();
    for (QTextLine line = unbroken.createLine(); line.isValid(); line = unbroken.createLine()) {
        line.setLineWidth(std::numeric_limits<int>::max());
        widest = qMax(widest, line.naturalTextWidth());
    }
    unbroken.endLayout();
    return widest;
}

void QDeclarativeTextLayout::draw(QPainter *painter, const QPointF &position, const QRectF &exposed) const
{
    layout.draw(painter, position, {}, exposed);
    if (ellipsis.isNull())
        return;
    const qreal ascent = layout.lineAt(layout.lineCount() - 1).ascent();
    painter->setFont(layout.font());
    painter->drawText(position + ellipsis.topLeft() + QPointF(0, ascent), ellipsisText());
}
