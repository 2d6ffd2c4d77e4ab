#include "qdeclarativerepeater_p.h"

#include "qdeclarativetypes_p.h"
#include "qdeclarativevisualmodel_p.h"

#include <QtCore/QHash>
#include <QtQml/QQmlComponent>

QDeclarativeRepeater::QDeclarativeRepeater(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , rows(new QDeclarativeVisualModel(this))
{
    connect(rows, &QDeclarativeVisualModel::modelUpdated, this, &QDeclarativeRepeater::updateItems);
}

QDeclarativeRepeater::~QDeclarativeRepeater()
{
    for (const QPointer<QGraphicsObject> &item : qAsConst(items))
        rows->releaseItem(item);
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
    QDeclarativeItem::componentComplete();
    rows->componentComplete();
    if (rows->count())
        Q_EMIT countChanged();
    regenerate();
}

QVariant QDeclarativeRepeater::itemChange(GraphicsItemChange change, const QVariant &value)
{
    const QVariant result = QDeclarativeItem::itemChange(change, value);
    if (change == ItemParentHasChanged && isComponentComplete())
        regenerate();
    return result;
}

void QDeclarativeRepeater::report(int index, bool added)
{
    auto *item = qobject_cast<QDeclarativeItem *>(items.at(index).data());
    if (!item)
        return;
    if (added)
        Q_EMIT itemAdded(index, item);
    else
        Q_EMIT itemRemoved(index, item);
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
    report(index, true);
}

void QDeclarativeRepeater::stack(int index)
{
    QGraphicsObject *const item = items.at(index);
    if (!item)
        return;
    QGraphicsItem *above = this;
    for (int i = index + 1; i < items.count(); ++i) {
        if (items.at(i)) {
            above = items.at(i);
            break;
        }
    }
    item->stackBefore(above);
}

void QDeclarativeRepeater::updateItems(const QQmlChangeSet &changes, bool reset)
{
    if (!isComponentComplete())
        return;
    if (reset) {
        regenerate();
        if (changes.difference() != 0)
            Q_EMIT countChanged();
        return;
    }
    QHash<int, QVector<QPointer<QGraphicsObject>>> moved;
    for (const QQmlChangeSet::Change &remove : changes.removes()) {
        const int index = qMin(remove.index, items.count());
        const int count = qMin(remove.index + remove.count, items.count()) - index;
        if (remove.isMove()) {
            moved.insert(remove.moveId, items.mid(index, count));
            items.remove(index, count);
            continue;
        }
        for (int i = 0; i < count; ++i) {
            report(index, false);
            rows->releaseItem(items.takeAt(index));
        }
    }
    for (const QQmlChangeSet::Change &insert : changes.inserts()) {
        const int index = qMin(insert.index, items.count());
        const auto back = moved.value(insert.moveId);
        for (int i = 0; i < insert.count; ++i) {
            if (insert.isMove()) {
                items.insert(index + i, back.value(insert.offset + i));
                stack(index + i);
            } else if (parentObject()) {
                insertItem(index + i, rows->item(index + i, QGraphicsItem::parentItem()));
            }
        }
    }
    if (changes.difference() != 0)
        Q_EMIT countChanged();
}

void registerDeclarativeRepeaterTypes()
{
    registerDeclarativeType<QDeclarativeRepeater>("Repeater");
}

#include "moc_qdeclarativerepeater_p.cpp"
