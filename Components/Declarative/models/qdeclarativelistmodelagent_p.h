#pragma once

#include "qdeclarativelistmodel_p.h"

#include <QtCore/QAtomicInt>
#include <QtCore/QPointer>

/**
 * What a worker script gets to see of a ListModel that was sent to it: a copy, with the model's functions.
 *
 * Changes reach the model with sync(). Made on the GUI thread, used on the worker's; the last release()
 * destroys it.
 */
class QDeclarativeListModelAgent : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int count READ count)

public:
    explicit QDeclarativeListModelAgent(QDeclarativeListModel *model);
    ~QDeclarativeListModelAgent() override;

    /** Whether anyone ever took it, and so will let it go; it belongs to the model until then. */
    bool wasReferenced() const { return isTaken; }

    Q_INVOKABLE void addref();
    Q_INVOKABLE void release();

    int count();
    Q_INVOKABLE void clear();
    Q_INVOKABLE void remove(int index);
    Q_INVOKABLE void append(const QJSValue &);
    Q_INVOKABLE void insert(int index, const QJSValue &);
    Q_INVOKABLE QVariant get(int index);
    Q_INVOKABLE void set(int index, const QJSValue &);
    Q_INVOKABLE void setProperty(int index, const QString &property, const QVariant &value);
    Q_INVOKABLE void move(int from, int to, int count);

    /** Brings the model to the state of the copy, at the GUI thread's next chance; the worker goes on. */
    Q_INVOKABLE void sync();

private:
    QDeclarativeListModel *copy();

    const QPointer<QDeclarativeListModel> model; ///< used on the GUI thread only
    const QVariantList rows;
    const QVector<quint64> ids;
    std::unique_ptr<QDeclarativeListModel> list; ///< made by the worker, so that nested lists are its too
    QAtomicInt references;
    bool isTaken = false;
};
