#include "qdeclarativelistmodelagent_p.h"

QDeclarativeListModelAgent::QDeclarativeListModelAgent(QDeclarativeListModel *model)
    : model(model)
    , rows(model->toList())
    , ids(model->ids())
{
}

QDeclarativeListModelAgent::~QDeclarativeListModelAgent() = default;

void QDeclarativeListModelAgent::addref()
{
    isTaken = true;
    references.ref();
}

void QDeclarativeListModelAgent::release()
{
    if (!references.deref())
        deleteLater();
}

QDeclarativeListModel *QDeclarativeListModelAgent::copy()
{
    if (!list) {
        list = std::make_unique<QDeclarativeListModel>();
        list->assign(rows, ids);
    }
    return list.get();
}

int QDeclarativeListModelAgent::count()
{
    return copy()->count();
}

void QDeclarativeListModelAgent::clear()
{
    copy()->clear();
}

void QDeclarativeListModelAgent::remove(int index)
{
    copy()->remove(index);
}

void QDeclarativeListModelAgent::append(const QJSValue &value)
{
    copy()->append(value);
}

void QDeclarativeListModelAgent::insert(int index, const QJSValue &value)
{
    copy()->insert(index, value);
}

QVariant QDeclarativeListModelAgent::get(int index)
{
    return copy()->get(index);
}

void QDeclarativeListModelAgent::set(int index, const QJSValue &value)
{
    copy()->set(index, value);
}

void QDeclarativeListModelAgent::setProperty(int index, const QString &property, const QVariant &value)
{
    copy()->setProperty(index, property, value);
}

void QDeclarativeListModelAgent::move(int from, int to, int count)
{
    copy()->move(from, to, count);
}

void QDeclarativeListModelAgent::sync()
{
    // Held until the GUI thread has been here, whatever the worker's garbage collector does.
    addref();
    QMetaObject::invokeMethod(
        this,
        [this, rows = copy()->toList(), ids = copy()->ids()] {
            if (model)
                model->assign(rows, ids);
            release();
        },
        Qt::QueuedConnection);
}

#include "moc_qdeclarativelistmodelagent_p.cpp"
