#pragma once

#include "qdeclarativelistmodel_p.h"

/**
 * What ListModel.get() returns: an object whose properties are the roles of one row.
 *
 * It follows the row when that moves and reads as it is at the time. Writing changes the model, also under a
 * name that was no role before, but the model's views are not told.
 */
class QDeclarativeListRow : public QObject
{
    Q_OBJECT

public:
    /** The model owns it, and calls detach() before @p row goes. */
    QDeclarativeListRow(QDeclarativeListModel *model, QDeclarativeListModel::Row *row);

    /** From here on all is undefined, and writing does nothing. */
    void detach() { row = nullptr; }

    /** Returns what the row has, nested lists as lists of maps. */
    QVariantMap values() const;

    /** Returns a role's value, invalid where the row does not have it. */
    QVariant value(const QString &role) const;
    void setValue(const QString &role, const QVariant &);

private:
    QDeclarativeListModel *const model;
    QDeclarativeListModel::Row *row;
};
