#include "Record.h"

#include "Trend.h"

#include <algorithm>
#include <cstdio>

namespace {

const char *verdict(bool isSteady)
{
    return isSteady ? "steady" : "GROWS";
}

} // namespace

Record::Record()
{
    // Samples of an hour and more, so that the record does not itself grow.
    m_samples.reserve(1000);
}

void Record::add(double hours, const ProcessUse &use, int tips)
{
    m_samples.append({hours, use, tips});
}

void Record::forgetBefore(double hours)
{
    const auto isEarly = [hours](const Sample &sample) { return sample.hours < hours; };
    m_samples.erase(std::remove_if(m_samples.begin(), m_samples.end(), isEarly), m_samples.end());
}

void Record::printTable() const
{
    std::printf("%8s %8s %10s %12s %8s %8s %8s %8s %8s\n", "minutes", "tips", "heap/MiB", "resident/MiB",
                "threads", "handles", "windows", "pixmaps", "others");
    const int step = std::max(1, m_samples.size() / 12);
    for (int i = 0; i < m_samples.size(); i += step) {
        const Sample &sample = m_samples.at(i);
        const ProcessUse &use = sample.use;
        std::printf("%8.1f %8d %10.3f %12.2f %8d %8d %8d %8d %8d\n", sample.hours * 60.0, sample.tips,
                    use.heap, use.resident, use.threads, use.handles, use.windows, use.pixmaps,
                    use.otherResources);
    }
}

bool Record::judge(bool gross) const
{
    bool isSteady = m_samples.size() >= 3;
    if (!isSteady)
        std::printf("only %d samples\n", int(m_samples.size()));
    isSteady &= judgeMemory("heap in use", &ProcessUse::heap, gross);
    isSteady &= judgeMemory("resident memory", &ProcessUse::resident, gross);
    isSteady &= judgeCount("threads", &ProcessUse::threads);
    isSteady &= judgeCount("file handles", &ProcessUse::handles);
    isSteady &= judgeCount("windows", &ProcessUse::windows);
    isSteady &= judgeCount("pixmaps", &ProcessUse::pixmaps);
    isSteady &= judgeCount("other X resources", &ProcessUse::otherResources);
    printWhatGrew();
    return isSteady;
}

void Record::printWhatGrew() const
{
    const QVector<QByteArray> &types = ProcessUse::resourceTypes();
    for (int type = 0; type < types.size(); ++type) {
        const auto countOf = [type](const ProcessUse &use) { return use.resources.at(std::size_t(type)); };
        const auto [first, second] = highestInHalves(countOf);
        if (second > first)
            std::printf("  X resource %s: %d, then %d\n", types.at(type).constData(), first, second);
    }
}

std::pair<int, int> Record::highestInHalves(const std::function<int(const ProcessUse &)> &count) const
{
    std::pair<int, int> highest;
    for (int i = 0; i < m_samples.size(); ++i) {
        int &half = i < (m_samples.size() + 1) / 2 ? highest.first : highest.second;
        half = std::max(half, count(m_samples.at(i).use));
    }
    return highest;
}

QVector<double> Record::times() const
{
    QVector<double> times;
    for (const Sample &sample : m_samples)
        times.append(sample.hours);
    return times;
}

bool Record::judgeMemory(const char *name, double ProcessUse::*member, bool gross) const
{
    QVector<double> values;
    for (const Sample &sample : m_samples)
        values.append(sample.use.*member);
    if (values.isEmpty())
        return false;
    if (gross) {
        const double growth = values.last() - values.first();
        const bool isSteady = growth <= values.first() * grossPercent / 100.0;
        std::printf("%-18s %8.2f MiB, %+.2f MiB in all: %s\n", name, values.last(), growth,
                    verdict(isSteady));
        return isSteady;
    }
    const Trend trend = Trend::of(times(), values);
    const double whole = std::max(trend.level, 1.0) / 100.0;
    const bool isSteady = trend.slope / whole < percentPerHour;
    const bool isUnsure = !isSteady && trend.lower / whole < percentPerHour;
    std::printf("%-18s %8.2f MiB, %+.2f %% an hour (95 %% sure: %+.2f to %+.2f): %s\n", name, trend.level,
                trend.slope / whole, trend.lower / whole, trend.upper / whole,
                isUnsure ? "UNSURE, run it for longer" : verdict(isSteady));
    return isSteady;
}

bool Record::judgeCount(const char *name, int ProcessUse::*member) const
{
    const auto [first, second] = highestInHalves([member](const ProcessUse &use) { return use.*member; });
    const bool isSteady = second <= first;
    std::printf("%-18s at most %d in the first half, %d in the second: %s\n", name, first, second,
                verdict(isSteady));
    return isSteady;
}
