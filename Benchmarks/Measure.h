#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <algorithm>
#include <cstdio>

/**
 * Times two pieces of work in turn and prints how the first compares with the second.
 *
 * The ratio is taken pair by pair, so that a machine whose speed drifts does not favour either; the row shows
 * its median, with the extremes, and the median times in milliseconds. @p tidy runs after each piece,
 * untimed.
 */
template <typename Work, typename Reference, typename Tidy>
double compare(const char *what, int pairs, double goal, Work work, Reference reference, Tidy tidy)
{
    const auto time = [&tidy](auto &piece) {
        QElapsedTimer timer;
        timer.start();
        piece();
        const double milliseconds = timer.nsecsElapsed() / 1e6;
        tidy();
        return milliseconds;
    };
    time(work);
    time(reference);
    QVector<double> ours, theirs, ratios;
    for (int i = 0; i < pairs; ++i) {
        ours << time(work);
        theirs << time(reference);
        ratios << ours.constLast() / theirs.constLast();
    }
    for (QVector<double> *values : {&ours, &theirs, &ratios})
        std::sort(values->begin(), values->end());
    const double median = ratios.at(pairs / 2);
    std::printf("%-44s %9.3f ms  against %9.3f ms  ratio %5.2f (%.2f to %.2f)  goal %.2f %s\n", what,
                ours.at(pairs / 2), theirs.at(pairs / 2), median, ratios.constFirst(), ratios.constLast(),
                goal, median <= goal ? "met" : "MISSED");
    std::fflush(stdout);
    return median;
}

template <typename Work, typename Reference>
double compare(const char *what, int pairs, double goal, Work work, Reference reference)
{
    return compare(what, pairs, goal, work, reference, [] {});
}
