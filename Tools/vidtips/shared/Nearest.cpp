#include "Nearest.h"

#include <QtCore/QVector>

#include <algorithm>
#include <numeric>

namespace {

constexpr int leastSlips = 2;
constexpr int lettersPerSlip = 3;

int editDistance(const QString &from, const QString &to)
{
    QVector<int> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar character : from) {
        int diagonal = row[0]++;
        for (int j = 0; j < to.size(); ++j) {
            const int substituted = diagonal + (character == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({substituted, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.last();
}

} // namespace

QString Nearest::to(const QString &name, const QStringList &names)
{
    QString best;
    // A long name may have more slips in it and still be the same; a short one is soon another.
    int least = std::max(leastSlips, name.size() / lettersPerSlip) + 1;
    for (const QString &candidate : names) {
        const int distance = editDistance(name.toLower(), candidate.toLower());
        if (distance < least && 2 * distance <= std::max(name.size(), candidate.size())) {
            least = distance;
            best = candidate;
        }
    }
    return best;
}
