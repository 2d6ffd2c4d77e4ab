#include "qdeclarativekeptchanges_p.h"

/** The same changes, with moved rows as rows that go and others that come. */
static QQmlChangeSet withoutMoves(const QQmlChangeSet &changes)
{
    QQmlChangeSet plain;
    for (const auto &change : changes.removes())
        plain.remove(change.index, change.count);
    for (const auto &change : changes.inserts())
        plain.insert(change.index, change.count);
    return plain;
}

void QDeclarativeKeptChanges::add(const QQmlChangeSet &changes, bool reset)
{
    if (m_isEmpty) {
        m_changes = changes;
    } else {
        // Each change numbers its moves by itself.
        m_changes = withoutMoves(m_changes);
        m_changes.apply(withoutMoves(changes));
    }
    m_isReset = m_isReset || reset;
    m_isEmpty = false;
}

void QDeclarativeKeptChanges::clear()
{
    m_changes.clear();
    m_isReset = false;
    m_isEmpty = true;
}
