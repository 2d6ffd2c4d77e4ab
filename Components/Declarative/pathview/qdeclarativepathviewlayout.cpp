#include "qdeclarativepathview_p_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "models/qdeclarativevisualmodel_p.h"

#include <QtCore/QScopedValueRollback>

#include <private/qqmldelegatemodel_p.h>
#include <private/qqmlopenmetaobject_p.h>

#include <algorithm>
#include <cmath>

namespace {

const qreal circleGap = 0.01; // in rows; how near a moving highlight comes to the end of the circle
const qreal pushGap = 1e-5; // in rows; how far the highlight is pushed into its range
const int mostPasses = 10; // of a layout that its own items keep changing

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
    if (qAbs(wrapped - whole) < QDeclarativePathViewPrivate::tolerance)
        wrapped = whole;
    return wrapped >= count ? 0 : wrapped;
}

} // namespace

const QDeclarativePathViewPrivate::Making *QDeclarativePathViewPrivate::making = nullptr;

QDeclarativePathViewPrivate::QDeclarativePathViewPrivate()
    : work([this] { dropRows(); })
    , offsetValue(this, &QDeclarativePathViewPrivate::moveTo)
    , highlightValue(this, &QDeclarativePathViewPrivate::moveHighlightTo)
{
}

QDeclarativePathViewPrivate::~QDeclarativePathViewPrivate()
{
    if (attributeType)
        attributeType->release();
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

qreal QDeclarativePathViewPrivate::placeOf(qreal index) const
{
    if (rowCount <= 0)
        return 1;
    const int shown = visibleRows();
    const qreal whole = qreal(rowCount) / shown;
    const qreal place = wrappedRows(index + offset, rowCount) / shown + rangeStart();
    return place > whole - tolerance ? qMax<qreal>(0, place - whole) : place;
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
        work.countItem();
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
    // An item that a VisualItemModel owns stays as it was declared, and a part of a package.
    if (qobject_cast<QQmlDelegateModel *>(visualModel->instance()))
        item->setZValue(index + 1);
    QDeclarativeItemPrivate::get(item)->addChangeListener(this, heard);
    attached->setView(q);
    return {item, attached, index};
}

/**
 * Attaches the path's attributes to a part of a package that another view makes, which may be before this one
 * and its path are complete.
 */
void QDeclarativePathViewPrivate::beginRow(int index, QObject *object)
{
    const auto *model = visualModel->instance();
    const bool isPart =
        !qobject_cast<const QQmlDelegateModel *>(model) && !qobject_cast<const QQmlObjectModel *>(model);
    if (making || !isPart || !qobject_cast<QDeclarativeItem *>(object))
        return;
    if (!componentIsComplete)
        readPath();
    const Making context = {this, placeOf(index), index == currentIndex};
    const QScopedValueRollback<const Making *> guard(making, &context);
    qmlAttachedPropertiesObject<QDeclarativePathView>(object);
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
    const QPointF point = places.pointAt(place);
    item->setPos(QDeclarativeRounding::bounded(point.x() - item->width() / 2),
                 QDeclarativeRounding::bounded(point.y() - item->height() / 2));
}

void QDeclarativePathViewPrivate::placeItem(QDeclarativeItem *item, QDeclarativePathViewAttached *attached,
                                            qreal place)
{
    // An attribute that is set may change the path.
    const QDeclarativePathPlaces now = places;
    const QStringList names = now.attributes();
    for (const QString &name : names)
        attached->setAttribute(name, now.attributeAt(name, place));
    positionItem(item, place);
}

/** Makes, moves and gives up items so that every row whose place is on the path has one there. */
void QDeclarativePathViewPrivate::layOut()
{
    if (!componentIsComplete || places.isEmpty() || !visualModel->isValid() || rowCount <= 0)
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
        if (rowCount > 0 && !places.isEmpty())
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
    for (size_t i = 0; i < rows.size() && !layOutAgain; ++i) {
        const Row row = rows[i];
        placeItem(row.item, row.attached, placeOf(row.index));
        if (!layOutAgain)
            row.attached->setOnPath(true);
    }
    if (!layOutAgain && (isStrict() || mover != Script))
        keepHighlight();
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
    if (!componentIsComplete || work.postpone([this] { pathUpdated(); }))
        return;
    readPath();
    layOut();
}

void QDeclarativePathViewPrivate::readPath()
{
    Q_Q(QDeclarativePathView);
    places = path ? QDeclarativePathPlaces(*path) : QDeclarativePathPlaces();
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
    const QStringList names = places.attributes();
    for (const QString &name : names) {
        if (!known.contains(name.toUtf8()))
            attributeType->createProperty(name.toUtf8());
    }
}

void QDeclarativePathViewPrivate::itemGeometryChanged(QDeclarativeItem *item, const QRectF &now,
                                                      const QRectF &before)
{
    if (now.size() == before.size() || places.isEmpty())
        return;
    if (item == highlightItem) {
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
    keepHighlight();
}

/** Puts the highlight where it belongs: into a strict range, and elsewhere to the current row. */
void QDeclarativePathViewPrivate::keepHighlight()
{
    placeHighlight(isStrict() ? rangeStart() : placeOf(currentIndex));
}

/** Puts the highlight on the path; it stands at the end while its row is not on it. */
void QDeclarativePathViewPrivate::placeHighlight(qreal place)
{
    if (!highlightItem || places.isEmpty() || rowCount <= 0)
        return;
    const QDeclarativeWork::Scope scope(&work);
    highlightPlace = qMin<qreal>(place, 1);
    placeItem(highlightItem, highlightAttached, highlightPlace);
    if (highlightAttached)
        highlightAttached->setOnPath(place < 1);
}

/** Moves the highlight to the current row. */
void QDeclarativePathViewPrivate::moveHighlight()
{
    if (!highlightItem || rowCount <= 0)
        return;
    const qreal way = currentIndex - highlightRow;
    const Turn turn = turnFor(way);
    highlightRises = turn == OverTheEnd || (turn == NoTurn && way > 0);
    moveRound(highlightValue, highlightRow, currentIndex, rowCount - circleGap);
}

/** Puts the highlight to where row @p index is, or would be; where that is out of the range the rows move. */
void QDeclarativePathViewPrivate::moveHighlightTo(qreal index)
{
    if (index == highlightRow || rowCount <= 0)
        return;
    const QDeclarativeWork::Scope scope(&work);
    highlightRow = index;
    pushRows();
    placeHighlight(placeOf(highlightRow));
}

/** Moves the rows so that the highlight comes back into the range that it has left. */
void QDeclarativePathViewPrivate::pushRows()
{
    const bool hasRange =
        rangeMode != QDeclarativePathView::NoHighlightRange && highlightBegin <= highlightEnd;
    const qreal shown = visibleRows();
    const qreal way = wrappedRows(highlightRow + offset, rowCount);
    // Towards earlier rows it may go on until the end of the range, counted from its start.
    const qreal most = shown * (hasRange ? highlightEnd - (highlightRises ? highlightBegin : 0) : 1);
    if (!highlightRises && way > most)
        moveTo(offset + rowCount - way);
    else if (highlightRises && way >= most)
        moveTo(offset - (way - most) - pushGap);
}
