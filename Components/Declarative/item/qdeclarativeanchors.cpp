#include "qdeclarativeanchors_p.h"

#include "engine/qdeclarativedepth_p.h"
#include "qdeclarativelayoutmirroring_p.h"

#include <QtCore/QPointer>
#include <QtQml/qqmlinfo.h>

namespace {

constexpr QDeclarativeItemChanges targetChanges =
    QDeclarativeItemChanges(GeometryChange) | BaselineOffsetChange | DestroyedChange;

} // namespace

QDeclarativeAnchors::QDeclarativeAnchors(QGraphicsObject *item)
    : m_item(item)
{
    // An item tells of its geometry itself.
    if (qobject_cast<QDeclarativeItem *>(item))
        return;
    connect(item, &QGraphicsObject::xChanged, this, [this] { ownChanged(true, false); });
    connect(item, &QGraphicsObject::yChanged, this, [this] { ownChanged(false, true); });
    connect(item, &QGraphicsObject::widthChanged, this, [this] { ownChanged(true, false); });
    connect(item, &QGraphicsObject::heightChanged, this, [this] { ownChanged(false, true); });
}

QDeclarativeAnchors::~QDeclarativeAnchors()
{
    m_used = 0;
    const auto release = [this](QGraphicsObject *target) {
        if (auto *item = qobject_cast<QDeclarativeItem *>(target))
            QDeclarativeItemPrivate::get(item)->removeChangeListener(this, targetChanges);
    };
    for (const QDeclarativeAnchorLine &line : m_lines)
        release(line.item);
    release(m_fill);
    release(m_centerIn);
}

bool QDeclarativeAnchors::isMirrored() const
{
    auto *const item = qobject_cast<QDeclarativeItem *>(m_item);
    return item && QDeclarativeItemPrivate::get(item)->isMirrored();
}

bool QDeclarativeAnchors::isReady() const
{
    if (auto *item = qobject_cast<QDeclarativeItem *>(m_item))
        return QDeclarativeItemPrivate::get(item)->componentIsComplete;
    return !QGraphicsItemPrivate::get(m_item)->inDestructor;
}

bool QDeclarativeAnchors::isNeighbour(const QGraphicsObject *target) const
{
    const QGraphicsItem *parent = m_item->QGraphicsItem::parentItem();
    return target == parent || target->QGraphicsItem::parentItem() == parent;
}

bool QDeclarativeAnchors::isTargetValid(LineIndex index, const QDeclarativeAnchorLine &target) const
{
    if (!target.item) {
        qmlWarning(m_item) << tr("Cannot anchor to a null item.");
        return false;
    }
    const bool horizontal = lineFlags[index] & QDeclarativeAnchorLine::Horizontal;
    if (horizontal && (target.line & QDeclarativeAnchorLine::Vertical)) {
        qmlWarning(m_item) << tr("Cannot anchor a horizontal edge to a vertical edge.");
        return false;
    }
    if (!horizontal && (target.line & QDeclarativeAnchorLine::Horizontal)) {
        qmlWarning(m_item) << tr("Cannot anchor a vertical edge to a horizontal edge.");
        return false;
    }
    if (!isNeighbour(target.item)) {
        qmlWarning(m_item) << tr("Cannot anchor to an item that isn't a parent or sibling.");
        return false;
    }
    if (target.item == m_item) {
        qmlWarning(m_item) << tr("Cannot anchor item to self.");
        return false;
    }
    return true;
}

bool QDeclarativeAnchors::areLinesValid(int used, bool horizontal) const
{
    using Line = QDeclarativeAnchorLine;
    const auto has = [used](int lines) { return (used & lines) == lines; };
    if (horizontal && has(Line::Horizontal)) {
        qmlWarning(m_item) << tr("Cannot specify left, right, and hcenter anchors.");
        return false;
    }
    if (!horizontal && has(Line::Top | Line::Bottom | Line::VCenter)) {
        qmlWarning(m_item) << tr("Cannot specify top, bottom, and vcenter anchors.");
        return false;
    }
    if (!horizontal && (used & Line::Baseline) && (used & (Line::Top | Line::Bottom | Line::VCenter))) {
        qmlWarning(m_item) << tr(
            "Baseline anchor cannot be used in conjunction with top, bottom, or vcenter anchors.");
        return false;
    }
    return true;
}

void QDeclarativeAnchors::setLine(LineIndex index, const QDeclarativeAnchorLine &target)
{
    if (m_lines[index] == target || !isTargetValid(index, target))
        return;
    const bool horizontal = lineFlags[index] & QDeclarativeAnchorLine::Horizontal;
    if (!areLinesValid(m_used | lineFlags[index], horizontal))
        return;
    m_used |= lineFlags[index];
    QGraphicsObject *previous = m_lines[index].item;
    m_lines[index] = target;
    removeDependency(previous);
    addDependency(target.item);
    emitLineChanged(index);
    updateLine(index);
}

void QDeclarativeAnchors::resetLine(LineIndex index)
{
    if (!(m_used & lineFlags[index]))
        return;
    m_used &= ~lineFlags[index];
    QGraphicsObject *previous = m_lines[index].item;
    m_lines[index] = {};
    removeDependency(previous);
    emitLineChanged(index);
    updateLine(index);
}

void QDeclarativeAnchors::emitLineChanged(LineIndex index)
{
    static constexpr void (QDeclarativeAnchors::*changed[])() = {
        &QDeclarativeAnchors::leftChanged,
        &QDeclarativeAnchors::rightChanged,
        &QDeclarativeAnchors::topChanged,
        &QDeclarativeAnchors::bottomChanged,
        &QDeclarativeAnchors::horizontalCenterChanged,
        &QDeclarativeAnchors::verticalCenterChanged,
        &QDeclarativeAnchors::baselineChanged,
    };
    const auto signal = changed[index];
    Q_EMIT(this->*signal)();
}

void QDeclarativeAnchors::emitOffsetChanged(LineIndex index)
{
    static constexpr void (QDeclarativeAnchors::*changed[])() = {
        &QDeclarativeAnchors::leftMarginChanged,
        &QDeclarativeAnchors::rightMarginChanged,
        &QDeclarativeAnchors::topMarginChanged,
        &QDeclarativeAnchors::bottomMarginChanged,
        &QDeclarativeAnchors::horizontalCenterOffsetChanged,
        &QDeclarativeAnchors::verticalCenterOffsetChanged,
        &QDeclarativeAnchors::baselineOffsetChanged,
    };
    const auto signal = changed[index];
    Q_EMIT(this->*signal)();
}

void QDeclarativeAnchors::setOffset(LineIndex index, qreal offset)
{
    if (m_offsets[index] == offset)
        return;
    m_offsets[index] = offset;
    if (m_fill)
        updateFill();
    else if (m_centerIn)
        updateCenterIn();
    else
        updateLine(index);
    emitOffsetChanged(index);
}

void QDeclarativeAnchors::setMargins(qreal margins)
{
    if (m_margins == margins)
        return;
    // A margin of its own stays.
    const qreal previous = m_margins;
    m_margins = margins;
    for (LineIndex index : {RightLine, LeftLine, TopLine, BottomLine}) {
        if (m_offsets[index] == 0 || m_offsets[index] == previous)
            setOffset(index, margins);
    }
    Q_EMIT marginsChanged();
}

void QDeclarativeAnchors::setFill(QGraphicsObject *target)
{
    if (m_fill == target || target == m_item)
        return;
    if (target && !isNeighbour(target)) {
        qmlWarning(m_item) << tr("Cannot anchor to an item that isn't a parent or sibling.");
        return;
    }
    QGraphicsObject *previous = m_fill;
    m_fill = target;
    removeDependency(previous);
    addDependency(target);
    Q_EMIT fillChanged();
    updateFill();
}

void QDeclarativeAnchors::setCenterIn(QGraphicsObject *target)
{
    if (m_centerIn == target || target == m_item)
        return;
    if (target && !isNeighbour(target)) {
        qmlWarning(m_item) << tr("Cannot anchor to an item that isn't a parent or sibling.");
        return;
    }
    QGraphicsObject *previous = m_centerIn;
    m_centerIn = target;
    removeDependency(previous);
    addDependency(target);
    Q_EMIT centerInChanged();
    updateCenterIn();
}

bool QDeclarativeAnchors::dependsOn(const QGraphicsObject *target) const
{
    if (m_fill == target || m_centerIn == target)
        return true;
    for (const QDeclarativeAnchorLine &line : m_lines) {
        if (line.item == target)
            return true;
    }
    return false;
}

void QDeclarativeAnchors::addDependency(QGraphicsObject *target)
{
    if (!target)
        return;
    if (auto *item = qobject_cast<QDeclarativeItem *>(target)) {
        QDeclarativeItemPrivate::get(item)->addChangeListener(this, targetChanges);
        return;
    }
    disconnect(target, nullptr, this, nullptr);
    connect(target, &QGraphicsObject::xChanged, this, [=] { targetChanged(target, true, false, false); });
    connect(target, &QGraphicsObject::yChanged, this, [=] { targetChanged(target, false, true, false); });
    connect(target, &QGraphicsObject::widthChanged, this, [=] { targetChanged(target, true, false, true); });
    connect(target, &QGraphicsObject::heightChanged, this, [=] { targetChanged(target, false, true, true); });
    connect(target, &QObject::destroyed, this, [=] { forget(target); });
}

void QDeclarativeAnchors::removeDependency(QGraphicsObject *target)
{
    if (!target || dependsOn(target))
        return;
    if (auto *item = qobject_cast<QDeclarativeItem *>(target))
        QDeclarativeItemPrivate::get(item)->removeChangeListener(this, targetChanges);
    else
        disconnect(target, nullptr, this, nullptr);
}

void QDeclarativeAnchors::forget(QGraphicsObject *target)
{
    if (m_fill == target)
        m_fill = nullptr;
    if (m_centerIn == target)
        m_centerIn = nullptr;
    for (int i = 0; i < Lines; ++i) {
        if (m_lines[i].item == target) {
            m_lines[i] = {};
            m_used &= ~lineFlags[i];
        }
    }
}

void QDeclarativeAnchors::itemDestroyed(QDeclarativeItem *item)
{
    forget(item);
}

void QDeclarativeAnchors::itemGeometryChanged(QDeclarativeItem *item, const QRectF &now, const QRectF &before)
{
    targetChanged(item, now.x() != before.x() || now.width() != before.width(),
                  now.y() != before.y() || now.height() != before.height(), now.size() != before.size());
}

void QDeclarativeAnchors::itemBaselineOffsetChanged(QDeclarativeItem *item)
{
    if (m_lines[BaselineLine].item == item
        || ((m_used & QDeclarativeAnchorLine::Vertical) && dependsOn(item)))
        updateVertical();
}

void QDeclarativeAnchors::targetChanged(QGraphicsObject *target, bool horizontal, bool vertical, bool resized)
{
    // Whoever is anchored to this item follows it in the same call, and so on down a chain.
    const QDeclarativeDepth depth;
    if (!depth.isTooDeep()) {
        follow(target, horizontal, vertical, resized);
        return;
    }
    const QPointer<QDeclarativeAnchors> self(this);
    const QPointer<QGraphicsObject> followed(target);
    QDeclarativeDepth::later(m_item, [=] {
        if (self && followed)
            self->targetChanged(followed, horizontal, vertical, resized);
    });
}

void QDeclarativeAnchors::follow(QGraphicsObject *target, bool horizontal, bool vertical, bool resized)
{
    // Where the parent itself stands makes no difference to its children.
    if (target == m_item->QGraphicsItem::parentItem() && !resized)
        return;
    if (m_fill) {
        if (m_fill == target)
            updateFill();
        return;
    }
    if (m_centerIn) {
        if (m_centerIn == target)
            updateCenterIn();
        return;
    }
    if (horizontal)
        updateHorizontal();
    if (vertical)
        updateVertical();
}

void QDeclarativeAnchors::ownGeometryChanged(const QRectF &now, const QRectF &before)
{
    ownChanged(now.x() != before.x() || now.width() != before.width(),
               now.y() != before.y() || now.height() != before.height());
}

void QDeclarativeAnchors::ownChanged(bool horizontal, bool vertical)
{
    // What is being set from here is right already; but a width may change the height.
    if (m_fill) {
        if (m_fillDepth == 0)
            updateFill();
    } else if (m_centerIn) {
        if (m_centerDepth == 0)
            updateCenterIn();
    } else {
        if (m_horizontalDepth == 0 && horizontal)
            updateHorizontal();
        if (m_verticalDepth == 0 && vertical)
            updateVertical();
    }
}
