#include "qdeclarativelistmodel_p.h"

#include <QtQml/QQmlInfo>

#include <private/qv4arrayobject_p.h>
#include <private/qv4engine_p.h>
#include <private/qv4scopedvalue_p.h>

static bool isRow(QQmlV4Function *arguments, int index)
{
    if (index >= arguments->length())
        return false;
    QV4::Scope scope(arguments->v4engine());
    const QV4::ScopedObject row(scope, (*arguments)[index]);
    return row && !row->as<QV4::ArrayObject>();
}

void QDeclarativeListModel::append(QQmlV4Function *arguments)
{
    if (isRow(arguments, 0))
        QQmlListModel::append(arguments);
    else
        qmlWarning(this) << tr("append: value is not an object");
}

void QDeclarativeListModel::insert(QQmlV4Function *arguments)
{
    if (isRow(arguments, 1))
        QQmlListModel::insert(arguments);
    else
        qmlWarning(this) << tr("insert: value is not an object");
}

void QDeclarativeListModel::remove(QQmlV4Function *arguments)
{
    if (arguments->length() > 0) {
        QV4::Scope scope(arguments->v4engine());
        const int index = QV4::ScopedValue(scope, (*arguments)[0])->toInt32();
        if (index < 0 || index >= count()) {
            qmlWarning(this) << tr("remove: index %1 out of range").arg(index);
            return;
        }
    }
    QQmlListModel::remove(arguments);
}

#include "moc_qdeclarativelistmodel_p.cpp"
