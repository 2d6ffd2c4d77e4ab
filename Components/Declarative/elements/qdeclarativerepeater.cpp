#include "qdeclarativerepeater_p.h"

#include "item/qdeclarativegraphicsitem_p.h"
#include "models/qdeclarativevisualmodel_p.h"

#include <QtQml/QQmlComponent>

QDeclarativeRepeater::QDeclarativeRepeater(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , rows(new QDeclarativeVisualModel(this))
{
    connect(rows, &QDeclarativeVisualModel::modelUpdated, this, &QDeclarativeRepeater::updateItems);
}

QDeclarativeRepeater::~QDeclarativeRepeater()
{
    delete rows;
}

QVariant QDeclarativeRepeater::model() const
{
    return rows->model();
}

void QDeclarativeRepeater::setModel(const QVariant &model)
{
    if (model == rows->model())
        return;
    const int before = count();
    clear();
    if (!rows->setModel(model))
        return;
    regenerate();
    Q_EMIT modelChanged();
    if (isComponentComplete() && count() != before)
        Q_EMIT countChanged();
}

QQmlComponent *QDeclarativeRepeater::delegate() const
{
    return rows->delegate();
}

void QDeclarativeRepeater::setDelegate(QQmlComponent *delegate)
{
    if (delegate == rows->delegate())
        return;
    clear();
    rows->setDelegate(delegate);
    regenerate();
    Q_EMIT delegateChanged();
}

int QDeclarativeRepeater::count() const
{
    return rows->count();
}

QDeclarativeItem *QDeclarativeRepeater::itemAt(int index) const
{
    return qobject_cast<QDeclarativeItem *>(items.value(index).data());
}

void QDeclarativeRepeater::componentComplete()
{
    // First, so that the rows that it finds are not news.
    rows->componentComplete();
    QDeclarativeItem::componentComplete();
    if (rows->count())
        Q_EMIT countChanged();
    regenerate();
}

QVariant QDeclarativeRepeater::itemChange(GraphicsItemChange change, const QVariant &value)
{
    QVariant result = QDeclarativeItem::itemChange(change, value);
    if (change == ItemParentHasChanged && isComponentComplete())
        regenerate();
    return result;
}

void QDeclarativeRepeater::clear()
{
    while (!items.isEmpty()) {
        const QPointer<QGraphicsObject> item = items.takeLast();
        auto *reported = qobject_cast<QDeclarativeItem *>(item.data());
        if (reported)
            Q_EMIT itemRemoved(items.count() - 1, reported);
        rows->releaseItem(item);
    }
}

void QDeclarativeRepeater::regenerate()
{
    if (!isComponentComplete())
        return;
    clear();
    if (!parentObject())
        return;
    for (int i = 0; i < rows->count(); ++i)
        insertItem(i, rows->item(i, QGraphicsItem::parentItem()));
}

void QDeclarativeRepeater::insertItem(int index, QGraphicsObject *item)
{
    items.insert(index, item);
    stack(index);
    if (auto *added = qobject_cast<QDeclarativeItem *>(item))
        Q_EMIT itemAdded(index, added);
}

void QDeclarativeRepeater::stack(int index)
{
    if (!items.at(index))
        return;
    QGraphicsItem *above = this;
    for (int i = index + 1; i < items.count(); ++i) {
        if (items.at(i)) {
            above = items.at(i);
            break;
        }
    }
    items.at(index)->stackBefore(above);
}

void QDeclarativeRepeater::restack()
{
    const auto place = [](QGraphicsItem *item) { return QGraphicsItemPrivate::get(item)->siblingIndex; };
    // An item can only be put below another one, so each goes below the lowest of those that follow it.
    for (int i = 0; i < items.count(); ++i) {
        if (!items.at(i))
            continue;
        QGraphicsItem *lowest = this;
        for (int next = i + 1; next < items.count(); ++next) {
            if (items.at(next) && place(items.at(next)) < place(lowest))
                lowest = items.at(next);
        }
        items.at(i)->stackBefore(lowest);
    }
}

void QDeclarativeRepeater::updateItems(const QQmlChangeSet &changes, bool reset)
{
    if (!isComponentComplete())
        return;
    if (reset) {
        regenerate();
    } else {
        const MovedItems moved = removeRows(changes);
        insertRows(changes, moved);
        if (!moved.isEmpty())
            restack();
    }
    if (changes.difference() != 0)
        Q_EMIT countChanged();
}

QDeclarativeRepeater::MovedItems QDeclarativeRepeater::removeRows(const QQmlChangeSet &changes)
{
    MovedItems moved;
    for (const QQmlChangeSet::Change &remove : changes.removes()) {
        const int index = qMin(remove.index, items.count());
        const int count = qMin(remove.count, items.count() - index);
        if (remove.isMove()) {
            for (int i = 0; i < count; ++i)
                moved.insert({remove.moveId, remove.offset + i}, items.takeAt(index));
            continue;
        }
        for (int i = 0; i < count; ++i) {
            const QPointer<QGraphicsObject> item = items.at(index);
            if (auto *reported = qobject_cast<QDeclarativeItem *>(item.data()))
                Q_EMIT itemRemoved(index, reported);
            items.removeAt(index);
            rows->releaseItem(item);
        }
    }
    return moved;
}

void QDeclarativeRepeater::insertRows(const QQmlChangeSet &changes, const MovedItems &moved)
{
    for (const QQmlChangeSet::Change &insert : changes.inserts()) {
        for (int i = 0; i < insert.count; ++i) {
            const int index = qMin(insert.index + i, items.count());
            if (insert.isMove())
                items.insert(index, moved.value({insert.moveId, insert.offset + i}));
            else if (parentObject())
                insertItem(index, rows->item(index, QGraphicsItem::parentItem()));
        }
    }
}

#include "moc_qdeclarativerepeater_p.cpp"
