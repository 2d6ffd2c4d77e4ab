// What a host pays for tips before the first one is shown, and what it holds after many.

#include "Measure.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QStringList>

#include <functional>

namespace {

using Environment = QProcessEnvironment;

/** The two numbers of each line that a host wrote. */
using Lines = QVector<QPair<double, double>>;

Lines linesOf(const QString &program, const QStringList &arguments, const Environment &environment)
{
    QProcess host;
    host.setProcessEnvironment(environment);
    host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    host.start(program, arguments);
    if (!host.waitForFinished(-1) || host.exitStatus() != QProcess::NormalExit)
        qFatal("%s failed", qPrintable(program));
    Lines numbers;
    const QStringList lines =
        QString::fromLatin1(host.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines)
        numbers.append({line.section(QLatin1Char(' '), 0, 0).toDouble(),
                        line.section(QLatin1Char(' '), 1, 1).toDouble()});
    return numbers;
}

/** What a host told of itself: processor time in milliseconds, and resident memory in MiB. */
struct Use
{
    double milliseconds;
    double mebibytes;
};

QVector<Use> run(const QString &program, const QStringList &arguments = {})
{
    QVector<Use> uses;
    const Lines lines = linesOf(program, arguments, Environment::systemEnvironment());
    for (const auto &line : lines)
        uses.append({line.first, line.second / 1024});
    return uses;
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.value(values.size() / 2);
}

/** The first show after an idle second, and the longest piece of what was prepared in that; before each run,
 * @p prepare. */
void measureFirst(
    const char *what, const QString &tips, const Environment &environment,
    const std::function<void()> &prepare = [] {})
{
    constexpr double frame = 16.7;
    constexpr double piece = 5;
    QVector<double> shows, pieces;
    for (int i = 0; i < 11; ++i) {
        prepare();
        const auto numbers = linesOf(tips, {QStringLiteral("draw.line")}, environment).last();
        shows.append(numbers.first);
        pieces.append(numbers.second);
    }
    const auto [fastest, slowest] = std::minmax_element(shows.cbegin(), shows.cend());
    std::printf("%-44s %9.3f ms (%.3f to %.3f)  goal %.1f %s\n", what, median(shows), *fastest, *slowest,
                frame, median(shows) <= frame ? "met" : "MISSED");
    const double longest = *std::max_element(pieces.cbegin(), pieces.cend());
    std::printf("%-44s %9.3f ms  goal %.1f %s\n", "  longest piece of what was prepared", longest, piece,
                longest <= piece ? "met" : "MISSED");
    std::fflush(stdout);
}

void measureFirsts(const QString &tips)
{
    Environment environment = Environment::systemEnvironment();
    measureFirst("first show, its QML in Qt's cache", tips, environment);
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    QDir cache(caches + QLatin1Char('/') + QFileInfo(tips).fileName() + QStringLiteral("/qmlcache"));
    measureFirst("first show, Qt's cache empty before", tips, environment,
                 [&] { cache.removeRecursively(); });
    environment.insert(QStringLiteral("QML_DISABLE_DISK_CACHE"), QStringLiteral("1"));
    measureFirst("first show, Qt's cache switched off", tips, environment);
}

void measureStart(const QString &plain, const QString &tips)
{
    compareMeasured(
        "start of a small host, processor time", "ms", 21, 2.2,
        [&] { return run(tips).first().milliseconds; }, [&] { return run(plain).first().milliseconds; });
    const double more = run(tips).first().mebibytes - run(plain).first().mebibytes;
    std::printf("%-44s %9.3f MiB more  goal 16 %s\n", "resident memory of a small host", more,
                more <= 16 ? "met" : "MISSED");
}

// The same tip is last as was first, as a hidden one keeps its clip.
void measureTips(const QString &tips)
{
    const QStringList keys{QStringLiteral("draw.line"),   QStringLiteral("draw.circle"),
                           QStringLiteral("draw.arc"),    QStringLiteral("draw.polyline"),
                           QStringLiteral("modify.move"), QStringLiteral("modify.rotate")};
    const QVector<Use> uses = run(tips, QStringList{QStringLiteral("25")} + keys);
    const double more = uses.last().mebibytes - uses.at(1).mebibytes;
    std::printf("%-44s %9.3f MiB more  goal 10 %s\n", "after 24 more tips with clips", more,
                more <= 10 ? "met" : "MISSED");
}

} // namespace

int main()
{
    const QString tips = QStringLiteral(START_HOST_TIPS);
    measureStart(QStringLiteral(START_HOST), tips);
    measureFirsts(tips);
    measureTips(tips);
}
