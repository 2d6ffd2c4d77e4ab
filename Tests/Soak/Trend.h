#pragma once

#include <QtCore/QVector>

/**
 * How fast a series of samples grows, as the median of the slopes between every two of them.
 *
 * A few samples that stand out do not move it, as they would move a least-squares line. lower and upper
 * enclose it with 95 % confidence, from the ranks of the slopes alone: no distribution of the samples is
 * assumed.
 */
struct Trend
{
    double slope = 0.0; ///< in units of the samples for each unit of time
    double lower = 0.0;
    double upper = 0.0;
    double level = 0.0; ///< the median of the samples

    /** Fits @p values taken at @p times, which are as many; fewer than three give no slope. */
    static Trend of(const QVector<double> &times, const QVector<double> &values);
};
