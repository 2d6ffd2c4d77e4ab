#include "qdeclarativerepeater_p.h"

#include "item/qdeclarativeitem_p.h"
#include "models/qdeclarativevisualmodel_p.h"

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlInfo>

#include <utility>

// While items are made; beyond what any model has that its own items change.
static const int mostChanges = 2000;

QDeclarativeRepeater::QDeclarativeRepeater(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , rows(new QDeclarativeVisualModel(this))
{
    work.setElement(this);
    // The rows count from when there is a model; items are made when the repeater is complete.
    rows->componentComplete();
    connect(rows, &QDeclarativeVisualModel::modelUpdated, this, &QDeclarativeRepeater::updateItems);
    connect(rows, &QDeclarativeVisualModel::itemsReturned, this, &QDeclarativeRepeater::restack);
}

QDeclarativeRepeater::~QDeclarativeRepeater()
{
    work.close();
    delete rows;
}

QVariant QDeclarativeRepeater::model() const
{
    return rows->model();
}

void QDeclarativeRepeater::setModel(const QVariant &model)
{
    if (work.postponeSetting("model", [=] { setModel(model); }) || model == rows->model())
        return;
    const QDeclarativeWork::Scope scope(&work);
    clear();
    if (!rows->setModel(model))
        return;
    regenerate();
    // A model that gives items by itself has rows when it is complete.
    if (isComponentComplete() || !qobject_cast<QQmlInstanceModel *>(model.value<QObject *>()))
        announce(&QDeclarativeRepeater::countChanged);
    announce(&QDeclarativeRepeater::modelChanged);
}

QQmlComponent *QDeclarativeRepeater::delegate() const
{
    return rows->delegate();
}

void QDeclarativeRepeater::setDelegate(QQmlComponent *delegate)
{
    const QPointer<QQmlComponent> guard(delegate);
    if (work.postponeSetting("delegate", [=] { setDelegate(guard); }) || delegate == rows->delegate())
        return;
    const QDeclarativeWork::Scope scope(&work);
    clear();
    rows->setDelegate(delegate);
    regenerate();
    announce(&QDeclarativeRepeater::delegateChanged);
}

int QDeclarativeRepeater::count() const
{
    return rows->statedCount();
}

QDeclarativeItem *QDeclarativeRepeater::itemAt(int index) const
{
    return qobject_cast<QDeclarativeItem *>(items.value(index).item.data());
}

void QDeclarativeRepeater::componentComplete()
{
    // First, so that the rows that it finds are not news.
    rows->componentComplete();
    QDeclarativeItem::componentComplete();
    if (qobject_cast<QQmlInstanceModel *>(rows->model().value<QObject *>()) && rows->count())
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

void QDeclarativeRepeater::announce(void (QDeclarativeRepeater::*signal)())
{
    work.postpone([this, signal] { Q_EMIT(this->*signal)(); });
}

void QDeclarativeRepeater::clear()
{
    while (!items.isEmpty()) {
        const QPointer<QGraphicsObject> item = items.takeLast().item;
        auto *reported = qobject_cast<QDeclarativeItem *>(item.data());
        if (reported)
            Q_EMIT itemRemoved(items.count() - 1, reported);
        rows->releaseItem(item);
    }
}

void QDeclarativeRepeater::regenerate()
{
    if (!isComponentComplete() || work.postponeSetting("parent", [this] { regenerate(); }))
        return;
    const QDeclarativeWork::Scope scope(&work);
    makeAnew();
}

void QDeclarativeRepeater::makeAnew()
{
    clear();
    keptChanges.clear();
    if (!parentObject())
        return;
    items.resize(rows->count());
    makeMissing();
}

/** Makes the items that rows still lack, and follows what doing so makes of the rows. */
void QDeclarativeRepeater::makeMissing()
{
    int changes = 0;
    for (int index = 0; index < items.count() && parentObject(); ++index) {
        if (items.at(index).isMade)
            continue;
        makeItem(index);
        if (keptChanges.isEmpty())
            continue;
        if (++changes > mostChanges) {
            qmlWarning(this) << tr("The model is changed by each of its items");
            keptChanges.clear();
            clear();
            return;
        }
        applyKeptChanges();
        index = -1;
    }
}

QGraphicsObject *QDeclarativeRepeater::makeRow(int index)
{
    work.countItem();
    QGraphicsObject *const item = rows->item(index, QGraphicsItem::parentItem());
    // A host that looks for it as an object finds it too. What views share goes with none of them.
    if (item && rows->ownsItems())
        item->setParent(parentObject());
    return item;
}

void QDeclarativeRepeater::makeItem(int index)
{
    items[index].isMade = true;
    QGraphicsObject *item = makeRow(index);
    items[index].item = item;
    stack(index);
    if (auto *added = qobject_cast<QDeclarativeItem *>(item))
        Q_EMIT itemAdded(index, added);
}

void QDeclarativeRepeater::stack(int index)
{
    QGraphicsObject *const item = items.at(index).item;
    if (!item || item->parentItem() != QGraphicsItem::parentItem())
        return;
    QGraphicsItem *above = this;
    for (int i = index + 1; i < items.count() && items.at(i).isMade; ++i) {
        if (items.at(i).item) {
            above = items.at(i).item;
            break;
        }
    }
    QDeclarativeItemPrivate::stackBefore(item, above);
}

void QDeclarativeRepeater::restack()
{
    const auto place = [](QGraphicsItem *item) { return QGraphicsItemPrivate::get(item)->siblingIndex; };
    QGraphicsItem *above = this;
    for (int i = items.count() - 1; i >= 0; --i) {
        QGraphicsObject *const item = items.at(i).item;
        if (!item || item->parentItem() != QGraphicsItem::parentItem())
            continue;
        if (place(item) > place(above))
            QDeclarativeItemPrivate::stackBefore(item, above);
        above = item;
    }
}

void QDeclarativeRepeater::updateItems(const QQmlChangeSet &changes, bool reset)
{
    if (!isComponentComplete())
        return;
    if (work.isInHand()) {
        keptChanges.add(changes, reset);
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    applyChanges(changes, reset);
    while (!keptChanges.isEmpty())
        applyKeptChanges();
    makeMissing();
    if (changes.difference() != 0)
        announce(&QDeclarativeRepeater::countChanged);
}

void QDeclarativeRepeater::applyKeptChanges()
{
    const QDeclarativeKeptChanges kept = std::exchange(keptChanges, {});
    applyChanges(kept.changes(), kept.isReset());
}

void QDeclarativeRepeater::applyChanges(const QQmlChangeSet &changes, bool reset)
{
    if (reset || !parentObject()) {
        clear();
        keptChanges.clear();
        items.resize(parentObject() ? rows->count() : 0);
        return;
    }
    const MovedItems moved = removeRows(changes);
    insertRows(changes, moved);
    if (!moved.isEmpty())
        restack();
}

QDeclarativeRepeater::MovedItems QDeclarativeRepeater::removeRows(const QQmlChangeSet &changes)
{
    MovedItems moved;
    for (const QQmlChangeSet::Change &remove : changes.removes()) {
        const int index = qMin(remove.index, items.count());
        const int count = qMin(remove.count, items.count() - index);
        for (int i = 0; i < count; ++i) {
            if (remove.isMove()) {
                moved.insert({remove.moveId, remove.offset + i}, items.takeAt(index));
                continue;
            }
            const QPointer<QGraphicsObject> item = items.at(index).item;
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
            const Item item = insert.isMove() ? moved.value({insert.moveId, insert.offset + i}) : Item();
            items.insert(qMin(insert.index + i, items.count()), item);
        }
    }
}

#include "moc_qdeclarativerepeater_p.cpp"
