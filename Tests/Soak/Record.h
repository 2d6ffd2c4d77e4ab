#pragma once

#include "ProcessUse.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <functional>
#include <utility>

/** What a soak has measured over time, and what that says. */
class Record
{
public:
    /** Memory may grow by so much in an hour. */
    static constexpr double percentPerHour = 1.0;
    /** Memory may grow by so much at all in a run too short for a trend. */
    static constexpr double grossPercent = 25.0;

    Record();

    /** Adds what was in use @p hours after the start, when @p tips had been shown. */
    void add(double hours, const ProcessUse &use, int tips);

    /** Leaves out what was measured before @p hours: caches fill at first. */
    void forgetBefore(double hours);

    /** Prints about a dozen of the samples. */
    void printTable() const;

    /**
     * Prints each quantity with its verdict; returns whether nothing grows. Memory is judged by its trend, or
     * with @p gross by its first and last sample; everything else may not be higher in the second half than
     * it was in the first.
     */
    bool judge(bool gross) const;

private:
    struct Sample
    {
        double hours;
        ProcessUse use;
        int tips;
    };

    QVector<double> times() const;
    bool judgeMemory(const char *name, double ProcessUse::*member, bool gross) const;
    bool judgeCount(const char *name, int ProcessUse::*member) const;
    std::pair<int, int> highestInHalves(const std::function<int(const ProcessUse &)> &count) const;
    void printWhatGrew() const;

    QVector<Sample> m_samples;
};
