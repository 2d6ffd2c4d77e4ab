#pragma once

#include <QtCore/QtGlobal>

/**
 * Stands for the making of a delegate's item, while it lasts.
 *
 * The engine bounds how deep components make each other, but not delegates: one that shows itself would go on
 * until the stack ends. Where they are nested deeper than anything sensible, nothing more is made until the
 * outermost is complete: each level may make several of the next, and to stop one branch alone would leave
 * the others.
 */
class QDeclarativeNesting
{
public:
    QDeclarativeNesting();
    ~QDeclarativeNesting();
    Q_DISABLE_COPY(QDeclarativeNesting)

    /** Whether nothing is to be made here. */
    bool isRefused() const { return m_isRefused; }
    /** Whether this is the first that is refused: the one to report. */
    bool isFirstRefused() const { return m_isFirst; }

private:
    bool m_isRefused = false;
    bool m_isFirst = false;
};
