#pragma once

#include <QtCore/QStringList>

#include <functional>

class Findings;
struct ClipFacts;

/** Opens every clip and says which are damaged, too long or too large, and what of them is not shown as it is
 * meant. */
class ClipCheck
{
public:
    static constexpr double bytesPerMegabyte = 1024.0 * 1024.0;
    /** Pixels: what is as high and names no colours is meant as HD. */
    static constexpr int leastHdHeight = 720;

    /** Returns @p bytes as authors read them. */
    static QString megabytes(qint64 bytes);

    /** A clip may take @p budget bytes of memory and last @p longest seconds. */
    ClipCheck(qint64 budget, double longest)
        : m_budget(budget)
        , m_longest(longest)
    {
    }

    void run(const QStringList &clips, Findings &findings, const std::function<void(int, int)> &progress);

private:
    void check(const QString &path, Findings &findings) const;
    void checkSize(const QString &path, const ClipFacts &facts, Findings &findings) const;
    void checkStream(const QString &path, const ClipFacts &facts, Findings &findings) const;

    qint64 m_budget;
    double m_longest;
};
