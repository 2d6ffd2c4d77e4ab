#pragma once

#include <private/qqmlchangeset_p.h>

/**
 * What became of a model's rows while the element that shows them was at work, as one change.
 *
 * Until it is applied the element's numbers of the rows are not the model's, so that nothing is to be got
 * from the model by its number.
 */
class QDeclarativeKeptChanges
{
public:
    bool isEmpty() const { return m_isEmpty; }
    void add(const QQmlChangeSet &, bool reset);
    void clear();

    const QQmlChangeSet &changes() const { return m_changes; }
    bool isReset() const { return m_isReset; }

private:
    QQmlChangeSet m_changes;
    bool m_isReset = false;
    bool m_isEmpty = true;
};
