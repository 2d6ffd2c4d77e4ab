#include "qdeclarativepositioners_p.h"

#include "item/qdeclarativeanchors_p.h"

#include <cmath>
#include <utility>

QDeclarativeColumn::QDeclarativeColumn(QDeclarativeItem *parent)
    : QDeclarativeBasePositioner(parent)
{
}

int QDeclarativeColumn::placedLines() const
{
    return QDeclarativeAnchorLine::Top | QDeclarativeAnchorLine::Bottom | QDeclarativeAnchorLine::VCenter;
}

QString QDeclarativeColumn::conflictMessage() const
{
    return QStringLiteral(
        "Cannot specify top, bottom, verticalCenter, fill or centerIn anchors for items inside Column");
}

QSizeF QDeclarativeColumn::arrange(Cells &cells, const std::optional<QSizeF> &before) const
{
    const QSizeF gap(0, spacing());
    QSizeF content = before.value_or(QSizeF(-1, 0) - gap);
    for (Cell &cell : cells) {
        cell.pos.setY(content.height() + spacing());
        content.setWidth(qMax(content.width(), cell.size.width()));
        content.setHeight(whole(cell.pos.y() + cell.size.height()));
        cell.content = content;
    }
    return content;
}

QDeclarativeRow::QDeclarativeRow(QDeclarativeItem *parent)
    : QDeclarativeBasePositioner(parent)
{
}

int QDeclarativeRow::placedLines() const
{
    return QDeclarativeAnchorLine::Horizontal;
}

QString QDeclarativeRow::conflictMessage() const
{
    return QStringLiteral(
        "Cannot specify left, right, horizontalCenter, fill or centerIn anchors for items inside Row");
}

bool QDeclarativeRow::goesOn() const
{
    return !isRightToLeft();
}

QSizeF QDeclarativeRow::arrange(Cells &cells, const std::optional<QSizeF> &before) const
{
    const QSizeF gap(spacing(), 0);
    QSizeF content = before.value_or(QSizeF(0, -1) - gap);
    for (Cell &cell : cells) {
        cell.pos.setX(content.width() + spacing());
        content.setHeight(qMax(content.height(), cell.size.height()));
        content.setWidth(whole(cell.pos.x() + cell.size.width()));
        cell.content = content;
    }
    if (isRightToLeft())
        mirror(cells, content.width());
    return content;
}

QDeclarativeGrid::QDeclarativeGrid(QDeclarativeItem *parent)
    : QDeclarativeBasePositioner(parent)
{
}

void QDeclarativeGrid::setRows(int rows)
{
    if (rows == m_rows)
        return;
    m_rows = rows;
    relayout();
    Q_EMIT rowsChanged();
}

void QDeclarativeGrid::setColumns(int columns)
{
    if (columns == m_columns)
        return;
    m_columns = columns;
    relayout();
    Q_EMIT columnsChanged();
}

void QDeclarativeGrid::setFlow(Flow flow)
{
    if (flow == m_flow)
        return;
    m_flow = flow;
    relayout();
    Q_EMIT flowChanged();
}

/** Returns the columns (width) and rows (height) for @p count children; what is not given follows from them.
 */
QSize QDeclarativeGrid::tableSize(int count) const
{
    constexpr int defaultColumns = 4;
    const auto fit = [count](int given) { return count / given + (count % given > 0 ? 1 : 0); };
    if (m_columns > 0)
        return QSize(m_columns, m_rows > 0 ? m_rows : fit(m_columns));
    return m_rows > 0 ? QSize(fit(m_rows), m_rows) : QSize(defaultColumns, fit(defaultColumns));
}

/** Turns the lengths of neighbours into where each starts; returns how long @p count are, the others empty.
 */
static qreal lineUp(QVector<qreal> &lengths, int count, int spacing)
{
    qreal next = 0;
    for (qreal &length : lengths)
        next += std::exchange(length, next) + spacing;
    return next + (qreal(count) - lengths.count() - 1) * spacing;
}

int QDeclarativeGrid::placedLines() const
{
    return QDeclarativeAnchorLine::Horizontal | QDeclarativeAnchorLine::Vertical;
}

QString QDeclarativeGrid::conflictMessage() const
{
    return QStringLiteral("Cannot specify anchors for items inside Grid");
}

QSizeF QDeclarativeGrid::arrange(Cells &cells, const std::optional<QSizeF> &) const
{
    const QSize table = tableSize(cells.count());
    if (table.isEmpty())
        return QSizeF();
    const bool across = m_flow == LeftToRight;
    const auto column = [&](int i) { return across ? i % table.width() : i / table.height(); };
    const auto row = [&](int i) { return across ? i / table.width() : i % table.height(); };
    const qint64 cellCount = qint64(table.width()) * table.height();
    cells.resize(int(qMin(cellCount, qint64(cells.count()))));

    QVector<qreal> widths;
    QVector<qreal> heights;
    for (int i = 0; i < cells.count(); ++i) {
        const QSizeF size = cells.at(i).size;
        widths.resize(qMax(widths.count(), column(i) + 1));
        heights.resize(qMax(heights.count(), row(i) + 1));
        widths[column(i)] = qMax(widths.at(column(i)), whole(size.width()));
        heights[row(i)] = qMax(heights.at(row(i)), whole(size.height()));
    }
    // Of the empty cells that follow the last child in its line only the first counts.
    const int most = cells.count() + 1;
    const qreal width = lineUp(widths, across ? qMin(table.width(), most) : table.width(), spacing());
    const qreal height = lineUp(heights, across ? table.height() : qMin(table.height(), most), spacing());
    for (int i = 0; i < cells.count(); ++i)
        cells[i].pos = QPointF(widths.at(column(i)), heights.at(row(i)));
    if (isRightToLeft())
        mirror(cells, width);
    return QSizeF(width, height);
}

QDeclarativeFlow::QDeclarativeFlow(QDeclarativeItem *parent)
    : QDeclarativeBasePositioner(parent)
{
}

void QDeclarativeFlow::setFlow(Flow flow)
{
    if (flow == m_flow)
        return;
    m_flow = flow;
    relayout();
    Q_EMIT flowChanged();
}

int QDeclarativeFlow::placedLines() const
{
    return QDeclarativeAnchorLine::Horizontal | QDeclarativeAnchorLine::Vertical;
}

QString QDeclarativeFlow::conflictMessage() const
{
    return QStringLiteral("Cannot specify anchors for items inside Flow");
}

QSizeF QDeclarativeFlow::arrange(Cells &cells, const std::optional<QSizeF> &) const
{
    const bool across = m_flow == LeftToRight;
    const bool wraps = across ? widthValid() : heightValid();
    const qreal limit = across ? width() : height();
    QSizeF content;
    QPointF next;
    qreal thickness = 0;
    for (Cell &cell : cells) {
        qreal &along = across ? next.rx() : next.ry();
        qreal &aside = across ? next.ry() : next.rx();
        const qreal length = across ? cell.size.width() : cell.size.height();
        if (wraps && along != 0 && along + length > limit) {
            along = 0;
            aside += thickness + spacing();
            thickness = 0;
        }
        cell.pos = next;
        content = content.expandedTo(QSizeF(next.x() + cell.size.width(), next.y() + cell.size.height()));
        thickness = qMax(thickness, std::ceil(across ? cell.size.height() : cell.size.width()));
        along = whole(along + length) + spacing();
    }
    if (isRightToLeft())
        mirror(cells, content.width());
    return content;
}

#include "moc_qdeclarativepositioners_p.cpp"
