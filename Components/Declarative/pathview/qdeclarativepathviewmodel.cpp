#include "qdeclarativepathview_p_p.h"

#include "models/qdeclarativevisualmodel_p.h"

#include <QtCore/QHash>

#include <utility>

namespace {

/** Follows the rows, the current one and the offset through changes of the model. */
struct RowChanges
{
    using Row = QDeclarativePathViewPrivate::Row;
    using Key = QPair<int, int>; ///< of a row that is being moved: its move, and where in it

    explicit RowChanges(const QDeclarativePathViewPrivate &view)
        : rows(view.rows)
        , current(view.currentIndex)
        , count(view.rowCount)
        , offset(view.offset)
        , hasCurrent(view.currentIndex < view.rowCount)
    {
    }

    void remove(const QQmlChangeSet::Change &);
    void insert(const QQmlChangeSet::Change &);

    std::vector<Row> rows;
    std::vector<Row> gone;
    QHash<Key, Row> lifted;
    Key liftedCurrent = {-1, 0};
    int current;
    int count;
    qreal offset;
    bool hasCurrent;
    bool hasLostCurrent = false;
};

void RowChanges::remove(const QQmlChangeSet::Change &change)
{
    const int end = change.index + change.count;
    std::vector<Row> left;
    for (Row row : rows) {
        if (row.index >= change.index && row.index < end) {
            if (change.isMove())
                lifted.insert({change.moveId, change.offset + row.index - change.index}, row);
            else
                gone.push_back(row);
            continue;
        }
        if (row.index >= end)
            row.index -= change.count;
        left.push_back(row);
    }
    rows.swap(left);
    if (!change.isMove() && change.index > current && offset >= change.count)
        offset -= change.count;
    if (current >= end) {
        current -= change.count;
    } else if (current >= change.index) {
        if (hasCurrent && change.isMove())
            liftedCurrent = {change.moveId, change.offset + current - change.index};
        else
            hasLostCurrent = true;
        hasCurrent = false;
        current = change.index;
    }
    count -= change.count;
}

void RowChanges::insert(const QQmlChangeSet::Change &change)
{
    for (Row &row : rows) {
        if (row.index >= change.index)
            row.index += change.count;
    }
    // The rows on the path stay where they are.
    if (!change.isMove() && change.index > current && offset > 0)
        offset += change.count;
    if (hasCurrent && current >= change.index)
        current += change.count;
    if (change.isMove()) {
        for (int i = 0; i < change.count; ++i) {
            const Key key(change.moveId, change.offset + i);
            const auto row = lifted.constFind(key);
            if (row != lifted.constEnd())
                rows.push_back({row->item, row->attached, change.index + i});
            if (key == liftedCurrent) {
                current = change.index + i;
                hasCurrent = true;
            }
        }
    }
    count += change.count;
}

} // namespace

void QDeclarativePathViewPrivate::setRowCount(int count)
{
    if (count == rowCount)
        return;
    rowCount = count;
    Q_EMIT q_func()->countChanged();
}

/** Takes the rows as they now are, of which nothing was known before. */
void QDeclarativePathViewPrivate::reload()
{
    const QDeclarativeWork::Scope scope(&work);
    keptChanges.clear();
    stop();
    const int rowsNow = visualModel->count();
    setRowCount(rowsNow);
    if (rowsNow > 0)
        changeCurrent(qBound(0, currentIndex, rowsNow - 1));
    keepCurrent();
    layOut();
}

/** Brings the current row to where a strict range wants it, at once. */
void QDeclarativePathViewPrivate::keepCurrent()
{
    if (!componentIsComplete || rowCount <= 0)
        return;
    // The offset that the rows were declared with stands until there is a current row other than the first.
    const bool stands = !hadRows && currentIndex == 0;
    hadRows = true;
    if (isStrict() && !isPressed && !stands)
        moveTo(rowCount - currentIndex);
    else
        moveTo(offset);
}

/** Takes over what the model did to its rows; those that stay keep their items and, on the whole, their
 * places. */
void QDeclarativePathViewPrivate::rowsChanged(const QQmlChangeSet &changes, bool reset)
{
    if (!componentIsComplete)
        return;
    if (work.isInHand()) {
        if (keptChanges.isEmpty())
            work.postponeFirst([this] { applyKeptChanges(); });
        keptChanges.add(changes, reset);
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    if (reset) {
        clear();
        reload();
    } else if (!changes.removes().isEmpty() || !changes.inserts().isEmpty()) {
        applyChanges(changes);
    }
}

void QDeclarativePathViewPrivate::applyKeptChanges()
{
    const QDeclarativeKeptChanges kept = std::exchange(keptChanges, {});
    if (!kept.isEmpty())
        rowsChanged(kept.changes(), kept.isReset());
}

/** Says that something has changed, once the view is done with what it is about. */
void QDeclarativePathViewPrivate::announce(void (QDeclarativePathView::*signal)())
{
    Q_Q(QDeclarativePathView);
    if (!work.postpone([q, signal] { Q_EMIT(q->*signal)(); }))
        Q_EMIT(q->*signal)();
}

/** Shows nothing, until the next change from outside. */
void QDeclarativePathViewPrivate::dropRows()
{
    const QDeclarativeWork::Scope scope(&work);
    keptChanges.clear();
    clear();
    rowCount = visualModel->count();
}

void QDeclarativePathViewPrivate::applyChanges(const QQmlChangeSet &changes)
{
    stop();
    RowChanges done(*this);
    for (const auto &change : changes.removes())
        done.remove(change);
    for (const auto &change : changes.inserts())
        done.insert(change);
    rows.swap(done.rows);
    releaseRows(done.gone);
    const bool hadNone = rowCount <= 0;
    // A strict range holds for the row that becomes the current one, not for one that rows come or go before.
    const bool hasNewCurrent = currentIndex >= rowCount || (done.hasLostCurrent && isStrict() && !isPressed);
    setRowCount(done.count);
    changeCurrent(hadNone ? currentIndex : qBound(0, done.current, qMax(0, done.count - 1)));
    updateCurrentItem();
    if (hasNewCurrent)
        keepCurrent();
    else
        moveTo(done.count > 0 ? done.offset : 0);
    layOut();
}
