#pragma once

#include "TrialPlan.h"
#include "findings/Finding.h"

#include <QtCore/QMap>
#include <QtCore/QSet>

#include <tuple>

class QJsonObject;

/** Collects what is wrong with tips that were shown; what is wrong in many at the same place is one finding.
 */
class TrialFindings
{
public:
    /** Adds @p finding, which the tip @p tip has; it is the @p number th that is shown. */
    void add(const Finding &finding, const TrialTip &tip, int number);

    /** Adds everything that is not in @p findings by another check. */
    void addTo(Findings &findings) const;

    /** Returns @p finding as workers write it. */
    static QJsonObject toJson(const Finding &finding);

    /** Returns what a worker has written. */
    static Finding fromJson(const QJsonObject &object);

private:
    using Place = std::tuple<QString, QString, int, int>; ///< Code, file, line, column.

    struct Found
    {
        Finding finding;
        TrialTip tip;
        int number = 0;
        QSet<QString> keys;
    };

    static bool isKnown(const Finding &finding, const Findings &findings);
    static QString message(const Found &found);

    QMap<Place, Found> m_found;
};
