#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <algorithm>
#include <cstdio>
#include <ctime>

/** Returns the seconds of processor time that the process took so far, in all its threads. */
inline double processSeconds()
{
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

/**
 * Takes two measurements in turn and prints how the first compares with the second; returns the ratio.
 *
 * The ratio is taken pair by pair, so that a machine whose speed drifts does not favour either; the row shows
 * its median, with the extremes, and the medians in @p unit. The first pair warms up and does not count.
 */
template <typename Measure, typename Reference>
double compareMeasured(const char *what, const char *unit, int pairs, double goal, Measure measure,
                       Reference reference)
{
    measure();
    reference();
    QVector<double> ours, theirs, ratios;
    for (int i = 0; i < pairs; ++i) {
        ours << measure();
        theirs << reference();
        ratios << ours.constLast() / theirs.constLast();
    }
    for (QVector<double> *values : {&ours, &theirs, &ratios})
        std::sort(values->begin(), values->end());
    const double median = ratios.value(pairs / 2);
    std::printf("%-44s %9.3f %s  against %9.3f %s  ratio %5.2f (%.2f to %.2f)  goal %.2f %s\n", what,
                ours.value(pairs / 2), unit, theirs.value(pairs / 2), unit, median, ratios.constFirst(),
                ratios.constLast(), goal, median <= goal ? "met" : "MISSED");
    std::fflush(stdout);
    return median;
}

/** Compares the times that two pieces of work take, in milliseconds; @p tidy runs after each, untimed. */
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
    return compareMeasured(
        what, "ms", pairs, goal, [&] { return time(work); }, [&] { return time(reference); });
}

template <typename Work, typename Reference>
double compare(const char *what, int pairs, double goal, Work work, Reference reference)
{
    return compare(what, pairs, goal, work, reference, [] {});
}
