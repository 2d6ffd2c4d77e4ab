#pragma once

#include <QtCore/QSize>
#include <QtCore/QtMath>

namespace QDeclarativeRounding {

/**
 * Returns @p value rounded to a whole number as qRound() does. What is larger than any picture or screen,
 * which content may ask for, becomes the bound of 2^30 in its direction, and 0 stands for what is no number.
 */
inline int bounded(qreal value)
{
    constexpr qreal bound = 1 << 30;
    return qIsNaN(value) ? 0 : qRound(qBound(-bound, value, bound));
}

/** Returns @p value cut to a whole number as int() does, bounded likewise. */
inline int truncated(qreal value)
{
    constexpr qreal bound = 1 << 30;
    return qIsNaN(value) ? 0 : int(qBound(-bound, value, bound));
}

/** Returns @p size with both lengths bounded(). */
inline QSize bounded(const QSizeF &size)
{
    return {bounded(size.width()), bounded(size.height())};
}

} // namespace QDeclarativeRounding
