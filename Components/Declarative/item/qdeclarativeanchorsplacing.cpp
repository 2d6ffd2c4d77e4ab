#include "qdeclarativeanchors_p.h"

#include <QtQml/qqmlinfo.h>
#include <QtWidgets/QGraphicsWidget>

#include <cmath>

// Where anchors put their item, and what size they give it.

namespace {

// A target whose change comes back to itself this often is in a loop.
constexpr int maximumDepth = 3;

/** The middle of @p length; that of an odd number of whole pixels is half a pixel further. */
qreal middle(qreal length)
{
    return std::fmod(std::trunc(length), 2) != 0 ? (length + 1) / 2 : length / 2;
}

QSizeF sizeOf(QGraphicsObject *object)
{
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(object);
    return QSizeF(d->width(), d->height());
}

qreal baselineOf(const QGraphicsObject *object)
{
    const auto *const item = qobject_cast<const QDeclarativeItem *>(object);
    return item ? item->baselineOffset() : 0;
}

/** Counts how deep one update of an item's geometry is nested in itself. */
class Depth
{
public:
    explicit Depth(int *depth)
        : m_depth(depth)
    {
        ++*m_depth;
    }
    ~Depth() { --*m_depth; }
    Q_DISABLE_COPY(Depth)

private:
    int *const m_depth;
};

} // namespace

QSizeF QDeclarativeAnchors::ownSize() const
{
    return sizeOf(m_item);
}

void QDeclarativeAnchors::setOwnSize(const QSizeF &size)
{
    if (auto *item = qobject_cast<QDeclarativeItem *>(m_item))
        item->setSize(size);
    else if (auto *widget = qobject_cast<QGraphicsWidget *>(m_item))
        widget->resize(size);
}

void QDeclarativeAnchors::setOwnWidth(std::optional<qreal> width, int times)
{
    if (width)
        QGraphicsItemPrivate::get(m_item)->setWidth(*width * times);
}

void QDeclarativeAnchors::setOwnHeight(std::optional<qreal> height, int times)
{
    if (height)
        QGraphicsItemPrivate::get(m_item)->setHeight(*height * times);
}

void QDeclarativeAnchors::updateLine(LineIndex index)
{
    if (lineFlags[index] & QDeclarativeAnchorLine::Horizontal)
        updateHorizontal();
    else
        updateVertical();
}

void QDeclarativeAnchors::updateAll()
{
    updateFill();
    updateCenterIn();
    updateHorizontal();
    updateVertical();
}
void QDeclarativeAnchors::updateFill()
{
    if (!m_fill || !isReady())
        return;
    if (m_fillDepth >= maximumDepth) {
        qmlWarning(m_item) << tr("Possible anchor loop detected on fill.");
        return;
    }
    const Depth depth(&m_fillDepth);
    const bool isParent = m_fill == m_item->QGraphicsItem::parentItem();
    const qreal left = m_offsets[isMirrored() ? RightLine : LeftLine];
    const qreal across = m_offsets[LeftLine] + m_offsets[RightLine];
    const qreal down = m_offsets[TopLine] + m_offsets[BottomLine];
    if (isNeighbour(m_fill))
        m_item->setPos((isParent ? QPointF() : m_fill->pos()) + QPointF(left, m_offsets[TopLine]));
    if (m_fill)
        setOwnSize(sizeOf(m_fill) - QSizeF(across, down));
}

void QDeclarativeAnchors::updateCenterIn()
{
    if (!m_centerIn || m_fill || !isNeighbour(m_centerIn) || !isReady())
        return;
    if (m_centerDepth >= maximumDepth) {
        qmlWarning(m_item) << tr("Possible anchor loop detected on centerIn.");
        return;
    }
    const Depth depth(&m_centerDepth);
    const bool isParent = m_centerIn == m_item->QGraphicsItem::parentItem();
    const QSizeF frame = sizeOf(m_centerIn);
    const qreal across = isMirrored() ? -m_offsets[HCenterLine] : m_offsets[HCenterLine];
    const QPointF centre(middle(frame.width()) - middle(ownSize().width()) + across,
                         middle(frame.height()) - middle(ownSize().height()) + m_offsets[VCenterLine]);
    m_item->setPos((isParent ? QPointF() : m_centerIn->pos()) + centre);
}

void QDeclarativeAnchors::updateHorizontal()
{
    if (!(m_used & QDeclarativeAnchorLine::Horizontal) || m_fill || m_centerIn || !isReady())
        return;
    if (m_horizontalDepth >= maximumDepth) {
        qmlWarning(m_item) << tr("Possible anchor loop detected on horizontal anchor.");
        return;
    }
    const Depth depth(&m_horizontalDepth);
    applyHorizontal();
}

void QDeclarativeAnchors::updateVertical()
{
    if (!(m_used & QDeclarativeAnchorLine::Vertical) || m_fill || m_centerIn || !isReady())
        return;
    if (m_verticalDepth >= maximumDepth) {
        qmlWarning(m_item) << tr("Possible anchor loop detected on vertical anchor.");
        return;
    }
    const Depth depth(&m_verticalDepth);
    applyVertical();
}

/**
 * Whether the item is held at @p index: a target that has become no neighbour lets go, until it is one again.
 *
 * A handler may also have destroyed it since the update began.
 */
bool QDeclarativeAnchors::isHeld(LineIndex index) const
{
    return m_lines[index].item && isNeighbour(m_lines[index].item);
}

/** Where the target line of @p index, with its margin, lies in the coordinates of the item's parent. */
qreal QDeclarativeAnchors::linePosition(LineIndex index) const
{
    const QDeclarativeAnchorLine &target = m_lines[index];
    const bool isParent = target.item == m_item->QGraphicsItem::parentItem();
    const bool horizontal = lineFlags[index] & QDeclarativeAnchorLine::Horizontal;
    const QSizeF size = sizeOf(target.item);
    const bool turned = horizontal && isMirrored();
    const bool fromEnd = index == (turned ? LeftLine : RightLine) || index == BottomLine;
    const qreal margin = fromEnd || (turned && index == HCenterLine) ? -m_offsets[index] : m_offsets[index];
    qreal position = isParent ? 0 : horizontal ? target.item->x() : target.item->y();
    switch (target.line) {
    case QDeclarativeAnchorLine::Left:
        position += turned ? size.width() : 0;
        break;
    case QDeclarativeAnchorLine::Right:
        position += turned ? 0 : size.width();
        break;
    case QDeclarativeAnchorLine::HCenter:
        position += middle(size.width());
        break;
    case QDeclarativeAnchorLine::Bottom:
        position += size.height();
        break;
    case QDeclarativeAnchorLine::VCenter:
        position += middle(size.height());
        break;
    case QDeclarativeAnchorLine::Baseline:
        position += baselineOf(target.item);
        break;
    default:
        break;
    }
    return position + margin;
}

/** What lies between the target lines @p from and @p to; nothing when one of them does not hold the item. */
std::optional<qreal> QDeclarativeAnchors::stretch(LineIndex from, LineIndex to) const
{
    if (!isHeld(from) || !isHeld(to))
        return std::nullopt;
    return linePosition(to) - linePosition(from);
}

void QDeclarativeAnchors::applyHorizontal()
{
    const LineIndex left = isMirrored() ? RightLine : LeftLine;
    const LineIndex right = isMirrored() ? LeftLine : RightLine;
    const auto has = [this](LineIndex index) { return bool(m_used & lineFlags[index]); };
    if (has(left)) {
        if (has(right))
            setOwnWidth(stretch(left, right), 1);
        else if (has(HCenterLine))
            setOwnWidth(stretch(left, HCenterLine), 2);
        // Neighbours may have followed the new width.
        if (isHeld(left))
            m_item->setX(linePosition(left));
    } else if (has(right)) {
        if (has(HCenterLine))
            setOwnWidth(stretch(HCenterLine, right), 2);
        if (isHeld(right))
            m_item->setX(linePosition(right) - ownSize().width());
    } else if (isHeld(HCenterLine)) {
        m_item->setX(linePosition(HCenterLine) - middle(ownSize().width()));
    }
}

void QDeclarativeAnchors::applyVertical()
{
    const auto has = [this](LineIndex index) { return bool(m_used & lineFlags[index]); };
    if (has(TopLine)) {
        if (has(BottomLine))
            setOwnHeight(stretch(TopLine, BottomLine), 1);
        else if (has(VCenterLine))
            setOwnHeight(stretch(TopLine, VCenterLine), 2);
        if (isHeld(TopLine))
            m_item->setY(linePosition(TopLine));
    } else if (has(BottomLine)) {
        if (has(VCenterLine))
            setOwnHeight(stretch(VCenterLine, BottomLine), 2);
        if (isHeld(BottomLine))
            m_item->setY(linePosition(BottomLine) - ownSize().height());
    } else if (has(VCenterLine)) {
        if (isHeld(VCenterLine))
            m_item->setY(linePosition(VCenterLine) - middle(ownSize().height()));
    } else if (isHeld(BaselineLine)) {
        m_item->setY(linePosition(BaselineLine) - baselineOf(m_item));
    }
}
