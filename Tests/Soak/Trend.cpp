#include "Trend.h"

#include <algorithm>
#include <cmath>

namespace {

double median(const QVector<double> &sorted)
{
    const int count = sorted.size();
    if (count == 0)
        return 0.0;
    return count % 2 ? sorted.at(count / 2) : (sorted.at(count / 2 - 1) + sorted.at(count / 2)) / 2.0;
}

QVector<double> sortedSlopes(const QVector<double> &times, const QVector<double> &values)
{
    QVector<double> slopes;
    for (int first = 0; first < values.size(); ++first) {
        for (int second = first + 1; second < values.size(); ++second) {
            const double elapsed = times.at(second) - times.at(first);
            if (elapsed > 0.0)
                slopes.append((values.at(second) - values.at(first)) / elapsed);
        }
    }
    std::sort(slopes.begin(), slopes.end());
    return slopes;
}

} // namespace

Trend Trend::of(const QVector<double> &times, const QVector<double> &values)
{
    Trend trend;
    QVector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    trend.level = median(sorted);
    const QVector<double> slopes = sortedSlopes(times, values);
    if (values.size() < 3 || slopes.isEmpty())
        return trend;
    trend.slope = median(slopes);
    // Kendall's statistic of n samples without a trend has this variance.
    const double n = values.size();
    const double spread = 1.96 * std::sqrt(n * (n - 1.0) * (2.0 * n + 5.0) / 18.0);
    const int last = slopes.size() - 1;
    const int below = int(std::floor((slopes.size() - spread) / 2.0));
    const int above = int(std::ceil((slopes.size() + spread) / 2.0));
    trend.lower = slopes.at(std::clamp(below, 0, last));
    trend.upper = slopes.at(std::clamp(above, 0, last));
    return trend;
}
