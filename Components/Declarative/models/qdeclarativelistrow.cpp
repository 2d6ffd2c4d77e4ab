#include "qdeclarativelistrow_p.h"

#include <private/qqmlopenmetaobject_p.h>

namespace {

/** Gives a row's object properties of any name, read from and written to the row. */
class RowMetaObject : public QQmlOpenMetaObject
{
public:
    RowMetaObject(QDeclarativeListRow *row, const QVector<QByteArray> &roles)
        : QQmlOpenMetaObject(row)
        , row(row)
    {
        type()->createProperties(roles);
    }

protected:
    int metaCall(QObject *object, QMetaObject::Call call, int id, void **arguments) override
    {
        const int own = id - type()->propertyOffset();
        if (own < 0 || (call != QMetaObject::ReadProperty && call != QMetaObject::WriteProperty))
            return QQmlOpenMetaObject::metaCall(object, call, id, arguments);
        auto &value = *static_cast<QVariant *>(arguments[0]);
        const QString role = QString::fromUtf8(name(own));
        if (call == QMetaObject::ReadProperty)
            value = row->value(role);
        else
            row->setValue(role, value);
        return -1;
    }

private:
    QDeclarativeListRow *const row;
};

} // namespace

QDeclarativeListRow::QDeclarativeListRow(QDeclarativeListModel *model, QDeclarativeListModel::Row *row)
    : model(model)
    , row(row)
{
    // The object deletes its metaobject.
    new RowMetaObject(this, model->roles);
}

QVariantMap QDeclarativeListRow::values() const
{
    return row ? model->valuesOf(*row) : QVariantMap();
}

QVariant QDeclarativeListRow::value(const QString &role) const
{
    return row ? model->valueOf(*row, role) : QVariant();
}

void QDeclarativeListRow::setValue(const QString &role, const QVariant &value)
{
    if (row)
        model->writeSilently(*row, role, value);
}

#include "moc_qdeclarativelistrow_p.cpp"
