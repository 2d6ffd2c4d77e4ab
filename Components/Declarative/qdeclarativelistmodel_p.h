#pragma once

#include <private/qqmllistmodel_p.h>

/**
 * The ListModel of QML 1, whose functions take one row at a time.
 *
 * Storage, roles and nested lists are those of Qt's own list model; append() and insert() refuse a list of
 * rows, and remove() takes one index. Each tells so with a message and changes nothing.
 */
class QDeclarativeListModel : public QQmlListModel
{
    Q_OBJECT

public:
    using QQmlListModel::QQmlListModel;

    Q_INVOKABLE void append(QQmlV4Function *);
    Q_INVOKABLE void insert(QQmlV4Function *);
    Q_INVOKABLE void remove(QQmlV4Function *);
};
