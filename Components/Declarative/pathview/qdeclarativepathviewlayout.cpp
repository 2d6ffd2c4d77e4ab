#include "qdeclarativepathview_p_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "models/qdeclarativevisualmodel_p.h"

#include <QtCore/QScopedValueRollback>

#include <private/qqmlopenmetaobject_p.h>

#include <algorithm>
#include <cmath>

namespace {

const qreal tolerance = 1e-6; // in rows; below this a row stands exactly where it should
const int mostPasses = 10; // of a layout that its own items keep changing
const int nearestSteps = 100;
const int stepsPerPixel = 5; // that items on the path stop at

const auto heard = QDeclarativeItemChanges(GeometryChange) | DestroyedChange;

int wrappedIndex(qint64 index, int count)
{
    return int(((index % count) + count) % count);
}

/** Brings a number of rows into the circle of @p count rows. */
qreal wrappedRows(qreal value, int count)
{
    qreal wrapped = std::fmod(value, count);
    if (wrapped < 0)
        wrapped += count;
    const qreal whole = std::round(wrapped);
    if (qAbs(wrapped - whole) < tolerance)
        wrapped = whole;
    return wrapped >= count ? 0 : wrapped;
}

} // namespace

const QDeclarativePathViewPrivate::Making *QDeclarativePathViewPrivate::making = nullptr;

QDeclarativePathViewPrivate::QDeclarativePathViewPrivate()
    : work([this] { dropRows(); })
    , offsetValue(this, &QDeclarativePathViewPrivate::moveTo)
    , highlightValue(this, &QDeclarativePathViewPrivate::placeHighlight)
{
    clock.start();
}

QDeclarativePathViewPrivate::~QDeclarativePathViewPrivate()
{
    if (attributeType)
        attributeType->release();
}

/** Tells whether there is a path to stand on; one that is still being declared is none yet. */
bool QDeclarativePathViewPrivate::hasPath() const
{
    return path && !path->path().isEmpty();
}

/** How many rows the whole path has room for. */
int QDeclarativePathViewPrivate::visibleRows() const
{
    return pathItemCount < 0 ? rowCount : qMin(pathItemCount, rowCount);
}

qreal QDeclarativePathViewPrivate::rangeStart() const
{
    return rangeMode == QDeclarativePathView::NoHighlightRange || highlightBegin > highlightEnd
        ? 0
        : highlightBegin;
}

bool QDeclarativePathViewPrivate::isStrict() const
{
    return rangeMode == QDeclarativePathView::StrictlyEnforceRange && highlightBegin <= highlightEnd;
}

qreal QDeclarativePathViewPrivate::placeOf(int index, qreal offset) const
{
    if (rowCount <= 0)
        return 1;
    const int shown = visibleRows();
    const qreal whole = qreal(rowCount) / shown;
    const qreal place = wrappedRows(index + offset, rowCount) / shown + rangeStart();
    return place > whole - tolerance ? qMax<qreal>(0, place - whole) : place;
}

/** The place on the path that is nearest to @p point, and how far away it is, in pixels. */
qreal QDeclarativePathViewPrivate::nearestPlace(const QPointF &point, qreal *distance) const
{
    qreal nearest = 0;
    qreal least = -1;
    const auto search = [&](qreal from, qreal step) {
        for (int i = 0; i <= nearestSteps; ++i) {
            const qreal place = qBound<qreal>(0, from + i * step, 1);
            const QPointF way = path->pointAtPercent(place) - point;
            const qreal squared = QPointF::dotProduct(way, way);
            if (least >= 0 && squared >= least)
                continue;
            least = squared;
            nearest = place;
        }
    };
    const qreal coarse = 1.0 / nearestSteps;
    search(0, coarse);
    search(nearest - coarse, 2 * coarse / nearestSteps);
    if (distance)
        *distance = std::sqrt(least);
    return nearest;
}

QDeclarativePathViewPrivate::Row QDeclarativePathViewPrivate::makeRow(int index, qreal place)
{
    Q_Q(QDeclarativePathView);
    // The rows are no longer numbered as the view knows them.
    if (!keptChanges.isEmpty() || work.isExhausted())
        return {nullptr, nullptr, index};
    QGraphicsObject *object = nullptr;
    QDeclarativePathViewAttached *attached = nullptr;
    {
        const Making context = {this, place, index == currentIndex};
        const QScopedValueRollback<const Making *> guard(making, &context);
        object = visualModel->item(index, q);
        if (object)
            attached = qobject_cast<QDeclarativePathViewAttached *>(
                qmlAttachedPropertiesObject<QDeclarativePathView>(object));
    }
    auto *item = qobject_cast<QDeclarativeItem *>(object);
    if (!item) {
        visualModel->releaseItem(object);
        return {nullptr, nullptr, index};
    }
    // An item that a VisualItemModel owns stays as it was declared.
    if (!qobject_cast<QQmlObjectModel *>(visualModel->instance()))
        item->setZValue(index + 1);
    QDeclarativeItemPrivate::get(item)->addChangeListener(this, heard);
    attached->setView(q);
    return {item, attached, index};
}

void QDeclarativePathViewPrivate::releaseRow(const Row &row)
{
    QDeclarativeItemPrivate::get(row.item)->removeChangeListener(this, heard);
    row.attached->setOnPath(false);
    visualModel->releaseItem(row.item);
}

void QDeclarativePathViewPrivate::releaseRows(const std::vector<Row> &released)
{
    for (const Row &row : released)
        releaseRow(row);
}

void QDeclarativePathViewPrivate::clear()
{
    releaseRows(std::exchange(rows, {}));
    refused = false;
    if (layingOut)
        layOutAgain = true;
}

void QDeclarativePathViewPrivate::positionItem(QDeclarativeItem *item, qreal place)
{
    if (!path)
        return;
    const qreal step = qMin<qreal>(std::round(place * (pathSteps + 1)), pathSteps);
    const QPointF point = path->sequentialPointAt(step / pathSteps);
    item->setPos(QDeclarativeRounding::bounded(point.x() - item->width() / 2),
                 QDeclarativeRounding::bounded(point.y() - item->height() / 2));
}

void QDeclarativePathViewPrivate::placeItem(QDeclarativeItem *item, QDeclarativePathViewAttached *attached,
                                            qreal place)
{
    for (int i = 0; i < attributes.count() && path; ++i)
        attached->setAttribute(attributes.at(i), path->attributeAt(attributes.at(i), place));
    positionItem(item, place);
    attached->setOnPath(true);
}

/** Makes, moves and gives up items so that every row whose place is on the path has one there. */
void QDeclarativePathViewPrivate::layOut()
{
    if (!componentIsComplete || !hasPath() || !visualModel->isValid() || rowCount <= 0)
        return;
    if (layingOut) {
        layOutAgain = true;
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    const QScopedValueRollback<bool> guard(layingOut, true);
    int pass = 0;
    do {
        layOutAgain = false;
        if (rowCount > 0 && hasPath())
            layOutRows();
    } while (layOutAgain && ++pass < mostPasses);
}

void QDeclarativePathViewPrivate::layOutRows()
{
    const int shown = visibleRows();
    const qreal start = offset + rangeStart() * shown;
    const auto first = qint64(std::ceil(-start - tolerance));
    const int count = qMin(rowCount, int(std::ceil(shown - tolerance - first - start)));
    const auto slotOf = [&](const Row &row) { return wrappedIndex(row.index - first, rowCount); };

    const auto end =
        std::stable_partition(rows.begin(), rows.end(), [&](const Row &row) { return slotOf(row) < count; });
    const std::vector<Row> leaving(end, rows.end());
    rows.erase(end, rows.end());
    std::vector<bool> hasItem(count);
    for (const Row &row : rows)
        hasItem[slotOf(row)] = true;
    releaseRows(leaving);
    for (int slot = 0; slot < count && !layOutAgain && !refused; ++slot) {
        if (!hasItem[slot])
            addRow(wrappedIndex(first + slot, rowCount));
    }
    for (size_t i = 0; i < rows.size() && !layOutAgain; ++i)
        placeItem(rows[i].item, rows[i].attached, placeOf(rows[i].index));
    if (!layOutAgain && highlightItem && !highlightMoves)
        placeHighlight(highlightTarget(offset));
}

void QDeclarativePathViewPrivate::addRow(int index)
{
    const Row row = makeRow(index, placeOf(index));
    if (!row.item) {
        refused = !layOutAgain && keptChanges.isEmpty() && !work.isExhausted();
        return;
    }
    rows.push_back(row);
    const bool current = row.index == currentIndex;
    row.attached->setIsCurrentItem(current);
    if (current)
        row.item->setFocus(true);
}

void QDeclarativePathViewPrivate::pathUpdated()
{
    Q_Q(QDeclarativePathView);
    if (!componentIsComplete || work.postpone([this] { pathUpdated(); }))
        return;
    attributes = path ? path->attributes() : QStringList();
    pathSteps = hasPath() ? qMax<qreal>(1, std::ceil(path->path().length() * stepsPerPixel)) : 1;
    if (!attributeType) {
        attributeType =
            new QQmlOpenMetaObjectType(&QDeclarativePathViewAttached::staticMetaObject, qmlEngine(q));
        // What the type caches is read from its first object for as long as there are others.
        const QScopedValueRollback<const Making *> nothing(making, nullptr);
        attributeKeeper = std::make_shared<QDeclarativePathViewAttached>(nullptr);
        (new QQmlOpenMetaObject(attributeKeeper.get(), attributeType))->setCached(true);
    }
    QVector<QByteArray> known;
    for (int i = 0; i < attributeType->propertyCount(); ++i)
        known.append(attributeType->propertyName(i));
    for (const QString &name : qAsConst(attributes)) {
        if (!known.contains(name.toUtf8()))
            attributeType->createProperty(name.toUtf8());
    }
    layOut();
}

void QDeclarativePathViewPrivate::itemGeometryChanged(QDeclarativeItem *item, const QRectF &now,
                                                      const QRectF &before)
{
    if (now.size() == before.size() || !hasPath())
        return;
    if (item == highlightItem) {
        if (highlightPlace < 1)
            positionItem(item, highlightPlace);
        return;
    }
    for (const Row &row : rows) {
        if (row.item == item)
            positionItem(item, qMin<qreal>(placeOf(row.index), 1));
    }
}

void QDeclarativePathViewPrivate::itemDestroyed(QDeclarativeItem *item)
{
    if (item == highlightItem)
        highlightItem.clear();
    rows.erase(std::remove_if(rows.begin(), rows.end(), [item](const Row &row) { return row.item == item; }),
               rows.end());
    if (layingOut)
        layOutAgain = true;
}

void QDeclarativePathViewPrivate::createHighlight()
{
    const QDeclarativeWork::Scope scope(&work);
    const bool had = highlightItem;
    timeLine.reset(highlightValue);
    highlightMoves = false;
    if (highlightItem)
        QDeclarativeItemPrivate::get(highlightItem.data())->removeChangeListener(this, heard);
    discard(highlightItem);
    highlightItem = nullptr;
    makeHighlight();
    if (had || highlightItem)
        Q_EMIT q_func()->highlightItemChanged();
}

void QDeclarativePathViewPrivate::makeHighlight()
{
    Q_Q(QDeclarativePathView);
    QDeclarativeItem *item = nullptr;
    {
        const Making state = {this, rangeStart(), false};
        const QScopedValueRollback<const Making *> guard(making, &state);
        item = highlightComponent ? createPart(highlightComponent, q) : new QDeclarativeItem(q);
        if (!item)
            return;
        highlightAttached = qobject_cast<QDeclarativePathViewAttached *>(
            qmlAttachedPropertiesObject<QDeclarativePathView>(item));
    }
    highlightItem = item;
    QDeclarativeItemPrivate::get(item)->addChangeListener(this, heard);
    placeHighlight(highlightTarget(offset));
}

/** Where the highlight belongs once the rows have moved to @p offsetThen. */
qreal QDeclarativePathViewPrivate::highlightTarget(qreal offsetThen) const
{
    return isStrict() ? rangeStart() : placeOf(currentIndex, offsetThen);
}

/** Puts the highlight on the path; where its row is not on it, it stays where it was. */
void QDeclarativePathViewPrivate::placeHighlight(qreal place)
{
    if (!highlightItem || !hasPath() || rowCount <= 0)
        return;
    const QDeclarativeWork::Scope scope(&work);
    if (highlightMoves)
        place -= std::floor(place);
    if (place >= 1) {
        highlightAttached->setOnPath(false);
        return;
    }
    highlightPlace = place;
    placeItem(highlightItem, highlightAttached, place);
}

/** Moves the highlight to the current row, which the rows' movement to @p offsetThen takes along. */
void QDeclarativePathViewPrivate::moveHighlight(qreal offsetThen)
{
    if (!highlightItem || isStrict())
        return;
    timeLine.reset(highlightValue);
    highlightMoves = false;
    const qreal target = highlightTarget(offsetThen);
    if (target >= 1 || highlightMoveDuration <= 0) {
        placeHighlight(target);
        return;
    }
    qreal way = target - highlightPlace;
    way -= std::round(way);
    highlightMoves = true;
    highlightValue.QQuickTimeLineValue::setValue(highlightPlace);
    timeLine.move(highlightValue, highlightPlace + way, QEasingCurve(QEasingCurve::InOutQuad),
                  highlightMoveDuration);
    timeLine.callback(QQuickTimeLineCallback(
        &highlightValue,
        [](void *data) {
            auto *view = static_cast<QDeclarativePathViewPrivate *>(data);
            view->highlightMoves = false;
            view->placeHighlight(view->highlightTarget(view->offset));
        },
        this));
}
