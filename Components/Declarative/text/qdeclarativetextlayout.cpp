#include "qdeclarativetextlayout_p.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>

#include <cmath>

void QDeclarativeTextLayout::layOut(const Parameters &parameters)
{
    QTextOption option(parameters.width < 0 ? Qt::AlignLeft : parameters.alignment);
    option.setWrapMode(parameters.wrapMode);
    const bool single = elideSingleLine(parameters);
    if (!single) {
        truncated = false;
        layout.setText(parameters.text);
    } else {
        option.setWrapMode(QTextOption::NoWrap);
    }
    layout.setCacheEnabled(true);
    layout.setTextOption(option);
    layout.setFont(parameters.font);
    layout.setFormats(parameters.formats);
    const int end = breakLines(parameters);
    if (end < layout.text().size()) {
        truncated = true;
        elideLastLine(parameters, end);
    }
    measure();
}

int QDeclarativeTextLayout::breakLines(const Parameters &parameters)
{
    const qreal width = parameters.width < 0 ? std::numeric_limits<int>::max() : parameters.width;
    int end = 0;
    height = 0;
    layout.beginLayout();
    for (int count = 0; count < parameters.maximumLineCount; ++count) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height +=
            parameters.lineHeightIsFixed ? parameters.lineHeight : line.height() * parameters.lineHeight;
        end = line.textStart() + line.textLength();
    }
    layout.endLayout();
    return end;
}

bool QDeclarativeTextLayout::elideSingleLine(const Parameters &parameters)
{
    const bool limited = parameters.maximumLineCount != std::numeric_limits<int>::max();
    if (parameters.elide == Qt::ElideNone || parameters.width < 0 || parameters.isStyled)
        return false;
    if (limited && parameters.wrapMode != QTextOption::NoWrap)
        return false;
    if (parameters.text.contains(QChar::LineSeparator))
        return false;
    const QString elided =
        QFontMetrics(parameters.font).elidedText(parameters.text, parameters.elide, int(parameters.width));
    truncated = elided != parameters.text;
    layout.setText(elided);
    return true;
}

void QDeclarativeTextLayout::elideLastLine(const Parameters &parameters, int end)
{
    if (parameters.elide != Qt::ElideRight || parameters.width < 0 || parameters.isStyled)
        return;
    const QTextLine last = layout.lineAt(layout.lineCount() - 1);
    const QString before = parameters.text.left(last.textStart());
    QString shown = parameters.text.mid(last.textStart(), end - last.textStart());
    while (!shown.isEmpty() && shown.back().isSpace())
        shown.chop(1);
    shown += QChar(0x2026);
    layout.setText(before
                   + QFontMetrics(parameters.font).elidedText(shown, Qt::ElideRight, int(parameters.width)));
    breakLines(parameters);
}

void QDeclarativeTextLayout::measure()
{
    qreal widest = 0;
    bounds = QRectF();
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        // Unlike the line's natural width, this one knows of justified words.
        const QRectF rect = line.naturalTextRect();
        widest = qMax(widest, rect.width());
        bounds |= rect;
    }
    lineBounds = QSizeF(std::ceil(widest), std::ceil(height));
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

void QDeclarativeTextLayout::draw(QPainter *painter, const QPointF &position, bool everything) const
{
    QVector<QTextLayout::FormatRange> overrides;
    if (everything && !layout.formats().isEmpty()) {
        QTextCharFormat format;
        format.setForeground(painter->pen().color());
        overrides.append({0, layout.text().size(), format});
    }
    layout.draw(painter, position, overrides);
}
